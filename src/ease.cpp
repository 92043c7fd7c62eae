// The special weapons: triggering (Player::ease), the special shots' flight and
// hits (Player::liikutaePadit) and the hints the computer pilot reads.
//
// Each kind is built from its row of the catalogue: `easefuel` is the price of a
// trigger, `easenopeus` the cool-down, `easekesto` a duration or a shot's lifetime,
// `easevauhti` the launch speed, `epatisade` the shot radius (or a reach),
// `edamage` and `epatipotkasu` what a hit does.
#include "ease.h"

#include <algorithm>
#include <cmath>

#include "Main.h"
#include "Player.h"
#include "Sets.h"
#include "audio.h"
#include "scene.h"

using namespace saannot;

namespace {

bool elossa(const Player& p) { return pelissa(p) && p.kuolema < 1; }
bool vihollinen(const Player& o, const Player& k) { return &k != &o && k.tiimi != o.tiimi && elossa(k); }
int indeksi(const Player& p) {
  const long i = &p - player;
  return i >= 0 && i < maxPlayers ? (int)i : -1;
}
double etaisyys(double x1, double y1, double x2, double y2) { return std::hypot(x2 - x1, y2 - y1); }

int paikat(const Player& p) { return p.epati ? kaytossa(p.alus.maxepadit, maksimiepadit) : 0; }

// ---- Spawning ------------------------------------------------------------------

Pati* vapaaPaikka(Player& p) {
  for (int i = 0, n = paikat(p); i < n; ++i)
    if (p.epati[i].aika <= 0) return &p.epati[i];
  return nullptr;
}

// A special shot at (x, y) flying along `suunta` degrees at `vauhti`, plus the
// ship's velocity when `perii`.
Pati* laukaise(Player& p, double x, double y, double suunta, double vauhti, double elinaika,
               bool perii = true) {
  Pati* s = vapaaPaikka(p);
  if (!s) return nullptr;
  const double a = rad(suunta);
  *s = Pati{};
  s->x = (float)x;
  s->y = (float)y;
  s->xv = (float)(std::cos(a) * vauhti + (perii ? p.xvauhti : 0));
  s->yv = (float)(std::sin(a) * vauhti + (perii ? p.yvauhti : 0));
  s->kulma = (float)suunta;
  s->energia = (float)p.alus.epatienergia;
  s->aika = lyhyt(elinaika);
  s->alku = s->aika;
  return s;
}

// A shot leaving the hull `ulos` units beyond the ship's radius in direction `suunta`.
Pati* laukaiseRungosta(Player& p, double suunta, double ulos, double vauhti, double elinaika,
                       bool perii = true) {
  const double a = rad(suunta), d = p.alus.sade + ulos;
  return laukaise(p, p.x + std::cos(a) * d, p.y + std::sin(a) * d, suunta, vauhti, elinaika, perii);
}

// ---- Shared effects ------------------------------------------------------------

// A flat ring of debris racing out to radius `sade` in about half a second.
void shokkiaalto(double x, double y, double sade) {
  int vapaa = 0;
  const int n = 30 + 30 * std::max(0, sets.detail);
  for (int k = 0; k < n; ++k) {
    Sirpale* s = vapaaSirpale(vapaa);
    if (!s) return;
    const double a = 2 * pii * k / n, v = sade / 50 * (0.8 + random(0.4));
    *s = Sirpale{};
    s->x = x;
    s->y = y;
    s->xv = std::cos(a) * v;
    s->yv = std::sin(a) * v;
    s->zv = random(0.1) - 0.05;
    s->maxaika = 60;
    s->aika = (int)(random(20) + 40);
    s->koko = random(0.8) + 0.6;
    s->red = 1;
    s->green = random(0.5) + 0.4;
    s->blue = random(0.3);
  }
}

// A blast: every ship in play within `sade` (its centre, not shielded) takes
// `vahinko` scaled down linearly with the distance; `suojaa` is spared.
void rajahdys(double x, double y, double sade, double vahinko, const Player* suojaa) {
  shokkiaalto(x, y, sade);
  if (!paattaa()) return;
  for (int j = 0; j < pelaajia(); ++j) {
    Player& k = player[j];
    if (&k == suojaa || !elossa(k) || suojattu(k)) continue;
    const double d = etaisyys(x, y, k.x, k.y);
    if (d < sade) vahingoita(k, vahinko * (1 - d / sade));
  }
}

// A line effect in the player's own entries (entry 0 belongs to the primary beams).
void viiva(Player& p, int kohta, double x1, double y1, double x2, double y2, double r, double g, double b,
           double aika) {
  if (!p.viivat || kohta < 1 || kohta >= viivoja) return;
  Viivakasa& v = p.viivat[kohta];
  v = Viivakasa{};
  v.x1 = x1;
  v.y1 = y1;
  v.x2 = x2;
  v.y2 = y2;
  v.r = r;
  v.g = g;
  v.b = b;
  v.aika = aika;
}

struct Vari {
  double r, g, b;
};

// A jagged arc of `osia` segments from (x1, y1) to (x2, y2), written into line
// entries from `kohta` on; returns the next free entry.
int salama(Player& p, int kohta, double x1, double y1, double x2, double y2, int osia, Vari v, double aika) {
  const double dx = x2 - x1, dy = y2 - y1, pituus = std::hypot(dx, dy);
  const double nx = pituus > 0 ? -dy / pituus : 0, ny = pituus > 0 ? dx / pituus : 0;
  const double heilahdus = std::min(3.0, pituus * 0.12);
  double ax = x1, ay = y1;
  for (int k = 1; k <= osia; ++k) {
    const double t = (double)k / osia, poikkeama = k < osia ? random(2 * heilahdus) - heilahdus : 0;
    const double bx = x1 + dx * t + nx * poikkeama, by = y1 + dy * t + ny * poikkeama;
    viiva(p, kohta++, ax, ay, bx, by, v.r, v.g, v.b, aika);
    ax = bx;
    ay = by;
  }
  return kohta;
}

// The nearest enemy whose hull lies within `ulottuma` of (x, y), or nullptr.
Player* lahinVihollinen(const Player& o, double x, double y, double ulottuma, const Player* ohita = nullptr) {
  Player* paras = nullptr;
  double parasEtaisyys = ulottuma;
  for (int j = 0; j < pelaajia(); ++j) {
    Player& k = player[j];
    if (!vihollinen(o, k) || &k == ohita) continue;
    const double d = etaisyys(x, y, k.x, k.y) - k.alus.sade * kosketus;
    if (d < parasEtaisyys) {
      parasEtaisyys = d;
      paras = &k;
    }
  }
  return paras;
}

// ---- Triggers, one per kind ----------------------------------------------------

using Laukaisu = void (*)(Player&);

void suoja(Player& p) {  // 0 and 11: on for easekesto frames
  p.suojapaalla = true;
  p.easekesto = (float)p.alus.easekesto;
}

void ilmatorjunta(Player& p) {  // 1: a ring of flak that breaks the shots it meets
  if (!paattaa()) return;
  const int n = 24;
  for (int k = 0; k < n; ++k)
    laukaiseRungosta(p, p.kulma + k * 360.0 / n, 0.5, p.alus.easevauhti, p.alus.easekesto);
}

const double itsetuhonSade = 15;

void itsetuho(Player& p) {  // 2: the ship blows itself up and takes the neighbours along
  if (!paattaa()) return;
  rajahdys(p.x, p.y, itsetuhonSade, p.alus.edamage, &p);
  p.energia = 0;
}

void muuri(Player& p) {  // 3: five shots abreast that advance slowly and stop shots
  if (!paattaa()) return;
  const double a = rad(p.kulma), etaisyysEdessa = 1.5 * p.alus.sade, vali = 2 * p.alus.epatisade;
  for (int k = -2; k <= 2; ++k) {
    const double x = p.x + std::cos(a) * etaisyysEdessa - std::sin(a) * k * vali;
    const double y = p.y + std::sin(a) * etaisyysEdessa + std::cos(a) * k * vali;
    laukaise(p, x, y, p.kulma, p.alus.easevauhti, p.alus.easekesto);
  }
}

void painokaivo(Player& p) {  // 4: a gravity well left behind the ship
  if (paattaa()) laukaiseRungosta(p, p.kulma + 180, p.alus.epatisade + 1, 0, p.alus.easekesto, false);
}

void imukapseli(Player& p) {  // 5: a pod with a little man aboard that latches on and leeches
  if (paattaa()) laukaiseRungosta(p, p.kulma, 0.5, p.alus.easevauhti, p.alus.easekesto);
}

const double teleportinVali = 15;  // from other ships, when such a spot can be found

bool turvallinen(const Player& p, double x, double y, bool muutKaukana) {
  if (std::hypot(x, y) < planeetanVeto) return false;
  if (!muutKaukana) return true;
  for (int j = 0; j < pelaajia(); ++j)
    if (&player[j] != &p && elossa(player[j]) && etaisyys(x, y, player[j].x, player[j].y) < teleportinVali)
      return false;
  return true;
}

void teleportti(Player& p) {  // 6: a jump to a random spot clear of the planet
  if (!paattaa()) return;
  double x = 0, y = 0;
  for (int yritys = 0; yritys < 60; ++yritys) {
    x = random(2 * (kentanX - 15)) - (kentanX - 15);
    y = random(2 * (kentanY - 15)) - (kentanY - 15);
    if (turvallinen(p, x, y, yritys < 30)) break;
  }
  if (!turvallinen(p, x, y, false)) x = kentanX - 15;  // beyond the planet's reach whatever y is
  p.teleportattu = true;
  p.uusx = (float)x;
  p.uusy = (float)y;
  viiva(p, 1, p.x, p.y, x, y, 0.4, 0.8, 1.0, 40);
  for (int k = 0; k < 6; ++k) {  // a star of rays where the ship left and where it lands
    const double a = k * pii / 3;
    viiva(p, 2 + k, p.x, p.y, p.x + std::cos(a) * 4, p.y + std::sin(a) * 4, 0.4, 0.8, 1.0, 25);
    viiva(p, 8 + k, x, y, x + std::cos(a + 0.5) * 5, y + std::sin(a + 0.5) * 5, 1.0, 1.0, 1.0, 35);
  }
}

// Lightning reaches this many shot radii; the second jump half as far.
const double salamanUlottuma = 8;
const Vari salamanVari = {0.75, 0.6, 1.0};

void salamaisku(Player& p, Player& k, double vahinko) {
  if (paattaa() && !suojattu(k)) vahingoita(k, vahinko);
  soita(p.eosumisaani);
}

void salamakaari(Player& p) {  // 7: an arc to the nearest enemy, jumping on to a second
  const double ulottuma = p.alus.epatisade * salamanUlottuma;
  Player* eka = lahinVihollinen(p, p.x, p.y, ulottuma);
  if (!eka) {  // a harmless crackle ahead
    const double a = rad(p.kulma);
    salama(p, 1, p.x, p.y, p.x + std::cos(a) * ulottuma * 0.3, p.y + std::sin(a) * ulottuma * 0.3, 3,
           salamanVari, 8);
    return;
  }
  int kohta = salama(p, 1, p.x, p.y, eka->x, eka->y, 6, salamanVari, 14);
  salamaisku(p, *eka, p.alus.edamage);
  if (Player* toka = lahinVihollinen(p, eka->x, eka->y, ulottuma / 2, eka)) {
    salama(p, kohta, eka->x, eka->y, toka->x, toka->y, 4, salamanVari, 12);
    salamaisku(p, *toka, p.alus.edamage / 2);
  }
}

void jarkale(Player& p) {  // 8: a heavy ball that bounces off the walls
  if (paattaa()) laukaiseRungosta(p, p.kulma, p.alus.epatisade + 0.5, p.alus.easevauhti, p.alus.easekesto);
}

double kiertosade(const Player& p) { return p.alus.sade * 2 + 3; }

void satelliitit(Player& p) {  // 9: four drones that circle the ship
  if (!paattaa()) return;
  for (int k = 0; k < 4; ++k) {
    const double kulma = p.kulma + 90 * k, a = rad(kulma), r = kiertosade(p);
    laukaise(p, p.x + std::cos(a) * r, p.y + std::sin(a) * r, kulma, 0, p.alus.easekesto, false);
  }
}

void rikoLahella(Pati* padit, int n, double x, double y, double ulottuma) {
  for (int i = 0; padit && i < n; ++i)
    if (padit[i].aika > 0 && etaisyys(x, y, padit[i].x, padit[i].y) < ulottuma) padit[i].aika = 0;
}

void pulssi(Player& p) {  // 10: a shock wave that throws back and hurts, and breaks shots
  const double ulottuma = p.alus.epatisade;
  shokkiaalto(p.x, p.y, ulottuma);
  if (!paattaa()) return;
  for (int j = 0; j < pelaajia(); ++j) {
    Player& k = player[j];
    if (!vihollinen(p, k)) continue;
    if (k.alus.patiVoiHajota)
      rikoLahella(k.pati, kaytossa(k.alus.maxpadit, maksimipadit), p.x, p.y, ulottuma);
    if (k.alus.epatiVoiHajota) rikoLahella(k.epati, paikat(k), p.x, p.y, ulottuma);
    const double d = etaisyys(p.x, p.y, k.x, k.y);
    if (suojattu(k) || d >= ulottuma + k.alus.sade * kosketus || d <= 0) continue;
    vahingoita(k, p.alus.edamage);
    const double tyonto = p.alus.epatienergia / k.alus.paino * 2;
    k.xvauhti = (float)(k.xvauhti + (k.x - p.x) / d * tyonto);
    k.yvauhti = (float)(k.yvauhti + (k.y - p.y) / d * tyonto);
  }
}

void eiMitaan(Player&) {}

void hakeutuja(Player& p) {  // 13: a slow seeker that speeds up as it closes in
  if (paattaa()) laukaiseRungosta(p, p.kulma, 1, p.alus.easevauhti, p.alus.easekesto);
}

// 14: a lunge forward to ram. For a moment after it the ship's course bends
// towards the nearest enemy ahead, so that a lunge begun well ends in the hull.
const float syoksynKesto = 30;
const double syoksynKaanto = 3, syoksynKeila = 60, syoksynUlottuma = 40;

void syoksy(Player& p) {
  if (!paattaa()) return;
  const double a = rad(p.kulma);
  p.xvauhti = (float)(p.xvauhti + std::cos(a) * p.alus.easevauhti);
  p.yvauhti = (float)(p.yvauhti + std::sin(a) * p.alus.easevauhti);
  p.easekesto = syoksynKesto;
}

void ohjaaSyoksya(Player& p) {
  if (p.alus.easelaji != 14 || p.easekesto <= 0 || !paattaa()) return;
  const double vauhti = std::hypot(p.xvauhti, p.yvauhti);
  if (vauhti < 1e-3) return;
  const double suunta = aste(std::atan2(p.yvauhti, p.xvauhti));
  double paras = syoksynUlottuma, kaanto = 0;
  for (int j = 0; j < pelaajia(); ++j) {
    const Player& k = player[j];
    if (!vihollinen(p, k)) continue;
    const double d = etaisyys(p.x, p.y, k.x, k.y),
                 ero = kulmaero(aste(std::atan2(k.y - p.y, k.x - p.x)), suunta);
    if (d < paras && std::fabs(ero) < syoksynKeila) {
      paras = d;
      kaanto = std::clamp(ero, -syoksynKaanto, syoksynKaanto);
    }
  }
  const double a = rad(suunta + kaanto);
  p.xvauhti = (float)(std::cos(a) * vauhti);
  p.yvauhti = (float)(std::sin(a) * vauhti);
}

void tera(Player& p) { p.ampumispuoli = 2; }    // 19: the blade runs in liiku
void rengas(Player& p) { p.ampumispuoli = 3; }  // 20: the ring leaves from liiku

// 16: a cone of pellets. They start apart and fly at speeds in proportion to their
// distance from the ship, so the cloud only spreads and never wears itself down.
const int haulejaEnintaan = 40;
const double haulikonSyvyys = 6, haulikonKulma = 30;

bool vapaaKohta(Pati* const* haulit, int n, double x, double y, double vali) {
  for (int k = 0; k < n; ++k)
    if (etaisyys(x, y, haulit[k]->x, haulit[k]->y) < vali) return false;
  return true;
}

void haulikko(Player& p) {
  if (!paattaa()) return;
  Pati* haulit[haulejaEnintaan];
  const double lahin = p.alus.sade + 0.5, kaukaisin = lahin + haulikonSyvyys;
  const double vali = 2 * p.alus.epatisade * kosketus + 0.01;
  int n = 0;
  for (int yritys = 0; yritys < 4 * haulejaEnintaan && n < haulejaEnintaan; ++yritys) {
    const double suunta = p.kulma + random(2 * haulikonKulma) - haulikonKulma;
    const double d = lahin + random(haulikonSyvyys), a = rad(suunta);
    const double x = p.x + std::cos(a) * d, y = p.y + std::sin(a) * d;
    if (!vapaaKohta(haulit, n, x, y, vali)) continue;
    Pati* s = laukaise(p, x, y, suunta, p.alus.easevauhti * d / kaukaisin, p.alus.easekesto);
    if (!s) return;
    haulit[n++] = s;
  }
}

void limapallo(Player& p) {  // 17: a glob of slime
  if (paattaa()) laukaiseRungosta(p, p.kulma, p.alus.epatisade, p.alus.easevauhti, p.alus.easekesto);
}

// Ship 18 never refuels by itself: its discharge takes fuel from the ships around it.
const double purkauksenUlottuma = 2;  // in shot radii
const double varastettavaPolttoaine = 3;
const Vari purkauksenVari = {1.0, 0.95, 0.4};

void purkaus(Player& p) {  // 18
  const double ulottuma = p.alus.epatisade * purkauksenUlottuma;
  int kohta = 1;
  for (int j = 0; j < pelaajia() && kohta + 4 <= viivoja; ++j) {
    Player& k = player[j];
    if (!vihollinen(p, k) || etaisyys(p.x, p.y, k.x, k.y) - k.alus.sade * kosketus >= ulottuma) continue;
    kohta = salama(p, kohta, p.x, p.y, k.x, k.y, 4, purkauksenVari, 10);
    if (!paattaa() || suojattu(k)) continue;
    const double saalis = std::max(0.0, std::min<double>(varastettavaPolttoaine, k.fuel));
    k.fuel = (float)(k.fuel - saalis);
    p.fuel = (float)std::min(p.alus.fuel, p.fuel + saalis);
  }
  if (kohta == 1)  // nothing in reach: sparks round the hull
    for (int k = 0; k < 3; ++k) {
      const double a = random(2 * pii), r = p.alus.sade + 2;
      kohta = salama(p, kohta, p.x, p.y, p.x + std::cos(a) * r, p.y + std::sin(a) * r, 2, purkauksenVari, 6);
    }
}

// Kind 15's boost is a switch: a press turns it on or off, holding keeps it.
bool erikoinenPohjassa[maxPlayers];
bool erikoisnappi(const Player& p) { return napit(p).erikois; }

void tehostin(Player& p) { p.suojapaalla = !p.suojapaalla; }

const int jakautumisVali = 25;

void jakautuja(Player& p) {  // 21: a shot that splits in two every quarter of its life
  if (!paattaa()) return;
  if (Pati* s = laukaiseRungosta(p, p.kulma, 1, p.alus.easevauhti, p.alus.easekesto))
    s->ampumisviive = jakautumisVali;
}

void takasarja(Player& p) {  // 22: a fan of shots thrown back at pursuers
  if (!paattaa()) return;
  for (int k = -3; k <= 3; ++k)
    laukaiseRungosta(p, p.kulma + 180 + k * 10, 0.5, p.alus.easevauhti, p.alus.easekesto);
}

const double panoksenSade = 12;

void panos(Player& p) {  // 23: a charge left in place that blows up when touched or when its time is up
  if (paattaa()) laukaiseRungosta(p, p.kulma + 180, p.alus.epatisade + 1, 0, p.alus.easekesto, false);
}

// clang-format off
const Laukaisu laukaisut[alustyyppeja] = {
    suoja,      ilmatorjunta, itsetuho,   muuri,    painokaivo, imukapseli, teleportti, salamakaari,
    jarkale,    satelliitit,  pulssi,     suoja,    eiMitaan,   hakeutuja,  syoksy,     tehostin,
    haulikko,   limapallo,    purkaus,    tera,     rengas,     jakautuja,  takasarja,  panos,
};
// clang-format on

// ---- Shot flight, one per kind -------------------------------------------------

// Returns false when the shot needs no common move, planet and hit test this frame.
using Lento = bool (*)(Player&, Pati&);

bool suoraan(Player&, Pati&) { return true; }

bool kaivo(Player& o, Pati& s) {  // 4: stays put and pulls enemies in
  s.xv *= 0.95f;
  s.yv *= 0.95f;
  if (!paattaa()) return true;
  for (int j = 0; j < pelaajia(); ++j) {
    Player& k = player[j];
    const double d = etaisyys(s.x, s.y, k.x, k.y);
    if (!vihollinen(o, k) || d >= planeetanVeto || d < 0.5) continue;
    const double veto = o.alus.easevauhti * (1 - d / planeetanVeto);
    k.xvauhti = (float)(k.xvauhti - (k.x - s.x) / d * veto);
    k.yvauhti = (float)(k.yvauhti - (k.y - s.y) / d * veto);
  }
  return true;
}

// Kind 5: a latched pod keeps the target's index + 1 in ampumisviive and its
// place on the hull as an angle in kulma.
const short imunKesto = 150;

void vapautaPikkumies(const Pati& s, const Player& o) {
  for (Pati& m : pikkumies) {
    if (m.aika > 0) continue;
    m = Pati{};
    m.x = s.x;
    m.y = s.y;
    m.aika = lyhyt(o.alus.easekesto);
    m.ampumisviive = 70;
    m.energia = 1;
    return;
  }
}

void irrota(Player& o, Pati& s) {
  if (!paattaa()) return;
  vapautaPikkumies(s, o);
  s.aika = 0;
}

bool kapseli(Player& o, Pati& s) {
  if (s.ampumisviive <= 0 || s.ampumisviive > maxPlayers) {
    vaimenna(s.xv, 0.002);
    vaimenna(s.yv, 0.002);
    return true;
  }
  Player& k = player[s.ampumisviive - 1];
  if (!elossa(k) || suojattu(k) || s.aika <= 0) {
    irrota(o, s);
    return false;
  }
  const double a = rad(s.kulma), r = k.alus.sade * 0.6;
  s.x = (float)(k.x + std::cos(a) * r);
  s.y = (float)(k.y + std::sin(a) * r);
  s.xv = k.xvauhti;
  s.yv = k.yvauhti;
  if (paattaa()) {
    vahingoita(k, o.alus.edamage);
    o.energia = (float)std::min(o.alus.energia, o.energia + o.alus.edamage);
  }
  if (o.viivat) {
    const int kohta = 1 + (int)(&s - o.epati) % (viivoja - 1);
    viiva(o, kohta, s.x, s.y, o.x, o.y, 0.3, 1.0, 0.4, 3);
  }
  return false;
}

bool kimpoileva(Player&, Pati& s) {  // 8: off the walls like a ball
  if ((s.x > kentanX && s.xv > 0) || (s.x < -kentanX && s.xv < 0)) s.xv = -s.xv;
  if ((s.y > kentanY && s.yv > 0) || (s.y < -kentanY && s.yv < 0)) s.yv = -s.yv;
  return true;
}

bool kiertava(Player& o, Pati& s) {  // 9: circles the owner at a fixed radius
  const double r = kiertosade(o);
  s.kulma = (float)(s.kulma + aste(o.alus.easevauhti / r));
  const double a = rad(s.kulma);
  s.xv = (float)(o.x + std::cos(a) * r - s.x);
  s.yv = (float)(o.y + std::sin(a) * r - s.y);
  return true;
}

const double hakeutujanKaanto = 3;    // degrees per frame
bool hakeutuva(Player& o, Pati& s) {  // 13
  const double vauhti = std::min(std::hypot(s.xv, s.yv) + 0.004, 3 * o.alus.easevauhti);
  double suunta = aste(std::atan2(s.yv, s.xv));
  if (const Player* k = lahinVihollinen(o, s.x, s.y, 120)) {
    const double ero = kulmaero(aste(std::atan2(k->y - s.y, k->x - s.x)), suunta);
    suunta += std::clamp(ero, -hakeutujanKaanto, hakeutujanKaanto);
  }
  s.xv = (float)(std::cos(rad(suunta)) * vauhti);
  s.yv = (float)(std::sin(rad(suunta)) * vauhti);
  s.kulma = (float)suunta;
  return true;
}

const double jakautumisKulma = 12, jakautujanHaku = 60, jakautujanKaanto = 30;

bool jakautuva(Player& o, Pati& s) {  // 21
  if (s.ampumisviive <= 0 || --s.ampumisviive > 0) return true;
  s.ampumisviive = jakautumisVali;
  if (!paattaa()) return true;
  const double vauhti = std::hypot(s.xv, s.yv);
  double suunta = aste(std::atan2(s.yv, s.xv));
  // Each split turns the pair towards the nearest enemy ahead, so the cluster closes on it.
  if (const Player* k = lahinVihollinen(o, s.x, s.y, jakautujanHaku))
    suunta += std::clamp(kulmaero(aste(std::atan2(k->y - s.y, k->x - s.x)), suunta), -jakautujanKaanto,
                         jakautujanKaanto);
  // The twins start side by side just clear of each other, since they can break each other.
  const double sivuun = o.alus.epatisade * kosketus + 0.01, a = rad(suunta + 90);
  const double sx = std::cos(a) * sivuun, sy = std::sin(a) * sivuun;
  const Pati vanha = s;
  s.x = (float)(vanha.x + sx);
  s.y = (float)(vanha.y + sy);
  s.xv = (float)(std::cos(rad(suunta + jakautumisKulma)) * vauhti);
  s.yv = (float)(std::sin(rad(suunta + jakautumisKulma)) * vauhti);
  Pati* kaksonen =
      laukaise(o, vanha.x - sx, vanha.y - sy, suunta - jakautumisKulma, vauhti, vanha.aika, false);
  if (kaksonen) {
    kaksonen->energia = vanha.energia;
    kaksonen->alku = vanha.alku;
    kaksonen->ampumisviive = jakautumisVali;
  }
  return true;
}

bool palava(Player& o, Pati& s) {  // 23: a spent charge goes off where it lies
  if (s.aika <= 0 && paattaa()) rajahdys(s.x, s.y, panoksenSade, o.alus.edamage, nullptr);
  return true;
}

Lento lento(int laji) {
  switch (laji) {
    case 4: return kaivo;
    case 5: return kapseli;
    case 8: return kimpoileva;
    case 9: return kiertava;
    case 13: return hakeutuva;
    case 21: return jakautuva;
    case 23: return palava;
    default: return suoraan;
  }
}

// ---- Hits --------------------------------------------------------------------

// Mirrors the shot's velocity off the hull it touched and sets it just clear of it.
void kimpoaRungosta(Pati& s, const Player& k, double sade) {
  const double dx = s.x - k.x, dy = s.y - k.y, d = std::hypot(dx, dy);
  const double nx = d > 1e-6 ? dx / d : 1, ny = d > 1e-6 ? dy / d : 0;
  const double vastaan = s.xv * nx + s.yv * ny;
  if (vastaan < 0) {
    s.xv = (float)(s.xv - 2 * vastaan * nx);
    s.yv = (float)(s.yv - 2 * vastaan * ny);
  }
  const double irti = (k.alus.sade + sade) * kosketus + 0.05;
  s.x = (float)(k.x + nx * irti);
  s.y = (float)(k.y + ny * irti);
}

// What a hit does on the host beyond the common damage and kick.
void osumaVaikutus(Player& o, Pati& s, Player& k) {
  switch (o.alus.easelaji) {
    case 5:  // latch on instead of dying
      s.ampumisviive = (short)(indeksi(k) + 1);
      s.kulma = (float)aste(std::atan2(s.y - k.y, s.x - k.x));
      s.aika = imunKesto;
      return;
    case 8:  // the ball rings off the hull and flies on
      vahingoita(k, o.alus.edamage);
      k.xvauhti = (float)(k.xvauhti + s.xv * o.alus.epatipotkasu);
      k.yvauhti = (float)(k.yvauhti + s.yv * o.alus.epatipotkasu);
      kimpoaRungosta(s, k, o.alus.epatisade);
      return;
    case 17: k.lisaalima(); break;
    case 23:
      rajahdys(s.x, s.y, panoksenSade, o.alus.edamage, nullptr);
      s.aika = 0;
      return;
    default: break;
  }
  vahingoita(k, o.alus.edamage);
  k.xvauhti = (float)(k.xvauhti + s.xv * o.alus.epatipotkasu);
  k.yvauhti = (float)(k.yvauhti + s.yv * o.alus.epatipotkasu);
  s.aika = 0;
}

// Hits on every other ship, in index order. On a client the hit is only heard,
// once per shot (alku is turned negative); the host's notice removes the shot.
void osumat(Player& o, Pati& s) {
  for (int j = 0; j < pelaajia() && s.aika > 0; ++j) {
    Player& k = player[j];
    if (&k == &o || !elossa(k) || !osuu(k, s, o.alus.epatisade)) continue;
    if (paattaa()) {
      soita(o.eosumisaani);
      osumaVaikutus(o, s, k);
      if (o.alus.easelaji == 5) return;
    } else if (s.alku >= 0) {
      soita(o.eosumisaani);
      s.alku = -1;
    }
  }
}

void lennata(Player& o, Lento lentaa, Pati& s) {
  s.aika -= 1;
  if (!lentaa(o, s) || s.aika <= 0) return;
  s.x += s.xv;
  s.y += s.yv;
  planeetta(s);
  if (s.aika > 0) osumat(o, s);
}

// ---- Slime -------------------------------------------------------------------

// Blobs live 400 frames. The live ones are kept packed at the front so that
// `limacount` is both their number and the slot of the next blob.
void kuivataLimat(Player& p) {
  if (!p.lima) return;
  const int vanhat = std::max(0, std::min(p.limacount, limoja));
  int elavia = 0;
  for (int i = 0; i < limoja; ++i) {
    Pati& m = p.lima[i];
    if (m.aika <= 0) continue;
    if (i >= vanhat) {  // left over from before a respawn
      m.aika = 0;
      continue;
    }
    if (--m.aika > 0) p.lima[elavia++] = m;
  }
  for (int i = elavia; i < limoja; ++i) p.lima[i].aika = 0;
  p.limacount = elavia;
}

// Kind 11's beam ends with its duration (liiku ends only the shield's).
void sammutaSininenSade(Player& p) {
  if (p.alus.easelaji != 11 || !p.suojapaalla || p.easekesto > 0) return;
  p.suojapaalla = false;
  if (p.laseraani && p.ampumisaani && efektitpaalla) p.ampumisaani->stop();
  p.laseraani = false;
}

}  // namespace

