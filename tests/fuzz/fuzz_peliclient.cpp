// The client's in-game stream: whatever the host sends is split into messages, each
// is checked and applied, and the world step runs on what was applied.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "Alustuksia.h"
#include "Main.h"
#include "Player.h"
#include "Sets.h"
#include "net.h"
#include "netpeli.h"
#include "scene.h"

namespace {

// Ships in every slot (their arrays are allocated once: that is the costly part),
// alive and back at the start for each input.
void maailma() {
  static bool valmis = false;
  if (!valmis) {
    dserver = true;  // the catalogue without sounds
    alota();
    for (int i = 0; i < maxPlayers; ++i) player[i].asetaAlus(alus[0]);
    valmis = true;
  }
  srand(1);
  joinpeli = true;
  hostpeli = false;
  efektitpaalla = false;
  sets.detail = 0;  // no smoke or exhaust: the debris pool is not what is tested here
  players = maxPlayers;
  gamemode = 3;
  for (int i = 0; i < maxPlayers; ++i) {
    player[i].uudestaan(alus[i * 5 % alustyyppeja]);
    player[i].kuolema = 0;
    player[i].tiimi = i % 4;
  }
  for (Pati& m : pikkumies) m.aika = 0;
  aloitaAsiakas();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  maailma();
  int frame = 0;
  for (size_t luettu = 0; luettu < size;) {
    const PeliViesti v = seuraavaPeliViesti(data + luettu, (int)(size - luettu), Lahettaja::isanta);
    luettu += v.kulutettu;
    if (v.tyyppi == PeliViesti::virhe || v.tyyppi == PeliViesti::kesken) break;
    if (v.tyyppi != PeliViesti::kehys || !kasittelePeliMsg(v.laji, v.data, v.pituus, frame)) continue;
    if (frame < 2) calculateFrame(++frame);
    sovellaErat(frame);
  }
  return 0;
}
