// The main menu, the debug view of the ship models, the settings menu and the player set-up screen.
#include "Menu.h"

#include <GL/gl.h>
#include <SDL/SDL.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "Main.h"
#include "Player.h"
#include "Sets.h"
#include "Teksti.h"
#include "ai.h"
#include "audio.h"
#include "ctf.h"
#include "glapi.h"
#include "localgame.h"
#include "net.h"
#include "scene.h"

float nuolirot = 0;
bool saavalita = false;
bool debugmode = false;

namespace {

// The title is kept with the entries but never drawn.
const char* const otsikot[6] = {"main menu",        "Local Game", "Host Multiplayer",
                                "Join Multiplayer", "Settings",   "Quit"};
const int kohtia = 5;

// Where the cursor arrows sit: the right one just after each label.
const float nuoliSyvyys = -12.0f;
const float vasenNuoliX = -6.5f;
const float oikeaNuoliX[kohtia] = {-1.9f, -0.6f, -0.8f, -2.6f, -3.9f};

}  // namespace

void pyoritaNuolia() {
  nuolirot += 2.5f;
  if (nuolirot > 180) nuolirot -= 360;
}

namespace {

void piirraPaavalikonTausta() {
  glEnable(GL_TEXTURE_2D);
  glBindTexture(GL_TEXTURE_2D, texture[tx::titlePicture]);
  glColor4f(1, 1, 1, 1);
  kuvaNelio(-1, -0.75f, 1, 0.75f, -1.8f, true);
}

void piirraPaneeli() {
  glDisable(GL_TEXTURE_2D);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  glColor4f(0, 0, 0, 0.6f);
  kuvaNelio(-2, -0.5f, -0.1f, 0.5f, -3.5f, true);
}

// The glyphs are white on black: added to the picture, their black vanishes.
void piirraOtsikot() {
  glEnable(GL_TEXTURE_2D);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE);
  glColor4f(1, 0, 0, 1);
  for (int i = 0; i < kohtia; i++) gl_println(-20, 4.0f - 2.0f * i, -40, otsikot[i + 1]);
}

void piirraNuoli(float x, float y, float kaanto) {
  glPushMatrix();
  glTranslatef(x, y, nuoliSyvyys);
  glRotatef(kaanto, 0, 0, 1);
  glRotatef(nuolirot, 1, 0, 0);
  glScalef(0.22f, 0.3f, 0.3f);
  glCallList(list_int[24]);
  glPopMatrix();
}

void piirraNuolet(int item) {
  glDisable(GL_TEXTURE_2D);
  glDisable(GL_BLEND);
  glEnable(GL_LIGHTING);
  glEnable(GL_DEPTH_TEST);
  const GLfloat valo[] = {-0.3f, 0.5f, 1.0f, 0.0f};
  glLightfv(GL_LIGHT0, GL_POSITION, valo);
  glColor4f(1.0f, 0.75f, 0.15f, 1);
  const float y = 1.0f - 0.55f * item;
  piirraNuoli(vasenNuoliX, y, 0);
  // The debug entry has no label, so no arrow after one.
  if (item < kohtia) piirraNuoli(oikeaNuoliX[item], y, 180);
}

// Back to the state the game's own drawing expects.
void palautaTila() {
  glEnable(GL_TEXTURE_2D);
  glEnable(GL_LIGHTING);
  glEnable(GL_DEPTH_TEST);
  glDisable(GL_BLEND);
  glColor4f(1, 1, 1, 1);
}

// The debug view: the 24 ship models in a grid, slowly turning, until Enter or Escape.
void piirraMallit() {
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glLoadIdentity();
  const GLfloat valo[] = {0.3f, 0.5f, 1.0f, 0.0f};
  glLightfv(GL_LIGHT0, GL_POSITION, valo);
  char numero[4];
  for (int i = 0; i < 24; i++) {
    const float x = -22.5f + 9.0f * (i % 6), y = 13.5f - 9.0f * (i / 6);
    glEnable(GL_LIGHTING);
    glDisable(GL_BLEND);
    glColor4f(1, 1, 1, 1);
    glBindTexture(GL_TEXTURE_2D, alus[i].texture);
    glPushMatrix();
    glTranslatef(x, y, -60);
    glRotatef(nuolirot, 0, 0, 1);
    glCallList(list_alus[i]);
    glPopMatrix();
    glDisable(GL_LIGHTING);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    snprintf(numero, sizeof numero, "%d", i);
    gl_println(x, y - 3.5f, -60, numero, 0.8f);
  }
  palautaTila();
  naytaKuva();
}

