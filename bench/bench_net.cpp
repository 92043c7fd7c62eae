// The host's network cost in a typical battle: sixteen computer pilots in four teams
// fight a death match with random ships on a host. Measured: the collector and the
// FRAME encoder per calculated frame, and the bytes a client is sent per second.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "ai.h"
#include "netpeli.h"
#include "simscene.h"

namespace {

const int k = 2;          // a FRAME every second calculated frame
const int sekunti = 100;  // calculated frames per second
unsigned char puskuri[maxFrameViesti];

void taistelu(int taso) {
  simscene::maailma(maxPlayers, 3, 2024);
  hostpeli = true;
  joinpeli = false;
  gamemode = 1;
  sets.ai = taso;
  sets.aikohteet = true;
  aiAlusta();
  simscene::rengas(3);
  aloitaKeraaja();
}

// One calculated frame with the host loop's respawn stood in for.
void askel(int f) {
  calculateFrame(f);
  for (int i = 0; i < maxPlayers; ++i) {
    if (!playeruudestaan[i]) continue;
    player[i].uudestaan(alus[(int)random(alustyyppeja - 1)]);
    player[i].kuolema = 199;  // the timer goes on from its wait at 200
    playeruudestaan[i] = 0;
  }
}

// Collect after every calculated frame, encode after every second; the median and the
// 99th percentile of single frames are reported beside the mean.
void BM_KeraaJaKoodaa(benchmark::State& state) {
  taistelu((int)state.range(0));
  int f = 0;
  for (; f < 10 * sekunti; ++f) askel(f + 1);
  std::vector<double> ajat;
  ajat.reserve(state.max_iterations);
  for (auto _ : state) {
    askel(++f);
    const auto alku = std::chrono::steady_clock::now();
    keraaTapahtumat();
    if (f % k == 0) benchmark::DoNotOptimize(koodaaFrame(f, puskuri, sizeof puskuri));
    const double aika = std::chrono::duration<double>(std::chrono::steady_clock::now() - alku).count();
    state.SetIterationTime(aika);
    ajat.push_back(aika * 1e6);
  }
  std::sort(ajat.begin(), ajat.end());
  state.counters["median_us"] = ajat[ajat.size() / 2];
  state.counters["p99_us"] = ajat[ajat.size() * 99 / 100];
}
BENCHMARK(BM_KeraaJaKoodaa)->Arg(2)->Arg(3)->UseManualTime()->Iterations(6000)->Unit(benchmark::kMicrosecond);

// A minute of battle: the bytes of FRAMEs per second to one client, on average and
// in the busiest second; and what a client with one or with four local players (the
// pilots' buttons) sends back: a BUTTONS on every change of its buttons, no closer
// than 20 ms and no further apart than 50 ms.
struct Napinlahettaja {
  int paikallisia, edellinen = -100;
  uint8_t napit[4] = {};
  long tavuja = 0;

  void frame(int f) {
    SlotinNapit n[4];
    bool muuttui = false;
    for (int i = 0; i < paikallisia; ++i) {
      n[i] = {(uint8_t)i, napitBitteina(player[i])};
      muuttui = muuttui || n[i].napit != napit[i];
    }
    if (!(muuttui && f - edellinen >= 2) && f - edellinen < 5) return;
    for (int i = 0; i < paikallisia; ++i) napit[i] = n[i].napit;
    tavuja += koodaaNapit(puskuri, sizeof puskuri, (uint16_t)f, 0, f, n, paikallisia);
    edellinen = f;
  }
};

void BM_Kaistanleveys(benchmark::State& state) {
  const int taso = (int)state.range(0);
  for (auto _ : state) {
    taistelu(taso);
    std::vector<long> sekunnit(60, 0);
    Napinlahettaja yksi{1}, nelja{4};
    for (int f = 1; f <= 60 * sekunti; ++f) {
      askel(f);
      keraaTapahtumat();
      if (f % k == 0) sekunnit[(f - 1) / sekunti] += koodaaFrame(f, puskuri, sizeof puskuri);
      yksi.frame(f);
      nelja.frame(f);
    }
    long yhteensa = 0;
    for (long s : sekunnit) yhteensa += s;
    state.counters["host_to_client_Bps"] = yhteensa / 60.0;
    state.counters["busiest_second_B"] = *std::max_element(sekunnit.begin(), sekunnit.end());
    state.counters["client1_to_host_Bps"] = yksi.tavuja / 60.0;
    state.counters["client4_to_host_Bps"] = nelja.tavuja / 60.0;
  }
}
BENCHMARK(BM_Kaistanleveys)->Arg(2)->Arg(3)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
