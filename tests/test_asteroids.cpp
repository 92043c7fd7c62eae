// Asteroids and little men.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "Main.h"
#include "Sets.h"
#include "net.h"
#include "scene.h"
#include "simscene.h"

namespace {

const float kauas = 5000;

class Asteroids : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    simscene::kataloogi();
    // A small plain ship in every slot: the figures below follow from these values.
    Alus& a = alus[1];
    a.sade = 2;
    a.paino = 100;
    a.energia = 10;
    a.fuel = 30;
    a.aselaji = a.easelaji = a.numero = 1;
    a.maxpadit = a.maxepadit = 4;
    a.patisade = a.epatisade = 0.5;
    a.damage = 3;
    a.edamage = 4;
  }

  void SetUp() override {
    simscene::maailma(2, 0, 11);
    for (int i = 0; i < asteroideja; ++i)
      asteroidi[i] = Pati{kauas + 100 * i, kauas, 0, 0, 0, 10, 0, 0, 0, 0, 1, 0, 0};
    for (int i = 0; i < maxPlayers; ++i) asetaAlus(i, -kauas, -kauas - 100 * i);
  }

  static void asetaAlus(int i, float x, float y) { simscene::laita(i, 1, x, y); }

  static bool reunalla(const Pati& a) { return std::fabs(a.x) >= 160 || std::fabs(a.y) >= 160; }

  static void tarkistaPoispainKulma(const Pati& a) {
    EXPECT_GE(std::fabs(std::atan2(a.yv, a.xv) - std::atan2(a.y, a.x)), 0.5235987901687622f);
  }

  static float liikemaara(float Pati::*v) {
    return asteroidi[2].koko * (asteroidi[2].*v) + asteroidi[3].koko * (asteroidi[3].*v);
  }
};

TEST_F(Asteroids, StartUpPlacementAvoidsTheCentreAndNeverFliesStraightOut) {
  for (unsigned siemen = 1; siemen <= 20; ++siemen) {
    srand(siemen);
    alustaAsteroidit();
    for (const Pati& a : asteroidi) {
      EXPECT_TRUE(std::fabs(a.x) >= 40 || std::fabs(a.y) >= 40);
      EXPECT_LE(std::fabs(a.x), 320);
      EXPECT_LE(std::fabs(a.y), 320);
      tarkistaPoispainKulma(a);
    }
  }
}

TEST_F(Asteroids, NearThePlanetOneIsDestroyedAndRecreatedAtTheEdge) {
  asteroidi[3] = Pati{3, -4, 0.5f, 0, 0, 10, 0, 0, 0, 0, 1, 0, 0};
  laskeAsteroidit();
  const Pati& a = asteroidi[3];
  EXPECT_TRUE(reunalla(a));
  EXPECT_LE(std::fabs(a.x), 192);
  EXPECT_LE(std::fabs(a.y), 192);
  EXPECT_FLOAT_EQ(a.energia, 10);
  tarkistaPoispainKulma(a);
  EXPECT_TRUE(asteroidiuudestaan[3]);
  EXPECT_TRUE(asteroidirajahtaa);
  EXPECT_NEAR(arajahdys[0], 3 + 0.5f - 0.1f * 3 / 25, 1e-4);  // moved once, then exploded
  int sirpaleet = 0;
  for (const Sirpale& s : sirpale) {
    if (s.aika <= 0) continue;
    ++sirpaleet;
    // The lopsided bound: xv^2 + 2 yv + zv^2, not yv^2.
    EXPECT_LE(s.xv * s.xv + 2 * s.yv + s.zv * s.zv, 0.09000000357627869);
  }
  EXPECT_EQ(sirpaleet, 35);
}

TEST_F(Asteroids, ClientKeepsAsteroidsAndShowsTheHostsExplosion) {
  joinpeli = true;
  asteroidi[0] = Pati{1, 1, 0, 0, 0, 10, 0, 0, 0, 0, 1, 0, 0};
  asteroidirajahtaa = true;
  arajahdys[0] = 42;
  arajahdys[1] = 24;
  laskeAsteroidit();
  EXPECT_FLOAT_EQ(asteroidi[0].energia, 10);
  EXPECT_FALSE(asteroidirajahtaa);
  EXPECT_DOUBLE_EQ(sirpale[0].x, 42);
  EXPECT_EQ(sirpale[35].aika, 0);
}

