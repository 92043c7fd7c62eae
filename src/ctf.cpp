// SCAFFOLD: replaced by the simulation and rendering work.
#include "ctf.h"
int cpisteita = 16;
CPiste* cpiste = nullptr;
CPiste* alkupiste = nullptr;
float ctfpisteet = 25, ckuolemapisteet = 1;
void alustaCPisteet() {}
void aloitaCPisteet() {}
void laskeCPisteet() {}
void piirraCPisteet() {}
void piirraCGraffat() {}
