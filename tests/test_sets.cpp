// The settings file: the forgiving reader against crafted files, and the writer.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "Main.h"
#include "Sets.h"
#include "testutil.h"

namespace {

// Lines laid out as the writer does: each later line starts with the previous line feed.
std::string settingsFile(std::initializer_list<std::string> lines) {
  std::string text;
  for (const std::string& line : lines) text += line + ";\r\n";
  return text + "[]\r\n";
}

class SettingsFile : public ::testing::Test {
 protected:
  void SetUp() override {
    sirpaleita = 1500;
    alkusirpaleita = 120;
  }
  Sets load(const std::string& content) {
    testutil::writeFile("sets.txt", content);
    Sets s;
    testing::internal::CaptureStdout();
    EXPECT_TRUE(s.loadFile("sets.txt"));
    printed = testing::internal::GetCapturedStdout();
    return s;
  }
  testutil::TempWorkDir dir;
  std::string printed;
};

TEST_F(SettingsFile, LimitsAndTheMissingSign) {
  // fps, players, credits, music volume, detail, width and the shard pools it sizes
  auto arvot = [](const Sets& s) {
    return std::vector<double>{double(s.fps),      double(s.playermaara), s.credits,
                               s.musicvolume,      double(s.detail),      double(s.width),
                               double(sirpaleita), double(alkusirpaleita)};
  };
  EXPECT_EQ(arvot(load(settingsFile({"fps=20", "players=1", "credits=-50", "detail=0", "screenwidth=-9"}))),
            (std::vector<double>{50, 2, 50, 100, 0, 9, 1000, 80}));
  EXPECT_EQ(
      arvot(load(settingsFile({"fps=500", "players=17", "credits=5000", "music volume=150", "detail=7"}))),
      (std::vector<double>{200, 16, 1000, 100, 3, 640, 2500, 200}));
}

TEST_F(SettingsFile, PerSlotKeysSkipTheDigitsOfTheirNames) {
  Sets s = load(
      settingsFile({"player3team=0", "player4team=17", "player10team=6", "player11team=9",
                    "player1ihmispelaaja=0", "player4ihmispelaaja=0", "player5ihmispelaaja=1", "mode256=0"}));
  EXPECT_EQ(s.team[2], 0);
  EXPECT_EQ(s.team[3], 15);
  EXPECT_EQ(s.team[9], 5);
  EXPECT_EQ(s.team[10], 0);  // only slots 1-10 are read back
  EXPECT_FALSE(s.ihminen[0]);
  EXPECT_TRUE(s.ihminen[1]);
  EXPECT_FALSE(s.ihminen[3]);
  EXPECT_FALSE(s.ihminen[4]);  // only slots 1-4 are read back
  EXPECT_FALSE(s.mode256);
  EXPECT_EQ(printed, "juttu:0\n");
}

TEST_F(SettingsFile, AbsentKeysKeepDefaultsAndNicksComeBackLowerCase) {
  Sets s = load(settingsFile({"screenwidth=800", "nick1=ACE Pilot", "nick2=tester"}));
  EXPECT_EQ(s.width, 800);
  EXPECT_EQ(s.height, 480);
  EXPECT_EQ(s.credits, 200);
  EXPECT_EQ(s.detail, 3);
  EXPECT_EQ(sirpaleita, 1500);
  EXPECT_EQ(alkusirpaleita, 120);
  EXPECT_STREQ(s.nick[0], "ace pilot");
  EXPECT_STREQ(s.nick[2], "Player 3");
  // A nick line is tried against every key: "tester" holds "test", read from the 2 of "nick2".
  EXPECT_EQ(s.ai, 2);

  testutil::writeFile("other.txt", settingsFile({"screenwidth=1024"}));
  EXPECT_TRUE(s.loadFile("other.txt"));  // a file already read is not read again
  EXPECT_EQ(s.width, 800);
  Sets missing;
  EXPECT_FALSE(missing.loadFile("no-such-file.txt"));
  EXPECT_EQ(missing.width, 640);
}

TEST_F(SettingsFile, BadFilesAreReadSafely) {
  EXPECT_EQ(load("").width, 640);
  EXPECT_EQ(load("screenwidth=800").width, 800);  // no terminator at all
  // A line of 40 characters or more is cut, and what follows still counts.
  Sets longLine = load(settingsFile({std::string(60, 'x') + "fps=150", "players=3"}));
  EXPECT_EQ(longLine.fps, 100);
  EXPECT_EQ(longLine.playermaara, 3);
  EXPECT_EQ(strlen(load(settingsFile({"x", "nick1=abcdefghijklmnopqrstuvwxyz0123456789"})).nick[0]), 20u);

  srand(7);
  for (int round = 0; round < 20; round++) {
    std::string garbage(4096, '\0');
    for (char& c : garbage) c = static_cast<char>(rand() & 0xff);
    Sets g = load(garbage);
    EXPECT_TRUE(g.fps >= 50 && g.fps <= 200 && g.playermaara >= 2 && g.playermaara <= 16);
    for (const char* nick : g.nick) EXPECT_LE(strnlen(nick, 21), 20u);
  }
}

TEST(SettingsReader, MatchingAndNumberQuirks) {
  Sets s;
  EXPECT_TRUE(s.sisaltaa("\nscreenwidth=640", "screenwidth", 10));
  // The character that breaks a match is not tried again as a first character.
  EXPECT_FALSE(s.sisaltaa("ppla", "pla", 3));
  EXPECT_FALSE(s.sisaltaa((std::string(38, ' ') + "fps=1").c_str(), "fps", 3));  // past 40 characters
  EXPECT_EQ(s.arvo("no digits"), 0);
  EXPECT_EQ(s.arvo("x1234567890123"), 123456789);  // nine digits at most
  // A lone later digit abandons the run; the next digit overwrites position 0 only.
  EXPECT_EQ(s.arvo("a12b3c4"), 42);
}

TEST_F(SettingsFile, SavedFileLoadsBackAndAnUnwritableTargetFails) {
  Sets out;
  out.width = 800;
  out.credits = 350.7;
  out.musicvolume = 55.9f;
  out.fps = 120;
  out.playermaara = 4;
  out.aikohteet = out.mode256 = true;
  out.detail = 2;
  strcpy(out.nick[1], "a very long nick 20c");
  out.ihminen[1] = false;
  for (int i = 0; i < 16; i++) out.team[i] = (i * 5) % 16;
  testing::internal::CaptureStdout();
  ASSERT_TRUE(out.saveFile());
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "pl:4");
  const std::string text = testutil::readFile("sets.txt");
  EXPECT_EQ(text.rfind("screenwidth=800;\r\nscreenheight=480;\r\n", 0), 0u);
  EXPECT_NE(text.find("\r\nplayer16ihmispelaaja=0;\r\nplayer1team=1;\r\n"), std::string::npos);
  const std::string end = "\r\nplayer16team=12;\r\n[]\r\n";
  EXPECT_EQ(text.substr(text.size() - end.size()), end);

  Sets in = load(text);
  EXPECT_EQ(in.width, 800);
  EXPECT_EQ(in.credits, 350);
  EXPECT_EQ(in.musicvolume, 55);
  EXPECT_EQ(in.fps, 120);
  EXPECT_EQ(in.playermaara, 4);
  EXPECT_TRUE(in.aikohteet && in.mode256);
  EXPECT_EQ(in.detail, 2);
  EXPECT_STREQ(in.nick[0], "player 1");
  EXPECT_STREQ(in.nick[1], "a very long nick 20c");
  EXPECT_FALSE(in.ihminen[1]);
  for (int i = 0; i < 10; i++) EXPECT_EQ(in.team[i], out.team[i]) << "slot " << i + 1;
  EXPECT_EQ(sirpaleita, 2000);

  ASSERT_EQ(testutil::shell("rm sets.txt && mkdir sets.txt"), 0);  // a target refused even to root
  testing::internal::CaptureStdout();
  EXPECT_FALSE(Sets().saveFile());
  testing::internal::GetCapturedStdout();
}

}  // namespace
