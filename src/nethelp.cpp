// Wire records: fixed layouts, little-endian, with the fixed-point conversions
// the messages use. Writers and readers never look past their record's size;
// the cursors below are what keeps a peer's bytes within bounds.
#include "nethelp.h"

#include <cmath>
#include <cstring>

#include "Player.h"
#include "ctf.h"
#include "scene.h"
#include "sieni.h"

int coordkoko = 13;
int netpatikoko = 15;
int asteroidikoko = 10;
int pikkumieskoko = 16;
int spistekoko = 4;
int cpistekoko = 6;
int limakoko = 12;
int kuolevapatikoko = 2;
int asteroidipoxkoko = 8;
int patikoko = 48;

namespace {

void kirjotaU16(unsigned char* b, uint16_t v) {
  b[0] = (unsigned char)(v & 0xff);
  b[1] = (unsigned char)(v >> 8);
}
uint16_t lueU16(const unsigned char* b) { return (uint16_t)(b[0] | (b[1] << 8)); }
int16_t lueI16(const unsigned char* b) { return (int16_t)lueU16(b); }

void kirjotaU32(unsigned char* b, uint32_t v) {
  for (int i = 0; i < 4; ++i) b[i] = (unsigned char)(v >> (8 * i));
}
uint32_t lueU32(const unsigned char* b) {
  return (uint32_t)b[0] | ((uint32_t)b[1] << 8) | ((uint32_t)b[2] << 16) | ((uint32_t)b[3] << 24);
}

// Floats travel as their IEEE-754 bits.
void kirjotaF32(unsigned char* b, float v) {
  uint32_t u;
  std::memcpy(&u, &v, 4);
  kirjotaU32(b, u);
}
float lueF32(const unsigned char* b) {
  const uint32_t u = lueU32(b);
  float v;
  std::memcpy(&v, &u, 4);
  return v;
}

void kirjotaQ16(unsigned char* b, float v, float k, bool rajattu) {
  kirjotaU16(b, (uint16_t)q16(v, k, rajattu));
}
float lueQ16(const unsigned char* b, float k) { return (float)lueI16(b) / k; }

// A share of a ship maximum as a byte: 200 is full, 250 the cap above 125 %.
unsigned char osuusTavuna(float arvo, double maksimi) {
  const float m = (float)maksimi;
  if (!(arvo >= 0) || !(m > 0)) return 0;  // a NaN counts as nothing left
  if (arvo > m * 1.25f) return 250;
  return (unsigned char)(arvo / m * 200.0f);
}

// A colour channel 0..1 as a byte, held within 0..255.
unsigned char varitavu(float c) {
  if (!(c >= 0)) return 0;
  const float v = c * 255.0f;
  return v > 255.0f ? 255 : (unsigned char)v;
}

// A float truncated toward zero to 16 bits, wrapping like the 32-bit store it was;
// a value no 32-bit integer holds (NaN, infinities) stores the x86 "indefinite"
// integer, whose low 16 bits are 0.
int16_t lyhyeksi(float v) {
  if (!(std::fabs(v) < 2147483648.0f)) return 0;
  return (int16_t)(uint16_t)(int32_t)v;
}

enum Napit : unsigned char { nTuli = 1, nErikois = 2, nKaasu = 4, nVasen = 8, nOikea = 16, nSuoja = 32 };

}  // namespace

int16_t q16(float v, float k, bool rajattu) {
  const float t = v * k;
  if (rajattu) {
    if (t > 32760.0f) return 32760;
    if (t < -32760.0f) return -32760;
  }
  return lyhyeksi(t);
}

