// The ship-choice screen: cursor keys, what a confirmed entry buys, the computer
// pilot's target and its key timing, and the screen itself in a window.
#include <GL/gl.h>
#include <gtest/gtest.h>

#include <set>

#include "Main.h"
#include "glapi.h"
#include "localgame.h"
#include "simscene.h"
#include "testutil.h"

namespace {

class ShipChoice : public ::testing::Test {
 protected:
  void SetUp() override {
    simscene::maailma(4);
    for (int i = 0; i < 4; ++i) simscene::laita(i, 0, 100, 20.0f * i);
    entterpressed = false;
  }
  void TearDown() override { entterpressed = false; }
  Player& p = player[0];
};

TEST_F(ShipChoice, CursorKeysWrapOverTheShipsAndTheRandomEntry) {
  int kursori = 0;
  p.pylos = true;
  EXPECT_FALSE(alusvalinnanSyote(p, kursori));
  EXPECT_EQ(kursori, satunnainenKohta);
  p.pleft = true;
  EXPECT_FALSE(alusvalinnanSyote(p, kursori));
  EXPECT_EQ(kursori, 0);
  p.palas = true;
  alusvalinnanSyote(p, kursori);
  p.pright = true;
  alusvalinnanSyote(p, kursori);
  EXPECT_EQ(kursori, 0);
  EXPECT_FALSE(p.pylos || p.palas || p.pleft || p.pright);

  p.pfire = true;
  EXPECT_TRUE(alusvalinnanSyote(p, kursori));
  EXPECT_FALSE(p.pfire);
  entterpressed = true;
  EXPECT_TRUE(alusvalinnanSyote(p, kursori));
  EXPECT_FALSE(entterpressed);
}

TEST_F(ShipChoice, BuyingTakesOnlyWhatThePlayerCanPayFor) {
  p.pisteet = 20;
  int kursori = 16;  // costs 47: the cursor moves to ship 2 and nothing is bought
  EXPECT_FALSE(ostaValinta(0, kursori));
  EXPECT_EQ(kursori, 2);
  EXPECT_FLOAT_EQ(p.pisteet, 20);
  EXPECT_EQ(p.alus.numero, 0);
  EXPECT_TRUE(ostaValinta(0, kursori));
  EXPECT_EQ(p.alus.numero, 2);
  EXPECT_FLOAT_EQ(p.pisteet, 20 - 9);

  std::set<int> saadut;  // the random entry draws among the affordable ships only
  for (unsigned siemen = 1; siemen <= 200; ++siemen) {
    srand(siemen);
    p.pisteet = 17;
    kursori = satunnainenKohta;
    ASSERT_TRUE(ostaValinta(0, kursori));
    EXPECT_LE(alus[p.alus.numero].pistemaara, 17);
    EXPECT_FLOAT_EQ(p.pisteet, 17 - float(alus[p.alus.numero].pistemaara));
    saadut.insert(p.alus.numero);
  }
  EXPECT_GT(saadut.size(), 4u);  // still a real draw among those

  const int ennen = p.alus.numero;
  p.pisteet = 8;  // the cheapest ship costs 9: the player is out
  valitseAlus(0);
  EXPECT_FLOAT_EQ(p.pisteet, -1);
  EXPECT_EQ(p.alus.numero, ennen);
}

// The enemy is the first player of another team; its ship decides the answers.
TEST_F(ShipChoice, ComputerPilotCountersTheFirstEnemyShipElsePicksAnAffordableOne) {
  auto kohteet = [] {  // what the pilot aims at over 300 seeds
    std::set<int> saadut;
    for (unsigned siemen = 1; siemen <= 300; ++siemen) {
      srand(siemen);
      saadut.insert(tietokoneenKohde(0));
    }
    return saadut;
  };
  p.pisteet = 200;
  player[1].tiimi = player[0].tiimi;  // a team mate is not countered
  simscene::laita(3, 1, 0, 50);
  const std::pair<int, std::set<int>> vastaukset[] = {
      {6, {6, 12, -1}}, {5, {4, 2, -1}}, {13, {4, -1}}, {16, {0, -1}}, {3, {-1}}};
  for (const auto& [vihollisenAlus, odotetut] : vastaukset) {
    simscene::laita(2, vihollisenAlus, 0, 100);
    EXPECT_EQ(kohteet(), odotetut) << vihollisenAlus;
  }
  // Short of money it meets even the random entry's enemy with a ship it can pay for.
  p.pisteet = 16;
  for (int t : kohteet()) {
    ASSERT_TRUE(t >= 0 && t < 24) << t;
    EXPECT_LE(alus[t].pistemaara, 16);
  }
  // Without an enemy it draws among them all.
  for (int i = 1; i < 4; ++i) player[i].tiimi = player[0].tiimi;
  p.pisteet = 200;
  const std::set<int> ilmanVihollista = kohteet();
  EXPECT_GT(ilmanVihollista.size(), 10u);
  EXPECT_TRUE(*ilmanVihollista.begin() >= 0 && *ilmanVihollista.rbegin() <= 23);
}

TEST_F(ShipChoice, ComputerPilotPressesEveryFiveTicksAndConfirmsFiftyLater) {
  struct Case {
    int kohde, kursori, tikkeja;
  };
  for (const Case& c : {Case{3, 3, 3 * 5 + 50}, Case{-1, satunnainenKohta, 5 + 50}, Case{0, 0, 50}}) {
    TietokoneenValinta ai(c.kohde);
    p.pylos = p.palas = p.pfire = false;
    int kursori = 0, tikki = 0;
    for (; tikki < 500; ++tikki) {
      ai.paina(p, 1, false);
      if (alusvalinnanSyote(p, kursori)) break;
    }
    EXPECT_EQ(tikki + 1, c.tikkeja) << c.kohde;
    EXPECT_EQ(kursori, c.kursori) << c.kohde;
  }
  // Without a screen it acts at every call.
  TietokoneenValinta heti(2);
  int kursori = 0, kutsuja = 0;
  do {
    heti.paina(p, 0, true);
    ++kutsuja;
  } while (!alusvalinnanSyote(p, kursori));
  EXPECT_EQ(kutsuja, 3);
  EXPECT_EQ(kursori, 2);
}

TEST_F(ShipChoice, ComputerPilotsOfABigGameChooseWithoutAScreen) {
  players = 6;
  for (int i = 0; i < 6; ++i) {
    simscene::laita(i, 0, 100, 10.0f * i);
    player[i].ihmispelaaja = false;
    player[i].pisteet = 100;
  }
  simscene::laita(5, 5, 0, 100);
  for (int i = 0; i < 5; ++i) player[i].tiimi = 0;  // slot 5 is everybody's enemy
  for (int i = 0; i < 5; ++i) {
    srand(40 + i);
    valitseAlus(i);  // returns at once: no window is needed
    EXPECT_FLOAT_EQ(player[i].pisteet, 100 - float(player[i].alus.pistemaara)) << i;
    EXPECT_FALSE(player[i].pylos || player[i].palas || player[i].pfire);
  }
}

// --- The screen, with a fake clock.

class ShipChoiceWindow : public ShipChoice {
 protected:
  void SetUp() override {
    ShipChoice::SetUp();
    ASSERT_TRUE(testutil::menuScreen(W, H, 30));
    starttime = 0;
    framecounter = oldframecounter = 0;
    calculatefps = 100;
  }
  testutil::FakeClock kello;
  static const int W = 400, H = 300;
};

TEST_F(ShipChoiceWindow, AComputerPilotOfASmallGameTakesItsTimeOnScreen) {
  players = 2;
  player[1].ihmispelaaja = false;
  player[1].pisteet = 200;
  simscene::laita(0, 5, 0, 100);  // the enemy flies ship 5
  for (unsigned siemen : {3u, 11u, 29u}) {
    srand(siemen);
    const int t = tietokoneenKohde(1);
    const int odotettu = t > 0 ? 5 * t + 50 : t < 0 ? 5 + 50 : 50;
    srand(siemen);
    const int alku = framecounter;
    valitseAlus(1);
    EXPECT_EQ(framecounter - alku, odotettu) << siemen;
  }
}

// Another entry, another ship on the right of the screen.
TEST_F(ShipChoiceWindow, TheScreenShowsTheShipOfTheEntry) {
  p.pisteet = 100;
  currenttime = 0;
  auto oikea = [](int kursori) {
    drawAlusValinta(0, kursori);
    return testutil::readRgb(W * 3 / 5, 0, W * 2 / 5, H);
  };
  const auto laiva4 = oikea(4), laiva20 = oikea(20), satunnainen = oikea(satunnainenKohta);
  auto erilaisia = [](const std::vector<GLubyte>& a, const std::vector<GLubyte>& b) {
    int n = 0;
    for (size_t i = 0; i < a.size(); ++i) n += std::abs(int(a[i]) - int(b[i])) > 40;
    return n;
  };
  EXPECT_GT(erilaisia(laiva4, laiva20), 200);
  EXPECT_GT(erilaisia(laiva4, satunnainen), 200);
}

}  // namespace
