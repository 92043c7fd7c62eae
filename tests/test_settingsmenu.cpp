// The settings menu and the player set-up screen, driven key by key in a window
// with a fake clock: what they change in the settings and what they save.
#include <GL/gl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "Main.h"
#include "Menu.h"
#include "Sets.h"
#include "ctf.h"
#include "glapi.h"
#include "simscene.h"
#include "testutil.h"

namespace {

using testutil::FakeClock;

// One key per menu pass, pressed while the menu waits for its next frame:
// d/u down and up, l/r left and right, e Enter, x Escape.
std::string nappaimet;
size_t seuraava = 0;
const int vahtiraja = 50000;  // sleeps before the watchdog ends a script that never leaves

void painaSeuraava() {
  Player& p = player[0];
  if (p.pylos || p.palas || p.pleft || p.pright || entterpressed || escpressed) return;
  if (seuraava >= nappaimet.size()) return;
  switch (nappaimet[seuraava++]) {
    case 'd': p.palas = true; break;
    case 'u': p.pylos = true; break;
    case 'l': p.pleft = true; break;
    case 'r': p.pright = true; break;
    case 'e': entterpressed = true; break;
    default: escpressed = true; break;
  }
}

class SettingsMenu : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(testutil::menuScreen(W, H, 31));
    simscene::kataloogi();
    sets = Sets();
    sets.playermaara = players = 3;
    sets.credits = fullcredits = 200;
    musiikkipaalla = efektitpaalla = false;
    FakeClock::onSleep = [] {
      if (FakeClock::sleeps > vahtiraja) escpressed = true;
      painaSeuraava();
    };
    starttime = 0;
    framecounter = oldframecounter = 0;
    calculatefps = 100;
    unohdaNapit();
  }
  void TearDown() override { unohdaNapit(); }
  // Runs the settings menu on a key script; true when it ended by the script.
  bool aja(const std::string& nappainjono) {
    testing::internal::CaptureStdout();  // the save prints a trace
    nappaimet = nappainjono;
    seuraava = 0;
    asetusmenu();
    testing::internal::GetCapturedStdout();
    return FakeClock::sleeps <= vahtiraja && seuraava == nappaimet.size();
  }
  std::string tallennettu() { return testutil::readFile(kansio.file("sets.txt")); }
  static bool sisaltaa(const std::string& teksti, const std::string& osa) {
    return teksti.find(osa) != std::string::npos;
  }

  testutil::TempWorkDir kansio;
  FakeClock kello;
  static const int W = 320, H = 240;
};

TEST_F(SettingsMenu, ApplyCopiesTheValuesIntoTheGameAndSavesThem) {
  // Players +2, credits +10, music volume -5, then "Apply and Save Settings".
  ASSERT_TRUE(aja("ddrrdddrdldddddex"));
  EXPECT_EQ(sets.playermaara, 5);
  EXPECT_EQ(players, 5);
  EXPECT_DOUBLE_EQ(sets.credits, 210);
  EXPECT_DOUBLE_EQ(fullcredits, 210);
  EXPECT_FLOAT_EQ(sets.musicvolume, 95);
  const std::string tiedosto = tallennettu();
  for (const char* rivi : {"players=5;", "credits=210;", "music volume=95;", "screenwidth=320;"})
    EXPECT_TRUE(sisaltaa(tiedosto, rivi)) << rivi << " in\n" << tiedosto;
}

TEST_F(SettingsMenu, ValuesStayInTheirRanges) {
  // Players down past 2, credits down past 20, detail up past its top, camera flips.
  ASSERT_TRUE(aja("ddlllllddd" + std::string(30, 'l') + "ddddrrrrrruruddddex"));
  EXPECT_EQ(sets.playermaara, 2);
  EXPECT_DOUBLE_EQ(sets.credits, 20);
  EXPECT_EQ(sets.detail, sets.maxdetail);
  EXPECT_EQ(sets.cammode, 1);
  EXPECT_EQ(sirpaleita, sets.maxdetail * 500 + 1000);
}

TEST_F(SettingsMenu, EscapeLeavesWithoutApplyingAndApplySaveAndExitIsUpFromTheTop) {
  ASSERT_TRUE(aja("ddrrdddrx"));
  EXPECT_EQ(sets.playermaara, 3);
  EXPECT_EQ(players, 3);
  EXPECT_DOUBLE_EQ(fullcredits, 200);
  EXPECT_FALSE(testutil::shell("test -e " + kansio.file("sets.txt")) == 0);
  ASSERT_TRUE(aja("ue"));  // up from the first entry wraps to the last
  EXPECT_TRUE(sisaltaa(tallennettu(), "players=3;"));
}

TEST_F(SettingsMenu, AFailedSaveIsReportedAndTheMenuGoesOn) {
  ASSERT_EQ(mkdir(kansio.file("sets.txt").c_str(), 0755), 0);  // cannot be opened as a file
  ASSERT_TRUE(aja("ddruuuuex"));
  EXPECT_EQ(sets.playermaara, 4);  // applied in memory all the same
  // The last frame drawn still carries the message on the bottom line.
  const std::vector<GLubyte> alareuna = testutil::readRgb(0, 0, W, H / 8);
  int valkoisia = 0;
  for (size_t i = 0; i < alareuna.size(); i += 3) valkoisia += alareuna[i] > 150 && alareuna[i + 1] > 150;
  EXPECT_GT(valkoisia, 20);
}

TEST_F(SettingsMenu, PlayerSetupChangesPilotsTeamsAndComputerSettings) {
  // Open "Player Setup" (three up from the top), then: slot 1 to computer and its
  // team down from 1 to 16, slot 2 team up twice, "ai attacks ai" on, the computer's
  // skill up past its top level and one back, Escape back (it saves), Escape out.
  ASSERT_TRUE(aja("uuueeldrrddedrrrrrlxx"));
  EXPECT_FALSE(sets.ihminen[0]);
  EXPECT_EQ(sets.team[0], 15);
  EXPECT_EQ(sets.team[1], 2);
  EXPECT_TRUE(sets.aikohteet);
  EXPECT_EQ(sets.ai, 2);
  EXPECT_EQ(ai, 2);
  const std::string tiedosto = tallennettu();
  for (const char* rivi :
       {"player1ihmispelaaja=0;", "player1team=16;", "player2team=3;", "ai vs ai=1;", "testopponent=2;"})
    EXPECT_TRUE(sisaltaa(tiedosto, rivi)) << rivi << " in\n" << tiedosto;
}

TEST_F(SettingsMenu, TeamsNeverReachTheFlowerCount) {
  const int kukkia = cpisteita;
  cpisteita = 4;
  ASSERT_TRUE(aja("uuueldrrrrxx"));
  cpisteita = kukkia;
  EXPECT_EQ(sets.team[0], 3);  // 1 down wraps to the fourth team
  EXPECT_EQ(sets.team[1], 0);  // four steps up come round again
}

}  // namespace