void debugPiirtomenu() {
  while (!entterpressed && !escpressed) {
    processEvents();
    pyoritaNuolia();
    waitNextFrame();
    piirraMallit();
    updateAudio();
  }
  entterpressed = escpressed = false;
}

void avaa(int item) {
  switch (item) {
    case 0: onePlayerGameMenu(); break;
    case 1: hostMultiplayer(); break;
    case 2: joinMultiplayer(); break;
    case 3: asetusmenu(); break;
    default:
      printf("debug\n");
      debugPiirtomenu();
      break;
  }
}

}  // namespace

bool valikonSyote(int& item, int last) {
  Player& p = player[nappainrivinPelaaja[0]];
  if (entterpressed) {
    entterpressed = false;
    return true;
  }
  if (p.pylos) {
    item = item == 0 ? last : item - 1;
    p.pylos = false;
  } else if (p.palas) {
    item = item == last ? 0 : item + 1;
    p.palas = false;
  } else if (escpressed) {
    escpressed = false;
    item = last;
    return true;
  }
  return false;
}

void unohdaNapit() {
  escpressed = entterpressed = false;
  Player& p = player[nappainrivinPelaaja[0]];
  p.pylos = p.palas = p.pleft = p.pright = p.pfire = false;
}

void valikkoSilmukka(int viimeinen, void (*avaa)(int), void (*piirra)(int), bool nuolet) {
  int kohta = 0;
  for (;;) {
    processEvents();
    if (nuolet) pyoritaNuolia();
    joinpeli = hostpeli = false;
    if (valikonSyote(kohta, viimeinen)) {
      if (kohta == viimeinen) return;
      avaa(kohta);
      unohdaNapit();
    }
    waitNextFrame();
    piirra(kohta);
    updateAudio();
  }
}

void mainmenu() {
  saavalita = true;
  valikkoSilmukka(debugmode ? 5 : 4, avaa, drawmenu, true);
}

void drawmenu(int item) {
  glDisable(GL_LIGHTING);
  glDisable(GL_DEPTH_TEST);
  glEnable(GL_BLEND);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glLoadIdentity();
  piirraPaavalikonTausta();
  piirraPaneeli();
  piirraOtsikot();
  piirraNuolet(item);
  palautaTila();
  naytaKuva();
}

// --- The key help, over any screen while F1 is held: a table of each keyboard
// player's keys and a line of the keys every screen knows.

namespace {

const int ohjaimia = 6;
const char* const ohjaintenNimet[ohjaimia] = {"thrust",     "reverse", "turn left",
                                              "turn right", "fire",    "special"};
const char* const yleisetNappaimet =
    "Enter: choose    Escape: back, or pause a match    Tab: standings    F1: keys";

// The first four slots in use that a person plays, or player 1 alone (the menus
// read its keys) when a person plays none of them.
int ohjeenPelaajat(int* pelaajat) {
  int maara = 0;
  for (int i = 0; i < std::min(saannot::pelaajia(), 4); ++i)
    if (sets.ihminen[i]) pelaajat[maara++] = i;
  if (maara == 0) pelaajat[maara++] = 0;
  return maara;
}

// A row per listed player: its label in its team's colour, then its keys.
const char* ohjeenSolu(const void* tiedot, int rivi, int sarake, char* tila, size_t koko) {
  if (rivi < 0) return sarake == 0 ? "" : ohjaintenNimet[sarake - 1];
  const int p = static_cast<const int*>(tiedot)[rivi];
  if (sarake > 0) return nappaimenNimi(p, sarake - 1);
  valitseVari(sets.team[p]);
  std::snprintf(tila, koko, "player %d", p + 1);
  return tila;
}

void piirraNappainohje() {
  int pelaajat[4];
  const int n = ohjeenPelaajat(pelaajat);
  piirraTaulukko({"keys", ohjaimia + 1, n, pelaajat, ohjeenSolu, yleisetNappaimet});
}

}  // namespace

