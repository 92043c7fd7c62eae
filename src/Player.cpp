// One player slot: life cycle, flight, primary weapons, projectiles and the
// simulation half of the per-player effects.
#include "Player.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "Main.h"
#include "Sets.h"
#include "audio.h"
#include "net.h"
#include "netpeli.h"
#include "scene.h"

Player player[maxPlayers];

namespace saannot {
bool paattaa() { return !joinpeli; }
bool isanta() { return hostpeli; }
bool asiakas() { return joinpeli; }
bool paikallinen() { return !hostpeli && !joinpeli; }

Napit napit(const Player& p) {
  if (asiakas()) return {p.kaasu, p.joinleft, p.joinright, p.joinase, p.joinease};
  return {p.pylos, p.pleft, p.pright, p.pfire, p.pease};
}

int pelaajia() { return std::clamp(players, 0, maxPlayers); }
bool pelissa(const Player& p) { return !pistepeli || p.pisteet >= 0; }

void tiimillePisteita(int tiimi, float maara) {
  for (int i = 0; i < pelaajia(); ++i)
    if (pelissa(player[i]) && player[i].tiimi == tiimi) player[i].pisteet += maara;
}

bool lahella(int i, float x, float y, float sade) {
  const float dx = player[i].x - x, dy = player[i].y - y;
  return std::sqrt(dx * dx + dy * dy) < sade;
}

bool suojattu(const Player& p) { return p.alus.easelaji == 0 && p.suojapaalla; }

void soita(Sound* s) {
  if (efektitpaalla && s) s->play();
}

int kaytossa(double raja, int koko) {
  if (!(raja > 0)) return 0;
  return raja >= koko ? koko : (int)std::ceil(raja);
}

short lyhyt(double v) {
  if (!(v > 0)) return 0;
  return v >= 32767 ? 32767 : (short)v;
}

void vaimenna(float& v, double k) { v = (float)(v / (1.0 + k * (std::fabs(v) + 1.0))); }

bool osuu(const Player& kohde, const Pati& s, double sade) {
  if (suojattu(kohde)) return false;
  const double r = (kohde.alus.sade + sade) * kosketus;
  const double dx = s.x - kohde.x, dy = s.y - kohde.y;
  return r * r > dx * dx + dy * dy;
}

void planeetta(Pati& s) {
  const double q = (double)s.x * s.x + (double)s.y * s.y;
  if (q < planeetanNielu * planeetanNielu) {
    if (paattaa()) s.aika = 0;
  } else if (q < planeetanVeto * planeetanVeto) {
    s.xv = (float)(s.xv - 0.1 * s.x / q);
    s.yv = (float)(s.yv - 0.1 * s.y / q);
  }
}

void vahingoita(Player& k, double maara) { k.energia = (float)(k.energia - maara); }

int kaytossaSirpaleita() { return std::clamp(sirpaleita, 0, maxSirpaleita); }

Sirpale* vapaaSirpale(int& i) {
  for (const int n = kaytossaSirpaleita(); i < n; ++i)
    if (sirpale[i].aika < 1) return &sirpale[i++];
  return nullptr;
}
}  // namespace saannot

using namespace saannot;

namespace {

// Kinds that fly without inertia: they steer by position, not by velocity.
bool inertiaton(const Player& p) {
  return p.alus.aselaji == 6 || p.alus.aselaji == 18 || p.alus.numero == 22;
}
bool tulinappi(const Player& p) { return napit(p).ase; }

int indeksi(const Player* p) {
  for (int i = 0; i < maxPlayers; ++i)
    if (&player[i] == p) return i;
  return -1;
}

int patiRaja(const Player& p) { return p.pati ? kaytossa(p.alus.maxpadit, maksimipadit) : 0; }
int epatiRaja(const Player& p) { return p.epati ? kaytossa(p.alus.maxepadit, maksimiepadit) : 0; }

// ---- Sound copies --------------------------------------------------------------

Sound* kopioi(Sound* s) { return s ? new Sound(s) : nullptr; }

void vapautaAanet(Player& p) {
  for (Sound** s : {&p.ampumisaani, &p.osumisaani, &p.eampumisaani, &p.eosumisaani}) {
    delete *s;
    *s = nullptr;
  }
}

void kopioiAanet(Player& p) {
  p.ampumisaani = kopioi(p.alus.ampumisaani);
  p.osumisaani = kopioi(p.alus.osumisaani);
  p.eampumisaani = kopioi(p.alus.eampumisaani);
  p.eosumisaani = kopioi(p.alus.eosumisaani);
}

void vapautaTaulukot(Player& p) {
  delete[] p.alkusirpale;
  delete[] p.pati;
  delete[] p.lima;
  delete[] p.epati;
  delete[] p.viivat;
  p.alkusirpale = nullptr;
  p.pati = p.epati = p.lima = nullptr;
  p.viivat = nullptr;
  p.alkusirpaleMaara = 0;
}

// The after-image starts laid out along x with the thrust value as spacing.
void alustaHanta(Player& p) {
  for (int k = 0; k < hantaa; ++k) {
    p.xhanta[k] = (float)(p.x - k * p.alus.nopeus);
    p.yhanta[k] = p.y;
    p.kulmahanta[k] = p.kulma;
  }
}

// What taking a ship and respawning share: latches cleared, the tail laid out anew
// and the sound copies swapped for the new ship's.
void aloitaAlus(Player& p) {
  p.ampumispuoli = 1;
  p.teleportattu = false;
  p.suojapaalla = false;
  p.limacount = 0;
  p.ampumisjuttu = 0;
  alustaHanta(p);
  vapautaAanet(p);
  kopioiAanet(p);
}

// No shot, slime blob or beam of the slot stays live.
void tyhjennaAmmukset(Player& p) {
  for (int i = 0, n = patiRaja(p); i < n; ++i) p.pati[i].aika = 0;
  for (int i = 0; p.lima && i < limoja; ++i) p.lima[i].aika = 0;
  for (int i = 0, n = epatiRaja(p); i < n; ++i) p.epati[i].aika = 0;
  for (int i = 0; p.viivat && i < viivoja; ++i) {
    p.viivat[i].x1 = 100;
    p.viivat[i].aika = 0;
  }
}

void varaaRuudukot();

}  // namespace

// ==== Life cycle ===================================================================

Player::Player()
    : ampumisaani(nullptr),
      osumisaani(nullptr),
      eampumisaani(nullptr),
      eosumisaani(nullptr),
      uusx(0),
      uusy(0),
      teleportattu(false),
      propelli(0),
      ampumispuoli(0),
      viivat(nullptr),
      pisteet(0),
      x(0),
      y(0),
      kulma(0),
      xvauhti(0),
      yvauhti(0),
      alpha(1),
      asekulma(0),
      energia(0),
      fuel(0),
      kaasujalkiaika(0),
      pylos(false),
      palas(false),
      pleft(false),
      pright(false),
      pfire(false),
      pease(false),
      numero(0),
      ampumisviive(0),
      limacount(0),
      pati(nullptr),
      epati(nullptr),
      lima(nullptr),
      alkusirpale(nullptr),
      kaasujalki(new Kaasujalki[kaasujalkia]()),
      kaasujalki2(new Kaasujalki[kaasujalkia]()),
      suojapaalla(false),
      easekesto(0),
      easeviive(0),
      laseraani(false),
      kuolema(0),
      ampumisjuttu(0),
      fcounter(0),
      xhanta{},
      yhanta{},
      kulmahanta{},
      ihmispelaaja(false),
      tiimi(0),
      kaasu(false),
      joinease(false),
      joinase(false),
      joinleft(false),
      joinright(false),
      alkusirpaleMaara(0) {
  numero = std::max(0, indeksi(this));
  while (std::sqrt(x * x + y * y) < 15) {
    x = (float)(random(320) - 160);
    y = (float)(random(240) - 120);
  }
}

Player::~Player() {
  vapautaTaulukot(*this);
  vapautaAanet(*this);
  delete[] kaasujalki;
  delete[] kaasujalki2;
}

void Player::asetaAlus(Alus a) {
  laseraani = false;
  alus = a;
  energia = (float)a.energia;
  fuel = (float)a.fuel;

  vapautaTaulukot(*this);
  alkusirpaleMaara = std::max(0, alkusirpaleita);
  alkusirpale = new Sirpale[alkusirpaleMaara]();
  pati = new Pati[std::max(0, maksimipadit)]();
  lima = new Pati[limoja]();
  epati = new Pati[std::max(0, maksimiepadit)]();
  viivat = new Viivakasa[viivoja]();
  varaaRuudukot();

  aloitaAlus(*this);
}

