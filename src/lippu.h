// The waving-flag intro.
#pragma once

void AlotaLippu();

// The flag cloth: a grid of points from the pole (column 0) to the free edge,
// row 0 at the bottom, each with a unit normal for lighting.
const int lippuSarakkeita = 40, lippuRiveja = 26;
struct LippuPiste {
  float x, y, z;
  float nx, ny, nz;
};
extern LippuPiste lippu[lippuRiveja][lippuSarakkeita];
// A flat cloth and the wave clock at zero.
void alustaLippu();
// One calculated frame of waving (the intro runs it at 150 frames a second).
void lippuAskel(int frame);
// Whether the intro goes on after `kulunut` calculated frames of its own clock;
// Enter, Space and Escape end it and are cleared.
bool introJatkuu(int kulunut);
