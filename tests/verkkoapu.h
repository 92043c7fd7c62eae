// Shared by the network tests, benchmarks and fuzz targets: a loopback port nobody
// listens on, and a transport without sockets that takes every byte sent.
#pragma once

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

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

}  // namespace verkkoapu
