// Drawing cost of a sixteen-ship battle at 1024 x 768, detail 3: the whole
// frame and each of its steps. Needs an X display (run it under xvfb-run).
#include <GL/gl.h>
#include <SDL/SDL.h>
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "Alustuksia.h"
#include "Main.h"
#include "Player.h"
#include "Sets.h"
#include "glapi.h"
#include "scene.h"

namespace {

const int taisteluFreimeja = 1500;  // 15 seconds of play before the measuring starts

bool avaaIkkuna() {
  if (chdir(VORTA_DATA_DIR) != 0) return false;
  if (SDL_Init(SDL_INIT_VIDEO) != 0) return false;
  SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
  if (SDL_SetVideoMode(1024, 768, 0, SDL_OPENGL) == nullptr) return false;
  screenwidth = 1024;
  screenheight = 768;
  setupOpengl(1024, 768);
  return true;
}

// Every ship holds fire and turns and thrusts in its own rhythm, so that the
// field fills with shots, beams, trails and debris as in a real melee.
void painaNappeja(int freimi) {
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    Player& p = player[i];
    p.pfire = true;
    p.pease = (freimi + 37 * i) % 400 < 40;
    p.pylos = (freimi / (20 + i)) % 3 != 0;
    p.pleft = (freimi / (50 + 7 * i)) % 2 == 0;
    p.pright = !p.pleft && i % 3 == 0;
  }
}

// What the measured picture holds, so that the figures can be read against it.
void kerroTaistelusta() {
  int laukauksia = 0, sirpaleet = 0;
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    for (int k = 0; k < player[i].alus.maxpadit; ++k) laukauksia += player[i].pati[k].aika > 0;
    for (int k = 0; k < player[i].alus.maxepadit; ++k) laukauksia += player[i].epati[k].aika > 0;
  }
  for (int k = 0; k < sirpaleita; ++k) sirpaleet += sirpale[k].aika > 0;
  std::fprintf(stderr, "renderer %s: %d shots, %d debris shards in the picture\n",
               reinterpret_cast<const char*>(glGetString(GL_RENDERER)), laukauksia, sirpaleet);
}

void valmisteleTaistelu() {
  static bool valmis = false;
  if (valmis) return;
  valmis = true;
  if (!avaaIkkuna()) {
    std::fprintf(stderr, "no OpenGL window: %s\n", SDL_GetError());
    std::exit(1);
  }
  srand(1);
  dserver = true;  // no sounds: the catalogue then leaves its sound slots empty
  alota();
  sets.detail = 3;
  sets.cammode = 0;
  gamemode = 0;
  pistepeli = false;
  players = maxPlayers;
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    player[i].numero = i;
    player[i].tiimi = i;
    player[i].ihmispelaaja = true;
    player[i].asetaAlus(alus[i]);
    player[i].uudestaan(alus[i]);
  }
  for (int f = 1; f <= taisteluFreimeja; ++f) {
    painaNappeja(f);
    calculateFrame(f);
  }
  kerroTaistelusta();
}

void BM_DrawFrame(benchmark::State& state) {
  valmisteleTaistelu();
  for (auto _ : state) drawFrame(0);
}
BENCHMARK(BM_DrawFrame)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);

// One step of the frame on top of the camera it needs; glFinish makes the
// software renderer finish the step inside the measured time.
template <void (*vaihe)()>
void BM_Step(benchmark::State& state) {
  valmisteleTaistelu();
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  for (auto _ : state) {
    asetaKameraJaValo();
    vaihe();
    glFinish();
  }
}

void tyhja() {}
void kuvanVaihto() { SDL_GL_SwapBuffers(); }

BENCHMARK_TEMPLATE(BM_Step, tyhja)->Name("step/camera_and_light")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Step, piirraTausta)->Name("step/background")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Step, piirraPelaajat)->Name("step/players")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Step, piirraPikkumiehet)->Name("step/little_men")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Step, piirraAsteroidit)->Name("step/asteroids")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Step, drawPlanet)->Name("step/planet")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Step, piirraKentanReuna)->Name("step/field_frame")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Step, piirraSirpaleet)->Name("step/debris")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Step, piirraMerkit)->Name("step/markers_16_humans")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Step, piirraHud)->Name("step/hud")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Step, piirraTilanne)->Name("step/standings_tab")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Step, kuvanVaihto)->Name("step/swap")->Unit(benchmark::kMillisecond);

}  // namespace
