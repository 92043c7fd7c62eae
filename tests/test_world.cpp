// The world step: camera, planet, deaths, respawns and the credit rules.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <set>
#include <string>

#include "Main.h"
#include "Menu.h"
#include "Sets.h"
#include "ctf.h"
#include "domination.h"
#include "net.h"
#include "scene.h"
#include "sieni.h"
#include "simscene.h"

namespace {

const double eliminointihinta = 9;

class World : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    simscene::kataloogi();
    for (int n = 0; n < alustyyppeja; ++n) {
      Alus& a = alus[n];
      a.numero = a.aselaji = a.easelaji = n;
      a.sade = 2;
      a.paino = 100;
      a.energia = 20;
      a.fuel = 30;
      a.nopeus = 0.002;
      a.maxpadit = a.maxepadit = 0;
      // Ship 2 is the cheapest, as in the real catalogue.
      a.pistemaara = n == 2 ? eliminointihinta : eliminointihinta + 1 + n;
    }
  }

  void SetUp() override {
    gamemode = 1;
    simscene::maailma(4, 0, 7);
    sets.cammode = 1;
    camposx = camposy = 0;
    camposz = 20;
    for (int i = 0; i < maxPlayers; ++i) asetaPelaaja(i, 100, 60.0f * i - 90, 3);
    for (Pati& a : asteroidi) a = Pati{5000, 5000, 0, 0, 0, 10, 0, 0, 0, 0, 1, 0, 0};
    alustaCPisteet();
    alustaDPisteet();
    alustaSPisteet();
    aloitaCPisteet();
  }

  static void asetaPelaaja(int i, float x, float y, int laji) {
    simscene::laita(i, laji, x, y).ihmispelaaja = true;
  }

  static int eloSirpaleita() {
    int n = 0;
    for (const Sirpale& s : sirpale) n += s.aika > 0;
    return n;
  }
};

// --- Camera -----------------------------------------------------------------

TEST_F(World, CameraDistanceComparesScaledHeightButUsesItUnscaled) {
  players = 2;
  struct Tapaus {
    int cammode;
    float dx, dy;
    double d;
  } tapaukset[] = {
      {0, 50, 60, 60},  // full height weight: the height wins
      {1, 50, 60, 50},  // three quarters of 60 is 45: the width wins
      {1, 30, 60, 60},  // 45 beats 30, and the height counts in full
  };
  for (const Tapaus& t : tapaukset) {
    sets.cammode = t.cammode;
    camposz = 20;
    asetaPelaaja(0, 100, 0, 3);
    asetaPelaaja(1, 100 - t.dx, t.dy, 3);
    calculateFrame(1);
    EXPECT_NEAR(camposz, (t.d * 1.3333333730697632 + 20 * 19) / 20, 1e-4)
        << "cammode " << t.cammode << " dx " << t.dx;
  }
}

TEST_F(World, CameraAnglesUseThreePointOneFourAndOnlyInCamMode0) {
  sets.cammode = 0;
  players = 1;
  asetaPelaaja(0, 60, 60, 3);
  camposx = camposy = 50;  // already on target, so the centre stays put
  calculateFrame(1);
  EXPECT_NEAR(alfa, 0.78539816 * 180 / 3.14, 1e-3);  // 45.04, not 45
  EXPECT_LT(beta2, 0);
  sets.cammode = 1;
  calculateFrame(2);
  EXPECT_TRUE(alfa == 0 && beta == 0 && alfa2 == 0 && beta2 == 0);
}

// --- Planet -------------------------------------------------------------------

// Gravity pulls by mass; touching the planet costs five and bounces the ship outward
// (at 0.1 at least); the planet-proof kinds feel no pull and are pushed out instead.
TEST_F(World, GravityPullsByMassAndThePlanetHurtsAndBounces) {
  asetaPelaaja(0, 30, 0, 3);
  asetaPelaaja(1, -30, 0, 6);
  asetaPelaaja(2, 0, 9, 3);
  player[2].yvauhti = -0.05f;
  asetaPelaaja(3, 0, -9, 22);
  calculateFrame(1);
  EXPECT_NEAR(player[0].xvauhti, -(30 / std::pow(30.0, 2.3)) * 0.0004 * (50000 / 100.0), 1e-7);
  EXPECT_FLOAT_EQ(player[0].yvauhti, 0);
  EXPECT_FLOAT_EQ(player[1].xvauhti, 0);
  EXPECT_FLOAT_EQ(player[2].energia, 15);
  EXPECT_NEAR(player[2].xvauhti, 0, 1e-5);
  EXPECT_GE(player[2].yvauhti, 0.1f - 1e-6);
  EXPECT_FLOAT_EQ(player[3].energia, 15);
  EXPECT_LT(player[3].y, -9);
}

