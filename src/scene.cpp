#include "scene.h"

#include <GL/gl.h>
#include <SDL/SDL.h>

#include <algorithm>
#include <cmath>
#include <iterator>

#include "Main.h"
#include "Menu.h"
#include "Sets.h"
#include "audio.h"
#include "ctf.h"
#include "domination.h"
#include "net.h"
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

namespace {

// The simulation turns degrees into radians with the single-precision pi;
// the camera uses 3.14 on purpose (its angles were tuned with it).
const double piF = 3.1415927f;
const double kameranPii = 3.14;

const float planeetanSade = 8.0f;
const short kuolemanAlku = 350;
const short uudestaanHetki = 200;  // the respawn decision is taken at this timer value
const float asteroidinVaistokulma = 0.5235987901687622f;

bool isanta() { return hostpeli; }
bool asiakas() { return joinpeli; }
bool paikallinen() { return !hostpeli && !joinpeli; }

int kaytossaSirpaleita() { return std::clamp(sirpaleita, 0, maxSirpaleita); }

// Number of slots a `maxpadit`-style limit uses: the game's loops run while
// the index is below the double, so a fraction counts as one more slot.
int kaytettavatPaikat(double raja, int koko) {
  if (!(raja > 0)) return 0;
  return std::min(koko, static_cast<int>(std::ceil(raja)));
}

void soita(Sound* s) {
  if (efektitpaalla && s) s->play();
}

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
    200, 100, {1500, 1000, -0.75}, aluksenSirpaleNopeus, 400, {200, 1, 200},
    {200, 100, 0.6000000238418579}, {50, 100, 0.5}, {100, 100, 0}, {100, 100, 0},
};
const SirpaleResepti asteroidinRajahdys = {
    35, 15, {200, 500, -0.2}, asteroidinSirpaleNopeus, 250, {200, 1, 50},
    {30, 100, 0.2}, {20, 100, 0.5}, {20, 100, 0.5}, {15, 100, 0.35},
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

float kosketusraja(double summa) { return summa * 0.25 * piF; }

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
  if (asiakas()) return;
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
  const int paikkoja = kaytettavatPaikat(raja, std::min(koko, padinPaikkoja));
  for (int k = 0; k < paikkoja; ++k)
    if (padit[k].aika > 0) e.indeksi[e.maara++] = static_cast<unsigned short>(k);
}

void kokoaElavatPadit() {
  for (int p = 0; p < pelaajaLkm(); ++p) {
    const Player& pl = player[p];
    const bool mukana = pelissa(p);
    // Ship 9's special shots pass through asteroids.
    kokoaElavat(elavat[p][0], mukana ? pl.pati : nullptr, pl.alus.maxpadit, maksimipadit);
    kokoaElavat(elavat[p][1], mukana && pl.alus.numero != 9 ? pl.epati : nullptr, pl.alus.maxepadit, maksimiepadit);
  }
}

