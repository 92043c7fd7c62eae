// Wire records: every record reads back to what was written, the clamps and the
// deliberate quirks hold, and the cursors never step past their bytes.
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <typeinfo>

#include "Player.h"
#include "ctf.h"
#include "nethelp.h"
#include "scene.h"
#include "sieni.h"
#include "simscene.h"

namespace {

// Written, read back and written again, a record gives the same bytes: the reader
// undoes the writer for every field.
template <class T>
void kiertaa(const T& alku, int (*kirjota)(unsigned char*, const T*), int (*lue)(T*, const unsigned char*),
             int koko) {
  unsigned char a[64], b[64];
  T luettu{};
  ASSERT_EQ(kirjota(a, &alku), koko);
  ASSERT_EQ(lue(&luettu, a), koko);
  kirjota(b, &luettu);
  EXPECT_EQ(std::memcmp(a, b, static_cast<size_t>(koko)), 0) << typeid(T).name();
}

TEST(Records, EveryRecordReadsBackToWhatWasWritten) {
  const netPati laukaus{-20.5f, 33.25f, 1.5f, -0.75f, 359.5f, 0.5f, 0.25f, 1.0f, 7, 12};
  kiertaa(laukaus, kirjotaNetpati, lueNetpati, 15);
  const Pati kivi{140.55f, -90.01f, 0.123f, -0.5f, 0, 0, 0, 0, 0, 0, 1.2345f, 0, 0};
  kiertaa(kivi, kirjotaAsteroidi, lueAsteroidi, 10);
  kiertaa(SPiste{-77, 101, true}, kirjotaSPiste, lueSPiste, 4);
  kiertaa(CPiste{12.5f, -3.25f, kukkaPudonnut, 3, true}, kirjotaCPiste, lueCPiste, 6);
  kiertaa(pikkumiessiirto{1.5f, -2.25f, 0.125f, -300, 199}, kirjotaPikkumiessiirto, luePikkumiessiirto, 16);
  kiertaa(limajuttu{3.5f, -4.5f, 15, 29}, kirjotaLimajuttu, lueLimajuttu, 12);
  kiertaa(kuolevaPati{44, 9}, kirjotaKuolevapati, lueKuolevapati, 2);
  kiertaa(asteroidipox{-1e6f, 7.75f}, kirjotaAsteroidipox, lueAsteroidipox, 8);
  kiertaa(Pati{1, 2, 3, 4, 5, 6, 0.1f, 0.2f, 0.3f, 9, 10, -11, 12}, kirjotaPati, luePati, 48);
  kiertaa(AlkuTiedot{3, -1234, 87.5f}, kirjotaAlkuTiedot, lueAlkuTiedot, 7);
  simscene::maailma(2);
  Player& p = simscene::laita(0, 5, 12.34f, -56.78f, 123.45f);
  p.energia = static_cast<float>(p.alus.energia) / 2;
  p.kuolema = -7;
  p.pisteet = 150;
  unsigned char a[16], b[16];
  kirjotaCoords(a, &p);
  Player& q = simscene::laita(1, 5, 0, 0);
  lueCoords(&q, a);
  q.pfire = q.joinase, q.pease = q.joinease, q.pylos = q.kaasu, q.pleft = q.joinleft, q.pright = q.joinright;
  kirjotaCoords(b, &q);
  EXPECT_EQ(std::memcmp(a, b, 13), 0);
}

TEST(Records, PlayerStateClampsDerivesVelocityAndKeepsADueRevival) {
  simscene::maailma(2);
  Player& a = simscene::laita(0, 3, 500, -500, 0);
  a.energia = static_cast<float>(a.alus.energia) * 3;
  a.fuel = -5;
  a.pfire = a.pright = a.suojapaalla = true;
  unsigned char b[16];
  kirjotaCoords(b, &a);
  EXPECT_EQ(b[6], 250);  // capped at 125 %
  EXPECT_EQ(b[7], 0);
  Player& c = simscene::laita(1, 3, 200, -210);
  c.kuolema = 1;
  lueCoords(&c, b);
  EXPECT_NEAR(c.x, 218.4f, 1e-3);
  EXPECT_NEAR(c.y, -218.4f, 1e-3);
  EXPECT_NEAR(c.xvauhti, 18.4f, 1e-3);  // the step since the last update
  EXPECT_NEAR(c.yvauhti, -8.4f, 1e-3);
  EXPECT_NEAR(c.energia, static_cast<float>(c.alus.energia) * 1.25f, 1e-3);
  EXPECT_EQ(c.kuolema, 1);
  EXPECT_TRUE(c.joinase && c.joinright && c.suojapaalla);  // remote copies, never the keys
  EXPECT_FALSE(c.pfire || c.pright || c.joinease || c.kaasu || c.joinleft);
  // A dying ship, and values no integer holds, travel as nothing.
  a.kuolema = 5;
  a.energia = a.fuel = std::numeric_limits<float>::quiet_NaN();
  a.kulma = std::numeric_limits<float>::infinity();
  kirjotaCoords(b, &a);
  EXPECT_EQ(b[6] | b[7] | b[4] | b[5], 0);
}

TEST(Records, OnlyTheLowIndexByteTravelsAndFlowersCarryTheirStateInByteFour) {
  unsigned char b[16];
  const netPati a{0, 0, 0, 0, 0, -1.0f, 2.0f, 0.5f, 7, 300};
  kirjotaNetpati(b, &a);
  netPati c{};
  lueNetpati(&c, b);
  EXPECT_EQ(c.pati, 44);
  EXPECT_EQ(c.r, 0.0f);
  EXPECT_EQ(c.g, 1.0f);
  const kuolevaPati k{300, 9};
  kirjotaKuolevapati(b, &k);
  EXPECT_EQ(b[0], 44);
  const CPiste kukka{0, 0, kukkaKotona, 3, true};
  kirjotaCPiste(b, &kukka);
  EXPECT_EQ(b[4], 35);
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
  EXPECT_FALSE(Lukija(data, -3).ohita(1));
}

}  // namespace
