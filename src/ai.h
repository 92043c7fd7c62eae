// The computer pilot. `Player::ailiiku` (in ai.cpp) sets the six buttons of one
// computer-controlled player each calculated frame; its memory lives here per slot.
#pragma once

// Highest skill level; the settings' `ai` value is kept within 0..aiTasoja-1.
const int aiTasoja = 4;

// Forgets what every pilot remembered (targets, charge and bomb plans). The game
// loop calls it when a match starts; a pilot also forgets by itself when its ship
// changes or it dies.
void aiAlusta();

// The player slot the pilot of slot `pelaaja` is after at the moment, -1 for none.
int aiKohde(int pelaaja);
