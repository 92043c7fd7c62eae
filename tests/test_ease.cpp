// Special weapons: triggers, the special shots' flight and hits, slime, little men,
// the client's part, and that each kind's shots are drawn.
#include <GL/gl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>

#include "Main.h"
#include "glapi.h"
#include "simscene.h"
#include "testutil.h"

namespace {

using simscene::laita;

// Live special shots of a player.
int elavat(const Player& p) {
  int n = 0;
  for (int k = 0; k < (int)std::ceil(p.alus.maxepadit); ++k) n += p.epati[k].aika > 0;
  return n;
}

// A live special shot, laid out as the primary helper lays out a shot.
Pati& erikoinen(int i, int k, float x, float y, float xv = 0, float yv = 0) {
  Player& p = player[i];
  Pati& s = p.epati[k] = simscene::ammus(i, k, x, y, xv, yv);
  p.pati[k].aika = 0;
  s.energia = (float)p.alus.epatienergia;
  s.alku = s.aika;
  return s;
}

class Specials : public ::testing::Test {
 protected:
  void SetUp() override { simscene::maailma(2, 0, 7); }
  void TearDown() override { joinpeli = hostpeli = false; }
};

TEST_F(Specials, ATriggerSpendsFuelSetsTheCoolDownAndPhaseAndKindsWithoutSlotsNeedNoArray) {
  for (int n = 0; n < alustyyppeja; ++n) {
    simscene::maailma(2, 0, 7);
    Player& p = laita(0, n, -100, 60);
    laita(1, 0, 100, -60);
    p.ease();
    // Kind 12 is a no-op; the ram that ends a lunge takes the tank.
    const double maksu = n == 14 || n == 12 ? 0 : alus[n].easefuel;
    EXPECT_FLOAT_EQ(p.fuel, (float)(alus[n].fuel - maksu)) << "kind " << n;
    EXPECT_EQ(p.easeviive, n == 12 ? 0 : (float)alus[n].easenopeus) << "kind " << n;
    if (n == 19 || n == 20) {
      EXPECT_EQ(p.ampumispuoli, n == 19 ? 2 : 3);  // the phase liiku runs
    }
  }
  // Kinds with no special slots (all that launch nothing) work with the array gone.
  for (int n : {0, 2, 6, 7, 10, 11, 12, 14, 15}) {
    simscene::maailma(2, 0, 7);
    Player& p = laita(0, n, -20, 50);
    laita(1, 3, -14, 50);
    Pati* talteen = p.epati;
    p.epati = nullptr;
    p.pease = true;
    for (int f = 0; f < 300; ++f) {
      p.liiku();
      p.liikutaePadit();
    }
    p.epati = talteen;
  }
}

TEST_F(Specials, ShotsHitAtTheSpecialRadiusDamageKickAndDieAndThePlanetSwallowsThem) {
  Player& o = laita(0, 1, 0, 60);
  Player& k = laita(1, 2, 30, 60);
  const double r = (k.alus.sade + o.alus.epatisade) * 0.785;
  // Just outside after the move: nothing.
  erikoinen(0, 0, (float)(30 - r - 0.05), 60, 0, 0);
  o.liikutaePadit();
  EXPECT_EQ(k.energia, (float)k.alus.energia);
  EXPECT_GT(o.epati[0].aika, 0);
  // Moving just inside: one hit of edamage with the kick, the shot is gone.
  o.epati[0].xv = 0.1f;
  o.liikutaePadit();
  EXPECT_FLOAT_EQ(k.energia, (float)(k.alus.energia - o.alus.edamage));
  EXPECT_FLOAT_EQ(k.xvauhti, (float)(0.1 * o.alus.epatipotkasu));
  EXPECT_EQ(o.epati[0].aika, 0);
  // The owner is never hit by its own shot; the planet swallows special shots as any.
  erikoinen(0, 1, o.x, o.y);
  erikoinen(0, 2, 7.9f, 0);
  o.liikutaePadit();
  EXPECT_EQ(o.energia, (float)o.alus.energia);
  EXPECT_EQ(o.epati[2].aika, 0);
}

TEST_F(Specials, AClientMovesShotsButSpawnsAndHurtsNothing) {
  joinpeli = true;
  Player& o = laita(0, 1, 0, 60);
  Player& k = laita(1, 2, 2, 60);
  o.joinease = true;
  const float polttoaine = o.fuel;
  o.liiku();
  EXPECT_EQ(o.easeviive, (float)o.alus.easenopeus - 1);  // cooled down by liiku the same frame
  EXPECT_EQ(elavat(o), 0);
  erikoinen(0, 0, 1.5f, 60, 0.2f, 0);
  o.liikutaePadit();
  EXPECT_GE(o.fuel, polttoaine);
  EXPECT_EQ(k.energia, (float)k.alus.energia);
  EXPECT_EQ(o.epati[0].aika, 999);
  EXPECT_FLOAT_EQ(o.epati[0].x, 1.7f);
  // Nor does a client blow itself up, leech or teleport.
  for (int n : {2, 6}) {
    Player& p = laita(0, n, 50, 50);
    p.ease();
    EXPECT_EQ(p.energia, (float)p.alus.energia);
    EXPECT_FALSE(p.teleportattu);
  }
}

TEST_F(Specials, SlimeGlobsStickAndTheSlimeDriesOff) {
  Player& o = laita(0, 17, 0, 60);
  Player& k = laita(1, 5, 20, 60);
  erikoinen(0, 0, 19, 60);
  o.liikutaePadit();
  EXPECT_EQ(k.limacount, 1);
  EXPECT_FLOAT_EQ(k.energia, (float)(k.alus.energia - o.alus.edamage));
  erikoinen(0, 0, 19, 60);
  for (int f = 0; f < 100; ++f) k.liikutaePadit();
  o.liikutaePadit();
  EXPECT_EQ(k.limacount, 2);
  for (int f = 0; f < 300; ++f) k.liikutaePadit();
  EXPECT_EQ(k.limacount, 1);  // the older blob is gone, the newer still slows the ship
  EXPECT_GT(k.lima[0].aika, 0);
  EXPECT_EQ(k.lima[1].aika, 0);
  for (int f = 0; f < 100; ++f) k.liikutaePadit();
  EXPECT_EQ(k.limacount, 0);
  // Blobs left over when a respawn cleared the count are dropped, not counted back.
  k.lisaalima();
  k.limacount = 0;
  k.liikutaePadit();
  EXPECT_EQ(k.limacount, 0);
  EXPECT_EQ(k.lima[0].aika, 0);
}

TEST_F(Specials, LeechPodsDrainIntoTheOwnerThenReleaseALittleMan) {
  for (Pati& m : pikkumies) m.aika = 0;
  Player& o = laita(0, 5, 0, 60);
  Player& k = laita(1, 3, 20, 60);
  o.energia = 10;
  erikoinen(0, 0, 19, 60);
  o.liikutaePadit();
  const Pati& pod = o.epati[0];
  EXPECT_EQ(pod.ampumisviive, 2);  // latched on player 1
  EXPECT_EQ(k.energia, (float)k.alus.energia);
  k.x += 5;  // the pod rides along
  o.liikutaePadit();
  EXPECT_NEAR(pod.x, k.x + k.alus.sade * 0.6 * std::cos(pod.kulma * 3.1415927 / 180), 1e-3);
  EXPECT_FLOAT_EQ(k.energia, (float)(k.alus.energia - o.alus.edamage));
  EXPECT_FLOAT_EQ(o.energia, (float)(10 + o.alus.edamage));
  EXPECT_GT(o.viivat[1].aika, 0);  // the leech line
  for (int f = 0; f < 200; ++f) o.liikutaePadit();
  EXPECT_EQ(pod.aika, 0);
  int miehia = 0;
  for (const Pati& m : pikkumies)
    if (m.aika > 0) {
      ++miehia;
      EXPECT_EQ(m.ampumisviive, 70);
      EXPECT_EQ(m.aika, (short)o.alus.easekesto);
    }
  EXPECT_EQ(miehia, 1);
}

TEST_F(Specials, SelfDestructAndChargeBlastsFallOffWithDistance) {
  simscene::maailma(4, 0, 7);
  Player& o = laita(0, 2, 60, 60);
  Player& lahi = laita(1, 1, 65, 60);
  Player& kauka = laita(2, 1, 80, 60);
  Player& suojattu = laita(3, 0, 60, 65);
  suojattu.suojapaalla = true;
  o.ease();
  EXPECT_LE(o.energia, 0);
  EXPECT_FLOAT_EQ(lahi.energia, (float)(lahi.alus.energia - 100 * (1 - 5.0 / 15)));
  EXPECT_EQ(kauka.energia, (float)kauka.alus.energia);
  EXPECT_EQ(suojattu.energia, (float)suojattu.alus.energia);

  // A charge left alone goes off when its time is up, its owner included.
  Player& p = laita(0, 23, -60, 60);
  laita(1, 1, 100, -100);
  p.ease();
  ASSERT_EQ(elavat(p), 1);
  const Pati& panos = p.epati[0];
  p.x = panos.x + 6;
  p.y = panos.y;
  for (int f = 0; f < (int)p.alus.easekesto; ++f) p.liikutaePadit();
  EXPECT_EQ(panos.aika, 0);
  EXPECT_NEAR(p.energia, p.alus.energia - p.alus.edamage * 0.5, 0.01);
}

TEST_F(Specials, TeleportLandsClearOfThePlanetAndLiikuMovesTheShip) {
  for (unsigned siemen = 1; siemen < 40; ++siemen) {
    simscene::maailma(2, 0, siemen);
    Player& p = laita(0, 6, 50, 50);
    laita(1, 1, -50, -50);
    p.pease = true;
    p.liiku();
    ASSERT_TRUE(std::hypot(p.x, p.y) >= 40) << siemen;
    EXPECT_LE(std::fabs(p.x), 160);
    EXPECT_LE(std::fabs(p.y), 120);
    EXPECT_GE(std::hypot(p.x + 50, p.y + 50), 15);
    EXPECT_FALSE(p.teleportattu);
    EXPECT_GT(p.viivat[1].aika, 0);
  }
}

TEST_F(Specials, LightningStrikesTheNearestEnemyInReachAndJumpsOnce) {
  simscene::maailma(5, 0, 7);
  Player& o = laita(0, 7, 0, 60);
  Player& eka = laita(1, 1, 20, 60);
  Player& toka = laita(2, 1, 30, 60);
  Player& kaveri = laita(3, 1, -5, 60);
  kaveri.tiimi = o.tiimi;
  Player& kaukana = laita(4, 1, -60, 60);
  o.ease();
  EXPECT_FLOAT_EQ(eka.energia, (float)(eka.alus.energia - o.alus.edamage));
  EXPECT_FLOAT_EQ(toka.energia, (float)(toka.alus.energia - o.alus.edamage / 2));
  EXPECT_EQ(kaveri.energia, (float)kaveri.alus.energia);
  EXPECT_EQ(kaukana.energia, (float)kaukana.alus.energia);
  EXPECT_GT(o.viivat[1].aika, 0);
  EXPECT_EQ(o.viivat[0].aika, 0);  // the primary beam's entry is left alone
}

TEST_F(Specials, TheShieldTurnsShotsAwayTheBlueBeamEndsAndTheBoostIsASwitch) {
  Player& p = laita(0, 0, -50, 50);
  Player& vihu = laita(1, 1, -50, 53);
  p.pease = true;
  p.liiku();
  EXPECT_TRUE(p.suojapaalla);
  EXPECT_EQ(p.easekesto, (float)alus[0].easekesto - 1);
  erikoinen(1, 0, p.x, p.y);
  vihu.liikutaePadit();
  EXPECT_EQ(p.energia, (float)alus[0].energia);
  EXPECT_GT(vihu.epati[0].aika, 0);

  Player& b = laita(0, 11, 0, 60);
  laita(1, 1, 100, -100);
  b.pease = true;
  b.liiku();
  b.liikutaePadit();
  EXPECT_TRUE(b.suojapaalla);
  b.pease = false;
  b.liiku();
  b.liikutaePadit();
  EXPECT_FALSE(b.suojapaalla);

  Player& t = laita(0, 15, 0, 60);
  t.pease = true;
  for (int f = 0; f < 120; ++f) {  // holding keeps it on past the cool-down
    t.liiku();
    t.liikutaePadit();
    ASSERT_TRUE(t.suojapaalla) << f;
  }
  t.pease = false;
  t.liiku();
  t.liikutaePadit();
  t.pease = true;
  t.liiku();
  EXPECT_FALSE(t.suojapaalla);
}

TEST_F(Specials, WellPulseAndDischarge) {
  // A gravity well pulls an enemy in.
  Player& o = laita(0, 4, 0, 80);
  Player& k = laita(1, 1, 20, 80);
  erikoinen(0, 0, 0, 80);
  o.liikutaePadit();
  EXPECT_LT(k.xvauhti, 0);
  // A pulse hurts and throws back within its reach and breaks shots there.
  Player& p = laita(0, 10, 0, 80);
  k.x = 10;
  k.xvauhti = 0;
  simscene::ammus(1, 0, 5, 80);
  p.ease();
  EXPECT_FLOAT_EQ(k.energia, (float)(k.alus.energia - p.alus.edamage));
  EXPECT_GT(k.xvauhti, 0);
  EXPECT_EQ(k.pati[0].aika, 0);
  // The discharge takes fuel and hands it to the ship that never refuels.
  Player& d = laita(0, 18, 0, 80);
  d.fuel = 10;
  k.fuel = 2;
  d.ease();
  EXPECT_EQ(k.fuel, 0);
  EXPECT_FLOAT_EQ(d.fuel, 12);
}

TEST_F(Specials, TheLungeBendsTowardsAnEnemyAhead) {
  for (float sivuun : {15.0f, -15.0f}) {
    simscene::maailma(2, 0, 7);
    Player& o = laita(0, 14, -100, 80);
    Player& k = laita(1, 3, -75, 80 + sivuun);
    o.ease();
    EXPECT_GT(o.easekesto, 0);
    o.liikutaePadit();
    EXPECT_GT(o.yvauhti * sivuun, 0) << "turns towards the enemy";
    // Out of the cone ahead the course holds.
    k.x = -110;
    const float yv = o.yvauhti;
    o.liikutaePadit();
    EXPECT_FLOAT_EQ(o.yvauhti, yv);
  }
}

// The blade hurts every ship at its tip in the frame it first reaches one, and then
// nobody else until it is triggered again.
TEST_F(Specials, TheBladeHurtsEveryShipAtItsTipOnceAnActivation) {
  simscene::maailma(3, 0, 7);
  Player& o = laita(0, 19, -100, 80);  // heading 0: cos and sin of 0 put the tip along +x
  o.ease();
  o.easeviive = std::floor(o.alus.easenopeus * 0.5f);  // liiku counts it down by one first
  const float karki = o.x + 2 * (o.easeviive - 1) / 20 + (float)o.alus.sade;
  Player& a = laita(1, 3, karki, 80.3f);
  Player& b = laita(2, 3, karki, 79.7f);
  o.liiku();
  EXPECT_FLOAT_EQ(a.energia, (float)(a.alus.energia - o.alus.edamage));
  EXPECT_FLOAT_EQ(b.energia, (float)(b.alus.energia - o.alus.edamage));
  EXPECT_EQ(o.ampumispuoli, 1);
  o.liiku();
  EXPECT_FLOAT_EQ(a.energia, (float)(a.alus.energia - o.alus.edamage));
}

TEST_F(Specials, SplittersBouncersSeekersAndDrones) {
  {  // a split turns the twins towards an enemy off the line of flight
    Player& o = laita(0, 21, -100, 80);
    laita(1, 1, -60, 100);
    o.ease();
    for (int f = 0; f < 26; ++f) o.liikutaePadit();
    ASSERT_EQ(elavat(o), 2);
    EXPECT_GT(o.epati[0].yv, 0);
    EXPECT_GT(o.epati[1].yv, 0);
  }

  Player& o = laita(0, 21, -100, 80);
  laita(1, 1, 100, -100);
  o.ease();
  for (int f = 0; f < 76; ++f) {
    o.liikutaePadit();
    o.tarkistaHajosikoPadit();
  }
  EXPECT_EQ(elavat(o), 8);  // split three times, the twins clear of each other

  Player& b = laita(0, 8, 0, 80);
  erikoinen(0, 0, 159.9f, 80, 0.4f, 0);
  b.liikutaePadit();
  b.liikutaePadit();
  EXPECT_LT(b.epati[0].xv, 0);  // off the wall
  {                             // and off a hull: it hurts, flies back and lives on
    Player& k = laita(1, 3, 20, 80);
    erikoinen(0, 0, 14, 80, 0.4f, 0);
    for (int f = 0; f < 10; ++f) b.liikutaePadit();
    EXPECT_FLOAT_EQ(k.energia, (float)(k.alus.energia - b.alus.edamage));
    EXPECT_LT(b.epati[0].xv, 0);
    EXPECT_GT(b.epati[0].aika, 0);
  }

  Player& h = laita(0, 13, -50, 80);
  Player& k = laita(1, 1, -50, 40);
  h.ease();
  for (int f = 0; f < 150; ++f) h.liikutaePadit();
  EXPECT_LT(k.energia, k.alus.energia);  // came round and hit

  Player& s = laita(0, 9, 60, 60);
  s.ease();
  EXPECT_EQ(elavat(s), 4);
  for (int f = 0; f < 50; ++f) s.liikutaePadit();
  EXPECT_NEAR(std::hypot(s.epati[0].x - s.x, s.epati[0].y - s.y), s.alus.sade * 2 + 3, 0.01);
}

TEST_F(Specials, BurstsOfShotsThatBreakShotsDoNotWearThemselvesDown) {
  for (int n : {1, 3, 16, 22}) {
    for (unsigned siemen = 1; siemen < 6; ++siemen) {
      simscene::maailma(2, 0, siemen);
      Player& p = laita(0, n, -100, 80, 30.0f * siemen);
      laita(1, 1, 100, -100);
      p.ease();
      const int alussa = elavat(p);
      EXPECT_GE(alussa, n == 16 ? 20 : 5) << "kind " << n;
      for (int f = 0; f < 45; ++f) {
        p.liikutaePadit();
        p.tarkistaHajosikoPadit();
      }
      EXPECT_EQ(elavat(p), alussa) << "kind " << n << " seed " << siemen;
    }
  }
}

// Every kind's special shots and effects show once fired, and nothing before.
TEST(SpecialsDrawing, EveryKindShowsItsShotsAndEffects) {
  ASSERT_EQ(chdir(VORTA_DATA_DIR), 0);
  ASSERT_TRUE(testutil::gameWindow(512, 384).ok());
  simscene::maailma(2, 0, 7);
  sets.cammode = 1;
  camposx = -60;  // over the ship, clear of the planet
  camposy = 0;
  camposz = 120;
  auto valaistuja = [](Player& p) {
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    asetaKameraJaValo();
    p.piirraePadit();
    const std::vector<unsigned char> kuva = testutil::readRgb(0, 0, 512, 384);
    int n = 0;
    for (size_t i = 0; i + 2 < kuva.size(); i += 3) n += kuva[i] + kuva[i + 1] + kuva[i + 2] > 60;
    return n;
  };
  for (int n = 0; n < alustyyppeja; ++n) {
    Player& p = laita(0, n, -60, 0);
    laita(1, 1, 100, -100);
    p.liikutaePadit();  // the button was up
    EXPECT_EQ(valaistuja(p), 0) << "kind " << n << " before its special";
    p.pease = true;
    for (int f = 0; f < 20; ++f) {
      p.liiku();
      p.liikutaePadit();
      p.pease = false;
    }
    if (elavat(p) > 0 || n == 10 || n == 19) {  // the shield and the boost have no shots
      EXPECT_GT(valaistuja(p), 5) << "kind " << n;
    }
  }
  EXPECT_EQ(glGetError(), (GLenum)GL_NO_ERROR);
}

}  // namespace
