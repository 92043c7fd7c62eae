// Per-player effects: slime, and the start shards and their burst.
#include <gtest/gtest.h>

#include <cmath>

#include "netpeli.h"
#include "simscene.h"

using namespace simscene;

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
