// The world: one calculated frame, asteroids, little men, debris and stars,
// the frame drawing and the ship-choice screen.
#pragma once

#include "Player.h"
#include "Sets.h"

struct Star {
  float x, y, z;
  float r, g, b;
  float koko;
};

const int asteroideja = 20;
const int pikkumiehia = 200;
const int tahtia = 500;
// The shard pool is sized for the highest detail level, so that a detail
// change in the settings can never make `sirpaleita` outgrow it.
const int maxSirpaleita = sirpaleitaTarkkuudella(suurinTarkkuus);

extern Sirpale sirpale[maxSirpaleita];
extern Star star[tahtia];
extern Pati asteroidi[asteroideja];
extern Pati pikkumies[pikkumiehia];

// Camera angles (degrees), kept by the world step and read by the drawing.
extern float alfa, beta, alfa2, beta2;

extern int gamemode;  // 0..4, see the game menu

// Hand-over to the in-game network loops.
struct pikkumiessiirto {
  float x, y, energia;
  short aika, numero;
};
extern bool playerrajahtaa[maxPlayers];
extern float prajahdys[maxPlayers][2];
extern signed char playeruudestaan[maxPlayers];
extern bool asteroidiuudestaan[asteroideja];
extern bool asteroidirajahtaa;
extern float arajahdys[2];
extern pikkumiessiirto siirrot[10];

// Start-up placement (called by alota).
void alustaTahdet();
void alustaAsteroidit();

// A new match: every slot's score becomes `pisteet`, and nothing of the last match is
// left (death timers, shots, slime, beams, debris, little men, the hand-over arrays, the
// pilots' memory); flowers go home and domination points are nobody's. Sets the mode,
// the credit game and the ship choice, and makes the first world step a match start.
// The caller seats the match first: `players` and each slot's team, pilot and nick (the
// flowers in play follow the teams). Takes no random numbers.
void nollaaOttelu(int tila, bool krediitit, bool valinta, float pisteet);

// The world step and its parts.
void calculateFrame(int frame);
void laskeAsteroidit();
void laskePikkumiehet();

// Drawing (frame and HUD).
void drawFrame(int frame);
// Drawing only: how far each ship is drawn from its place (a network client eases
// small corrections of its ships in), and what is drawn over a frame before it is
// shown (the network loops' notices and menu), none by default.
extern float piirtoSiirto[maxPlayers][2];
extern void (*kuvanPaalle)();
void piirraMaailma();  // the whole game picture without swapping the buffers (menus draw over it)
void drawPlanet();
void piirraAsteroidit();
void piirraPikkumiehet();

// Ship choice of one player (credit games). Over the network the screen also shows the
// seconds left to choose (none when negative).
void valitseAlus(int pelaaja);
void drawAlusValinta(int pelaaja, int kursori, int sekunteja = -1);
// The steps of valitseAlus, which the networked ship choice shares.
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
// The one rule of what a player can afford: its credits cover the ship's price.
bool onVaraa(const Player& p, int alusnumero);
double halvinAlus();  // the price of the cheapest ship
// An affordable ship drawn at random, -1 when even the cheapest is too dear.
int ostettavaSatunnainen(const Player& p);
// The ship the entry under the cursor gives player `pelaaja` (the random entry draws
// an affordable one); a ship the player cannot afford moves the cursor to ship 2
// instead and gives -1.
int valinnanAlus(int pelaaja, int& kursori);
// Buys valinnanAlus's ship and returns true, or returns false with the cursor moved.
bool ostaValinta(int pelaaja, int& kursori);
// Forgets the keys a choice screen read, so that they act neither on it nor after it.
void unohdaValintanapit(Player& p);
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

// A dead ship's timer stands at this value when its replacement is decided; a host
// holds it there until the ship has been given.
const short uudestaanHetki = 200;

// What a 32-bit printf("%d") shows for a double argument: the low word of its
// bits as a signed int (so whole amounts show as 0). The score panels print it.
int printedAsInt(double value);
// The steps of drawFrame, in drawing order (also timed on their own).
void asetaKameraJaValo();
void piirraTausta();
void piirraPelaajat();
void piirraKentanReuna();
void piirraSirpaleet();
void piirraMerkit();  // the markers over the human players' ships
void piirraHud();

// Round-trip time in milliseconds to the machine that plays each slot, -1 for a
// slot played on this machine; the network loops keep it, the standings show it.
extern int kierrosaikaMs[maxPlayers];

// One row of the standings that Tab shows over a match.
struct Tilannerivi {
  int pelaaja;       // slot
  char nimi[16];     // the nick in a network game, else "player n"
  int tiimi;         // as the panels show it, from 1
  int alus;          // ship number
  char pisteet[16];  // score or credits as a whole number, or "out" of a credit game
  char kierros[16];  // round-trip time in a network game ("-" on this machine), else ""
};
// The rows of the slots in use, best score first and those out of a credit game
// last; returns how many.
int tilanteenRivit(Tilannerivi* rivit);
void piirraTilanne();