int kirjotaCoords(unsigned char* buf, const Player* p) {
  kirjotaQ16(buf + 0, p->x, 150, true);
  kirjotaQ16(buf + 2, p->y, 150, true);
  kirjotaQ16(buf + 4, p->kulma, 150, false);
  buf[6] = p->kuolema > 0 ? 0 : osuusTavuna(p->energia, p->alus.energia);
  buf[7] = osuusTavuna(p->fuel, p->alus.fuel);
  kirjotaU16(buf + 8, (uint16_t)p->kuolema);
  kirjotaU16(buf + 10, (uint16_t)lyhyeksi(p->pisteet));
  buf[12] =
      (unsigned char)((p->pfire ? nTuli : 0) | (p->pease ? nErikois : 0) | (p->pylos ? nKaasu : 0) |
                      (p->pleft ? nVasen : 0) | (p->pright ? nOikea : 0) | (p->suojapaalla ? nSuoja : 0));
  return coordkoko;
}

int lueCoords(Player* p, const unsigned char* buf) {
  const float x = lueQ16(buf + 0, 150), y = lueQ16(buf + 2, 150);
  // The velocity is the step since the last update, so the receiver can extrapolate.
  p->xvauhti = x - p->x;
  p->yvauhti = y - p->y;
  p->x = x;
  p->y = y;
  p->kulma = lueQ16(buf + 4, 150);
  p->energia = (float)buf[6] / 200.0f * (float)p->alus.energia;
  p->fuel = (float)buf[7] / 200.0f * (float)p->alus.fuel;
  if (p->kuolema != 1) p->kuolema = lueI16(buf + 8);  // a revival due here is not undone
  p->pisteet = lueI16(buf + 10);
  const unsigned char n = buf[12];
  p->joinase = n & nTuli;
  p->joinease = n & nErikois;
  p->kaasu = n & nKaasu;
  p->joinleft = n & nVasen;
  p->joinright = n & nOikea;
  p->suojapaalla = n & nSuoja;
  return coordkoko;
}

int kirjotaNetpati(unsigned char* buf, const netPati* p) {
  kirjotaQ16(buf + 0, p->x, 150, true);
  kirjotaQ16(buf + 2, p->y, 150, true);
  kirjotaQ16(buf + 4, p->xv, 2000, true);
  kirjotaQ16(buf + 6, p->yv, 2000, true);
  kirjotaQ16(buf + 8, p->kulma, 50, false);
  buf[10] = varitavu(p->r);
  buf[11] = varitavu(p->g);
  buf[12] = varitavu(p->b);
  buf[13] = (unsigned char)(p->pati & 0xff);  // only the low byte travels
  buf[14] = (unsigned char)p->pelaaja;
  return netpatikoko;
}

int lueNetpati(netPati* p, const unsigned char* buf) {
  p->x = lueQ16(buf + 0, 150);
  p->y = lueQ16(buf + 2, 150);
  p->xv = lueQ16(buf + 4, 2000);
  p->yv = lueQ16(buf + 6, 2000);
  p->kulma = lueQ16(buf + 8, 50);
  p->r = buf[10] / 255.0f;
  p->g = buf[11] / 255.0f;
  p->b = buf[12] / 255.0f;
  p->pati = buf[13];
  p->pelaaja = (char)buf[14];
  return netpatikoko;
}

int kirjotaAsteroidi(unsigned char* buf, const Pati* a) {
  kirjotaQ16(buf + 0, a->x, 100, true);
  kirjotaQ16(buf + 2, a->y, 100, true);
  kirjotaQ16(buf + 4, a->xv, 1000, false);
  kirjotaQ16(buf + 6, a->yv, 1000, false);
  kirjotaQ16(buf + 8, a->koko, 10000, false);
  return asteroidikoko;
}

int lueAsteroidi(Pati* a, const unsigned char* buf) {
  a->x = lueQ16(buf + 0, 100);
  a->y = lueQ16(buf + 2, 100);
  a->xv = lueQ16(buf + 4, 1000);
  a->yv = lueQ16(buf + 6, 1000);
  a->koko = lueQ16(buf + 8, 10000);
  a->energia = 10;
  return asteroidikoko;
}

int kirjotaSPiste(unsigned char* buf, const SPiste* s) {
  kirjotaQ16(buf + 0, (float)s->x, 150, true);
  kirjotaQ16(buf + 2, (float)s->y, 150, true);
  return spistekoko;
}

