// Shots against shots: sixteen ships with 200 live breakable shots each, the crowded
// case of a full match. One iteration is one calculated frame's worth of checks.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "Alus.h"
#include "Alustuksia.h"
#include "Main.h"
#include "Player.h"
#include "net.h"

namespace {

void kohtaus(double leveys) {
  static bool valmis = false;
  if (!valmis) {
    dserver = true;
    alota();
    for (Player& p : player) p.asetaAlus(alus[21]);
    valmis = true;
  }
  srand(7);
  players = maxPlayers;
  pistepeli = joinpeli = false;
  const int laivat[] = {8, 21, 22};  // 200 breakable slots each
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    Player& p = player[i];
    p.alus = alus[laivat[i % 3]];
    for (int k = 0; k < 200; ++k) {
      Pati& s = p.pati[k];
      s.x = (float)(random(leveys) - leveys / 2);
      s.y = (float)(random(leveys * 0.75) - leveys * 0.375);
      s.aika = 100;
      s.energia = 1e9f;  // nothing dies, so every iteration sees the same scene
    }
  }
}

void BM_ShotsAgainstShots(benchmark::State& state) {
  kohtaus((double)state.range(0));
  for (auto _ : state)
    for (int i = 0; i < saannot::pelaajia(); ++i) player[i].tarkistaHajosikoPadit();
}

}  // namespace

// Field widths: the whole field, and a brawl packed into a tenth of it.
BENCHMARK(BM_ShotsAgainstShots)->Arg(320)->Arg(32)->Unit(benchmark::kMillisecond);
