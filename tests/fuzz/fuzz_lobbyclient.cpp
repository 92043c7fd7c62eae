// The client's lobby handler fed the host's bytes in two receives (the first byte picks
// where they split), as the wait screen and the start handshake read them.
#include <cstddef>
#include <cstdint>

#include "../verkkoapu.h"
#include "net.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  size = size > 2048 ? 2048 : size;  // several whole team tables
  joinsoketti = verkkoapu::ilmanSokettia();
  hostpeli = false;
  joinpeli = true;
  gamequited = started2 = alkujuttusaatu = valmiinaalottamaan = false;
  joinaavia = 1 + data[0] % 4;
  const unsigned char* tavut = data + 1;
  const int pituus = static_cast<int>(size - 1), jako = data[0] * pituus / 255;
  const int kaytetty = joinwaitKasittele(tavut, jako);
  if (kaytetty < 0 || kaytetty > jako) __builtin_trap();
  if (!joinsoketti || valmiinaalottamaan || gamequited) return 0;  // nothing more is read
  static unsigned char puskuri[vastaanottoTila];
  int n = 0;
  for (int i = kaytetty; i < pituus && n < vastaanottoTila; ++i) puskuri[n++] = tavut[i];
  joinwaitKasittele(puskuri, n);
  return 0;
}
