// Network roles and the lobby.
#pragma once

extern bool hostpeli;  // this machine hosts a networked game
extern bool joinpeli;  // this machine is a client of one

void hostMultiplayer();
void joinMultiplayer();