int lueSPiste(SPiste* s, const unsigned char* buf) {
  s->x = (int)lueQ16(buf + 0, 150);
  s->y = (int)lueQ16(buf + 2, 150);
  return spistekoko;
}

int kirjotaCPiste(unsigned char* buf, const CPiste* c) {
  kirjotaQ16(buf + 0, c->x, 150, true);
  kirjotaQ16(buf + 2, c->y, 150, true);
  buf[4] = (unsigned char)(c->numero + (c->enabled ? 32 : 0));
  buf[5] = (unsigned char)c->player;
  return cpistekoko;
}

int lueCPiste(CPiste* c, const unsigned char* buf) {
  c->x = lueQ16(buf + 0, 150);
  c->y = lueQ16(buf + 2, 150);
  c->enabled = buf[4] & 32;
  c->numero = (signed char)(c->enabled ? buf[4] - 32 : buf[4]);
  c->player = (signed char)buf[5];
  return cpistekoko;
}

int kirjotaPikkumiessiirto(unsigned char* buf, const pikkumiessiirto* m) {
  kirjotaF32(buf + 0, m->x);
  kirjotaF32(buf + 4, m->y);
  kirjotaF32(buf + 8, m->energia);
  kirjotaU16(buf + 12, (uint16_t)m->aika);
  kirjotaU16(buf + 14, (uint16_t)m->numero);
  return pikkumieskoko;
}

int luePikkumiessiirto(pikkumiessiirto* m, const unsigned char* buf) {
  m->x = lueF32(buf + 0);
  m->y = lueF32(buf + 4);
  m->energia = lueF32(buf + 8);
  m->aika = lueI16(buf + 12);
  m->numero = lueI16(buf + 14);
  return pikkumieskoko;
}

int kirjotaLimajuttu(unsigned char* buf, const limajuttu* l) {
  kirjotaF32(buf + 0, l->x);
  kirjotaF32(buf + 4, l->y);
  kirjotaU16(buf + 8, (uint16_t)l->player);
  kirjotaU16(buf + 10, (uint16_t)l->kohta);
  return limakoko;
}

int lueLimajuttu(limajuttu* l, const unsigned char* buf) {
  l->x = lueF32(buf + 0);
  l->y = lueF32(buf + 4);
  l->player = lueI16(buf + 8);
  l->kohta = lueI16(buf + 10);
  return limakoko;
}

int kirjotaKuolevapati(unsigned char* buf, const kuolevaPati* k) {
  buf[0] = (unsigned char)(k->pati & 0xff);
  buf[1] = (unsigned char)k->pelaaja;
  return kuolevapatikoko;
}

int lueKuolevapati(kuolevaPati* k, const unsigned char* buf) {
  k->pati = buf[0];
  k->pelaaja = (char)buf[1];
  return kuolevapatikoko;
}

int kirjotaAsteroidipox(unsigned char* buf, const asteroidipox* a) {
  kirjotaF32(buf + 0, a->x);
  kirjotaF32(buf + 4, a->y);
  return asteroidipoxkoko;
}

int lueAsteroidipox(asteroidipox* a, const unsigned char* buf) {
  a->x = lueF32(buf + 0);
  a->y = lueF32(buf + 4);
  return asteroidipoxkoko;
}

int kirjotaPati(unsigned char* buf, const Pati* p) {
  const float kentat[11] = {p->x, p->y, p->xv, p->yv,   p->kulma, p->energia,
                            p->r, p->g, p->b,  p->alku, p->koko};
  for (int i = 0; i < 11; ++i) kirjotaF32(buf + 4 * i, kentat[i]);
  kirjotaU16(buf + 44, (uint16_t)p->aika);
  kirjotaU16(buf + 46, (uint16_t)p->ampumisviive);
  return patikoko;
}