void Player::uudestaan(Alus a) {
  ampumisviive = 40;
  easeviive = 20;
  alus = a;
  kaasujalkiaika = 10;
  x = y = 0;
  xvauhti = yvauhti = 0;
  // Respawns keep well away from the planet.
  while (std::sqrt(x * x + y * y) < 80) {
    x = (float)((random(3200) - 1600) / 10);
    y = (float)((random(2400) - 1200) / 10);
  }
  energia = (float)alus.energia;
  fuel = (float)alus.fuel;

  tyhjennaAmmukset(*this);
  fcounter = 0;
  aloitaAlus(*this);
}

void Player::unohdaOttelu() {
  tyhjennaAmmukset(*this);
  for (int i = 0; alkusirpale && i < alkusirpaleMaara; ++i) alkusirpale[i].aika = 0;
  for (int k = 0; k < kaasujalkia; ++k) kaasujalki[k].alpha = kaasujalki2[k].alpha = 0;
  if (laseraani && efektitpaalla && ampumisaani) ampumisaani->stop();
  laseraani = false;
  limacount = 0;
  kuolema = 0;
  suojapaalla = teleportattu = false;
  easekesto = 0;
  ampumisjuttu = 0;
  kaasu = joinease = joinase = joinleft = joinright = false;
}

// ==== Flight =======================================================================

namespace {

// Each blob of slime costs a thirtieth of 80 % of thrust and turning; nothing clamps it.
double limakerroin(int limat) { return 1.0 - (limat / 30.0) * 0.8; }

// Nozzles of the twin-engined types: (first nozzle, second nozzle) in degrees behind
// the heading; the first drives kaasujalki2, the second kaasujalki.
struct Suuttimet {
  int alus;
  float eka, toka;
};
const Suuttimet kaksoissuuttimet[] = {{4, 215, 145}, {23, 205, 155}};
const Suuttimet* kaksoissuutin(const Player& p) {
  for (const Suuttimet& s : kaksoissuuttimet)
    if (s.alus == p.alus.numero) return &s;
  return nullptr;
}

void kuluErikoinen(Player& p) {
  if (p.easekesto > 0) p.easekesto -= 1;
  if (p.alus.aselaji == 15 && p.suojapaalla) {
    if (p.fuel > 0) {
      p.fuel -= (float)p.alus.easefuel;
    } else {
      p.suojapaalla = false;
      p.fuel = 0;
    }
  }
  if (p.easekesto <= 0 && p.alus.easelaji == 0) p.suojapaalla = false;
  if (p.easeviive > 0) p.easeviive -= 1;
}

// Returns true when the ship was in a position to fire (button, fuel, cool-down).
bool laukoAse(Player& p) {
  if (!tulinappi(p)) {
    if (p.alus.aselaji == 13 && patiRaja(p) > 0 && p.pati[0].aika > 0) p.ammu();
    return false;
  }
  const bool saa = p.fuel >= p.alus.patifuel && p.ampumisviive < 1;
  if (saa && !(p.alus.numero == 15 && p.suojapaalla)) p.ammu();
  return saa;
}

// The gun trails the hull by 1.5 degrees a frame while it is not firing.
void kaannaAseRunkoon(Player& p) {
  while (p.asekulma > p.kulma + 180) p.asekulma -= 360;
  while (p.asekulma < p.kulma - 180) p.asekulma += 360;
  if (p.asekulma > p.kulma)
    p.asekulma -= 1.5f;
  else if (p.asekulma < p.kulma)
    p.asekulma += 1.5f;
}

// Type 18 flips about once per press of thrust.
void kaannaPerasin(Player& p) {
  if (p.alus.numero != 18 || !paattaa()) return;
  if (!p.pylos && p.ampumispuoli == 0) {
    p.ampumispuoli = 1;
  } else if (p.pylos && p.ampumispuoli == 1) {
    p.kulma += 180;
    if (p.kulma > 180) p.kulma -= 360;
    p.ampumispuoli = 0;
  }
}

// A damaged hull smokes, the more often the lower its energy.
void savua(Player& p) {
  if (p.energia >= p.alus.energia) return;
  if (random(15000.0) / 100 * p.energia >= p.alus.energia) return;
  int i = 0;
  Sirpale* s = vapaaSirpale(i);
  if (!s) return;
  s->x = p.x;
  s->y = p.y;
  s->z = 0;
  s->xv = random(200) / 200 + p.xvauhti - 0.5;
  s->yv = random(200) / 200 + p.yvauhti - 0.5;
  s->zv = random(100) / 200 - 0.25;
  s->maxaika = 150;
  s->aika = (int)(random(120) + 50);
  s->koko = random(45) / 100 + 0.45;
  s->red = random(50) / 100 + 0.5;
  s->green = random(40) / 100;
  s->blue = random(40) / 100;
  if (random(10) < 7) {
    s->muoto = 0;
    s->aika = (int)(s->aika * 1.5);
  } else {
    s->muoto = 10;
    s->koko *= 0.5;
  }
}

bool kaasuttaa(const Player& p) {
  return napit(p).kaasu || (p.alus.numero == 15 && p.suojapaalla) || p.alus.numero == 18;
}

void pakokaasua(Player& p) {
  if (p.alus.numero == 16 || p.alus.numero == 22) return;
  const Suuttimet* kaksi = kaksoissuutin(p);
  int vapaa = 0;
  for (int k = 0; k < sets.detail; ++k) {
    Sirpale* s = vapaaSirpale(vapaa);
    if (!s) return;
    double suutin = 180;
    if (kaksi) suutin = random(2.0) > 1 ? kaksi->eka : kaksi->toka;
    const double a = rad(p.kulma - suutin), taakse = rad(p.kulma - 180);
    s->x = std::cos(a) * p.alus.sade + p.x + random(300) / 1000 - 0.15;
    s->y = std::sin(a) * p.alus.sade + p.y + random(300) / 1000 - 0.15;
    s->z = 0;
    s->xv = std::cos(taakse) * 0.35 + p.xvauhti + random(200) / 1000 - 0.1;
    s->yv = std::sin(taakse) * 0.35 + p.yvauhti + random(200) / 1000 - 0.1;
    s->zv = random(200) / 1000 - 0.1;
    s->maxaika = 100;
    s->aika = (int)(random(50) + 50);
    s->koko = p.alus.sade / 5 + random(80) / 100 + 0.15;
    s->red = random(60) / 100 + 0.5;
    s->green = random(50) / 100;
    s->blue = random(50) / 100;
    if (random(10) >= 9) {
      s->muoto = 10;
      s->koko *= 0.25;
    } else {
      s->muoto = 0;
    }
  }
}

void tyonna(Player& p, bool kaasulla, double s) {
  const double a = rad(p.kulma);
  if (!kaasulla) {
    if ((p.alus.aselaji == 6 || p.alus.numero == 22) && paattaa()) p.xvauhti = p.yvauhti = 0;
    return;
  }
  const int n = p.alus.numero;
  if (n == 6 || n == 18 || n == 22) {
    p.xvauhti = (float)(std::cos(a) * p.alus.nopeus * s);
    p.yvauhti = (float)(std::sin(a) * p.alus.nopeus * s);
  } else {
    double voima = p.alus.nopeus, kitka = 0.0054;
    if (p.alus.easelaji == 15 && p.suojapaalla) {
      voima = 20 * p.alus.nopeus;
      kitka = 0.0654;
    } else if (p.alus.aselaji == 11 && p.suojapaalla) {
      voima = 2 * p.alus.nopeus;
      kitka = 0.003;
    }
    p.xvauhti = (float)(p.xvauhti + std::cos(a) * voima * s);
    p.yvauhti = (float)(p.yvauhti + std::sin(a) * voima * s);
    vaimenna(p.xvauhti, kitka);
    vaimenna(p.yvauhti, kitka);
  }
  if (sets.detail == 0) {  // the simple flame of the lowest detail
    p.kaasujalki[0].alpha = 1.0;
    if (kaksoissuutin(p)) p.kaasujalki2[0].alpha = 1.0;
  }
}

void siirraHanta(Player& p) {
  for (int k = hantaa - 2; k >= 0; --k) {
    p.xhanta[k + 1] = p.xhanta[k];
    p.yhanta[k + 1] = p.yhanta[k];
    p.kulmahanta[k + 1] = p.kulmahanta[k];
  }
  if (p.alus.numero == 22) {
    p.xhanta[0] = p.x;
    p.yhanta[0] = p.y;
    p.kulmahanta[0] = p.kulma;
  }
}

double kaannosaskel(const Player& p, double s) {
  if (p.alus.numero == 15 && p.suojapaalla) return p.alus.kaantonopeus * 1.5 * s;
  if (p.alus.aselaji == 11 && p.suojapaalla) return p.alus.kaantonopeus / 5 * s;
  return p.alus.kaantonopeus * s;
}

// Type 14 steers its live shots with the hull, also on a client.
void kaannaOhjukset(Player& p, double suunta) {
  const float kaanto = (float)(suunta * 2 * p.alus.kaantonopeus);
  for (int i = 0, n = patiRaja(p); i < n; ++i)
    if (p.pati[i].aika > 0) p.pati[i].kulma += kaanto;
}

void kaanny(Player& p, double s) {
  const Napit n = napit(p);
  if (paattaa()) {
    const float askel = (float)kaannosaskel(p, s);
    if (n.vasen) {
      p.kulma += askel;
      p.asekulma += askel;
    }
    if (n.oikea) {
      p.kulma -= askel;
      p.asekulma -= askel;
    }
  }
  if (p.alus.aselaji == 14) {
    if (n.vasen) kaannaOhjukset(p, 1);
    if (n.oikea) kaannaOhjukset(p, -1);
  }
  if (paattaa()) {
    if (p.kulma > 180) p.kulma -= 360;
    if (p.kulma < -180) p.kulma += 360;
  }
}

void tankkaa(Player& p) {
  if (p.fuel >= p.alus.fuel) return;
  if (p.alus.aselaji == 13 && patiRaja(p) > 0 && p.pati[0].aika >= 1) return;
  const double lisa = (p.alus.aselaji == 11 && p.suojapaalla) ? p.alus.tankkaus / 8 : p.alus.tankkaus;
  p.fuel = (float)(p.fuel + lisa);  // may overshoot the tank by less than one step
}

void seinat(Player& p) {
  if (inertiaton(p)) {
    const float n = (float)p.alus.nopeus;
    if (p.x > kentanX) p.x -= n;
    if (p.x < -kentanX) p.x += n;
    if (p.y > kentanY) p.y -= n;
    if (p.y < -kentanY) p.y += n;
    return;
  }
  const float t = (p.alus.numero == 15 && p.suojapaalla) ? 0.2f : 0.02f;
  if (p.x > kentanX) p.xvauhti -= t;
  if (p.x < -kentanX) p.xvauhti += t;
  if (p.y > kentanY) p.yvauhti -= t;
  if (p.y < -kentanY) p.yvauhti += t;
}

void tormaile(Player& p) {
  const double nx = p.x + p.xvauhti, ny = p.y + p.yvauhti;
  for (int j = std::max(0, p.numero + 1); j < pelaajia(); ++j)
    if (player[j].kuolema < 1) player[j].tormaa(nx, ny, p.alus.sade, p.numero);
}

// Type 20: one shot of the special ring leaves per frame.
void renkaanLaukaus(Player& p) {
  if (p.alus.numero != 20 || !(p.easeviive > 0) || p.ampumispuoli != 3) return;
  if (p.easeviive == 1.0f) p.ampumispuoli = 1;
  soita(p.eampumisaani);
  if (!paattaa()) return;
  const double i = std::trunc(p.alus.easenopeus - p.easeviive);
  if (!(i >= 0) || i >= epatiRaja(p)) return;
  Pati& s = p.epati[(int)i];
  const double a = rad(p.kulma) + 2 * pii * i / p.alus.easenopeus;
  s.aika = 100;
  s.x = (float)(std::cos(a) * 6 + p.x);
  s.y = (float)(std::sin(a) * 6 + p.y);
  s.xv = (float)(std::cos(a) * p.alus.easevauhti + p.xvauhti);
  s.yv = (float)(std::sin(a) * p.alus.easevauhti + p.yvauhti);
  s.energia = (float)p.alus.epatienergia;
  s.kulma = (float)(std::atan2(100.0 * s.yv, 100.0 * s.xv) * 180 / pii);
}

// Type 19: the blade goes out and comes back. Every ship within reach of its tip in the
// frame it first reaches one is hurt; then it is spent for this activation. The heading
// goes into cos and sin in degrees, deliberately: the blade sweeps round as the ship turns,
// and the ship was balanced with that.
void terasisku(Player& p) {
  if (p.alus.numero != 19 || !(p.easeviive > 0) || p.ampumispuoli < 2) return;
  const double d =
      p.easeviive < p.alus.easenopeus * 0.5 ? p.easeviive / 20.0 : (p.alus.easenopeus - p.easeviive) / 20.0;
  const double pituus = 2 * d + p.alus.sade;
  const double kx = p.x + std::cos((double)p.kulma) * pituus;
  const double ky = p.y + std::sin((double)p.kulma) * pituus;
  bool osui = false;
  for (int j = 0; j < pelaajia(); ++j) {
    Player& k = player[j];
    if (&k == &p || !pelissa(k)) continue;
    const double dx = k.x - kx, dy = k.y - ky, r = (k.alus.sade + 0.2) * kosketus;
    if (dx * dx + dy * dy >= r * r) continue;
    if (paattaa()) k.energia = (float)(k.energia - p.alus.edamage);
    osui = true;
  }
  if (!osui) return;
  p.ampumispuoli = 1;
  soita(p.eosumisaani);
}

}  // namespace

