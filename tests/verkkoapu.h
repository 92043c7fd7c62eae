// Shared by the network tests, benchmarks and fuzz targets: an unused loopback port,
// socketless transports, raw clients, child processes and the replaced hooks put back.
#pragma once

#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <thread>

#include "localgame.h"
#include "net.h"
#include "netav.h"
#include "netpeli.h"
#include "peliloppu.h"
#include "scene.h"

namespace verkkoapu {

// The kernel's pick for a socket bound to port 0.
inline int vapaaPortti() {
  const int s = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in a{};
  a.sin_family = AF_INET;
  a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  bind(s, reinterpret_cast<sockaddr*>(&a), sizeof a);
  socklen_t koko = sizeof a;
  getsockname(s, reinterpret_cast<sockaddr*>(&a), &koko);
  close(s);
  return ntohs(a.sin_port);
}

// The send queue has already copied (and so read) every byte.
inline int otaKaikki(TCPsocket, const void*, int n) { return n; }
inline void eiSulkua(TCPsocket) {}

// Sends and closes go to the two above; returns a stand-in socket that nobody reads.
inline TCPsocket ilmanSokettia() {
  tcpLahetys = otaKaikki;
  tcpSulku = eiSulkua;
  static char tunnus;
  return reinterpret_cast<TCPsocket>(&tunnus);
}

// Stand-in sockets (the addresses of these bytes) whose sends `kaappaa` keeps, by
// socket, in `lahetetyt`; a send to `rikki` fails as a broken connection would.
inline char tunnukset[yhteyksia + 1];
inline TCPsocket tunnus(int c) { return reinterpret_cast<TCPsocket>(&tunnukset[c]); }
inline std::map<TCPsocket, std::string> lahetetyt;
inline TCPsocket rikki = nullptr;
inline int kaappaa(TCPsocket s, const void* data, int n) {
  if (s == rikki) {
    errno = EPIPE;
    return -1;
  }
  lahetetyt[s].append(static_cast<const char*>(data), static_cast<size_t>(n));
  return n;
}

// A lobby screen that draws nothing; an error screen closes at once.
inline void aulaIlmanRuutua(void (*)(int), int) {
  if (gamequited) entterpressed = true;
}

// A client over a real socket that announces one player `nimi` (none when null) and
// then does only what the test does.
inline TCPsocket raakaAsiakas(const char* nimi) {
  IPaddress ip;
  SDLNet_ResolveHost(&ip, "127.0.0.1", static_cast<Uint16>(verkkoportti));
  TCPsocket s = SDLNet_TCP_Open(&ip);
  if (s && nimi) {
    const std::string b =
        std::string("pelaajia ") + '\x01' + static_cast<char>(std::strlen(nimi)) + nimi + '\0';
    SDLNet_TCP_Send(s, b.data(), static_cast<int>(b.size()));
  }
  return s;
}

// Every connection closed, the transport, screens and hooks of the game put back, and
// this process neither host nor client.
inline void palautaVerkko() {
  for (int c = 0; c < yhteyksia; ++c) disconnect(c);  // a stand-in goes through the test's close
  joinsoketti = nullptr;
  tcpLahetys = SDLNet_TCP_Send;
  tcpSulku = SDLNet_TCP_Close;
  tcpVastaanotto = SDLNet_TCP_Recv;
  aulanPiirto = [](void (*ruutu)(int), int kohta) { ruutu(kohta); };
  pelinPiirto = drawFrame;
  verkkoVoitonSilmukka = netVictoryLoop;
  verkkoAskeleenJalkeen = nullptr;
  otteluJatkuu = verkkoTausta;
  alusvalinnanPiirto = drawAlusValinta;
  hostpeli = joinpeli = false;
  omatPaikat = 0;
  rikki = nullptr;
}

using Kello = std::chrono::steady_clock;

inline double sekunteja(Kello::time_point alku) {
  return std::chrono::duration<double>(Kello::now() - alku).count();
}

// Runs f in a child process, which exits with f's result.
inline pid_t lapsena(const std::function<int()>& f) {
  std::fflush(stdout);  // or the child's exit writes the parent's pending lines again
  const pid_t pid = fork();
  if (pid != 0) return pid;
  suljeYhteys(0);  // the host's listening socket is the parent's
  tila[0] = 0;
  hostpeli = false;
  const int tulos = f();
  std::fflush(stdout);
  _exit(tulos);
}

// The child's exit status, or -1 when it had to be killed after `sekuntia`.
inline int odotaLasta(pid_t pid, double sekuntia) {
  const auto alku = Kello::now();
  int status = 0;
  while (waitpid(pid, &status, WNOHANG) == 0) {
    if (sekunteja(alku) > sekuntia) {
      kill(pid, SIGKILL);
      waitpid(pid, &status, 0);
      return -1;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Runs `kierros` until `ehto` holds or `sekuntia` have passed.
inline bool odota(const std::function<bool()>& ehto, void (*kierros)(), double sekuntia) {
  const auto alku = Kello::now();
  while (!ehto()) {
    if (sekunteja(alku) > sekuntia) return false;
    kierros();
  }
  return true;
}

}  // namespace verkkoapu
