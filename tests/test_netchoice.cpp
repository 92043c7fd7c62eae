// The screens over a running network match: the host's checks of a ship choice, its
// fall-back when time is up or the owner has gone, the choice screen on the owner's
// machine and the settings screen, both keeping the match going underneath.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "Main.h"
#include "Menu.h"
#include "Sets.h"
#include "localgame.h"
#include "net.h"
#include "netav.h"
#include "netgamesets.h"
#include "netpeli.h"
#include "peliloppu.h"
#include "simscene.h"
#include "testutil.h"
#include "verkkoapu.h"

// Until the in-game loops provide theirs; the screens here run the tests' own pass.
__attribute__((weak)) void verkkoTausta() {}

namespace {

using testutil::FakeClock;

// The background pass of the screens: counts, moves the fake clock on and presses the
// script's next key (d/u down and up, l/r left and right, f fire, e Enter, x Escape,
// q the match ends) on keyboard player `nappaimisto`.
std::string nappaimet;
size_t seuraava = 0;
int nappaimisto = 0;
int taustoja = 0;
std::function<void()> joka;  // runs first in every pass

void painaSeuraava() {
  ++taustoja;
  FakeClock::now += 10;
  if (joka) joka();
  if (seuraava >= nappaimet.size()) return;
  Player& p = player[nappaimisto];
  switch (nappaimet[seuraava++]) {
    case 'd': p.palas = true; break;
    case 'u': p.pylos = true; break;
    case 'l': p.pleft = true; break;
    case 'r': p.pright = true; break;
    case 'f': p.pfire = true; break;
    case 'e': entterpressed = true; break;
    case 'x': escpressed = true; break;
    default: netGameQuit = true; break;
  }
}

void kasikirjoitus(const std::string& jono, int pelaaja) {
  nappaimet = jono;
  seuraava = 0;
  nappaimisto = pelaaja;
  taustoja = 0;
  joka = nullptr;
}

// Slot 0 is the host's person, 1 and 2 persons of clients 1 and 2, 3 a computer pilot;
// all dead at their respawn with 20 credits.
class NetChoice : public ::testing::Test {
protected:
  void SetUp() override {
    simscene::maailma(4);
    verkkoapu::ilmanSokettia();
    hostpeli = true;
    gamemode = 0;
    pistepeli = true;
    calculatefps = 100;
    oldframecounter = 1000;
    playerslots = 4;
    const int omistajat[4] = {0, 1, 2, -2};
    for (int s = 0; s < 4; ++s) {
      simscene::laita(s, 0, 50, 10.0f * s);
      mpstatus[s] = omistajat[s] < 0 ? 2 : 3;
      pelaajasoketista[s] = omistajat[s];
      ottelunPaikka[s] = ottelunPelaaja[s] = s;
      player[s].ihmispelaaja = omistajat[s] >= 0;
      player[s].pisteet = 20;
      player[s].kuolema = uudestaanHetki;
      playeruudestaan[s] = 2;
    }
    for (int c = 1; c <= 2; ++c) tcpsoketit[c] = tunnus(c);
    aloitaValinnat();
    aloitaKeraaja();
    netGameQuit = false;
  }
  void TearDown() override {
    for (int c = 1; c < yhteyksia; ++c) tcpsoketit[c] = nullptr;
    tcpLahetys = SDLNet_TCP_Send;
    tcpSulku = SDLNet_TCP_Close;
    hostpeli = joinpeli = false;
    omatPaikat = 0;
  }
  static TCPsocket tunnus(int c) {
    static char t[yhteyksia];
    return reinterpret_cast<TCPsocket>(&t[c]);
  }
  static int hinta(int n) { return static_cast<int>(alus[n].pistemaara); }
  // The ship was given: nothing pending, the hold released, the price paid.
  static void annettu(int i, float ennen) {
    EXPECT_FALSE(odottaaValintaa(i)) << i;
    EXPECT_EQ(player[i].kuolema, uudestaanHetki - 1) << i;
    EXPECT_EQ(playeruudestaan[i], 0) << i;
    EXPECT_FLOAT_EQ(player[i].pisteet, ennen - hinta(player[i].alus.numero)) << i;
    EXPECT_GE(player[i].pisteet, 0) << i;
  }
};

TEST_F(NetChoice, OnlyTheOwnersChoiceOfAnAffordableShipIsTakenAndOnlyOnce) {
  pyydaValinta(1);
  ASSERT_TRUE(odottaaValintaa(1));
  EXPECT_FALSE(tarjoaValinta(2, 1, 2));             // another client's
  EXPECT_FALSE(tarjoaValinta(0, 1, 2));             // the host's players are not its
  EXPECT_FALSE(tarjoaValinta(1, 1, alustyyppeja));  // no such ship
  EXPECT_FALSE(tarjoaValinta(1, 1, -1));
  EXPECT_FALSE(tarjoaValinta(1, 1, 16));  // 47 credits, it has 20
  EXPECT_FALSE(tarjoaValinta(1, 2, 2));   // its own player, but not choosing
  EXPECT_FALSE(tarjoaValinta(1, 9, 2));   // not in the match
  EXPECT_TRUE(odottaaValintaa(1));
  EXPECT_EQ(player[1].kuolema, uudestaanHetki);
  EXPECT_TRUE(tarjoaValinta(1, 1, 2));
  EXPECT_EQ(player[1].alus.numero, 2);
  annettu(1, 20);
  EXPECT_FALSE(tarjoaValinta(1, 1, 2));
  EXPECT_FLOAT_EQ(player[1].pisteet, 20 - hinta(2));
}

// The request travels in the next FRAME to the owner's machine, the answer back as CHOICE.
TEST_F(NetChoice, ARemoteOwnerIsAskedInTheNextFrameAndItsAnswerComesBack) {
  pyydaValinta(0);  // the host's own person is not asked over the network
  pyydaValinta(1);
  unsigned char viesti[maxFrameViesti];
  const int pituus = koodaaFrame(1001, viesti, sizeof viesti);
  hostpeli = false;
  joinpeli = true;
  aloitaAsiakas();
  const PeliViesti kehys = seuraavaPeliViesti(viesti, pituus, Lahettaja::isanta);
  ASSERT_TRUE(kasittelePeliMsg(kehys.laji, kehys.data, kehys.pituus, 1001));
  sovellaErat(1001);
  EXPECT_EQ(alusvalintaPyynto[0], -1);
  EXPECT_EQ(alusvalintaPyynto[1], 1000 + valinnanAika * 100);

  const int vastaus = koodaaValinta(viesti, sizeof viesti, 1, 2);
  hostpeli = true;
  joinpeli = false;
  const PeliViesti valinta = seuraavaPeliViesti(viesti, vastaus, Lahettaja::asiakas);
  std::fill(alusvalinta, alusvalinta + maxPlayers, -1);
  ASSERT_EQ(kasitteleAsiakkaanMsg(1, valinta.laji, valinta.data, valinta.pituus, pelaajasoketista),
            AsiakkaanTulos::ok);
  EXPECT_TRUE(tarjoaValinta(1, 1, alusvalinta[1]));
  annettu(1, 20);
}

TEST_F(NetChoice, AComputerPilotChoosesAtOnceAndAPersonKeepsItsDeadline) {
  pyydaValinta(3);
  annettu(3, 20);
  pyydaValinta(0);
  EXPECT_EQ(valinnanAikaaMs(0), valinnanAika * 1000);
  oldframecounter += 500;
  pyydaValinta(0);  // the world step asks again every frame the timer is held
  EXPECT_EQ(valinnanAikaaMs(0), valinnanAika * 1000 - 5000);
  EXPECT_TRUE(tarjoaValinta(0, 0, 2));
  annettu(0, 20);
}

TEST_F(NetChoice, TimeUpOrOwnerGoneGivesARandomAffordableShipOrPutsOut) {
  for (int i = 0; i < 3; ++i) pyydaValinta(i);
  player[1].pisteet = 5;  // less than any ship costs
  oldframecounter += valinnanAika * 100 - 1;
  valintaAjat();
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(odottaaValintaa(i)) << i;
  disconnect(2);
  valintaAjat();
  annettu(2, 20);
  EXPECT_TRUE(odottaaValintaa(0));
  ++oldframecounter;
  valintaAjat();
  annettu(0, 20);
  EXPECT_FALSE(odottaaValintaa(1));
  EXPECT_FLOAT_EQ(player[1].pisteet, -1);
}

// The owner's screen: a client owning slots 1 and 3 chooses for slot 3 with its second
// keyboard player's keys.
class ChoiceScreen : public NetChoice {
protected:
  void SetUp() override {
    NetChoice::SetUp();
    hostpeli = false;
    joinpeli = true;
    omatPaikat = 1u << 1 | 1u << 3;
    player[1].ihmispelaaja = true;
    otteluJatkuu = painaSeuraava;
    alusvalinnanPiirto = [](int, int, int sekunteja) { naytetyt.push_back(sekunteja); };
    naytetyt.clear();
  }
  void TearDown() override {
    otteluJatkuu = verkkoTausta;
    alusvalinnanPiirto = drawAlusValinta;
    NetChoice::TearDown();
  }
  static std::vector<int> naytetyt;  // the seconds shown, frame by frame
  FakeClock kello;
};
std::vector<int> ChoiceScreen::naytetyt;

TEST_F(ChoiceScreen, KeysMoveTheCursorAndATooDearShipSendsItToShipTwo) {
  EXPECT_EQ(nappaimistonPelaaja(3), 1);
  kasikirjoitus(std::string(16, 'd') + "ff", 1);
  EXPECT_EQ(netValitseAlus(3, 15000), 2);
  EXPECT_EQ(taustoja, 18);  // the match went on every pass
  EXPECT_EQ(naytetyt.front(), 15);
  EXPECT_FLOAT_EQ(player[3].pisteet, 20);  // the host charges, not the screen

  kasikirjoitus("ue", 1);  // the random entry: an affordable ship
  const int n = netValitseAlus(3, 15000);
  ASSERT_GE(n, 0);
  EXPECT_LE(alus[n].pistemaara, 20);
}

TEST_F(ChoiceScreen, GivesUpWhenTimeRunsOutOrTheMatchEnds) {
  kasikirjoitus("", 1);
  EXPECT_EQ(netValitseAlus(3, 2000), -1);
  EXPECT_EQ(taustoja, 200);
  EXPECT_EQ(naytetyt.front(), 2);
  EXPECT_EQ(naytetyt.back(), 1);
  kasikirjoitus("ddq", 1);
  EXPECT_EQ(netValitseAlus(3, 15000), -1);
  EXPECT_EQ(taustoja, 3);

  // On the host the match's own fall-back may come first: the screen does not outstay it.
  hostpeli = true;
  joinpeli = false;
  netGameQuit = false;
  pyydaValinta(0);
  kasikirjoitus("", 0);
  joka = [] {
    if (taustoja == 3) oldframecounter += valinnanAika * 100;
    valintaAjat();
  };
  EXPECT_EQ(netValitseAlus(0, 15000), -1);
  EXPECT_EQ(taustoja, 3);
  EXPECT_FALSE(odottaaValintaa(0));
}

// The settings over a running match, in a window.
class MatchSettings : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(testutil::menuScreen(320, 240, 31));
    simscene::maailma(2);
    sets = Sets();
    musiikkipaalla = efektitpaalla = false;
    sets.efects = 0;
    sets.soundvolume = 50;
    sets.cammode = 0;
    sets.detail = 0;
    netGameQuit = false;
    otteluJatkuu = painaSeuraava;
    unohdaNapit();
  }
  void TearDown() override {
    otteluJatkuu = verkkoTausta;
    unohdaNapit();
  }
  bool tallennettu() { return testutil::shell("test -e " + kansio.file("sets.txt")) == 0; }
  testutil::TempWorkDir kansio;
  FakeClock kello;
};