void Player::liiku() {
  if (alus.numero == 22 && paattaa()) pylos = true;
  if (napit(*this).erikois && fuel >= alus.easefuel && easeviive < 1.0f) ease();
  kuluErikoinen(*this);
  if (!laukoAse(*this)) kaannaAseRunkoon(*this);
  const double s = limakerroin(limacount);
  kaannaPerasin(*this);
  if (sets.detail >= 1 && kuolema < 1) savua(*this);
  const bool kaasulla = kaasuttaa(*this);
  if (sets.detail >= 1 && kaasulla) pakokaasua(*this);
  tyonna(*this, kaasulla, s);
  siirraHanta(*this);
  kaanny(*this, s);
  if (ampumisviive > 0) --ampumisviive;
  if (paattaa()) {
    tankkaa(*this);
    if (!inertiaton(*this)) {
      vaimenna(xvauhti, 0.0006000000000000001);
      vaimenna(yvauhti, 0.0006000000000000001);
    }
    seinat(*this);
  }
  if (alus.aselaji == 4 || alus.numero == 16 || alus.numero == 18) {
    const double a = rad(kulma);
    propelli = (float)(propelli + (std::cos(a) * xvauhti + std::sin(a) * yvauhti) * 30);
  }
  if (!tulinappi(*this) && laseraani) {
    if (ampumisaani) ampumisaani->stop();
    laseraani = false;
  }
  if (paattaa()) {
    tormaile(*this);
    if (alus.easelaji == 6 && teleportattu) {
      teleportattu = false;
      x = uusx;
      y = uusy;
    }
  }
  renkaanLaukaus(*this);
  terasisku(*this);
  if (ampumisjuttu > 0) ampumisjuttu = std::max(0.0f, ampumisjuttu - 0.3f);
  if (paattaa()) {
    x += xvauhti;
    y += yvauhti;
  }
}

// ==== Collisions ===================================================================

namespace {

void ramminki(const Player& a, Player& b) {
  if (suojattu(b)) return;
  if (a.alus.easelaji == 15) b.energia = (float)(b.energia - a.alus.edamage);
}

// Type 14 spends its whole tank on the blow, in proportion to what was left.
void polttoainerammi(Player& a, Player& b) {
  if (a.alus.easelaji != 14 || suojattu(b)) return;
  b.energia = (float)(b.energia - a.fuel * a.alus.edamage / a.alus.fuel);
  a.fuel = 0;
}

void tonaise(Player& p, const Player& toinen, double kx, double ky, double impulssi) {
  if (inertiaton(p)) {  // moved away by a fifth of the separation
    p.x = (float)(p.x - (toinen.x - p.x) * 0.2);
    p.y = (float)(p.y - (toinen.y - p.y) * 0.2);
  } else {
    p.xvauhti = (float)(p.xvauhti + kx * impulssi / p.alus.paino);
    p.yvauhti = (float)(p.yvauhti + ky * impulssi / p.alus.paino);
  }
}

}  // namespace

