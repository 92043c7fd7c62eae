#include "netav.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "Main.h"
#include "Player.h"
#include "audio.h"
#include "net.h"
#include "netpeli.h"
#include "peliloppu.h"
#include "scene.h"

void (*otteluJatkuu)() = verkkoTausta;
void (*alusvalinnanPiirto)(int, int, int) = drawAlusValinta;

namespace {

const int tietokone = -2;  // "connection" of a slot a computer pilot flies

int64_t takaraja[maxPlayers];  // the frame by which the player must have chosen, -1 not choosing

bool pelaajana(int i) { return i >= 0 && i < saannot::pelaajia(); }

// The connection whose person chooses for match player i: 0 the host's own.
int valitsija(int i) {
  const int s = ottelunPaikka[i];
  if (!player[i].ihmispelaaja || s < 0 || s >= maxPlayers || mpstatus[s] != 3) return tietokone;
  return pelaajasoketista[s];
}

bool valitsijaPoissa(int i) {
  const int c = valitsija(i);
  return c < 0 || c >= yhteyksia || (c > 0 && !tcpsoketit[c]);
}

// Without credits every ship is free.
bool ostettava(const Player& p, int n) { return !pistepeli || onVaraa(p, n); }
int arvottuAlus(const Player& p) { return pistepeli ? ostettavaSatunnainen(p) : satunnainenAlusnumero(); }

// What a computer pilot ends with on the choice screen: its target, the random entry's
// draw, or ship 2 where the target is too dear.
int tietokoneenAlus(int i) {
  // Without credits, or without the price of the cheapest ship, its target means nothing.
  if (!pistepeli || player[i].pisteet < halvinAlus()) return arvottuAlus(player[i]);
  const int kohde = tietokoneenKohde(i);
  int kursori = kohde < 0 ? satunnainenKohta : kohde;
  const int n = valinnanAlus(i, kursori);
  return n >= 0 ? n : valinnanAlus(i, kursori);
}

// The ship, or out of the match for a player who can afford none.
void annaTaiPoista(int i, int n) {
  if (n >= 0) {
    annaVerkkoAlus(i, n);
    return;
  }
  player[i].pisteet = -1.0f;
  playeruudestaan[i] = 0;
  takaraja[i] = -1;
}

}  // namespace

void aloitaValinnat() { std::fill(std::begin(takaraja), std::end(takaraja), -1); }

void pyydaValinta(int pelaaja) {
  if (!pelaajana(pelaaja) || !saannot::pelissa(player[pelaaja]) || takaraja[pelaaja] >= 0) return;
  const int c = valitsija(pelaaja);
  if (c == tietokone) {
    annaTaiPoista(pelaaja, tietokoneenAlus(pelaaja));
    return;
  }
  takaraja[pelaaja] = oldframecounter + static_cast<int64_t>(valinnanAika * calculatefps);
  if (c > 0) pyydaAlusvalinta(pelaaja, static_cast<uint32_t>(takaraja[pelaaja]));
}

bool odottaaValintaa(int pelaaja) { return pelaajana(pelaaja) && takaraja[pelaaja] >= 0; }

int valinnanAikaaMs(int pelaaja) {
  if (!odottaaValintaa(pelaaja) || calculatefps <= 0) return 0;
  return static_cast<int>(std::max<int64_t>(0, takaraja[pelaaja] - oldframecounter) * 1000 / calculatefps);
}

bool tarjoaValinta(int yhteys, int pelaaja, int alusnumero) {
  if (!odottaaValintaa(pelaaja) || valitsija(pelaaja) != yhteys) return false;
  if (alusnumero < 0 || alusnumero >= alustyyppeja || !ostettava(player[pelaaja], alusnumero)) return false;
  annaVerkkoAlus(pelaaja, alusnumero);
  return true;
}

void valintaAjat() {
  for (int i = 0; i < saannot::pelaajia(); ++i)
    if (takaraja[i] >= 0 && (oldframecounter >= takaraja[i] || valitsijaPoissa(i))) annaArvottuAlus(i);
}

void annaArvottuAlus(int pelaaja) {
  if (pelaajana(pelaaja)) annaTaiPoista(pelaaja, arvottuAlus(player[pelaaja]));
}

void annaVerkkoAlus(int pelaaja, int alusnumero) {
  if (!pelaajana(pelaaja) || alusnumero < 0 || alusnumero >= alustyyppeja) return;
  Player& p = player[pelaaja];
  p.uudestaan(alus[alusnumero]);
  if (pistepeli) p.pisteet -= static_cast<float>(alus[alusnumero].pistemaara);
  p.suojapaalla = false;
  p.laitaAlkuSirpaleet();
  if (p.kuolema == uudestaanHetki) --p.kuolema;
  playeruudestaan[pelaaja] = 0;
  takaraja[pelaaja] = -1;
}

int netValitseAlus(int pelaaja, int takarajaMs) {
  if (!pelaajana(pelaaja)) return -1;
  // This machine's rows of keys steer its own match players (nappainrivinPelaaja).
  Player& napit = player[pelaaja];
  unohdaValintanapit(napit);
  const Uint32 alku = pacingTicks();
  int kursori = 0, valittu = -1;
  for (;;) {
    processEvents();
    if (alusvalinnanSyote(napit, kursori) && (valittu = valinnanAlus(pelaaja, kursori)) >= 0) break;
    const int kulunut = static_cast<int>(pacingTicks() - alku);
    // A host gives a ship of its own accord when time is up or its person is no longer there.
    const bool annettu = hostpeli && !odottaaValintaa(pelaaja);
    if (kulunut >= takarajaMs || netGameQuit || annettu) break;
    otteluJatkuu();
    alusvalinnanPiirto(pelaaja, kursori, (takarajaMs - kulunut + 999) / 1000);
    updateAudio();
  }
  unohdaValintanapit(napit);
  return valittu;
}
