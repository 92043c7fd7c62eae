// Primary weapons: slots, spawn geometry, cool-downs, fuel, beams and the client branch.
#include <gtest/gtest.h>

#include <cmath>

#include "simscene.h"

using namespace simscene;

namespace {
const double pii = 3.1415927f;
double rad(double a) { return a * pii / 180; }
int elavia(const Player& p) {
  int n = 0;
  for (int i = 0; i < maksimipadit; ++i) n += p.pati[i].aika > 0;
  return n;
}
}  // namespace

TEST(CommonShot, SpawnsAheadInheritsTheShipVelocitySpendsFuelAndTimeAndOnAClientOnlyRecoils) {
  maailma(1);
  Player& p = laita(0, 2, 10, 20, 30);
  p.xvauhti = 0.1f;
  p.ammu();
  const Pati& s = p.pati[0];
  EXPECT_EQ(s.aika, 30);
  EXPECT_NEAR(s.x, 10 + std::cos(rad(30)) * 0.6 * alus[2].sade, 1e-5);
  EXPECT_NEAR(s.y, 20 + std::sin(rad(30)) * 0.6 * alus[2].sade, 1e-5);
  EXPECT_NEAR(s.xv, std::cos(rad(30)) * 1 + 0.1, 1e-6);
  EXPECT_FLOAT_EQ(s.energia, 1);
  EXPECT_EQ(s.kulma, 30);
  EXPECT_EQ(p.ampumisviive, 3);
  EXPECT_FLOAT_EQ(p.fuel, 28);

  for (int i = 0; i < 40; ++i) p.pati[i].aika = 5;  // full: fuel and time spent all the same
  p.ammu();
  EXPECT_FLOAT_EQ(p.fuel, 26);
  EXPECT_EQ(elavia(p), 40);

  laita(0, 1, 0, 0, 0);  // a client only cools down, plays and recoils
  joinpeli = true;
  p.ammu();
  joinpeli = false;
  EXPECT_EQ(elavia(p), 0);
  EXPECT_EQ(p.ampumisviive, 70);
  EXPECT_EQ(p.fuel, 60);
  EXPECT_FLOAT_EQ(p.xvauhti, -0.7f);

  Player& q = laita(0, 23, 0, 0, 0);  // recoil by the shot, whose velocity carries the ship's
  q.xvauhti = 0.2f;
  q.ammu();
  EXPECT_NEAR(q.xvauhti, 0.2 - (0.65 + 0.2) * 0.2, 1e-6);
}

TEST(SpawnPatterns, TwinGunsFanScatterMinesAlternatingGunsAndTheClusterBomb) {
  maailma(1);
  Player& p = laita(0, 0, 0, 0, 0);
  p.ammu();
  ASSERT_EQ(elavia(p), 2);
  for (int i = 0; i < 2; ++i) {
    const Pati& s = p.pati[i];
    EXPECT_NEAR(std::atan2(s.y, s.x), rad(i == 0 ? 45 : -45), 1e-5);
    EXPECT_NEAR(std::hypot(s.x, s.y), 0.9 * alus[0].sade, 1e-5);
    EXPECT_NEAR(s.yv, 0, 1e-7);  // both fly along the hull
  }

  Player& f = laita(0, 21, 0, 0, 0);
  f.ammu();
  ASSERT_EQ(elavia(f), 18);
  auto nopeus = [&](int i) { return std::hypot(f.pati[i].xv, f.pati[i].yv); };
  int nopein = 0;
  for (int i = 1; i < 18; ++i) nopein = nopeus(i) > nopeus(nopein) ? i : nopein;
  EXPECT_EQ(nopein, 9);  // n = 9, the middle of the fan
  EXPECT_NEAR(nopeus(9), 0.6 * 1.3, 1e-5);

  Player& h = laita(0, 8, 0, 0, 0);
  for (int k = 0; k < 100; ++k) {
    h.ammu();
    EXPECT_LE(std::fabs(std::atan2(h.pati[k].yv, h.pati[k].xv)), rad(20) + 1e-6);
    EXPECT_FLOAT_EQ(h.pati[k].energia, 300);  // the special energy
  }

  Player& m = laita(0, 15, 5, 5, 0);  // mines: dropped motionless near the ship
  for (int k = 0; k < 50; ++k) {
    m.ammu();
    EXPECT_LE(std::fabs(m.pati[k].x - 5), 1.0f);
    EXPECT_LE(std::fabs(m.pati[k].y - 5), 1.0f);
    EXPECT_EQ(m.pati[k].xv, 0);
  }

  Player& v = laita(0, 3, 0, 0, 0);  // alternating guns swap sides; side zero fires straight
  v.ammu();
  v.ammu();
  EXPECT_GT(v.pati[0].y, 0);
  EXPECT_LT(v.pati[1].y, 0);
  EXPECT_EQ(v.ampumispuoli, 1);
  v.ampumispuoli = 0;
  v.ammu();
  v.ammu();
  EXPECT_NEAR(v.pati[2].y, 0, 1e-6);
  EXPECT_NEAR(v.pati[3].y, 0, 1e-6);

  Player& c = laita(0, 4, 0, 0, 0);  // one cluster bomb at a time, and only then is fuel taken
  c.ammu();
  c.ampumisviive = 0;
  c.ammu();
  EXPECT_EQ(elavia(c), 1);
  EXPECT_FLOAT_EQ(c.fuel, 40);
  EXPECT_EQ(c.ampumisviive, 0);
}

