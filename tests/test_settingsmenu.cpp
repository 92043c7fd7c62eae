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

// One key per menu pass, pressed while the menu waits for its next frame:
// d/u down and up, l/r left and right, e Enter, x Escape.
std::string nappaimet;
size_t seuraava = 0;
Uint32 kello = 0;
int unia = 0;

Uint32 tikit() { return kello; }

bool nappainOdottaa() {
  const Player& p = player[0];
  return p.pylos || p.palas || p.pleft || p.pright || entterpressed || escpressed;
}

void painaSeuraava() {
  if (nappainOdottaa() || seuraava >= nappaimet.size()) return;
  Player& p = player[0];
  switch (nappaimet[seuraava++]) {
    case 'd': p.palas = true; break;
    case 'u': p.pylos = true; break;
    case 'l': p.pleft = true; break;
    case 'r': p.pright = true; break;
    case 'e': entterpressed = true; break;
    default: escpressed = true; break;
  }
}

void nuku(Uint32 ms) {
  kello += ms;
  if (++unia > 50000) escpressed = true;  // watchdog: a script that never leaves
  painaSeuraava();
}

class SettingsMenu : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    ikkuna = &testutil::gameWindow(W, H);
    testutil::plainTexture(31, 10, 10, 30);  // a plain dark backdrop behind the text
  }
  void SetUp() override {
    ASSERT_TRUE(ikkuna->ok());
    simscene::kataloogi();
    sets = Sets();
    sets.playermaara = players = 3;
    sets.credits = fullcredits = 200;
    screenwidth = W;
    screenheight = H;
    musiikkipaalla = efektitpaalla = false;
    ticks = pacingTicks;
    delay = pacingDelay;
    pacingTicks = tikit;
    pacingDelay = nuku;
    kello = starttime = 0;
    framecounter = oldframecounter = 0;
    calculatefps = 100;
    unia = 0;
    seuraava = 0;
    unohdaNapit();
  }
  void TearDown() override {
    pacingTicks = ticks;
    pacingDelay = delay;
    unohdaNapit();
  }
  // Runs the settings menu on a key script; true when it ended by the script.
  bool aja(const std::string& nappainjono) {
    testing::internal::CaptureStdout();  // the save prints a trace
    nappaimet = nappainjono;
    asetusmenu();
    testing::internal::GetCapturedStdout();
    return unia <= 50000 && seuraava == nappaimet.size();
  }
  std::string tallennettu() { return testutil::readFile(kansio.file("sets.txt")); }
  static bool sisaltaa(const std::string& teksti, const std::string& osa) {
    return teksti.find(osa) != std::string::npos;
  }

  testutil::TempWorkDir kansio;
  Uint32 (*ticks)() = nullptr;
  void (*delay)(Uint32) = nullptr;
  static testutil::GLWindow* ikkuna;
  static const int W = 320, H = 240;
};
testutil::GLWindow* SettingsMenu::ikkuna = nullptr;

TEST_F(SettingsMenu, ApplyCopiesTheValuesIntoTheGameAndSavesThem) {
  // Players +2, credits +10, music volume -5, then "Apply and Save Settings".
  ASSERT_TRUE(aja("ddrr" "dddr" "dl" "ddddd" "e" "x"));
  EXPECT_EQ(sets.playermaara, 5);
  EXPECT_EQ(players, 5);
  EXPECT_DOUBLE_EQ(sets.credits, 210);
  EXPECT_DOUBLE_EQ(fullcredits, 210);
  EXPECT_FLOAT_EQ(sets.musicvolume, 95);
  const std::string tiedosto = tallennettu();
  EXPECT_TRUE(sisaltaa(tiedosto, "players=5;")) << tiedosto;
  EXPECT_TRUE(sisaltaa(tiedosto, "credits=210;"));
  EXPECT_TRUE(sisaltaa(tiedosto, "music volume=95;"));
  EXPECT_TRUE(sisaltaa(tiedosto, "screenwidth=320;"));
}

