// Match end, the leader and the victory screen.
#pragma once

extern int mpcredits;            // score limit / credits of a networked game
extern signed char voittotiimi;  // winning team as received by a client

// Local end rules, checked by the local game loops after the world steps.
bool tiimisaantoLoppu();   // death matches: at most one team left in play
bool pistesaantoLoppu();   // objective modes: someone reached fullcredits
int johtavaTiimi();        // team of the leader (the victory screen's argument)

int peliloppu();           // network host's end rule: 1 = match over
void drawVictory(int tiimi);
