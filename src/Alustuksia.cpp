// Start-up data: the ship catalogue with its sounds, and the world's initial placements.
#include "Alustuksia.h"

#include <cstdio>
#include <iterator>

#include "Alus.h"
#include "Main.h"
#include "Sets.h"
#include "audio.h"
#include "ctf.h"
#include "domination.h"
#include "scene.h"
#include "sieni.h"

namespace {

// Values written as (double)x.xf are single-precision constants widened to double:
// the balance was tuned with them, so they are kept bit for bit.

// Each table is one row per ship, laid out in columns by hand; the column lists below name the field of each
// column (flags, written 1/0, come last).
// clang-format off
double Alus::*const runkoSarakkeet[] = {&Alus::nopeus,   &Alus::paino,    &Alus::kaantonopeus,
                                        &Alus::energia,  &Alus::damage,   &Alus::sade,
                                        &Alus::fuel,     &Alus::tankkaus, &Alus::jalkikoko,
                                        &Alus::pistemaara};
const double rungot[alustyyppeja][std::size(runkoSarakkeet)] = {
    // nopeus   paino  kaantonopeus   energia damage       sade          fuel  tankkaus jalkikoko pistemaara
    {0.0015,    200, 1,              50, 1,            (double)2.6f, 100, 0.17,  0.13, 19},  // 0
    {0.003,     100, 2,              15, 20,           (double)2.4f, 60,  0.04,  0.12, 16},  // 1
    {0.0048,    100, 3,              13, 0.7,          (double)1.2f, 30,  0.2,   0.05, 9},   // 2
    {0.003,     150, 2.3,            40, 3,            (double)2.8f, 40,  0.1,   0.15, 18},  // 3
    {0.0015,    500, 0.8,            50, 17,           (double)4.4f, 70,  0.13,  0.22, 30},  // 4
    {0.0017,    500, 0.7,            60, 19,           (double)4.4f, 70,  0.08,  0.22, 33},  // 5
    {0.31,      100, 3.5,            21, 2,            2,            30,  0.08,  0.12, 18},  // 6
    {0.0015,    180, 1.5,            35, 5,            (double)2.8f, 30,  0.08,  0.17, 21},  // 7
    {0.003,     150, (double)2.4f,   30, (double)0.3f, (double)2.4f, 40,  0.08,  0.13, 16},  // 8
    {0.0022,    200, (double)1.1f,   35, 0.25,         (double)2.8f, 40,  0.03,  0.14, 17},  // 9
    {0.002,     180, 2.5,            25, 1.5,          (double)2.4f, 40,  0.1,   0.12, 15},  // 10
    {0.0012,    200, 2.5,            30, 3.2,          3,            40,  0.15,  0.13, 20},  // 11
    {0.0033,    150, (double)3.2f,   20, 0.7,          (double)2.4f, 30,  0,     0.1,  16},  // 12
    {0.0018,    250, (double)1.2f,   30, 40,           (double)3.6f, 30,  0.11,  0.18, 26},  // 13
    {0.0018,    250, (double)1.2f,   33, 5,            3,            25,  0.05,  0.16, 19},  // 14
    {0.002,     150, (double)1.8f,   28, 1,            (double)2.4f, 25,  0.05,  0.13, 17},  // 15
    {0.0018,    550, 1,              65, 3.5,          5,            50,  0.1,   0.24, 47},  // 16
    {0.0019,    75,  (double)1.6f,   15, 2,            2,            30,  0.04,  0.12, 14},  // 17
    {0.36,      225, (double)1.4f,   24, 5,            2,            35,  0,     0.15, 18},  // 18
    {0.0022,    275, 1.5,            28, 1,            (double)2.6f, 30,  0.04,  0.16, 17},  // 19
    {0.0018,    390, 1.5,            54, 5,            (double)4.4f, 40,  0.07,  0.17, 31},  // 20
    {0.0022,    175, (double)1.8f,   28, 1.5,          (double)3.4f, 40,  0.02,  0.14, 18},  // 21
    {0.17,      210, 4.5,            28, 4.5,          4,            60,  0.05,  0.14, 22},  // 22
    {0.0025,    240, 1.7,            24, 1.5,          (double)3.9f, 40,  0.035, 0.16, 24},  // 23
};

double Alus::*const paaaseSarakkeet[] = {&Alus::patienergia, &Alus::ampumisnopeus,
                                         &Alus::patiaika,    &Alus::maxpadit,
                                         &Alus::patinopeus,  &Alus::patisade,
                                         &Alus::patipotkasu, &Alus::patifuel};
bool Alus::*const paaaseLiput[] = {&Alus::patihajottaa, &Alus::patiVoiHajota};
const double paaaseet[alustyyppeja][std::size(paaaseSarakkeet) + std::size(paaaseLiput)] = {
    // energia nopeus aika  padit patinopeus      patisade      potkasu fuel  hajottaa voiHajota
    {3,   8,   80,   40,  (double)0.3f,   0.4,          0.01,  5,   1, 1},  // 0
    {100, 70,  70,   5,   0.4,            1.8,          1,     30,  1, 1},  // 1
    {1,   3,   30,   40,  1,              0.2,          0.005, 2,   1, 1},  // 2
    {3,   16,  40,   40,  0.8,            0.7,          0.1,   8,   1, 1},  // 3
    {15,  26,  1000, 80,  0.8,            0.15,         0.2,   30,  1, 1},  // 4
    {50,  60,  70,   2,   0.6,            4,            0.4,   25,  1, 1},  // 5
    {0,   10,  2,    1,   0,              14,           0,     6,   0, 0},  // 6
    {4,   50,  500,  5,   0.008,          1,            0.7,   20,  1, 1},  // 7
    {0.4, 2,   45,   200, 0.5,            (double)0.2f, 0.002, 0.6, 1, 1},  // 8
    {0,   1,   2,    0,   0,              17,           0,     0.3, 0, 0},  // 9
    {7,   40,  100,  10,  (double)0.45f,  0.4,          0.02,  6,   1, 1},  // 10
    {6,   50,  110,  20,  (double)0.65f,  0.7,          0.01,  10,  1, 1},  // 11
    {2,   3,   45,   100, (double)0.3f,   0.4,          0,     0.7, 1, 1},  // 12
    {100, 100, 100,  10,  0.5,            3,            0,     0,   1, 0},  // 13
    {10,  150, 400,  10,  (double)0.007f, 2,            0.2,   10,  1, 1},  // 14
    {10,  4,   4000, 200, (double)0.05f,  1,            0,     2.5, 0, 0},  // 15
    {6,   10,  120,  50,  0.5,            2.4,          0.1,   4.5, 1, 1},  // 16
    {6,   40,  100,  10,  0.5,            0.6,          0.01,  2.9, 1, 1},  // 17
    {0,   20,  2,    0,   0,              16,           0,     10,  0, 0},  // 18
    {5,   15,  100,  50,  0.6,            0.5,          0,     1,   1, 1},  // 19
    {10,  30,  120,  20,  0.6,            1,            0,     4,   1, 1},  // 20
    {4,   40,  80,   200, 0.6,            0.44,         0,     6,   1, 1},  // 21
    {20,  30,  400,  200, 0.7,            1,            0,     6,   1, 1},  // 22
    {16,  3,   800,  100, 0.65,           0.5,          0.2,   3,   1, 1},  // 23
};

double Alus::*const erikoisSarakkeet[] = {&Alus::epatienergia, &Alus::edamage,
                                          &Alus::epatisade,    &Alus::maxepadit,
                                          &Alus::epatipotkasu, &Alus::easefuel,
                                          &Alus::easekesto,    &Alus::easenopeus,
                                          &Alus::easevauhti};
bool Alus::*const erikoisLiput[] = {&Alus::epatihajottaa, &Alus::epatiVoiHajota};

// easevauhti 0 on ships 0, 2, 10, 11 and 12: their specials launch nothing that moves.
const double erikoisaseet[alustyyppeja][std::size(erikoisSarakkeet) + std::size(erikoisLiput)] = {
    // energia edamage      epatisade      padit potkasu fuel  kesto  nopeus vauhti hajottaa voiHajota
    {0,   0,            0,             0,    0,    27,   125,   50,  0,      0, 0},  // 0
    {1,   1,            (double)0.3f,  100,  0.05, 43,   50,    100, 0.5,    1, 1},  // 1
    {0,   100,          0,             0,    0,    1,    0,     0,   0,      0, 0},  // 2
    {3,   5,            (double)0.6f,  40,   0.05, 15,   150,   50,  0.25,   1, 1},  // 3
    {25,  2.5,          (double)1.4f,  5,    0.1,  60,   20000, 30,  0.0055, 0, 1},  // 4
    {2.5, 0.12,         (double)0.45f, 60,   0,    6,    5000,  30,  0.24,   0, 1},  // 5
    {0,   0,            0,             0,    0,    6,    0,     100, 0,      0, 0},  // 6
    {0,   (double)2.1f, 4.5,           0,    0,    5,    2,     35,  0,      0, 0},  // 7
    {300, 4,            1,             50,   0.5,  15,   1000,  35,  0.4,    1, 0},  // 8
    {300, 1.5,          1,             20,   0,    30,   3000,  35,  0.3,    0, 0},  // 9
    {5,   5,            14,            0,    0,    12,   3000,  350, 0,      0, 0},  // 10
    {0,   12,           11,            0,    0,    8,    2,     200, 0,      0, 0},  // 11
    {0,   0,            0,             0,    0,    0,    0,     200, 0,      0, 0},  // 12
    {2,   2,            1,             100,  0,    3,    325,   20,  0.21,   1, 1},  // 13
    {0,   10,           0,             0,    0,    5,    0,     50,  0.5,    0, 0},  // 14
    {0,   4,            0,             0,    0,    0.07, 0,     50,  0.5,    0, 0},  // 15
    {12,  1.5,          0.7,           1000, 0.1,  20,   70,    50,  0.5,    1, 1},  // 16
    {7,   3,            2,             100,  0,    3,    300,   10,  1.2,    1, 1},  // 17
    {0,   0,            8,             100,  0,    0,    300,   10,  0,      0, 0},  // 18
    {0,   20,           4,             100,  0,    13,   100,   110, 0,      0, 0},  // 19
    {3,   2,            0.6,           50,   0,    13,   100,   50,  0.7,    1, 1},  // 20
    {6,   2.5,          0.5,           200,  0,    5,    100,   50,  0.7,    1, 1},  // 21
    {3,   1.5,          0.4,           200,  0,    9,    80,    25,  0.6,    1, 1},  // 22
    {3,   85,           1,             2,    0,    38,   200,   100, 0,      0, 0},  // 23
};

// ---- Sounds ------------------------------------------------------------------

enum Paikka { AMP, OSU, EAMP, EOSU, paikkoja };
Sound* Alus::*const aaniPaikka[paikkoja] = {&Alus::ampumisaani, &Alus::osumisaani,
                                            &Alus::eampumisaani, &Alus::eosumisaani};
const char* const paikanNimi[paikkoja] = {"ampumis", "osumis", "eampumis", "eosumis"};

// Where a slot's sound comes from: the ship's own sample file, another slot's sample
// (shared, never loaded twice), or nothing.
struct Lahde {
  int alus;  // OMA: the ship's own file; EI: no sound; else the ship whose sample is shared
  Paikka paikka;
};
const int OMA = -1, EI = -2;
const Lahde oma = {OMA, AMP}, ei = {EI, AMP};

// Slot order: ampumisaani, osumisaani, eampumisaani, eosumisaani.
// Slots with no file of their own borrow the nearest-sounding sample: ship 4 hits with
// its own special blast, ships 5 and 1 reuse their shot and hit for the special, the
// remaining light hits take ship 1's or ship 5's impact, the blasts ship 3's or 4's.
// Ships 12 and 19-23 are built from ship 17's full set, with ship 0's shot and special
// where 17's would double a sample the ship already plays.
const Lahde aanet[alustyyppeja][paikkoja] = {
    {oma, {0, AMP}, oma, ei},                      // 0
    {oma, oma, {1, AMP}, {1, OSU}},                // 1
    {{0, AMP}, {0, AMP}, oma, ei},                 // 2
    {oma, {1, OSU}, {1, AMP}, oma},                // 3
    {oma, {4, EOSU}, oma, oma},                    // 4
    {oma, oma, {5, AMP}, {5, OSU}},                // 5
    {{0, AMP}, ei, oma, ei},                       // 6
    {oma, {1, OSU}, {4, EAMP}, ei},                // 7
    {{0, AMP}, {1, OSU}, {10, EAMP}, {3, EOSU}},   // 8
    {oma, {5, OSU}, {2, EAMP}, {11, EOSU}},        // 9 (its own shot loops: a beam)
    {oma, {1, OSU}, oma, {3, EOSU}},               // 10
    {oma, {5, OSU}, {6, EAMP}, oma},               // 11
    {{17, AMP}, {17, OSU}, {0, EAMP}, {17, EOSU}}, // 12
    {oma, oma, oma, {4, EOSU}},                    // 13
    {oma, oma, oma, {14, OSU}},                    // 14
    {oma, {1, OSU}, oma, {3, EOSU}},               // 15 (hits silenced by volume)
    {oma, oma, oma, {4, EOSU}},                    // 16
    {oma, oma, oma, oma},                          // 17
    {oma, {17, OSU}, oma, {17, EOSU}},             // 18
    {{17, AMP}, {0, AMP}, {17, EAMP}, {17, EOSU}}, // 19
    {oma, {17, OSU}, {0, EAMP}, {17, EOSU}},       // 20
    {{0, AMP}, {17, OSU}, {17, EAMP}, {17, EOSU}}, // 21
    {{17, AMP}, {17, OSU}, {0, EAMP}, {17, EOSU}}, // 22
    {{17, AMP}, {0, AMP}, {17, EAMP}, {17, EOSU}}, // 23
};

const int silmukkaAani = 9;  // the laser's shot sound runs as long as the beam

// Volume factor per ship and slot; a null slot is left alone.
const float aanenvoimakkuus[alustyyppeja][paikkoja] = {
    {0.5f, 0.5f, 0.75f, 0},      {1, 1, 0.5f, 0.5f},          {0.5f, 0.5f, 0.5f, 0},
    {0.75f, 0.5f, 0.5f, 0.75f},  {0.9f, 0.5f, 0.75f, 0.75f},  {0.75f, 0.75f, 0.5f, 0.5f},
    {0.5f, 0, 0.125f, 0},        {0.5f, 1, 0.5f, 0},          {0.75f, 0.5f, 0.75f, 0.75f},
    {0.75f, 0.5f, 0.75f, 0.75f}, {0.5f, 0.5f, 0.8f, 0.3f},    {0.5f, 0.5f, 1, 0.25f},
    {0.34f, 1, 0.5f, 0.75f},     {0.6f, 0.8f, 0.6f, 1},       {0.99f, 0.6f, 1, 1},
    {1, 0, 1, 0},                {0.8f, 0.7f, 0.8f, 0.5f},    {0.6f, 1, 0.6f, 1},
    {0.8f, 1, 0.6f, 1},          {0.5f, 0.5f, 0.6f, 1},       {0.7f, 0.9f, 0.5f, 0.5f},
    {1, 1, 1, 1},                {1, 1, 1, 1},                {1, 1, 1, 1},
};
// clang-format on

void lataaOmatAanet(int n) {
  for (int s = 0; s < paikkoja; ++s) {
    if (aanet[n][s].alus != OMA) continue;
    char tiedosto[64];
    std::snprintf(tiedosto, sizeof tiedosto, "sounds\\a_%d_%s.wav", n, paikanNimi[s]);
    alus[n].*aaniPaikka[s] = new Sound(tiedosto, n == silmukkaAani && s == AMP);
  }
}

// Runs after every ship's own files are loaded, so a source always exists.
void jaaLainatutAanet(int n) {
  for (int s = 0; s < paikkoja; ++s) {
    const Lahde& l = aanet[n][s];
    if (l.alus < 0) continue;
    Sound* lahde = alus[l.alus].*aaniPaikka[l.paikka];
    alus[n].*aaniPaikka[s] = lahde ? new Sound(lahde) : nullptr;
  }
}

// Copies one table row into the ship: the numbers, then (if any) the flags.
template <size_t L>
void kirjoitaRivi(Alus& a, const double* rivi, double Alus::*const (&luvut)[L]) {
  for (size_t c = 0; c < L; ++c) a.*luvut[c] = rivi[c];
}

template <size_t L, size_t F>
void kirjoitaRivi(Alus& a, const double* rivi, double Alus::*const (&luvut)[L],
                  bool Alus::*const (&liput)[F]) {
  kirjoitaRivi(a, rivi, luvut);
  for (size_t c = 0; c < F; ++c) a.*liput[c] = rivi[L + c] != 0;
}

void taytaAlus(int n) {
  Alus& a = alus[n];
  kirjoitaRivi(a, rungot[n], runkoSarakkeet);
  kirjoitaRivi(a, paaaseet[n], paaaseSarakkeet, paaaseLiput);
  kirjoitaRivi(a, erikoisaseet[n], erikoisSarakkeet, erikoisLiput);
  std::snprintf(a.nimi, sizeof a.nimi, "%s", (n == 14 || n == 23) ? "tolmu" : "Tolmu");
  a.aselaji = n;
  a.easelaji = n;
  a.numero = n;
  for (Sound* Alus::*paikka : aaniPaikka) {  // a refill releases the previous samples
    delete (a.*paikka);
    a.*paikka = nullptr;
  }
}

}  // namespace

void setSoundVolumes() {
  const float taso = sets.soundvolume / 100.0f;
  for (int n = 0; n < alustyyppeja; ++n)
    for (int s = 0; s < paikkoja; ++s)
      if (Sound* aani = alus[n].*aaniPaikka[s]) aani->setVolume(taso * aanenvoimakkuus[n][s]);
}

void alota() {
  for (int n = 0; n < alustyyppeja; ++n) taytaAlus(n);
  if (!dserver) {
    for (int n = 0; n < alustyyppeja; ++n) lataaOmatAanet(n);
    for (int n = 0; n < alustyyppeja; ++n) jaaLainatutAanet(n);
    setSoundVolumes();
  }
  alustaTahdet();
  alustaAsteroidit();
  alustaCPisteet();
  alustaDPisteet();
  alustaSPisteet();
}