void naytaKuva() {
  if (ohjenappi) piirraNappainohje();
  SDL_GL_SwapBuffers();
}

// --- The settings menu and the player set-up screen: the main menu's look and
// keys, with left and right changing the value under the cursor.

const float riviX = -22, arvoX = -3, riviZ = -40;
const float riviKoko = 0.8f, rivivali = 1.8f;
const float ylinRivi = 11, otsikonY = 14.2f, otsikonKoko = 1.2f, alarivi = -14.5f;
const float nuoliSuhde = nuoliSyvyys / riviZ;  // text space to arrow space

NappainToisto::NappainToisto() {
  SDL_GetKeyRepeat(&viive_, &vali_);
  SDL_EnableKeyRepeat(SDL_DEFAULT_REPEAT_DELAY, SDL_DEFAULT_REPEAT_INTERVAL);
}

NappainToisto::~NappainToisto() { SDL_EnableKeyRepeat(viive_, vali_); }

// Left -1, right +1, else 0; the flag acted on is cleared.
int sivusuunta() {
  Player& p = player[nappainrivinPelaaja[0]];
  const int suunta = p.pright ? 1 : p.pleft ? -1 : 0;
  p.pleft = p.pright = false;
  return suunta;
}

float riviY(int rivi) { return ylinRivi - rivivali * rivi; }

float tekstinLoppu(float x, const char* teksti, float koko) {
  return x - koko + 2 * koko * static_cast<float>(gl_pituus(teksti));
}

// The screen's picture and veil, and a view in which text from x = -leveys to
// leveys fits the window.
void aloitaValikonKuva(float leveys, float peitto, bool kentalla) {
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  if (kentalla)
    piirraMaailma();
  else
    piirraTaustakuva(texture[tx::titlePicture]);
  tummennaRuutu(peitto);
  valikonNakyma(-leveys, leveys);
  glEnable(GL_TEXTURE_2D);
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE);  // the glyphs' black adds nothing
}

void piirraValikonOtsikko(const char* otsikko) {
  glColor4f(1, 0.75f, 0.15f, 1);
  gl_println(keskitettyX(otsikko, otsikonKoko), otsikonY, riviZ, otsikko, otsikonKoko);
}

void piirraAlarivi(const char* teksti) {
  if (!teksti || !*teksti) return;
  glColor4f(0.9f, 0.9f, 0.9f, 1);
  gl_println(keskitettyX(teksti, 0.5f), alarivi, riviZ, teksti, 0.5f);
}

// A red label and, when there is one, its value in white beside it.
void piirraRivi(float x, float y, const char* nimi, const char* arvo, float arvonX) {
  glColor4f(1, 0, 0, 1);
  gl_println(x, y, riviZ, nimi, riviKoko);
  if (!arvo) return;
  glColor4f(1, 1, 1, 1);
  gl_println(arvonX, y, riviZ, arvo, riviKoko);
}

// The two spinning arrows around the selected row, from x = alku to x = loppu.
void piirraKursori(float alku, float loppu, float y) {
  glDisable(GL_TEXTURE_2D);
  glDisable(GL_BLEND);
  glEnable(GL_LIGHTING);
  glEnable(GL_DEPTH_TEST);
  glColor4f(1.0f, 0.75f, 0.15f, 1);
  piirraNuoli((alku - 1.6f) * nuoliSuhde, y * nuoliSuhde, 0);
  piirraNuoli((loppu + 1.2f) * nuoliSuhde, y * nuoliSuhde, 180);
}

void lopetaValikonKuva() {
  palautaTila();
  naytaKuva();
}

