// Per-player effects: slime, exhaust trail and shards, start shards and their burst.
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

TEST(Trail, OnlyTheLowestDetailMarksPuffsBehindTheHullAndNoShards) {
  Player& p = kaasuta(0, 3);
  for (int k = 0; k < kaasujalkia; ++k) EXPECT_LE(p.kaasujalki[k].alpha, 0) << k;

  kaasuta(0, 0);
  EXPECT_GT(p.kaasujalki[0].alpha, 0.9);
  EXPECT_NEAR(p.kaasujalki[0].x, p.x - alus[0].sade, 1e-5);
  p.pylos = false;
  for (int k = 0; k < 11; ++k) p.laskeKaasujaljet();  // the trail moves on and fades
  EXPECT_LE(p.kaasujalki[0].alpha, 0);
  EXPECT_TRUE(p.kaasujalki[2].alpha > 0 && p.kaasujalki[2].alpha < 0.6) << p.kaasujalki[2].alpha;
  EXPECT_EQ(sirpale[0].aika, 0);
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

// A new ship gathers from a shell of shards (one at the centre stays there, finite),
// then bursts into the free world shards only.
TEST(StartShards, GatherThenBurstIntoFreeWorldShardsOnly) {
  maailma(1);
  Player& p = laita(0, 1, 20, -30);
  p.laitaAlkuSirpaleet();
  Sirpale& keski = p.alkusirpale[1];
  const double etaisyys = std::hypot(p.alkusirpale[0].x, p.alkusirpale[0].y, p.alkusirpale[0].z);
  keski.x = keski.y = 0;
  p.laskeAlkuSirpaleet();
  EXPECT_LT(std::hypot(p.alkusirpale[0].x, p.alkusirpale[0].y, p.alkusirpale[0].z), etaisyys);
  EXPECT_TRUE(keski.x == 0 && keski.y == 0);
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
}
