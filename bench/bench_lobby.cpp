// A host lobby with all 15 client connections in use (raw sockets of this process that
// answer like clients): the host's network work per lobby frame, and the time a chat
// line from one client takes through the host to all 15.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <string>

#include "../tests/verkkoapu.h"
#include "Main.h"
#include "chat.h"
#include "net.h"

namespace {

const int asiakkaita = yhteyksia - 1;
TCPsocket asiakas[asiakkaita];
std::string saatu[asiakkaita];
SDLNet_SocketSet asiakkaat = nullptr;
std::chrono::steady_clock::time_point elossa;

void aulaKierros() {
  paivitaPelaajat();
  kuuntele();
  lahettele();
}

// The clients' side: read what has come, and say they are alive twice a second.
void asiakkaatLukevat(int odotus) {
  static char b[65536];
  if (SDLNet_CheckSockets(asiakkaat, static_cast<Uint32>(odotus)) > 0)
    for (int i = 0; i < asiakkaita; ++i)
      if (SDLNet_SocketReady(asiakas[i])) {
        const int n = SDLNet_TCP_Recv(asiakas[i], b, sizeof b);
        if (n > 0) saatu[i].append(b, static_cast<size_t>(n));
      }
  if (std::chrono::steady_clock::now() - elossa < std::chrono::milliseconds(500)) return;
  elossa = std::chrono::steady_clock::now();
  for (TCPsocket s : asiakas) SDLNet_TCP_Send(s, "elossa;", 8);
}

// The lobby once for the whole program: 15 clients joined with one player each.
bool aulaValmis() {
  static bool valmis = false;
  if (valmis) return true;
  verkkoportti = verkkoapu::vapaaPortti();
  hostpeli = true;
  alustaAula();
  pelaajiasoketista[0] = 1;
  addsocket();
  asiakkaat = SDLNet_AllocSocketSet(asiakkaita);
  IPaddress ip;
  SDLNet_ResolveHost(&ip, "127.0.0.1", static_cast<Uint16>(verkkoportti));
  for (int i = 0; i < asiakkaita; ++i) {
    asiakas[i] = SDLNet_TCP_Open(&ip);
    if (!asiakas[i]) return false;
    SDLNet_TCP_AddSocket(asiakkaat, asiakas[i]);
    char nimi[16];
    const int pituus = std::snprintf(nimi, sizeof nimi, "asiakas%d", i);
    const std::string b = std::string("pelaajia ") + '\x01' + static_cast<char>(pituus) + nimi + '\0';
    SDLNet_TCP_Send(asiakas[i], b.data(), static_cast<int>(b.size()));
    for (int k = 0; k < 50 && pelaajiasoketista[i + 1] == 0; ++k) aulaKierros();
  }
  for (int c = 1; c <= asiakkaita; ++c)
    if (pelaajiasoketista[c] != 1) return false;
  valmis = true;
  return true;
}

// What the host does per lobby frame (the slot update, the poll with its keep-alive
// round, the player-count request); the clients' reading is left out of the timing.
void BM_HostinAulaKierros(benchmark::State& state) {
  if (!aulaValmis()) {
    state.SkipWithError("the clients could not join");
    return;
  }
  for (auto _ : state) {
    aulaKierros();
    state.PauseTiming();
    asiakkaatLukevat(0);
    state.ResumeTiming();
  }
  int mukana = 0;
  for (int c = 1; c <= asiakkaita; ++c) mukana += tila[c] > 0;
  state.counters["clients"] = mukana;
}
BENCHMARK(BM_HostinAulaKierros)->Unit(benchmark::kMicrosecond)->MinTime(3.0);

// A chat line from client 1 until all 15 clients have it: the client's send, the host's
// poll and relay, and every client's receive.
void BM_ChatKaikille(benchmark::State& state) {
  if (!aulaValmis()) {
    state.SkipWithError("the clients could not join");
    return;
  }
  static int numero = 0;  // every line differs, also from the runs before
  for (auto _ : state) {
    char viesti[64];
    const int pituus = std::snprintf(viesti, sizeof viesti, "x\xe4tasiakas0  :rivi %d;", ++numero) + 1;
    const std::string loppu = std::string(viesti + 14, static_cast<size_t>(pituus - 16));  // the text
    SDLNet_TCP_Send(asiakas[0], viesti, pituus);
    auto hostilla = [&] { return std::string(chatbuffer[0]).find(loppu) != std::string::npos; };
    for (int kierros = 0; kierros < 100 && !hostilla(); ++kierros) kuuntele();
    int perilla = 0;
    for (int kierros = 0; perilla < asiakkaita && kierros < 1000; ++kierros) {
      asiakkaatLukevat(1);
      perilla = 0;
      for (const std::string& s : saatu) perilla += s.find(loppu) != std::string::npos;
    }
    if (perilla < asiakkaita) state.SkipWithError("a chat line did not reach every client");
    for (std::string& s : saatu) s.clear();
  }
}
BENCHMARK(BM_ChatKaikille)->Unit(benchmark::kMicrosecond)->UseRealTime()->MinTime(3.0);

}  // namespace
