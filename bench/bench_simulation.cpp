// Cost of one calculated frame of the world step in three typical loads.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>

#include "ai.h"
#include "ctf.h"
#include "simscene.h"

namespace {

void tyhjaMaailma(int pelaajia) {
  simscene::maailma(pelaajia, 3, 99);
  gamemode = 1;
  alustaAsteroidit();
}

// Ships on a ring around the planet, all on different teams.
void kehalle(int pelaajia, const int* tyypit, int tyyppeja) {
  for (int i = 0; i < pelaajia; ++i) {
    const float kulma = i * 2 * saannot::pii / pelaajia;
    simscene::laita(i, tyypit[i % tyyppeja], std::cos(kulma) * 120, std::sin(kulma) * 90,
                    i * 360.0f / pelaajia + 180);
    player[i].ihmispelaaja = true;
  }
}

// Keeps the load steady: nobody dies or runs dry, so the mix of ships stays as set up.
void pidaTaysina(int pelaajia) {
  for (int i = 0; i < pelaajia; ++i) {
    player[i].energia = player[i].alus.energia;
    player[i].fuel = player[i].alus.fuel;
  }
}

void BM_KaksiAlustaLentaa(benchmark::State& state) {
  tyhjaMaailma(2);
  const int tyypit[] = {1, 3};
  kehalle(2, tyypit, 2);
  for (int i = 0; i < 2; ++i) {
    player[i].pylos = true;
    player[i].pleft = i == 0;
  }
  int frame = 0;
  for (auto _ : state) {
    pidaTaysina(2);
    calculateFrame(++frame);
  }
}
BENCHMARK(BM_KaksiAlustaLentaa);

// Sixteen ships of the heavy-shot types hold fire with a full tank, after their
// shot arrays have filled up.
void BM_RaskaatAseetTulessa(benchmark::State& state) {
  tyhjaMaailma(maxPlayers);
  const int tyypit[] = {8, 12, 16, 21, 22, 23, 15, 4};
  kehalle(maxPlayers, tyypit, 8);
  for (int i = 0; i < maxPlayers; ++i) player[i].pfire = true;
  int frame = 0;
  for (; frame < 1000; ++frame) {
    pidaTaysina(maxPlayers);
    calculateFrame(frame);
  }
  for (auto _ : state) {
    pidaTaysina(maxPlayers);
    calculateFrame(++frame);
  }
}
BENCHMARK(BM_RaskaatAseetTulessa)->Unit(benchmark::kMicrosecond);

// The worst case of shot against shot: sixteen ships each with 200 live shots
// that break and can be broken, spread over the whole field. The shots are laid
// out again before every measured frame, so every frame starts full.
void BM_LaukausVastaanLaukaus(benchmark::State& state) {
  tyhjaMaailma(maxPlayers);
  const int tyypit[] = {8, 21, 22};  // 200 primary slots each, breaking and breakable
  kehalle(maxPlayers, tyypit, 3);
  const int laukauksia = 200;
  static float paikat[maxPlayers][laukauksia][4];
  for (auto& omat : paikat)
    for (auto& p : omat) {
      p[0] = random(320) - 160;
      p[1] = random(240) - 120;
      p[2] = random(0.6) - 0.3;
      p[3] = random(0.6) - 0.3;
    }
  int frame = 0;
  for (auto _ : state) {
    state.PauseTiming();
    pidaTaysina(maxPlayers);
    for (int i = 0; i < maxPlayers; ++i)
      for (int k = 0; k < laukauksia; ++k)
        simscene::ammus(i, k, paikat[i][k][0], paikat[i][k][1], paikat[i][k][2], paikat[i][k][3]);
    state.ResumeTiming();
    calculateFrame(++frame);
  }
}
BENCHMARK(BM_LaukausVastaanLaukaus)->Unit(benchmark::kMicrosecond);

// Sixteen computer pilots in four teams at the top level, "ai vs ai", deciding
// their buttons for one frame; the world step itself runs between the measured
// parts with the pilots' buttons left as they set them.
void BM_KuusitoistaLentajaa(benchmark::State& state) {
  tyhjaMaailma(maxPlayers);
  sets.ai = aiTasoja - 1;
  sets.aikohteet = true;
  aiAlusta();
  const int tyypit[] = {8, 12, 16, 21, 22, 23, 15, 4, 9, 13, 6, 18, 7, 14, 3, 0};
  kehalle(maxPlayers, tyypit, maxPlayers);
  for (int i = 0; i < maxPlayers; ++i) player[i].tiimi = i % 4;
  int frame = 0;
  auto askel = [&frame]() {
    pidaTaysina(maxPlayers);
    for (int i = 0; i < maxPlayers; ++i) player[i].ihmispelaaja = true;
    calculateFrame(++frame);
    for (int i = 0; i < maxPlayers; ++i) player[i].ihmispelaaja = false;
  };
  for (int f = 0; f < 1000; ++f) {
    for (int i = 0; i < maxPlayers; ++i) player[i].ailiiku();
    askel();
  }
  for (auto _ : state) {
    for (int i = 0; i < maxPlayers; ++i) player[i].ailiiku();
    state.PauseTiming();
    askel();
    state.ResumeTiming();
  }
}
BENCHMARK(BM_KuusitoistaLentajaa)->Unit(benchmark::kMicrosecond);

}  // namespace