TEST_F(SettingsMenu, ValuesStayInTheirRanges) {
  // Players down past 2, credits down past 20, detail up past its top, camera flips.
  ASSERT_TRUE(aja("dd" "lllll" "ddd" + std::string(30, 'l') + "dddd" "rrrrrr" "u" "r" "u" "dddd" "e" "x"));
  EXPECT_EQ(sets.playermaara, 2);
  EXPECT_DOUBLE_EQ(sets.credits, 20);
  EXPECT_EQ(sets.detail, sets.maxdetail);
  EXPECT_EQ(sets.cammode, 1);
  EXPECT_EQ(sirpaleita, sets.maxdetail * 500 + 1000);
}

TEST_F(SettingsMenu, EscapeLeavesWithoutApplying) {
  ASSERT_TRUE(aja("ddrr" "dddr" "x"));
  EXPECT_EQ(sets.playermaara, 3);
  EXPECT_EQ(players, 3);
  EXPECT_DOUBLE_EQ(fullcredits, 200);
  EXPECT_FALSE(testutil::shell("test -e " + kansio.file("sets.txt")) == 0);
}

TEST_F(SettingsMenu, ApplySaveAndExitIsOneStepUpFromTheTop) {
  ASSERT_TRUE(aja("u" "e"));  // up from the first entry wraps to the last
  EXPECT_TRUE(sisaltaa(tallennettu(), "players=3;"));
}

TEST_F(SettingsMenu, AFailedSaveIsReportedAndTheMenuGoesOn) {
  ASSERT_EQ(mkdir(kansio.file("sets.txt").c_str(), 0755), 0);  // cannot be opened as a file
  ASSERT_TRUE(aja("ddr" "uuuu" "e" "x"));
  EXPECT_EQ(sets.playermaara, 4);  // applied in memory all the same
  // The last frame drawn still carries the message on the bottom line.
  std::vector<GLubyte> rivi(W * 3);
  int valkoisia = 0;
  for (int y = 0; y < H / 8; ++y) {
    glReadPixels(0, y, W, 1, GL_RGB, GL_UNSIGNED_BYTE, rivi.data());
    for (int x = 0; x < W; ++x) valkoisia += rivi[x * 3] > 150 && rivi[x * 3 + 1] > 150;
  }
  EXPECT_GT(valkoisia, 20);
}

TEST_F(SettingsMenu, PlayerSetupChangesPilotsTeamsAndComputerSettings) {
  // Open "Player Setup" (three up from the top), then: slot 1 to computer and its
  // team down from 1 to 16, slot 2 team up twice, "ai attacks ai" on, level up,
  // Escape back (it saves), Escape out of the settings.
  ASSERT_TRUE(aja("uuu" "e" "e" "l" "d" "rr" "dd" "e" "d" "r" "x" "x"));
  EXPECT_FALSE(sets.ihminen[0]);
  EXPECT_EQ(sets.team[0], 15);
  EXPECT_EQ(sets.team[1], 2);
  EXPECT_TRUE(sets.aikohteet);
  EXPECT_EQ(sets.ai, 1);
  EXPECT_EQ(ai, 1);
  const std::string tiedosto = tallennettu();
  EXPECT_TRUE(sisaltaa(tiedosto, "player1ihmispelaaja=0;"));
  EXPECT_TRUE(sisaltaa(tiedosto, "player1team=16;"));
  EXPECT_TRUE(sisaltaa(tiedosto, "player2team=3;"));
  EXPECT_TRUE(sisaltaa(tiedosto, "ai vs ai=1;"));
  EXPECT_TRUE(sisaltaa(tiedosto, "testopponent=1;"));
}

TEST_F(SettingsMenu, TeamsNeverReachTheFlowerCount) {
  const int kukkia = cpisteita;
  cpisteita = 4;
  ASSERT_TRUE(aja("uuu" "e" "l" "d" "rrrr" "x" "x"));
  cpisteita = kukkia;
  EXPECT_EQ(sets.team[0], 3);  // 1 down wraps to the fourth team
  EXPECT_EQ(sets.team[1], 0);  // four steps up come round again
}

}  // namespace