namespace {

const char* paalla(bool arvo) { return arvo ? "on" : "off"; }

// --- The settings menu.

const char* const asetustenNimet[asetuskohtia + 1] = {"Resolution:",
                                                      "Full Screen:",
                                                      "Players:",
                                                      "Music:",
                                                      "Effects:",
                                                      "Credits:",
                                                      "Music Volume:",
                                                      "Effects Volume:",
                                                      "Camera:",
                                                      "Detail:",
                                                      "Player Setup",
                                                      "Apply and Save Settings",
                                                      "Apply, Save and Exit Menu",
                                                      "Back to the Match"};
const char* const kameranNimet[2] = {"tilting", "top-down"};

const Resoluutio tavallisetTilat[] = {{640, 480},   {800, 600},   {1024, 768},  {1152, 864},
                                      {1280, 720},  {1280, 800},  {1280, 960},  {1280, 1024},
                                      {1366, 768},  {1440, 900},  {1600, 900},  {1600, 1200},
                                      {1680, 1050}, {1920, 1080}, {1920, 1200}, {2560, 1440}};

// The usual sizes, those the display offers for full screen (none larger than
// its biggest), and the current one, in order.
std::vector<Resoluutio> resoluutiot(Resoluutio nykyinen) {
  std::vector<Resoluutio> lista;
  const bool naytonTilat = modes && modes != reinterpret_cast<SDL_Rect**>(-1);
  int suurin = 1 << 30;
  if (naytonTilat) {
    suurin = 0;
    for (int i = 0; modes[i]; ++i) {
      lista.push_back({modes[i]->w, modes[i]->h});
      suurin = std::max(suurin, int(modes[i]->w));
    }
  }
  for (const Resoluutio& r : tavallisetTilat)
    if (r.leveys <= suurin) lista.push_back(r);
  lista.push_back(nykyinen);
  std::sort(lista.begin(), lista.end());
  lista.erase(std::unique(lista.begin(), lista.end()), lista.end());
  return lista;
}

int askel(int arvo, int suunta, int koko, int pienin, int suurin) {
  return std::clamp(arvo + suunta * koko, pienin, suurin);
}

Resoluutio viereinenResoluutio(Resoluutio nykyinen, int suunta) {
  const std::vector<Resoluutio> lista = resoluutiot(nykyinen);
  const int i = int(std::find(lista.begin(), lista.end(), nykyinen) - lista.begin());
  return lista[std::clamp(i + suunta, 0, int(lista.size()) - 1)];
}

void asetuksenArvo(const Asetusluonnos& a, int kohta, char* teksti, size_t koko) {
  switch (kohta) {
    case aResoluutio: std::snprintf(teksti, koko, "%d x %d", a.koko.leveys, a.koko.korkeus); break;
    case aKokoruutu: std::snprintf(teksti, koko, "%s", paalla(a.kokoruutu)); break;
    case aPelaajat: std::snprintf(teksti, koko, "%d", a.pelaajia); break;
    case aMusiikki: std::snprintf(teksti, koko, "%s", paalla(a.musiikki)); break;
    case aEfektit: std::snprintf(teksti, koko, "%s", paalla(a.efektit)); break;
    case aKrediitit: std::snprintf(teksti, koko, "%d", a.krediitit); break;
    case aMusiikkivoimakkuus: std::snprintf(teksti, koko, "%d", a.musiikkivoimakkuus); break;
    case aEfektivoimakkuus: std::snprintf(teksti, koko, "%d", a.efektivoimakkuus); break;
    case aKamera: std::snprintf(teksti, koko, "%s", kameranNimet[a.kamera]); break;
    case aTarkkuus: std::snprintf(teksti, koko, "%d / %d", a.tarkkuus, sets.maxdetail); break;
    default: teksti[0] = 0; break;
  }
}

// A new window size or full-screen state; a mode the display refuses leaves the
// old one in place (and in the draft). Without a window there is nothing to change.
bool asetaNaytto(Asetusluonnos& a) {
  const SDL_Surface* pinta = SDL_GetVideoSurface();
  if (!pinta) return true;
  const bool nytKokoruutu = (pinta->flags & SDL_FULLSCREEN) != 0;
  if (a.koko == Resoluutio{screenwidth, screenheight} && a.kokoruutu == nytKokoruutu) return true;
  const bool onnistui = setVideoMode(a.koko.leveys, a.koko.korkeus, a.kokoruutu) != nullptr;
  if (onnistui) {
    screenwidth = a.koko.leveys;
    screenheight = a.koko.korkeus;
    fullscreen = a.kokoruutu;
    SDL_ShowCursor(a.kokoruutu ? SDL_DISABLE : SDL_ENABLE);
  } else {
    setVideoMode(screenwidth, screenheight, nytKokoruutu);
    a.koko = {screenwidth, screenheight};
    a.kokoruutu = nytKokoruutu;
  }
  setupOpengl(screenwidth, screenheight);  // a new mode has a new context
  return onnistui;
}

void asetaMusiikki(const Asetusluonnos& a) {
  const bool oli = musiikkipaalla;
  musiikkipaalla = a.musiikki;
  if (oli && !musiikkipaalla && backgroundsong) backgroundsong->stop();
  if (!oli && musiikkipaalla) {
    if (backgroundsong)
      backgroundsong->play();
    else
      test(nullptr);  // the stop callback picks and starts a song
  }
  if (backgroundsong) backgroundsong->setVolume(sets.musicvolume / 100);
}

// Copies the draft into the settings and the game, then saves; returns what to tell the player.
const char* otaKayttoon(Asetusluonnos& a) {
  const bool tilaOk = asetaNaytto(a);
  sets.width = a.koko.leveys;
  sets.height = a.koko.korkeus;
  sets.fullscreen = a.kokoruutu ? 1 : 0;
  sets.playermaara = players = a.pelaajia;
  sets.credits = fullcredits = a.krediitit;
  otaPelinAikaisetKayttoon(a);
  if (!sets.saveFile()) return "could not save the settings to sets.txt";
  return tilaOk ? "settings saved" : "that video mode failed; the other settings are saved";
}

void piirraAsetusmenu(int valittu, const Asetusluonnos& a, const char* ilmoitus) {
  int rivit[asetuskohtia];
  for (int i = 0; i < asetuskohtia; ++i) rivit[i] = i;
  piirraAsetukset("Settings", rivit, asetuskohtia, valittu, a, ilmoitus, false);
}

// --- The player set-up screen: one row per player slot (Enter switches the pilot,
// left and right change the team), then the computer pilots' switches.

// The computer pilots' skill levels by the names the README gives them.
const char* const tasojenNimet[aiTasoja] = {"rookie", "pilot", "veteran", "ace"};

struct Pelaajarivit {
  int pelaajia;
  int aiKohde() const { return pelaajia; }
  int aiTaso() const { return pelaajia + 1; }
  int edellinen() const { return pelaajia + 2; }
  int sarakkeita() const { return pelaajia > 10 ? 2 : 1; }
  int riveja() const { return (pelaajia + sarakkeita() - 1) / sarakkeita(); }
  // Where slot i's row starts.
  float x(int i) const { return i < riveja() ? riviX : 1.5f; }
  float y(int i) const { return ylinRivi - 2.0f * (i % riveja()); }
  float lisaY(int kohta) const { return ylinRivi - 2.0f * riveja() - 1.0f - 1.9f * (kohta - pelaajia); }
};

// Teams run 1..16 on screen and 0..15 in the settings, and never reach the
// number of flowers, whose array a team number indexes.
int joukkueita() { return std::max(1, std::min(maxPlayers, cpisteita)); }

void muutaPelaajaa(const Pelaajarivit& r, int kohta, int suunta) {
  if (kohta < r.pelaajia) {
    if (suunta == 0)
      sets.ihminen[kohta] = !sets.ihminen[kohta];
    else
      sets.team[kohta] =
          (std::clamp(sets.team[kohta], 0, joukkueita() - 1) + suunta + joukkueita()) % joukkueita();
  } else if (kohta == r.aiKohde()) {
    sets.aikohteet = !sets.aikohteet;
  } else if (kohta == r.aiTaso()) {
    sets.ai = askel(sets.ai, suunta, 1, 0, aiTasoja - 1);
  }
}

// Returns where the row ends, for the cursor.
float piirraPelaajarivi(const Pelaajarivit& r, int i) {
  const float x = r.x(i), y = r.y(i), koko = 0.7f;
  char teksti[24];
  std::snprintf(teksti, sizeof teksti, "player %d", i + 1);
  glColor4f(1, 1, 1, 1);
  gl_println(x, y, riviZ, teksti, koko);
  glColor4f(1, 0, 0, 1);
  gl_println(x + 8, y, riviZ, "Human", koko);
  gl_println(x + 16.2f, y, riviZ, "Team", koko);
  glColor4f(1, 1, 1, 1);
  gl_println(x + 13.2f, y, riviZ, paalla(sets.ihminen[i]), koko);
  std::snprintf(teksti, sizeof teksti, "%d", std::clamp(sets.team[i], 0, joukkueita() - 1) + 1);
  valitseVari(sets.team[i]);
  gl_println(x + 20.5f, y, riviZ, teksti, koko);
  return tekstinLoppu(x + 20.5f, teksti, koko);
}

void piirraPelaajaMenu(const Pelaajarivit& r, int valittu) {
  aloitaValikonKuva(-riviX + 3.5f);
  piirraValikonOtsikko("Player Setup");
  float loppu = 0;
  for (int i = 0; i < r.pelaajia; ++i) {
    const float rivinLoppu = piirraPelaajarivi(r, i);
    if (i == valittu) loppu = rivinLoppu;
  }
  char taso[24];
  const int t = std::clamp(sets.ai, 0, aiTasoja - 1);  // higher values play as the top level
  std::snprintf(taso, sizeof taso, "%d %s", t, tasojenNimet[t]);
  const char* arvot[3] = {paalla(sets.aikohteet), taso, nullptr};
  const char* nimet[3] = {"ai attacks ai:", "computer skill:", "previous menu"};
  for (int k = 0; k < 3; ++k) {
    const int kohta = r.pelaajia + k;
    piirraRivi(riviX, r.lisaY(kohta), nimet[k], arvot[k], arvoX);
    if (kohta == valittu)
      loppu = arvot[k] ? tekstinLoppu(arvoX, arvot[k], riviKoko) : tekstinLoppu(riviX, nimet[k], riviKoko);
  }
  piirraAlarivi("Enter: human or computer     left, right: team or skill");
  const bool rivilla = valittu < r.pelaajia;
  piirraKursori(rivilla ? r.x(valittu) : riviX, loppu, rivilla ? r.y(valittu) : r.lisaY(valittu));
  lopetaValikonKuva();
}

}  // namespace

