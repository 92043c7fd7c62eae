// Ship choice over the network: the host's book of who is choosing and until when,
// and the choice screen on the owner's machine.
#include "netav.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "Main.h"
#include "Player.h"
#include "audio.h"
#include "localgame.h"
#include "net.h"
#include "netpeli.h"
#include "peliloppu.h"
#include "scene.h"

namespace {

void piirraValinta(int pelaaja, int kursori, int) { drawAlusValinta(pelaaja, kursori); }

const int tietokone = -2;
int64_t takaraja[maxPlayers];  // the world frame by which the player must have chosen, -1 none

bool pelaajana(int i) { return i >= 0 && i < saannot::pelaajia(); }

// The connection whose person chooses for match player i (0: the host's own), or a pilot.
int valitsija(int i) {
  const int s = ottelunPaikka[i];
  if (!player[i].ihmispelaaja || s < 0 || s >= maxPlayers || mpstatus[s] != 3) return tietokone;
  return pelaajasoketista[s];
}

bool ostettava(const Player& p, int n) { return !pistepeli || p.pisteet >= alus[n].pistemaara; }
int arvottu(const Player& p) { return pistepeli ? ostettavaSatunnainen(p) : satunnainenAlusnumero(); }

void annaTaiPoista(int i, int n) {
  if (n >= 0) {
    annaVerkkoAlus(i, n);
    return;
  }
  player[i].pisteet = -1.0f;
  takaraja[i] = -1;
}

}  // namespace

void (*otteluJatkuu)() = verkkoTausta;
void (*alusvalinnanPiirto)(int, int, int) = piirraValinta;

void aloitaValinnat() { std::fill(std::begin(takaraja), std::end(takaraja), -1); }

void pyydaValinta(int pelaaja) {
  if (!pelaajana(pelaaja) || takaraja[pelaaja] >= 0) return;
  const int c = valitsija(pelaaja);
  if (c == tietokone) {
    int n = pistepeli && player[pelaaja].pisteet >= 0 ? tietokoneenKohde(pelaaja) : -1;
    if (n < 0 || !ostettava(player[pelaaja], n)) n = arvottu(player[pelaaja]);
    annaTaiPoista(pelaaja, n);
    return;
  }
  takaraja[pelaaja] = oldframecounter + static_cast<int64_t>(valinnanAika * calculatefps);
  if (c > 0) pyydaAlusvalinta(pelaaja, static_cast<uint32_t>(takaraja[pelaaja]));
}

bool odottaaValintaa(int pelaaja) { return pelaajana(pelaaja) && takaraja[pelaaja] >= 0; }

int valinnanAikaaMs(int pelaaja) {
  if (!odottaaValintaa(pelaaja)) return 0;
  return static_cast<int>(std::max<int64_t>(0, takaraja[pelaaja] - oldframecounter) * 1000 / calculatefps);
}

bool tarjoaValinta(int yhteys, int pelaaja, int alusnumero) {
  if (!odottaaValintaa(pelaaja) || valitsija(pelaaja) != yhteys) return false;
  if (alusnumero < 0 || alusnumero >= alustyyppeja || !ostettava(player[pelaaja], alusnumero)) return false;
  annaVerkkoAlus(pelaaja, alusnumero);
  return true;
}

void valintaAjat() {
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    if (takaraja[i] < 0) continue;
    const int c = valitsija(i);
    const bool poissa = c < 0 || (c > 0 && !tcpsoketit[c]);
    if (oldframecounter >= takaraja[i] || poissa) annaTaiPoista(i, arvottu(player[i]));
  }
}

void annaVerkkoAlus(int pelaaja, int alusnumero) {
  if (!pelaajana(pelaaja) || alusnumero < 0 || alusnumero >= alustyyppeja) return;
  Player& p = player[pelaaja];
  p.uudestaan(alus[alusnumero]);
  if (pistepeli) p.pisteet -= static_cast<float>(alus[alusnumero].pistemaara);
  p.suojapaalla = false;
  p.laitaAlkuSirpaleet();
  if (p.kuolema == 200) --p.kuolema;  // the host's hold lets go: the ship comes back
  takaraja[pelaaja] = -1;
}

int netValitseAlus(int pelaaja, int takarajaMs) {
  if (!pelaajana(pelaaja)) return -1;
  Player& p = player[pelaaja];
  p.pylos = p.palas = p.pleft = p.pright = p.pfire = p.pease = false;  // keys held when it opened
  const Uint32 alku = pacingTicks();
  int kursori = 0, valittu = -1;
  for (;;) {
    processEvents();
    if (alusvalinnanSyote(p, kursori)) {
      const int n = kursori == satunnainenKohta ? arvottu(p) : kursori;
      if (n >= 0 && ostettava(p, n)) {
        valittu = n;
        break;
      }
      kursori = 2;  // what the player can afford, as on the local screen
    }
    const int kulunut = static_cast<int>(pacingTicks() - alku);
    if (kulunut >= takarajaMs || netGameQuit) break;
    waitNextFrame();
    otteluJatkuu();
    alusvalinnanPiirto(pelaaja, kursori, (takarajaMs - kulunut + 999) / 1000);
    updateAudio();
  }
  p.pylos = p.palas = p.pleft = p.pright = p.pfire = p.pease = false;
  return valittu;
}
