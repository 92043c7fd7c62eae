// The lobby over real sockets on 127.0.0.1: the test process hosts, forked children
// join as clients (all headless), and raw sockets play clients that misbehave.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "Main.h"
#include "Sets.h"
#include "chat.h"
#include "simscene.h"
#include "verkkoapu.h"

namespace {

using namespace verkkoapu;

bool nimiPaikalla(const char* nimi) {
  for (int s = 0; s < playerslots; ++s)
    if (mpstatus[s] == 3 && std::strcmp(netnick[s], nimi) == 0) return true;
  return false;
}

bool chatissa(const char* rivi) {
  for (const auto& r : chatbuffer)
    if (std::strcmp(r, rivi) == 0) return true;
  return false;
}

// The host leaves at its match's first frame, noting the clients' states; they follow it.
int tilaOttelussa[3];
void ottelunKuva(int) {
  std::copy(tila, tila + 3, tilaOttelussa);
  lahdeOttelusta();
}

class Connect : public ::testing::Test {
 protected:
  void SetUp() override {
    simscene::maailma(2);
    aulanPiirto = aulaIlmanRuutua;
    pelinPiirto = ottelunKuva;
    verkkoportti = vapaaPortti();
    hostpeli = true;
    alustaAula();
    gamemode = 2;  // no ship to choose: the host's first frame comes at once
    pelaajiasoketista[0] = 1;
    std::snprintf(tcpnick[0][0], 11, "isanta");
    addsocket();
  }
  void TearDown() override { palautaVerkko(); }
};

// A client that joins as `nimi`, sees itself in the table, maybe says hello, waits for
// the line to come round and then follows the host into the match.
int asiakas(const char* nimi, bool puhuu) {
  pelinPiirto = [](int) {};
  std::snprintf(sets.nick[0], sizeof sets.nick[0], "%s", nimi);
  joinaavia = 1;
  if (!yhdistaHostiin("127.0.0.1")) return 10;
  auto itse = [&] {
    for (int s = 0; s < playerslots; ++s)
      if ((omatPaikat >> s & 1) && std::strcmp(netnick[s], nimi) == 0) return true;
    return false;
  };
  if (!odota(itse, kuuntelejoin, 15)) return 11;
  if (puhuu) {
    std::snprintf(kirjotusbuffer, sizeof kirjotusbuffer, "hello");
    tekstiValmis();
  }
  if (!odota([] { return chatissa("anna      :hello"); }, kuuntelejoin, 15)) return 12;
  joinwaitforstart();
  // The two clients take slots 1 and 2 in the order they happened to connect.
  const bool annaMukana = std::strcmp(netnick[1], "anna") == 0 || std::strcmp(netnick[2], "anna") == 0;
  return valmiinaalottamaan && players == 3 && annaMukana ? 0 : 13;
}

TEST_F(Connect, ClientsJoinChatThroughTheHostAndFollowItIntoTheMatch) {
  const pid_t anna = lapsena([] { return asiakas("anna", true); });
  const pid_t bertta = lapsena([] { return asiakas("bertta", false); });
  const bool aulassa =
      odota([] { return nimiPaikalla("anna") && nimiPaikalla("bertta") && chatissa("anna      :hello"); },
            aulanVerkko, 20);
  EXPECT_TRUE(aulassa);
  EXPECT_EQ(soketteja, 4);  // counted on the accept and again on taking a connection
  hostStart();
  EXPECT_EQ(players, 3);
  EXPECT_STREQ(netnick[0], "isanta");
  for (int c = 1; c <= 2; ++c) EXPECT_EQ(tilaOttelussa[c], 3) << c;
  EXPECT_EQ(odotaLasta(anna, 20), 0);
  EXPECT_EQ(odotaLasta(bertta, 20), 0);
}

TEST_F(Connect, ASilentClientIsDroppedAfterTenSecondsWhileALiveOneStays) {
  const pid_t elava = lapsena([] {
    std::snprintf(sets.nick[0], sizeof sets.nick[0], "elava");
    if (!yhdistaHostiin("127.0.0.1")) return 10;
    odota([] { return gamequited; }, kuuntelejoin, 25);
    return std::strcmp(eroSyy, "the host left the game") == 0 ? 0 : 11;
  });
  TCPsocket hiljainen = raakaAsiakas("hiljainen");
  ASSERT_TRUE(hiljainen);
  ASSERT_TRUE(odota([] { return nimiPaikalla("hiljainen") && nimiPaikalla("elava"); }, aulanVerkko, 10));
  const int paikka = std::strcmp(netnick[1], "hiljainen") == 0 ? 1 : 2;
  const auto alku = Kello::now();
  ASSERT_TRUE(odota([] { return !nimiPaikalla("hiljainen"); }, aulanVerkko, 16));
  EXPECT_GT(sekunteja(alku), 9.0);
  paivitaPelaajat();
  EXPECT_TRUE(nimiPaikalla("elava"));
  EXPECT_EQ(mpstatus[paikka], 2);  // the silent client's slot is a computer's now
  EXPECT_STREQ(netnick[paikka], "cpu 1");
  hostQuit();
  tyhjennaJonot();
  EXPECT_EQ(odotaLasta(elava, 10), 0);
  SDLNet_TCP_Close(hiljainen);
}

TEST_F(Connect, APeerThatStopsReadingNeverBlocksASendAndIsDroppedWhenItsQueueFills) {
  TCPsocket pysahtynyt = raakaAsiakas(nullptr);
  ASSERT_TRUE(odota([] { return tila[1] == 1; }, kuuntele, 5));
  static const char lohko[4096] = {};
  int lahetyksia = 0;
  while (lahetyksia < 10000 && laheta(1, lohko, sizeof lohko)) ++lahetyksia;
  EXPECT_LT(lahetyksia, 10000);
  EXPECT_EQ(tila[1], 0);
  EXPECT_GT(yhteys[1].lahetetty, static_cast<uint64_t>(lahetyksia) * sizeof lohko - jonoTila);
  SDLNet_TCP_Close(pysahtynyt);
}

TEST_F(Connect, ASixteenthConnectionIsAcceptedButNeitherKeptNorClosed) {
  TCPsocket asiakkaat[yhteyksia];
  testing::internal::CaptureStdout();
  bool kaikki = true;
  for (TCPsocket& s : asiakkaat) {
    const int ennen = soketteja;
    s = raakaAsiakas(nullptr);
    kaikki = kaikki && s && odota([&] { return soketteja > ennen; }, kuuntele, 5);
  }
  const std::string tuloste = testing::internal::GetCapturedStdout();
  ASSERT_TRUE(kaikki);
  EXPECT_EQ(soketteja, 2 * (yhteyksia - 1) + 1);
  size_t rivit = 0;
  const std::string rivi = "Tulipa yksi soketti taas lisättyä\n";
  for (size_t i = 0; (i = tuloste.find(rivi, i)) != std::string::npos; ++i) ++rivit;
  EXPECT_EQ(rivit, 16u);
  char b[32] = {};
  EXPECT_EQ(SDLNet_TCP_Recv(asiakkaat[0], b, 26), 26);
  EXPECT_STREQ(b, "you have joined the game;");
  SDLNet_SocketSet joukko = SDLNet_AllocSocketSet(1);
  SDLNet_TCP_AddSocket(joukko, asiakkaat[yhteyksia - 1]);
  EXPECT_EQ(SDLNet_CheckSockets(joukko, 200), 0);  // connected, and never a word
  SDLNet_FreeSocketSet(joukko);
  for (TCPsocket s : asiakkaat) SDLNet_TCP_Close(s);
}

TEST_F(Connect, JoinFailuresAreReportedAndABusyPortEndsTheHostWithStatusTwo) {
  const int portti = verkkoportti;
  EXPECT_FALSE(yhdistaHostiin(""));
  EXPECT_STREQ(eroSyy, "host not found");
  verkkoportti = vapaaPortti();
  EXPECT_FALSE(yhdistaHostiin("127.0.0.1"));
  EXPECT_STREQ(eroSyy, "connection refused");
  verkkoportti = portti;
  const pid_t toinen = lapsena([] {
    addsocket();
    return 0;
  });
  EXPECT_EQ(odotaLasta(toinen, 10), 2);
}

}  // namespace
