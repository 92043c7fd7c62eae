// A chat line of any bytes and length added to the chat, and the same bytes typed into
// the input line key by key.
#include <cstddef>
#include <cstdint>

#include "chat.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const int pituus = size > 4096 ? 4096 : static_cast<int>(size);
  lisaaRivi(reinterpret_cast<const char*>(data), pituus);
  tyhjennaKirjotusBufferi();
  for (int i = 0; i + 1 < pituus; i += 2)
    kirjoitaNappi(static_cast<char>(data[i]), data[i + 1], data[i + 1] * 2);
  return 0;
}
