#include "scene.h"

#include <GL/gl.h>
#include <GL/glu.h>
#include <SDL/SDL.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "Main.h"
#include "Menu.h"
#include "Sets.h"
#include "Teksti.h"
#include "ai.h"
#include "audio.h"
#include "ctf.h"
#include "domination.h"
#include "glapi.h"
#include "net.h"
#include "netpeli.h"
#include "peliloppu.h"
#include "sieni.h"

Sirpale sirpale[maxSirpaleita];
Star star[tahtia];
Pati asteroidi[asteroideja];
Pati pikkumies[pikkumiehia];
float alfa, beta, alfa2, beta2;
int gamemode = 0;
bool playerrajahtaa[maxPlayers];
float prajahdys[maxPlayers][2];
signed char playeruudestaan[maxPlayers];
bool asteroidiuudestaan[asteroideja];
bool asteroidirajahtaa;
float arajahdys[2];
pikkumiessiirto siirrot[10];

using namespace saannot;

namespace {

// The camera turns radians into degrees with 3.14, deliberately: its angles were tuned with it.
const double kameranPii = 3.14;

const float planeetanSade = 8.0f;
const short kuolemanAlku = 350;
const float asteroidinVaistokulma = 0.5235987901687622f;

void lopetaLaser(Player& p) {
  if (efektitpaalla && p.laseraani && p.ampumisaani) p.ampumisaani->stop();
  p.laseraani = false;
}

void rajahdysaani(Player& p) {
  lopetaLaser(p);
  soita(alus[2].eampumisaani);
}

// One kind of explosion debris. Every random value has the form
// random(alue) / jako + perus, as the explosions were tuned that way.
struct Arpa {
  double alue, jako, perus;
  double arvo() const { return random(alue) / jako + perus; }
};

struct SirpaleResepti {
  int perus, tarkkuudelta;  // detail * tarkkuudelta + perus shards
  Arpa nopeus;
  bool (*kelpaa)(const Sirpale&);  // a velocity outside is drawn again
  double maxaika;
  Arpa aika, koko, puna, vihrea, sini;
};

bool aluksenSirpaleNopeus(const Sirpale& s) {
  return std::sqrt(s.xv * s.xv + s.yv * s.yv + s.zv * s.zv) <= 0.6399999856948853;
}

// The middle term is yv + yv, not yv squared: the cloud leans towards
// negative y, which is how asteroid explosions are meant to look.
bool asteroidinSirpaleNopeus(const Sirpale& s) {
  return s.xv * s.xv + (s.yv + s.yv) + s.zv * s.zv <= 0.09000000357627869;
}

const SirpaleResepti aluksenRajahdys = {
    200,
    100,
    {1500, 1000, -0.75},
    aluksenSirpaleNopeus,
    400,
    {200, 1, 200},
    {200, 100, 0.6000000238418579},
    {50, 100, 0.5},
    {100, 100, 0},
    {100, 100, 0},
};
const SirpaleResepti asteroidinRajahdys = {
    35,
    15,
    {200, 500, -0.2},
    asteroidinSirpaleNopeus,
    250,
    {200, 1, 50},
    {30, 100, 0.2},
    {20, 100, 0.5},
    {20, 100, 0.5},
    {15, 100, 0.35},
};

// Fills free world shards (aika < 1) from index 0 on with debris at (x, y).
void rajahdys(const SirpaleResepti& r, float x, float y) {
  int maara = sets.detail * r.tarkkuudelta + r.perus;
  const int n = kaytossaSirpaleita();
  for (int i = 0; i < n && maara > 0; ++i) {
    Sirpale& s = sirpale[i];
    if (s.aika >= 1) continue;
    s.x = x;
    s.y = y;
    s.z = 0;
    do {
      s.xv = r.nopeus.arvo();
      s.yv = r.nopeus.arvo();
      s.zv = r.nopeus.arvo();
    } while (!r.kelpaa(s));
    s.maxaika = r.maxaika;
    s.aika = static_cast<int>(r.aika.arvo());
    s.muoto = 0;
    s.koko = r.koko.arvo();
    s.red = r.puna.arvo();
    s.green = r.vihrea.arvo();
    s.blue = r.sini.arvo();
    --maara;
  }
}

// --- Asteroids -------------------------------------------------------------

void arvoAsteroidinOminaisuudet(Pati& a) {
  a.koko = random(50) / 100 + 0.8;
  a.alku = random(10000) / 10;
  a.r = random(300) / 100 - 1.5;
  a.g = random(300) / 100 - 1.5;
  a.b = random(300) / 100 - 1.5;
  a.energia = 10;
}

// An asteroid never flies straight away from the centre: its heading must
// differ from its bearing by 30 degrees. The difference is deliberately not
// wrapped, so headings near +-180 degrees count as far apart.
void arvoAsteroidinVauhti(Pati& a) {
  a.xv = a.x;
  a.yv = a.y;
  while (std::fabs(std::atan2(a.yv, a.xv) - std::atan2(a.y, a.x)) < asteroidinVaistokulma) {
    a.xv = random(1000) / 2000 - 0.25;
    a.yv = random(1000) / 2000 - 0.25;
  }
}

void luoAsteroidiReunalle(Pati& a) {
  arvoAsteroidinOminaisuudet(a);
  a.x = 159;
  a.y = 159;
  while (std::fabs(a.x) < 160 && std::fabs(a.y) < 160) {
    a.x = random(384) - 192;
    a.y = random(384) - 192;
  }
  arvoAsteroidinVauhti(a);
}

bool planeetanKestava(const Alus& a) { return a.aselaji == 6 || a.aselaji == 18 || a.numero == 22; }

// Elastic push along the line between the two centres.
void tyonna(float& xv1, float& yv1, double m1, float& xv2, float& yv2, double m2, double kulma,
            bool toinenKimpoaa) {
  const double dvx = xv2 - xv1, dvy = yv2 - yv1;
  const double impulssi = 2 * (1 / (1 / m1 + 1 / m2)) * std::sqrt(dvx * dvx + dvy * dvy);
  if (toinenKimpoaa) {
    xv2 += impulssi / m2 * std::cos(kulma);
    yv2 += impulssi / m2 * std::sin(kulma);
  }
  xv1 -= impulssi / m1 * std::cos(kulma);
  yv1 -= impulssi / m1 * std::sin(kulma);
}

float kosketusraja(double summa) { return summa * 0.25 * pii; }

void asteroidiJaAsteroidi(Pati& a, Pati& b) {
  const float dx = b.x - (a.x + a.xv), dy = b.y - (a.y + a.yv);
  const float raja = kosketusraja(a.koko + b.koko);
  if (dx * dx + dy * dy >= raja * raja) return;
  tyonna(a.xv, a.yv, a.koko, b.xv, b.yv, b.koko, std::atan2(dy, dx), true);
}

void asteroidiJaAlus(Pati& a, Player& p) {
  const float dx = p.x - (a.x + a.xv), dy = p.y - (a.y + a.yv);
  const float raja = kosketusraja(a.koko + p.alus.sade);
  if (dx * dx + dy * dy >= raja * raja) return;
  const bool kestava = planeetanKestava(p.alus);
  if (kestava) {
    p.x -= (a.x - p.x) * 0.4f;
    p.y -= (a.y - p.y) * 0.4f;
  }
  tyonna(a.xv, a.yv, a.koko * 100.0, p.xvauhti, p.yvauhti, p.alus.paino, std::atan2(dy, dx), !kestava);
  if (!paattaa()) return;
  if (p.alus.easelaji == 14) {
    a.energia -= p.fuel * p.alus.edamage / p.alus.fuel;
    p.fuel = 0;
  } else if (p.alus.easelaji == 15) {
    a.energia -= p.alus.edamage;
  }
}

// The live shot slots of every player, gathered once per asteroid step so that
// twenty asteroids do not each walk thousands of empty slots.
const int padinPaikkoja = 10000;
struct ElavatPadit {
  unsigned short indeksi[padinPaikkoja];
  int maara;
};
ElavatPadit elavat[maxPlayers][2];

void kokoaElavat(ElavatPadit& e, const Pati* padit, double raja, int koko) {
  e.maara = 0;
  if (!padit) return;
  const int paikkoja = kaytossa(raja, std::min(koko, padinPaikkoja));
  for (int k = 0; k < paikkoja; ++k)
    if (padit[k].aika > 0) e.indeksi[e.maara++] = static_cast<unsigned short>(k);
}

void kokoaElavatPadit() {
  for (int p = 0; p < pelaajia(); ++p) {
    const Player& pl = player[p];
    const bool mukana = pelissa(pl);
    // Ship 9's special shots pass through asteroids.
    kokoaElavat(elavat[p][0], mukana ? pl.pati : nullptr, pl.alus.maxpadit, maksimipadit);
    kokoaElavat(elavat[p][1], mukana && pl.alus.numero != 9 ? pl.epati : nullptr, pl.alus.maxepadit,
                maksimiepadit);
  }
}

// Live shots of one array that reach the asteroid's next position hurt it and are spent.
void asteroidiJaPadit(Pati& a, Pati* padit, const ElavatPadit& e, double sade, double vahinko) {
  if (!paattaa()) return;
  const float ax = a.x + a.xv, ay = a.y + a.yv;
  const float raja = kosketusraja(a.koko + sade);
  for (int n = 0; n < e.maara; ++n) {
    Pati& s = padit[e.indeksi[n]];
    if (s.aika <= 0) continue;  // spent on an earlier asteroid
    const float dx = s.x - ax, dy = s.y - ay;
    if (dx * dx + dy * dy >= raja * raja) continue;
    a.energia -= vahinko;
    s.aika = 0;
  }
}

void asteroidinPlaneetta(Pati& a, float r2) {
  if (r2 > 0) {  // at the very centre there is no direction to pull in
    a.xv -= (a.x / r2) * 0.1f;
    a.yv -= (a.y / r2) * 0.1f;
  }
  if (a.xv * a.xv + a.yv * a.yv > 0.7f * 0.7f) {
    a.xv /= 1.01f;
    a.yv /= 1.01f;
  }
  a.x += a.xv;
  a.y += a.yv;
}

void laskeAsteroidi(int i) {
  Pati& a = asteroidi[i];
  const float r2 = a.x * a.x + a.y * a.y;
  if (r2 < 81 && paattaa()) a.energia = 0;
  for (int j = i + 1; j < asteroideja; ++j) asteroidiJaAsteroidi(a, asteroidi[j]);
  for (int p = 0; p < pelaajia(); ++p) {
    if (!pelissa(player[p])) continue;
    Player& pl = player[p];
    asteroidiJaAlus(a, pl);
    asteroidiJaPadit(a, pl.pati, elavat[p][0], pl.alus.patisade, pl.alus.damage);
    asteroidiJaPadit(a, pl.epati, elavat[p][1], pl.alus.epatisade, pl.alus.edamage);
  }
  asteroidinPlaneetta(a, r2);
  if (a.energia > 0 || !paattaa()) return;
  rajahdys(asteroidinRajahdys, a.x, a.y);
  asteroidiuudestaan[i] = true;
  asteroidirajahtaa = true;
  arajahdys[0] = a.x;
  arajahdys[1] = a.y;
  luoAsteroidiReunalle(a);
}

// --- Stars -------------------------------------------------------------------

struct Tahtiluokka {
  float osuus;  // cumulative share of the sky
  float r, g, b;
};

// Rough shares of the naked-eye sky by spectral class, brightest-looking first.
const Tahtiluokka tahtiluokat[] = {
    {0.03f, 0.61f, 0.69f, 1.00f},  // O and B: blue
    {0.15f, 0.79f, 0.84f, 1.00f},  // A: blue-white
    {0.35f, 0.97f, 0.97f, 1.00f},  // F: white
    {0.60f, 1.00f, 0.96f, 0.86f},  // G: yellow-white
    {0.85f, 1.00f, 0.82f, 0.63f},  // K: orange
    {1.00f, 1.00f, 0.70f, 0.54f},  // M: red-orange
};

void varitaTahti(Star& s) {
  const float arpa = random(1.0);
  const Tahtiluokka* luokka = &tahtiluokat[0];
  while (arpa > luokka->osuus && luokka + 1 != std::end(tahtiluokat)) ++luokka;
  const float kirkkaus = random(0.5) + 0.5;  // faint stars look greyer, not another hue
  s.r = luokka->r * kirkkaus;
  s.g = luokka->g * kirkkaus;
  s.b = luokka->b * kirkkaus;
}

// --- The world step's stages -------------------------------------------------

void asetaValo() {
  // Without a video surface there is no GL context (tests, benchmarks,
  // dedicated mode), and GL calls without one are undefined.
  if (!SDL_GetVideoSurface()) return;
  const GLfloat diffuse[] = {0.8f, 0.8f, 0.8f, 0.8f};
  glLightfv(GL_LIGHT0, GL_DIFFUSE, diffuse);
}

void laskeKameranKeskipiste() {
  float maxx = -160, maxy = -120, minx = 160, miny = 120;
  for (int i = 0; i < pelaajia(); ++i) {
    if (!pelissa(player[i])) continue;
    maxx = std::max(maxx, player[i].x);
    minx = std::min(minx, player[i].x);
    maxy = std::max(maxy, player[i].y);
    miny = std::min(miny, player[i].y);
  }
  camposx = (camposx * 19 + ((maxx + minx) * 0.5) / 1.2000000476837158) / 20;
  camposy = (camposy * 19 + ((maxy + miny) * 0.5) / 1.2000000476837158) / 20;
}

void laskeKameranEtaisyys() {
  float dx = 0, dy = 0;
  for (int i = 0; i < pelaajia(); ++i) {
    if (!pelissa(player[i])) continue;
    for (int j = i + 1; j < pelaajia(); ++j) {
      if (!pelissa(player[j])) continue;
      dx = std::max(dx, std::fabs(player[i].x - player[j].x));
      dy = std::max(dy, std::fabs(player[i].y - player[j].y));
    }
  }
  const double k = sets.cammode == 0 ? 64 : 48;
  // The comparison scales dy by the screen shape, the result deliberately does not.
  const double d = std::fabs(dx) > std::fabs(dy * k * 0.015625) ? std::fabs(dx) : std::fabs(dy);
  camposz = (d * 1.3333333730697632 + camposz * 19) / 20;
}

double asteina(double radiaanit) { return radiaanit * 180 / kameranPii; }

void laskeKameranKulmat() {
  if (sets.cammode != 0) {
    alfa = beta = alfa2 = beta2 = 0;
    return;
  }
  const float X = 0.75f * camposx, Y = 0.75f * camposy;
  const double R = std::sqrt(X * X + Y * Y);
  const double Z = camposz + 35;
  const double suunta = asteina(std::atan2(Y, X));
  const double kallistus = asteina(std::atan2(R, Z));
  alfa = suunta;
  alfa2 = (alfa2 * 250 + suunta * R / 50) / (R / 50 + 250);
  beta2 = -kallistus;
  beta = (beta * 19 - kallistus) / 20;
}

void tietokonePilotit() {
  if (!paattaa()) return;
  for (int i = 0; i < pelaajia(); ++i)
    if (pelissa(player[i]) && !player[i].ihmispelaaja) player[i].ailiiku();
}

void liikuta() {
  for (int i = 0; i < pelaajia(); ++i) {
    Player& p = player[i];
    if (!pelissa(p) || p.kuolema >= 1) continue;
    p.liiku();
    p.laskeKaasujaljet();
    p.liikutaPadit();
    p.liikutaePadit();
    if (paattaa()) p.tarkistaHajosikoPadit();
  }
}

void alkusirpaleet() {
  for (int i = 0; i < pelaajia(); ++i) {
    Player& p = player[i];
    if (pelissa(p) && p.kuolema >= 1 && p.kuolema < uudestaanHetki) p.laskeAlkuSirpaleet();
  }
}

void planeetta(Player& p) {
  const double a = std::atan2(p.y, p.x);
  const double b = std::atan2(p.yvauhti, p.xvauhti);
  double v = std::sqrt(p.xvauhti * p.xvauhti + p.yvauhti * p.yvauhti);
  const double d = std::sqrt(p.x * p.x + p.y * p.y);
  const bool kestava = planeetanKestava(p.alus);
  if (!kestava && d > 0) {
    const double veto = 0.0004 * (50000 / p.alus.paino) / std::pow(d, 2.3);
    p.xvauhti -= p.x * veto;
    p.yvauhti -= p.y * veto;
  }
  if (d >= p.alus.sade + planeetanSade) return;
  p.energia -= 5;
  if (kestava) {
    p.x += 2 * p.x * p.alus.nopeus;
    p.y += 2 * p.y * p.alus.nopeus;
    return;
  }
  v = std::max(v, 0.1);
  const double suunta = 2 * a - b - pii;  // mirror bounce off the surface
  p.xvauhti = v * std::cos(suunta);
  p.yvauhti = v * std::sin(suunta);
  const float nx = p.x + p.xvauhti, ny = p.y + p.yvauhti;
  if (nx * nx + ny * ny < 25) {
    p.xvauhti = -p.xvauhti;
    p.yvauhti = -p.yvauhti;
  }
}

void planeetat() {
  if (!paattaa()) return;
  for (int i = 0; i < pelaajia(); ++i)
    if (pelissa(player[i])) planeetta(player[i]);
}

// Draws a ship number in 0..23; random(24) can return 24 itself.
int arvoAlusnumero() {
  int n;
  do n = static_cast<int>(random(alustyyppeja));
  while (n >= alustyyppeja);
  return n;
}

// Buys a random affordable ship. A player who cannot afford even the
// cheapest ship is out.
void ostaSatunnainenAlus(Player& p) {
  const int n = ostettavaSatunnainen(p);
  if (n < 0) {
    p.pisteet = -1.0f;
    return;
  }
  p.uudestaan(alus[n]);
  p.pisteet -= alus[n].pistemaara;
}

// A client is sent its ships. A host puts every ship at the respawn point instead of
// choosing on the spot: its loop hands out the first ships as it does later ones, and
// nobody's choice holds up the match.
void pistepelinAlku() {
  if (pistepeli && ekapisteframe && !asiakas()) {
    for (int i = 0; i < pelaajia(); ++i) {
      if (isanta())
        player[i].kuolema = uudestaanHetki;
      else if (saavalita)
        valitseAlus(i);
      else
        ostaSatunnainenAlus(player[i]);
    }
  }
  ekapisteframe = false;
}

void kuolemaAjastimet() {
  if (!paattaa()) return;
  for (int i = 0; i < pelaajia(); ++i) {
    Player& p = player[i];
    if (!pelissa(p) || p.kuolema <= 0) continue;
    // The host holds the timer here until its network loop has respawned the ship.
    if (isanta() && p.kuolema == uudestaanHetki) continue;
    --p.kuolema;
  }
}

void asiakkaanRajahdykset() {
  if (!asiakas()) return;
  for (int i = 0; i < pelaajia(); ++i) {
    if (!playerrajahtaa[i]) continue;
    rajahdysaani(player[i]);
    playerrajahtaa[i] = false;
    rajahdys(aluksenRajahdys, prajahdys[i][0], prajahdys[i][1]);
  }
}

void kuolema(int i) {
  Player& p = player[i];
  if (isanta()) {
    playerrajahtaa[i] = true;
    prajahdys[i][0] = p.x;
    prajahdys[i][1] = p.y;
  }
  if (paattaa()) rajahdys(aluksenRajahdys, p.x, p.y);
  p.suojapaalla = false;
  if (p.alus.easelaji == 12 && random(100) >= 50) {
    if (paattaa()) p.uudestaan(alus[12]);
    soita(alus[12].eosumisaani);
  }
  if (p.energia > 0) return;
  rajahdysaani(p);
  p.kuolema = kuolemanAlku;
}

void kuolemat() {
  for (int i = 0; i < pelaajia(); ++i)
    if (pelissa(player[i]) && player[i].energia <= 0 && player[i].kuolema < 1) kuolema(i);
}

int satunnainenAlusIlmanPisteita() {
  int n = static_cast<int>(random(10000) / 10001 * alustyyppeja);
  if (n > alustyyppeja - 1) n -= alustyyppeja;
  if (n < 0) n += alustyyppeja;
  return n;
}

void uudestaanPyynto(int i) {
  Player& p = player[i];
  switch (gamemode) {
    case 2: playeruudestaan[i] = 1; break;
    case 3:
      playeruudestaan[i] = 1;
      tiimillePisteita(p.tiimi, -ckuolemapisteet);
      break;
    case 4:
      playeruudestaan[i] = 1;
      tiimillePisteita(p.tiimi, -skuolemapisteet);
      break;
    case 1:
      if (!isanta()) break;
      if (p.pisteet < alus[2].pistemaara)
        p.pisteet = -1.0f;
      else
        playeruudestaan[i] = 1;
      break;
    case 0:
      if (!isanta()) break;
      if (p.pisteet < alus[2].pistemaara)
        p.pisteet = -1.0f;
      else if (playeruudestaan[i] <= 1)
        playeruudestaan[i] = 2;
      break;
  }
}

void paikallinenUusiAlus(int i) {
  Player& p = player[i];
  if (!pistepeli) {
    p.uudestaan(alus[satunnainenAlusIlmanPisteita()]);
  } else {
    p.suojapaalla = false;
    // Locally, exactly the elimination price is already too poor (the host tests strictly).
    if (p.pisteet <= alus[2].pistemaara)
      p.pisteet = -1.0f;
    else if (saavalita)
      valitseAlus(i);
    else
      ostaSatunnainenAlus(p);
  }
  p.laitaAlkuSirpaleet();
}

void uudestaanSyntymat() {
  for (int i = 0; i < pelaajia(); ++i) {
    if (!pelissa(player[i]) || player[i].kuolema != uudestaanHetki) continue;
    // A local capture-the-flower death is charged here and again in the
    // request below: the double penalty is part of the local game's balance.
    if (paikallinen() && gamemode == 3) tiimillePisteita(player[i].tiimi, -ckuolemapisteet);
    if (paattaa()) uudestaanPyynto(i);
    if (paikallinen()) paikallinenUusiAlus(i);
  }
}

void elvytykset() {
  if (!paattaa()) return;
  for (int i = 0; i < pelaajia(); ++i) {
    Player& p = player[i];
    if (!pelissa(p) || p.kuolema != 1) continue;
    p.energia = p.alus.energia;
    p.xvauhti = p.yvauhti = 0;
  }
}

void liikutaSirpaleet() {
  const int n = kaytossaSirpaleita();
  for (int i = 0; i < n; ++i) {
    Sirpale& s = sirpale[i];
    if (s.aika <= 0) continue;
    s.x += s.xv;
    s.y += s.yv;
    s.z += s.zv;
    --s.aika;
  }
}

const int aaltoilevatTahdet = 75;

void aaltoileTahdet(int frame) {
  const float t = frame / 50.0f;
  for (int i = 0; i < aaltoilevatTahdet; ++i) {
    Star& s = star[i];
    const float kx = s.x + 45, ky = s.y - 45;
    s.z = std::sin((kx * kx + ky * ky) / 70 + t) * -8 - 50;
  }
}

void tavoitteet() {
  if (!paattaa()) return;
  switch (gamemode) {
    case 2: laskeDPisteet(); break;
    case 3: laskeCPisteet(); break;
    case 4: laskeSPisteet(); break;
  }
}

void raportoiPikkumies(int i) {
  for (pikkumiessiirto& s : siirrot) {
    if (s.aika >= 1) continue;
    const Pati& m = pikkumies[i];
    s.x = m.x;
    s.y = m.y;
    s.aika = m.aika;
    s.energia = m.energia;
    s.numero = i;
    return;
  }
}

}  // namespace

