// Ship flight: thrust, drag, walls, turning, refuelling, and ship-against-ship collisions.
#include <gtest/gtest.h>

#include <cmath>

#include "simscene.h"

using namespace simscene;

namespace {
// One frame of drag on a velocity component.
double vastus(double v) { return v / (1 + 0.0006000000000000001 * (std::fabs(v) + 1)); }
}  // namespace

TEST(Thrust, AcceleratesAlongTheHeadingAgainstDrag) {
  maailma(1);
  Player& p = laita(0, 0, 50, 50, 90);
  p.pylos = true;
  p.liiku();
  const double v = 0.0015 / (1 + 0.0054 * (0.0015 + 1));
  EXPECT_NEAR(p.yvauhti, vastus(v), 1e-9);
  EXPECT_NEAR(p.xvauhti, 0, 1e-9);
  EXPECT_FLOAT_EQ(p.y, 50 + p.yvauhti);

  // Held long enough, the speed settles where thrust and drag balance.
  for (int i = 0; i < 20000; ++i) {
    p.y = 0;  // stay clear of the walls
    p.liiku();
  }
  const float tasapaino = p.yvauhti;
  p.liiku();
  EXPECT_NEAR(p.yvauhti, tasapaino, 1e-7);
  EXPECT_GT(tasapaino, 0.2f);
  EXPECT_LT(tasapaino, 0.3f);
}

TEST(Thrust, SlimeScalesThrustAndTurningAndReversesThemPast37Blobs) {
  maailma(1);
  Player& p = laita(0, 0, 50, 50, 0);
  p.limacount = 15;  // factor 0.6
  p.pleft = true;
  p.liiku();
  EXPECT_FLOAT_EQ(p.kulma, 0.6f);
  EXPECT_FLOAT_EQ(p.asekulma, 0.6f);

  laita(0, 0, 50, 50, 0);
  p.limacount = 45;  // factor -0.2: turning and thrust act backwards
  p.pleft = p.pylos = true;
  p.liiku();
  EXPECT_FLOAT_EQ(p.kulma, -0.2f);
  EXPECT_LT(p.xvauhti, 0);
}

TEST(Thrust, DragSlowsADriftingShip) {
  maailma(1);
  Player& p = laita(0, 0, 0, 50);
  p.xvauhti = 0.5f;
  p.liiku();
  EXPECT_FLOAT_EQ(p.xvauhti, (float)vastus(0.5));
}

TEST(Thrust, InertialessKindsSetTheirVelocityAndStopDead) {
  maailma(1);
  Player& p = laita(0, 6, 0, 50, 0);
  p.xvauhti = 1;
  p.pylos = true;
  p.liiku();
  EXPECT_FLOAT_EQ(p.xvauhti, 0.31f);  // no drag, no accumulation
  p.pylos = false;
  p.liiku();
  EXPECT_EQ(p.xvauhti, 0);
  EXPECT_EQ(p.yvauhti, 0);

  Player& q = laita(0, 22, 0, 50, 90);  // always under thrust
  q.liiku();
  EXPECT_TRUE(q.pylos);
  EXPECT_NEAR(q.yvauhti, 0.17, 1e-6);
}

TEST(Walls, PushBeginsBeyond160And120) {
  maailma(1);
  Player& p = laita(0, 0, 160, 0);
  p.liiku();
  EXPECT_EQ(p.xvauhti, 0);

  laita(0, 0, 160.5f, -120.5f);
  p.liiku();
  EXPECT_FLOAT_EQ(p.xvauhti, -0.02f);
  EXPECT_FLOAT_EQ(p.yvauhti, 0.02f);
  EXPECT_FLOAT_EQ(p.x, 160.48f);

  Player& z = laita(0, 6, 161, 0);  // no inertia: moved back by its own thrust value
  z.liiku();
  EXPECT_FLOAT_EQ(z.x, 161 - 0.31f);

  Player& m = laita(0, 15, -161, 0, 90);  // boosting mine-layer: ten times the push
  m.suojapaalla = true;
  m.liiku();
  EXPECT_NEAR(m.xvauhti, 0.2, 1e-3);
}

TEST(Turning, Type18FlipsOncePerPressOfThrust) {
  maailma(1);
  Player& p = laita(0, 18, 0, 50, 0);
  p.pylos = true;
  p.liiku();
  EXPECT_FLOAT_EQ(p.kulma, 180);
  p.liiku();
  EXPECT_FLOAT_EQ(p.kulma, 180);  // held: no second flip
  p.pylos = false;
  p.liiku();
  p.pylos = true;
  p.liiku();
  EXPECT_FLOAT_EQ(p.kulma, 0);  // 360 wrapped
}

TEST(Turning, HeadingWrapsAndTheGunTrailsTheHull) {
  maailma(1);
  Player& p = laita(0, 0, 0, 50, 179.5f);
  p.pleft = true;
  p.liiku();
  EXPECT_FLOAT_EQ(p.kulma, -179.5f);

  laita(0, 0, 0, 50, 0);
  p.asekulma = 10;
  p.liiku();
  EXPECT_FLOAT_EQ(p.asekulma, 8.5f);
  p.asekulma = 350;  // brought within 180 of the hull first
  p.liiku();
  EXPECT_FLOAT_EQ(p.asekulma, -8.5f);

  laita(0, 2, 0, 50, 0);
  p.asekulma = 10;
  p.pfire = true;  // firing holds the gun
  p.liiku();
  EXPECT_FLOAT_EQ(p.asekulma, 10);
}

