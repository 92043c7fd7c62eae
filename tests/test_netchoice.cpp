// The screens over a running network match: the host's checks of a ship choice, the choice
// and settings screens, both keeping the match going underneath.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "Menu.h"
#include "Sets.h"
#include "netgamesets.h"
#include "simscene.h"
#include "testutil.h"
#include "verkkoapu.h"

namespace {

using testutil::FakeClock;

// The screens' background pass in these tests: counts, moves the fake clock on, runs
// `joka` and presses the script's next key on match player `nappaimisto`
// (d/u down and up, l/r left and right, f fire, e Enter, x Escape, q the match ends).
std::string nappaimet;
size_t seuraava;
int nappaimisto, taustoja;
std::function<void()> joka;

void tausta() {
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
  seuraava = taustoja = 0;
  nappaimisto = pelaaja;
  joka = nullptr;
  netGameQuit = false;
}

int hinta(int n) { return static_cast<int>(alus[n].pistemaara); }

// The ship was given: nothing pending, the hold released, the price paid.
void annettu(int i, float ennen) {
  EXPECT_FALSE(odottaaValintaa(i)) << i;
  EXPECT_EQ(player[i].kuolema, uudestaanHetki - 1) << i;
  EXPECT_EQ(playeruudestaan[i], 0) << i;
  EXPECT_FLOAT_EQ(player[i].pisteet, ennen - hinta(player[i].alus.numero)) << i;
}

// A host: slot 0 its own person, 1 and 2 persons of clients 1 and 2, 3 a computer
// pilot; all dead at their respawn with 20 credits.
class NetChoice : public ::testing::Test {
 protected:
  void SetUp() override {
    simscene::maailma(4);
    const TCPsocket soketti = verkkoapu::ilmanSokettia();
    hostpeli = pistepeli = true;
    gamemode = 0;
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
    tcpsoketit[1] = tcpsoketit[2] = soketti;
    aloitaValinnat();
    aloitaKeraaja();
    otteluJatkuu = tausta;
    alusvalinnanPiirto = [](int, int, int sekunteja) { naytetyt.push_back(sekunteja); };
    naytetyt.clear();
    kasikirjoitus("", 0);
  }
  void TearDown() override { verkkoapu::palautaVerkko(); }
  // A client owning slots 1 and 3.
  static void asiakkaana() {
    hostpeli = false;
    joinpeli = true;
    omatPaikat = 1u << 1 | 1u << 3;
  }
  static std::vector<int> naytetyt;  // the seconds the choice screen showed, frame by frame
  FakeClock kello;
};
std::vector<int> NetChoice::naytetyt;

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
  EXPECT_EQ(player[1].kuolema, uudestaanHetki);
  EXPECT_TRUE(tarjoaValinta(1, 1, 2));
  EXPECT_EQ(player[1].alus.numero, 2);
  annettu(1, 20);
  EXPECT_FALSE(tarjoaValinta(1, 1, 2));
  EXPECT_FLOAT_EQ(player[1].pisteet, 20 - hinta(2));

  pyydaValinta(3);  // a computer pilot chooses at once
  annettu(3, 20);
}

// The request travels in the next FRAME to the owner's machine, the answer back as CHOICE.
TEST_F(NetChoice, ARemoteOwnerIsAskedInTheNextFrameAndAPersonOnTheHostIsNot) {
  pyydaValinta(0);
  pyydaValinta(1);
  oldframecounter += 500;
  pyydaValinta(0);  // asked again while the timer is held: the deadline stands
  EXPECT_EQ(valinnanAikaaMs(0), valinnanAika * 1000 - 5000);
  unsigned char viesti[maxFrameViesti];
  const int pituus = koodaaFrame(1501, viesti, sizeof viesti);
  asiakkaana();
  aloitaAsiakas();
  const PeliViesti kehys = seuraavaPeliViesti(viesti, pituus, Lahettaja::isanta);
  ASSERT_TRUE(kasittelePeliMsg(kehys.laji, kehys.data, kehys.pituus, 1501));
  sovellaErat(1501);
  EXPECT_EQ(alusvalintaPyynto[0], -1);
  EXPECT_EQ(alusvalintaPyynto[1], 1000 + valinnanAika * 100);
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
  ++oldframecounter;
  valintaAjat();
  annettu(0, 20);
  EXPECT_FALSE(odottaaValintaa(1));
  EXPECT_FLOAT_EQ(player[1].pisteet, -1);
}