// --- Start-up placement ------------------------------------------------------

void alustaTahdet() {
  for (int i = 0; i < tahtia; ++i) {
    Star& s = star[i];
    // A wide sheet behind the playing field, deep enough for parallax.
    s.x = random(800) - 400;
    s.y = random(600) - 300;
    s.z = i < aaltoilevatTahdet ? -50 : -60 - random(90);
    varitaTahti(s);
    // Mostly pin-points, now and then a bright one.
    s.koko = random(1.0) < 0.05 ? random(0.6) + 0.6 : random(0.35) + 0.15;
  }
}

void alustaAsteroidit() {
  for (Pati& a : asteroidi) {
    arvoAsteroidinOminaisuudet(a);
    do {
      a.x = random(640) - 320;
      a.y = random(640) - 320;
    } while (std::fabs(a.x) < 40 && std::fabs(a.y) < 40);
    arvoAsteroidinVauhti(a);
  }
}

// --- A new match -------------------------------------------------------------

void nollaaOttelu(int tila, bool krediitit, bool valinta, float pisteet) {
  gamemode = tila;
  pistepeli = krediitit;
  saavalita = valinta;
  ekapisteframe = true;
  for (Player& p : player) {
    p.pisteet = pisteet;
    p.unohdaOttelu();
  }
  for (Sirpale& s : sirpale) s = Sirpale{};
  for (Pati& m : pikkumies) m.aika = 0;
  std::fill(std::begin(playerrajahtaa), std::end(playerrajahtaa), false);
  std::fill(std::begin(playeruudestaan), std::end(playeruudestaan), 0);
  std::fill(std::begin(asteroidiuudestaan), std::end(asteroidiuudestaan), false);
  asteroidirajahtaa = false;
  for (pikkumiessiirto& s : siirrot) s = pikkumiessiirto{};
  limalaitetaan = false;
  aloitaCPisteet();
  for (int k = 0; dpiste && k < dpisteita; ++k) dpiste[k].tiimi = -1;
  aiAlusta();
}

