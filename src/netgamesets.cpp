// The settings over a running network match: the settings menu, with the match's
// pass run underneath it every frame.
#include "netgamesets.h"

#include "Main.h"
#include "Menu.h"
#include "netpeli.h"

void netGameSets() {
  void (*oli)() = taustatyo;
  taustatyo = verkkoTausta;
  asetusmenu();
  taustatyo = oli;
}
