// Ship flight: thrust, drag, walls, turning, refuelling, and ship-against-ship collisions.
#include <gtest/gtest.h>

#include <cmath>

#include "simscene.h"

using namespace simscene;

namespace {
// One frame of drag on a velocity component.
double vastus(double v) { return v / (1 + 0.0006000000000000001 * (std::fabs(v) + 1)); }
}  // namespace

TEST(Thrust, AcceleratesAlongTheHeadingSlowedBySlimeEvenBackwardsOrSetsTheVelocityOfTheInertialess) {
  maailma(1);
  Player& p = laita(0, 0, 50, 50, 90);
  p.pylos = true;
  p.liiku();
  EXPECT_NEAR(p.yvauhti, vastus(0.0015 / (1 + 0.0054 * 1.0015)), 1e-9);
  EXPECT_FLOAT_EQ(p.y, 50 + p.yvauhti);

  laita(0, 0, 50, 50, 0).limacount = 15;  // factor 0.6
  p.pleft = true;
  p.liiku();
  EXPECT_FLOAT_EQ(p.kulma, 0.6f);
  EXPECT_FLOAT_EQ(p.asekulma, 0.6f);
  laita(0, 0, 50, 50, 0).limacount = 45;  // factor -0.2
  p.pleft = p.pylos = true;
  p.liiku();
  EXPECT_FLOAT_EQ(p.kulma, -0.2f);
  EXPECT_LT(p.xvauhti, 0);

  laita(0, 6, 0, 50, 0).xvauhti = 1;  // inertialess kinds set their velocity and stop dead
  p.pylos = true;
  p.liiku();
  EXPECT_FLOAT_EQ(p.xvauhti, 0.31f);  // no drag, no accumulation
  p.pylos = false;
  p.liiku();
  EXPECT_EQ(p.xvauhti, 0);
  laita(0, 22, 0, 50, 90).liiku();  // always under thrust
  EXPECT_NEAR(p.yvauhti, 0.17, 1e-6);
}

TEST(Walls, PushBeginsBeyond160And120) {
  maailma(1);
  Player& p = laita(0, 0, 160, 0);
  p.xvauhti = 0.5f;
  p.liiku();
  EXPECT_FLOAT_EQ(p.xvauhti, (float)vastus(0.5));  // drag only
  laita(0, 0, 160.5f, -120.5f).liiku();
  EXPECT_FLOAT_EQ(p.xvauhti, -0.02f);
  EXPECT_FLOAT_EQ(p.yvauhti, 0.02f);
  laita(0, 6, 161, 0).liiku();  // no inertia: moved back by its own thrust value
  EXPECT_FLOAT_EQ(p.x, 161 - 0.31f);
  laita(0, 15, -161, 0, 90).suojapaalla = true;  // boosting: ten times the push
  p.liiku();
  EXPECT_NEAR(p.xvauhti, 0.2, 1e-3);
}

TEST(Turning, Type18FlipsOncePerPressTheGunTrailsAndAClientTurnsOnlySteeredShots) {
  maailma(1);
  Player& p = laita(0, 18, 0, 50, 0);
  p.pylos = true;
  p.liiku();
  p.liiku();  // held: no second flip
  EXPECT_FLOAT_EQ(p.kulma, 180);
  p.pylos = false;
  p.liiku();
  p.pylos = true;
  p.liiku();
  EXPECT_FLOAT_EQ(p.kulma, 0);  // 360 wrapped

  laita(0, 2, 0, 50, 0).asekulma = 350;  // the gun trails the hull unless firing (brought within 180 first)
  p.liiku();
  EXPECT_FLOAT_EQ(p.asekulma, -8.5f);
  p.pfire = true;
  p.liiku();
  EXPECT_FLOAT_EQ(p.asekulma, -8.5f);

  laita(0, 14, 0, 50, 0);  // a client turns steered shots but not the hull
  Pati& s = ammus(0, 0, 20, 20);
  joinpeli = true;
  p.joinleft = p.pleft = true;
  p.liiku();
  joinpeli = false;
  EXPECT_EQ(p.kulma, 0);
  EXPECT_FLOAT_EQ(s.kulma, (float)(2 * alus[14].kaantonopeus));
}