// --- The world step ----------------------------------------------------------

// The same step runs in a local game, on a host and on a client. A client (joinpeli,
// paattaa() false) skips six whole stages: tietokonePilotit, planeetat, pistepelinAlku,
// kuolemaAjastimet, elvytykset and tavoitteet; within the others it skips each
// decision (shots against shots, damage to asteroids, a death's debris, respawn requests),
// which arrive from the host, and only a client runs asiakkaanRajahdykset. Two stages may
// open the ship choice (valitseAlus, a screen with a loop of its own that returns once the
// player has chosen): pistepelinAlku at the start of a local credit match, and
// uudestaanSyntymat when a local ship is replaced.
void calculateFrame(int frame) {
  asetaValo();
  laskeKameranKeskipiste();
  laskeKameranEtaisyys();
  laskeKameranKulmat();
  tietokonePilotit();
  liikuta();
  alkusirpaleet();
  laskePikkumiehet();
  laskeAsteroidit();
  planeetat();
  pistepelinAlku();
  kuolemaAjastimet();
  asiakkaanRajahdykset();
  kuolemat();
  uudestaanSyntymat();
  elvytykset();
  liikutaSirpaleet();
  aaltoileTahdet(frame);
  tavoitteet();
}

void laskeAsteroidit() {
  if (asiakas() && asteroidirajahtaa) {
    asteroidirajahtaa = false;
    rajahdys(asteroidinRajahdys, arajahdys[0], arajahdys[1]);
  }
  if (paattaa()) kokoaElavatPadit();
  for (int i = 0; i < asteroideja; ++i) laskeAsteroidi(i);
}

void laskePikkumiehet() {
  for (int i = 0; i < pikkumiehia; ++i) {
    Pati& m = pikkumies[i];
    if (m.aika <= 0) continue;
    --m.aika;
    if (m.ampumisviive < 1) {
      // Every ship over the little man gets him: overlapping ships both gain.
      for (int p = 0; p < pelaajia(); ++p) {
        if (!pelissa(player[p]) || !lahella(p, m.x, m.y, player[p].alus.sade)) continue;
        player[p].energia += 1.0f;
        m.aika = 0;
      }
    } else {
      --m.ampumisviive;
    }
    if (isanta() && m.aika <= 0) raportoiPikkumies(i);
  }
}

// Drawing

static float xrot, yrot, zrot;  // the planet's spin, degrees

static const double asteRadiaaneina = piirronPii / 180.0;

int printedAsInt(double value) {
  // A 32-bit printf("%d") given a double reads its low word. The panels show that
  // number, and the same on every target, so it is computed here rather than printed.
  uint64_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  return static_cast<int32_t>(static_cast<uint32_t>(bits & 0xffffffffu));
}

static void tulostaLuku(float x, float y, int luku, float koko) {
  char teksti[12];  // room for any int: a low word can print eleven characters
  std::snprintf(teksti, sizeof teksti, "%d", luku);
  gl_println(x, y, 0, teksti, koko);
}

static bool verkkopeli() { return hostpeli || joinpeli; }

// Scores are credits in a local credit game and in the network modes 0 and 1.
static bool krediittipeli() { return verkkopeli() ? gamemode == 0 || gamemode == 1 : pistepeli; }

static const char* pelaajanNimi(const Player& p) {
  return netnick[p.numero >= 0 && p.numero < maxPlayers ? p.numero : 0];
}

// The two in-plane axes of a quad that faces the tilted camera: the same
// turn as rotating by alfa about z and then by beta about y.
struct Kasvot {
  float oikea[3];
  float ylos[3];
};

static Kasvot kameranKasvot() {
  if (sets.cammode != 0) return {{1, 0, 0}, {0, 1, 0}};
  const double a = alfa * asteRadiaaneina, b = beta * asteRadiaaneina;
  return {{float(std::cos(a) * std::cos(b)), float(std::sin(a) * std::cos(b)), float(-std::sin(b))},
          {float(-std::sin(a)), float(std::cos(a)), 0}};
}

static Kasvot tasossa(float kulmaAsteina) {
  const double k = kulmaAsteina * asteRadiaaneina;
  return {{float(std::cos(k)), float(std::sin(k)), 0}, {float(-std::sin(k)), float(std::cos(k)), 0}};
}

// Particle quads are gathered into one static vertex array and drawn with a
// single call: a call per quad costs the software renderer more than the quad.
class NelioEra {
 public:
  void vari(float r, float g, float b, float a) {
    nykyinen[0] = r;
    nykyinen[1] = g;
    nykyinen[2] = b;
    nykyinen[3] = a;
  }

  // Half sizes `leveys` along the first axis and `korkeus` along the second.
  void lisaa(const Kasvot& k, float x, float y, float z, float leveys, float korkeus) {
    if (maara == kapasiteetti) piirra();
    const float ox = k.oikea[0] * leveys, oy = k.oikea[1] * leveys, oz = k.oikea[2] * leveys;
    const float yx = k.ylos[0] * korkeus, yy = k.ylos[1] * korkeus, yz = k.ylos[2] * korkeus;
    kulma(0, x - ox - yx, y - oy - yy, z - oz - yz, 0, 0);
    kulma(1, x + ox - yx, y + oy - yy, z + oz - yz, 1, 0);
    kulma(2, x + ox + yx, y + oy + yy, z + oz + yz, 1, 1);
    kulma(3, x - ox + yx, y - oy + yy, z - oz + yz, 0, 1);
    ++maara;
  }

  void piirra() {
    if (maara == 0) return;
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, paikat);
    glTexCoordPointer(2, GL_FLOAT, 0, tekstuuri);
    glColorPointer(4, GL_FLOAT, 0, varit);
    glDrawArrays(GL_QUADS, 0, maara * 4);
    glPopClientAttrib();
    maara = 0;
  }

 private:
  static const int kapasiteetti = 2048;
  float paikat[kapasiteetti * 4 * 3];
  float tekstuuri[kapasiteetti * 4 * 2];
  float varit[kapasiteetti * 4 * 4];
  float nykyinen[4] = {1, 1, 1, 1};
  int maara = 0;

  void kulma(int nurkka, float x, float y, float z, float u, float v) {
    const int k = maara * 4 + nurkka;
    float* paikka = &paikat[k * 3];
    paikka[0] = x;
    paikka[1] = y;
    paikka[2] = z;
    tekstuuri[k * 2] = u;
    tekstuuri[k * 2 + 1] = v;
    std::memcpy(&varit[k * 4], nykyinen, sizeof nykyinen);
  }
};

static NelioEra era;

static void nelio(const Kasvot& k, float x, float y, float z, float leveys, float korkeus) {
  era.lisaa(k, x, y, z, leveys, korkeus);
}

static void nelio(const Kasvot& k, float x, float y, float z, float puolikas) {
  era.lisaa(k, x, y, z, puolikas, puolikas);
}

// An untextured rectangle inside an open glBegin(GL_QUADS).
static void tasoNelio(float x1, float y1, float x2, float y2) {
  glVertex2f(x1, y1);
  glVertex2f(x2, y1);
  glVertex2f(x2, y2);
  glVertex2f(x1, y2);
}

// A flat, unlit, additive state for particles; the caller's state comes back
// with lopetaHiukkaset.
static void aloitaHiukkaset(GLuint tekstuuri, GLenum lahde) {
  glPushAttrib(GL_ENABLE_BIT | GL_COLOR_BUFFER_BIT | GL_CURRENT_BIT | GL_TEXTURE_BIT);
  glDisable(GL_DEPTH_TEST);
  glDisable(GL_LIGHTING);
  glEnable(GL_TEXTURE_2D);
  glEnable(GL_BLEND);
  glBlendFunc(lahde, GL_ONE);
  glBindTexture(GL_TEXTURE_2D, tekstuuri);
}

