#include "domination.h"

#include <GL/gl.h>

#include "Player.h"
#include "glapi.h"

using namespace saannot;

int dpisteita = 2;
DPiste* dpiste = nullptr;
float pisteetfreimissa = 0.005f;

namespace {

const float valtausSade = 10.0f;

// The team of the first player on the point, or -1; a point with players
// of two teams on it is contested and keeps its owner (-1 again).
int valtaaja(const DPiste& d) {
  int ehdokas = -1;
  for (int p = 0; p < pelaajia(); ++p) {
    if (!pelissa(player[p]) || !lahella(p, d.x, d.y, valtausSade)) continue;
    if (ehdokas < 0)
      ehdokas = player[p].tiimi;
    else if (player[p].tiimi != ehdokas)
      return -1;
  }
  return ehdokas;
}

}  // namespace

void alustaDPisteet() {
  delete[] dpiste;
  const int n = dpisteita > 0 ? dpisteita : 0;
  dpiste = new DPiste[n]();
  const int paikat[][2] = {{140, 100}, {-140, -100}};
  for (int k = 0; k < n; ++k) {
    if (k < 2) {
      dpiste[k].x = paikat[k][0];
      dpiste[k].y = paikat[k][1];
    }
    dpiste[k].tiimi = -1;
  }
}

void laskeDPisteet() {
  if (!dpiste) return;  // not set up yet
  for (int k = 0; k < dpisteita; ++k) {
    const int uusi = valtaaja(dpiste[k]);
    if (uusi >= 0) dpiste[k].tiimi = uusi;
    // Ownership stays when everybody leaves.
    if (dpiste[k].tiimi >= 0) tiimillePisteita(dpiste[k].tiimi, pisteetfreimissa);
  }
}

// Drawing

// Each point is a big flower in its owner's colour, white while nobody holds it.
void piirraDPisteet() {
  if (dpiste == nullptr) return;
  valmisteleMallit();
  for (int i = 0; i < dpisteita; ++i) {
    const DPiste& p = dpiste[i];
    if (p.tiimi >= 0)
      valitseVari(p.tiimi);
    else
      glColor4f(1, 1, 1, 1);
    piirraKenttaMalli(22, p.x, p.y, 8);
  }
}
