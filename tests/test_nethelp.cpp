// Wire records: every record survives a write and a read within its quantisation, the
// clamps and the deliberate quirks hold, and the cursors never step past their bytes.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "Player.h"
#include "ctf.h"
#include "nethelp.h"
#include "scene.h"
#include "sieni.h"
#include "simscene.h"

namespace {

class Records : public ::testing::Test {
protected:
  void SetUp() override { simscene::maailma(2); }
  unsigned char b[64] = {};
};

TEST_F(Records, PlayerStateRoundTripsAndDerivesVelocityFromTheLastPosition) {
  Player& a = simscene::laita(0, 5, 12.34f, -56.78f, 123.45f);
  a.energia = static_cast<float>(a.alus.energia) / 2;
  a.fuel = static_cast<float>(a.alus.fuel);
  a.kuolema = -7;
  a.pisteet = 150.9f;
  a.pfire = a.pright = a.suojapaalla = true;
  ASSERT_EQ(kirjotaCoords(b, &a), coordkoko);
  Player& c = simscene::laita(1, 5, 10, -50);
  ASSERT_EQ(lueCoords(&c, b), 13);
  EXPECT_NEAR(c.x, 12.34f, 1 / 150.0f);
  EXPECT_NEAR(c.y, -56.78f, 1 / 150.0f);
  EXPECT_NEAR(c.kulma, 123.45f, 1 / 150.0f);
  EXPECT_NEAR(c.xvauhti, c.x - 10, 1e-4);  // the step since the last update
  EXPECT_NEAR(c.yvauhti, c.y + 50, 1e-4);
  EXPECT_NEAR(c.energia, a.energia, 1e-3);
  EXPECT_NEAR(c.fuel, a.fuel, 1e-3);
  EXPECT_EQ(c.kuolema, -7);
  EXPECT_EQ(c.pisteet, 150);
  // The bits arrive as the remote copies, never as the local keys.
  EXPECT_TRUE(c.joinase && c.joinright && c.suojapaalla);
  EXPECT_FALSE(c.joinease || c.kaasu || c.joinleft || c.pfire || c.pright);
}

TEST_F(Records, PlayerStateClampsAndKeepsADueRevival) {
  Player& a = simscene::laita(0, 3, 500, -500, 0);
  a.energia = static_cast<float>(a.alus.energia) * 3;
  a.fuel = -5;
  kirjotaCoords(b, &a);
  EXPECT_EQ(b[6], 250);  // capped at 125 %
  EXPECT_EQ(b[7], 0);
  Player& c = simscene::laita(1, 3, 0, 0);
  c.kuolema = 1;
  lueCoords(&c, b);
  EXPECT_NEAR(c.x, 218.4f, 1e-3);
  EXPECT_NEAR(c.y, -218.4f, 1e-3);
  EXPECT_NEAR(c.energia, static_cast<float>(c.alus.energia) * 1.25f, 1e-3);
  EXPECT_EQ(c.kuolema, 1);
  // A dying ship and a value no integer holds both travel as nothing.
  a.kuolema = 5;
  a.energia = a.fuel = std::numeric_limits<float>::quiet_NaN();
  a.kulma = std::numeric_limits<float>::infinity();
  kirjotaCoords(b, &a);
  EXPECT_EQ(b[6], 0);
  EXPECT_EQ(b[7], 0);
  EXPECT_EQ(b[4] | b[5], 0);
}

TEST_F(Records, ProjectileBornRoundTripsWithOnlyTheLowIndexByte) {
  const netPati a{-20.5f, 33.25f, 1.5f, -0.75f, 359.5f, 0.5f, 2.0f, -1.0f, 7, 300};
  ASSERT_EQ(kirjotaNetpati(b, &a), netpatikoko);
  netPati c{};
  ASSERT_EQ(lueNetpati(&c, b), 15);
  EXPECT_NEAR(c.x, a.x, 1 / 150.0f);
  EXPECT_NEAR(c.y, a.y, 1 / 150.0f);
  EXPECT_NEAR(c.xv, a.xv, 1 / 2000.0f);
  EXPECT_NEAR(c.yv, a.yv, 1 / 2000.0f);
  EXPECT_NEAR(c.kulma, a.kulma, 1 / 50.0f);
  EXPECT_NEAR(c.r, 127 / 255.0f, 1e-6);
  EXPECT_EQ(c.g, 1.0f);
  EXPECT_EQ(c.b, 0.0f);
  EXPECT_EQ(c.pati, 44);
  EXPECT_EQ(c.pelaaja, 7);
}

TEST_F(Records, ObjectRecordsRoundTrip) {
  Pati asteroidi{};
  asteroidi.x = 140.55f, asteroidi.y = -90.01f, asteroidi.xv = 0.123f, asteroidi.yv = -0.5f, asteroidi.koko = 1.2345f;
  ASSERT_EQ(kirjotaAsteroidi(b, &asteroidi), asteroidikoko);
  Pati a2{};
  ASSERT_EQ(lueAsteroidi(&a2, b), 10);
  EXPECT_NEAR(a2.x, asteroidi.x, 0.01f);
  EXPECT_NEAR(a2.y, asteroidi.y, 0.01f);
  EXPECT_NEAR(a2.xv, asteroidi.xv, 0.001f);
  EXPECT_NEAR(a2.koko, asteroidi.koko, 0.0001f);
  EXPECT_EQ(a2.energia, 10);

  const SPiste sieni{-77, 101, true};
  ASSERT_EQ(kirjotaSPiste(b, &sieni), spistekoko);
  SPiste s2{};
  lueSPiste(&s2, b);
  EXPECT_EQ(s2.x, -77);
  EXPECT_EQ(s2.y, 101);

  const CPiste kukka{12.5f, -3.25f, kukkaPudonnut, 3, true};
  ASSERT_EQ(kirjotaCPiste(b, &kukka), cpistekoko);
  EXPECT_EQ(b[4], 35);
  CPiste k2{};
  lueCPiste(&k2, b);
  EXPECT_TRUE(k2.enabled);
  EXPECT_EQ(k2.numero, 3);
  EXPECT_EQ(k2.player, kukkaPudonnut);
  EXPECT_NEAR(k2.x, 12.5f, 1e-4);

  AlkuTiedot alku{3, -1234, 87.5f}, alku2{};
  ASSERT_EQ(kirjotaAlkuTiedot(b, &alku), alkutiedotkoko);
  lueAlkuTiedot(&alku2, b);
  EXPECT_EQ(alku2.gamemode, 3);
  EXPECT_EQ(alku2.mpcredits, -1234);
  EXPECT_EQ(alku2.fps, 87.5f);
}

TEST_F(Records, RawRecordsRoundTripExactly) {
  const pikkumiessiirto m{1.5f, -2.25f, 0.125f, -300, 199};
  pikkumiessiirto m2{};
  ASSERT_EQ(kirjotaPikkumiessiirto(b, &m), pikkumieskoko);
  luePikkumiessiirto(&m2, b);
  EXPECT_EQ(std::memcmp(&m, &m2, sizeof m), 0);

  const limajuttu l{3.5f, -4.5f, 15, 29};
  limajuttu l2{};
  ASSERT_EQ(kirjotaLimajuttu(b, &l), limakoko);
  lueLimajuttu(&l2, b);
  EXPECT_TRUE(l2.x == l.x && l2.y == l.y && l2.player == 15 && l2.kohta == 29);

  const kuolevaPati k{300, 9};
  kuolevaPati k2{};
  ASSERT_EQ(kirjotaKuolevapati(b, &k), kuolevapatikoko);
  lueKuolevapati(&k2, b);
  EXPECT_EQ(k2.pati, 44);
  EXPECT_EQ(k2.pelaaja, 9);

  const asteroidipox x{-1e6f, 7.75f};
  asteroidipox x2{};
  ASSERT_EQ(kirjotaAsteroidipox(b, &x), asteroidipoxkoko);
  lueAsteroidipox(&x2, b);
  EXPECT_TRUE(x2.x == x.x && x2.y == x.y);

  const Pati p{1, 2, 3, 4, 5, 6, 0.1f, 0.2f, 0.3f, 9, 10, -11, 12};
  Pati p2{};
  ASSERT_EQ(kirjotaPati(b, &p), patikoko);
  luePati(&p2, b);
  EXPECT_EQ(std::memcmp(&p, &p2, sizeof p), 0);
  EXPECT_EQ(b[44] | b[45] << 8, 0xfff5);  // little-endian -11
}

TEST(Cursors, AReadThatDoesNotFitFailsAndEveryLaterReadFailsToo) {
  const unsigned char data[5] = {1, 2, 3, 4, 5};
  Lukija r(data, 5);
  uint16_t a = 0;
  uint32_t c = 77;
  ASSERT_TRUE(r.u16(a));
  EXPECT_EQ(a, 0x0201);
  EXPECT_FALSE(r.u32(c));  // three bytes left
  EXPECT_EQ(c, 77u);
  uint8_t t = 0;
  EXPECT_FALSE(r.tavu(t));
  EXPECT_FALSE(r.ok());
  EXPECT_FALSE(Lukija(data, -3).ohita(1));

  unsigned char out[3];
  Kirjoittaja w(out, 3);
  EXPECT_TRUE(w.u16(0xabcd));
  EXPECT_FALSE(w.u16(1));
  EXPECT_FALSE(w.tavu(1));
  EXPECT_EQ(w.pituus(), 2);
}

}  // namespace
