// In-game network play.
#pragma once

#include "nethelp.h"

extern int results;   // bytes of game data received
extern int packets;   // packets of game data received
extern limajuttu netlima;     // the last slime blob stuck, for the host to send
extern bool limalaitetaan;    // netlima waits to be sent
