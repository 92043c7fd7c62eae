#include "sieni.h"

#include <GL/gl.h>

#include "Main.h"
#include "Player.h"
#include "glapi.h"

using namespace saannot;

int spisteita = 1;
SPiste* spiste = nullptr;
float sienipisteet = 10, skuolemapisteet = 1;

namespace {

const float syontiSade = 5.0f;

// Somewhere in the field, outside a radius of about 22 around the planet.
void siirraSieni(SPiste& s) {
  s.x = 0;
  s.y = 0;
  s.uusiks = true;
  while (s.x * s.x + s.y * s.y <= 499) {
    s.x = static_cast<int>(random(320000) / 1000 - 160);
    s.y = static_cast<int>(random(240000) / 1000 - 120);
  }
}

}  // namespace

void alustaSPisteet() {
  delete[] spiste;
  const int n = spisteita > 0 ? spisteita : 0;
  spiste = new SPiste[n];
  for (int m = 0; m < n; ++m) spiste[m] = SPiste{0, 50, false};
}

void laskeSPisteet() {
  // Set once per call: after one mushroom is eaten, every later one in the
  // same step counts as eaten by that team too. Harmless with one mushroom.
  int syoja = -1;
  if (!spiste) return;  // not set up yet
  for (int m = 0; m < spisteita; ++m) {
    for (int p = 0; p < pelaajia(); ++p) {
      if (!pelissa(player[p]) || !lahella(p, spiste[m].x, spiste[m].y, syontiSade)) continue;
      syoja = player[p].tiimi;
      break;
    }
    if (syoja < 0) continue;
    tiimillePisteita(syoja, sienipisteet);
    siirraSieni(spiste[m]);
  }
}

// Drawing

void piirraSPisteet() {
  if (spiste == nullptr) return;
  valmisteleMallit();
  glColor4f(1, 1, 1, 1);
  for (int i = 0; i < spisteita; ++i) piirraKenttaMalli(23, spiste[i].x, spiste[i].y, 5);
}