Asetusluonnos nykyisetAsetukset() {
  return {{screenwidth, screenheight},
          sets.fullscreen > 0,
          std::clamp(sets.playermaara, 2, maxPlayers),
          sets.musics > 0,
          sets.efects > 0,
          std::clamp(static_cast<int>(sets.credits), 20, 1000),
          std::clamp(static_cast<int>(sets.musicvolume), 0, 100),
          std::clamp(static_cast<int>(sets.soundvolume), 0, 100),
          sets.cammode != 0 ? 1 : 0,
          std::clamp(sets.detail, 0, sets.maxdetail)};
}

void muutaAsetusta(Asetusluonnos& a, int kohta, int suunta) {
  switch (kohta) {
    case aResoluutio: a.koko = viereinenResoluutio(a.koko, suunta); break;
    case aKokoruutu: a.kokoruutu = !a.kokoruutu; break;
    case aPelaajat: a.pelaajia = askel(a.pelaajia, suunta, 1, 2, maxPlayers); break;
    case aMusiikki: a.musiikki = !a.musiikki; break;
    case aEfektit: a.efektit = !a.efektit; break;
    case aKrediitit: a.krediitit = askel(a.krediitit, suunta, 10, 20, 1000); break;
    case aMusiikkivoimakkuus: a.musiikkivoimakkuus = askel(a.musiikkivoimakkuus, suunta, 5, 0, 100); break;
    case aEfektivoimakkuus: a.efektivoimakkuus = askel(a.efektivoimakkuus, suunta, 5, 0, 100); break;
    case aKamera: a.kamera = suunta == 0 ? a.kamera : 1 - a.kamera; break;
    case aTarkkuus: a.tarkkuus = askel(a.tarkkuus, suunta, 1, 0, sets.maxdetail); break;
    default: break;
  }
}

