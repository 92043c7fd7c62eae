// Every wire record reader, fed whatever bytes remain, one record after another
// as a message handler steps through a buffer.
#include <cstddef>
#include <cstdint>

#include "Player.h"
#include "ctf.h"
#include "nethelp.h"
#include "scene.h"
#include "sieni.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Lukija lukija(data, (int)size);
  Player& p = player[0];
  netPati np{};
  kuolevaPati kp{};
  Pati pati{};
  SPiste sp{};
  CPiste cp{};
  pikkumiessiirto pm{};
  limajuttu lj{};
  asteroidipox ap{};
  AlkuTiedot at{};
  uint8_t valinta = 0;
  while (lukija.tavu(valinta)) {
    switch (valinta % 11) {
      case 0: lukija.tietue(&p, coordkoko, lueCoords); break;
      case 1: lukija.tietue(&np, netpatikoko, lueNetpati); break;
      case 2: lukija.tietue(&kp, kuolevapatikoko, lueKuolevapati); break;
      case 3: lukija.tietue(&pati, asteroidikoko, lueAsteroidi); break;
      case 4: lukija.tietue(&sp, spistekoko, lueSPiste); break;
      case 5: lukija.tietue(&cp, cpistekoko, lueCPiste); break;
      case 6: lukija.tietue(&pm, pikkumieskoko, luePikkumiessiirto); break;
      case 7: lukija.tietue(&lj, limakoko, lueLimajuttu); break;
      case 8: lukija.tietue(&ap, asteroidipoxkoko, lueAsteroidipox); break;
      case 9: lukija.tietue(&pati, patikoko, luePati); break;
      default: lukija.tietue(&at, alkutiedotkoko, lueAlkuTiedot); break;
    }
  }
  // What was read goes straight back out: the writers must take any value a reader made,
  // and the raw floats of a whole projectile (NaN and infinities too) through every
  // converting writer.
  unsigned char ulos[64];
  kirjotaCoords(ulos, &p);
  kirjotaNetpati(ulos, &np);
  kirjotaPati(ulos, &pati);
  kirjotaCPiste(ulos, &cp);
  kirjotaSPiste(ulos, &sp);
  kirjotaPikkumiessiirto(ulos, &pm);
  kirjotaLimajuttu(ulos, &lj);
  kirjotaKuolevapati(ulos, &kp);
  kirjotaAsteroidipox(ulos, &ap);
  kirjotaAlkuTiedot(ulos, &at);
  kirjotaAsteroidi(ulos, &pati);
  const netPati raaka{pati.x, pati.y, pati.xv, pati.yv,    pati.kulma,
                      pati.r, pati.g, pati.b,  np.pelaaja, np.pati};
  kirjotaNetpati(ulos, &raaka);
  p.x = pati.x, p.y = pati.y, p.kulma = pati.kulma;
  p.energia = pati.energia, p.fuel = pati.alku, p.pisteet = pati.koko;
  kirjotaCoords(ulos, &p);
  const CPiste kukka{pati.x, pati.y, cp.player, cp.numero, cp.enabled};
  kirjotaCPiste(ulos, &kukka);
  return 0;
}
