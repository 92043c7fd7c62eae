// The computer pilot: each frame it looks at the world and sets the six buttons of
// its ship, nothing else. What it has to remember between frames (its target, what
// it last saw of it, the plan of a bomb or a charge) lives in `muisti`, one per slot.
#include "ai.h"

#include <algorithm>
#include <cmath>

#include "Main.h"
#include "Player.h"
#include "Sets.h"
#include "ctf.h"
#include "domination.h"
#include "ease.h"
#include "scene.h"
#include "sieni.h"

using saannot::pelaajia;
using saannot::pelissa;

namespace {

const float asteenRadiaanit = saannot::pii / 180;
// The contact factor in the pilot's single-precision arithmetic.
const float kosketusKerroin = static_cast<float>(saannot::kosketus);

struct V {
  float x, y;
};
V operator+(V a, V b) { return {a.x + b.x, a.y + b.y}; }
V operator-(V a, V b) { return {a.x - b.x, a.y - b.y}; }
V operator*(V a, float k) { return {a.x * k, a.y * k}; }
float piste(V a, V b) { return a.x * b.x + a.y * b.y; }
float risti(V a, V b) { return a.x * b.y - a.y * b.x; }
float pituus(V a) { return std::sqrt(piste(a, a)); }
V yksikko(V a) {
  const float l = pituus(a);
  return l > 1e-6f ? a * (1 / l) : V{0, 0};
}
V kohtisuora(V a) { return {-a.y, a.x}; }
V suunta(float asteet) { return {std::cos(asteet * asteenRadiaanit), std::sin(asteet * asteenRadiaanit)}; }
float kulmaAsteina(V a) { return std::atan2(a.y, a.x) / asteenRadiaanit; }
float kulmaEro(float a, float b) { return (float)saannot::kulmaero(a, b); }
V paikka(const Player& p) { return {p.x, p.y}; }
V vauhti(const Player& p) { return {p.xvauhti, p.yvauhti}; }

// What a skill level changes. Level 0 is the gentlest opponent.
struct Taso {
  int reaktio;     // frames between two looks at the target
  float virhe;     // largest aim error, degrees
  float ennakko;   // share of the target's motion it allows for when aiming
  bool vaistaa;    // dodges incoming shots
  bool erikoinen;  // uses its special weapon
  float parannus;  // goes for little men below this share of its hull
};
const Taso tasot[aiTasoja] = {
    {32, 10.0f, 0.0f, false, false, 0.3f},
    {14, 5.0f, 0.6f, false, true, 0.4f},
    {6, 2.5f, 0.9f, true, true, 0.5f},
    {2, 0.8f, 1.0f, true, true, 0.6f},
};
const Taso& taso() { return tasot[std::clamp(sets.ai, 0, aiTasoja - 1)]; }

struct Muisti {
  int alus = -1;            // ship type the rest was worked out for
  float matka = 0;          // cruising speed
  float turva = 0;          // distance it keeps from the planet's centre
  int kohde = -1;           // slot it is after
  int nakoIka = 0;          // frames since it last looked
  V nahty{0, 0};            // where the target was then
  V nahtyV{0, 0};           // and how it moved
  float virhe = 0;          // aim error of this look
  float pommiMatka = 1e9f;  // type 4: last distance from the bomb to the target
  bool pommiMatkalla = false;
  int kaannosTauko = 0;   // type 18: frames until it may flip again
  V vaistoVektori{0, 0};  // last dodge worked out from incoming shots
  bool uhka = false;      // a shot is about to hit
};
Muisti muisti[maxPlayers];

bool ilmanInertiaa(const Alus& a) { return a.aselaji == 6 || a.aselaji == 18 || a.numero == 22; }

// Speed it cruises at: a share of the speed where thrust and drag balance
// (thrust = 0.006 v (v + 1) for the ordinary hulls).
float matkanopeus(const Alus& a) {
  if (ilmanInertiaa(a)) return (float)a.nopeus;
  const float tasapaino = (std::sqrt(1 + 4 * (float)a.nopeus / 0.006f) - 1) / 2;
  return std::min(0.7f * tasapaino, 0.4f);
}

// Gravity falls with distance^1.3; beyond this radius it stays under 30 % of the
// thrust, so the ship can always climb out. The planet hurts within sade + 8.
float turvasade(const Alus& a) {
  const float kosketus = (float)a.sade + 8;
  if (ilmanInertiaa(a)) return kosketus + 7;
  const float painovoima = std::pow(20 / ((float)a.paino * 0.3f * (float)a.nopeus), 1 / 1.3f);
  return std::clamp(painovoima, kosketus + 16, 75.0f);
}

void aloita(Muisti& m, const Alus& a) {
  m = Muisti{};
  m.alus = a.numero;
  m.matka = matkanopeus(a);
  m.turva = turvasade(a);
}

int omaPaikka(const Player* p) {
  for (int i = 0; i < maxPlayers; ++i)
    if (p == &player[i]) return i;
  return -1;
}

bool elossa(int j) { return j >= 0 && j < pelaajia() && pelissa(player[j]) && player[j].kuolema < 1; }

// Another team's live player that this pilot may go for: humans always, other
// computer pilots only in "ai vs ai".
bool kelpaaKohteeksi(int i, int j) {
  if (j == i || !elossa(j)) return false;
  if (player[j].tiimi == player[i].tiimi) return false;
  return player[j].ihmispelaaja || sets.aikohteet;
}

// Capture the flower: the enemy carrying this team's flower, or -1.
int omanKukanKantaja(int tiimi) {
  if (gamemode != 3 || !cpiste || tiimi < 0 || tiimi >= cpisteita) return -1;
  const int kantaja = cpiste[tiimi].player;
  return cpiste[tiimi].enabled && kantaja >= 0 && kantaja < maxPlayers ? kantaja : -1;
}

// Nearest fair target, the carrier of its own flower first; the current one is kept
// unless another is clearly nearer, so that it does not flit between two.
int valitseKohde(int i, int nykyinen) {
  const V P = paikka(player[i]);
  int paras = -1;
  float parasArvo = 1e9f;
  const int kantaja = omanKukanKantaja(player[i].tiimi);
  for (int j = 0; j < pelaajia(); ++j) {
    if (!kelpaaKohteeksi(i, j)) continue;
    float arvo = pituus(paikka(player[j]) - P);
    if (j == nykyinen) arvo *= 0.75f;
    if (j == kantaja) arvo -= 200;
    if (arvo < parasArvo) {
      parasArvo = arvo;
      paras = j;
    }
  }
  return paras;
}

// The pilot looks at its target only every few frames (by level) and in between
// flies on what it saw then, carried forward at the speed it saw.
void katso(int i, Muisti& m, const Taso& t) {
  ++m.nakoIka;
  const bool kadonnut = !kelpaaKohteeksi(i, m.kohde);
  if (!kadonnut && m.nakoIka < t.reaktio) return;
  m.kohde = valitseKohde(i, kadonnut ? -1 : m.kohde);
  m.nakoIka = 0;
  if (m.kohde < 0) return;
  m.nahty = paikka(player[m.kohde]);
  m.nahtyV = vauhti(player[m.kohde]);
  m.virhe = (float)random(2 * t.virhe) - t.virhe;
}

// One frame's picture of the situation, shared by the parts below.
struct Lento {
  Player& p;
  int i;
  Muisti& m;
  const Taso& t;
  V P, vel;
  V kohdeP{0, 0}, kohdeV{0, 0};
  float etaisyys = 1e9f;
  float tahtays = 0;        // heading that would hit the target
  float kantama = 0;        // reach of the primary weapon
  float mieluisin = 0;      // range it likes to fight at
  float syoksyKulma = 0;    // heading on which a lunge meets the target
  bool lentoEnsin = false;  // a rock, wall, planet or task comes before aiming
};

// Specials 14 and 15 hurt by collision: those ships ram.
bool rammaa(const Player& p) { return p.alus.easelaji == 14 || p.alus.easelaji == 15; }
// A type-14 ram waits for a nearly full tank, since the blow spends all of it.
bool erikoinenValmis(const Player& p) {
  const float tarve = p.alus.easelaji == 14 ? 0.8f * (float)p.alus.fuel : (float)p.alus.easefuel;
  return p.easeviive < 1 && p.fuel >= tarve;
}

// Speed of its primary shot relative to the ship.
float laukausNopeus(const Alus& a) {
  if (a.numero == 7 || a.numero == 14) return (float)a.nopeus * 150;
  return (float)a.patinopeus;
}

bool sadeAse(const Alus& a) { return a.numero == 6 || a.numero == 18; }

float aseenKantama(const Player& p) {
  const Alus& a = p.alus;
  if (sadeAse(a)) return (float)a.patisade + 1;
  if (a.numero == 9) return (float)a.patisade;
  if (a.numero == 11 && p.suojapaalla) return (float)a.epatisade - 0.75f;
  if (a.numero == 15) return 30;
  if (a.numero == 4) return 110;
  if (a.numero == 13) return 45;
  return std::min(laukausNopeus(a) * (float)a.patiaika * 0.8f, 110.0f);
}

float mieluisinEtaisyys(const Lento& l) {
  const Alus& a = l.p.alus;
  // Short guns must come in close; nobody sits right on top of its target.
  float d = std::min(std::clamp(l.kantama * 0.45f, 18.0f, 45.0f), l.kantama * 0.7f);
  if (sadeAse(a) || a.numero == 9 || (a.numero == 11 && l.p.suojapaalla)) d = l.kantama * 0.55f;
  const ErikoisKaytto k = erikoisenKaytto(a.easelaji);
  const bool valmis = erikoinenValmis(l.p);
  if (l.t.erikoinen && rammaa(l.p) && (valmis || l.p.suojapaalla)) return 0;  // straight into it
  if (l.t.erikoinen && k == ErikoisKaytto::Lahella && valmis)
    d = std::min(d, (float)erikoisenKantama(a.easelaji) * 0.6f);
  return std::max(d, (float)a.sade * 3);
}

// Heading that meets a target at `rel` moving at `relv` with a shot of speed s.
float ennakkoKulma(V rel, V relv, float s) {
  const float a = piste(relv, relv) - s * s;
  const float b = 2 * piste(rel, relv);
  const float c = piste(rel, rel);
  float aika = 0;
  if (std::fabs(a) < 1e-6f) {
    if (b < 0) aika = -c / b;
  } else {
    const float d = b * b - 4 * a * c;
    if (d >= 0) {
      const float juuri = std::sqrt(d);
      const float t1 = (-b - juuri) / (2 * a), t2 = (-b + juuri) / (2 * a);
      aika = t1 > 0 && (t1 < t2 || t2 <= 0) ? t1 : std::max(t2, 0.0f);
    }
  }
  return kulmaAsteina(rel + relv * std::min(aika, 400.0f));
}

void arvioiKohde(Lento& l) {
  const Muisti& m = l.m;
  l.kantama = aseenKantama(l.p);
  if (m.kohde < 0) return;
  l.kohdeP = m.nahty + m.nahtyV * (float)m.nakoIka;
  l.kohdeV = m.nahtyV;
  const V rel = l.kohdeP - l.P;
  l.etaisyys = pituus(rel);
  const bool ohjautuu = l.p.alus.numero == 7;
  const V relv = (l.kohdeV - l.vel) * (ohjautuu ? 0.0f : l.t.ennakko);
  l.tahtays = ennakkoKulma(rel, relv, std::max(laukausNopeus(l.p.alus), 0.05f)) + m.virhe;
  if (rammaa(l.p)) l.syoksyKulma = ennakkoKulma(rel, relv, (float)l.p.alus.easevauhti) + m.virhe;
  l.mieluisin = mieluisinEtaisyys(l);
}

// ---- Where to go ----

bool janaOsuuPlaneettaan(V a, V b, float r) {
  const V ab = b - a;
  const float l2 = piste(ab, ab);
  const float t = l2 > 1e-6f ? std::clamp(-piste(a, ab) / l2, 0.0f, 1.0f) : 0;
  return pituus(a + ab * t) < r;
}

// Velocity that brings it to `kohde`, round the planet along a tangent when the
// straight line would cross it, slowing down on arrival.
V kohti(const Lento& l, V kohde) {
  const V ero = kohde - l.P;
  const float matka = pituus(ero);
  if (matka < 0.01f) return {0, 0};
  V dir = ero * (1 / matka);
  const float r = pituus(l.P);
  if (r > 1 && janaOsuuPlaneettaan(l.P, kohde, l.m.turva)) {
    const V ulos = l.P * (1 / r);
    V sivu = kohtisuora(ulos);
    if (risti(l.P, kohde) < 0) sivu = sivu * -1;
    dir = yksikko(sivu + ulos * std::max(0.0f, (l.m.turva * 1.3f - r) / l.m.turva));
  }
  return dir * std::min(l.m.matka, matka * 0.012f + 0.02f);
}

// Keeps goals inside the walls and outside the planet's reach.
V sallittu(V q, float turva) {
  q.x = std::clamp(q.x, -148.0f, 148.0f);
  q.y = std::clamp(q.y, -108.0f, 108.0f);
  const float r = pituus(q);
  if (r < turva) q = r > 1e-3f ? q * (turva / r) : V{turva, 0};
  return q;
}

// The nearest live little man when hurt enough to want one, else false.
bool pikkumiesKohde(const Lento& l, V& kohde) {
  if (l.p.energia >= l.p.alus.energia * l.t.parannus) return false;
  float paras = 140;
  for (const Pati& m : pikkumies) {
    if (m.aika <= 0) continue;
    const V q{m.x, m.y};
    const float d = pituus(q - l.P);
    if (d < paras && pituus(q) > l.m.turva) {
      paras = d;
      kohde = q;
    }
  }
  return paras < 140;
}

bool kukkaKohde(const Lento& l, V& kohde) {
  const int tiimi = l.p.tiimi;
  if (!cpiste || !alkupiste || tiimi < 0 || tiimi >= cpisteita) return false;
  const CPiste& oma = cpiste[tiimi];
  bool kantaa = false;
  for (int k = 0; k < cpisteita; ++k) kantaa = kantaa || (cpiste[k].enabled && cpiste[k].player == l.i);
  if (oma.enabled && oma.player == kukkaPudonnut) {
    kohde = {oma.x, oma.y};  // its own flower lies out: touching it sends it home
    return true;
  }
  if (kantaa) {
    kohde = {alkupiste[tiimi].x, alkupiste[tiimi].y};
    const int kantaja = omanKukanKantaja(tiimi);
    if (kantaja >= 0) kohde = paikka(player[kantaja]);  // no capture until its own flower is back
    return true;
  }
  float paras = 1e9f;
  for (int k = 0; k < cpisteita; ++k) {
    const CPiste& c = cpiste[k];
    if (k == tiimi || !c.enabled || (c.player != kukkaKotona && c.player != kukkaPudonnut)) continue;
    const float d = pituus(V{c.x, c.y} - l.P);
    if (d < paras) {
      paras = d;
      kohde = {c.x, c.y};
    }
  }
  return paras < 1e9f;
}

bool valloitusKohde(const Lento& l, V& kohde) {
  if (!dpiste) return false;
  float paras = 1e9f;
  for (int k = 0; k < dpisteita; ++k) {
    const V q{(float)dpiste[k].x, (float)dpiste[k].y};
    // Points of its own team count as far, so it holds one only when all are its.
    const float d = pituus(q - l.P) + (dpiste[k].tiimi == l.p.tiimi ? 400 : 0);
    if (d < paras) {
      paras = d;
      kohde = q;
    }
  }
  return paras < 1e9f;
}

bool sieniKohde(const Lento& l, V& kohde) {
  if (!spiste || spisteita < 1) return false;
  float paras = 1e9f;
  for (int k = 0; k < spisteita; ++k) {
    const V q{(float)spiste[k].x, (float)spiste[k].y};
    if (pituus(q - l.P) < paras) {
      paras = pituus(q - l.P);
      kohde = q;
    }
  }
  return true;
}

bool tehtava(const Lento& l, V& kohde) {
  if (pikkumiesKohde(l, kohde)) return true;
  switch (gamemode) {
    case 2: return valloitusKohde(l, kohde);
    case 3: return kukkaKohde(l, kohde);
    case 4: return sieniKohde(l, kohde);
    default: return false;
  }
}

// Velocity it wants from what it is doing: a task of the mode, the fight, or a
// slow patrol round the planet when there is nothing to do.
V haluttuVauhti(Lento& l, bool& tehtavalla) {
  V kohde{0, 0};
  tehtavalla = tehtava(l, kohde);
  if (tehtavalla) return kohti(l, kohde);
  if (l.m.kohde >= 0) {
    const V dir = yksikko(l.kohdeP - l.P);
    V v = kohti(l, sallittu(l.kohdeP - dir * l.mieluisin, l.m.turva));
    if (l.t.vaistaa) v = v + kohtisuora(dir) * (l.m.matka * 0.25f);  // circle a little: harder to hit
    return v;
  }
  const float r = std::max(pituus(l.P), 1.0f);
  const float keha = std::max(l.m.turva + 35, 70.0f);
  const V partio = sallittu(yksikko(l.P + kohtisuora(l.P) * (r * 0.5f)) * keha, l.m.turva);
  return kohti(l, partio);
}

// ---- What to keep away from ----

V planeetanVaisto(const Lento& l) {
  V ulos{0, 0};
  const float r = pituus(l.P), turva = l.m.turva;
  if (r < turva && r > 1e-3f) {
    // Where thrust beats gravity it climbs straight out; deeper in the well it
    // also gathers speed along its orbit, on the side it already moves.
    const V oikaisu = l.P * (1 / r);
    V kierto = kohtisuora(oikaisu);
    if (risti(l.P, l.vel) < 0) kierto = kierto * -1;
    const Alus& a = l.p.alus;
    const bool nousee =
        ilmanInertiaa(a) || 20 / ((float)a.paino * std::pow(r, 1.3f)) < 0.85f * (float)a.nopeus;
    const V nosto = nousee ? oikaisu + kierto * 0.15f : oikaisu * 0.6f + kierto * 0.8f;
    ulos = nosto * ((1 + 2 * (turva - r) / turva) * l.m.matka);
  }
  const float vv = piste(l.vel, l.vel);
  if (vv < 1e-8f) return ulos;
  const float t = std::clamp(-piste(l.P, l.vel) / vv, 0.0f, 150.0f);
  const V lahin = l.P + l.vel * t;
  const float q = pituus(lahin);
  if (q < turva) {
    const V dir = q > 0.5f ? lahin * (1 / q) : yksikko(kohtisuora(l.vel));
    ulos = ulos + dir * (2 * l.m.matka * (turva - q) / turva);
  }
  return ulos;
}

float seinaTyonto(float ennuste, float raja, float vauhti) {
  if (ennuste > raja) return -vauhti * std::min(1.0f, (ennuste - raja) / 15);
  if (ennuste < -raja) return vauhti * std::min(1.0f, (-raja - ennuste) / 15);
  return 0;
}

V seinienVaisto(const Lento& l) {
  const V ennuste = l.P + l.vel * 60;
  return {seinaTyonto(ennuste.x, 145, 2 * l.m.matka), seinaTyonto(ennuste.y, 105, 2 * l.m.matka)};
}

V asteroidienVaisto(const Lento& l) {
  V pois{0, 0};
  for (const Pati& a : asteroidi) {
    const V rel = V{a.x, a.y} - l.P;
    if (piste(rel, rel) > 6400) continue;
    const V relv = V{a.xv, a.yv} - l.vel;
    const float vv = piste(relv, relv);
    const float t = vv > 1e-8f ? std::clamp(-piste(rel, relv) / vv, 0.0f, 120.0f) : 0;
    const V lahin = rel + relv * t;
    // A rock's kick can throw the ship at the planet.
    const float raja = (a.koko + (float)l.p.alus.sade) * kosketusKerroin + 8;
    const float q = pituus(lahin);
    if (q < raja) pois = pois - yksikko(q > 0.3f ? lahin : rel) * (2.5f * l.m.matka * (raja - q) / raja);
  }
  return pois;
}

// Shots about to hit: a dodge across their line, and the threat that raises a shield.
// Looked at every few frames, staggered by slot, to keep sixteen pilots cheap.
void katsoLaukaukset(Lento& l) {
  Muisti& m = l.m;
  if (!l.t.vaistaa) return;
  if ((oldframecounter + l.i) % 3 != 0) return;
  m.vaistoVektori = {0, 0};
  m.uhka = false;
  const float osuma = (float)l.p.alus.sade + 2.5f;
  for (int j = 0; j < pelaajia(); ++j) {
    // Only 23's own shots bounce back.
    if ((j == l.i && l.p.alus.numero != 23) || !pelissa(player[j])) continue;
    const Player& q = player[j];
    const int padit = std::min((int)q.alus.maxpadit, maksimipadit);
    const int epadit = std::min((int)q.alus.maxepadit, maksimiepadit);
    for (int k = 0; k < padit + epadit; ++k) {
      const Pati& s = k < padit ? q.pati[k] : q.epati[k - padit];
      if (s.aika <= 0) continue;
      const V rel = V{s.x, s.y} - l.P;
      if (std::fabs(rel.x) > 30 || std::fabs(rel.y) > 30) continue;
      const V relv = V{s.xv, s.yv} - l.vel;
      const float vv = piste(relv, relv);
      const float t = vv > 1e-8f ? -piste(rel, relv) / vv : 0;
      if (t < 0 || t > 45) continue;
      const V ohi = rel + relv * t;
      if (pituus(ohi) > osuma) continue;
      m.uhka = m.uhka || t < 15;
      const V sivu = pituus(ohi) > 0.2f ? ohi * -1.0f : kohtisuora(relv);
      m.vaistoVektori = m.vaistoVektori + yksikko(sivu) * m.matka;
    }
  }
}

// ---- Flying ----

void kaanny(Player& p, float haluttu) {
  const float e = kulmaEro(haluttu, p.kulma);
  const float sieto = std::max((float)p.alus.kaantonopeus * 0.6f, 0.3f);
  bool vasen = e > sieto, oikea = e < -sieto;
  if (p.limacount > 37) std::swap(vasen, oikea);  // thick slime turns the controls round
  p.pleft = vasen;
  p.pright = oikea;
}

bool taisteluun(const Lento& l) {
  return l.m.kohde >= 0 && !l.lentoEnsin && l.etaisyys < l.kantama * 1.3f + 10;
}

// Type 18 always flies forward; a press of thrust turns it about at once, which
// it uses when the way it wants lies behind it.
void lennaKaantyja(Lento& l, V halu) {
  Player& p = l.p;
  Muisti& m = l.m;
  const float haluttu = taisteluun(l) ? kulmaAsteina(l.kohdeP - l.P) : kulmaAsteina(halu);
  if (m.kaannosTauko > 0) --m.kaannosTauko;
  if (m.kaannosTauko == 0 && std::fabs(kulmaEro(haluttu, p.kulma)) > 150) {
    p.pylos = true;
    m.kaannosTauko = 60;
    return;
  }
  kaanny(p, haluttu);
}

void lennaIlmanInertiaa(Lento& l, V halu) {
  Player& p = l.p;
  if (p.alus.numero == 18) return lennaKaantyja(l, halu);
  const bool taistelu = taisteluun(l);
  const bool sateella = sadeAse(p.alus);
  float haluttu = kulmaAsteina(halu);
  if (taistelu && (!sateella || pituus(halu) < 0.3f * l.m.matka))
    haluttu = sateella ? kulmaAsteina(l.kohdeP - l.P) : l.tahtays;
  kaanny(p, haluttu);
  p.pylos = pituus(halu) > 0.3f * l.m.matka && std::fabs(kulmaEro(kulmaAsteina(halu), p.kulma)) < 40;
}

void lennaInertialla(Lento& l, V halu) {
  Player& p = l.p;
  const float matka = l.m.matka;
  const V korjaus = halu - l.vel;
  const float tarve = pituus(korjaus);
  const V eteen = suunta(p.kulma);
  if (taisteluun(l) && tarve < 0.6f * matka) {
    kaanny(p, l.tahtays);
    p.pylos = tarve > 0.1f * matka && piste(eteen, korjaus) > 0.6f * tarve;
    return;
  }
  if (tarve < 0.05f * matka) {
    kaanny(p, l.m.kohde >= 0 ? l.tahtays : kulmaAsteina(halu));
    return;
  }
  kaanny(p, kulmaAsteina(korjaus));
  p.pylos = piste(eteen, korjaus) > 0.85f * tarve;
}

// ---- Shooting ----

// A team-mate (or, without "ai vs ai", a computer pilot of another team) lies in
// the line of fire before the target.
bool ystavaTiella(const Lento& l, float kulma, float matka) {
  const V dir = suunta(kulma);
  for (int j = 0; j < pelaajia(); ++j) {
    if (j == l.i || j == l.m.kohde || !elossa(j) || kelpaaKohteeksi(l.i, j)) continue;
    const V rel = paikka(player[j]) - l.P;
    const float pitkin = piste(rel, dir);
    if (pitkin > 0 && pitkin < matka + 6 && std::fabs(risti(dir, rel)) < (float)player[j].alus.sade + 3)
      return true;
  }
  return false;
}

float tahtaysVirhe(const Lento& l) {
  float e = std::fabs(kulmaEro(l.tahtays, l.p.kulma));
  if (l.p.alus.numero == 12)  // broadside: any of its three guns will do
    e = std::min(
        {e, std::fabs(kulmaEro(l.tahtays, l.p.kulma + 90)), std::fabs(kulmaEro(l.tahtays, l.p.kulma - 90))});
  return e;
}

float osumaSieto(const Lento& l) {
  const Player& k = player[l.m.kohde];
  const float leveys = (float)k.alus.sade * kosketusKerroin + (float)l.p.alus.patisade;
  float s = std::atan2(leveys, std::max(l.etaisyys, 1.0f)) / asteenRadiaanit;
  if (l.p.alus.numero == 8) s += 8;    // scatter gun
  if (l.p.alus.numero == 21) s += 25;  // fan
  if (l.p.alus.numero == 7) s += 40;   // homing
  return std::max(s, 1.5f);
}

float polttoaineVara(const Lento& l) {
  const ErikoisKaytto k = erikoisenKaytto(l.p.alus.easelaji);
  if (!l.t.erikoinen || (k != ErikoisKaytto::Suoja && k != ErikoisKaytto::Pako)) return 0;
  return std::min((float)l.p.alus.easefuel, 0.35f * (float)l.p.alus.fuel);
}

// A type-14 ram hits with the fuel left in its tank: the gun may only spend a full tank's overflow.
bool polttoainetta(const Lento& l) {
  const Alus& a = l.p.alus;
  if (l.t.erikoinen && a.easelaji == 14 && l.etaisyys < 50) return l.p.fuel >= a.fuel - 0.01;
  return l.p.fuel >= a.patifuel + polttoaineVara(l);
}

// The zap hits the first other-team ship in reach, in slot order: it fires only
// when that one is fair game.
bool sadeOsuuKohteeseen(const Lento& l) {
  const Player& p = l.p;
  for (int j = 0; j < pelaajia(); ++j) {
    if (j == l.i || !pelissa(player[j]) || player[j].tiimi == p.tiimi) continue;
    const float raja = (float)player[j].alus.sade * kosketusKerroin + (float)p.alus.patisade;
    if (piste(paikka(player[j]) - l.P, paikka(player[j]) - l.P) < raja * raja) return kelpaaKohteeksi(l.i, j);
  }
  return false;
}

// Lasers burn along the nose: fire while the target sits on the beam and no friend does.
bool sateellaKohde(const Lento& l, float alku, float loppu) {
  const Player& k = player[l.m.kohde];
  const V dir = suunta(l.p.kulma);
  const V rel = paikka(k) - l.P;
  const float pitkin = piste(rel, dir);
  const float leveys = (float)k.alus.sade * kosketusKerroin + 0.2f;
  if (pitkin < alku - leveys || pitkin > loppu + leveys || std::fabs(risti(dir, rel)) > leveys) return false;
  return !ystavaTiella(l, l.p.kulma, loppu);
}

// Bomb: fire holds it in flight; letting go bursts it, done once it is close to
// the target or has begun to pass it.
bool pommita(Lento& l, bool tahdatty) {
  Muisti& m = l.m;
  const Pati& pommi = l.p.pati[0];
  if (pommi.aika <= 0 || !m.pommiMatkalla) {
    m.pommiMatkalla = false;
    m.pommiMatka = 1e9f;
    const bool lahtee = tahdatty && l.etaisyys < l.kantama && polttoainetta(l) && l.p.ampumisviive < 1;
    m.pommiMatkalla = lahtee;
    return lahtee;
  }
  if (m.kohde < 0) return false;
  const float d = pituus(V{pommi.x, pommi.y} - paikka(player[m.kohde]));
  const bool ohi = d > m.pommiMatka + 0.01f && m.pommiMatka < 15;
  m.pommiMatka = d;
  if (d < 5 || ohi) {
    m.pommiMatkalla = false;
    return false;
  }
  return true;
}

// Charge ball: held to grow until it is strong enough to finish the target,
// let go when aimed.
bool lataa(const Lento& l, bool tahdatty) {
  const Pati& pallo = l.p.pati[0];
  if (pallo.aika <= 0) return l.p.ampumisviive < 1;
  const float tarve =
      std::clamp((float)player[l.m.kohde].energia / (float)l.p.alus.damage * 2000 * 1.1f, 300.0f, 2000.0f);
  const bool valmis = pallo.energia >= tarve || pallo.energia >= 2000;
  return !(valmis && tahdatty && l.etaisyys < l.kantama);
}

// Mines go down when an enemy closes in or sits behind.
bool miinoita(const Lento& l) {
  if (l.etaisyys > 35 || !polttoainetta(l)) return false;
  const V rel = l.kohdeP - l.P;
  const float lahestyy = -piste(yksikko(rel), l.kohdeV - l.vel);
  const bool takana = std::fabs(kulmaEro(kulmaAsteina(rel), l.p.kulma)) > 110;
  return lahestyy > 0.05f || takana;
}

bool lahinVierasKelpaa(const Lento& l) {
  int lahin = -1;
  float paras = 640;
  for (int j = 0; j < pelaajia(); ++j) {
    if (j == l.i || !elossa(j) || player[j].tiimi == l.p.tiimi) continue;
    const float d = pituus(paikka(player[j]) - l.P);
    if (d < paras) {
      paras = d;
      lahin = j;
    }
  }
  return lahin >= 0 && kelpaaKohteeksi(l.i, lahin);
}

bool laukaise(Lento& l) {
  const Player& p = l.p;
  const int n = p.alus.numero;
  if (sadeAse(p.alus)) return p.fuel >= p.alus.patifuel && sadeOsuuKohteeseen(l);
  if (l.m.kohde < 0) {
    if (n == 4) l.m.pommiMatkalla = false;
    return false;
  }
  const bool tahdatty = tahtaysVirhe(l) < osumaSieto(l) && !ystavaTiella(l, l.tahtays, l.etaisyys);
  switch (n) {
    case 4: return pommita(l, tahdatty);
    case 13: return lataa(l, tahdatty);
    case 15: return miinoita(l);
    case 9:
      return p.fuel >= p.alus.patifuel && sateellaKohde(l, 1.6f * (float)p.alus.sade, (float)p.alus.patisade);
    case 11:
      if (p.suojapaalla) return p.fuel >= p.alus.patifuel && sateellaKohde(l, (float)p.alus.sade, l.kantama);
      break;
    case 19:
      if (p.ampumisjuttu > 60) return false;  // a hot gun scatters: let it cool
      break;
    case 7:  // the shot homes on the nearest ship not of this team, whoever it is
      if (!lahinVierasKelpaa(l)) return false;
      break;
    case 1:  // the recoil must not throw it into the planet
      if (janaOsuuPlaneettaan(l.P, l.P - suunta(p.kulma) * 100, (float)p.alus.sade + 16)) return false;
      break;
    default: break;
  }
  return tahdatty && l.etaisyys < l.kantama && polttoainetta(l);
}

// ---- Special weapon ----

bool erikoinen(const Lento& l) {
  const Player& p = l.p;
  const float kantama = (float)erikoisenKantama(p.alus.easelaji);
  const bool kohde = l.m.kohde >= 0;
  if (p.alus.easelaji == 15)  // the boost goes on and off a press at a time
    return l.t.erikoinen &&
           p.suojapaalla != (kohde && l.etaisyys < kantama && p.fuel > 0.2f * (float)p.alus.fuel);
  if (!l.t.erikoinen || !erikoinenValmis(p)) return false;
  const float terveys = p.energia / (float)p.alus.energia;
  switch (erikoisenKaytto(p.alus.easelaji)) {
    case ErikoisKaytto::Suoja: return l.m.uhka;
    case ErikoisKaytto::Lahella:
      if (p.alus.easelaji == 14)
        return kohde && l.etaisyys < kantama && std::fabs(kulmaEro(l.syoksyKulma, p.kulma)) < 12;
      return kohde && l.etaisyys < kantama;
    case ErikoisKaytto::Kaukaa: return kohde && l.etaisyys < kantama && tahtaysVirhe(l) < 15;
    case ErikoisKaytto::Pako: return terveys < 0.35f && (l.m.uhka || (kohde && l.etaisyys < 30));
    case ErikoisKaytto::Takaa:
      return kohde && l.etaisyys < std::max(kantama, 40.0f) &&
             std::fabs(kulmaEro(kulmaAsteina(l.kohdeP - l.P), p.kulma)) > 110;
    case ErikoisKaytto::Ei: break;
  }
  return false;
}

}  // namespace

