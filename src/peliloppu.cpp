#include "peliloppu.h"

#include "Main.h"
#include "scene.h"

#include <GL/gl.h>
#include <GL/glu.h>
#include <SDL/SDL.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "Menu.h"
#include "Player.h"
#include "Teksti.h"
#include "audio.h"
#include "net.h"

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

namespace {

// The team of the last player in slot order still in the match, -1 if none.
int viimeisenMukanaOlevanTiimi() {
  int tiimi = -1;
  for (int i = 0; i < saannot::pelaajia(); ++i)
    if (player[i].pisteet >= 0) tiimi = player[i].tiimi;
  return tiimi;
}

// The team of the last (or the first) player that reached `raja`, -1 if none did.
int yltanytTiimi(double raja, bool ensimmainen) {
  int tiimi = -1;
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    if (player[i].pisteet < raja) continue;
    tiimi = player[i].tiimi;
    if (ensimmainen) break;
  }
  return tiimi;
}

void asetaVoittoNakyma() {
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

void palautaProjektio() {
  glMatrixMode(GL_PROJECTION);
  glPopMatrix();
  glMatrixMode(GL_MODELVIEW);
}

// The winners' ships side by side; a crowd is drawn smaller.
void piirraVoittajat(const Voittonakyma& v) {
  const float pienennys = v.voittajia < 5 ? 0.5f : 0.32f;
  glScalef(pienennys, pienennys, pienennys);
  int kohta = 0;
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    if (!(v.voittajat >> i & 1u)) continue;
    player[i].piirra(4 - 4 * v.voittajia + 8 * kohta, -6, -3, 90, 0);
    ++kohta;
  }
  glScalef(1 / pienennys, 1 / pienennys, 1 / pienennys);
}

void piirraVoittoTekstit(const Voittonakyma& v) {
  char luku[12];
  glColor4f(1, 0, 0, 1);
  if (v.voittajia == 0) {
    gl_println(-4, 0, -25, v.eiVoittajaa);
    return;
  }
  gl_println(-17, 12, -25, "team");
  std::snprintf(luku, sizeof luku, "%d", v.tiimi);
  gl_println(-4, 12, -25, luku);
  gl_println(1, 12, -25, "won");
  if (!v.krediitit) return;
  gl_println(-16, 6, -25, "with");
  std::snprintf(luku, sizeof luku, "%d", v.krediittiSumma);
  gl_println(-2, 6, -25, luku);
  gl_println(6, 6, -25, "credits");
}

void piirraVoitto(const Voittonakyma& v) {
  asetaVoittoNakyma();
  piirraVoittajat(v);
  piirraVoittoTekstit(v);
  palautaProjektio();
  glEnable(GL_BLEND);
  naytaKuva();
}

}  // namespace

// Objective modes draw the winning team's players, death matches those still in (on a
// client only those of the team received). The local objective screen prints the team
// as it is stored, every other screen the team plus one: the two numberings differ on purpose.
Voittonakyma voittonakyma(Voittoruutu ruutu, int tiimi) {
  const bool tavoite = tavoitePeli();
  int voittajaTiimi = tiimi;
  Voittonakyma v{0, 0, tiimi + 1, !tavoite, 0, ruutu == Voittoruutu::asiakas ? "nobody won" : "draw"};
  switch (ruutu) {
    case Voittoruutu::paikallinen:
      if (tavoite) voittajaTiimi = v.tiimi = yltanytTiimi(fullcredits, false);
      break;
    case Voittoruutu::isanta:
      voittajaTiimi =
          tavoite ? yltanytTiimi(static_cast<double>(mpcredits), true) : viimeisenMukanaOlevanTiimi();
      v.tiimi = voittajaTiimi + 1;
      break;
    case Voittoruutu::asiakas:
      voittajaTiimi = voittotiimi;
      v.tiimi = voittajaTiimi + 1;
      break;
  }
  const bool tiimista = tavoite || ruutu == Voittoruutu::asiakas;
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    const Player& p = player[i];
    if ((!tavoite && p.pisteet < 0) || (tiimista && p.tiimi != voittajaTiimi)) continue;
    v.voittajat |= 1u << i;
    ++v.voittajia;
    if (v.krediitit) v.krediittiSumma += p.pisteet + p.alus.pistemaara;  // truncated at each step
  }
  return v;
}