bool Player::tormaa(double ax, double ay, double r, int i) {
  if (i < 0 || i >= maxPlayers) return false;
  Player& a = player[i];
  const double dx = (x + xvauhti) - ax, dy = (y + yvauhti) - ay;
  if (!(std::sqrt(dx * dx + dy * dy) < (r + alus.sade) * kosketus)) return false;

  const double phi = std::atan2((double)a.y - y, (double)a.x - x);
  const double wx = a.xvauhti - xvauhti, wy = a.yvauhti - yvauhti;
  const double mu = 1.0 / (1.0 / a.alus.paino + 1.0 / alus.paino);
  const double j = 2 * std::sqrt(wx * wx + wy * wy) * mu;

  ramminki(a, *this);
  polttoainerammi(a, *this);
  ramminki(*this, a);
  polttoainerammi(*this, a);

  const double kx = std::cos(phi), ky = std::sin(phi);
  tonaise(a, *this, kx, ky, j);
  tonaise(*this, a, -kx, -ky, j);
  return true;
}

bool Player::tormaa(Pati p, Alus a) { return osuu(*this, p, a.patisade); }

// ==== Primary weapons ==============================================================

namespace {

// Per-type spawn data: distance in ship radii, side angle, recoil along the hull, and
// whether the shot carries the special energy.
struct Tykki {
  double d, sivukulma, rekyyli;
  bool erikoisenergia;
};
const Tykki tykit[alustyyppeja] = {
    {0.9, 45, 0, false},   // 0 twin guns
    {0.6, 0, 0.7, false},  // 1
    {0.6, 0, 0, false},    // 2
    {0.8, 55, 0, false},   // 3 alternating
    {0.7, 0, 0, false},    // 4 cluster bomb
    {0.6, 0, 0.1, false},  // 5
    {0, 0, 0, false},      // 6 zap
    {1.4, 0, 0, false},    // 7 homing
    {0.8, 20, 0, true},    // 8 scatter, up to 20 degrees either way
    {1.6, 0, 0, false},    // 9 laser start
    {0.8, 0, 0, true},     // 10
    {1.6, 15, 0, false},   // 11 pair; one of them special
    {0.8, 90, 0, false},   // 12 broadside
    {1.5, 0, 0, false},    // 13 charge ball
    {1.4, 0, 0, false},    // 14 steered
    {0, 0, 0, false},      // 15 mines
    {1.5, 26, 0, false},   // 16 alternating
    {0.6, 0, 0, false},    // 17
    {0, 0, 0, false},      // 18 zap
    {1.5, 26, 0, false},   // 19 hot twin gun
    {1.6, 0, 0, false},    // 20
    {3.5, 60, 0, false},   // 21 fan
    {2.5, 0, 0, false},    // 22
    {1.5, 0, 0, false},    // 23 bouncing
};
const Tykki& tykki(const Player& p) { return tykit[p.alus.numero]; }

// Cool-down, fuel and sound of a trigger pull. False on a client, where shots
// exist only as the host sends them.
bool laukaisu(Player& p, bool aani = true) {
  p.ampumisviive = (int)p.alus.ampumisnopeus;
  if (paattaa()) p.fuel = (float)(p.fuel - p.alus.patifuel);
  if (aani) soita(p.ampumisaani);
  return paattaa();
}

Pati* vapaaPati(Player& p, int alku = 0) {
  for (int i = alku, n = patiRaja(p); i < n; ++i)
    if (p.pati[i].aika == 0) return &p.pati[i];
  return nullptr;
}

// Fills the first free slot from `alku`: spawned d ship radii out at `paikka` degrees,
// flying along `suunta` at `vauhti` plus the ship's own velocity.
Pati* laukaise(Player& p, double paikka, double d, double suunta, double vauhti, int alku = 0) {
  Pati* s = vapaaPati(p, alku);
  if (!s) return nullptr;
  const double a = rad(paikka), f = rad(suunta);
  s->aika = lyhyt(p.alus.patiaika);
  s->x = (float)(p.x + std::cos(a) * d * p.alus.sade);
  s->y = (float)(p.y + std::sin(a) * d * p.alus.sade);
  s->xv = (float)(std::cos(f) * vauhti + p.xvauhti);
  s->yv = (float)(std::sin(f) * vauhti + p.yvauhti);
  s->kulma = p.kulma;
  s->energia = (float)(tykki(p).erikoisenergia ? p.alus.epatienergia : p.alus.patienergia);
  return s;
}

Pati* suoraan(Player& p, double d, double vauhti) { return laukaise(p, p.kulma, d, p.kulma, vauhti); }

void rekyyli(Player& p, double vx, double vy) {
  p.xvauhti = (float)(p.xvauhti - vx);
  p.yvauhti = (float)(p.yvauhti - vy);
}

// Types 1, 2, 5, 10, 17, 20, 22.
void tavallinen(Player& p) {
  const Tykki& t = tykki(p);
  if (laukaisu(p)) suoraan(p, t.d, p.alus.patinopeus);
  const double a = rad(p.kulma);
  if (t.rekyyli != 0) rekyyli(p, std::cos(a) * t.rekyyli, std::sin(a) * t.rekyyli);
}

void kaksoistykki(Player& p) {  // type 0
  const Tykki& t = tykki(p);
  if (!laukaisu(p, false)) {
    soita(p.ampumisaani);
    return;
  }
  if (laukaise(p, p.kulma + t.sivukulma, t.d, p.kulma, p.alus.patinopeus)) soita(p.ampumisaani);
  laukaise(p, p.kulma - t.sivukulma, t.d, p.kulma, p.alus.patinopeus);
}

void vuorottelija(Player& p) {  // types 3 and 16
  const Tykki& t = tykki(p);
  if (laukaisu(p)) laukaise(p, p.kulma + t.sivukulma * p.ampumispuoli, t.d, p.kulma, p.alus.patinopeus);
  p.ampumispuoli = -p.ampumispuoli;
}

void pommi(Player& p) {  // type 4: one bomb in flight at most, always slot 0
  if (patiRaja(p) < 1 || p.pati[0].aika > 0) return;
  if (laukaisu(p)) suoraan(p, tykki(p).d, p.alus.patinopeus);
}

void ohjus(Player& p) {  // types 7 and 14
  if (laukaisu(p)) suoraan(p, tykki(p).d, p.alus.nopeus * 150);
}

void hajonta(Player& p) {  // type 8
  if (!laukaisu(p)) return;
  const double a = p.kulma + (random(10000) / 250 - tykki(p).sivukulma);
  laukaise(p, a, tykki(p).d, a, p.alus.patinopeus);
}

void sivulaidat(Player& p) {  // type 12
  if (!laukaisu(p)) return;
  const Tykki& t = tykki(p);
  for (double sivu : {-t.sivukulma, 0.0, t.sivukulma})
    laukaise(p, p.kulma + sivu, t.d, p.kulma + sivu, p.alus.patinopeus);
}

void miina(Player& p) {  // type 15: dropped within a unit of the ship, motionless
  if (!laukaisu(p)) return;
  Pati* s = vapaaPati(p);
  if (!s) return;
  s->aika = lyhyt(p.alus.patiaika);
  s->x = (float)(p.x + random(800) / 400 - 1);
  s->y = (float)(p.y + random(800) / 400 - 1);
  s->xv = s->yv = 0;
  s->kulma = p.kulma;
  s->energia = (float)p.alus.patienergia;
}

void pomppija(Player& p) {  // type 23: recoil by the shot, whose velocity includes the ship's
  if (!laukaisu(p)) return;
  if (Pati* s = suoraan(p, tykki(p).d, p.alus.patinopeus))
    rekyyli(p, s->xv * p.alus.patipotkasu, s->yv * p.alus.patipotkasu);
}

// A gun that gets hot shoots shorter, slower and weaker shots with more scatter.
void kuumatykki(Player& p) {  // type 19
  if (p.ampumisjuttu < 100) p.ampumisjuttu += 7;
  if (!laukaisu(p)) return;
  const Tykki& t = tykki(p);
  const double h = p.ampumisjuttu, a = rad(p.kulma);
  for (double sivu : {t.sivukulma, -t.sivukulma}) {
    Pati* s = laukaise(p, p.kulma + sivu, t.d, p.kulma, 0);
    if (!s) continue;
    s->aika = lyhyt(p.alus.patiaika - random(h));
    const double vauhti = (random(h) / 100 + 1 - h / 100) * p.alus.patinopeus;
    s->xv = (float)(std::cos(a) * vauhti + p.xvauhti);
    s->yv = (float)(std::sin(a) * vauhti + p.yvauhti);
    s->energia = (float)(p.alus.patienergia / (random(h) / 100 + 1));
  }
}

void viuhka(Player& p) {  // type 21: the middle of the fan is the fastest
  if (!laukaisu(p)) return;
  const Tykki& t = tykki(p);
  for (int n = 18; n >= 1; --n) {
    const double paikka = p.kulma + t.sivukulma - n * 120.0 / 18;
    const double suunta = p.kulma + 45 - n * 90.0 / 18;
    const double vauhti = p.alus.patinopeus * (std::sin(n * pii / 18.0) + 0.3);
    if (!laukaise(p, paikka, t.d, suunta, vauhti)) return;
  }
}

// One hit on a shot by a beam: destroyed at 0 or below.
void iskePatiin(Pati& s, double vahinko) {
  s.energia = (float)(s.energia - vahinko);
  if (s.energia <= 0) {
    s.energia = 0;
    s.aika = 0;
  }
}

bool lahella(double x1, double y1, double x2, double y2, double r) {
  const double dx = x1 - x2, dy = y1 - y2;
  return dx * dx + dy * dy < r * r;
}

struct Piste {
  double x, y;
};

// Zap: the first enemy ship within reach, else the first breakable shot.
bool zapLaivaan(Player& p, Piste& kohde) {
  for (int j = 0; j < pelaajia(); ++j) {
    Player& k = player[j];
    if (&k == &p || k.tiimi == p.tiimi || !pelissa(k)) continue;
    if (!lahella(k.x, k.y, p.x, p.y, k.alus.sade * kosketus + p.alus.patisade)) continue;
    if (paattaa() && !suojattu(k)) {
      const double kerroin = p.alus.numero == 18 ? random(50) / 100 + 0.5 : 1.0;
      k.energia = (float)(k.energia - p.alus.damage * kerroin);
    }
    kohde = {k.x, k.y};
    return true;
  }
  return false;
}

bool zapPatiin(Player& p, bool erikoiset, Piste& kohde) {
  for (int j = 0; j < pelaajia(); ++j) {
    Player& k = player[j];
    if (&k == &p || k.tiimi == p.tiimi || !pelissa(k)) continue;
    if (!(erikoiset ? k.alus.epatiVoiHajota : k.alus.patiVoiHajota)) continue;
    Pati* padit = erikoiset ? k.epati : k.pati;
    const int n = erikoiset ? epatiRaja(k) : patiRaja(k);
    const double r = (erikoiset ? k.alus.epatisade : k.alus.patisade) * kosketus + p.alus.patisade;
    for (int i = 0; i < n; ++i) {
      Pati& s = padit[i];
      if (s.aika <= 0 || !lahella(s.x, s.y, p.x, p.y, r)) continue;
      if (paattaa()) iskePatiin(s, p.alus.damage);
      kohde = {s.x, s.y};
      return true;
    }
  }
  return false;
}

void zap(Player& p) {  // types 6 and 18
  laukaisu(p);
  Piste kohde{0, 0};
  const bool osui = zapLaivaan(p, kohde) || zapPatiin(p, false, kohde) || zapPatiin(p, true, kohde);
  Viivakasa& v = p.viivat[0];
  v = Viivakasa{};
  v.aika = p.alus.patiaika;
  v.g = v.b = 1.0;
  v.x2 = p.x;
  v.y2 = p.y;
  if (osui) {
    v.x1 = kohde.x;
    v.y1 = kohde.y;
    p.asekulma = (float)aste(std::atan2(kohde.y - p.y, kohde.x - p.x));
    return;
  }
  const double a = rad(p.kulma);
  v.x1 = p.x + std::cos(a) * (p.alus.patisade + 1);
  v.y1 = p.y + std::sin(a) * (p.alus.patisade + 1);
  p.asekulma = p.kulma;
  if (p.pylos) {
    v.x2 += std::cos(a) * p.alus.nopeus;
    v.y2 += std::sin(a) * p.alus.nopeus;
  }
}

// A beam burns whatever lies near ten points spaced a tenth of `pituus` apart from S
// towards E: ships of every other player (team-mates and shields included) and shots.
void sateenOsumat(Player& p, Piste alku, Piste loppu, double pituus, double vahinko) {
  if (!paattaa()) return;
  const double b = std::atan2(alku.y - loppu.y, alku.x - loppu.x);
  for (int k = 0; k < 10; ++k) {
    const double px = alku.x - k / 10.0 * pituus * std::cos(b);
    const double py = alku.y - k / 10.0 * pituus * std::sin(b);
    for (int j = 0; j < pelaajia(); ++j) {
      Player& t = player[j];
      if (&t == &p || !pelissa(t)) continue;
      if (lahella(t.x, t.y, px, py, t.alus.sade * kosketus + 0.2)) t.energia = (float)(t.energia - vahinko);
      const double rp = t.alus.patisade * kosketus + 0.2, re = t.alus.epatisade * kosketus + 0.2;
      for (int i = 0, n = patiRaja(t); i < n; ++i)
        if (t.pati[i].aika > 0 && lahella(t.pati[i].x, t.pati[i].y, px, py, rp))
          iskePatiin(t.pati[i], vahinko);
      for (int i = 0, n = epatiRaja(t); i < n; ++i)
        if (t.epati[i].aika > 0 && lahella(t.epati[i].x, t.epati[i].y, px, py, re))
          iskePatiin(t.epati[i], vahinko);
    }
  }
}

// The looping sound starts once and runs while the button is held.
void kaynnistaSade(Player& p) {
  if (paattaa()) p.fuel = (float)(p.fuel - p.alus.patifuel);
  if (!p.laseraani) soita(p.ampumisaani);
  p.laseraani = true;
}

void asetaSade(Player& p, double alku, double loppu, double aika, double r, double g, double b) {
  const double a = rad(p.kulma), kx = std::cos(a), ky = std::sin(a);
  Viivakasa& v = p.viivat[0];
  v = Viivakasa{};
  v.x1 = p.x + kx * alku + p.xvauhti;
  v.y1 = p.y + ky * alku + p.yvauhti;
  v.x2 = p.x + kx * loppu + p.xvauhti;
  v.y2 = p.y + ky * loppu + p.yvauhti;
  v.aika = aika;
  v.r = r;
  v.g = g;
  v.b = b;
}

void laser(Player& p) {  // type 9: no cool-down, burns every frame the button is held
  kaynnistaSade(p);
  asetaSade(p, 1.6 * p.alus.sade, p.alus.patisade, p.alus.patiaika, 0, 1.0, 0);
  const Viivakasa& v = p.viivat[0];
  sateenOsumat(p, {v.x1, v.y1}, {v.x2, v.y2}, p.alus.patisade, p.alus.damage);
}

void sininenSade(Player& p) {  // type 11 with its special on: a beam that moves outwards
  kaynnistaSade(p);
  asetaSade(p, p.alus.sade, p.alus.epatisade - 0.75, 6, 0, 0, 1.0);
  Viivakasa& v = p.viivat[0];
  const double a = rad(p.kulma);
  v.xv = std::cos(a) * (p.alus.epatisade - 1) / 6;
  v.yv = std::sin(a) * (p.alus.epatisade - 1) / 6;
  sateenOsumat(p, {v.x1, v.y1}, {v.x2, v.y2}, p.alus.epatisade, p.alus.edamage);
}

void pari(Player& p) {  // type 11: the +15 degree shot is the special one
  if (p.suojapaalla) {
    sininenSade(p);
    return;
  }
  const Tykki& t = tykki(p);
  const bool spawn = laukaisu(p);
  soita(p.eampumisaani);
  if (!spawn) return;
  if (Pati* s = laukaise(p, p.kulma + t.sivukulma, t.d, p.kulma, p.alus.patinopeus))
    s->energia = (float)p.alus.epatienergia;
  laukaise(p, p.kulma - t.sivukulma, t.d, p.kulma, p.alus.patinopeus);
}

void pallonPaikka(const Player& p, Pati& s) {
  const double a = rad(p.kulma), d = tykki(p).d * p.alus.sade;
  s.x = (float)(p.x + std::cos(a) * d);
  s.y = (float)(p.y + std::sin(a) * d);
  s.kulma = p.kulma;
}

// Type 13: the ball grows in slot 0 while fire is held and flies when it is released.
void lataus(Player& p) {
  if (patiRaja(p) < 1) return;
  Pati& pallo = p.pati[0];
  if (!tulinappi(p)) {
    if (pallo.aika <= 0) return;
    soita(p.ampumisaani);
    if (!paattaa()) return;
    if (Pati* s = laukaise(p, p.kulma, tykki(p).d, p.kulma, p.alus.patinopeus, 1)) {
      s->energia = pallo.energia;
      s->r = pallo.r;
      s->g = pallo.g;
      s->b = pallo.b;
    }
    pallo.aika = 0;
    return;
  }
  if (!paattaa()) return;
  if (pallo.aika <= 0) {
    pallo.aika = lyhyt(p.alus.patiaika);
    pallonPaikka(p, pallo);
    pallo.xv = pallo.yv = 0;
    pallo.energia = 100;
    pallo.r = 0;
    pallo.g = 1.0f;
    pallo.b = 0;
    return;
  }
  pallo.aika = lyhyt(p.alus.patiaika);
  pallonPaikka(p, pallo);
  if (pallo.energia != 2000) pallo.energia += 1;
  if (pallo.r != 1.0f) pallo.r += 0.001f;
  if (pallo.g != 0) pallo.g -= 0.001f;
}

using Ase = void (*)(Player&);
const Ase aseet[alustyyppeja] = {
    kaksoistykki, tavallinen, tavallinen, vuorottelija, pommi,      tavallinen, zap,        ohjus,
    hajonta,      laser,      tavallinen, pari,         sivulaidat, lataus,     ohjus,      miina,
    vuorottelija, tavallinen, zap,        kuumatykki,   tavallinen, viuhka,     tavallinen, pomppija,
};

}  // namespace