int luePati(Pati* p, const unsigned char* buf) {
  float* kentat[11] = {&p->x, &p->y, &p->xv, &p->yv,   &p->kulma, &p->energia,
                       &p->r, &p->g, &p->b,  &p->alku, &p->koko};
  for (int i = 0; i < 11; ++i) *kentat[i] = lueF32(buf + 4 * i);
  p->aika = lueI16(buf + 44);
  p->ampumisviive = lueI16(buf + 46);
  return patikoko;
}

int kirjotaAlkuTiedot(unsigned char* buf, const AlkuTiedot* a) {
  buf[0] = (unsigned char)a->gamemode;
  kirjotaU16(buf + 1, (uint16_t)a->mpcredits);
  kirjotaF32(buf + 3, a->fps);
  return alkutiedotkoko;
}

int lueAlkuTiedot(AlkuTiedot* a, const unsigned char* buf) {
  a->gamemode = (char)buf[0];
  a->mpcredits = lueI16(buf + 1);
  a->fps = lueF32(buf + 3);
  return alkutiedotkoko;
}

// ---- Cursors -------------------------------------------------------------------

Lukija::Lukija(const void* data, int pituus)
    : p_(static_cast<const unsigned char*>(data)), jaljella_(pituus > 0 && data ? pituus : 0), ok_(true) {}

bool Lukija::varaa(int n) {
  if (!ok_ || n < 0 || n > jaljella_) ok_ = false;
  return ok_;
}

void Lukija::siirry(int n) {
  p_ += n;
  jaljella_ -= n;
}

bool Lukija::tavu(uint8_t& v) {
  if (!varaa(1)) return false;
  v = p_[0];
  siirry(1);
  return true;
}

bool Lukija::u16(uint16_t& v) {
  if (!varaa(2)) return false;
  v = lueU16(p_);
  siirry(2);
  return true;
}

bool Lukija::i16(int16_t& v) {
  uint16_t u;
  if (!u16(u)) return false;
  v = (int16_t)u;
  return true;
}

bool Lukija::u32(uint32_t& v) {
  if (!varaa(4)) return false;
  v = lueU32(p_);
  siirry(4);
  return true;
}

bool Lukija::f32(float& v) {
  if (!varaa(4)) return false;
  v = lueF32(p_);
  siirry(4);
  return true;
}

bool Lukija::ohita(int n) {
  if (!varaa(n)) return false;
  siirry(n);
  return true;
}

Kirjoittaja::Kirjoittaja(void* data, int tila)
    : alku_(static_cast<unsigned char*>(data)), tila_(tila > 0 && data ? tila : 0), pituus_(0), ok_(true) {}

bool Kirjoittaja::varaa(int n) {
  if (!ok_ || n < 0 || n > tila_ - pituus_) ok_ = false;
  return ok_;
}

bool Kirjoittaja::tavu(uint8_t v) {
  if (!varaa(1)) return false;
  alku_[pituus_++] = v;
  return true;
}

bool Kirjoittaja::u16(uint16_t v) {
  if (!varaa(2)) return false;
  kirjotaU16(alku_ + pituus_, v);
  pituus_ += 2;
  return true;
}

bool Kirjoittaja::u32(uint32_t v) {
  if (!varaa(4)) return false;
  kirjotaU32(alku_ + pituus_, v);
  pituus_ += 4;
  return true;
}

bool Kirjoittaja::f32(float v) {
  if (!varaa(4)) return false;
  kirjotaF32(alku_ + pituus_, v);
  pituus_ += 4;
  return true;
}

bool Kirjoittaja::tavut(const void* data, int n) {
  if (!varaa(n)) return false;
  if (n > 0) std::memcpy(alku_ + pituus_, data, (size_t)n);
  pituus_ += n;
  return true;
}

bool Kirjoittaja::u16Kohtaan(int kohta, uint16_t v) {
  if (!ok_ || kohta < 0 || kohta > pituus_ - 2) return ok_ = false;
  kirjotaU16(alku_ + kohta, v);
  return true;
}
