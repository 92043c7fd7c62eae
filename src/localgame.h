// The local game menu and its game loops.
#pragma once

#include "Main.h"
#include "Player.h"

void onePlayerGameMenu();
void drawOnePlayerGameMenu(int selected);

// The menu's items, in screen order.
enum PaikallinenKohta {
  kohtaSatunnaiset,       // "Start With Random Ships"
  kohtaJatka,             // "Resume Game"
  kohtaKrediitit,         // "Start With <n> Credits"
  kohtaKrediititSatunn,   // "Start With Credits & Random Ships"
  kohtaDominointi,        // "Flower Domination"
  kohtaLippu,             // "Capture The Flower"
  kohtaSieni,             // "Eat The Mushroom"
  kohtaAsetukset,         // "Settings"
  kohtaPoistu,            // "Exit Menu"
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

// Full-screen overlays shared by the local screens: a background picture from
// the texture table, and a black veil of the given opacity over what is drawn.
void piirraTaustakuva(unsigned int tekstuuri);
void tummennaRuutu(float peitto);
// Sets an identity view in which text at depth -40 from x = vasen to x = oikea
// fits the window width (narrow windows shrink the layout, wide ones keep it).
void valikonNakyma(float vasen, float oikea);

// Ship choice (scene.cpp): the steps of valitseAlus, open to tests.
const int satunnainenKohta = 24;  // the cursor entry that stands for a random ship
// The README's ship guide, which the choice screen shows under a ship's figures:
// its strengths, its primary weapon and its special weapon.
const int alusoppaanRiveja = 3;
extern const char* const alusopas[alustyyppeja][alusoppaanRiveja];
// The world step's ship draw for games without credits (0..23).
int satunnainenAlusnumero();
// One pass of player p's keys: palas/pleft move +1, pylos/pright -1 (wrapping over
// 0..24), pfire or Enter confirm (true). Each flag it acts on is cleared.
bool alusvalinnanSyote(Player& p, int& kursori);
// An affordable ship drawn at random, -1 when even the cheapest is too dear.
int ostettavaSatunnainen(const Player& p);
// Buys the entry under the cursor for player `pelaaja` and returns true; a ship the
// player cannot afford moves the cursor to ship 2 instead and returns false.
bool ostaValinta(int pelaaja, int& kursori);
// The computer pilot's target: a ship number, or -1 for the random entry. The
// player must afford the cheapest ship (valitseAlus sees to that).
int tietokoneenKohde(int pelaaja);

// The computer pilot pressing its own keys on the choice screen.
struct TietokoneenValinta {
  int painalluksia;  // cursor steps still to make: +1 each, or -1 for one step back
  int odotus;        // frame ticks until the next key
  explicit TietokoneenValinta(int kohde);
  // Presses at most one key of p once `kuluneet` ticks have passed; with `heti`
  // it does not wait at all.
  void paina(Player& p, int kuluneet, bool heti);
};