static void lopetaHiukkaset() { glPopAttrib(); }

// Camera of the running game: a tilted chase view or a straight top view.
void asetaKameraJaValo() {
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
  if (sets.cammode == 0) {
    const double b = beta * kameranPii / 180.0, a2 = alfa2 * kameranPii / 180.0;
    gluLookAt(0.25 * camposx, 0.25 * camposy, camposz, camposx, camposy, kentanZ, std::cos(b) * std::cos(a2),
              std::cos(b) * std::sin(a2), -std::sin(b));
  } else {
    gluLookAt(camposx, camposy, camposz, camposx, camposy, 0, 0, 1, 0);
  }
  const GLfloat valkoinen[] = {1, 1, 1, 1};
  const GLfloat harmaa[] = {0.8f, 0.8f, 0.8f, 1};
  const GLfloat valonPaikka[] = {0, 0, -25, 1};
  glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, valkoinen);
  glLightfv(GL_LIGHT0, GL_DIFFUSE, harmaa);
  glLightfv(GL_LIGHT0, GL_POSITION, valonPaikka);
  glEnable(GL_BLEND);
  glBlendFunc(GL_ONE, GL_ONE);
}

static void piirraGalaksi(GLuint tekstuuri, float x, float y, float puolikas) {
  glBindTexture(GL_TEXTURE_2D, tekstuuri);
  era.vari(1, 1, 1, 1);
  nelio(tasossa(0), x, y, -235, puolikas);
  era.piirra();
}

static void piirraTahdet() {
  const Kasvot suoraan = tasossa(0);
  glBindTexture(GL_TEXTURE_2D, texture[tx::lightFlare]);
  for (const Star& s : star) {
    era.vari(s.r, s.g, s.b, 1);
    nelio(suoraan, s.x, s.y, s.z + kentanZ, s.koko);
  }
  era.piirra();
}

// Galaxies and stars, as far as the detail level allows.
void piirraTausta() {
  if (sets.detail < 1) return;
  glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT | GL_TEXTURE_BIT);
  glDisable(GL_LIGHTING);
  glEnable(GL_TEXTURE_2D);
  if (sets.detail > 1) piirraGalaksi(texture[tx::blueGalaxy], 272, -60, 12);
  piirraGalaksi(texture[tx::pinkGalaxy], -112, -40, 8);
  piirraTahdet();
  glPopAttrib();
}

static bool piirtaaViivoja(const Alus& a) {
  return a.easelaji == 5 || a.easelaji == 6 || a.easelaji == 7 || a.aselaji == 9 || a.aselaji == 11 ||
         a.numero == 18;
}

float piirtoSiirto[maxPlayers][2];
void (*kuvanPaalle)() = nullptr;

static void piirraPelaaja(int i) {
  Player& p = player[i];
  const float x = p.x, y = p.y;
  p.x += piirtoSiirto[i][0];
  p.y += piirtoSiirto[i][1];
  p.piirra();
  p.x = x;
  p.y = y;
  p.piirraPadit();
  p.piirraePadit();
  p.piirraLimat();
  p.piirraKaasujaljet();
  if (piirtaaViivoja(p.alus)) {
    // The line effects age with the drawing rate, not the simulation.
    p.laskeViivat();
    p.piirraViivat();
  }
}

// Ships with everything they own, then the swirls of the ships waiting to come back.
void piirraPelaajat() {
  for (int i = 0; i < pelaajia(); ++i)
    if (pelissa(player[i]) && player[i].kuolema < 1) piirraPelaaja(i);
  for (int i = 0; i < pelaajia(); ++i)
    if (pelissa(player[i]) && player[i].kuolema >= 1 && player[i].kuolema < uudestaanHetki)
      player[i].piirraAlkuSirpaleet();
}

// The corner pieces stand at the frame's corners; the runs of flares between them.
struct ReunanJakso {
  float dx, dy;      // one step
  int kulmaMalli;    // list_int entry of the corner the run starts from
  float r0, g0, b0;  // colour at step 0
  float r1, g1, b1;  // colour change per step
};

static const ReunanJakso reunanJaksot[4] = {
    {-16, 0, 19, 1, 0, 0, -0.05f, 0, 0.05f},
    {0, -12, 20, 0, 0, 1, 0.05f, 0, -0.05f},
    {16, 0, 19, 1, 0, 0, -0.05f, 0.05f, 0},
    {0, 12, 21, 0, 1, 0, 0.05f, -0.05f, 0},
};

static void piirraKulmaMalli(float x, float y, int lista) {
  glPushAttrib(GL_ENABLE_BIT);
  valmisteleMallit();
  piirraKenttaMalli(lista, x, y, 5);
  glPopAttrib();
}

// The glowing frame of the field through (160, 120), (-160, 120), (-160, -120), (160, -120).
void piirraKentanReuna() {
  float x = 160, y = 120;
  for (const ReunanJakso& j : reunanJaksot) {
    piirraKulmaMalli(x, y, j.kulmaMalli);
    x += 20 * j.dx;
    y += 20 * j.dy;
  }
  const Kasvot kasvot = kameranKasvot();
  glPushAttrib(GL_ENABLE_BIT | GL_COLOR_BUFFER_BIT | GL_CURRENT_BIT | GL_TEXTURE_BIT);
  glDisable(GL_LIGHTING);
  glEnable(GL_TEXTURE_2D);
  glEnable(GL_BLEND);
  glBlendFunc(GL_ONE, GL_ONE);
  glBindTexture(GL_TEXTURE_2D, texture[tx::lightFlare]);
  for (const ReunanJakso& j : reunanJaksot) {
    for (int i = 1; i < 20; ++i) {
      era.vari(j.r0 + j.r1 * i, j.g0 + j.g1 * i, j.b0 + j.b1 * i, 0.8f);
      nelio(kasvot, x + j.dx * i, y + j.dy * i, kentanZ, 6);
    }
    x += 20 * j.dx;
    y += 20 * j.dy;
  }
  era.piirra();
  glPopAttrib();
}

static void piirraTavoitteet() {
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  if (gamemode == 4)
    piirraSPisteet();
  else if (gamemode == 2)
    piirraDPisteet();
  else if (gamemode == 3)
    piirraCPisteet();
}

static void piirraSirpaleetTekstuurilla(const Kasvot& kasvot, bool nelioina) {
  glBindTexture(GL_TEXTURE_2D, texture[nelioina ? tx::whiteSquare : tx::lightFlare]);
  for (int i = 0; i < kaytossaSirpaleita(); ++i) {
    const Sirpale& s = sirpale[i];
    if (s.aika <= 0 || (s.muoto == 10) != nelioina) continue;
    const double haalistus = s.aika / s.maxaika;
    era.vari(s.red * haalistus, s.green * haalistus, s.blue * haalistus, 1);
    nelio(kasvot, s.x, s.y, s.z + kentanZ, s.koko);
  }
  era.piirra();
}

// Explosion debris, fading as it ages. With additive blending the order does
// not show, so each texture is drawn in one batch.
void piirraSirpaleet() {
  aloitaHiukkaset(texture[tx::lightFlare], GL_ONE);
  const Kasvot kasvot = kameranKasvot();
  piirraSirpaleetTekstuurilla(kasvot, false);
  piirraSirpaleetTekstuurilla(kasvot, true);
  lopetaHiukkaset();
}

// Each human player's ship is marked over the field in its team colour: corner
// brackets round the ship and its number (its nick in a network game) above it,
// the same few pixels whatever the camera's distance, so that a player finds
// their own ship at a glance among sixteen.
static void piirraKulmat(float x, float y, float r) {
  const float sakara = r * 0.45f;
  glBegin(GL_LINES);
  for (float sx : {-1.0f, 1.0f}) {
    for (float sy : {-1.0f, 1.0f}) {
      glVertex2f(x + sx * r, y + sy * r);
      glVertex2f(x + sx * (r - sakara), y + sy * r);
      glVertex2f(x + sx * r, y + sy * r);
      glVertex2f(x + sx * r, y + sy * (r - sakara));
    }
  }
  glEnd();
}

struct Merkki {
  const Player* pelaaja;
  float x, y, r;  // window pixels
};

static void piirraMerkinKulmat(const Merkki& m) {
  glColor4f(0, 0, 0, 1);  // a dark edge keeps the colour readable over bright effects
  glLineWidth(4);
  piirraKulmat(m.x, m.y, m.r);
  valitseVari(m.pelaaja->tiimi);
  glLineWidth(2);
  piirraKulmat(m.x, m.y, m.r);
}

// The label sits above the brackets, or below them at the top of the window.
static void piirraMerkinNimi(const Merkki& m, float ikkunanKorkeus) {
  const Player& p = *m.pelaaja;
  char numero[12];
  std::snprintf(numero, sizeof numero, "%d", p.numero + 1);
  const char* nimi = verkkopeli() ? pelaajanNimi(p) : numero;
  const float koko = 7, etaisyys = m.r + koko + 3;
  const float y = m.y + etaisyys + koko <= ikkunanKorkeus ? m.y + etaisyys : m.y - etaisyys;
  valitseVari(p.tiimi);
  varjostettuRivi(keskitettyX(nimi, koko, m.x), y, nimi, koko);
}

// A ship coming back is marked where its swirl gathers, so that its player sees
// where it will appear.
void piirraMerkit() {
  GLdouble malli[16], projektio[16];
  GLint nakyma[4];
  glGetDoublev(GL_MODELVIEW_MATRIX, malli);
  glGetDoublev(GL_PROJECTION_MATRIX, projektio);
  glGetIntegerv(GL_VIEWPORT, nakyma);
  Merkki merkit[maxPlayers];
  int maara = 0;
  for (int i = 0; i < pelaajia(); ++i) {
    const Player& p = player[i];
    if (!pelissa(p) || !p.ihmispelaaja || p.kuolema >= uudestaanHetki) continue;
    GLdouble x, y, z, reunaX, reunaY, reunaZ;
    gluProject(p.x, p.y, kentanZ, malli, projektio, nakyma, &x, &y, &z);
    gluProject(p.x + p.alus.sade, p.y, kentanZ, malli, projektio, nakyma, &reunaX, &reunaY, &reunaZ);
    if (z < 0 || z > 1) continue;  // behind the camera
    const float sade = float(std::hypot(reunaX - x, reunaY - y));
    merkit[maara++] = {&p, float(x - nakyma[0]), float(y - nakyma[1]), std::max(12.0f, sade * 1.6f + 4)};
  }
  aloitaRuutupiirto();
  glDisable(GL_TEXTURE_2D);
  glDisable(GL_BLEND);
  for (int k = 0; k < maara; ++k) piirraMerkinKulmat(merkit[k]);
  // Every label over every bracket, so that ships close together keep their names readable.
  glEnable(GL_BLEND);
  for (int k = 0; k < maara; ++k) piirraMerkinNimi(merkit[k], float(nakyma[3]));
  lopetaRuutupiirto();
}

