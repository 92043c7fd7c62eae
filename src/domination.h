// Flower domination.
#pragma once

struct DPiste {
  int x, y;
  int tiimi;  // owner, -1 nobody
};

extern int dpisteita;
extern DPiste* dpiste;
extern float pisteetfreimissa;

void alustaDPisteet();
void laskeDPisteet();
void piirraDPisteet();
