// End of match: the local team and score rules, the leader, the host's rule.
#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>
#include <vector>

#include "Main.h"
#include "peliloppu.h"
#include "scene.h"

namespace {

// Sets the players from (team, score) pairs in slot order.
void pelaajat(std::initializer_list<std::pair<int, float>> rivit) {
  players = static_cast<int>(rivit.size());
  int i = 0;
  for (const auto& [tiimi, pisteet] : rivit) {
    player[i].tiimi = tiimi;
    player[i].pisteet = pisteet;
    ++i;
  }
}

TEST(TeamRule, CountsChangesOfTeamAmongPlayersStillIn) {
  pelaajat({{0, 5}, {1, 5}, {0, 5}});
  EXPECT_FALSE(tiimisaantoLoppu());
  pelaajat({{2, 5}, {2, 0}, {1, -1}});  // zero credits is still in, below zero is out
  EXPECT_TRUE(tiimisaantoLoppu());
  pelaajat({{2, 5}, {1, 0}});
  EXPECT_FALSE(tiimisaantoLoppu());
  pelaajat({{0, -1}, {1, -1}});  // nobody left
  EXPECT_TRUE(tiimisaantoLoppu());
  pelaajat({{0, 3}, {1, -1}, {0, 3}});  // the skipped player does not split the team
  EXPECT_TRUE(tiimisaantoLoppu());
}

TEST(ScoreRule, EndsWhenAnyoneReachesTheLimit) {
  fullcredits = 200;
  pelaajat({{0, 199.9f}, {1, 12}});
  EXPECT_FALSE(pistesaantoLoppu());
  pelaajat({{0, 3}, {1, 200}});
  EXPECT_TRUE(pistesaantoLoppu());
  fullcredits = 0;
  pelaajat({{0, 0}, {1, 0}});
  EXPECT_TRUE(pistesaantoLoppu());
  fullcredits = 200;
}

TEST(Leader, RunningBestIsTruncatedAndTiesKeepTheEarlierSlot) {
  pelaajat({{3, 10}, {4, 10}, {5, 2}});
  EXPECT_EQ(johtavaTiimi(), 3);
  pelaajat({{3, 5.7f}, {4, 5.3f}});  // 5.3 beats the truncated 5
  EXPECT_EQ(johtavaTiimi(), 4);
  pelaajat({{3, -1}, {6, -1.5f}});  // -1 beats -2, -1.5 does not beat -1
  EXPECT_EQ(johtavaTiimi(), 3);
  pelaajat({{3, -2}, {6, -5}});  // nobody above -2: team 0
  EXPECT_EQ(johtavaTiimi(), 0);
}

class HostRule : public ::testing::Test {
 protected:
  void TearDown() override { gamemode = 0; }
};

TEST_F(HostRule, DeathMatchEndsWithOneTeamOrNobodyLeftAndObjectivesAtTheNetworkLimit) {
  for (int tila : {0, 1}) {
    gamemode = tila;
    pelaajat({{0, 5}, {1, 5}, {0, 5}});
    EXPECT_EQ(peliloppu(), 0);
    pelaajat({{1, -1}, {0, 0}, {0, 7}});
    EXPECT_EQ(peliloppu(), 1);
    pelaajat({{1, -1}, {0, -1}});
    EXPECT_EQ(peliloppu(), 1);
    pelaajat({{-1, 5}, {0, 5}});  // a negative first team ends it
    EXPECT_EQ(peliloppu(), 1);
  }
  mpcredits = 50;  // the objective modes use the network limit
  fullcredits = 10;
  for (int tila : {2, 3, 4}) {
    gamemode = tila;
    pelaajat({{0, 49.9f}, {1, 20}});
    EXPECT_EQ(peliloppu(), 0);
    pelaajat({{0, 3}, {1, 50}});
    EXPECT_EQ(peliloppu(), 1);
  }
  gamemode = 7;
  pelaajat({{0, 500}});
  EXPECT_EQ(peliloppu(), 0);
  fullcredits = 200;
}

}  // namespace