void drawVictory(int tiimi) { piirraVoitto(voittonakyma(Voittoruutu::paikallinen, tiimi)); }
void drawNetVictoryLoop() { piirraVoitto(voittonakyma(Voittoruutu::isanta, 0)); }
void drawJoinNetVictoryLoop() { piirraVoitto(voittonakyma(Voittoruutu::asiakas, 0)); }

// The network end

bool netGameQuit = false;
void (*verkkoVoitonSilmukka)() = netVictoryLoop;

namespace {

const char voittoAvain[] = "victory";  // the tag without its last letter, which gives the form
const int voittoviestiTila = 12 + 4 * maxPlayers;
const Uint32 tyhjennysAika = 2000;  // ms the victory screen still sends what is queued

void kirjoita16(unsigned char* kohde, int arvo) {
  kohde[0] = static_cast<unsigned char>(arvo & 0xff);
  kohde[1] = static_cast<unsigned char>((arvo >> 8) & 0xff);
}

int lue16(const unsigned char* lahde) { return static_cast<int16_t>(lahde[0] | lahde[1] << 8); }

// The victory message of the mode in force into buf; 0 in a mode without one.
int voittoviesti(unsigned char* buf) {
  if (!tappopeli() && !tavoitePeli()) return 0;
  std::memcpy(buf, voittoAvain, 7);
  buf[7] = tavoitePeli() ? 'o' : 'd';
  buf[8] = static_cast<unsigned char>(viimeisenMukanaOlevanTiimi());  // -1 goes as 0xFF
  int n = 9;
  if (tappopeli()) {
    int rivit = 0;
    n = 10;
    for (int i = 0; i < saannot::pelaajia(); ++i) {
      if (player[i].pisteet < 0) continue;
      kirjoita16(buf + n, static_cast<int>(std::min(player[i].pisteet, 32767.0f)));
      kirjoita16(buf + n + 2, i);
      n += 4;
      ++rivit;
    }
    buf[9] = static_cast<unsigned char>(rivit);
  }
  buf[n++] = ';';
  buf[n++] = 0;
  return n;
}

}  // namespace

void netVictory() {
  unsigned char viesti[voittoviestiTila];
  const int pituus = voittoviesti(viesti);
  if (pituus == 0) return;
  // The same queue as the FRAMEs, so the message follows the last of them.
  for (int c = 1; c < std::min(playerslots, yhteyksia); ++c)
    if (tcpsoketit[c]) laheta(c, viesti, pituus);
  verkkoVoitonSilmukka();
}

void netVictoryLoop() {
  entterpressed = escpressed = false;
  const Uint32 alku = pacingTicks();
  while (!entterpressed && !escpressed) {
    if (hostpeli)
      drawNetVictoryLoop();
    else
      drawJoinNetVictoryLoop();
    processEvents();
    waitNextFrame();
    updateAudio();
    if (pacingTicks() - alku < tyhjennysAika) tyhjennaJonot();
  }
  entterpressed = escpressed = false;
}

int kasitteleVictoryMsg(const char* msg, int len) {
  const unsigned char* p = reinterpret_cast<const unsigned char*>(msg);
  if (!msg || len < 10 || std::memcmp(p, voittoAvain, 7) != 0) return 0;
  const bool tavoite = p[7] == 'o';
  if (!tavoite && p[7] != 'd') return 0;
  const int rivit = static_cast<signed char>(p[9]);
  const int pituus = tavoite ? 11 : 12 + 4 * std::max(0, rivit);
  if (len < pituus) return 0;
  voittotiimi = static_cast<signed char>(p[8]);
  gamemode = tavoite ? 2 : 0;  // the client only needs to know it was an objective mode
  for (int r = 0; !tavoite && r < rivit; ++r) {
    const unsigned char* rivi = p + 10 + 4 * r;
    const int numero = lue16(rivi + 2);
    if (numero >= 0 && numero < saannot::pelaajia()) player[numero].pisteet = static_cast<float>(lue16(rivi));
  }
  netGameQuit = true;
  suljeYhteys(hostiYhteys);
  verkkoVoitonSilmukka();
  netGameQuit = true;
  return pituus;
}
