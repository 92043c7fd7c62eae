// The host's loop in a typical battle: sixteen computer pilots in four teams fight a
// death match with random ships while 15 clients (bare sockets of this process on
// 127.0.0.1, which read everything and acknowledge it as a client does) each own a
// slot. Measured: the host's network work per calculated frame (collecting, encoding
// and sending to all 15 under the flow control) and the bytes one client is sent per
// second. Then a client in a child process: how many frames after the host computed
// a frame the client's world shows it.
#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "../tests/verkkoapu.h"
#include "Main.h"
#include "Sets.h"
#include "ai.h"
#include "net.h"
#include "netav.h"
#include "netpeli.h"
#include "peliloppu.h"
#include "scene.h"
#include "simscene.h"

namespace {

using Kello = std::chrono::steady_clock;
const int asiakkaita = yhteyksia - 1;
const int sekunti = 100;  // calculated frames per second
const uint32_t kuittausVali = 4096;

Uint32 kello = 0;  // the frame clock stands still: the benchmark steps the world itself
Uint32 seisovaKello() { return kello; }

struct Asiakas {
  TCPsocket s;
  uint32_t luettu, kuitattu;
  uint16_t jarjestys;
  int pelaaja;
};
Asiakas asiakas[asiakkaita];
SDLNet_SocketSet joukko = nullptr;

// The clients read what has come and acknowledge it, as often as a client does.
void asiakkaatLukevat(int frame) {
  static char b[65536];
  if (SDLNet_CheckSockets(joukko, 0) > 0)
    for (Asiakas& a : asiakas)
      while (SDLNet_SocketReady(a.s)) {
        const int n = SDLNet_TCP_Recv(a.s, b, sizeof b);
        if (n <= 0) break;
        a.luettu += (uint32_t)n;
        if (n < (int)sizeof b) break;
      }
  for (Asiakas& a : asiakas) {
    if (frame % 5 != 0 && a.luettu - a.kuitattu < kuittausVali) continue;
    unsigned char v[32];
    SDLNet_TCP_Send(a.s, v, koodaaNapit(v, sizeof v, ++a.jarjestys, a.luettu, (uint32_t)frame, nullptr, 0));
    a.kuitattu = a.luettu;
  }
}

// The lobby and the match once for the whole program.
bool otteluValmis() {
  static bool valmis = false;
  if (valmis) return true;
  simscene::maailma(maxPlayers, 3, 2024);
  pacingTicks = seisovaKello;
  starttime = 0;
  calculatefps = sekunti;
  verkkoportti = verkkoapu::vapaaPortti();
  hostpeli = true;
  alustaAula();
  pelaajiasoketista[0] = 0;
  mpstatus[0] = 2;  // the one slot no client takes
  for (int s = 0; s < 16; ++s) mptiimi[s] = s % 4;
  gamemode = 1;
  mpcredits = 30000;
  addsocket();
  joukko = SDLNet_AllocSocketSet(asiakkaita);
  IPaddress ip;
  SDLNet_ResolveHost(&ip, "127.0.0.1", (Uint16)verkkoportti);
  for (int i = 0; i < asiakkaita; ++i) {
    asiakas[i] = Asiakas{SDLNet_TCP_Open(&ip), 0, 0, 0, -1};
    if (!asiakas[i].s) return false;
    SDLNet_TCP_AddSocket(joukko, asiakas[i].s);
    char nimi[16];
    const int pituus = std::snprintf(nimi, sizeof nimi, "asiakas%d", i);
    const std::string b = std::string("pelaajia ") + '\x01' + (char)pituus + nimi + '\0';
    SDLNet_TCP_Send(asiakas[i].s, b.data(), (int)b.size());
    for (int k = 0; k < 50 && pelaajiasoketista[i + 1] == 0; ++k) aulanVerkko();
  }
  for (int c = 1; c <= asiakkaita; ++c)
    if (pelaajiasoketista[c] != 1) return false;
  rakennaVerkkoOttelu();
  sets.ai = 2;
  sets.aikohteet = true;
  aiAlusta();
  simscene::rengas(3);  // the slots are the clients', the flying the pilots'
  for (int i = 0; i < maxPlayers; ++i) player[i].pisteet = 30000;
  asiakkaatLukevat(0);
  aloitaIsannanOttelu();
  valmis = true;
  return true;
}

// One calculated frame of the host's with the respawns it hands out; returns the time
// of the network part: collecting, and every second frame encoding and sending.
double askel(int f) {
  calculateFrame(f);
  for (int i = 0; i < maxPlayers; ++i) {
    if (!playeruudestaan[i]) continue;
    playeruudestaan[i] = 0;
    const int n = ostettavaSatunnainen(player[i]);
    if (n >= 0) annaVerkkoAlus(i, n);
  }
  const auto alku = Kello::now();
  keraaTapahtumat();
  if (f % frameVali == 0) hostLahetaPeli(f);
  tyhjennaJonot();
  return std::chrono::duration<double>(Kello::now() - alku).count();
}

void BM_IsannanVerkkotyo(benchmark::State& state) {
  if (!otteluValmis()) {
    state.SkipWithError("the clients could not join");
    return;
  }
  static int f = 0;
  std::vector<double> ajat;
  std::vector<uint64_t> sekunnit;
  uint64_t ennen = yhteys[1].lahetetty;
  for (auto _ : state) {
    const double aika = askel(++f);
    state.SetIterationTime(aika);
    ajat.push_back(aika * 1e6);
    asiakkaatLukevat(f);
    verkkoTausta();  // the acknowledgements
    if (f % sekunti) continue;
    sekunnit.push_back(yhteys[1].lahetetty - ennen);
    ennen = yhteys[1].lahetetty;
  }
  std::sort(ajat.begin(), ajat.end());
  state.counters["median_us"] = ajat[ajat.size() / 2];
  state.counters["p99_us"] = ajat[ajat.size() * 99 / 100];
  uint64_t yhteensa = 0;
  for (uint64_t s : sekunnit) yhteensa += s;
  if (!sekunnit.empty()) {
    state.counters["host_to_client_Bps"] = (double)yhteensa / (double)sekunnit.size();
    state.counters["busiest_second_B"] = (double)*std::max_element(sekunnit.begin(), sekunnit.end());
  }
  state.counters["resyncs"] = verkkoLaskurit.resynct;
  state.counters["shortened"] = verkkoLaskurit.lyhennetyt;
}
BENCHMARK(BM_IsannanVerkkotyo)->UseManualTime()->Iterations(6000)->Unit(benchmark::kMicrosecond);

}  // namespace
