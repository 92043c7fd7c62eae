// The local game menu and its game loops.
#pragma once

#include "Main.h"

void onePlayerGameMenu();
void drawOnePlayerGameMenu(int selected);

// The menu's items, in screen order.
enum PaikallinenKohta {
  kohtaSatunnaiset,      // "Start With Random Ships"
  kohtaJatka,            // "Resume Game"
  kohtaKrediitit,        // "Start With <n> Credits"
  kohtaKrediititSatunn,  // "Start With Credits & Random Ships"
  kohtaDominointi,       // "Flower Domination"
  kohtaLippu,            // "Capture The Flower"
  kohtaSieni,            // "Eat The Mushroom"
  kohtaAsetukset,        // "Settings"
  kohtaPoistu,           // "Exit Menu"
  paikallisiaKohtia
};

// How one game loop runs: its catch-up policy and the rule that ends the match
// (none when `loppuu` is null).
struct Pelisilmukka {
  CatchUp kiinniotto;
  int raja;
  bool (*loppuu)();
};

// Sets up the game behind a start item (or the resume) and returns the loop it
// runs in. Items that start no game (settings, exit) must not be passed.
Pelisilmukka aloitaKohta(int kohta);
// One pass of a game loop: the due world steps under the loop's policy, events,
// the end rule, the frame and the audio. True when the match was won this pass
// (escpressed is then set, which ends the loop).
bool pelikierros(const Pelisilmukka& silmukka);
// Runs a game loop until Escape or a win; a win shows the victory screen until Enter.
void pelaa(const Pelisilmukka& silmukka);

// The pictures the game loops draw; tests replace them to run without a window.
extern void (*pelinPiirto)(int frame);   // drawFrame
extern void (*voitonPiirto)(int tiimi);  // drawVictory
