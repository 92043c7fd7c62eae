// SCAFFOLD: replaced by the simulation and rendering work.
#include "sieni.h"
int spisteita = 1;
SPiste* spiste = nullptr;
float sienipisteet = 10, skuolemapisteet = 1;
void alustaSPisteet() {}
void laskeSPisteet() {}
void piirraSPisteet() {}
void piirraSGraffat() {}
