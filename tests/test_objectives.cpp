// The objective modes: capture the flower, flower domination, eat the mushroom.
#include <gtest/gtest.h>

#include "ctf.h"
#include "domination.h"
#include "sieni.h"
#include "simscene.h"

namespace {

class Objectives : public ::testing::Test {
 protected:
  void SetUp() override {
    simscene::maailma(4, 0, 3);
    for (int i = 0; i < maxPlayers; ++i) asetu(i, 0, -60 + 10.0f * i, i % 2);
    alustaCPisteet();
    alustaDPisteet();
    alustaSPisteet();
    aloitaCPisteet();
  }
  static void asetu(int i, float x, float y, int tiimi) { simscene::laita(i, 0, x, y).tiimi = tiimi; }
};

// --- Capture the flower --------------------------------------------------------

TEST_F(Objectives, FlowersStartHomeAndOnlyTeamsInPlayTakePartOrMove) {
  for (int i = 0; i < cpisteita; ++i) {
    EXPECT_EQ(cpiste[i].player, kukkaKotona);
    EXPECT_EQ(cpiste[i].enabled, i < 2) << i;  // teams 0 and 1 are in play
  }
  // A team number beyond the flowers must not reach past the array.
  player[2].tiimi = cpisteita;
  player[3].tiimi = -1;
  cpiste[1].player = 3;
  cpiste[1].x = 5;
  aloitaCPisteet();
  EXPECT_EQ(cpiste[1].player, kukkaKotona);
  EXPECT_FLOAT_EQ(cpiste[1].x, -140);
  EXPECT_TRUE(cpiste[0].enabled);
  EXPECT_FALSE(cpiste[2].enabled);

  asetu(0, 140, -100, 0);  // on a disabled flower, which stays put
  laskeCPisteet();
  EXPECT_EQ(cpiste[2].player, kukkaKotona);
}

TEST_F(Objectives, CaptureNeedsTheCarriersOwnFlowerAtHome) {
  cpiste[0].player = 1;  // team 1 carries team 0's flower
  cpiste[1].player = kukkaPudonnut;
  cpiste[1].x = cpiste[1].y = 50;
  asetu(1, -140, -95, 1);
  laskeCPisteet();
  EXPECT_EQ(cpiste[0].player, 1);  // keeps carrying
  EXPECT_FLOAT_EQ(player[1].pisteet, 0);

  cpiste[1].player = kukkaKotona;
  cpiste[1].x = -140;
  cpiste[1].y = -100;
  laskeCPisteet();
  EXPECT_EQ(cpiste[0].player, kukkaKotona);
  EXPECT_FLOAT_EQ(cpiste[0].x, 140);
  EXPECT_FLOAT_EQ(player[1].pisteet, ctfpisteet);
  EXPECT_FLOAT_EQ(player[3].pisteet, ctfpisteet);
  EXPECT_FLOAT_EQ(player[0].pisteet, 0);

  cpiste[0].player = 1;  // a carrier whose team has no flower never scores
  player[1].tiimi = cpisteita;
  laskeCPisteet();
  EXPECT_EQ(cpiste[0].player, 1);
}

TEST_F(Objectives, ADeadCarrierDropsTheFlowerWhereHeIs) {
  asetu(3, 139, 101, 1);
  player[3].kuolema = 350;  // picked up regardless of health
  laskeCPisteet();
  EXPECT_EQ(cpiste[0].player, 3);
  asetu(3, 60, 70, 1);
  player[3].kuolema = 349;
  laskeCPisteet();
  EXPECT_EQ(cpiste[0].player, kukkaPudonnut);
  EXPECT_FLOAT_EQ(cpiste[0].x, 60);
  EXPECT_FLOAT_EQ(cpiste[0].y, 70);

  cpiste[0].player = 3;
  player[3].kuolema = 0;
  player[3].energia = -0.5f;
  laskeCPisteet();
  EXPECT_EQ(cpiste[0].player, kukkaPudonnut);
}

TEST_F(Objectives, EnemiesTakeAFlowerFromHomeAndADroppedOneGoesToTheFirstPlayerNear) {
  asetu(0, 140, 97, 0);  // own flower at home: ignored
  asetu(2, 143, 102, 1);
  laskeCPisteet();
  EXPECT_EQ(cpiste[0].player, 2);
  SetUp();

  cpiste[0].player = kukkaPudonnut;
  cpiste[0].x = 20;
  cpiste[0].y = 20;
  asetu(0, 24, 20, 0);
  asetu(1, 21, 20, 1);
  laskeCPisteet();  // slot 0 comes first and sends it home
  EXPECT_EQ(cpiste[0].player, kukkaKotona);
  EXPECT_FLOAT_EQ(cpiste[0].x, 140);

  cpiste[0].player = kukkaPudonnut;
  cpiste[0].x = 21;
  cpiste[0].y = 13.01f;  // player 1 within 7, player 0 not
  laskeCPisteet();
  EXPECT_EQ(cpiste[0].player, 1);
}

// --- Domination -------------------------------------------------------------------

TEST_F(Objectives, DominationPointsAreTakenHeldAndContested) {
  asetu(1, 135, 100, 1);
  laskeDPisteet();
  EXPECT_EQ(dpiste[0].tiimi, 1);
  EXPECT_FLOAT_EQ(player[1].pisteet, pisteetfreimissa);
  EXPECT_FLOAT_EQ(player[3].pisteet, pisteetfreimissa);

  asetu(0, 145, 100, 0);  // contested: owner unchanged and still scoring
  laskeDPisteet();
  EXPECT_EQ(dpiste[0].tiimi, 1);
  EXPECT_FLOAT_EQ(player[1].pisteet, 2 * pisteetfreimissa);
  EXPECT_FLOAT_EQ(player[0].pisteet, 0);

  asetu(1, 0, 0, 1);  // team 0 alone now takes it
  laskeDPisteet();
  EXPECT_EQ(dpiste[0].tiimi, 0);
  player[0].x = player[0].y = 0;  // and keeps it with nobody near
  laskeDPisteet();
  EXPECT_EQ(dpiste[0].tiimi, 0);
  EXPECT_FLOAT_EQ(player[0].pisteet, 2 * pisteetfreimissa);
}

// --- Mushroom -------------------------------------------------------------------

TEST_F(Objectives, EatenMushroomFeedsTheTeamAndMovesAwayFromTheCentre) {
  asetu(2, 3, 52, 0);  // the first mushroom grows at (0, 50)
  laskeSPisteet();
  EXPECT_FLOAT_EQ(player[0].pisteet, sienipisteet);
  EXPECT_FLOAT_EQ(player[2].pisteet, sienipisteet);
  EXPECT_FLOAT_EQ(player[1].pisteet, 0);
  EXPECT_TRUE(spiste[0].uusiks);
  for (int k = 0; k < 300; ++k) {
    asetu(0, spiste[0].x, spiste[0].y, 0);
    laskeSPisteet();
    const float x = spiste[0].x, y = spiste[0].y;
    EXPECT_GT(x * x + y * y, 499);
    EXPECT_TRUE(x >= -160 && x < 160 && y >= -120 && y < 120) << x << ", " << y;
  }
}

TEST_F(Objectives, TheEatingTeamCarriesOverToLaterMushroomsInTheSameStep) {
  spisteita = 2;
  alustaSPisteet();
  spiste[1] = SPiste{100, 100, false};
  asetu(1, 0, 48, 1);
  laskeSPisteet();
  EXPECT_FLOAT_EQ(player[1].pisteet, 2 * sienipisteet);
  EXPECT_TRUE(spiste[1].uusiks);
  spisteita = 1;
  alustaSPisteet();
}

}  // namespace
