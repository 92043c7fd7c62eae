// The main menu, the settings menu and the player set-up screen.
#pragma once

extern float nuolirot;  // spin of the cursor arrows, shared by the menus
extern bool saavalita;  // players may choose their ship
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
// The veil over the picture: a short menu's, and a thicker one for a screen full of text
// (the lobby, the chat). `kentalla`: over the running match instead of the menu picture.
const float valikonVerho = 0.6f, tekstiruudunVerho = 0.85f;
void aloitaValikonKuva(float leveys, float peitto = valikonVerho, bool kentalla = false);
void piirraValikonOtsikko(const char* otsikko);
void piirraRivi(float x, float y, const char* nimi, const char* arvo, float arvonX);
void piirraAlarivi(const char* teksti);
// The two arrows around a selected row from x = alku to x = loppu.
void piirraKursori(float alku, float loppu, float y);
void lopetaValikonKuva();

// --- The settings menu's rows, shared with the settings screen of a network match.

// Holding left or right keeps changing a value while a settings screen is open.
class NappainToisto {
 public:
  NappainToisto();
  ~NappainToisto();
  NappainToisto(const NappainToisto&) = delete;
  NappainToisto& operator=(const NappainToisto&) = delete;

 private:
  int viive_ = 0, vali_ = 0;
};

struct Resoluutio {
  int leveys, korkeus;
  bool operator<(const Resoluutio& o) const {
    return leveys != o.leveys ? leveys < o.leveys : korkeus < o.korkeus;
  }
  bool operator==(const Resoluutio& o) const { return leveys == o.leveys && korkeus == o.korkeus; }
};

// What the menu edits; nothing reaches `sets` or the game before it is applied.
struct Asetusluonnos {
  Resoluutio koko;
  bool kokoruutu;
  int pelaajia;
  bool musiikki, efektit;
  int krediitit;
  int musiikkivoimakkuus, efektivoimakkuus;
  int kamera;
  int tarkkuus;
};

// The rows in the settings menu's order; the last one only a running match shows.
enum Asetuskohta {
  aResoluutio,
  aKokoruutu,
  aPelaajat,
  aMusiikki,
  aEfektit,
  aKrediitit,
  aMusiikkivoimakkuus,
  aEfektivoimakkuus,
  aKamera,
  aTarkkuus,
  aPelaajaAsetukset,
  aTallenna,
  aTallennaJaPoistu,
  asetuskohtia,
  aOtteluun = asetuskohtia  // "Back to the Match"
};

Asetusluonnos nykyisetAsetukset();
// Left and right step a value (switches flip either way); Enter (suunta 0) flips a switch.
void muutaAsetusta(Asetusluonnos& a, int kohta, int suunta);
// Applies what a running match may change: music and effects, their volumes, camera, detail.
void otaPelinAikaisetKayttoon(const Asetusluonnos& a);
// A settings screen of the rows `rivit` (n of them) with the draft's values, the
// cursor on the row at index `valittu` and `ohje` on the bottom line.
void piirraAsetukset(const char* otsikko, const int* rivit, int n, int valittu, const Asetusluonnos& a,
                     const char* ohje, bool kentalla);
