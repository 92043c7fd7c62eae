// The end of a network match: the victory message the host sends, the client's handling
// of it, what the network victory screens show, and the sends the screen keeps flushing.
#include <gtest/gtest.h>

#include <cerrno>
#include <initializer_list>
#include <map>
#include <string>
#include <utility>

#include "Main.h"
#include "net.h"
#include "peliloppu.h"
#include "simscene.h"
#include "testutil.h"

namespace {

using namespace std::string_literals;

std::map<TCPsocket, std::string> saadut;
TCPsocket rikki = nullptr;  // sends to this one fail
int silmukoita = 0;

int kaappaa(TCPsocket s, const void* data, int n) {
  if (s == rikki) {
    errno = EPIPE;
    return -1;
  }
  saadut[s].append(static_cast<const char*>(data), static_cast<size_t>(n));
  return n;
}
void eiSulkua(TCPsocket) {}

char tunnukset[yhteyksia + 1];
TCPsocket tunnus(int c) { return reinterpret_cast<TCPsocket>(&tunnukset[c]); }

// Slot i gets ship i on team `tiimi` with `pisteet`, in slot order.
void pelaajat(std::initializer_list<std::pair<int, float>> rivit) {
  players = 0;
  for (const auto& [tiimi, pisteet] : rivit) {
    Player& p = simscene::laita(players, players, 0, 0);
    p.tiimi = tiimi;
    p.pisteet = pisteet;
    ++players;
  }
}

int hinta(int n) { return static_cast<int>(alus[n].pistemaara); }

class NetVictory : public ::testing::Test {
protected:
  void SetUp() override {
    simscene::kataloogi();
    tcpLahetys = kaappaa;
    tcpSulku = eiSulkua;
    saadut.clear();
    rikki = nullptr;
    silmukoita = 0;
    verkkoVoitonSilmukka = [] { ++silmukoita; };
    netGameQuit = false;
    hostpeli = true;
    joinpeli = false;
    playerslots = 4;
    for (int c = 1; c < playerslots; ++c) tcpsoketit[c] = tunnus(c);
  }
  void TearDown() override {
    for (int c = 1; c < yhteyksia; ++c) tcpsoketit[c] = nullptr;
    joinsoketti = nullptr;
    tcpLahetys = SDLNet_TCP_Send;
    tcpSulku = SDLNet_TCP_Close;
    verkkoVoitonSilmukka = netVictoryLoop;
    hostpeli = joinpeli = false;
    gamemode = 0;
  }
  // The client's side: the message arrives over an open connection.
  int asiakkaana(const std::string& viesti) {
    hostpeli = false;
    joinpeli = true;
    joinsoketti = tunnus(hostiYhteys);
    return kasitteleVictoryMsg(viesti.data(), static_cast<int>(viesti.size()));
  }
};

TEST_F(NetVictory, DeathMatchSendsThePlayersStillInAndTheClientTakesTheirScores) {
  gamemode = 1;
  pelaajat({{2, 300.7f}, {0, -1}, {1, 0}, {3, -7}});
  netVictory();
  // Team of the last player still in, two rows (score truncated, slot), ';' and a zero byte.
  const std::string odotettu = "victoryd\x01\x02" "\x2c\x01\x00\x00" "\x00\x00\x02\x00" ";\0"s;
  for (int c = 1; c < 4; ++c) EXPECT_EQ(saadut[tunnus(c)], odotettu) << c;
  EXPECT_EQ(silmukoita, 1);
  const Voittonakyma isanta = voittonakyma(Voittoruutu::isanta, 0);
  EXPECT_EQ(isanta.voittajat, 0b101u);  // everyone still in, whatever the team
  EXPECT_EQ(isanta.tiimi, 2);

  for (int i = 0; i < players; ++i) player[i].pisteet = 55;
  gamemode = 3;
  EXPECT_EQ(asiakkaana(odotettu), 20);
  EXPECT_EQ(gamemode, 0);
  EXPECT_EQ(voittotiimi, 1);
  EXPECT_FLOAT_EQ(player[0].pisteet, 300);
  EXPECT_FLOAT_EQ(player[2].pisteet, 0);
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
  EXPECT_EQ(saadut[tunnus(1)], "victoryo\x02;\0"s);
  // The host's own screen shows the first team that reached the limit.
  const Voittonakyma isanta = voittonakyma(Voittoruutu::isanta, 0);
  EXPECT_EQ(isanta.tiimi, 2);
  EXPECT_EQ(isanta.voittajat, 0b1u);
  EXPECT_FALSE(isanta.krediitit);

  saadut.clear();
  pelaajat({{1, -1}, {2, -3}});
  netVictory();
  EXPECT_EQ(saadut[tunnus(2)], "victoryo\xff;\0"s);
}

TEST_F(NetVictory, OtherModesSendNothingAndOneSlotGoesStraightToTheScreen) {
  pelaajat({{0, 10}, {1, 10}});
  gamemode = 5;
  netVictory();
  EXPECT_TRUE(saadut.empty());
  EXPECT_EQ(silmukoita, 0);
  gamemode = 0;
  playerslots = 1;
  netVictory();
  EXPECT_TRUE(saadut.empty());
  EXPECT_EQ(silmukoita, 1);
}

TEST_F(NetVictory, AFailedSendIsReportedAndTheOtherClientsStillGetTheMessage) {
  gamemode = 2;
  mpcredits = 10;
  pelaajat({{0, 10}, {1, 3}});
  rikki = tunnus(2);
  testing::internal::CaptureStdout();
  netVictory();
  EXPECT_NE(testing::internal::GetCapturedStdout().find("SDLNet_TCP_Send: "), std::string::npos);
  EXPECT_EQ(saadut[tunnus(1)].size(), 11u);
  EXPECT_EQ(saadut[tunnus(3)].size(), 11u);
  EXPECT_EQ(tcpsoketit[2], nullptr);
  EXPECT_EQ(silmukoita, 1);
}

TEST_F(NetVictory, ClientScreensDrawTheReceivedTeamOrNobody) {
  pelaajat({{2, 50}, {2, 50}, {1, 50}, {2, 50}});
  player[9].pisteet = 0;
  // Rows: slot 0 went below zero, slot 1 has 77, a slot outside the match is ignored.
  EXPECT_EQ(asiakkaana("victoryd\x02\x03" "\xfd\xff\x00\x00" "\x4d\x00\x01\x00" "\x28\x00\x09\x00" ";\0"s), 24);
  EXPECT_FLOAT_EQ(player[0].pisteet, -3);
  EXPECT_FLOAT_EQ(player[9].pisteet, 0);
  Voittonakyma v = voittonakyma(Voittoruutu::asiakas, 0);
  EXPECT_EQ(v.voittajat, 0b1010u);  // still in and of the received team
  EXPECT_EQ(v.tiimi, 3);
  EXPECT_EQ(v.krediittiSumma, 77 + hinta(1) + 50 + hinta(3));

  EXPECT_EQ(asiakkaana("victoryo\x02;\0"s), 11);
  EXPECT_EQ(gamemode, 2);  // whichever objective mode it was
  v = voittonakyma(Voittoruutu::asiakas, 0);
  EXPECT_EQ(v.voittajat, 0b1011u);  // the whole team, scores aside
  EXPECT_FALSE(v.krediitit);

  asiakkaana("victoryo\xff;\0"s);
  v = voittonakyma(Voittoruutu::asiakas, 0);
  EXPECT_EQ(v.voittajia, 0);
  EXPECT_STREQ(v.eiVoittajaa, "nobody won");
  EXPECT_STREQ(voittonakyma(Voittoruutu::isanta, 0).eiVoittajaa, "draw");
}

TEST_F(NetVictory, APartOrAnotherMessageChangesNothing) {
  pelaajat({{0, 5}, {1, 5}});
  const std::string koko = "victoryd\x01\x02" "\x07\x00\x00\x00" "\x08\x00\x01\x00" ";\0"s;
  for (size_t n = 0; n < koko.size(); ++n) {
    gamemode = 3;
    EXPECT_EQ(asiakkaana(koko.substr(0, n)), 0) << n;
    EXPECT_EQ(gamemode, 3);
    EXPECT_FLOAT_EQ(player[0].pisteet, 5);
    EXPECT_NE(joinsoketti, nullptr);
  }
  for (const std::string& vieras : {"victoryx\x01;\0\0\0"s, "victorio\x01;\0\0\0"s, "quiting..;\0"s})
    EXPECT_EQ(asiakkaana(vieras), 0) << vieras;
  EXPECT_EQ(silmukoita, 0);
  EXPECT_EQ(kasitteleVictoryMsg(nullptr, 40), 0);
  // A row count read as negative: no rows, the rest as usual.
  EXPECT_EQ(asiakkaana("victoryd\x01\x80;\0"s), 12);
  EXPECT_EQ(gamemode, 0);
  EXPECT_FLOAT_EQ(player[0].pisteet, 5);
}

// The queue of a client whose kernel takes nothing at first: the victory screen sends it
// when the kernel frees up within 2 s, and gives up after that.
TEST_F(NetVictory, TheScreenKeepsSendingForTwoSecondsOnly) {
  ASSERT_TRUE(testutil::menuScreen(320, 240, 31));
  testutil::FakeClock kello;
  static Uint32 vapautuu;
  tcpLahetys = [](TCPsocket s, const void* data, int n) {
    if (testutil::FakeClock::now < vapautuu) {
      errno = EAGAIN;
      return -1;
    }
    return kaappaa(s, data, n);
  };
  testutil::FakeClock::onSleep = [] { entterpressed = testutil::FakeClock::now >= 3000; };
  verkkoVoitonSilmukka = netVictoryLoop;
  gamemode = 0;
  pelaajat({{0, 10}, {1, -1}});
  for (Uint32 hetki : {1500u, 2500u}) {
    saadut.clear();
    vapautuu = hetki;
    testutil::FakeClock::now = 0;
    starttime = 0;
    framecounter = oldframecounter = 0;
    netVictory();
    EXPECT_EQ(saadut[tunnus(1)].size(), hetki < 2000 ? 16u : 0u) << hetki;
    for (int c = 1; c < 4; ++c) yhteys[c].jononAlku = yhteys[c].jononLoppu = 0;
  }
}

}  // namespace
