// Wire records of the network messages: fixed-size little-endian records, each
// with a writer (kirjota...) and a reader (lue...) that return the record size,
// and the cursors the message code steps through a buffer with.
#pragma once

#include <cstdint>

class Player;
struct Pati;
struct CPiste;
struct SPiste;
struct pikkumiessiirto;

// A slime blob stuck on a ship, as sent to clients.
struct limajuttu {
  float x, y;
  short player;
  short kohta;
};

// A projectile born on the host.
struct netPati {
  float x, y, xv, yv, kulma;
  float r, g, b;
  char pelaaja;         // owner slot
  unsigned short pati;  // index into the owner's projectile array
};

// A projectile that died on the host.
struct kuolevaPati {
  unsigned short pati;
  char pelaaja;
};

// Where an asteroid blew up.
struct asteroidipox {
  float x, y;
};

// One score row of the death-match victory message.
struct VictoryPlayer {
  short pisteet;
  short numero;
};

// The game-start record at the end of the team table.
struct AlkuTiedot {
  char gamemode;
  short mpcredits;
  float fps;
};

// Record sizes on the wire.
extern int coordkoko, netpatikoko, asteroidikoko, pikkumieskoko, spistekoko, cpistekoko, limakoko,
    kuolevapatikoko, asteroidipoxkoko, patikoko;
const int alkutiedotkoko = 7;

// The 16-bit fixed-point form of v times k: truncated toward zero, wrapping
// when it does not fit, or held within +-32760 when `rajattu`.
int16_t q16(float v, float k, bool rajattu);

int kirjotaCoords(unsigned char* buf, const Player* p);
int lueCoords(Player* p, const unsigned char* buf);
int kirjotaNetpati(unsigned char* buf, const netPati* p);
int lueNetpati(netPati* p, const unsigned char* buf);
int kirjotaAsteroidi(unsigned char* buf, const Pati* a);
int lueAsteroidi(Pati* a, const unsigned char* buf);
int kirjotaSPiste(unsigned char* buf, const SPiste* s);
int lueSPiste(SPiste* s, const unsigned char* buf);
int kirjotaCPiste(unsigned char* buf, const CPiste* c);
int lueCPiste(CPiste* c, const unsigned char* buf);
int kirjotaPikkumiessiirto(unsigned char* buf, const pikkumiessiirto* m);
int luePikkumiessiirto(pikkumiessiirto* m, const unsigned char* buf);
int kirjotaLimajuttu(unsigned char* buf, const limajuttu* l);
int lueLimajuttu(limajuttu* l, const unsigned char* buf);
int kirjotaKuolevapati(unsigned char* buf, const kuolevaPati* k);
int lueKuolevapati(kuolevaPati* k, const unsigned char* buf);
int kirjotaAsteroidipox(unsigned char* buf, const asteroidipox* a);
int lueAsteroidipox(asteroidipox* a, const unsigned char* buf);
int kirjotaPati(unsigned char* buf, const Pati* p);
int luePati(Pati* p, const unsigned char* buf);
int kirjotaAlkuTiedot(unsigned char* buf, const AlkuTiedot* a);
int lueAlkuTiedot(AlkuTiedot* a, const unsigned char* buf);

// Reads a peer's bytes front to back. Every read needs its whole size to remain;
// a read that does not fit fails, leaves its output untouched and makes every
// later read fail too, so a handler checks `ok` once after a run of reads.
class Lukija {
 public:
  Lukija(const void* data, int pituus);
  bool ok() const { return ok_; }
  int jaljella() const { return jaljella_; }
  const unsigned char* kohta() const { return p_; }

  bool tavu(uint8_t& v);
  bool u16(uint16_t& v);
  bool i16(int16_t& v);
  bool u32(uint32_t& v);
  bool f32(float& v);
  bool ohita(int n);
  // A fixed-size record: the reader runs only when `koko` bytes remain.
  template <class T>
  bool tietue(T* kohde, int koko, int (*lue)(T*, const unsigned char*)) {
    if (!varaa(koko)) return false;
    lue(kohde, p_);
    siirry(koko);
    return true;
  }

 private:
  bool varaa(int n);
  void siirry(int n);
  const unsigned char* p_;
  int jaljella_;
  bool ok_;
};

// Fills a buffer of known capacity; a write that does not fit fails, writes
// nothing and makes every later write fail.
class Kirjoittaja {
 public:
  Kirjoittaja(void* data, int tila);
  bool ok() const { return ok_; }
  int pituus() const { return pituus_; }
  unsigned char* alku() const { return alku_; }

  bool tavu(uint8_t v);
  bool u16(uint16_t v);
  bool u32(uint32_t v);
  bool f32(float v);
  bool tavut(const void* data, int n);
  template <class T>
  bool tietue(const T* lahde, int koko, int (*kirjota)(unsigned char*, const T*)) {
    if (!varaa(koko)) return false;
    kirjota(alku_ + pituus_, lahde);
    pituus_ += koko;
    return true;
  }
  // Writes a 16-bit value at an earlier offset (a length or count filled in later).
  bool u16Kohtaan(int kohta, uint16_t v);

 private:
  bool varaa(int n);
  unsigned char* alku_;
  int tila_;
  int pituus_;
  bool ok_;
};