TEST(Fuel, RefuellingOvershootsAndATankAtExactlyTheCostMayFire) {
  maailma(1);
  Player& p = laita(0, 2, 0, 50);
  p.fuel = 29.9f;
  p.liiku();
  EXPECT_FLOAT_EQ(p.fuel, 29.9f + 0.2f);
  p.fuel = 2;  // patifuel
  p.pfire = true;
  p.liiku();
  EXPECT_GT(p.pati[0].aika, 0);
  laita(0, 2, 0, 50).fuel = 1.99f;
  p.pfire = true;
  p.liiku();
  EXPECT_EQ(p.pati[0].aika, 0);

  Player& c = laita(0, 13, 0, 50);  // the charge ship refuels only without a ball out
  c.fuel = 10;
  c.pfire = true;
  c.liiku();
  EXPECT_EQ(c.fuel, 10);
}

TEST(Collision, ContactImpulseAndRams) {
  maailma(2);
  Player& a = laita(0, 0, 30, 30);
  Player& b = laita(1, 0, 0, 0);
  const double r = alus[0].sade, raja = (r + b.alus.sade) * 0.785;  // strictly inside the scaled radii
  EXPECT_FALSE(b.tormaa(raja, 0, r, 0));
  EXPECT_TRUE(b.tormaa(std::nextafter(raja, 0.0), 0, r, 0));

  laita(0, 0, -2, 0).xvauhti = 0.3f;  // the impulse conserves momentum
  laita(1, 4, 2, 0).xvauhti = -0.1f;
  ASSERT_TRUE(b.tormaa(a.x + a.xvauhti, a.y, a.alus.sade, 0));
  const double j = 2 * 0.4 / (1 / 200.0 + 1 / 500.0);
  EXPECT_NEAR(a.xvauhti, 0.3 - j / 200, 1e-5);
  EXPECT_NEAR(b.xvauhti, -0.1 + j / 500, 1e-5);

  laita(0, 0, -1, 0).xvauhti = 0.2f;
  laita(1, 0, 1, 0);
  b.liiku();  // the higher index tests nobody
  EXPECT_EQ(a.xvauhti, 0.2f);
  a.liiku();  // equal masses trade velocities (A was slowed by drag first)
  EXPECT_NEAR(a.xvauhti, 0, 1e-6);
  EXPECT_NEAR(b.xvauhti, vastus(0.2), 1e-6);

  laita(0, 15, -2, 0);  // ramming kinds hurt
  laita(1, 3, 2, 0);
  ASSERT_TRUE(b.tormaa(a.x, a.y, a.alus.sade, 0));
  EXPECT_FLOAT_EQ(b.energia, 40 - 4);
  EXPECT_FLOAT_EQ(a.energia, 28);

  laita(0, 14, -2, 0).fuel = 12.5f;  // half a tank: half the blow, and the tank is spent
  laita(1, 3, 2, 0);
  ASSERT_TRUE(b.tormaa(a.x, a.y, a.alus.sade, 0));
  EXPECT_FLOAT_EQ(b.energia, 40 - 12.5f * 10 / 25);
  EXPECT_EQ(a.fuel, 0);

  laita(0, 15, -2, 0).xvauhti = 0.5f;  // not through a shield, which is still pushed
  laita(1, 0, 2, 0).suojapaalla = true;
  ASSERT_TRUE(b.tormaa(a.x + a.xvauhti, a.y, a.alus.sade, 0));
  EXPECT_EQ(b.energia, 50);
  EXPECT_GT(b.xvauhti, 0);

  laita(0, 6, -1, 0);  // no inertia: displaced, not pushed
  laita(1, 0, 1, 0).xvauhti = -0.3f;
  ASSERT_TRUE(b.tormaa(a.x, a.y, a.alus.sade, 0));
  EXPECT_FLOAT_EQ(a.x, -1.4f);
  EXPECT_EQ(a.xvauhti, 0);
}