// Live shots of one array that reach the asteroid's next position hurt it and are spent.
void asteroidiJaPadit(Pati& a, Pati* padit, const ElavatPadit& e, double sade, double vahinko) {
  if (asiakas()) return;
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
  if (r2 > 0) {
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
  if (r2 < 81 && !asiakas()) a.energia = 0;
  for (int j = i + 1; j < asteroideja; ++j) asteroidiJaAsteroidi(a, asteroidi[j]);
  for (int p = 0; p < pelaajaLkm(); ++p) {
    if (!pelissa(p)) continue;
    Player& pl = player[p];
    asteroidiJaAlus(a, pl);
    asteroidiJaPadit(a, pl.pati, elavat[p][0], pl.alus.patisade, pl.alus.damage);
    asteroidiJaPadit(a, pl.epati, elavat[p][1], pl.alus.epatisade, pl.alus.edamage);
  }
  asteroidinPlaneetta(a, r2);
  if (a.energia > 0 || asiakas()) return;
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
  for (int i = 0; i < pelaajaLkm(); ++i) {
    if (!pelissa(i)) continue;
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
  for (int i = 0; i < pelaajaLkm(); ++i) {
    if (!pelissa(i)) continue;
    for (int j = i + 1; j < pelaajaLkm(); ++j) {
      if (!pelissa(j)) continue;
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
  if (asiakas()) return;
  for (int i = 0; i < pelaajaLkm(); ++i)
    if (pelissa(i) && !player[i].ihmispelaaja) player[i].ailiiku();
}

void liikuta() {
  for (int i = 0; i < pelaajaLkm(); ++i) {
    Player& p = player[i];
    if (!pelissa(i) || p.kuolema >= 1) continue;
    p.liiku();
    p.laskeKaasujaljet();
    p.liikutaPadit();
    p.liikutaePadit();
    if (!asiakas()) p.tarkistaHajosikoPadit();
  }
}

void alkusirpaleet() {
  for (int i = 0; i < pelaajaLkm(); ++i)
    if (pelissa(i) && player[i].kuolema >= 1 && player[i].kuolema < uudestaanHetki) player[i].laskeAlkuSirpaleet();
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
  const double suunta = 2 * a - b - piF;  // mirror bounce off the surface
  p.xvauhti = v * std::cos(suunta);
  p.yvauhti = v * std::sin(suunta);
  const float nx = p.x + p.xvauhti, ny = p.y + p.yvauhti;
  if (nx * nx + ny * ny < 25) {
    p.xvauhti = -p.xvauhti;
    p.yvauhti = -p.yvauhti;
  }
}

void planeetat() {
  if (asiakas()) return;
  for (int i = 0; i < pelaajaLkm(); ++i)
    if (pelissa(i)) planeetta(player[i]);
}

// Draws a ship number in 0..23; random(24) can return 24 itself.
int arvoAlusnumero() {
  int n;
  do n = static_cast<int>(random(alustyyppeja));
  while (n >= alustyyppeja);
  return n;
}

double halvinAlus() {
  double halvin = alus[0].pistemaara;
  for (const Alus& a : alus) halvin = std::min(halvin, a.pistemaara);
  return halvin;
}

// Buys a random affordable ship. A player who cannot afford even the
// cheapest ship is out; drawing on would never end.
void ostaSatunnainenAlus(Player& p) {
  if (p.pisteet < halvinAlus()) {
    p.pisteet = -1.0f;
    return;
  }
  int n;
  do n = arvoAlusnumero();
  while (p.pisteet < alus[n].pistemaara);
  p.uudestaan(alus[n]);
  p.pisteet -= alus[n].pistemaara;
}

void pistepelinAlku() {
  if (pistepeli && ekapisteframe) {
    for (int i = 0; i < pelaajaLkm(); ++i) {
      if (saavalita)
        valitseAlus(i);
      else
        ostaSatunnainenAlus(player[i]);
    }
  }
  ekapisteframe = false;
}

void kuolemaAjastimet() {
  if (asiakas()) return;
  for (int i = 0; i < pelaajaLkm(); ++i) {
    Player& p = player[i];
    if (!pelissa(i) || p.kuolema <= 0) continue;
    // The host holds the timer here until its network loop has respawned the ship.
    if (isanta() && p.kuolema == uudestaanHetki) continue;
    --p.kuolema;
  }
}

void asiakkaanRajahdykset() {
  if (!asiakas()) return;
  for (int i = 0; i < pelaajaLkm(); ++i) {
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
  if (!asiakas()) rajahdys(aluksenRajahdys, p.x, p.y);
  p.suojapaalla = false;
  if (p.alus.easelaji == 12 && random(100) >= 50) {
    if (!asiakas()) p.uudestaan(alus[12]);
    soita(alus[12].eosumisaani);
  }
  if (p.energia > 0) return;
  rajahdysaani(p);
  p.kuolema = kuolemanAlku;
}

void kuolemat() {
  for (int i = 0; i < pelaajaLkm(); ++i)
    if (pelissa(i) && player[i].energia <= 0 && player[i].kuolema < 1) kuolema(i);
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
    case 2:
      playeruudestaan[i] = 1;
      break;
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
  for (int i = 0; i < pelaajaLkm(); ++i) {
    if (!pelissa(i) || player[i].kuolema != uudestaanHetki) continue;
    // A local capture-the-flower death is charged here and again in the
    // request below: the double penalty is part of the local game's balance.
    if (paikallinen() && gamemode == 3) tiimillePisteita(player[i].tiimi, -ckuolemapisteet);
    if (!asiakas()) uudestaanPyynto(i);
    if (paikallinen()) paikallinenUusiAlus(i);
  }
}

void elvytykset() {
  if (asiakas()) return;
  for (int i = 0; i < pelaajaLkm(); ++i) {
    Player& p = player[i];
    if (!pelissa(i) || p.kuolema != 1) continue;
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
  if (asiakas()) return;
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

// --- Shared helpers ----------------------------------------------------------

int pelaajaLkm() { return std::clamp(players, 0, maxPlayers); }

bool pelissa(int i) { return !pistepeli || player[i].pisteet >= 0; }

void tiimillePisteita(int tiimi, float maara) {
  for (int i = 0; i < pelaajaLkm(); ++i)
    if (pelissa(i) && player[i].tiimi == tiimi) player[i].pisteet += maara;
}

bool lahella(int i, float x, float y, float sade) {
  const float dx = player[i].x - x, dy = player[i].y - y;
  return std::sqrt(dx * dx + dy * dy) < sade;
}

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

// --- The world step ----------------------------------------------------------

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
  if (!asiakas()) kokoaElavatPadit();
  for (int i = 0; i < asteroideja; ++i) laskeAsteroidi(i);
}

void laskePikkumiehet() {
  for (int i = 0; i < pikkumiehia; ++i) {
    Pati& m = pikkumies[i];
    if (m.aika <= 0) continue;
    --m.aika;
    if (m.ampumisviive < 1) {
      // Every ship over the little man gets him: overlapping ships both gain.
      for (int p = 0; p < pelaajaLkm(); ++p) {
        if (!pelissa(p) || !lahella(p, m.x, m.y, player[p].alus.sade)) continue;
        player[p].energia += 1.0f;
        m.aika = 0;
      }
    } else {
      --m.ampumisviive;
    }
    if (isanta() && m.aika <= 0) raportoiPikkumies(i);
  }
}

// Drawing (filled by the rendering work)
void drawFrame(int) {}
void piirraMaailma() {}
void drawPlanet() {}
void piirraAsteroidit() {}
void piirraPikkumiehet() {}
void valitseAlus(int) {}
void drawAlusValinta(int, int) {}
void Player::piirraPadit() {}
void Player::piirraePadit() {}
void Player::piirraLimat() {}
void Player::piirraKaasujaljet() {}
void Player::piirraViivat() {}
void Player::piirraAlkuSirpaleet() {}
void Player::piirraGraffat() {}