void piirraMaailma() {
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  asetaKameraJaValo();
  piirraTausta();
  piirraPelaajat();
  piirraPikkumiehet();
  piirraAsteroidit();
  drawPlanet();
  piirraKentanReuna();
  piirraTavoitteet();
  piirraSirpaleet();
  piirraMerkit();
  piirraHud();
}

void drawFrame(int) {
  piirraMaailma();
  if (tilannenappi) piirraTilanne();
  if (kuvanPaalle) kuvanPaalle();
  // The planet spins with the drawing rate (a menu drawn over a frozen field keeps it still).
  xrot += 0.6f;
  yrot += 0.9f;
  zrot += 0.12f;
  naytaKuva();
}

// Cone directions on the planet: equal-area latitude bands between two polar
// caps, neighbouring bands turned by half a cone. Worked out once.
struct Piikki {
  float leveys, pituus;  // colatitude and longitude, degrees
};

static const int piikkeja = 60;
static const int piikkiVyohykkeita = 6;

static int laskePiikit(Piikki* piikit) {
  const double lakki = 0.5 * 4.0 / std::sqrt(double(piikkeja));
  const double vyo = (piirronPii - 2 * lakki) / piikkiVyohykkeita;
  int maara = 0;
  double kertyma = 0;
  // Band 0 and band 7 are the caps; each band's share follows its area.
  for (int v = 0; v < piikkiVyohykkeita + 2; ++v) {
    const double yla = v == 0 ? 0 : lakki + (v - 1) * vyo;
    const double ala = v == 0 ? lakki : v == piikkiVyohykkeita + 1 ? piirronPii : yla + vyo;
    const double osuus = piikkeja * (std::cos(yla) - std::cos(ala)) / 2;
    const int ennen = int(std::lround(kertyma));
    kertyma += osuus;
    const int tassa = int(std::lround(kertyma)) - ennen;
    const bool napa = v == 0 || v == piikkiVyohykkeita + 1;
    const double keski = napa ? (v == 0 ? 0 : piirronPii) : (yla + ala) / 2;
    for (int k = 0; k < tassa && maara < piikkeja + 2; ++k) {
      const double siirto = (v % 2) * 0.5;
      piikit[maara++] = {float(keski * 180 / piirronPii), float((k + siirto) * 360.0 / tassa)};
    }
  }
  return maara;
}

static GLUquadric* planeetanMuoto() {
  static GLUquadric* muoto = gluNewQuadric();
  return muoto;
}

void drawPlanet() {
  static Piikki piikit[piikkeja + 2];
  static const int piikkiMaara = laskePiikit(piikit);
  const int tarkkuus = sets.detail * 4 + 8;
  const int piikinTarkkuus = sets.detail > 0 ? sets.detail * 4 : 3;
  glEnable(GL_LIGHTING);
  glEnable(GL_DEPTH_TEST);
  glEnable(GL_CULL_FACE);
  glDisable(GL_BLEND);
  glDisable(GL_TEXTURE_2D);
  glPushMatrix();
  glTranslatef(0, 0, kentanZ);
  glScalef(2.2f, 2.2f, 2.2f);
  glRotatef(xrot, 1, 0, 0);
  glRotatef(yrot, 0, 1, 0);
  glRotatef(zrot, 0, 0, 1);
  glColor4f(1, 1, 1, 1);
  gluSphere(planeetanMuoto(), 3, tarkkuus, tarkkuus);
  for (int i = 0; i < piikkiMaara; ++i) {
    glPushMatrix();
    glRotatef(piikit[i].pituus, 0, 0, 1);
    glRotatef(piikit[i].leveys, 0, 1, 0);
    glTranslatef(0, 0, 2.8f);
    gluCylinder(planeetanMuoto(), 0.5, 0, 1, piikinTarkkuus, 1);
    glPopMatrix();
  }
  glPopMatrix();
  glDisable(GL_CULL_FACE);
  glEnable(GL_TEXTURE_2D);
  glEnable(GL_BLEND);
}

void piirraAsteroidit() {
  glEnable(GL_LIGHTING);
  glEnable(GL_TEXTURE_2D);
  glEnable(GL_DEPTH_TEST);
  glDisable(GL_BLEND);
  glBindTexture(GL_TEXTURE_2D, texture[tx::asteroidSkin]);
  glColor4f(1, 1, 1, 1);
  for (const Pati& a : asteroidi) {
    glPushMatrix();
    glTranslatef(a.x, a.y, kentanZ);
    glRotatef(xrot * a.r + a.alku, 1, 0, 0);
    glRotatef(yrot * a.g + a.alku, 0, 1, 0);
    glRotatef(zrot * a.b + a.alku, 0, 0, 1);
    glScalef(a.koko, a.koko, a.koko);
    glCallList(list_asteroid);
    glPopMatrix();
  }
  glEnable(GL_BLEND);
  glDisable(GL_DEPTH_TEST);
  glDisable(GL_LIGHTING);
}

// Little men stand turned a quarter left: local (px, py) lands at (py, -px).
void piirraPikkumiehet() {
  glEnable(GL_BLEND);
  glBlendFunc(GL_ONE, GL_ONE);
  glEnable(GL_TEXTURE_2D);
  glBindTexture(GL_TEXTURE_2D, texture[tx::littleMan]);
  glColor4f(1, 1, 1, 1);
  glBegin(GL_QUADS);
  glNormal3f(0, 0, 1);
  for (const Pati& m : pikkumies) {
    if (m.aika <= 0) continue;
    const float z = kentanZ + 1;
    glTexCoord2f(0, 1);
    glVertex3f(m.x - 0.4f, m.y + 0.4f, z);
    glTexCoord2f(1, 1);
    glVertex3f(m.x - 0.4f, m.y - 0.4f, z);
    glTexCoord2f(1, 0);
    glVertex3f(m.x + 0.4f, m.y - 0.4f, z);
    glTexCoord2f(0, 0);
    glVertex3f(m.x + 0.4f, m.y + 0.4f, z);
  }
  glEnd();
}

// Shots. Weapons that never set a colour leave (0, 0, 0); each kind then gets
// a look of its own so that no shot is invisible.
static const float oletusVarit[alustyyppeja][3] = {
    {1, 0.8f, 0.3f}, {1, 0.5f, 0.2f}, {1, 1, 0.5f},    {0.4f, 0.8f, 1}, {1, 0.6f, 0.2f}, {0.6f, 1, 0.4f},
    {0.3f, 1, 1},    {1, 0.9f, 0.8f}, {0.9f, 0.4f, 1}, {0.3f, 1, 0.3f}, {1, 0.3f, 0.3f}, {0.5f, 0.7f, 1},
    {1, 1, 0.3f},    {0.2f, 1, 0.2f}, {1, 0.9f, 0.8f}, {1, 0.2f, 0.2f}, {0.8f, 0.5f, 1}, {0.4f, 1, 0.8f},
    {0.3f, 1, 1},    {1, 0.9f, 0.5f}, {0.7f, 1, 0.3f}, {1, 0.6f, 0.1f}, {0.9f, 0.9f, 1}, {1, 0.4f, 0.7f},
};

struct Vari {
  float r, g, b;
};

static Vari laukauksenVari(int laji, const Pati& p) {
  if (p.r != 0 || p.g != 0 || p.b != 0) return {p.r, p.g, p.b};
  const float* v = oletusVarit[laji >= 0 && laji < alustyyppeja ? laji : 0];
  return {v[0], v[1], v[2]};
}

// A shot of a hot gun is weaker; the weaker, the redder.
static Vari kuumuudenVari(const Pati& p, const Alus& a) {
  const float teho = a.patienergia > 0 ? float(p.energia / a.patienergia) : 1;
  const float kuumuus = std::fmin(std::fmax(1 - teho, 0.0f), 0.5f) * 2;
  return {1, 1 - 0.8f * kuumuus, 0.6f * (1 - kuumuus)};
}

static bool onSade(int laji) { return laji == 6 || laji == 9 || laji == 18; }

// The flare textures fade out at about half their width: a quad of twice the
// radius shows a glow of the shot's own size.
static void piirraPati(int laji, int kohta, const Pati& p, const Alus& a, const Kasvot& kasvot) {
  Vari v = laukauksenVari(laji, p);
  float koko = float(a.patisade * 2);
  switch (laji) {
    case 4:
      if (kohta == 0)
        koko = float(a.patisade * 8 * (1 + 0.2 * std::sin(p.aika * 0.25)));
      else
        koko = 0.6f;
      break;
    case 13: {  // the charge ball grows with its energy, up to 2000
      const float lataus = std::fmin(std::fmax(p.energia / 2000.0f, 0.0f), 1.0f);
      koko *= 0.3f + 0.7f * lataus;
      break;
    }
    case 15: {  // mines blink; the untextured square is kept small
      const float kirkkaus = (p.aika / 25) % 2 == 0 ? 1.0f : 0.25f;
      v = {v.r * kirkkaus, v.g * kirkkaus, v.b * kirkkaus};
      koko = float(a.patisade * 0.6);
      break;
    }
    case 19: v = kuumuudenVari(p, a); break;
    default: break;
  }
  era.vari(v.r, v.g, v.b, 1);
  if (laji == 7 || laji == 14) {
    nelio(tasossa(p.kulma), p.x, p.y, kentanZ, koko * 1.2f, koko * 0.6f);
  } else if (laji == 21) {
    // Fan shots streak along their flight.
    const float suunta = float(std::atan2(p.yv, p.xv) / asteRadiaaneina);
    nelio(tasossa(suunta), p.x, p.y, kentanZ, koko * 1.6f, koko);
  } else {
    nelio(kasvot, p.x, p.y, kentanZ, koko);
  }
}

void Player::piirraPadit() {
  const int laji = alus.aselaji;
  if (onSade(laji) || pati == nullptr) return;  // beams are drawn as lines
  aloitaHiukkaset(alus.patitexture, GL_ONE);
  const Kasvot kasvot = kameranKasvot();
  const int maara = kaytossa(alus.maxpadit, maksimipadit);
  for (int i = 0; i < maara; ++i)
    if (pati[i].aika > 0) piirraPati(laji, i, pati[i], alus, kasvot);
  era.piirra();
  lopetaHiukkaset();
}

// Special shots and effects. Colours per special kind; shots that carry a colour
// of their own keep it.
static const float erikoisVarit[alustyyppeja][3] = {
    {0.3f, 0.6f, 1}, {1, 0.85f, 0.4f}, {1, 0.5f, 0.1f},    {0.4f, 0.9f, 1},  {0.7f, 0.3f, 1},
    {0.5f, 1, 0.5f}, {0.5f, 0.8f, 1},  {0.75f, 0.6f, 1},   {1, 0.55f, 0.2f}, {0.9f, 1, 0.9f},
    {1, 0.9f, 0.6f}, {0.2f, 0.3f, 1},  {1, 1, 1},          {1, 0.4f, 0.3f},  {1, 0.7f, 0.3f},
    {1, 0.5f, 0.2f}, {1, 0.8f, 0.5f},  {0.2f, 0.9f, 0.1f}, {1, 0.95f, 0.4f}, {0.9f, 0.9f, 1},
    {0.7f, 1, 0.4f}, {1, 0.6f, 1},     {0.6f, 1, 1},       {1, 0.15f, 0.1f},
};

