// Capture the flower.
#pragma once

struct CPiste {
  float x, y;
  signed char player;  // 100 at home, 101 dropped, 0..99 carried by that slot
  signed char numero;  // the flower's index = the team that owns it
  bool enabled;
};

const signed char kukkaKotona = 100;
const signed char kukkaPudonnut = 101;

extern int cpisteita;
extern CPiste* cpiste;
extern CPiste* alkupiste;
extern float ctfpisteet;
extern float ckuolemapisteet;

void alustaCPisteet();
void aloitaCPisteet();  // start of a game: flowers home, enable those of teams in play
void laskeCPisteet();
void piirraCPisteet();
