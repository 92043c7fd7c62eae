#include "peliloppu.h"

#include "Main.h"
#include "scene.h"

int mpcredits = 0;
signed char voittotiimi = 0;

namespace {

bool kukaanYltaa(double raja) {
  for (int i = 0; i < pelaajaLkm(); ++i)
    if (player[i].pisteet >= raja) return true;
  return false;
}

bool tappopeli() { return gamemode == 0 || gamemode == 1; }
bool tavoitePeli() { return gamemode >= 2 && gamemode <= 4; }

}  // namespace

bool tiimisaantoLoppu() {
  // Counts changes of team in slot order, not distinct teams: A, B, A is 3.
  int edellinen = -1, vaihtoja = 0;
  for (int i = 0; i < pelaajaLkm(); ++i) {
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
  for (int i = 0; i < pelaajaLkm(); ++i) {
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
  for (int i = 0; i < pelaajaLkm(); ++i) {
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

// Drawing (filled by the rendering work)
void drawVictory(int) {}
