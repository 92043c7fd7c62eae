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
