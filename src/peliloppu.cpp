// SCAFFOLD: replaced by the simulation and rendering work.
#include "peliloppu.h"

#include <GL/gl.h>
#include <GL/glu.h>
#include <SDL/SDL.h>
#include <cstdio>

#include "Main.h"
#include "Player.h"
#include "Teksti.h"
#include "scene.h"

int mpcredits = 0;
signed char voittotiimi = 0;
bool tiimisaantoLoppu() { return false; }
bool pistesaantoLoppu() { return false; }
int johtavaTiimi() { return 0; }
int peliloppu() { return 0; }

// Drawing (filled by the rendering work)

static bool objektiivipeli() { return gamemode >= 2 && gamemode <= 4; }

// The team of the last player that reached the score limit, -1 if none did.
static int tavoitteenSaavuttanutTiimi() {
  int tiimi = -1;
  for (int i = 0; i < players; ++i)
    if (player[i].pisteet >= fullcredits) tiimi = player[i].tiimi;
  return tiimi;
}

static bool onVoittaja(const Player& p, int voittotiimi) {
  return objektiivipeli() ? p.tiimi == voittotiimi : p.pisteet >= 0;
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
  for (int i = 0; i < players; ++i) {
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
  const int voittotiimi = objektiivipeli() ? tavoitteenSaavuttanutTiimi() : tiimi;
  int voittajia = 0;
  int krediittiSumma = 0;
  for (int i = 0; i < players; ++i) {
    if (!onVoittaja(player[i], voittotiimi)) continue;
    ++voittajia;
    krediittiSumma += player[i].pisteet + player[i].alus.pistemaara;  // truncated at each step
  }
  piirraVoittajat(voittotiimi, voittajia);
  if (voittajia == 0) {
    glColor4f(1, 0, 0, 1);
    gl_println(-4, 0, -25, "draw");
  } else if (objektiivipeli()) {
    piirraVoittoTekstit(voittotiimi, false, 0);
  } else {
    piirraVoittoTekstit(tiimi + 1, true, krediittiSumma);
  }
  palautaProjektio();
  glEnable(GL_BLEND);
  SDL_GL_SwapBuffers();
}