void Player::ammu() {
  if (alus.numero < 0 || alus.numero >= alustyyppeja || !pati || !viivat) return;
  aseet[alus.numero](*this);
}

// ==== Projectiles ==================================================================

namespace {

void liikuta(Pati& s) {
  s.x += s.xv;
  s.y += s.yv;
}

void tyrkkaa(Player& k, const Pati& s, double potkasu) {
  k.xvauhti = (float)(k.xvauhti + s.xv * potkasu);
  k.yvauhti = (float)(k.yvauhti + s.yv * potkasu);
}

// Calls `osuma` for each ship in play that the shot touches, in index order.
template <class Osuma>
void osumat(Player& o, const Pati& s, bool omaMukaan, Osuma osuma) {
  for (int j = 0; j < pelaajia(); ++j) {
    Player& k = player[j];
    if ((&k == &o && !omaMukaan) || !pelissa(k)) continue;
    if (osuu(k, s, o.alus.patisade)) osuma(k);
  }
}

// Heavy shots throw sparks from the ship they hit.
void kipinoi(const Player& k, const Pati& s) {
  int vapaa = 0;
  for (int n = 50 * sets.detail + 150; n > 0; --n) {
    Sirpale* k2 = vapaaSirpale(vapaa);
    if (!k2) return;
    double xv, yv;
    do {
      xv = random(400) / 1000 - 0.2;
      yv = random(400) / 1000 - 0.2;
    } while (xv * xv + yv * yv > 0.04);
    k2->x = k.x;
    k2->y = k.y;
    k2->z = k2->zv = 0;
    k2->xv = xv + s.xv;
    k2->yv = yv + s.yv;
    k2->maxaika = 75;
    k2->aika = (int)(random(50) + 25);
    k2->koko = 2 * random(30) / 100;
    k2->muoto = 0;
    k2->red = random(100) / 50 + 0.5;
    k2->green = random(100) / 100;
    k2->blue = random(100) / 100;
  }
}

void yleinenOsuma(Player& o, int i, Pati& s, Player& k) {
  soita(o.osumisaani);
  if (paattaa()) {
    s.aika = 0;
    if (i == 0 && o.alus.numero == 13) o.ampumisviive = (int)o.alus.ampumisnopeus;
  }
  if (o.alus.aselaji == 1 || o.alus.aselaji == 5) kipinoi(k, s);
  // A charge ball hurts in proportion to its charge: full damage at 2000.
  vahingoita(k, o.alus.aselaji == 13 ? o.alus.damage / 2000 * s.energia : o.alus.damage);
  tyrkkaa(k, s, o.alus.patipotkasu);
}

// The hits of types 7, 14, 15, 16 and 20 take the damage twice on the host; 7 and 14
// count the first only when a hit sound exists. The doubling is part of their balance.
void tuplaOsuma(Player& o, Pati& s, Player& k, bool aaniLaskee) {
  soita(o.osumisaani);
  if (!aaniLaskee || o.osumisaani) vahingoita(k, o.alus.damage);
  if (paattaa()) {
    vahingoita(k, o.alus.damage);
    s.aika = 0;
  }
  tyrkkaa(k, s, o.alus.patipotkasu);
}

void perusAskel(Pati& s, bool ikaVainIsannalla) {
  if (!ikaVainIsannalla || paattaa()) s.aika -= 1;
  liikuta(s);
  planeetta(s);
}

void yleinenHaara(Player& o, int i, Pati& s) {
  s.aika -= 1;
  liikuta(s);
  if (o.alus.numero == 22) s.kulma += 0.0698132f;  // radians' worth added to degrees: a slow spin
  planeetta(s);
  osumat(o, s, false, [&](Player& k) { yleinenOsuma(o, i, s, k); });
}

// Type 23: bounces off every ship, its own included, exchanging momentum.
void pomppivaHaara(Player& o, int, Pati& s) {
  if (paattaa()) s.aika -= 1;
  if (s.x > kentanX) s.xv -= 0.02f;
  if (s.x < -kentanX) s.xv += 0.02f;
  if (s.y > kentanY) s.yv -= 0.02f;
  if (s.y < -kentanY) s.yv += 0.02f;
  liikuta(s);
  planeetta(s);
  osumat(o, s, true, [&](Player& k) {
    soita(o.osumisaani);
    vahingoita(k, o.alus.damage);
    const double vanhaX = k.xvauhti, vanhaY = k.yvauhti;
    const double siirto = o.alus.patipotkasu * o.alus.paino / k.alus.paino;
    k.xvauhti = (float)(k.xvauhti + s.xv * siirto);
    k.yvauhti = (float)(k.yvauhti + s.yv * siirto);
    s.xv = (float)(s.xv - vanhaX * k.alus.paino / 200);
    s.yv = (float)(s.yv - vanhaY * k.alus.paino / 200);
  });
}

void ohjuksenVaimennus(Pati& s) {
  vaimenna(s.xv, 0.006);
  vaimenna(s.yv, 0.006);
}

// Type 7 homes on the nearest enemy; with none nearer than 640 it keeps target 0,
// which may be any player, even its owner.
void hakeutuvaHaara(Player& o, int, Pati& s) {
  perusAskel(s, true);
  int kohde = 0;
  double paras = 640;
  for (int j = 0; j < pelaajia(); ++j) {
    const Player& k = player[j];
    if (&k == &o || k.tiimi == o.tiimi || !pelissa(k)) continue;
    const double d = std::hypot(k.x - s.x, k.y - s.y);
    if (d < paras) {
      paras = d;
      kohde = j;
    }
  }
  const double dx = player[kohde].x - s.x, dy = player[kohde].y - s.y;
  const double etaisyys = std::hypot(dx, dy);
  if (etaisyys > 0) {
    s.xv = (float)(s.xv + dx / etaisyys * o.alus.patinopeus);
    s.yv = (float)(s.yv + dy / etaisyys * o.alus.patinopeus);
  }
  ohjuksenVaimennus(s);
  s.kulma = (float)aste(std::atan2(dy, dx));
  osumat(o, s, false, [&](Player& k) { tuplaOsuma(o, s, k, true); });
}

// Type 14 flies along its own heading, which the ship steers.
void ohjattavaHaara(Player& o, int, Pati& s) {
  perusAskel(s, false);
  osumat(o, s, false, [&](Player& k) { tuplaOsuma(o, s, k, true); });
  const double a = rad(s.kulma);
  s.xv = (float)(s.xv + std::cos(a) * o.alus.patinopeus);
  s.yv = (float)(s.yv + std::sin(a) * o.alus.patinopeus);
  ohjuksenVaimennus(s);
}

// Type 20 weaves from side to side as it ages (its heading taken in radians here).
void kiemurtelevaHaara(Player& o, int, Pati& s) {
  perusAskel(s, false);
  const double t = (o.alus.patiaika - s.aika) / 10;
  s.kulma = (float)(s.kulma + std::cos(t));
  s.xv = (float)(s.xv + std::cos(pii / 2 + s.kulma) * std::cos(t) * 0.03);
  s.yv = (float)(s.yv + std::sin(pii / 2 + s.kulma) * std::cos(t) * 0.03);
  osumat(o, s, false, [&](Player& k) { tuplaOsuma(o, s, k, false); });
}

// Type 16 keeps its speed but wanders two degrees to either side each frame.
void vaeltavaHaara(Player& o, int, Pati& s) {
  perusAskel(s, true);
  osumat(o, s, false, [&](Player& k) { tuplaOsuma(o, s, k, false); });
  const double vauhti = std::hypot(s.xv, s.yv);
  const double suunta = std::atan2(s.yv, s.xv) + ((int)random(2.0) == 1 ? 0.0349066 : -0.0349066);
  s.xv = (float)(std::cos(suunta) * vauhti);
  s.yv = (float)(std::sin(suunta) * vauhti);
  s.kulma = (float)aste(suunta);
}

// Type 15 mines have no velocity of their own; they only jitter in place.
void miinaHaara(Player& o, int, Pati& s) {
  s.aika -= 1;
  if (paattaa()) {
    s.x = (float)(s.x + (random(100) / 100 - 0.5) * o.alus.patinopeus);
    s.y = (float)(s.y + (random(100) / 100 - 0.5) * o.alus.patinopeus);
  }
  liikuta(s);
  planeetta(s);
  osumat(o, s, false, [&](Player& k) { tuplaOsuma(o, s, k, false); });
}

const int sirpaleitaPommissa = 30;

void pommiSeinat(Pati& s) {
  if (s.x + s.xv > kentanX) s.xv -= 0.03f;
  if (s.y + s.yv > kentanY) s.yv -= 0.03f;
  if (s.x + s.xv < -kentanX) s.xv += 0.03f;
  if (s.y + s.yv < -kentanY) s.yv += 0.03f;
}

void pommiHajoaa(Player& o, Pati& pommi) {
  soita(o.eampumisaani);
  if (!paattaa()) return;
  pommi.aika = 0;
  for (int k = sirpaleitaPommissa - 1; k >= 0; --k) {
    Pati* s = vapaaPati(o, 1);
    if (!s) return;
    const double a = 2 * pii * k / sirpaleitaPommissa;
    s->x = (float)(pommi.x + std::cos(a) * 4);
    s->y = (float)(pommi.y + std::sin(a) * 4);
    s->xv = (float)(std::cos(a) * 0.15);
    s->yv = (float)(std::sin(a) * 0.15);
    s->aika = 40;
    s->energia = (float)(o.alus.patienergia * 0.125);
  }
}

// Type 4: the bomb (slot 0) flies while fire is held and bursts into fragments on release.
void pommiHaara(Player& o, int i, Pati& s) {
  perusAskel(s, false);
  if (i == 0) {
    pommiSeinat(s);
    if (s.aika <= 0 || !tulinappi(o)) pommiHajoaa(o, s);
  }
  osumat(o, s, false, [&](Player& k) {
    soita(i == 0 ? o.eosumisaani : o.osumisaani);
    if (paattaa()) s.aika = 0;
    vahingoita(k, i == 0 ? o.alus.damage : o.alus.damage * 0.125);
    tyrkkaa(k, s, o.alus.patipotkasu);
  });
}

using PatiHaara = void (*)(Player&, int, Pati&);
PatiHaara patiHaara(int numero) {
  switch (numero) {
    case 23: return pomppivaHaara;
    case 20: return kiemurtelevaHaara;
    case 16: return vaeltavaHaara;
    case 15: return miinaHaara;
    case 14: return ohjattavaHaara;
    case 7: return hakeutuvaHaara;
    case 4: return pommiHaara;
    default: return yleinenHaara;
  }
}

}  // namespace

