// Shared by the network tests, benchmarks and fuzz targets: a loopback port nobody
// listens on, and a transport without sockets that takes every byte sent.
#pragma once

#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <functional>
#include <thread>

#include "net.h"

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