void Player::ease() {
  const int laji = alus.easelaji;
  if (laji < 0 || laji >= alustyyppeja || laji == 12) return;  // 12 acts only at death
  if (laji == 15) {
    const int i = indeksi(*this);
    if (i >= 0 && erikoinenPohjassa[i]) return;  // still the same press
  }
  // The lunge is paid by the ram that ends it, which spends the whole tank.
  if (paattaa() && laji != 14) fuel = (float)(fuel - alus.easefuel);
  easeviive = (float)alus.easenopeus;
  soita(eampumisaani);
  laukaisut[laji](*this);
}

void Player::liikutaePadit() {
  const int i = indeksi(*this);
  if (i >= 0) erikoinenPohjassa[i] = erikoisnappi(*this);
  sammutaSininenSade(*this);
  ohjaaSyoksya(*this);
  kuivataLimat(*this);
  const Lento lentaa = lento(alus.easelaji);
  for (int k = 0, n = paikat(*this); k < n; ++k)
    if (epati[k].aika > 0) lennata(*this, lentaa, epati[k]);
}

ErikoisKaytto erikoisenKaytto(int easelaji) {
  using K = ErikoisKaytto;
  static const K kaytot[alustyyppeja] = {
      K::Suoja,   K::Lahella, K::Lahella, K::Suoja,   K::Takaa,   K::Kaukaa, K::Pako,    K::Lahella,
      K::Kaukaa,  K::Lahella, K::Lahella, K::Lahella, K::Ei,      K::Kaukaa, K::Lahella, K::Lahella,
      K::Lahella, K::Kaukaa,  K::Lahella, K::Lahella, K::Lahella, K::Kaukaa, K::Takaa,   K::Takaa,
  };
  return easelaji >= 0 && easelaji < alustyyppeja ? kaytot[easelaji] : K::Ei;
}

