// Round-robin of the 24 ships, computer pilot against computer pilot, one on one
// and headless. A round ends at the first death or after a set number of frames;
// the survivor wins, else the one with the larger share of its hull left.
//
//   turnaus [--rounds N] [--frames F] [--level L] [--seed S] [--matrix]
//
// Prints a table of win rates per ship, strongest first, beside the ship's price
// in the credits game (the price is what a fair win rate should follow); --matrix
// adds the row-against-column win counts.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "ai.h"
#include "simscene.h"

namespace {

struct Asetukset {
  int kierroksia = 4;
  int freimeja = 6000;
  int taso = 3;
  unsigned siemen = 1;
  bool taulukko = false;
};

bool lueLuku(int argc, char** argv, int& k, const char* nimi, int& arvo) {
  if (std::strcmp(argv[k], nimi) != 0 || k + 1 >= argc) return false;
  arvo = std::atoi(argv[++k]);
  return true;
}

bool lueAsetukset(int argc, char** argv, Asetukset& a) {
  for (int k = 1; k < argc; ++k) {
    int siemen = 0;
    if (lueLuku(argc, argv, k, "--rounds", a.kierroksia) || lueLuku(argc, argv, k, "--frames", a.freimeja) ||
        lueLuku(argc, argv, k, "--level", a.taso))
      continue;
    if (lueLuku(argc, argv, k, "--seed", siemen)) {
      a.siemen = (unsigned)siemen;
      continue;
    }
    if (std::strcmp(argv[k], "--matrix") == 0) {
      a.taulukko = true;
      continue;
    }
    std::printf("usage: turnaus [--rounds N] [--frames F] [--level 0-%d] [--seed S] [--matrix]\n",
                aiTasoja - 1);
    return false;
  }
  a.kierroksia = std::max(a.kierroksia, 1);
  a.freimeja = std::max(a.freimeja, 1);
  return true;
}

// 1 when slot 0 wins, -1 when slot 1 wins, 0 for a draw.
int kierros(int a, int b, int nro, const Asetukset& as) {
  simscene::maailma(2, 0, as.siemen * 7919u + (unsigned)(a * 24 + b) * 131u + (unsigned)nro);
  gamemode = 0;
  sets.aikohteet = true;
  sets.ai = as.taso;
  alustaAsteroidit();
  // Sides alternate between rounds; the start points sit on opposite sides of the planet.
  const float puoli = nro % 2 ? -1.0f : 1.0f;
  simscene::laita(0, a, -110 * puoli, 70 * puoli, nro % 2 ? -30.0f : 150.0f);
  simscene::laita(1, b, 110 * puoli, -70 * puoli, nro % 2 ? 150.0f : -30.0f);
  for (int i = 0; i < 2; ++i) player[i].ihmispelaaja = false;
  for (int f = 1; f <= as.freimeja; ++f) {
    calculateFrame(f);
    const bool kuoli0 = player[0].kuolema >= 1, kuoli1 = player[1].kuolema >= 1;
    if (kuoli0 || kuoli1) return kuoli0 == kuoli1 ? 0 : (kuoli1 ? 1 : -1);
  }
  const double osuus0 = player[0].energia / player[0].alus.energia;
  const double osuus1 = player[1].energia / player[1].alus.energia;
  if (std::fabs(osuus0 - osuus1) < 1e-6) return 0;
  return osuus0 > osuus1 ? 1 : -1;
}

struct Tulos {
  int voitot = 0, tappiot = 0, tasat = 0;
  double osuus() const {
    const int kaikki = voitot + tappiot + tasat;
    return kaikki ? (voitot + 0.5 * tasat) / kaikki : 0;
  }
};

}  // namespace

int main(int argc, char** argv) {
  Asetukset as;
  if (!lueAsetukset(argc, argv, as)) return 2;
  static Tulos tulos[alustyyppeja];
  static int voitti[alustyyppeja][alustyyppeja];
  for (int a = 0; a < alustyyppeja; ++a)
    for (int b = a + 1; b < alustyyppeja; ++b)
      for (int k = 0; k < as.kierroksia; ++k) {
        const int r = kierros(a, b, k, as);
        if (r == 0) {
          ++tulos[a].tasat;
          ++tulos[b].tasat;
        } else {
          const int voittaja = r > 0 ? a : b, haviaja = r > 0 ? b : a;
          ++tulos[voittaja].voitot;
          ++tulos[haviaja].tappiot;
          ++voitti[voittaja][haviaja];
        }
      }
  int jarjestys[alustyyppeja];
  for (int n = 0; n < alustyyppeja; ++n) jarjestys[n] = n;
  std::stable_sort(jarjestys, jarjestys + alustyyppeja,
                   [](int x, int y) { return tulos[x].osuus() > tulos[y].osuus(); });
  std::printf("level %d, %d rounds per pairing, %d frames per round, seed %u\n", as.taso, as.kierroksia,
              as.freimeja, as.siemen);
  std::printf("ship  price   wins losses draws  win rate\n");
  for (int n : jarjestys)
    std::printf("%4d  %5.0f  %5d %6d %5d  %7.1f%%\n", n, alus[n].pistemaara, tulos[n].voitot,
                tulos[n].tappiot, tulos[n].tasat, 100 * tulos[n].osuus());
  if (!as.taulukko) return 0;
  std::printf("\nwins of row against column\n    ");
  for (int b = 0; b < alustyyppeja; ++b) std::printf("%3d", b);
  std::printf("\n");
  for (int a = 0; a < alustyyppeja; ++a) {
    std::printf("%3d ", a);
    for (int b = 0; b < alustyyppeja; ++b) std::printf("%3d", a == b ? 0 : voitti[a][b]);
    std::printf("\n");
  }
  return 0;
}