TEST_F(MatchSettings, ChangesApplyAtOnceWhileTheMatchGoesOn) {
  struct Tila {
    bool efektit;
    float voimakkuus;
    int kamera, tarkkuus;
  };
  static std::vector<Tila> tilat;
  tilat.clear();
  // Effects on, effects volume down, camera over, detail up, then "Back to the Match".
  kasikirjoitus("de" "ddl" "dr" "dr" "de", 0);
  joka = [] { tilat.push_back({efektitpaalla, sets.soundvolume, sets.cammode, sets.detail}); };
  testing::internal::CaptureStdout();
  netGameSets();
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(seuraava, nappaimet.size());
  EXPECT_TRUE(efektitpaalla);
  EXPECT_EQ(sets.efects, 1);
  EXPECT_FLOAT_EQ(sets.soundvolume, 45);
  EXPECT_EQ(sets.cammode, 1);
  EXPECT_EQ(sets.detail, 1);
  ASSERT_GE(tilat.size(), 4u);
  EXPECT_TRUE(tilat[2].efektit);  // in force from the next pass, long before leaving
  EXPECT_EQ(tilat[2].tarkkuus, 0);
  const std::string tiedosto = testutil::readFile(kansio.file("sets.txt"));
  for (const char* rivi : {"soundeffects=1;", "sound volume=45;", "cammode=1;", "detail=1;"})
    EXPECT_NE(tiedosto.find(rivi), std::string::npos) << rivi;
}

TEST_F(MatchSettings, EscapeOrTheEndOfTheMatchLeavesAndNothingUnchangedIsSaved) {
  kasikirjoitus("ddx", 0);
  netGameSets();
  EXPECT_EQ(seuraava, 3u);
  kasikirjoitus("dq", 0);
  netGameSets();
  EXPECT_EQ(taustoja, 2);
  EXPECT_FALSE(tallennettu());
}

}  // namespace