// --- Deaths ---------------------------------------------------------------------

TEST_F(World, DeathSpawnsDebrisInFreeShardsStartsTheTimerDropsTheShieldAndTheEndRefills) {
  player[0].energia = 0;
  player[0].suojapaalla = true;
  calculateFrame(1);
  EXPECT_EQ(player[0].kuolema, 350);
  EXPECT_FALSE(player[0].suojapaalla);
  EXPECT_EQ(eloSirpaleita(), 200);  // detail 0: 200 shards
  calculateFrame(2);
  EXPECT_EQ(player[0].kuolema, 349);

  player[0].kuolema = 2;  // the timer's last step refills and stops the ship
  player[0].xvauhti = 0.3f;
  calculateFrame(3);
  EXPECT_EQ(player[0].kuolema, 1);
  EXPECT_FLOAT_EQ(player[0].energia, 20);
  EXPECT_FLOAT_EQ(player[0].xvauhti, 0);

  SetUp();  // debris never overwrites live shards
  for (int s = 0; s < sirpaleita - 50; ++s) sirpale[s].aika = 1000;
  player[0].energia = -3;
  calculateFrame(1);
  EXPECT_EQ(eloSirpaleita(), sirpaleita);
  EXPECT_EQ(sirpale[0].aika, 999);
}

TEST_F(World, RolesSplitTheExplosion) {
  hostpeli = true;
  player[1].energia = 0;
  player[1].x = 33;
  calculateFrame(1);
  EXPECT_TRUE(playerrajahtaa[1]);
  EXPECT_FLOAT_EQ(prajahdys[1][0], player[1].x);

  SetUp();
  joinpeli = true;
  player[2].energia = 0;
  calculateFrame(1);
  EXPECT_EQ(eloSirpaleita(), 0);  // the client waits for the host's word
  playerrajahtaa[3] = true;
  prajahdys[3][0] = 70;
  prajahdys[3][1] = -20;
  calculateFrame(2);
  EXPECT_FALSE(playerrajahtaa[3]);
  EXPECT_EQ(eloSirpaleita(), 200);
  EXPECT_DOUBLE_EQ(sirpale[0].x, 70 + sirpale[0].xv);
}

TEST_F(World, ResurrectionShipComesBackAsShip12AboutHalfTheTime) {
  int takaisin = 0;
  const int kertoja = 200;
  for (int k = 0; k < kertoja; ++k) {
    asetaPelaaja(0, 100, -90, 12);
    player[0].energia = 0;
    calculateFrame(k);
    if (player[0].kuolema == 0) {
      ++takaisin;
      EXPECT_EQ(player[0].alus.numero, 12);
      EXPECT_FLOAT_EQ(player[0].energia, alus[12].energia);
    } else {
      EXPECT_EQ(player[0].kuolema, 350);
    }
  }
  EXPECT_GT(takaisin, kertoja / 2 - 30);
  EXPECT_LT(takaisin, kertoja / 2 + 30);
}

// --- Respawns -------------------------------------------------------------------

// Runs the step in which player `i`'s timer reaches the respawn point.
void kuoleeJaUudestaan(int i) {
  player[i].kuolema = 201;
  calculateFrame(1);
}

TEST_F(World, HostHoldsTheTimerAt200AndRaisesADeathMatchRequestToChoiceOnly) {
  hostpeli = true;
  gamemode = 2;
  kuoleeJaUudestaan(0);
  EXPECT_EQ(player[0].kuolema, 200);
  EXPECT_EQ(playeruudestaan[0], 1);
  calculateFrame(2);
  EXPECT_EQ(player[0].kuolema, 200);

  pistepeli = true;
  gamemode = 0;
  player[1].pisteet = 100;
  playeruudestaan[1] = 3;
  kuoleeJaUudestaan(1);
  EXPECT_EQ(playeruudestaan[1], 3);  // never lowered
  playeruudestaan[1] = 1;
  calculateFrame(2);  // still held at 200
  EXPECT_EQ(playeruudestaan[1], 2);
}