void otaPelinAikaisetKayttoon(const Asetusluonnos& a) {
  sets.musics = a.musiikki ? 1 : 0;
  sets.efects = a.efektit ? 1 : 0;
  efektitpaalla = a.efektit;
  sets.musicvolume = static_cast<float>(a.musiikkivoimakkuus);
  sets.soundvolume = static_cast<float>(a.efektivoimakkuus);
  asetaMusiikki(a);
  setSoundVolumes();
  sets.cammode = a.kamera;
  sets.detail = a.tarkkuus;
  mitoitaSirpaleet(sets.detail);
}

void piirraAsetukset(const char* otsikko, const int* rivit, int n, int valittu, const Asetusluonnos& a,
                     const char* ohje, bool kentalla) {
  aloitaValikonKuva(-riviX + 2, valikonVerho, kentalla);
  piirraValikonOtsikko(otsikko);
  char arvo[32];
  float valitunLoppu = 0;
  for (int i = 0; i < n; ++i) {
    const char* nimi = asetustenNimet[rivit[i]];
    asetuksenArvo(a, rivit[i], arvo, sizeof arvo);
    const bool onArvo = arvo[0] != 0;
    piirraRivi(riviX, riviY(i), nimi, onArvo ? arvo : nullptr, arvoX);
    if (i == valittu)
      valitunLoppu = onArvo ? tekstinLoppu(arvoX, arvo, riviKoko) : tekstinLoppu(riviX, nimi, riviKoko);
  }
  piirraAlarivi(ohje);
  piirraKursori(riviX, valitunLoppu, riviY(valittu));
  lopetaValikonKuva();
}

