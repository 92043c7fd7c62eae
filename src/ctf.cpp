#include "ctf.h"

#include <GL/gl.h>

#include "Player.h"
#include "glapi.h"

using namespace saannot;

int cpisteita = 16;
CPiste* cpiste = nullptr;
CPiste* alkupiste = nullptr;
float ctfpisteet = 25, ckuolemapisteet = 1;

namespace {

const float poimintaSade = 7.0f;

// Home positions of the first four teams; further flowers wait at the centre.
const float kodit[][2] = {{140, 100}, {-140, -100}, {140, -100}, {-140, 100}};

bool onKukka(int tiimi) { return tiimi >= 0 && tiimi < cpisteita; }

void vieKotiin(int i) {
  cpiste[i].x = alkupiste[i].x;
  cpiste[i].y = alkupiste[i].y;
  cpiste[i].player = kukkaKotona;
}

void kannettu(int i) {
  const int kantaja = cpiste[i].player;
  if (kantaja >= pelaajia()) {  // the slot left the game: the flower lies where it was
    cpiste[i].player = kukkaPudonnut;
    return;
  }
  const Player& p = player[kantaja];
  if (p.energia < 0 || p.kuolema > 0) {
    cpiste[i].x = p.x;
    cpiste[i].y = p.y;
    cpiste[i].player = kukkaPudonnut;
    return;
  }
  // The carrier scores only when his own flower is at home.
  const int oma = p.tiimi;
  if (!onKukka(oma) || cpiste[oma].player != kukkaKotona) return;
  if (!lahella(kantaja, cpiste[oma].x, cpiste[oma].y, poimintaSade)) return;
  vieKotiin(i);
  tiimillePisteita(oma, ctfpisteet);
}

void kotona(int i) {
  for (int p = 0; p < pelaajia(); ++p) {
    if (!pelissa(player[p]) || player[p].tiimi == i) continue;
    if (!lahella(p, cpiste[i].x, cpiste[i].y, poimintaSade)) continue;
    cpiste[i].player = p;
    return;
  }
}

void pudonnut(int i) {
  for (int p = 0; p < pelaajia(); ++p) {
    if (!pelissa(player[p]) || !lahella(p, cpiste[i].x, cpiste[i].y, poimintaSade)) continue;
    if (player[p].tiimi == i)
      vieKotiin(i);
    else
      cpiste[i].player = p;
    return;
  }
}

}  // namespace

void alustaCPisteet() {
  delete[] cpiste;
  delete[] alkupiste;
  const int n = cpisteita > 0 ? cpisteita : 0;
  cpiste = new CPiste[n];
  alkupiste = new CPiste[n];
  for (int i = 0; i < n; ++i) {
    const bool omaKoti = i < static_cast<int>(sizeof kodit / sizeof kodit[0]);
    cpiste[i].x = omaKoti ? kodit[i][0] : 0;
    cpiste[i].y = omaKoti ? kodit[i][1] : 0;
    cpiste[i].player = kukkaKotona;
    cpiste[i].numero = static_cast<signed char>(i);
    cpiste[i].enabled = false;
    alkupiste[i] = cpiste[i];
  }
}

void aloitaCPisteet() {
  if (!cpiste) return;
  for (int i = 0; i < cpisteita; ++i) {
    vieKotiin(i);
    cpiste[i].enabled = false;
  }
  // Only the flowers of teams that have players take part.
  for (int p = 0; p < pelaajia(); ++p)
    if (onKukka(player[p].tiimi)) cpiste[player[p].tiimi].enabled = true;
}

void laskeCPisteet() {
  if (!cpiste) return;  // not set up yet
  for (int i = 0; i < cpisteita; ++i) {
    if (!cpiste[i].enabled) continue;
    const signed char tila = cpiste[i].player;
    if (tila >= 0 && tila < kukkaKotona)
      kannettu(i);
    else if (tila == kukkaKotona)
      kotona(i);
    else if (tila == kukkaPudonnut)
      pudonnut(i);
  }
}

// Drawing

// The home square of a flower glows in its team's colour.
static void piirraKoti(const CPiste& koti, int tiimi) {
  glEnable(GL_BLEND);
  glEnable(GL_TEXTURE_2D);
  glBindTexture(GL_TEXTURE_2D, texture[tx::lightFlare]);
  valitseVari(tiimi);
  kuvaNelio(koti.x - 10, koti.y - 10, koti.x + 10, koti.y + 10, -34);
  glDisable(GL_TEXTURE_2D);
  glDisable(GL_BLEND);
}

// A carried flower rides on its carrier's drawing.
void piirraCPisteet() {
  if (cpiste == nullptr || alkupiste == nullptr) return;
  valmisteleMallit();
  for (int i = 0; i < cpisteita; ++i) {
    const CPiste& kukka = cpiste[i];
    if (!kukka.enabled) continue;
    piirraKoti(alkupiste[i], i);
    if (kukka.player == kukkaKotona)
      piirraKenttaMalli(22, alkupiste[i].x, alkupiste[i].y, 5);
    else if (kukka.player == kukkaPudonnut)
      piirraKenttaMalli(22, kukka.x, kukka.y, 5);
  }
}