TEST_F(Asteroids, ShipsBounceRamsHurtPlanetProofShipsAreShovedAndRocksKeepMomentum) {
  asteroidi[0] = Pati{100, 0, 0, 0, 0, 10, 0, 0, 0, 0, 1.3f, 0, 0};
  asetaAlus(0, 101.5f, 0);
  player[0].xvauhti = -0.2f;
  player[0].alus.easelaji = 15;
  asteroidi[1] = Pati{-100, 0, 0, 0, 0, 10, 0, 0, 0, 0, 1, 0, 0};
  asetaAlus(1, -101.5f, 0);
  player[1].alus.aselaji = 6;
  player[1].alus.easelaji = 14;
  player[1].fuel = 15;
  asteroidi[2] =
      Pati{10000, 0, 0.2f, 0, 0, 10, 0, 0, 0, 0, 1.0f, 0, 0};  // far out, where the pull is negligible
  asteroidi[3] = Pati{10001.5f, 0.3f, -0.1f, 0.05f, 0, 10, 0, 0, 0, 0, 1.2f, 0, 0};
  const float px = liikemaara(&Pati::xv), py = liikemaara(&Pati::yv), ennen = asteroidi[3].xv;
  laskeAsteroidit();
  const double impulssi = 2 * (1 / (1 / 130.0 + 1 / 100.0)) * 0.2;
  EXPECT_NEAR(player[0].xvauhti, -0.2 + impulssi / 100, 1e-5);
  EXPECT_NEAR(asteroidi[0].xv, -impulssi / 130 - 0.001, 1e-5);
  EXPECT_FLOAT_EQ(asteroidi[0].energia, 6);
  EXPECT_FLOAT_EQ(player[1].xvauhti, 0);
  EXPECT_FLOAT_EQ(player[1].x, -101.5f - 1.5f * 0.4f);
  EXPECT_FLOAT_EQ(asteroidi[1].energia, 10 - 15 * 4 / 30.0f);  // a ram spends the whole tank
  EXPECT_FLOAT_EQ(player[1].fuel, 0);
  EXPECT_GT(asteroidi[3].xv, ennen);  // rocks push each other apart and keep their momentum
  EXPECT_NEAR(liikemaara(&Pati::xv), px, 1e-4);
  EXPECT_NEAR(liikemaara(&Pati::yv), py, 1e-4);
}

TEST_F(Asteroids, ShotsWearThemDownAndAreSpent) {
  asteroidi[0] = Pati{100, 100, 0, 0, 0, 10, 0, 0, 0, 0, 1, 0, 0};
  player[0].pati[0] = Pati{100.5f, 100, 0, 0, 0, 1, 0, 0, 0, 0, 0, 20, 0};
  player[0].pati[1] = Pati{120, 100, 0, 0, 0, 1, 0, 0, 0, 0, 0, 20, 0};
  player[0].epati[3] = Pati{100, 99.5f, 0, 0, 0, 1, 0, 0, 0, 0, 0, 20, 0};
  laskeAsteroidit();
  EXPECT_FLOAT_EQ(asteroidi[0].energia, 10 - 3 - 4);
  EXPECT_EQ(player[0].pati[0].aika, 0);
  EXPECT_EQ(player[0].pati[1].aika, 20);
  EXPECT_EQ(player[0].epati[3].aika, 0);

  // Ship 9's special shots pass through asteroids.
  player[0].alus.numero = 9;
  player[0].epati[3].aika = 20;
  laskeAsteroidit();
  EXPECT_EQ(player[0].epati[3].aika, 20);
}

// --- Little men ------------------------------------------------------------------

class LittleMen : public Asteroids {
 protected:
  static void laitaMies(int i, float x, float y, short aika, short viive) {
    pikkumies[i] = Pati{x, y, 0, 0, 0, 1, 0, 0, 0, 0, 0, aika, viive};
  }
};

TEST_F(LittleMen, PickUpAfterTheDelayGivesEnergyToEveryShipStrictlyOverHim) {
  asetaAlus(0, 50, 50);
  asetaAlus(1, 51, 50.5f);
  laitaMies(7, 50.5f, 50, 100, 3);
  for (int k = 0; k < 3; ++k) laskePikkumiehet();
  EXPECT_EQ(pikkumies[7].aika, 97);
  EXPECT_FLOAT_EQ(player[0].energia, 10);
  laskePikkumiehet();
  EXPECT_EQ(pikkumies[7].aika, 0);
  EXPECT_FLOAT_EQ(player[0].energia, 11);
  EXPECT_FLOAT_EQ(player[1].energia, 11);

  asetaAlus(1, -kauas, -kauas);
  laitaMies(0, 52, 50, 100, 0);  // only a centre strictly within the radius counts
  laitaMies(1, -30, 20, 1, 0);
  laskePikkumiehet();
  EXPECT_EQ(pikkumies[0].aika, 99);
  EXPECT_FLOAT_EQ(player[0].energia, 11);
  EXPECT_EQ(pikkumies[1].aika, 0);  // expired of age
}

TEST_F(LittleMen, HostReportsEveryEndedSlot) {
  hostpeli = true;
  asetaAlus(0, 50, 50);
  laitaMies(4, 50, 50, 100, 0);
  siirrot[0].aika = 5;  // still waiting to be sent
  laskePikkumiehet();
  EXPECT_EQ(siirrot[1].numero, 4);
  EXPECT_FLOAT_EQ(siirrot[1].x, 50);
  EXPECT_EQ(siirrot[1].aika, 0);
  EXPECT_EQ(siirrot[0].aika, 5);
}

}  // namespace