bool playerMenu(int pelaajia) {
  const Pelaajarivit r{std::clamp(pelaajia, 2, maxPlayers)};
  const NappainToisto toisto;
  int kohta = 0;
  for (;;) {
    processEvents();
    pyoritaNuolia();
    if (const int suunta = sivusuunta()) muutaPelaajaa(r, kohta, suunta);
    if (valikonSyote(kohta, r.edellinen())) {
      if (kohta == r.edellinen()) break;
      muutaPelaajaa(r, kohta, 0);
    }
    waitNextFrame();
    piirraPelaajaMenu(r, kohta);
    updateAudio();
  }
  unohdaNapit();
  ai = sets.ai;
  return sets.saveFile();
}

void asetusmenu() {
  const NappainToisto toisto;
  Asetusluonnos luonnos = nykyisetAsetukset();
  const char* ilmoitus = "";
  int kohta = 0;
  for (;;) {
    processEvents();
    pyoritaNuolia();
    if (escpressed) break;  // leaves without applying
    if (const int suunta = sivusuunta()) muutaAsetusta(luonnos, kohta, suunta);
    if (valikonSyote(kohta, aTallennaJaPoistu)) {
      if (kohta == aPelaajaAsetukset) {
        ilmoitus =
            playerMenu(luonnos.pelaajia) ? "player setup saved" : "could not save the settings to sets.txt";
      } else if (kohta >= aTallenna) {
        ilmoitus = otaKayttoon(luonnos);
        if (kohta == aTallennaJaPoistu) break;
      } else {
        muutaAsetusta(luonnos, kohta, 0);
      }
    }
    waitNextFrame();
    piirraAsetusmenu(kohta, luonnos, ilmoitus);
    updateAudio();
  }
  unohdaNapit();
}
