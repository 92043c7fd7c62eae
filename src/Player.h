// One player slot: its ship, motion, buttons and the arrays the ship owns.
#pragma once

#include <cmath>

#include "Alus.h"

class Sound;

// One projectile; asteroids, little men and slime blobs reuse the record.
struct Pati {
  float x, y;
  float xv, yv;
  float kulma;
  float energia;
  float r, g, b;
  float alku;
  float koko;
  short aika;  // live while > 0
  short ampumisviive;
};

// One debris shard (world pool and per-player start shards).
struct Sirpale {
  double x, y, z;
  double xv, yv, zv;
  double koko;
  double red, green, blue;
  double maxaika;
  int aika;
  int muoto;  // 0 or 10
};

// One exhaust-trail puff.
struct Kaasujalki {
  double x, y, alpha;
  int aika;
};

// One line effect (beams).
struct Viivakasa {
  double x1, y1, x2, y2;
  double r, g, b;
  double aika;
  double xv, yv;
};

const int viivoja = 60;
const int limoja = 30;
const int kaasujalkia = 5;
const int hantaa = 12;

// Player's methods live with what they do: life cycle, flight, primary weapons, collisions,
// projectiles and effects in Player.cpp; the special weapon and its shots in ease.cpp; the
// computer pilot in ai.cpp; the ship model in aluspiirto.cpp; the drawing of shots, effects
// and the panel in scene.cpp.
class Player {
 public:
  Sound* ampumisaani;
  Sound* osumisaani;
  Sound* eampumisaani;
  Sound* eosumisaani;
  float uusx, uusy;
  bool teleportattu;
  float propelli;
  int ampumispuoli;
  Viivakasa* viivat;
  float pisteet;
  float x, y;
  float kulma;
  float xvauhti, yvauhti;
  float alpha;
  float asekulma;
  float energia;
  float fuel;
  int kaasujalkiaika;
  bool pylos, palas, pleft, pright, pfire, pease;
  Alus alus;
  int numero;
  int ampumisviive;
  int limacount;
  Pati* pati;
  Pati* epati;
  Pati* lima;
  Sirpale* alkusirpale;
  Kaasujalki* kaasujalki;
  Kaasujalki* kaasujalki2;
  bool suojapaalla;
  float easekesto;
  float easeviive;
  bool laseraani;
  short kuolema;
  float ampumisjuttu;
  float fcounter;
  float xhanta[hantaa], yhanta[hantaa], kulmahanta[hantaa];
  bool ihmispelaaja;
  int tiimi;
  bool kaasu;
  bool joinease, joinase, joinleft, joinright;
  int alkusirpaleMaara;  // length of alkusirpale as allocated by the last asetaAlus

  Player();
  ~Player();
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;

  // Life cycle (Player.cpp).
  void asetaAlus(Alus a);
  void uudestaan(Alus a);
  void unohdaOttelu();  // a new match: no shots, slime, beams or death timer left on the slot

  // Flight, primary weapons and collisions (Player.cpp).
  void liiku();
  void ammu();
  bool tormaa(double x, double y, double r, int i);
  bool tormaa(Pati p, Alus a);
  // The special weapon (ease.cpp) and the computer pilot (ai.cpp).
  void ease();
  void ailiiku();

  // Projectiles (Player.cpp; the special shots' flight in ease.cpp).
  void liikutaPadit();
  void liikutaePadit();
  void tarkistaHajosikoPadit();

  // Effects (Player.cpp).
  void laitaAlkuSirpaleet();
  void laskeAlkuSirpaleet();
  void lisaalima();
  void laskeKaasujaljet();
  void laskeViivat();

  // Drawing: the ship model in aluspiirto.cpp, the rest with the frame drawing in scene.cpp.
  void piirra();
  void piirra(int x, int y, int z, int angle, int weaponAngle);
  void piirraPadit();
  void piirraePadit();
  void piirraLimat();
  void piirraKaasujaljet();
  void piirraViivat();
  void piirraAlkuSirpaleet();
  void piirraGraffat();
};

const int maxPlayers = 16;
extern Player player[maxPlayers];

// Rules shared by the world step, the flight, weapon and special-weapon code and
// the objective modes.
namespace saannot {
// The simulation converts degrees with the single-precision pi; the balance was tuned with it.
const float pii = 3.1415927f;
inline double rad(double aste) { return aste * pii / 180.0; }
inline double aste(double r) { return r * 180.0 / pii; }
// a - b in degrees, brought into [-180, 180].
inline double kulmaero(double a, double b) {
  double e = std::fmod(a - b, 360.0);
  if (e > 180) e -= 360;
  if (e < -180) e += 360;
  return e;
}
const double kosketus = 0.785;  // every contact test scales the summed radii by this
const float kentanX = 160, kentanY = 120;
const double planeetanNielu = 8, planeetanVeto = 40;  // the planet swallows shots within, bends them within

// Roles. A local game and a network host decide every rule; a client mirrors what its host
// sends and skips the stages that would decide (deaths, respawns, spawning, pilots, objectives).
bool paattaa();      // a local game or the host: this machine decides
bool isanta();       // the host of a network game (hands deaths, respawns and pick-ups to its clients)
bool asiakas();      // a client of a network game
bool paikallinen();  // neither: a game on this machine alone

// The buttons a ship's flight and weapons obey: on a client the copies its host sent,
// elsewhere the ship's own (keyboard or computer pilot).
struct Napit {
  bool kaasu, vasen, oikea, ase, erikois;
};
Napit napit(const Player& p);

// Players.
int pelaajia();                                     // player slots in use, kept within the array
bool pelissa(const Player& p);                      // not put out of a credit game
void tiimillePisteita(int tiimi, float maara);      // add to every in-play member of the team
bool lahella(int i, float x, float y, float sade);  // player i's centre is closer than sade
bool suojattu(const Player& p);                     // the shield special is up
void soita(Sound* s);                               // plays when effects are on and the sound exists

// Shot arrays: slots a `maxpadit`-style limit uses. The loops run while the index is below
// the double, so a fraction counts as one more slot; never past the allocated `koko`.
int kaytossa(double raja, int koko);
// Lifetimes are 16-bit: truncated toward zero and saturated.
short lyhyt(double v);
// Drag: v / (1 + k (|v| + 1)).
void vaimenna(float& v, double k);
// A shot of radius `sade` touches the ship (never while its shield is up).
bool osuu(const Player& kohde, const Pati& s, double sade);
// The planet's hold on a shot: swallowed (where this machine decides) or bent towards it.
void planeetta(Pati& s);
void vahingoita(Player& k, double maara);

// The shard pool: the entries in use, and the next free one (aika < 1) from scan position `i` on.
int kaytossaSirpaleita();
Sirpale* vapaaSirpale(int& i);
}  // namespace saannot
