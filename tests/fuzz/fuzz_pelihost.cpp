// The host's handling of one client's in-game stream: split into messages, each
// checked and applied for a connection that owns some of the slots.
#include <cstddef>
#include <cstdint>

#include "Player.h"
#include "netpeli.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const int omistaja[maxPlayers] = {0, 1, 1, 2, 3, 1, -2, -2, 4, 5, 1, 6, 7, 8, 9, 1};
  for (size_t luettu = 0; luettu < size;) {
    const PeliViesti v = seuraavaPeliViesti(data + luettu, (int)(size - luettu), Lahettaja::asiakas);
    luettu += v.kulutettu;
    if (v.tyyppi == PeliViesti::virhe || v.tyyppi == PeliViesti::kesken) break;
    if (v.tyyppi == PeliViesti::kehys &&
        kasitteleAsiakkaanMsg(1, v.laji, v.data, v.pituus, omistaja) != AsiakkaanTulos::ok)
      break;
  }
  return 0;
}