TEST_F(World, ObjectiveDeathsChargeTheTeamAndLocalFlowerDeathsTwice) {
  struct Tapaus {
    int tila;
    bool isanta;
    float sakkoja;
  } tapaukset[] = {{3, false, 2}, {3, true, 1}, {4, false, 1}, {4, true, 1}};
  for (const Tapaus& t : tapaukset) {
    SetUp();
    gamemode = t.tila;
    hostpeli = t.isanta;
    ckuolemapisteet = 1.5f;
    skuolemapisteet = 2.5f;
    const float sakko = t.tila == 3 ? ckuolemapisteet : skuolemapisteet;
    player[3].tiimi = 1;
    kuoleeJaUudestaan(1);
    const std::string tapaus = "mode " + std::to_string(t.tila) + (t.isanta ? " host" : " local");
    EXPECT_FLOAT_EQ(player[1].pisteet, -t.sakkoja * sakko) << tapaus;
    EXPECT_FLOAT_EQ(player[3].pisteet, -t.sakkoja * sakko) << tapaus;
    EXPECT_FLOAT_EQ(player[0].pisteet, 0) << tapaus;
    EXPECT_EQ(playeruudestaan[1], 1) << tapaus;
  }
  ckuolemapisteet = skuolemapisteet = 1;
}

TEST_F(World, EliminationPriceIsTooPoorLocallyButEnoughOnAHostAndMoreBuysAShip) {
  pistepeli = true;
  gamemode = 0;
  player[0].pisteet = eliminointihinta;
  player[1].pisteet = eliminointihinta + 4.5f;
  player[1].kuolema = 201;
  kuoleeJaUudestaan(0);
  EXPECT_FLOAT_EQ(player[0].pisteet, -1);
  const double hinta = alus[player[1].alus.numero].pistemaara;  // bought what it could afford
  EXPECT_LE(hinta, eliminointihinta + 4.5f);
  EXPECT_FLOAT_EQ(player[1].pisteet, eliminointihinta + 4.5f - hinta);

  for (int tila : {0, 1}) {
    SetUp();
    pistepeli = hostpeli = true;
    gamemode = tila;
    player[0].pisteet = eliminointihinta;
    player[1].pisteet = eliminointihinta - 0.5f;
    player[1].kuolema = 201;
    kuoleeJaUudestaan(0);
    EXPECT_FLOAT_EQ(player[0].pisteet, eliminointihinta);
    EXPECT_EQ(playeruudestaan[0], tila == 0 ? 2 : 1);
    EXPECT_FLOAT_EQ(player[1].pisteet, -1);
  }
}

TEST_F(World, LocalRandomShipsCoverTheCatalogue) {
  std::set<int> nahdyt;
  for (int k = 0; k < 400; ++k) {
    kuoleeJaUudestaan(0);
    nahdyt.insert(player[0].alus.numero);
    player[0].kuolema = 0;
  }
  EXPECT_EQ(nahdyt.size(), 24u);
  EXPECT_GE(*nahdyt.begin(), 0);
  EXPECT_LE(*nahdyt.rbegin(), 23);
}

TEST_F(World, CreditStartBuysEveryoneAShipOnceAndLeavesThoseOutAlone) {
  pistepeli = ekapisteframe = true;
  const float alussa = eliminointihinta + 2;
  for (int i = 0; i < players; ++i) player[i].pisteet = alussa;
  player[3].pisteet = eliminointihinta - 1;  // cannot afford even the cheapest
  calculateFrame(1);
  EXPECT_FALSE(ekapisteframe);
  for (int i = 0; i < 3; ++i) {
    const double hinta = alus[player[i].alus.numero].pistemaara;
    EXPECT_LE(hinta, alussa);
    EXPECT_FLOAT_EQ(player[i].pisteet, alussa - hinta);
  }
  EXPECT_FLOAT_EQ(player[3].pisteet, -1);
  const float ennen = player[0].pisteet;
  player[3].energia = 0;  // out of the game, it is left alone: no death, no planet
  player[3].x = player[3].y = 0;
  calculateFrame(2);
  EXPECT_FLOAT_EQ(player[0].pisteet, ennen);
  EXPECT_EQ(player[3].kuolema, 0);
  EXPECT_FLOAT_EQ(player[3].energia, 0);
  EXPECT_EQ(eloSirpaleita(), 0);
}

}  // namespace
