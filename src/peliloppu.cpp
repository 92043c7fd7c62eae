#include "peliloppu.h"

#include "Main.h"
#include "scene.h"

#include <GL/gl.h>
#include <GL/glu.h>
#include <SDL/SDL.h>
#include <cstdio>

#include "Menu.h"
#include "Player.h"
#include "Teksti.h"
#include "audio.h"
#include "net.h"

#include <cstdint>
#include <cstring>

int mpcredits = 0;
signed char voittotiimi = 0;

namespace {

bool kukaanYltaa(double raja) {
  for (int i = 0; i < saannot::pelaajia(); ++i)
    if (player[i].pisteet >= raja) return true;
  return false;
}

bool tappopeli() { return gamemode == 0 || gamemode == 1; }
bool tavoitePeli() { return gamemode >= 2 && gamemode <= 4; }

}  // namespace

bool tiimisaantoLoppu() {
  // Counts changes of team in slot order, not distinct teams: A, B, A is 3.
  int edellinen = -1, vaihtoja = 0;
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    if (player[i].pisteet < 0 || player[i].tiimi == edellinen) continue;
    ++vaihtoja;
    edellinen = player[i].tiimi;
  }
  return vaihtoja <= 1;
}

bool pistesaantoLoppu() { return kukaanYltaa(fullcredits); }

int johtavaTiimi() {
  // The running best is kept truncated, so 5.3 after 5.7 still takes the lead.
  int paras = -2, tiimi = 0;
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    if (!(player[i].pisteet > paras)) continue;
    paras = static_cast<int>(player[i].pisteet);
    tiimi = player[i].tiimi;
  }
  return tiimi;
}

int peliloppu() {
  if (tavoitePeli()) return kukaanYltaa(static_cast<double>(mpcredits)) ? 1 : 0;
  if (!tappopeli()) return 0;
  int tiimi = -1;
  bool loytyi = false;
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    if (player[i].pisteet < 0) continue;
    if (!loytyi) {
      tiimi = player[i].tiimi;
      loytyi = true;
      if (tiimi < 0) return 1;
    } else if (player[i].tiimi != tiimi) {
      return 0;
    }
  }
  return 1;
}

// Drawing

// The team of the last player that reached the score limit, -1 if none did.
static int tavoitteenSaavuttanutTiimi() {
  int tiimi = -1;
  for (int i = 0; i < saannot::pelaajia(); ++i)
    if (player[i].pisteet >= fullcredits) tiimi = player[i].tiimi;
  return tiimi;
}

static bool onVoittaja(const Player& p, int voittotiimi) {
  return tavoitePeli() ? p.tiimi == voittotiimi : p.pisteet >= 0;
}

static void asetaVoittoNakyma() {
  glDisable(GL_LIGHTING);
  glDisable(GL_BLEND);
  glEnable(GL_TEXTURE_2D);
  glMatrixMode(GL_PROJECTION);
  glPushMatrix();
  glLoadIdentity();
  gluPerspective(45, double(screenwidth) / (screenheight > 0 ? screenheight : 1), 1, 100);
  glMatrixMode(GL_MODELVIEW);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glLoadIdentity();
  gluLookAt(0, 0, 15, 0, 0, 0, 0, 1, 0);
}

static void palautaProjektio() {
  glMatrixMode(GL_PROJECTION);
  glPopMatrix();
  glMatrixMode(GL_MODELVIEW);
}

// The winners' ships side by side; a crowd is drawn smaller.
static void piirraVoittajat(int voittotiimi, int voittajia) {
  const float pienennys = voittajia < 5 ? 0.5f : 0.32f;
  glScalef(pienennys, pienennys, pienennys);
  int kohta = 0;
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    if (!onVoittaja(player[i], voittotiimi)) continue;
    player[i].piirra(4 - 4 * voittajia + 8 * kohta, -6, -3, 90, 0);
    ++kohta;
  }
  glScalef(1 / pienennys, 1 / pienennys, 1 / pienennys);
}