static Vari erikoisenVari(int laji, const Pati& p) {
  if (p.r != 0 || p.g != 0 || p.b != 0) return {p.r, p.g, p.b};
  const float* v = erikoisVarit[laji >= 0 && laji < alustyyppeja ? laji : 0];
  return {v[0], v[1], v[2]};
}

static float suuntaAsteina(const Pati& p) { return float(std::atan2(p.yv, p.xv) / asteRadiaaneina); }

// One live special shot, drawn by kind; sizes follow the shot radius (the flare
// fades at about half its width, so twice the radius shows the shot's own size).
static void piirraErikoinen(int laji, const Pati& p, const Alus& a, const Kasvot& kasvot) {
  const Vari v = erikoisenVari(laji, p);
  const float koko = float(std::fmax(a.epatisade * 2, 0.8));
  float kirkkaus = 1;
  switch (laji) {
    case 4:  // a gravity well: three arms turning round a dark heart
      for (int k = 0; k < 3; ++k) {
        era.vari(v.r * 0.7f, v.g * 0.7f, v.b * 0.7f, 1);
        nelio(tasossa(p.aika * 6.0f + k * 120), p.x, p.y, kentanZ, koko * 2.2f, koko * 0.35f);
      }
      break;
    case 13:
    case 21:  // streaks along the flight
      era.vari(v.r, v.g, v.b, 1);
      nelio(tasossa(suuntaAsteina(p)), p.x, p.y, kentanZ, koko * 1.6f, koko * 0.6f);
      return;
    case 17: {  // slime wobbles
      const float heilahdus = 1 + 0.15f * float(std::sin(p.aika * 0.3));
      era.vari(v.r, v.g, v.b, 1);
      nelio(kasvot, p.x, p.y, kentanZ, koko * heilahdus, koko / heilahdus);
      return;
    }
    case 23:  // a charge blinks faster as its time runs out
      kirkkaus = (p.aika / std::max(4, p.aika / 8)) % 2 == 0 ? 1.0f : 0.3f;
      break;
    default: break;
  }
  era.vari(v.r * kirkkaus, v.g * kirkkaus, v.b * kirkkaus, 1);
  nelio(kasvot, p.x, p.y, kentanZ, koko);
}

// The blade points where the heading, taken as radians, points (see liiku).
static void piirraTera(const Player& p) {
  const double n = p.alus.easenopeus, e = p.easeviive;
  const double d = e < n * 0.5 ? e / 20 : (n - e) / 20;
  const float pituus = float(2 * d + p.alus.sade) * 0.5f;
  const float suunta = float(p.kulma / asteRadiaaneina);
  const float x = p.x + float(std::cos(p.kulma)) * pituus, y = p.y + float(std::sin(p.kulma)) * pituus;
  era.vari(0.9f, 0.9f, 1, 1);
  nelio(tasossa(suunta), x, y, kentanZ, pituus, 0.35f);
}

static void piirraPulssi(const Player& p, const Kasvot& kasvot) {
  const float kulunut = float(p.alus.easenopeus - p.easeviive);
  const float kesto = 30;
  if (kulunut < 0 || kulunut > kesto) return;
  const float sade = float(p.alus.epatisade) * kulunut / kesto, hiipuu = 1 - kulunut / kesto;
  era.vari(1 * hiipuu, 0.9f * hiipuu, 0.6f * hiipuu, 1);
  for (int k = 0; k < 32; ++k) {
    const double a = k * 2 * piirronPii / 32;
    nelio(kasvot, p.x + float(std::cos(a)) * sade, p.y + float(std::sin(a)) * sade, kentanZ, 1.2f);
  }
}

// Effects of the ship itself (the ship model draws the shield and the boost's flame).
static void piirraErikoisTila(const Player& p, const Kasvot& kasvot) {
  switch (p.alus.easelaji) {
    case 10:
      if (p.easeviive > 0) piirraPulssi(p, kasvot);
      break;
    case 19:
      if (p.easeviive > 0 && p.ampumispuoli >= 2) piirraTera(p);
      break;
    default: break;
  }
}

void Player::piirraePadit() {
  const int laji = alus.easelaji;
  aloitaHiukkaset(alus.epatitexture != 0 ? alus.epatitexture : texture[tx::lightFlare], GL_ONE);
  const Kasvot kasvot = kameranKasvot();
  const int maara = epati ? kaytossa(alus.maxepadit, maksimiepadit) : 0;
  for (int i = 0; i < maara; ++i)
    if (epati[i].aika > 0) piirraErikoinen(laji, epati[i], alus, kasvot);
  era.piirra();
  glBindTexture(GL_TEXTURE_2D, texture[tx::lightFlare]);  // the ship's own effects glow
  piirraErikoisTila(*this, kasvot);
  era.piirra();
  lopetaHiukkaset();
}

// Slime sticks to the hull and turns with it.
void Player::piirraLimat() {
  if (lima == nullptr) return;
  aloitaHiukkaset(texture[tx::lightFlare], GL_ONE);
  era.vari(0.1f, 0.7f, 0.1f, 1.0f);
  glPushMatrix();
  glTranslatef(x, y, kentanZ);
  glRotatef(kulma - 90, 0, 0, 1);
  const Kasvot suoraan = tasossa(0);
  for (int i = 0; i < limoja; ++i)
    if (lima[i].aika > 0) nelio(suoraan, lima[i].x, lima[i].y, 0, 0.5f);
  era.piirra();
  glPopMatrix();
  lopetaHiukkaset();
}

static void piirraSavut(const Kaasujalki* jalki, float puolikas) {
  for (int i = 0; i < kaasujalkia; ++i) {
    if (jalki[i].alpha <= 0) continue;
    era.vari(1, 0, 0, jalki[i].alpha);
    nelio(tasossa(0), jalki[i].x, jalki[i].y, kentanZ, puolikas);
  }
}

void Player::piirraKaasujaljet() {
  const int tyyppi = alus.numero;
  if (tyyppi == 16 || tyyppi == 22 || kaasujalki == nullptr) return;
  aloitaHiukkaset(texture[tx::lightFlare], GL_SRC_ALPHA);
  const float puolikas = float(2 * alus.jalkikoko);
  piirraSavut(kaasujalki, puolikas);
  if ((tyyppi == 4 || tyyppi == 23) && kaasujalki2 != nullptr) piirraSavut(kaasujalki2, puolikas);
  era.piirra();
  lopetaHiukkaset();
}

static float viivanLeveys(const Alus& a) {
  if (a.numero == 18) return 1.5f;
  return a.aselaji == 6 || a.aselaji == 9 || a.aselaji == 11 ? 2.0f : 1.0f;
}

void Player::piirraViivat() {
  if (viivat == nullptr) return;
  glDisable(GL_TEXTURE_2D);
  glEnable(GL_LINE_SMOOTH);
  glLineWidth(viivanLeveys(alus));
  glBegin(GL_LINES);
  for (int i = 0; i < viivoja; ++i) {
    const Viivakasa& v = viivat[i];
    if (v.aika <= 0) continue;
    glColor4f(v.r, v.g, v.b, 0.9f);
    glVertex3f(v.x1, v.y1, kentanZ);
    glVertex3f(v.x2, v.y2, kentanZ);
  }
  glEnd();
  glLineWidth(1.0f);
  glEnable(GL_TEXTURE_2D);
}

// The swirl gathering into a ship about to come back: bright at birth,
// fading quadratically.
void Player::piirraAlkuSirpaleet() {
  if (alkusirpale == nullptr) return;
  glDisable(GL_DEPTH_TEST);
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE);
  glBindTexture(GL_TEXTURE_2D, texture[tx::lightFlare]);
  const Kasvot suoraan = tasossa(0);
  for (int i = 0; i < alkusirpaleMaara; ++i) {
    const Sirpale& s = alkusirpale[i];
    if (s.aika <= 0) continue;
    const double ika = 1 - s.aika / s.maxaika;
    era.vari(s.red, s.green, s.blue, 1 - ika * ika);
    nelio(suoraan, x + s.x, y + s.y, kentanZ + s.z + 1, s.koko);
  }
  era.piirra();
  glBlendFunc(GL_SRC_COLOR, GL_ONE_MINUS_SRC_COLOR);
}

// Player panels: five down each side for up to ten players, else two columns of eight.
static const float paneelinPaikat[10][2] = {
    {-14.5f, 10}, {12.5f, 10},     {-14.5f, -10}, {12.5f, -10},  {-14.5f, 6.5f},
    {-14.5f, 3},  {-14.5f, -2.5f}, {-14.5f, -6},  {12.5f, 6.5f}, {12.5f, -6},
};

static void paneelinPaikka(int n, float& px, float& py) {
  if (pelaajia() <= 10) {
    const int k = n >= 0 && n < 10 ? n : 0;
    px = paneelinPaikat[k][0];
    py = paneelinPaikat[k][1];
  } else {
    px = n < 8 ? -14.5f : 12.5f;
    py = 10 - 2.85f * (n < 8 ? n : n - 8);
  }
}

static void piirraPalkki(float y1, float y2, float taytto) {
  const float f = std::fmax(taytto, 0.0f);
  glColor4f(1 - std::pow(f, 1.7f), f, 0, 0.8f);
  tasoNelio(-1, y1, 2 * f - 1, y2);
}

static void piirraPaneelinTekstit(const Player& p) {
  if (verkkopeli()) {
    gl_println(-1, 1, 0, pelaajanNimi(p), 0.3f);
  } else {
    gl_println(-1, 1, 0, "player", 0.3f);
    tulostaLuku(1, 1, p.numero + 1, 0.3f);
  }
  gl_println(2, 1, 0, "team", 0.3f);
  tulostaLuku(3.7f, 1, p.tiimi + 1, 0.3f);
  gl_println(-1, 0.33f, 0, "shield", 0.3f);
  gl_println(-0.4f, -0.125f, 0, "fuel", 0.3f);
}

static void piirraKrediitit(const Player& p) {
  gl_println(-1.5f, -0.6f, 0, "credits", 0.25f);
  tulostaLuku(1.0f, -0.6f, printedAsInt(p.pisteet), 0.25f);
  gl_println(2.6f, -0.6f, 0, "/", 0.25f);
  tulostaLuku(2.8f, -0.6f, verkkopeli() ? mpcredits : printedAsInt(fullcredits), 0.25f);
}

static void piirraPaneelinPalkit(const Player& p) {
  glDisable(GL_TEXTURE_2D);
  glTranslatef(2, 0, 0);
  glBegin(GL_QUADS);
  glColor4f(0.25f, 0.25f, 0, 0.5f);
  tasoNelio(-1.05f, 0.2f, 1.05f, 0.46f);
  tasoNelio(-1.05f, -0.25f, 1.05f, 0.01f);
  piirraPalkki(0.23f, 0.43f, float(p.energia / p.alus.energia));
  piirraPalkki(-0.22f, -0.02f, float(p.fuel / p.alus.fuel));
  glEnd();
  glColor4f(0.2f, 0.5f, 0.2f, 0.5f);
  glEnable(GL_TEXTURE_2D);
}

