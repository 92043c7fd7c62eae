// How far behind its host a client's world runs on 127.0.0.1: a match of three
// computer pilots and one client in a child process (both headless), each noting when
// its world step reached each frame. The difference, in calculated frames, is the
// FRAME interval, the transport and the client's playout delay together. Also what the
// client sends back per second, its player's keys as busy as a computer pilot's.
#include <SDL/SDL.h>
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <vector>

#include "../tests/verkkoapu.h"
#include "Main.h"
#include "Sets.h"
#include "localgame.h"
#include "net.h"
#include "netpeli.h"
#include "peliloppu.h"
#include "simscene.h"

namespace {

const int frameja = 1500;
const float fps = 100;

struct Hetki {
  int frame;
  double ms;
};
std::vector<Hetki> hetket;
int alku = -1;

double nytMs() {
  using namespace std::chrono;
  return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

void merkitse(int f) { hetket.push_back(Hetki{f, nytMs()}); }

// The client's player presses and lets go of its keys as busily as a computer pilot.
void asiakkaanAskel(int f) {
  merkitse(f);
  for (int s = 0; s < 16; ++s) {
    if (!(omatPaikat >> s & 1u) || ottelunPelaaja[s] < 0) continue;
    Player& p = player[ottelunPelaaja[s]];
    p.pfire = f / 7 % 2 == 0;
    p.pleft = f / 13 % 3 == 0;
    p.pylos = f / 29 % 2 == 0;
  }
}

void isannanAskel(int f) {
  merkitse(f);
  if (alku < 0) alku = f;
  if (f - alku >= frameja) player[0].pisteet = (float)mpcredits;  // the match ends
}

void eiKuvaa(int) {}
void eiAulaa(void (*)(int), int) {
  if (gamequited) entterpressed = true;
}
void eiVoittoa() {}

int asiakas(int putki) {
  verkkoAskeleenJalkeen = asiakkaanAskel;
  std::snprintf(sets.nick[0], sizeof sets.nick[0], "viive");
  joinaavia = 1;
  if (!yhdistaHostiin("127.0.0.1")) return 10;
  if (!verkkoapu::odota([] { return omatPaikat != 0; }, kuuntelejoin, 15)) return 11;
  joinwaitforstart();
  // Last, what it sent per second of the match.
  hetket.push_back(Hetki{-1, (double)yhteys[hostiYhteys].lahetetty * fps / (double)hetket.size()});
  const size_t koko = hetket.size() * sizeof(Hetki);
  return write(putki, hetket.data(), koko) == (ssize_t)koko ? 0 : 12;
}

void BM_AsiakkaanViive(benchmark::State& state) {
  SDL_Init(SDL_INIT_TIMER);
  simscene::maailma(2);
  starttime = (int)SDL_GetTicks();
  aulanPiirto = eiAulaa;
  pelinPiirto = eiKuvaa;
  verkkoVoitonSilmukka = eiVoittoa;
  for (auto _ : state) {
    verkkoportti = verkkoapu::vapaaPortti();
    hostpeli = true;
    alustaAula();
    pelaajiasoketista[0] = 0;
    for (int s = 0; s < 16; ++s) mpstatus[s] = s < 3 ? 2 : s == 3 ? 0 : 1;
    gamemode = 2;
    mpcredits = 30000;
    calculatefps = fps;
    addsocket();
    int putki[2];
    if (pipe(putki) != 0) state.SkipWithError("no pipe");
    const pid_t lapsi = verkkoapu::lapsena([&] { return asiakas(putki[1]); });
    close(putki[1]);
    verkkoapu::odota([] { return mpstatus[3] == 3; }, aulanVerkko, 15);
    hetket.clear();
    alku = -1;
    verkkoAskeleenJalkeen = isannanAskel;
    hostStart();
    verkkoAskeleenJalkeen = nullptr;
    std::map<int, double> isannalla;
    for (const Hetki& h : hetket) isannalla[h.frame] = h.ms;
    std::vector<double> viiveet;
    Hetki h;
    while (read(putki[0], &h, sizeof h) == (ssize_t)sizeof h) {
      if (h.frame < 0) state.counters["client_to_host_Bps"] = h.ms;
      if (isannalla.count(h.frame)) viiveet.push_back((h.ms - isannalla[h.frame]) * fps / 1000);
    }
    close(putki[0]);
    if (verkkoapu::odotaLasta(lapsi, 20) != 0 || viiveet.size() < frameja / 2) {
      state.SkipWithError("the client did not play the match through");
      break;
    }
    std::sort(viiveet.begin(), viiveet.end());
    state.counters["median_frames"] = viiveet[viiveet.size() / 2];
    state.counters["p90_frames"] = viiveet[viiveet.size() * 9 / 10];
    state.counters["beyond_k_frames"] = viiveet[viiveet.size() / 2] - frameVali;
    for (int c = 0; c < yhteyksia; ++c) disconnect(c);
  }
}
BENCHMARK(BM_AsiakkaanViive)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
