// The computer pilot flown headless: it must fight the right ships only and touch
// nothing but its own buttons.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "ai.h"
#include "simscene.h"

namespace {

// A quiet local death match of `pelaajia` computer pilots at skill `taso`.
void tyhja(int pelaajia, int taso, unsigned siemen) {
  simscene::maailma(pelaajia, 0, siemen);
  gamemode = 0;
  sets.ai = taso;
  sets.aikohteet = false;
  alustaAsteroidit();
  for (Pati& m : pikkumies) m.aika = 0;
  aiAlusta();
}

Player& lentaja(int i, int tyyppi, float x, float y, int tiimi, float kulma = 0) {
  Player& p = simscene::laita(i, tyyppi, x, y, kulma);
  p.ihmispelaaja = false;
  p.tiimi = tiimi;
  return p;
}

// A human slot whose player never touches the keys, held where it was put.
struct Maali {
  int i;
  float x, y;
  void pida() const {
    player[i].x = x;
    player[i].y = y;
    player[i].xvauhti = player[i].yvauhti = 0;
  }
};

Maali maali(int i, int tyyppi, float x, float y, int tiimi) {
  Player& p = simscene::laita(i, tyyppi, x, y);
  p.ihmispelaaja = true;
  p.tiimi = tiimi;
  return {i, x, y};
}

bool ammuksiaLennossa(int i) {
  const Player& p = player[i];
  for (int k = 0; k < std::min((int)p.alus.maxpadit, maksimipadit); ++k)
    if (p.pati[k].aika > 0) return true;
  return false;
}

// Four pilots in two teams with "ai vs ai": each only ever goes for the other team.
TEST(Pilot, NeverTargetsOrHurtsItsOwnTeam) {
  tyhja(4, aiTasoja - 1, 11);
  sets.aikohteet = true;
  const int tyypit[4] = {3, 16, 21, 9};
  for (int i = 0; i < 4; ++i) lentaja(i, tyypit[i], i % 2 ? 100.0f : -100.0f, i < 2 ? 60.0f : -60.0f, i % 2);
  int kohteita = 0;
  for (int f = 1; f <= 4000; ++f) {
    calculateFrame(f);
    for (int i = 0; i < 4; ++i) {
      const int k = aiKohde(i);
      if (k < 0) continue;
      ++kohteita;
      ASSERT_NE(player[k].tiimi, player[i].tiimi) << "pilot " << i << " frame " << f;
    }
  }
  EXPECT_GT(kohteita, 1000);
}

// Without "ai vs ai" two pilots of different teams leave each other alone, and both
// go for a human as soon as one is in the game, and destroy it when it sits still.
TEST(Pilot, WithoutAiVersusAiOnlyHumansAreAttacked) {
  tyhja(2, aiTasoja - 1, 21);
  lentaja(0, 9, -60, 40, 0);  // a laser: beams leave no shots, so the buttons must stay up
  lentaja(1, 17, 60, -40, 1);
  for (int f = 1; f <= 4000; ++f) {
    calculateFrame(f);
    for (int i = 0; i < 2; ++i) {
      ASSERT_EQ(aiKohde(i), -1);
      ASSERT_FALSE(player[i].pfire || player[i].pease) << "pilot " << i << " fired at frame " << f;
      ASSERT_FALSE(ammuksiaLennossa(i));
    }
  }
  EXPECT_EQ(player[0].energia, (float)player[0].alus.energia);
  EXPECT_EQ(player[1].energia, (float)player[1].alus.energia);

  players = 3;
  const Maali m = maali(2, 16, 0, 90, 2);  // a heavy hull that lasts a while
  bool molemmat = false;
  for (int f = 4001; f <= 12000 && player[2].kuolema < 1; ++f) {
    m.pida();
    calculateFrame(f);
    molemmat = molemmat || (aiKohde(0) == 2 && aiKohde(1) == 2);
    ASSERT_NE(aiKohde(0), 1);
    ASSERT_NE(aiKohde(1), 0);
  }
  EXPECT_TRUE(molemmat);
  EXPECT_GE(player[2].kuolema, 1) << "the sitting duck survived";
}

// Everything a pilot may change, as raw bytes: the whole world but its six buttons.
struct Kuva {
  std::vector<unsigned char> tavut;
  void lisaa(const void* p, size_t n) {
    const auto* b = static_cast<const unsigned char*>(p);
    tavut.insert(tavut.end(), b, b + n);
  }
};

// The buttons of slot `ohitettava` are taken out of the picture for the copy.
Kuva kuvaa(int ohitettava) {
  Kuva k;
  for (int i = 0; i < players; ++i) {
    Player& p = player[i];
    bool* napit[6] = {&p.pylos, &p.palas, &p.pleft, &p.pright, &p.pfire, &p.pease};
    bool talteen[6];
    for (int n = 0; n < 6; ++n) {
      talteen[n] = *napit[n];
      if (i == ohitettava) *napit[n] = false;
    }
    k.lisaa(&p, sizeof(Player));
    for (int n = 0; n < 6; ++n) *napit[n] = talteen[n];
    k.lisaa(p.pati, sizeof(Pati) * maksimipadit);
    k.lisaa(p.epati, sizeof(Pati) * maksimiepadit);
  }
  k.lisaa(asteroidi, sizeof asteroidi);
  k.lisaa(pikkumies, sizeof pikkumies);
  k.lisaa(sirpale, sizeof sirpale);
  return k;
}

// Run twice from the same seed, the same flight.
TEST(Pilot, WritesOnlyItsOwnButtonsAndTheSameSeedFliesTheSameWay) {
  std::vector<float> lopussa[2];
  for (auto& paikat : lopussa) {
    tyhja(6, aiTasoja - 1, 31);
    sets.aikohteet = true;
    const int tyypit[6] = {4, 13, 9, 6, 15, 12};
    for (int i = 0; i < 6; ++i) lentaja(i, tyypit[i], (i % 3) * 60.0f - 60, i < 3 ? 50.0f : -50.0f, i % 3);
    int tarkistettu = 0;
    for (int f = 1; f <= 3000; ++f) {
      calculateFrame(f);
      if (f % 150 != 0) continue;
      for (int i = 0; i < players; ++i) {
        if (player[i].kuolema >= 1) continue;
        const Kuva ennen = kuvaa(i);
        player[i].ailiiku();
        ASSERT_TRUE(ennen.tavut == kuvaa(i).tavut) << "pilot " << i << " changed the world at frame " << f;
        ++tarkistettu;
      }
    }
    EXPECT_GT(tarkistettu, 50);
    for (int i = 0; i < players; ++i) paikat.insert(paikat.end(), {player[i].x, player[i].y});
  }
  EXPECT_EQ(lopussa[0], lopussa[1]);
}

}  // namespace
