// SCAFFOLD: replaced by the menu work.
#include "Menu.h"
float nuolirot = 0;
bool saavalita = false;
bool debugmode = false;
void mainmenu() {}
void drawmenu(int) {}
void asetusmenu() {}
void playerMenu() {}
