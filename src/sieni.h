// Eat the mushroom.
#pragma once

struct SPiste {
  int x, y;
  bool uusiks;  // just moved; the host sends and clears it
};

extern int spisteita;
extern SPiste* spiste;
extern float sienipisteet;
extern float skuolemapisteet;

void alustaSPisteet();
void laskeSPisteet();
void piirraSPisteet();
