// The client's handling of a victory message from the host: whatever bytes come, it
// reads nothing past them and writes no score outside the match.
#include <cstddef>
#include <cstdint>

#include "../verkkoapu.h"
#include "Main.h"
#include "Player.h"
#include "net.h"
#include "peliloppu.h"

namespace {
const int mukana = 5;  // players in the match; the other slots must keep their marker
const float merkki = 12345;
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const TCPsocket soketti = verkkoapu::ilmanSokettia();
  verkkoVoitonSilmukka = [] {};  // no window here
  joinpeli = true;
  hostpeli = false;
  players = mukana;
  for (int i = mukana; i < maxPlayers; ++i) player[i].pisteet = merkki;
  joinsoketti = soketti;
  kasitteleVictoryMsg(reinterpret_cast<const char*>(data), static_cast<int>(size));
  for (int i = mukana; i < maxPlayers; ++i)
    if (player[i].pisteet != merkki) __builtin_trap();
  return 0;
}