double erikoisenKantama(int easelaji) {
  if (easelaji < 0 || easelaji >= alustyyppeja) return 0;
  const Alus& a = alus[easelaji];
  switch (easelaji) {
    case 0: return 15;  // shots this close call for the shield
    case 1:
    case 16: return a.easevauhti * a.easekesto * 0.6;
    case 2: return itsetuhonSade * 0.5;  // the blast is strongest close in
    case 3: return a.easevauhti * a.easekesto * 0.5;
    case 4: return planeetanVeto;
    case 5:
    case 13:
    case 17: return std::min(90.0, a.easevauhti * a.easekesto * 0.5);
    case 8: return std::max(20.0, a.easevauhti * 60);  // the boulder is slow: any farther and it is dodged
    case 21: return a.easevauhti * a.easekesto * 0.8;  // the splits find their way
    case 7: return a.epatisade * salamanUlottuma;
    case 9: return 12;
    case 10: return a.epatisade;
    case 11: return a.epatisade;  // the blue beam's length
    case 14: return 25;
    case 15: return 40;
    case 18: return a.epatisade * purkauksenUlottuma;
    case 19: return a.sade + a.easenopeus / 20;  // the blade's full reach
    case 20: return 30;
    case 22: return a.easevauhti * a.easekesto * 0.6;
    case 23: return panoksenSade;
    default: return 0;
  }
}