void Player::liikutaPadit() {
  const PatiHaara haara = patiHaara(alus.numero);
  for (int i = 0, n = patiRaja(*this); i < n; ++i)
    if (pati[i].aika > 0) haara(*this, i, pati[i]);
}

// ==== Shots against shots ==========================================================
//
// Every live shot of this player meets every live shot of each later player (and of
// itself). A uniform grid over the field, rebuilt for each call (shots move between
// the calls of different players), gives each shot the few neighbours it can touch;
// they are visited in slot order, so the result equals the plain pair scan.

namespace {

struct Ruudukko {
  static const int sivu = 64;  // cells per side, 10 units each; the edge cells take the rest
  static constexpr double alku = -320, perSolu = 1.0 / 10;

  int paa[sivu * sivu];
  unsigned leima[sivu * sivu];  // a head is valid only when stamped with `sukupolvi`
  std::vector<int> seuraava;
  unsigned sukupolvi = 0;
  unsigned kutsu = 0;  // the call the grid was built for
  int eloisia = 0;

  static int sarake(double v) {
    const double c = (v - alku) * perSolu;
    if (!(c >= 0)) return 0;  // also NaN: such a shot touches nothing anyway
    return c >= sivu - 1 ? sivu - 1 : (int)c;
  }

  // Inserted from the last slot down, so every cell lists its shots in slot order.
  void rakenna(const Pati* padit, int n) {
    ++sukupolvi;
    eloisia = 0;
    n = std::min(n, (int)seuraava.size());
    for (int i = n - 1; i >= 0; --i) {
      if (padit[i].aika <= 0) continue;
      const int c = sarake(padit[i].y) * sivu + sarake(padit[i].x);
      seuraava[i] = leima[c] == sukupolvi ? paa[c] : -1;
      paa[c] = i;
      leima[c] = sukupolvi;
      ++eloisia;
    }
  }
};

Ruudukko ruudukot[maxPlayers][2];
std::vector<int> kosketukset;  // scratch: one shot's contacts
unsigned kutsuja = 0;

void varaaRuudukot() {
  const size_t n = (size_t)std::max({maksimipadit, maksimiepadit, 0});
  for (auto& pelaajan : ruudukot)
    for (Ruudukko& r : pelaajan)
      if (r.seuraava.size() < n) r.seuraava.assign(n, -1);
  if (kosketukset.size() < n) kosketukset.assign(n, 0);
}

// One kind of shot of one player.
struct Laji {
  Pati* padit;
  int n;
  double sade;
  bool hajottaa, voiHajota;
  double vahinko;
};

Laji laji(const Player& p, bool erikoiset) {
  if (erikoiset)
    return {p.epati,       epatiRaja(p), p.alus.epatisade, p.alus.epatihajottaa, p.alus.epatiVoiHajota,
            p.alus.edamage};
  return {p.pati, patiRaja(p), p.alus.patisade, p.alus.patihajottaa, p.alus.patiVoiHajota, p.alus.damage};
}

bool koskevat(const Pati& p, const Pati& q, double r) {
  const double dx = (double)q.x - p.x, dy = (double)q.y - p.y;
  if (!(std::fabs(dx) < r && std::fabs(dy) < r)) return false;
  return dx * dx + dy * dy < (kosketus * r) * (kosketus * r);
}

// Slots of Q touching `p`, ascending.
int keraaKosketukset(const Ruudukko& g, const Laji& q, const Pati& p, double r) {
  const int x0 = Ruudukko::sarake(p.x - r), x1 = Ruudukko::sarake(p.x + r);
  const int y0 = Ruudukko::sarake(p.y - r), y1 = Ruudukko::sarake(p.y + r);
  int m = 0;
  for (int cy = y0; cy <= y1; ++cy)
    for (int cx = x0; cx <= x1; ++cx) {
      const int c = cy * Ruudukko::sivu + cx;
      if (g.leima[c] != g.sukupolvi) continue;
      for (int j = g.paa[c]; j >= 0; j = g.seuraava[j])
        if (koskevat(p, q.padit[j], r)) kosketukset[m++] = j;
    }
  if (m > 1) std::sort(kosketukset.begin(), kosketukset.begin() + m);
  return m;
}

void ratkaisePari(const Laji& p, const Laji& q, Ruudukko& g, bool samaTaulukko) {
  const bool qHajoaa = q.voiHajota && p.hajottaa, pHajoaa = p.voiHajota && q.hajottaa;
  if ((!qHajoaa && !pHajoaa) || p.n == 0 || q.n == 0) return;
  if (g.kutsu != kutsuja) {
    g.rakenna(q.padit, q.n);
    g.kutsu = kutsuja;
  }
  if (g.eloisia == 0) return;
  const double r = q.sade + p.sade;
  for (int i = 0; i < p.n; ++i) {
    Pati& a = p.padit[i];
    if (a.aika <= 0) continue;
    const int m = keraaKosketukset(g, q, a, r);
    for (int k = 0; k < m; ++k) {
      const int j = kosketukset[k];
      Pati& b = q.padit[j];
      if ((samaTaulukko && j == i) || b.aika <= 0) continue;
      if (qHajoaa) {
        b.energia = (float)(b.energia - p.vahinko);
        if (b.energia <= 0) b.aika = 0;
      }
      if (pHajoaa) {  // one blow per pairing and frame
        a.energia = (float)(a.energia - q.vahinko);
        if (a.energia <= 0) a.aika = 0;
        break;
      }
    }
  }
}

}  // namespace