static void piirraVoittoTekstit(int naytettavaTiimi, bool krediitit, int krediittiSumma) {
  char luku[12];
  glColor4f(1, 0, 0, 1);
  gl_println(-17, 12, -25, "team");
  std::snprintf(luku, sizeof luku, "%d", naytettavaTiimi);
  gl_println(-4, 12, -25, luku);
  gl_println(1, 12, -25, "won");
  if (!krediitit) return;
  gl_println(-16, 6, -25, "with");
  std::snprintf(luku, sizeof luku, "%d", krediittiSumma);
  gl_println(-2, 6, -25, luku);
  gl_println(6, 6, -25, "credits");
}

// The local victory screen. Objective modes name the team that reached the
// limit, printed as it is stored; death matches name the argument's team plus
// one and the credits the survivors hold. The two numberings differ on purpose.
void drawVictory(int tiimi) {
  asetaVoittoNakyma();
  const int voittotiimi = tavoitePeli() ? tavoitteenSaavuttanutTiimi() : tiimi;
  int voittajia = 0;
  int krediittiSumma = 0;
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    if (!onVoittaja(player[i], voittotiimi)) continue;
    ++voittajia;
    krediittiSumma += player[i].pisteet + player[i].alus.pistemaara;  // truncated at each step
  }
  piirraVoittajat(voittotiimi, voittajia);
  if (voittajia == 0) {
    glColor4f(1, 0, 0, 1);
    gl_println(-4, 0, -25, "draw");
  } else if (tavoitePeli()) {
    piirraVoittoTekstit(voittotiimi, false, 0);
  } else {
    piirraVoittoTekstit(tiimi + 1, true, krediittiSumma);
  }
  palautaProjektio();
  glEnable(GL_BLEND);
  naytaKuva();
}

// ---- The network end of a match -------------------------------------------------------

bool netGameQuit = false;
void (*verkkoVoitonSilmukka)() = netVictoryLoop;

namespace {

// The team of the last player in slot order still in play, 0xff when there is none.
uint8_t viimeinenTiimi() {
  uint8_t tiimi = 0xff;
  for (int i = 0; i < saannot::pelaajia(); ++i)
    if (player[i].pisteet >= 0) tiimi = static_cast<uint8_t>(player[i].tiimi);
  return tiimi;
}

// "victoryo" + team + ';' + 0, or "victoryd" + team + rows + ';' + 0; 0 in other modes.
int voittoViesti(unsigned char* b) {
  if (!tappopeli() && !tavoitePeli()) return 0;
  std::memcpy(b, tavoitePeli() ? "victoryo" : "victoryd", 8);
  b[8] = viimeinenTiimi();
  int n = 9;
  if (tappopeli()) {
    int rivit = 0;
    n = 10;
    for (int i = 0; i < saannot::pelaajia(); ++i) {
      if (player[i].pisteet < 0) continue;
      const int16_t pisteet = static_cast<int16_t>(static_cast<int>(player[i].pisteet));
      b[n++] = static_cast<unsigned char>(pisteet & 0xff);
      b[n++] = static_cast<unsigned char>((pisteet >> 8) & 0xff);
      b[n++] = static_cast<unsigned char>(i);
      b[n++] = 0;
      ++rivit;
    }
    b[9] = static_cast<unsigned char>(rivit);
  }
  b[n++] = ';';
  b[n++] = 0;
  return n;
}

// One network victory frame: the players `voittaja` picks, the team shown plus one.
void piirraVerkkoVoitto(int tiimi, bool (*voittaja)(const Player&, int), const char* eiVoittajaa) {
  asetaVoittoNakyma();
  int voittajia = 0, krediittiSumma = 0;
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    if (!voittaja(player[i], tiimi)) continue;
    ++voittajia;
    krediittiSumma += player[i].pisteet + player[i].alus.pistemaara;  // truncated at each step
  }
  const float pienennys = voittajia < 5 ? 0.5f : 0.32f;
  glScalef(pienennys, pienennys, pienennys);
  for (int i = 0, kohta = 0; i < saannot::pelaajia(); ++i)
    if (voittaja(player[i], tiimi)) player[i].piirra(4 - 4 * voittajia + 8 * kohta++, -6, -3, 90, 0);
  glScalef(1 / pienennys, 1 / pienennys, 1 / pienennys);
  if (voittajia == 0) {
    glColor4f(1, 0, 0, 1);
    gl_println(-4, 0, -25, eiVoittajaa);
  } else {
    piirraVoittoTekstit(tiimi + 1, tappopeli(), krediittiSumma);
  }
  palautaProjektio();
  glEnable(GL_BLEND);
  naytaKuva();
}