TEST(Turning, AClientTurnsSteeredShotsButNotTheHull) {
  maailma(1);
  Player& p = laita(0, 14, 0, 50, 0);
  Pati& s = ammus(0, 0, 20, 20);
  joinpeli = true;
  p.joinleft = true;
  p.pleft = true;
  p.liiku();
  joinpeli = false;
  EXPECT_EQ(p.kulma, 0);
  EXPECT_FLOAT_EQ(s.kulma, (float)(2 * alus[14].kaantonopeus));
  EXPECT_FLOAT_EQ(p.x, 0);  // a client does not integrate
}

TEST(Fuel, RefuellingMayOvershootAndSomeKindsWait) {
  maailma(1);
  Player& p = laita(0, 0, 0, 50);
  p.fuel = 99.9f;
  p.liiku();
  EXPECT_FLOAT_EQ(p.fuel, 99.9f + 0.17f);
  p.fuel = 100;
  p.liiku();
  EXPECT_EQ(p.fuel, 100);

  Player& c = laita(0, 13, 0, 50);  // the charge ship refuels only without a ball out
  c.fuel = 10;
  c.pfire = true;  // holding: the ball stays out
  ammus(0, 0, 0, 0);
  c.liiku();
  EXPECT_EQ(c.fuel, 10);
}

TEST(Fuel, ATankAtExactlyTheShotCostMayFire) {
  maailma(1);
  Player& p = laita(0, 2, 0, 50);
  p.fuel = 2;  // patifuel
  p.pfire = true;
  p.liiku();
  EXPECT_GT(p.pati[0].aika, 0);
  EXPECT_FLOAT_EQ(p.fuel, 0.2f);  // spent, then one refuel step
  EXPECT_EQ(p.ampumisviive, 2);

  laita(0, 2, 0, 50);
  p.fuel = 1.99f;
  p.pfire = true;
  p.liiku();
  EXPECT_EQ(p.pati[0].aika, 0);

  Player& m = laita(0, 15, 0, 50);  // a boosting mine-layer does not lay mines
  m.suojapaalla = true;
  m.pfire = true;
  m.liiku();
  EXPECT_EQ(m.pati[0].aika, 0);
}

TEST(Collision, ContactIsStrictlyInsideTheScaledRadii) {
  maailma(2);
  laita(0, 0, 30, 30);
  Player& b = laita(1, 0, 0, 0);
  const double r = alus[0].sade, raja = (r + b.alus.sade) * 0.785;
  EXPECT_FALSE(b.tormaa(raja, 0, r, 0));
  EXPECT_TRUE(b.tormaa(std::nextafter(raja, 0.0), 0, r, 0));
  EXPECT_FALSE(b.tormaa(0, 0, r, 99));  // no such player
}

TEST(Collision, TheImpulseConservesMomentumAndSeparatesTheShips) {
  maailma(2);
  Player& a = laita(0, 0, -2, 0);
  Player& b = laita(1, 4, 2, 0);
  a.xvauhti = 0.3f;
  b.xvauhti = -0.1f;
  ASSERT_TRUE(b.tormaa(a.x + a.xvauhti, a.y, a.alus.sade, 0));
  const double mu = 1 / (1 / 200.0 + 1 / 500.0), j = 2 * 0.4 * mu;
  EXPECT_NEAR(a.xvauhti, 0.3 - j / 200, 1e-5);
  EXPECT_NEAR(b.xvauhti, -0.1 + j / 500, 1e-5);
  EXPECT_NEAR(200 * a.xvauhti + 500 * b.xvauhti, 200 * 0.3 - 500 * 0.1, 1e-4);
  EXPECT_NEAR(a.yvauhti, 0, 1e-6);
}

TEST(Collision, RammingKindsHurtUnlessTheShieldIsUp) {
  maailma(2);
  Player& a = laita(0, 15, -2, 0);
  Player& b = laita(1, 3, 2, 0);
  ASSERT_TRUE(b.tormaa(a.x, a.y, a.alus.sade, 0));
  EXPECT_FLOAT_EQ(b.energia, 40 - 4);
  EXPECT_FLOAT_EQ(a.energia, 28);

  laita(0, 14, -2, 0).fuel = 12.5f;  // half a tank: half the blow, and the tank is spent
  laita(1, 3, 2, 0);
  ASSERT_TRUE(b.tormaa(a.x, a.y, a.alus.sade, 0));
  EXPECT_FLOAT_EQ(b.energia, 40 - 12.5f * 10 / 25);
  EXPECT_EQ(a.fuel, 0);

  laita(0, 15, -2, 0).xvauhti = 0.5f;
  laita(1, 0, 2, 0).suojapaalla = true;
  ASSERT_TRUE(b.tormaa(a.x + a.xvauhti, a.y, a.alus.sade, 0));
  EXPECT_EQ(b.energia, 50);
  EXPECT_GT(b.xvauhti, 0);  // still pushed
}

TEST(Collision, EachPairIsTestedOnceByTheLowerIndex) {
  maailma(2);
  Player& a = laita(0, 0, -1, 0);
  Player& b = laita(1, 0, 1, 0);
  a.xvauhti = 0.2f;
  b.liiku();  // no later player to test against
  EXPECT_EQ(a.xvauhti, 0.2f);
  a.liiku();  // equal masses trade velocities (A was slowed by drag first)
  EXPECT_NEAR(a.xvauhti, 0, 1e-6);
  EXPECT_NEAR(b.xvauhti, vastus(0.2), 1e-6);
}

TEST(Collision, InertialessShipsAreDisplacedNotPushed) {
  maailma(2);
  Player& a = laita(0, 6, -1, 0);
  Player& b = laita(1, 0, 1, 0);
  b.xvauhti = -0.3f;
  ASSERT_TRUE(b.tormaa(a.x, a.y, a.alus.sade, 0));
  EXPECT_FLOAT_EQ(a.x, -1 - 2 * 0.2f);
  EXPECT_EQ(a.xvauhti, 0);
}
