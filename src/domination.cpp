// SCAFFOLD: replaced by the simulation and rendering work.
#include "domination.h"
int dpisteita = 2;
DPiste* dpiste = nullptr;
float pisteetfreimissa = 0.005f;
void alustaDPisteet() {}
void laskeDPisteet() {}
void piirraDPisteet() {}
void piirraDGraffat() {}
