// Per-player effects: slime, exhaust trail, start shards and their burst, line effects.
#include <gtest/gtest.h>

#include <cmath>

#include "netpeli.h"
#include "simscene.h"

using namespace simscene;

namespace {
// One frame of thrust with ship n at detail `tarkkuus`, then one trail step.
Player& kaasuta(int n, int tarkkuus) {
  maailma(1, tarkkuus);
  Player& p = laita(0, n, 10, 10, 0);
  p.pylos = true;
  p.liiku();
  p.laskeKaasujaljet();
  return p;
}
}  // namespace

TEST(Slime, StopsAtThirtyBlobsWithinTheLopsidedSpread) {
  maailma(4);
  Player& p = laita(0, 2, 0, 0);
  for (int i = 0; i < 35; ++i) p.lisaalima();
  EXPECT_EQ(p.limacount, 30);
  const double yla = 1.5 * alus[2].sade * 0.785 - 0.75;
  for (int i = 0; i < 30; ++i) {
    EXPECT_GE(p.lima[i].x, -0.75f);
    EXPECT_LE(p.lima[i].x, yla + 1e-6);
  }
  EXPECT_FALSE(limalaitetaan);  // only a host sends notices

  Player& q = laita(3, 0, 0, 0);
  hostpeli = true;
  q.lisaalima();
  q.lisaalima();
  hostpeli = false;
  EXPECT_TRUE(limalaitetaan);
  EXPECT_EQ(netlima.player, 3);
  EXPECT_EQ(netlima.kohta, 1);
  EXPECT_EQ(netlima.x, q.lima[1].x);
  limalaitetaan = false;
}

TEST(Trail, OnlyTheLowestDetailMarksThePuffsWhichThenFadeBackwards) {
  Player& p = kaasuta(0, 3);
  for (int k = 0; k < kaasujalkia; ++k) EXPECT_LE(p.kaasujalki[k].alpha, 0) << k;

  kaasuta(0, 0);
  EXPECT_EQ(p.kaasujalkiaika, 10);
  EXPECT_NEAR(p.kaasujalki[0].alpha, 0.99, 1e-9);
  EXPECT_NEAR(p.kaasujalki[0].x, p.x - alus[0].sade, 1e-5);  // behind the hull
  EXPECT_NEAR(p.kaasujalki[1].alpha, 0.6, 1e-9);
  EXPECT_EQ(p.kaasujalki[2].alpha, 0);

  for (int k = 0; k < 10; ++k) p.laskeKaasujaljet();  // counting down: nothing moves
  EXPECT_NEAR(p.kaasujalki[1].alpha, 0.6, 1e-9);
  p.pylos = false;
  p.laskeKaasujaljet();  // the eleventh: not thrusting any more, the trail moves on
  EXPECT_EQ(p.kaasujalki[0].alpha, -0.01);
  EXPECT_EQ(p.kaasujalki[1].alpha, 0);
  EXPECT_NEAR(p.kaasujalki[2].alpha, 0.4, 1e-9);
  EXPECT_EQ(sirpale[0].aika, 0);  // and no shard at detail 0
}

TEST(Shards, ExhaustAndSmokeAppearOnlyAboveDetailZero) {
  for (int tarkkuus : {3, 0}) {
    maailma(1, tarkkuus);
    Player& p = laita(0, 0, 10, 10, 0);
    p.pylos = true;
    p.energia = 0.01f;  // smokes almost every frame
    for (int i = 0; i < 20; ++i) p.liiku();
    int pakokaasu = 0, savu = 0, elossa = 0;
    for (const Sirpale& s : sirpale) {
      pakokaasu += s.aika > 0 && s.maxaika == 100;
      savu += s.aika > 0 && s.maxaika == 150;
      elossa += s.aika > 0;
    }
    if (tarkkuus == 0) {
      EXPECT_EQ(elossa, 0);
      continue;
    }
    EXPECT_EQ(pakokaasu, 60);  // three a frame at detail 3
    EXPECT_GT(savu, 15);
  }
}

TEST(StartShards, GatherFromAShellIntoTheShip) {
  maailma(1);
  Player& p = laita(0, 7, 0, 0);
  p.laitaAlkuSirpaleet();
  for (int i = 0; i < p.alkusirpaleMaara; ++i) {
    const Sirpale& s = p.alkusirpale[i];
    const double d2 = s.x * s.x + s.y * s.y + s.z * s.z;
    ASSERT_TRUE(d2 >= 1000 && d2 < 1600 && s.aika == 200 && s.red >= 0 && s.red <= 1) << i;
  }
  Sirpale& s = p.alkusirpale[0];
  const double etaisyys = std::hypot(s.x, s.y, s.z), kulma = std::atan2(s.y, s.x);
  p.laskeAlkuSirpaleet();
  EXPECT_LT(std::hypot(s.x, s.y, s.z), etaisyys);  // drawn in while it turns
  EXPECT_NE(std::atan2(s.y, s.x), kulma);
  EXPECT_EQ(s.aika, 199);

  s.x = s.y = 0;  // at the centre it stays there
  p.laskeAlkuSirpaleet();
  EXPECT_TRUE(s.x == 0 && s.y == 0);
}

TEST(StartShards, TheBurstFillsOnlyFreeWorldShards) {
  maailma(1);
  Player& p = laita(0, 1, 20, -30);
  p.laitaAlkuSirpaleet();
  for (int i = 0; i < sirpaleita; ++i) sirpale[i].aika = (i % 30 == 0) ? 0 : 5;  // 50 free
  p.kuolema = 1;
  p.laskeAlkuSirpaleet();
  EXPECT_EQ(p.kuolema, 0);
  int uusia = 0;
  for (int i = 0; i < sirpaleita; ++i) {
    if (i % 30 != 0) {
      ASSERT_EQ(sirpale[i].aika, 5) << i;
      continue;
    }
    const Sirpale& s = sirpale[i];
    ASSERT_GE(s.aika, 50);
    EXPECT_EQ(s.x, 20);
    EXPECT_LT(s.xv * s.xv + s.yv * s.yv + s.zv * s.zv, 0.25);
    ++uusia;
  }
  EXPECT_EQ(uusia, 50);
  // Colours come from the start shards, the last one first.
  EXPECT_EQ(sirpale[0].red, p.alkusirpale[alkusirpaleita - 1].red);
  EXPECT_EQ(sirpale[30].blue, p.alkusirpale[alkusirpaleita - 2].blue);
}

TEST(Lines, LiveLinesCountDownAndDrift) {
  maailma(1);
  Player& p = laita(0, 11, 0, 0);
  Viivakasa& v = p.viivat[0];
  v = Viivakasa{1, 2, 3, 4, 0, 0, 1, 2, 0.5, -0.5};
  for (int i = 0; i < 3; ++i) p.laskeViivat();
  EXPECT_EQ(v.aika, 0);
  EXPECT_EQ(v.x1, 2);  // moved twice, then dead and still
  EXPECT_EQ(v.y2, 3);
}