void Player::tarkistaHajosikoPadit() {
  const int a = indeksi(this);
  if (a < 0) return;
  ++kutsuja;
  for (int b = a; b < pelaajia(); ++b) {
    Player& toinen = player[b];
    if (!pelissa(toinen)) continue;
    for (bool omaErikois : {false, true})
      for (bool toisenErikois : {false, true})
        ratkaisePari(laji(*this, omaErikois), laji(toinen, toisenErikois), ruudukot[b][toisenErikois],
                     b == a && omaErikois == toisenErikois);
  }
}

// ==== Effects ======================================================================

namespace {

// A colour range: each channel is base + random(spread).
struct Savy {
  float r, rv, g, gv, b, bv;
};
// Start-shard palette of a ship type: the first `kaista` shards take `eka`, the rest `toka`.
struct Paletti {
  int kaista;
  Savy eka, toka;
};

const Savy tuli = {0.75f, 0.25f, 0.3f, 0.4f, 0.0f, 0.15f};
const Savy teras = {0.5f, 0.3f, 0.55f, 0.3f, 0.6f, 0.3f};
const Savy sini = {0.1f, 0.3f, 0.35f, 0.35f, 0.75f, 0.25f};
const Savy vihrea = {0.1f, 0.3f, 0.7f, 0.3f, 0.1f, 0.3f};
const Savy kulta = {0.75f, 0.25f, 0.6f, 0.3f, 0.1f, 0.2f};
const Savy violetti = {0.55f, 0.35f, 0.1f, 0.3f, 0.7f, 0.3f};
const Savy syaani = {0.0f, 0.3f, 0.7f, 0.3f, 0.75f, 0.25f};
const Savy puna = {0.7f, 0.3f, 0.05f, 0.2f, 0.05f, 0.2f};
const Savy valko = {0.8f, 0.2f, 0.8f, 0.2f, 0.8f, 0.2f};

const Paletti paletit[alustyyppeja] = {
    {60, teras, tuli},     {40, puna, teras},   {120, kulta, kulta},    {60, sini, teras},
    {80, teras, tuli},     {80, teras, puna},   {60, syaani, valko},    {60, kulta, tuli},
    {60, vihrea, teras},   {40, vihrea, valko}, {60, violetti, sini},   {60, sini, valko},
    {60, vihrea, kulta},   {80, vihrea, puna},  {60, teras, kulta},     {60, violetti, teras},
    {80, teras, kulta},    {120, sini, sini},   {60, syaani, teras},    {60, puna, kulta},
    {80, violetti, valko}, {60, kulta, vihrea}, {40, syaani, violetti}, {60, puna, teras},
};

void varita(Sirpale& s, const Savy& v) {
  s.red = v.r + random(v.rv);
  s.green = v.g + random(v.gv);
  s.blue = v.b + random(v.bv);
}

// A start shard turns 4 degrees about the ship and closes in by 1.65 % a frame.
void kierra(Sirpale& s) {
  const double rho = std::sqrt(s.x * s.x + s.y * s.y);
  const double th = std::atan2(s.y, s.x) + 0.0698132;
  s.x = std::cos(th) * rho / 1.0165;
  s.y = std::sin(th) * rho / 1.0165;
  s.z /= 1.0165;
}

// The ship bursts into the world pool, never over a live shard.
void purkaudu(Player& p) {
  int vapaa = 0;
  for (int m = p.alkusirpaleMaara - 1; m >= 0; --m) {
    Sirpale* s = vapaaSirpale(vapaa);
    if (!s) return;
    do {
      s->xv = random(10000) / 10000 - 0.5;
      s->yv = random(10000) / 10000 - 0.5;
      s->zv = random(10000) / 10000 - 0.5;
    } while (s->xv * s->xv + s->yv * s->yv + s->zv * s->zv >= 0.25);
    s->x = p.x;
    s->y = p.y;
    s->z = 0;
    s->maxaika = 200;
    s->aika = (int)(random(150) + 50);
    s->koko = random(180) / 100 + 0.35;
    s->muoto = 0;
    s->red = p.alkusirpale[m].red;
    s->green = p.alkusirpale[m].green;
    s->blue = p.alkusirpale[m].blue;
  }
}

void siirraJalkia(Kaasujalki* j) {
  for (int k = kaasujalkia - 1; k >= 1; --k) {
    j[k].x = j[k - 1].x;
    j[k].y = j[k - 1].y;
    j[k].alpha = j[k - 1].alpha > 0 ? 1 - (k + 1) / 5.0 : 0;
  }
}

void suutinJalka(const Player& p, Kaasujalki& j, double suutin) {
  const double a = rad(p.kulma - suutin);
  j.x = p.x + std::cos(a) * p.alus.sade;
  j.y = p.y + std::sin(a) * p.alus.sade;
}

}  // namespace