void Player::piirraGraffat() {
  if (energia < 0) energia = 0;  // the panel keeps the record tidy for everyone else
  float px, py;
  paneelinPaikka(numero, px, py);
  glPushMatrix();
  glTranslatef(px, py, 0);
  // The panel keeps its pixel size relative to a 512-pixel-wide screen.
  const float mittakaava = std::sqrt(1.0f / (screenwidth * 0.001953125f));
  glScalef(mittakaava, mittakaava, mittakaava);
  valitseVari(tiimi);
  piirraPaneelinTekstit(*this);
  if (krediittipeli()) piirraKrediitit(*this);
  piirraPaneelinPalkit(*this);
  glPopMatrix();
}

// The score panel of the objective modes, one entry per team in slot order.
static void piirraPistetaulu(const char* otsikko) {
  glPushMatrix();
  glEnable(GL_BLEND);
  glBlendFunc(GL_ONE, GL_ONE);
  glDisable(GL_LIGHTING);
  glTranslatef(-8.5f, 10, 0);
  glColor4f(0.2f, 0.2f, 0.8f, 0.8f);
  gl_println(1, 2, 0, otsikko, 0.4f);
  glColor4f(0.2f, 0.5f, 0.2f, 0.5f);
  const int raja = verkkopeli() ? mpcredits : printedAsInt(fullcredits);
  int listatut[maxPlayers];
  int tiimeja = 0;
  for (int i = 0; i < pelaajia(); ++i) {
    const Player& p = player[i];
    bool jo = false;
    for (int t = 0; t < tiimeja; ++t) jo = jo || listatut[t] == p.tiimi;
    if (jo) continue;
    listatut[tiimeja++] = p.tiimi;
    gl_println(0, 1, 0, "team", 0.25f);
    tulostaLuku(2, 1, p.tiimi + 1, 0.25f);
    tulostaLuku(p.pisteet < 1000 ? 0 : -0.4f, 0.5f, printedAsInt(p.pisteet), 0.25f);
    gl_println(1.3f, 0.5f, 0, "/", 0.25f);
    tulostaLuku(1.6f, 0.5f, raja, 0.25f);
    glTranslatef(3.5f, 0, 0);
    if (tiimeja == 5 || tiimeja == 10) glTranslatef(-17.5f, -1.2f, 0);
  }
  glPopMatrix();
}

static void piirraCGraffat() { piirraPistetaulu("capture the flower score"); }
static void piirraDGraffat() { piirraPistetaulu("domination score"); }
static void piirraSGraffat() { piirraPistetaulu("mushroom score"); }

// Player panels and the objective score, on a plane in front of the camera.
void piirraHud() {
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_COLOR, GL_ONE_MINUS_SRC_ALPHA);
  glEnable(GL_TEXTURE_2D);
  glDisable(GL_LIGHTING);
  glDisable(GL_DEPTH_TEST);
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
  glTranslatef(0, 0, -30);
  for (int i = 0; i < pelaajia(); ++i) player[i].piirraGraffat();
  if (gamemode == 2)
    piirraDGraffat();
  else if (gamemode == 3)
    piirraCGraffat();
  else if (gamemode == 4)
    piirraSGraffat();
}

// Standings: while Tab is held the match shows every player's real numbers,
// which the panels' "%d" hides.

int kierrosaikaMs[maxPlayers] = {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1};

static void taytaTilannerivi(int i, Tilannerivi& r) {
  const Player& p = player[i];
  r.pelaaja = i;
  if (verkkopeli())
    std::snprintf(r.nimi, sizeof r.nimi, "%.10s", pelaajanNimi(p));  // a nick is at most ten letters
  else
    std::snprintf(r.nimi, sizeof r.nimi, "player %d", std::clamp(p.numero + 1, 0, 99));
  r.tiimi = p.tiimi + 1;
  r.alus = p.alus.numero;
  if (pelissa(player[i]))
    std::snprintf(r.pisteet, sizeof r.pisteet, "%.0f", std::floor(p.pisteet) + 0.0);  // never "-0"
  else
    std::snprintf(r.pisteet, sizeof r.pisteet, "out");
  r.kierros[0] = 0;
  if (!verkkopeli()) return;
  if (kierrosaikaMs[i] < 0)
    std::snprintf(r.kierros, sizeof r.kierros, "-");
  else
    std::snprintf(r.kierros, sizeof r.kierros, "%d ms", kierrosaikaMs[i]);
}

int tilanteenRivit(Tilannerivi* rivit) {
  int jarjestys[maxPlayers];
  const int n = pelaajia();
  for (int i = 0; i < n; ++i) jarjestys[i] = i;
  std::stable_sort(jarjestys, jarjestys + n, [](int a, int b) {
    if (pelissa(player[a]) != pelissa(player[b])) return pelissa(player[a]);
    return player[a].pisteet > player[b].pisteet;
  });
  for (int k = 0; k < n; ++k) taytaTilannerivi(jarjestys[k], rivit[k]);
  return n;
}

// The cells of the standings: the name in its team's colour, the round trip only
// over the network.
static const char* tilanteenSolu(const void* tiedot, int rivi, int sarake, char* tila, size_t koko) {
  if (rivi < 0) {
    const char* otsikot[] = {"player", "team", "ship", krediittipeli() ? "credits" : "score", "round trip"};
    return otsikot[sarake];
  }
  const Tilannerivi& r = static_cast<const Tilannerivi*>(tiedot)[rivi];
  switch (sarake) {
    case 0: valitseVari(player[r.pelaaja].tiimi); return r.nimi;
    case 1: std::snprintf(tila, koko, "%d", r.tiimi); return tila;
    case 2: std::snprintf(tila, koko, "%d", r.alus); return tila;
    case 3: return r.pisteet;
    default: return r.kierros;
  }
}

void piirraTilanne() {
  Tilannerivi rivit[maxPlayers];
  const int n = tilanteenRivit(rivit);
  piirraTaulukko({"Standings", verkkopeli() ? 5 : 4, n, rivit, tilanteenSolu, nullptr});
}

// Ship choice

namespace {

const int alusvalinnanKohtia = alustyyppeja + 1;  // the ships and the random entry
const int korvaavaAlus = 2;                       // where an unaffordable choice lands
// The computer pilot's pace when its choice is shown: one key per this many
// ticks, and a pause before confirming so that people can read its pick.
const int aiPainallusvali = 5;
const int aiVahvistusviive = 50;
const int aiNaytonPelaajaraja = 4;  // from this many players a computer pilot chooses unseen

// The first player in play of another team, or null.
const Player* ensimmainenVihollinen(const Player& oma) {
  for (int i = 0; i < pelaajia(); ++i)
    if (pelissa(player[i]) && player[i].tiimi != oma.tiimi) return &player[i];
  return nullptr;
}

// The computer pilot's answers to a few dangerous ships; -1 takes the random entry.
int vastaAlukselle(const Alus& vihu) {
  const double r = random(100);
  if (vihu.aselaji == 6) return r < 40 ? 6 : r < 80 ? 12 : -1;
  if (vihu.numero == 5) return r < 50 ? 4 : r < 70 ? 2 : -1;
  if (vihu.aselaji == 13) return r < 50 ? 4 : -1;
  if (vihu.aselaji == 16) return r < 50 ? 0 : -1;
  return -1;
}

}  // namespace

int satunnainenAlusnumero() { return satunnainenAlusIlmanPisteita(); }

double halvinAlus() {
  double halvin = alus[0].pistemaara;
  for (const Alus& a : alus) halvin = std::min(halvin, a.pistemaara);
  return halvin;
}

bool onVaraa(const Player& p, int alusnumero) { return p.pisteet >= alus[alusnumero].pistemaara; }

int ostettavaSatunnainen(const Player& p) {
  // Drawing on would never end for a player who cannot afford even the cheapest.
  if (p.pisteet < halvinAlus()) return -1;
  int n;
  do n = arvoAlusnumero();
  while (!onVaraa(p, n));
  return n;
}

void unohdaValintanapit(Player& p) {
  p.pylos = p.palas = p.pleft = p.pright = p.pfire = p.pease = false;
  entterpressed = false;
}

const char* const alusopas[alustyyppeja][alusoppaanRiveja] = {
    {"Tough, 50 hull, heavy and steady.", "Twin guns angled out at 45 degrees.",
     "Shield: shots cannot hit it for a while."},
    {"Fragile, 15 hull, but hits very hard.", "Heavy cannon with sparks and big recoil.",
     "Flak ring of 24 shots that shreds incoming fire."},
    {"Tiny, the fastest-turning ship and the cheapest.", "Rapid peashooter.",
     "Self-destruct that can take its neighbours along."},
    {"Sturdy, agile fighter.", "Guns alternating from side to side.",
     "An advancing barrier of five shots that blocks fire."},
    {"Heavy bomber, slow to turn.", "Cluster bomb that bursts when fire is released.",
     "Gravity wells that drag enemies in."},
    {"The second-strongest hull, slow.", "Heavy cannon that throws sparks.",
     "Leech pods that drain enemies and drop little men."},
    {"Darts about with no inertia; the planet cannot hold it.", "Short zap beam.", "Teleport."},
    {"All-rounder.", "Homing missiles.", "Lightning arc that jumps on to a second enemy."},
    {"Agile.", "Scatter gun.", "A boulder that bounces off walls and hulls alike, knocking ships away."},
    {"Sturdy laser ship.", "Continuous laser beam.", "Four drones that circle the ship."},
    {"Nimble.", "Steady single shots.", "Shock pulse that hurts, shoves and clears shots close by."},
    {"Steady gunship.", "A pair of shots.",
     "A short, deadly blue beam while fire is held; it turns slowly meanwhile."},
    {"Light and quick-turning, but never refuels.", "Broadside guns firing three ways.",
     "Comes back from half of its deaths."},
    {"Heavy.", "Charge ball that grows while fire is held, up to 40 damage.", "Cheap homing seekers."},
    {"Rammer.", "Missiles that steer with the ship.",
     "Lunge that bends towards the enemy ahead; the ram spends the whole tank as damage."},
    {"Minelayer.", "Drops mines.", "A fuel-burning boost, on and off, that rams for damage."},
    {"The largest and toughest ship, 65 hull.", "Wandering shots.", "Shotgun cone of pellets."},
    {"The lightest ship, 15 hull.", "Plain shots.", "Slime globs that slow their targets."},
    {"No inertia, planet-proof, turns about on each thrust press, never refuels by itself.",
     "Zap beam of random strength.", "Discharge that takes fuel from nearby enemies."},
    {"Brawler.", "Twin gun that overheats.", "Ramming blade."},
    {"Heavy, 54 hull.", "Weaving shots.", "Ring of 50 shots all round."},
    {"Skirmisher.", "Fan of 18 shots.",
     "A shot that splits again and again, each pair turning towards the nearest enemy."},
    {"Always thrusting, no inertia, planet-proof.", "Slow-spinning heavy shots.",
     "A rear fan against pursuers."},
    {"Tricky.", "Bouncing shots that trade momentum.", "A time charge that blows up when touched."},
};

