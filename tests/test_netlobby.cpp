// The lobby's handlers fed crafted bytes (sends captured, no sockets): framing, resync,
// announcements, teams, slots, the client's messages, the last-host file and the match.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "Main.h"
#include "Sets.h"
#include "chat.h"
#include "simscene.h"
#include "testutil.h"
#include "verkkoapu.h"

namespace {

using namespace verkkoapu;

int suljettuja = 0;
void sulje(TCPsocket) { ++suljettuja; }

std::string tavut(const char* s, size_t n) { return std::string(s, n); }

class Lobby : public ::testing::Test {
 protected:
  void SetUp() override {
    simscene::kataloogi();
    tcpLahetys = kaappaa;
    tcpSulku = sulje;
    hostpeli = true;
    joinpeli = false;
    alustaAula();
    lahetetyt.clear();
    suljettuja = 0;
    tila[0] = 1;
    pelaajiasoketista[0] = 1;
    snprintf(tcpnick[0][0], 11, "hostman");
    for (int c = 1; c <= 3; ++c) {
      tcpsoketit[c] = tunnus(c);
      tila[c] = 1;
      timeout[c] = 40;
    }
  }
  void TearDown() override { palautaVerkko(); }
  int host(int c, const std::string& b) {
    return hostNetKasittele(c, reinterpret_cast<const unsigned char*>(b.data()), static_cast<int>(b.size()));
  }
  int client(const std::string& b) {
    return joinwaitKasittele(reinterpret_cast<const unsigned char*>(b.data()), static_cast<int>(b.size()));
  }
  // "pelaajia ", the count and each name with its length byte, then the zero.
  static std::string ilmoitus(std::initializer_list<std::string> nimet, int lkm = -1) {
    std::string b = "pelaajia ";
    b += static_cast<char>(lkm >= 0 ? lkm : static_cast<int>(nimet.size()));
    for (const std::string& n : nimet) b += static_cast<char>(n.size()) + n;
    return b + '\0';
  }
  static std::string tiimi(int paikka) { return std::string("team") + static_cast<char>(paikka); }
  // The nicks of slots 0..n-1, joined by '|'.
  static std::string nimet(int n) {
    std::string t = netnick[0];
    for (int s = 1; s < n; ++s) t += std::string("|") + netnick[s];
    return t;
  }
  void asiakkaaksi() {
    hostpeli = false;
    joinpeli = true;
    joinsoketti = tunnus(hostiYhteys);
  }
};

TEST_F(Lobby, TwoMessagesInOneReceiveAndOneSplitOverTwoAreAllHandled) {
  const std::string kaksi = ilmoitus({"anna"}) + tiimi(1);
  ASSERT_EQ(host(1, kaksi), static_cast<int>(kaksi.size()));
  EXPECT_STREQ(netnick[1], "anna");
  EXPECT_EQ(mptiimi[1], 2);

  const std::string viesti = ilmoitus({"bertta", "cecilia"});
  const std::string eka = viesti.substr(0, 13), toka = viesti.substr(13) + tavut("alku huomattu;\0", 15);
  EXPECT_EQ(host(2, eka), 0);  // nothing used until the rest is there
  EXPECT_EQ(pelaajiasoketista[2], 0);
  ASSERT_EQ(host(2, eka + toka), static_cast<int>((eka + toka).size()));
  EXPECT_STREQ(netnick[2], "bertta");
  EXPECT_STREQ(netnick[3], "cecilia");
  EXPECT_EQ(tila[2], 2);
}

TEST_F(Lobby, GarbageIsSkippedToTheNextMessageAndAMessageResetsTheTimeOut) {
  host(1, ilmoitus({"anna"}));
  timeout[1] = 3;
  const std::string b = "\x01\xffzzz;qq;" + tiimi(1) + "tii";
  EXPECT_EQ(host(1, b), static_cast<int>(b.size()) - 3);  // "tii" may begin "tiimit saatu"
  EXPECT_EQ(mptiimi[1], 2);
  EXPECT_EQ(timeout[1], 40);
  EXPECT_EQ(host(1, std::string(600, 'x')), 600);  // a chat line that never ends is dropped
}

TEST_F(Lobby, TeamChangesWrapAndOnlyTouchTheSendersOwnSlots) {
  host(1, ilmoitus({"anna"}));
  host(2, ilmoitus({"bertta"}));
  mptiimi[1] = 15;
  host(1, tiimi(1) + tiimi(2) + tiimi(0) + tiimi(200));
  EXPECT_EQ(mptiimi[1], 0);
  EXPECT_EQ(mptiimi[2], 2);  // client 2's slot
  EXPECT_EQ(mptiimi[0], 0);  // the host's
}

TEST_F(Lobby, NamesUpToElevenBytesAreTakenAndTooManyPlayersAreRefusedAndDropped) {
  std::snprintf(tcpnick[1][2], 11, "old");
  host(1, ilmoitus({"", "abcdefghijk", "abcdefghijkl", "dora"}));
  EXPECT_EQ(nimet(5), "hostman||abcdefghij|old|dora");  // 12 bytes: not taken
  for (int s = 6; s < 16; ++s) mpstatus[s] = 1;
  host(2, ilmoitus({"c", "d"}));  // one slot open
  EXPECT_EQ(lahetetyt[tunnus(2)], tavut("pelaajia liikaa!;\0", 18));
  EXPECT_EQ(tila[2], 0);
  EXPECT_EQ(tcpsoketit[2], nullptr);
  host(3, ilmoitus({}, 0));
  EXPECT_EQ(tila[3], 0);
}

TEST_F(Lobby, SlotsFillInConnectionOrderPastClosedAndComputerSlots) {
  mpstatus[1] = mpstatus[8] = 1;
  mpstatus[2] = mpstatus[6] = 2;
  host(2, ilmoitus({"bertta"}));
  host(1, ilmoitus({"anna", "aino"}));
  // A closed slot after the last player shows "-".
  EXPECT_EQ(nimet(9), "hostman|closed|cpu 1|anna|aino|bertta|cpu 2|-|-");
  EXPECT_EQ(pelaajasoketista[5], 2);
  disconnect(1);
  paivitaPelaajat();
  EXPECT_EQ(nimet(7), "hostman|closed|cpu 1|cpu 2|cpu 3|bertta|cpu 4");  // pilots now
  EXPECT_EQ(suljettuja, 1);
}

TEST_F(Lobby, TheTeamTableArrivesWholeAtTheClientEvenInPieces) {
  host(1, ilmoitus({"anna"}));
  mptiimi[1] = 7;
  mpstatus[5] = 2;
  gamemode = 3;
  mpcredits = 450;
  calculatefps = 120;
  paivitaPelaajat();
  lahetaAlkuRuutu(1);
  const std::string taulu = lahetetyt[tunnus(1)];
  ASSERT_EQ(taulu.size(), 15u + 13 * 16);
  EXPECT_EQ(taulu.substr(0, 7), std::string("tiimit") + '\x10');
  EXPECT_EQ(taulu.back(), ';');

  asiakkaaksi();
  alustaAula();
  gamemode = 0;
  EXPECT_EQ(client(taulu.substr(0, 100)), 0);
  EXPECT_STREQ(netnick[1], "-");
  ASSERT_EQ(client(taulu + "you have"), static_cast<int>(taulu.size()));
  EXPECT_EQ(mptiimi[1], 7);
  EXPECT_EQ(mpstatus[1], 3);
  EXPECT_EQ(mpstatus[5], 2);
  EXPECT_EQ(nimet(6), "hostman|anna|-|-|-|cpu 1");
  EXPECT_EQ(gamemode, 3);
  EXPECT_EQ(mpcredits, 450);
  EXPECT_EQ(playerslots, 16);
}

TEST_F(Lobby, TheClientAnnouncesItsPlayersAndFollowsTheHostToTheStart) {
  asiakkaaksi();
  joinaavia = 2;
  snprintf(sets.nick[0], sizeof sets.nick[0], "eka");
  snprintf(sets.nick[1], sizeof sets.nick[1], "abcdefghijklmno");
  gamequited = started2 = valmiinaalottamaan = false;
  const std::string b = tavut("you have joined the game;\0", 26);
  client(b);
  const std::string ilmo = lahetetyt[tunnus(hostiYhteys)];
  ASSERT_EQ(ilmo.size(), 11u + 12 * 2);
  EXPECT_EQ(ilmo.substr(0, 10), std::string("pelaajia ") + '\x02');
  EXPECT_EQ(ilmo.substr(10, 5), std::string("\x0b") + tavut("eka", 4));
  EXPECT_EQ(ilmo.substr(22, 12), "\vabcdefghijk");
  EXPECT_EQ(ilmo.back(), '\0');

  const std::string alku =
      tavut("game started;\0", 14) + "omat paikat" + tavut("\x06\0;", 3) + tavut("kaikki kunnossa;\0", 17);
  const std::string peli = "\x01\x05\x00peli";
  ASSERT_EQ(client(alku + peli), static_cast<int>(alku.size()));  // the game's bytes stay
  EXPECT_TRUE(started2);
  EXPECT_TRUE(valmiinaalottamaan);
  EXPECT_EQ(omatPaikat, 6u);

  client(tavut("pelaajia liikaa!;\0", 18));
  EXPECT_TRUE(gamequited);
  EXPECT_STREQ(eroSyy, "ei mahtunut mukaan");
}

TEST_F(Lobby, AChatLineIsShownAndPassedOnToEveryClientWithoutItsZero) {
  tyhjennaChatBufferi();
  const std::string viesti = tavut("x\xe4tbertta    :hello all;\0", 25);
  ASSERT_EQ(host(2, viesti), 25);
  EXPECT_STREQ(chatbuffer[0], "bertta    :hello all");
  for (int c = 1; c <= 3; ++c) EXPECT_EQ(lahetetyt[tunnus(c)], viesti.substr(0, 24)) << c;
  std::memset(sets.nick[0], 0, sizeof sets.nick[0]);
  std::strcpy(sets.nick[0], "bob");
  std::strcpy(kirjotusbuffer, "hi");
  tekstiValmis();  // the host's own line, its zero sent too
  EXPECT_STREQ(chatbuffer[0], "bob       :hi");
  EXPECT_EQ(lahetetyt[tunnus(1)], viesti.substr(0, 24) + tavut("x\xe4tbob       :hi;\0", 18));

  asiakkaaksi();
  ASSERT_EQ(client(viesti.substr(0, 24) + "tii"), 24);
  EXPECT_STREQ(chatbuffer[0], "bertta    :hello all");
  EXPECT_STREQ(chatbuffer[1], "bob       :hi");
}

TEST_F(Lobby, TheLastHostFileIsCutToFortyBytesAndWrittenUpToItsEnd) {
  testutil::TempWorkDir kansio;
  testing::internal::CaptureStdout();
  char buf[96];
  std::memset(buf, 'z', sizeof buf);
  readHostFile(buf);
  EXPECT_EQ(buf[0], 0);
  EXPECT_NE(testing::internal::GetCapturedStdout().find("lashost.txt not found.\n"), std::string::npos);
  testutil::writeFile(kansio.file("lasthost.txt"), std::string(50, 'h'));
  readHostFile(buf);
  EXPECT_EQ(std::string(buf), std::string(40, 'h'));
  EXPECT_EQ(buf[47], 0);
  writeHostFile("10.0.0.7");
  EXPECT_EQ(testutil::readFile(kansio.file("lasthost.txt")), "10.0.0.7");
  std::memset(buf, 'k', sizeof buf);
  writeHostFile(buf);  // no end within 90 bytes: nothing is written
  EXPECT_EQ(testutil::readFile(kansio.file("lasthost.txt")), "");
}

TEST_F(Lobby, TheMatchTakesTheHumanAndComputerSlotsInSlotOrder) {
  host(1, ilmoitus({"anna"}));
  mpstatus[2] = 1;
  mpstatus[3] = 2;
  mpstatus[4] = 2;
  mptiimi[3] = 9;
  paivitaPelaajat();
  host(2, ilmoitus({"bertta"}));
  gamemode = 1;
  mpcredits = 300;
  rakennaVerkkoOttelu();
  ASSERT_EQ(players, 5);
  EXPECT_EQ(nimet(5), "hostman|anna|cpu 1|cpu 2|bertta");
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(ottelunPaikka[i], i < 2 ? i : i + 1) << i;
    EXPECT_EQ(player[i].ihmispelaaja, i != 2 && i != 3) << i;
    EXPECT_EQ(player[i].pisteet, 300) << i;
  }
  EXPECT_EQ(player[2].tiimi, 9);
  EXPECT_EQ(ottelunPelaaja[2], -1);
  EXPECT_TRUE(pistepeli);
  disconnect(2);  // in the match the dropped client's ship gets a pilot
  EXPECT_FALSE(player[4].ihmispelaaja);
}

}  // namespace