TEST_F(NetChoice, TheOwnersScreenTakesItsOwnKeysAndTheLocalRules) {
  asiakkaana();
  kasikirjoitus(std::string(16, 'd') + "ff", 3);  // ship 16 is too dear: the cursor goes to 2
  EXPECT_EQ(netValitseAlus(3, 15000), 2);
  EXPECT_EQ(taustoja, 18);  // the match went on every pass
  EXPECT_EQ(naytetyt.front(), 15);
  EXPECT_FLOAT_EQ(player[3].pisteet, 20);  // the host charges, not the screen
  kasikirjoitus("ue", 3);                  // the random entry: an affordable ship
  const int n = netValitseAlus(3, 15000);
  ASSERT_GE(n, 0);
  EXPECT_LE(alus[n].pistemaara, 20);
}

TEST_F(NetChoice, TheScreenGivesUpWhenTimeRunsOutTheMatchEndsOrTheHostHasGivenTheShip) {
  asiakkaana();
  EXPECT_EQ(netValitseAlus(3, 2000), -1);
  EXPECT_EQ(taustoja, 200);
  EXPECT_EQ(naytetyt.front(), 2);
  EXPECT_EQ(naytetyt.back(), 1);
  kasikirjoitus("ddq", 3);
  EXPECT_EQ(netValitseAlus(3, 15000), -1);
  EXPECT_EQ(taustoja, 3);

  hostpeli = true;
  joinpeli = false;
  pyydaValinta(0);
  kasikirjoitus("", 0);
  joka = [] {
    if (taustoja == 3) oldframecounter += valinnanAika * 100;
    valintaAjat();
  };
  EXPECT_EQ(netValitseAlus(0, 15000), -1);
  EXPECT_EQ(taustoja, 3);
}

// The settings over a running match, in a window; changes are saved on leaving.
TEST(MatchSettings, ChangesApplyAtOnceWhileTheMatchGoesOnAndEscapeLeaves) {
  ASSERT_TRUE(testutil::menuScreen(320, 240, 31));
  const testutil::TempWorkDir kansio;
  const FakeClock kello;
  simscene::maailma(2);
  sets = Sets();
  musiikkipaalla = efektitpaalla = false;
  sets.efects = sets.cammode = sets.detail = 0;
  sets.soundvolume = 50;
  otteluJatkuu = tausta;
  unohdaNapit();
  static std::vector<bool> efektit;  // effects on, pass by pass
  // Escape at once changes and saves nothing.
  kasikirjoitus("x", 0);
  netGameSets();
  EXPECT_NE(testutil::shell("test -e sets.txt"), 0);
  // Effects on, effects volume down, camera over, detail up, then "Back to the Match".
  kasikirjoitus("deddldrdrde", 0);
  joka = [] { efektit.push_back(efektitpaalla); };
  testing::internal::CaptureStdout();
  netGameSets();
  testing::internal::GetCapturedStdout();
  otteluJatkuu = verkkoTausta;
  EXPECT_EQ(seuraava, nappaimet.size());
  ASSERT_GE(efektit.size(), 3u);
  EXPECT_FALSE(efektit[1]);
  EXPECT_TRUE(efektit[2]);  // in force from the next pass on
  EXPECT_FLOAT_EQ(sets.soundvolume, 45);
  EXPECT_EQ(sets.cammode, 1);
  EXPECT_EQ(sets.detail, 1);
  const std::string tiedosto = testutil::readFile(kansio.file("sets.txt"));
  for (const char* rivi : {"soundeffects=1;", "sound volume=45;", "cammode=1;", "detail=1;"})
    EXPECT_NE(tiedosto.find(rivi), std::string::npos) << rivi;
}

}  // namespace
