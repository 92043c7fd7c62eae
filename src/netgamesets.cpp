#include "netgamesets.h"

#include "Main.h"
#include "Menu.h"
#include "Sets.h"
#include "audio.h"
#include "netav.h"
#include "peliloppu.h"

namespace {

// What a running match may change; window size, players and credits wait for the menu.
const int rivit[] = {aMusiikki, aEfektit, aMusiikkivoimakkuus, aEfektivoimakkuus, aKamera,
                     aTarkkuus, aOtteluun};
const int riveja = sizeof rivit / sizeof rivit[0];
const int takaisin = riveja - 1;

}  // namespace

void netGameSets() {
  const NappainToisto toisto;
  Asetusluonnos luonnos = nykyisetAsetukset();
  bool muutettu = false;
  int kohta = 0;
  unohdaNapit();
  while (!netGameQuit) {
    processEvents();
    pyoritaNuolia();
    const int suunta = sivusuunta();
    const bool valittu = valikonSyote(kohta, takaisin);
    if (valittu && kohta == takaisin) break;
    if (suunta != 0 || valittu) {
      muutaAsetusta(luonnos, rivit[kohta], valittu ? 0 : suunta);
      otaPelinAikaisetKayttoon(luonnos);
      muutettu = true;
    }
    otteluJatkuu();
    piirraAsetukset("Settings", rivit, riveja, kohta, luonnos,
                    "left, right: change     Escape: back to the match", true);
    updateAudio();
  }
  unohdaNapit();
  if (muutettu) sets.saveFile();
}
