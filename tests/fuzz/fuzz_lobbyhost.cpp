// The host's lobby handler fed a client's bytes in two receives (the first byte picks the
// connection, the second where the bytes split). Four clients are connected: a relayed
// chat line costs a send to each, and more of them would find nothing new.
#include <cstddef>
#include <cstdint>

#include "../verkkoapu.h"
#include "net.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  size = size > 2048 ? 2048 : size;  // twice the longest message
  const TCPsocket tunnus = verkkoapu::ilmanSokettia();
  hostpeli = true;
  alustaAula();
  tila[0] = 1;
  pelaajiasoketista[0] = 1;
  const int klientteja = 4;
  for (int c = 1; c <= klientteja; ++c) {
    tcpsoketit[c] = tunnus;
    tila[c] = 1;
  }
  const int c = 1 + data[0] % klientteja;
  const unsigned char* tavut = data + 2;
  const int pituus = static_cast<int>(size - 2), jako = data[1] * pituus / 255;
  const int kaytetty = hostNetKasittele(c, tavut, jako);
  if (kaytetty < 0 || kaytetty > jako) __builtin_trap();
  // What was left waits in front of the next receive, as the connection's buffer keeps it.
  static unsigned char puskuri[vastaanottoTila];
  int n = 0;
  for (int i = kaytetty; i < pituus && n < vastaanottoTila; ++i) puskuri[n++] = tavut[i];
  hostNetKasittele(c, puskuri, n);
  return 0;
}
