// The local game menu and its game loops.
#pragma once

void onePlayerGameMenu();
void drawOnePlayerGameMenu(int selected);