TEST(ChargeShot, GrowsWhileHeldUpToItsLimitAndFliesOnRelease) {
  maailma(1);
  Player& p = laita(0, 13, 0, 0, 0);
  p.pfire = true;
  p.ammu();
  Pati& pallo = p.pati[0];
  for (int k = 0; k < 5; ++k) p.ammu();
  EXPECT_EQ(pallo.energia, 105);
  EXPECT_EQ(p.fuel, 30);  // charging is free

  pallo.energia = 1999;
  for (int k = 0; k < 3; ++k) p.ammu();
  EXPECT_EQ(pallo.energia, 2000);  // stops exactly there

  p.x = 5;
  p.pfire = false;
  p.ammu();
  EXPECT_EQ(pallo.aika, 0);
  const Pati& lento = p.pati[1];
  EXPECT_EQ(lento.energia, 2000);
  EXPECT_NEAR(lento.x, 5 + 1.5 * alus[13].sade, 1e-5);
  EXPECT_NEAR(lento.xv, 0.5, 1e-6);
}

TEST(HotGun, HeatRisesBy7BelowAHundredAndWeakensTheShots) {
  maailma(1);
  Player& p = laita(0, 19, 0, 0, 0);
  p.ammu();
  EXPECT_FLOAT_EQ(p.ampumisjuttu, 7);
  p.ampumisjuttu = 99;
  for (int i = 0; i < 50; ++i) p.pati[i].aika = 0;
  p.ammu();
  EXPECT_FLOAT_EQ(p.ampumisjuttu, 106);
  const double h = 106;
  for (int i = 0; i < 2; ++i) {
    const Pati& s = p.pati[i];
    EXPECT_LE(s.aika, 100);
    EXPECT_GE(s.aika, 100 - h - 1);
    EXPECT_LE(s.energia, 5.0f);
    EXPECT_GE(s.energia, 5 / (h / 100 + 1) - 1e-4);
    EXPECT_LE(std::hypot(s.xv, s.yv), 0.6 + 1e-6);
  }
  p.ammu();
  EXPECT_FLOAT_EQ(p.ampumisjuttu, 106);
}

TEST(Zap, PrefersShipsSparesTeamMatesAndShieldsAndType18RandomisesTheDamage) {
  maailma(3);
  Player& p = laita(0, 6, 0, 0, 0);
  Player& lahella = laita(1, 2, 3, 0);  // its shot is nearer than the ship at 12
  Player& kauempana = laita(2, 3, 12, 0);
  ammus(1, 0, 1, 0);
  lahella.x = 50;  // now only its shot is near
  p.ammu();
  EXPECT_FLOAT_EQ(kauempana.energia, 40 - 2);
  EXPECT_FLOAT_EQ(p.pati[0].energia, 0);
  EXPECT_FLOAT_EQ(lahella.pati[0].energia, 1);  // untouched
  EXPECT_EQ(p.viivat[0].x1, 12);
  EXPECT_NEAR(p.asekulma, 0, 1e-5);

  kauempana.tiimi = p.tiimi;  // a team-mate is never zapped: the shot is
  p.ammu();
  EXPECT_FLOAT_EQ(kauempana.energia, 38);
  EXPECT_EQ(lahella.pati[0].aika, 0);  // 1 energy, 2 damage: destroyed
  EXPECT_EQ(lahella.pati[0].energia, 0);

  Player& suoja = laita(2, 0, 0, 12);
  suoja.suojapaalla = true;
  p.ammu();
  EXPECT_EQ(suoja.energia, 50);
  EXPECT_EQ(p.viivat[0].y1, 12);  // aimed at all the same
  EXPECT_NEAR(p.asekulma, 90, 1e-4);

  Player& r = laita(0, 18, 0, 0, 0);  // type 18 randomises the damage
  Player& k = laita(1, 0, 10, 0);
  for (int i = 0; i < 50; ++i) {
    const float ennen = k.energia;
    r.ammu();
    EXPECT_GE(ennen - k.energia, 5 * 0.5 - 1e-4);
    EXPECT_LE(ennen - k.energia, 5 + 1e-4);
  }
}

TEST(Laser, BurnsEverythingAlongTheBeamEveryFrame) {
  maailma(3);
  Player& p = laita(0, 9, 0, 0, 0);
  Player& toveri = laita(1, 3, 10, 0);
  toveri.tiimi = p.tiimi;  // the laser spares nobody
  Player& suoja = laita(2, 0, 14, 0);
  suoja.suojapaalla = true;
  ammus(1, 0, 6, 0.1f).energia = 0.2f;
  p.pfire = true;
  p.ammu();
  EXPECT_TRUE(p.laseraani);
  EXPECT_EQ(p.ampumisviive, 0);  // no cool-down
  EXPECT_LT(toveri.energia, 40);
  EXPECT_LT(suoja.energia, 50);
  EXPECT_EQ(toveri.pati[0].aika, 0);
  // Ten points a tenth of the reach apart: at most ten blows each.
  EXPECT_GE(toveri.energia, 40 - 10 * 0.25 - 1e-4);
}
