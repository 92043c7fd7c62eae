// The main menu, the settings menu and the player set-up screen.
#pragma once

extern float nuolirot;   // spin of the cursor arrows, shared by the menus
extern bool saavalita;   // players may choose their ship
extern bool debugmode;

void mainmenu();
void drawmenu(int item);
void asetusmenu();
void playerMenu();