bool alusvalinnanSyote(Player& p, int& kursori) {
  if (p.pfire || entterpressed) {
    p.pfire = entterpressed = false;
    return true;
  }
  if (p.palas || p.pleft) {
    kursori = (kursori + 1) % alusvalinnanKohtia;
    p.palas = p.pleft = false;
  } else if (p.pylos || p.pright) {
    kursori = (kursori + alusvalinnanKohtia - 1) % alusvalinnanKohtia;
    p.pylos = p.pright = false;
  }
  return false;
}

int valinnanAlus(int pelaaja, int& kursori) {
  const Player& p = player[pelaaja];
  const int n = kursori == satunnainenKohta ? ostettavaSatunnainen(p) : kursori;
  if (n >= 0 && onVaraa(p, n)) return n;
  kursori = korvaavaAlus;
  return -1;
}

bool ostaValinta(int pelaaja, int& kursori) {
  const int n = valinnanAlus(pelaaja, kursori);
  if (n < 0) return false;
  Player& p = player[pelaaja];
  p.uudestaan(alus[n]);
  p.pisteet -= static_cast<float>(alus[n].pistemaara);
  return true;
}

int tietokoneenKohde(int pelaaja) {
  const Player& p = player[pelaaja];
  int t = arvoAlusnumero();
  if (const Player* vihu = ensimmainenVihollinen(p)) t = vastaAlukselle(vihu->alus);
  if (p.pisteet < 50) {
    if (t < 0 || t >= alustyyppeja) t = arvoAlusnumero();
    while (!onVaraa(p, t)) t = arvoAlusnumero();
  }
  return t;
}

TietokoneenValinta::TietokoneenValinta(int kohde)
    : painalluksia(kohde), odotus(kohde == 0 ? aiVahvistusviive : aiPainallusvali) {}

void TietokoneenValinta::paina(Player& p, int kuluneet, bool heti) {
  odotus -= kuluneet;
  if (odotus > 0 && !heti) return;
  if (painalluksia > 0) {
    p.palas = true;
    --painalluksia;
  } else if (painalluksia < 0) {
    p.pylos = true;
    painalluksia = 0;
  } else {
    p.pfire = true;  // after a refused buy it confirms again, just as slowly
  }
  odotus = painalluksia > 0 ? aiPainallusvali : aiVahvistusviive;
}

void valitseAlus(int pelaaja) {
  Player& p = player[pelaaja];
  // Nobody can pay less than the cheapest ship; without that much the player is out.
  if (p.pisteet < halvinAlus()) {
    p.pisteet = -1.0f;
    return;
  }
  const bool tietokone = !p.ihmispelaaja;
  const bool naytetaan = !tietokone || pelaajia() < aiNaytonPelaajaraja;
  TietokoneenValinta ai(tietokone ? tietokoneenKohde(pelaaja) : 0);
  unohdaValintanapit(p);
  int kursori = 0;
  int kuluneet = 0;
  for (;;) {
    if (naytetaan) processEvents();
    if (tietokone) ai.paina(p, kuluneet, !naytetaan);
    if (alusvalinnanSyote(p, kursori) && ostaValinta(pelaaja, kursori)) break;
    if (!naytetaan) continue;
    const int ennen = framecounter;
    waitNextFrame();
    kuluneet = std::max(1, framecounter - ennen);
    drawAlusValinta(pelaaja, kursori);
    updateAudio();
  }
  unohdaValintanapit(p);
}

// --- The choice screen. Text lives at depth -40, the layout between x = -22 and 22.

namespace {

const float valintaZ = -40;
const float tietoX = -21, arvoX = -8;
const float tietoKoko = 0.7f, tietoRivi = 1.5f;

// The sustained speed the ship's thrust reaches against its drag (ships without
// inertia move at their thrust value), in units per second.
double huippunopeus(const Alus& a) {
  const int n = a.numero;
  double perFreimi = a.nopeus;
  if (n != 6 && n != 18 && n != 22) {
    const double kitka = 0.0054;
    perFreimi = (std::sqrt(1 + 4 * a.nopeus / kitka) - 1) / 2;
  }
  return perFreimi * calculatefps;
}

void tulostaRivi(int rivi, const char* nimi, const char* arvo) {
  const float y = 5.0f - tietoRivi * rivi;
  glColor4f(1, 0, 0, 1);
  gl_println(tietoX, y, valintaZ, nimi, tietoKoko);
  glColor4f(1, 1, 1, 1);
  gl_println(arvoX, y, valintaZ, arvo, tietoKoko);
}

void tulostaLukuRivi(int rivi, const char* nimi, double arvo) {
  char teksti[32];
  std::snprintf(teksti, sizeof teksti, "%.2f", arvo);
  tulostaRivi(rivi, nimi, teksti);
}

void piirraAlustiedot(int kursori) {
  if (kursori == satunnainenKohta) {
    tulostaRivi(0, "name:", "random ship");
    tulostaRivi(1, "ship number:", "?");
    return;
  }
  const Alus& a = alus[kursori];
  char numero[8];
  std::snprintf(numero, sizeof numero, "%d", kursori);
  tulostaRivi(0, "name:", a.nimi);
  tulostaRivi(1, "ship number:", numero);
  tulostaLukuRivi(2, "ship cost:", a.pistemaara);
  tulostaLukuRivi(3, "speed:", huippunopeus(a));
  tulostaLukuRivi(4, "turning speed:", a.kaantonopeus * calculatefps);
  tulostaLukuRivi(5, "weight:", a.paino);
  tulostaLukuRivi(6, "energy:", a.energia);
  tulostaLukuRivi(7, "damage:", a.damage);
  tulostaLukuRivi(8, "special damage:", a.edamage);
}

// Under the figures, the ship guide of the README: the strengths, then what fire
// and special do. A line too long for the layout is drawn smaller.
void piirraAlusopas(int kursori) {
  const char* const otsakkeet[alusoppaanRiveja] = {"", "fire: ", "special: "};
  const float y0 = -8.9f, rivi = 1.4f, suurinKoko = 0.55f;
  const float vasen = tietoX - tietoKoko, oikea = 22;  // the edges of the figures' labels and the layout
  char teksti[160];
  for (int r = 0; r < alusoppaanRiveja; ++r) {
    const char* ohje = kursori == satunnainenKohta
                           ? (r == 0 ? "Any ship you can afford, drawn at random." : "")
                           : alusopas[kursori][r];
    if (!*ohje) continue;
    std::snprintf(teksti, sizeof teksti, "%s%s", otsakkeet[r], ohje);
    const float koko = std::min(suurinKoko, (oikea - vasen) / float(2 * gl_pituus(teksti)));
    if (r == 0)
      glColor4f(1, 0.8f, 0.3f, 1);
    else
      glColor4f(0.85f, 0.85f, 0.85f, 1);
    gl_println(vasen + koko, y0 - rivi * r, valintaZ, teksti, koko);
  }
}

void piirraOtsakkeet(int pelaaja, const Player& p) {
  char teksti[32];
  glColor4f(1, 0.75f, 0.15f, 1);
  const char* otsikko = "choose your ship";
  gl_println(keskitettyX(otsikko, 1.2f), 13, valintaZ, otsikko, 1.2f);
  valitseVari(p.tiimi);
  gl_println(tietoX, 9.5f, valintaZ, "player");
  std::snprintf(teksti, sizeof teksti, "%d", pelaaja + 1);
  gl_println(tietoX + 8, 9.5f, valintaZ, teksti);
  glColor4f(1, 0, 0, 1);
  gl_println(tietoX, 7.5f, valintaZ, "remaining credits:", tietoKoko);
  std::snprintf(teksti, sizeof teksti, "%.2f", p.pisteet);
  glColor4f(1, 1, 1, 1);
  gl_println(arvoX, 7.5f, valintaZ, teksti, tietoKoko);
}

// Over the network the match goes on: the seconds left before a ship is drawn at random.
void piirraAikaa(int sekunteja) {
  if (sekunteja < 0) return;
  char teksti[32];
  std::snprintf(teksti, sizeof teksti, "time left: %d", sekunteja);
  glColor4f(1, 0.75f, 0.15f, 1);
  gl_println(4, 9.5f, valintaZ, teksti);
}

// The 25 entries as a strip of numbers: the cursor's in gold, ships the player
// cannot afford dimmed.
void piirraKohtarivi(const Player& p, int kursori) {
  const float koko = 0.55f, vali = 1.72f, x0 = -vali * (alusvalinnanKohtia - 1) / 2;
  char teksti[4];
  for (int i = 0; i < alusvalinnanKohtia; ++i) {
    if (i == satunnainenKohta)
      std::snprintf(teksti, sizeof teksti, "?");
    else
      std::snprintf(teksti, sizeof teksti, "%d", i);
    if (i == kursori)
      glColor4f(1, 0.75f, 0.15f, 1);
    else if (i != satunnainenKohta && !onVaraa(p, i))
      glColor4f(0.3f, 0.3f, 0.3f, 1);
    else
      glColor4f(0.8f, 0.8f, 0.8f, 1);
    const float k = i == kursori ? koko * 1.5f : koko;
    gl_println(keskitettyX(teksti, k, x0 + vali * i), i == kursori ? -13.8f : -13.5f, valintaZ, teksti, k);
  }
}

// The entry's ship turning on the right, seen from above at a slant; the random
// entry shows a large question mark instead.
void piirraValittuAlus(Player& p, int kursori) {
  const float x = 12, y = -1;
  if (kursori == satunnainenKohta) {
    glColor4f(1, 0.75f, 0.15f, 1);
    gl_println(keskitettyX("?", 4, x), y, valintaZ, "?", 4);
    return;
  }
  const Alus oma = p.alus;
  p.alus = alus[kursori];
  glPushMatrix();
  glTranslatef(x, y, valintaZ);
  glRotatef(-55, 1, 0, 0);
  const float koko = 5.5f / static_cast<float>(std::max(0.5, p.alus.sade));
  glScalef(koko, koko, koko);
  p.piirra(0, 0, 0, (currenttime / 16) % 360, 0);
  glPopMatrix();
  p.alus = oma;
}

}  // namespace

void drawAlusValinta(int pelaaja, int kursori, int sekunteja) {
  Player& p = player[pelaaja];
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  piirraTaustakuva(texture[tx::redNebula]);
  tummennaRuutu(0.55f);
  valikonNakyma(-22, 22);
  glEnable(GL_TEXTURE_2D);
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE);  // the glyphs' black adds nothing
  piirraOtsakkeet(pelaaja, p);
  piirraAikaa(sekunteja);
  piirraAlustiedot(kursori);
  piirraAlusopas(kursori);
  piirraKohtarivi(p, kursori);
  piirraValittuAlus(p, kursori);
  glEnable(GL_LIGHTING);
  glEnable(GL_DEPTH_TEST);
  glDisable(GL_BLEND);
  glColor4f(1, 1, 1, 1);
  naytaKuva();
}
