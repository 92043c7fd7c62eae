// SCAFFOLD: replaced by the local game work.
#include "localgame.h"
void onePlayerGameMenu() {}
void drawOnePlayerGameMenu(int) {}
