// The main menu, the settings menu and the player set-up screen.
#pragma once

extern float nuolirot;   // spin of the cursor arrows, shared by the menus
extern bool saavalita;   // players may choose their ship
extern bool debugmode;

void mainmenu();
void drawmenu(int item);
void asetusmenu();
// The "Player Setup" screen of the settings menu for `pelaajia` slots: pilots, teams
// and the computer's settings go into `sets`, saved on leaving. False when the save failed.
bool playerMenu(int pelaajia);
// Every screen ends its picture with this: the key help over it while F1 is held,
// then the swap.
void naytaKuva();

// One pass of menu input from the flags of the slot player 1's keys steer and the Enter
// and Escape keys: moves `item` over 0..last with wrap-around and returns true when it is chosen
// (Escape chooses `last`). Each flag it acts on is cleared.
bool valikonSyote(int& item, int last);
// Forgets keys still held when a screen returns to the menu.
void unohdaNapit();
// Runs a menu of entries 0..viimeinen until the last is chosen: each pass reads the
// keys, opens the chosen entry's screen with `avaa` and draws the menu with `piirra`;
// `nuolet` spins the menu arrows.
void valikkoSilmukka(int viimeinen, void (*avaa)(int), void (*piirra)(int), bool nuolet);

// The menus' look, shared with the lobby screens: the spinning cursor arrows, a
// screen's picture, veil and view for text from x = -leveys to leveys at depth -40,
// its title, red labels with white values, the bottom line and the swap.
void pyoritaNuolia();
// Left -1, right +1, else 0; the flag acted on is cleared.
int sivusuunta();
float tekstinLoppu(float x, const char* teksti, float koko);
void aloitaValikonKuva(float leveys);
void piirraValikonOtsikko(const char* otsikko);
void piirraRivi(float x, float y, const char* nimi, const char* arvo, float arvonX);
void piirraAlarivi(const char* teksti);
// The two arrows around a selected row from x = alku to x = loppu.
void piirraKursori(float alku, float loppu, float y);
void lopetaValikonKuva();
