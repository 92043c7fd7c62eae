// The local game: what each menu item sets up, the loops' catch-up, the end rules and
// victory screen, Escape and Resume, and the menu in a window.
#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "Main.h"
#include "Menu.h"
#include "Sets.h"
#include "ctf.h"
#include "domination.h"
#include "glapi.h"
#include "localgame.h"
#include "net.h"
#include "peliloppu.h"
#include "simscene.h"
#include "testutil.h"

namespace {

using testutil::FakeClock;

// Runs after every sleep of the game, under the watchdog that ends any loop
// running far longer than a test needs.
void (*joka_uni)() = nullptr;

std::vector<int> piirretytFreimit;
std::vector<int> voittoTiimit;
void piirraFreimi(int frame) { piirretytFreimit.push_back(frame); }
void piirraVoitto(int tiimi) {
  voittoTiimit.push_back(tiimi);
  entterpressed = true;
}

class LocalGame : public ::testing::Test {
 protected:
  void SetUp() override {
    simscene::maailma(4);
    for (int i = 0; i < maxPlayers; ++i) simscene::laita(i, 0, 20.0f * i - 150, 100);
    alustaCPisteet();
    alustaDPisteet();
    joka_uni = nullptr;
    FakeClock::onSleep = [] {
      if (FakeClock::sleeps > 20000) escpressed = entterpressed = true;
      if (joka_uni) joka_uni();
    };
    FakeClock::now = starttime = 5000;
    calculatefps = 100;
    framecounter = oldframecounter = 0;
    pelinPiirto = piirraFreimi;
    voitonPiirto = piirraVoitto;
    piirretytFreimit.clear();
    voittoTiimit.clear();
    unohdaNapit();
    fullcredits = 200;
    sets.playermaara = 4;
    for (int i = 0; i < maxPlayers; ++i) {
      sets.ihminen[i] = false;  // computer pilots choose ships without a screen
      sets.team[i] = i % 3;
    }
  }
  void TearDown() override {
    pelinPiirto = drawFrame;
    voitonPiirto = drawVictory;
    unohdaNapit();
  }
  // Puts the clock `frames` calculated frames ahead of the last computed one.
  void jalkeen(int frames) { FakeClock::now = starttime + (oldframecounter + frames) * 10; }
  int laskeKierros(const Pelisilmukka& s) {
    const int ennen = calculatedframes;
    pelikierros(s);
    return calculatedframes - ennen;
  }
  FakeClock kello;
};

TEST_F(LocalGame, StartItemsSetModeCreditsAndPlayersAndResetTheObjectives) {
  struct Case {
    int kohta, tila;
    bool krediitit, valinta, uudetAlukset;
  };
  for (const Case& c :
       {Case{kohtaSatunnaiset, 1, false, false, true}, Case{kohtaKrediitit, 0, true, true, false},
        Case{kohtaKrediititSatunn, 1, true, false, true}, Case{kohtaDominointi, 2, false, false, true},
        Case{kohtaLippu, 3, false, false, true}, Case{kohtaSieni, 4, false, false, true}}) {
    srand(7);
    players = 9;
    sets.playermaara = 5;
    sets.ihminen[1] = true;
    sets.team[2] = 15;
    for (int i = 0; i < maxPlayers; ++i) {
      simscene::laita(i, 9, 0, 0);  // a ship a fresh draw rarely gives to all
      player[i].kuolema = 120;
      player[i].pisteet = -1;
    }
    ekapisteframe = false;
    cpiste[1].player = 3;  // what the last match left: a carried flower, a held point
    cpiste[1].x = 0;
    dpiste[0].tiimi = 2;
    aloitaKohta(c.kohta);
    EXPECT_EQ(cpiste[1].player, kukkaKotona);
    EXPECT_FLOAT_EQ(cpiste[1].x, alkupiste[1].x);
    EXPECT_EQ(dpiste[0].tiimi, -1);
    EXPECT_EQ(gamemode, c.tila) << c.kohta;
    EXPECT_EQ(pistepeli, c.krediitit) << c.kohta;
    EXPECT_TRUE(!c.krediitit || saavalita == c.valinta) << c.kohta;
    EXPECT_TRUE(ekapisteframe) << c.kohta;
    EXPECT_EQ(players, 5) << c.kohta;
    std::set<int> alukset;
    for (int i = 0; i < maxPlayers; ++i) {
      const Player& p = player[i];
      EXPECT_EQ(p.kuolema, 0);
      EXPECT_FLOAT_EQ(p.pisteet, c.krediitit ? 200.0f : 0.0f) << c.kohta;
      EXPECT_EQ(p.tiimi, sets.team[i]);
      EXPECT_EQ(p.ihmispelaaja, sets.ihminen[i]);
      EXPECT_TRUE(p.alus.numero >= 0 && p.alus.numero < 24) << p.alus.numero;
      alukset.insert(p.alus.numero);
    }
    // Credits with a choice keep the ships: the first world step opens the choice.
    EXPECT_EQ(alukset.size() > 1, c.uudetAlukset) << c.kohta;
  }
}

TEST_F(LocalGame, ResumeContinuesTheMatchAsADeathMatch) {
  aloitaKohta(kohtaSieni);
  player[2].pisteet = 7;
  aloitaKohta(kohtaJatka);
  EXPECT_EQ(gamemode, 1);  // an objective match carries on without its rule
  EXPECT_FLOAT_EQ(player[2].pisteet, 7);

  aloitaKohta(kohtaKrediititSatunn);
  player[1].pisteet = 33;
  aloitaKohta(kohtaJatka);
  EXPECT_EQ(gamemode, 0);
  EXPECT_TRUE(pistepeli);
  EXPECT_FLOAT_EQ(player[1].pisteet, 33);
}

TEST_F(LocalGame, EachLoopCatchesUpByItsOwnPolicy) {
  struct Case {
    int kohta;
    bool krediitit;  // for the resume
    int kaukaa;      // computed after a 20-frame stall
  };
  for (const Case& c :
       {Case{kohtaSatunnaiset, false, 20}, Case{kohtaKrediitit, false, 0},
        Case{kohtaKrediititSatunn, false, 0}, Case{kohtaDominointi, false, 1}, Case{kohtaLippu, false, 1},
        Case{kohtaSieni, false, 1}, Case{kohtaJatka, false, 20}, Case{kohtaJatka, true, 0}}) {
    pistepeli = c.krediitit;
    const Pelisilmukka s = aloitaKohta(c.kohta);
    fullcredits = 1e9;  // no objective match ends here
    for (int i = 0; i < maxPlayers; ++i) player[i].tiimi = i % 2;
    jalkeen(4);  // within every limit: all four frames
    EXPECT_EQ(laskeKierros(s), 4) << c.kohta;
    jalkeen(20);
    EXPECT_EQ(laskeKierros(s), c.kaukaa) << c.kohta << " credits " << c.krediitit;
    EXPECT_EQ(oldframecounter, framecounter);
    EXPECT_EQ(piirretytFreimit.back(), framecounter);
  }
}

TEST_F(LocalGame, TeamRuleEndsACreditMatchAndScoreRuleAnObjectiveMatchWithTheLeadersTeam) {
  const Pelisilmukka s = aloitaKohta(kohtaKrediititSatunn);
  const int tiimit[4] = {0, 1, 0, 1};
  const float pisteet[4] = {-1, 40, -1, 90};
  for (int i = 0; i < 4; ++i) {
    player[i].tiimi = tiimit[i];
    player[i].pisteet = pisteet[i];
  }
  ekapisteframe = false;
  jalkeen(1);
  pelaa(s);
  EXPECT_EQ(voittoTiimit, std::vector<int>{1});
  EXPECT_EQ(piirretytFreimit.size(), 1u);  // the winning pass still draws the field

  for (int kohta : {kohtaDominointi, kohtaLippu, kohtaSieni}) {
    fullcredits = 0;  // everybody starts at the limit
    voittoTiimit.clear();
    const Pelisilmukka s = aloitaKohta(kohta);
    player[0].pisteet = 0.5f;
    player[2].pisteet = 3.0f;
    player[2].tiimi = 2;
    jalkeen(1);
    pelaa(s);
    EXPECT_EQ(voittoTiimit, std::vector<int>{2}) << kohta;
  }
}

TEST_F(LocalGame, RandomShipGameHasNoEndRuleButEscapeFreezesIt) {
  const Pelisilmukka s = aloitaKohta(kohtaSatunnaiset);
  for (int i = 0; i < maxPlayers; ++i) player[i].tiimi = 0;  // one team left: still no end
  jalkeen(1);
  EXPECT_FALSE(pelikierros(s));
  EXPECT_FALSE(escpressed);
  piirretytFreimit.clear();
  joka_uni = [] {
    if (piirretytFreimit.size() == 3) escpressed = true;
  };
  jalkeen(1);
  pelaa(s);
  EXPECT_EQ(piirretytFreimit.size(), 4u);  // the pass in which Escape arrives still draws
  EXPECT_TRUE(voittoTiimit.empty());
}

// A whole match without a window, as tests and benchmarks run one: computer pilots play
// flower domination from the start item to the victory screen through the drawing hooks.
TEST_F(LocalGame, AWholeMatchRunsWithoutAWindow) {
  ASSERT_EQ(SDL_GetVideoSurface(), nullptr);
  fullcredits = 2;
  pelaa(aloitaKohta(kohtaDominointi));
  ASSERT_EQ(voittoTiimit.size(), 1u) << "no winner in " << calculatedframes << " frames";
  EXPECT_EQ(voittoTiimit[0], johtavaTiimi());
  bool perilla = false;
  for (int i = 0; i < players; ++i) perilla = perilla || player[i].pisteet >= 2;
  EXPECT_TRUE(perilla);
  EXPECT_GT(piirretytFreimit.size(), 100u);
}

TEST_F(LocalGame, EscapeInTheMenuLeavesAtOnce) {
  hostpeli = joinpeli = true;
  escpressed = true;
  onePlayerGameMenu();  // returns in the first pass, before any drawing
  EXPECT_FALSE(hostpeli || joinpeli || escpressed);
}

}  // namespace
