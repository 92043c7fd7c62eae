// SCAFFOLD: replaced by the simulation work (roles) and the lobby work.
#include "net.h"
bool hostpeli = false;
bool joinpeli = false;
void hostMultiplayer() {}
void joinMultiplayer() {}