void aiAlusta() {
  for (Muisti& m : muisti) m = Muisti{};
}

int aiKohde(int pelaaja) { return pelaaja >= 0 && pelaaja < maxPlayers ? muisti[pelaaja].kohde : -1; }

void Player::ailiiku() {
  pylos = palas = pleft = pright = pfire = pease = false;
  const int i = omaPaikka(this);
  if (i < 0) return;
  Muisti& m = muisti[i];
  if (kuolema >= 1) {
    m = Muisti{};
    return;
  }
  if (m.alus != alus.numero) aloita(m, alus);
  const Taso& t = taso();
  katso(i, m, t);
  Lento l{*this, i, m, t, paikka(*this), vauhti(*this)};
  arvioiKohde(l);
  katsoLaukaukset(l);
  bool tehtavalla = false;
  const V halu = haluttuVauhti(l, tehtavalla);
  const V vaisto = planeetanVaisto(l) + seinienVaisto(l) + asteroidienVaisto(l);
  l.lentoEnsin = pituus(vaisto) > 0.25f * m.matka || (tehtavalla && l.etaisyys > l.kantama * 0.7f);
  const V kokonaan = halu + vaisto + m.vaistoVektori;
  if (ilmanInertiaa(alus))
    lennaIlmanInertiaa(l, kokonaan);
  else
    lennaInertialla(l, kokonaan);
  pfire = laukaise(l);
  pease = erikoinen(l);
}