void Player::laitaAlkuSirpaleet() {
  if (!alkusirpale) return;
  const int n = alus.numero;
  const Paletti& v = paletit[n >= 0 && n < alustyyppeja ? n : 0];
  for (int i = 0; i < alkusirpaleMaara; ++i) {
    Sirpale& s = alkusirpale[i];
    double d2;
    do {  // a shell between about 31.6 and 40 units round the ship
      s.x = random(16000) / 200 - 40;
      s.y = random(16000) / 200 - 40;
      s.z = random(16000) / 200 - 40;
      d2 = s.x * s.x + s.y * s.y + s.z * s.z;
    } while (d2 < 1000 || d2 >= 1600);
    s.koko = random(250) / 100 + 0.8;
    s.muoto = 0;
    s.aika = 200;
    s.maxaika = 200;
    s.xv = s.yv = s.zv = 0;
    varita(s, i < v.kaista ? v.eka : v.toka);
  }
}

void Player::laskeAlkuSirpaleet() {
  for (int i = 0; alkusirpale && i < alkusirpaleMaara; ++i) {
    Sirpale& s = alkusirpale[i];
    if (s.aika <= 0) continue;
    --s.aika;
    kierra(s);
  }
  if (kuolema == 1) {
    kuolema = 0;
    if (alkusirpale) purkaudu(*this);
  }
}

void Player::lisaalima() {
  if (!lima || limacount < 0 || limacount >= limoja) return;
  Pati& m = lima[limacount];
  m.aika = 400;
  // The fixed -0.75 against a spread that grows with the hull leaves small ships with
  // the blobs on their negative side; deliberate, a quirk of the slime's look.
  m.x = (float)(random(1500) / 1000 * alus.sade * kosketus - 0.75);
  m.y = (float)(random(1500) / 1000 * alus.sade * kosketus - 0.75);
  if (isanta()) {
    netlima.x = m.x;
    netlima.y = m.y;
    netlima.player = (short)std::max(0, indeksi(this));
    netlima.kohta = (short)limacount;
    limalaitetaan = true;
  }
  ++limacount;
}

void Player::laskeKaasujaljet() {
  if (kaasujalkiaika > 0) {
    --kaasujalkiaika;
    return;
  }
  kaasujalkiaika = 10;
  const Suuttimet* kaksi = kaksoissuutin(*this);
  if (kaasujalki[0].alpha >= 1.0) {
    suutinJalka(*this, kaasujalki[0], kaksi ? kaksi->toka : 180);
    if (kaksi) suutinJalka(*this, kaasujalki2[0], kaksi->eka);
  } else {
    kaasujalki[0].alpha = 0;
    if (kaksi) kaasujalki2[0].alpha = 0;
  }
  siirraJalkia(kaasujalki);
  kaasujalki[0].alpha -= 0.01;
  if (kaksi) {
    siirraJalkia(kaasujalki2);
    kaasujalki2[0].alpha -= 0.01;
  }
}

void Player::laskeViivat() {
  for (int i = 0; viivat && i < viivoja; ++i) {
    Viivakasa& v = viivat[i];
    if (v.aika <= 0) continue;
    v.aika -= 1;
    v.x1 += v.xv;
    v.y1 += v.yv;
    v.x2 += v.xv;
    v.y2 += v.yv;
  }
}
