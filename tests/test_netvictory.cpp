// The end of a network match: the host's victory message, the client's handling of it,
// what the network victory screens show, and the sends the screen keeps flushing.
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>

#include "simscene.h"
#include "testutil.h"
#include "verkkoapu.h"

namespace {

using namespace std::string_literals;
using namespace verkkoapu;

int silmukoita;

// Slot i flies ship i; teams and scores in slot order.
void pelaajat(std::initializer_list<std::pair<int, float>> rivit) {
  players = 0;
  for (const auto& [tiimi, pisteet] : rivit) {
    simscene::laita(players, players, 0, 0).tiimi = tiimi;
    player[players++].pisteet = pisteet;
  }
}

class NetVictory : public ::testing::Test {
 protected:
  void SetUp() override {
    simscene::kataloogi();
    tcpLahetys = kaappaa;
    tcpSulku = [](TCPsocket) {};
    lahetetyt.clear();
    silmukoita = 0;
    verkkoVoitonSilmukka = [] { ++silmukoita; };
    netGameQuit = joinpeli = false;
    hostpeli = true;
    playerslots = 4;
    for (int c = 1; c < playerslots; ++c) tcpsoketit[c] = tunnus(c);
  }
  void TearDown() override {
    palautaVerkko();
    gamemode = 0;
  }
  // The message reaches a client over its open connection.
  static int asiakkaana(const std::string& viesti) {
    hostpeli = false;
    joinpeli = true;
    joinsoketti = tunnus(hostiYhteys);
    return kasitteleVictoryMsg(viesti.data(), static_cast<int>(viesti.size()));
  }
  static Voittonakyma nakyma(Voittoruutu r) { return voittonakyma(r, 0); }
};

TEST_F(NetVictory, DeathMatchSendsThePlayersStillInAndTheClientTakesTheirScores) {
  gamemode = 1;
  pelaajat({{2, 300.7f}, {0, -1}, {1, 0}, {3, -7}});
  netVictory();
  // The last one still in gives the team; rows of score (truncated) and slot; ';' and a zero.
  const std::string viesti = "victoryd\x01\x02\x2c\x01\x00\x00\x00\x00\x02\x00;\0"s;
  for (int c = 1; c < 4; ++c) EXPECT_EQ(lahetetyt[tunnus(c)], viesti) << c;
  EXPECT_EQ(silmukoita, 1);
  EXPECT_EQ(nakyma(Voittoruutu::isanta).voittajat, 0b101u);  // everyone still in, whatever the team
  EXPECT_EQ(nakyma(Voittoruutu::isanta).tiimi, 2);

  for (int i = 0; i < players; ++i) player[i].pisteet = 55;
  gamemode = 3;
  EXPECT_EQ(asiakkaana(viesti), 20);
  EXPECT_EQ(gamemode, 0);
  EXPECT_EQ(voittotiimi, 1);
  EXPECT_FLOAT_EQ(player[0].pisteet, 300);
  EXPECT_FLOAT_EQ(player[1].pisteet, 55);  // no row: as it was
  EXPECT_TRUE(netGameQuit);
  EXPECT_EQ(joinsoketti, nullptr);
  EXPECT_EQ(silmukoita, 2);
}

TEST_F(NetVictory, ObjectiveMessageNamesTheLastPlayerStillInNotTheOneAtTheLimit) {
  gamemode = 3;
  mpcredits = 100;
  pelaajat({{1, 120}, {4, 130}, {2, 5}, {3, -2}});
  netVictory();
  EXPECT_EQ(lahetetyt[tunnus(1)], "victoryo\x02;\0"s);
  // The host's own screen shows the first team that reached the limit.
  EXPECT_EQ(nakyma(Voittoruutu::isanta).tiimi, 2);
  EXPECT_EQ(nakyma(Voittoruutu::isanta).voittajat, 0b1u);
  lahetetyt.clear();
  pelaajat({{1, -1}, {2, -3}});
  netVictory();
  EXPECT_EQ(lahetetyt[tunnus(2)], "victoryo\xff;\0"s);
}

TEST_F(NetVictory, NothingIsSentInOtherModesWithOneSlotOrToAFailedClient) {
  pelaajat({{0, 10}, {1, 10}});
  gamemode = 5;
  netVictory();
  EXPECT_EQ(silmukoita, 0);  // no screen either
  gamemode = 2;
  playerslots = 1;
  netVictory();
  EXPECT_TRUE(lahetetyt.empty());
  EXPECT_EQ(silmukoita, 1);
  playerslots = 4;
  rikki = tunnus(2);
  testing::internal::CaptureStdout();
  netVictory();
  EXPECT_NE(testing::internal::GetCapturedStdout().find("SDLNet_TCP_Send: "), std::string::npos);
  EXPECT_EQ(lahetetyt[tunnus(1)].size(), 11u);
  EXPECT_EQ(lahetetyt[tunnus(3)].size(), 11u);
  EXPECT_EQ(tcpsoketit[2], nullptr);
}

TEST_F(NetVictory, ClientScreensDrawTheReceivedTeamOrNobody) {
  pelaajat({{2, 50}, {2, 50}, {1, 50}, {2, 50}});
  player[9].pisteet = 0;
  // Slot 0 below zero, slot 1 with 77, and a slot outside the match.
  EXPECT_EQ(asiakkaana("victoryd\x02\x03\xfd\xff\x00\x00\x4d\x00\x01\x00\x28\x00\x09\x00;\0"s), 24);
  EXPECT_FLOAT_EQ(player[0].pisteet, -3);
  EXPECT_FLOAT_EQ(player[9].pisteet, 0);
  Voittonakyma v = nakyma(Voittoruutu::asiakas);
  EXPECT_EQ(v.voittajat, 0b1010u);  // still in and of the received team
  EXPECT_EQ(v.tiimi, 3);
  EXPECT_EQ(v.krediittiSumma, 77 + int(alus[1].pistemaara) + 50 + int(alus[3].pistemaara));
  EXPECT_EQ(asiakkaana("victoryo\x02;\0"s), 11);
  EXPECT_EQ(gamemode, 2);                                      // whichever objective mode it was
  EXPECT_EQ(nakyma(Voittoruutu::asiakas).voittajat, 0b1011u);  // the whole team, scores aside
  asiakkaana("victoryo\xff;\0"s);
  v = nakyma(Voittoruutu::asiakas);
  EXPECT_EQ(v.voittajia, 0);
  EXPECT_STREQ(v.eiVoittajaa, "nobody won");
  EXPECT_STREQ(nakyma(Voittoruutu::isanta).eiVoittajaa, "draw");
}

TEST_F(NetVictory, APartOrAnotherMessageChangesNothing) {
  pelaajat({{0, 5}, {1, 5}});
  const std::string koko = "victoryd\x01\x02\x07\x00\x00\x00\x08\x00\x01\x00;\0"s;
  for (size_t n = 0; n < koko.size(); ++n) {
    gamemode = 3;
    EXPECT_EQ(asiakkaana(koko.substr(0, n)), 0) << n;
    EXPECT_EQ(gamemode, 3);
    EXPECT_NE(joinsoketti, nullptr);
  }
  EXPECT_EQ(asiakkaana("victoryx\x01;\0\0\0"s), 0);
  EXPECT_EQ(silmukoita, 0);
  EXPECT_FLOAT_EQ(player[0].pisteet, 5);
  EXPECT_EQ(asiakkaana("victoryd\x01\x80;\0"s), 12);  // a row count read as negative: no rows
}

// A client whose kernel takes nothing at first: the screen sends its queue when the kernel
// frees up within 2 s, and gives up after that.
TEST_F(NetVictory, TheScreenKeepsSendingForTwoSecondsOnly) {
  ASSERT_TRUE(testutil::menuScreen(320, 240, 31));
  testutil::FakeClock kello;
  static Uint32 vapautuu;
  tcpLahetys = [](TCPsocket s, const void* data, int n) {
    if (testutil::FakeClock::now >= vapautuu) return kaappaa(s, data, n);
    errno = EAGAIN;
    return -1;
  };
  testutil::FakeClock::onSleep = [] { entterpressed = testutil::FakeClock::now >= 3000; };
  verkkoVoitonSilmukka = netVictoryLoop;
  pelaajat({{0, 10}, {1, -1}});
  for (Uint32 hetki : {1500u, 2500u}) {
    lahetetyt.clear();
    vapautuu = hetki;
    testutil::FakeClock::now = starttime = framecounter = oldframecounter = 0;
    netVictory();
    EXPECT_EQ(lahetetyt[tunnus(1)].size(), hetki < 2000 ? 16u : 0u) << hetki;
    for (int c = 1; c < 4; ++c) yhteys[c].jononAlku = yhteys[c].jononLoppu = 0;
  }
}

}  // namespace