bool tiiminJasen(const Player& p, int tiimi) { return p.tiimi == tiimi; }
bool pelissaOleva(const Player& p, int) { return p.pisteet >= 0; }
bool pelissaOlevaJasen(const Player& p, int tiimi) { return p.pisteet >= 0 && p.tiimi == tiimi; }

void drawNetVictoryLoop() {
  if (tavoitePeli()) {
    int tiimi = -1;
    for (int i = 0; i < saannot::pelaajia() && tiimi < 0; ++i)
      if (player[i].pisteet >= static_cast<double>(mpcredits)) tiimi = player[i].tiimi;
    piirraVerkkoVoitto(tiimi, tiiminJasen, "draw");
  } else {
    const uint8_t tiimi = viimeinenTiimi();
    piirraVerkkoVoitto(tiimi == 0xff ? -1 : tiimi, pelissaOleva, "draw");
  }
}

void drawJoinNetVictoryLoop() {
  piirraVerkkoVoitto(voittotiimi, gamemode == 2 ? tiiminJasen : pelissaOlevaJasen, "nobody won");
}

}  // namespace

void netVictory() {
  unsigned char b[12 + 4 * 16];
  const int n = voittoViesti(b);
  if (n == 0) return;
  for (int c = 1; c < playerslots && c < yhteyksia; ++c)
    if (tcpsoketit[c]) laheta(c, b, n);
  verkkoVoitonSilmukka();
}

void netVictoryLoop() {
  entterpressed = escpressed = false;
  const Uint32 alku = pacingTicks();
  while (!entterpressed && !escpressed) {
    if (hostpeli) drawNetVictoryLoop(); else drawJoinNetVictoryLoop();
    processEvents();
    waitNextFrame();
    if (pacingTicks() - alku < 2000) tyhjennaJonot();
    updateAudio();
  }
  entterpressed = escpressed = false;
}

int kasitteleVictoryMsg(const char* msg, int len) {
  if (len < 11 || std::memcmp(msg, "victory", 7) != 0 || (msg[7] != 'o' && msg[7] != 'd')) return 0;
  const unsigned char* b = reinterpret_cast<const unsigned char*>(msg);
  const int rivit = msg[7] == 'd' ? static_cast<signed char>(b[9]) : 0;
  if (rivit < 0 || (msg[7] == 'd' && len < 12 + 4 * rivit)) return 0;
  voittotiimi = static_cast<signed char>(b[8]);
  gamemode = msg[7] == 'o' ? 2 : 0;
  for (int k = 0; k < rivit; ++k) {
    const unsigned char* r = b + 10 + 4 * k;
    const int pisteet = static_cast<int16_t>(r[0] | r[1] << 8);
    const int numero = static_cast<int16_t>(r[2] | r[3] << 8);
    if (numero >= 0 && numero < saannot::pelaajia()) player[numero].pisteet = static_cast<float>(pisteet);
  }
  netGameQuit = true;
  suljeYhteys(hostiYhteys);
  verkkoVoitonSilmukka();
  netGameQuit = true;
  return msg[7] == 'o' ? 11 : 12 + 4 * rivit;
}
