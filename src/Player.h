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
  short aika;          // live while > 0
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

  // Life cycle.
  void asetaAlus(Alus a);
  void uudestaan(Alus a);

  // Flight, weapons and collisions.
  void liiku();
  void ammu();
  void ease();     // special weapon
  void ailiiku();  // computer pilot
  bool tormaa(double x, double y, double r, int i);
  bool tormaa(Pati p, Alus a);

  // Projectiles.
  void liikutaPadit();
  void liikutaePadit();
  void tarkistaHajosikoPadit();

  // Effects.
  void laitaAlkuSirpaleet();
  void laskeAlkuSirpaleet();
  void lisaalima();
  void laskeKaasujaljet();
  void laskeViivat();

  // Drawing.
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

// Rules shared by the flight, weapon and special-weapon code.
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

bool isanta();                    // host or local game: this machine decides
int pelaajia();                   // player slots in use, kept within the array
bool pelissa(const Player& p);    // not put out of a credit game
bool suojattu(const Player& p);   // the shield special is up
void soita(Sound* s);             // plays when effects are on and the sound exists
}  // namespace saannot
