// The settings file: the forgiving reader against crafted files and the writer.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "Main.h"
#include "Sets.h"
#include "testutil.h"

using testutil::TempWorkDir;
using testutil::readFile;
using testutil::writeFile;

namespace {

// Lines as the writer lays them out: every line after the first starts with
// the line feed of the previous ";\r\n".
std::string settingsFile(std::initializer_list<const char*> lines) {
  std::string text;
  for (const char* line : lines) text += std::string(line) + ";\r\n";
  return text + "[]\r\n";
}

class SettingsFile : public ::testing::Test {
protected:
  void SetUp() override {
    sirpaleita = 1500;
    alkusirpaleita = 120;
  }
  Sets load(const std::string& content) {
    writeFile(dir.file("sets.txt"), content);
    Sets s;
    EXPECT_TRUE(s.loadFile("sets.txt"));
    return s;
  }
  TempWorkDir dir;
};

TEST_F(SettingsFile, LimitsClampOutOfRangeValues) {
  Sets low = load(settingsFile({"fps=20", "players=1", "credits=5", "sound volume=0", "detail=0"}));
  EXPECT_EQ(low.fps, 50);
  EXPECT_EQ(low.playermaara, 2);
  EXPECT_EQ(low.credits, 20);
  EXPECT_EQ(low.soundvolume, 0);
  EXPECT_EQ(low.detail, 0);
  EXPECT_EQ(sirpaleita, 1000);
  EXPECT_EQ(alkusirpaleita, 80);

  Sets high = load(settingsFile({"fps=500", "players=17", "credits=5000", "music volume=150", "detail=7"}));
  EXPECT_EQ(high.fps, 200);
  EXPECT_EQ(high.playermaara, 16);
  EXPECT_EQ(high.credits, 1000);
  EXPECT_EQ(high.musicvolume, 100);
  EXPECT_EQ(high.detail, 3);
  EXPECT_EQ(sirpaleita, 2500);
  EXPECT_EQ(alkusirpaleita, 200);
}

TEST_F(SettingsFile, SignIsIgnoredAndUnlimitedKeysTakeAnyValue) {
  Sets s = load(settingsFile({"screenwidth=-1280", "screenheight=99999", "credits=-50", "testopponent=7"}));
  EXPECT_EQ(s.width, 1280);
  EXPECT_EQ(s.height, 99999);
  EXPECT_EQ(s.credits, 50);
  EXPECT_EQ(s.ai, 7);
}

TEST_F(SettingsFile, TeamsAreOneBasedInTheFileAndLimited) {
  Sets s = load(settingsFile({"player1team=4", "player3team=0", "player4team=17", "player10team=6",
                              "player11team=9", "player16team=9"}));
  EXPECT_EQ(s.team[0], 3);
  EXPECT_EQ(s.team[2], 0);
  EXPECT_EQ(s.team[3], 15);
  // The digits of "10" in the key are skipped by the start position.
  EXPECT_EQ(s.team[9], 5);
  // Only slots 1-10 are read back.
  EXPECT_EQ(s.team[10], 0);
  EXPECT_EQ(s.team[15], 0);
}

TEST_F(SettingsFile, OnlyFirstFourHumanFlagsAreReadBack) {
  Sets s = load(settingsFile({"player1ihmispelaaja=0", "player2ihmispelaaja=0", "player4ihmispelaaja=1",
                              "player5ihmispelaaja=1", "player12ihmispelaaja=1"}));
  EXPECT_FALSE(s.ihminen[0]);
  EXPECT_FALSE(s.ihminen[1]);
  EXPECT_TRUE(s.ihminen[2]);
  EXPECT_TRUE(s.ihminen[3]);
  EXPECT_FALSE(s.ihminen[4]);
  EXPECT_FALSE(s.ihminen[11]);
}

TEST_F(SettingsFile, Mode256ReadsPastTheDigitsOfItsKey) {
  testing::internal::CaptureStdout();
  Sets off = load(settingsFile({"screenwidth=640", "mode256=0"}));
  Sets on = load(settingsFile({"screenwidth=640", "mode256=1"}));
  const std::string out = testing::internal::GetCapturedStdout();
  EXPECT_FALSE(off.mode256);
  EXPECT_TRUE(on.mode256);
  EXPECT_NE(out.find("juttu:0\n"), std::string::npos);
  EXPECT_NE(out.find("juttu:1\n"), std::string::npos);
}

TEST_F(SettingsFile, MissingKeysKeepDefaultsAndShardCounts) {
  Sets s = load(settingsFile({"screenwidth=800", "fps=60"}));
  Sets defaults;
  EXPECT_EQ(s.width, 800);
  EXPECT_EQ(s.fps, 60);
  EXPECT_EQ(s.height, defaults.height);
  EXPECT_EQ(s.playermaara, 2);
  EXPECT_EQ(s.credits, 200);
  EXPECT_STREQ(s.nick[0], "Player 1");
  EXPECT_EQ(s.detail, 3);
  EXPECT_EQ(sirpaleita, 1500);
  EXPECT_EQ(alkusirpaleita, 120);
}

TEST_F(SettingsFile, NickLinesAreLowerCasedAndMayFeedOtherKeys) {
  Sets s = load(settingsFile({"screenwidth=640", "nick1=ACE Pilot", "nick2=tester"}));
  EXPECT_STREQ(s.nick[0], "ace pilot");
  EXPECT_STREQ(s.nick[1], "tester");
  // "tester" contains "test", whose value is the first digits of the line: the 2 of "nick2".
  EXPECT_EQ(s.ai, 2);
}

TEST_F(SettingsFile, LoadsOnlyOnceAndMissingFileKeepsDefaults) {
  Sets missing;
  EXPECT_FALSE(missing.loadFile("no-such-file.txt"));
  EXPECT_FALSE(missing.fileluettu);
  EXPECT_EQ(missing.width, 640);

  Sets s = load(settingsFile({"screenwidth=800"}));
  EXPECT_TRUE(s.fileluettu);
  writeFile(dir.file("other.txt"), settingsFile({"screenwidth=1024"}));
  EXPECT_TRUE(s.loadFile("other.txt"));
  EXPECT_EQ(s.width, 800);
}

TEST_F(SettingsFile, BadFilesNeverOverflowAndKeepValuesInRange) {
  Sets empty = load("");
  EXPECT_EQ(empty.width, 640);

  // No terminator at all: the whole file is one line.
  Sets bare = load("screenwidth=800");
  EXPECT_EQ(bare.width, 800);

  // A line of 40 characters or more is cut; the following lines still count.
  Sets longLine = load(settingsFile({std::string(60, 'x').append("fps=150").c_str(), "players=3"}));
  EXPECT_EQ(longLine.fps, 100);
  EXPECT_EQ(longLine.playermaara, 3);

  // A nick line of the maximum length stays terminated.
  Sets longNick = load(settingsFile({"screenwidth=640", "nick1=abcdefghijklmnopqrstuvwxyz0123456789"}));
  EXPECT_EQ(strlen(longNick.nick[0]), 20u);

  srand(7);
  for (int round = 0; round < 20; round++) {
    std::string garbage(4096, '\0');
    for (char& c : garbage) c = static_cast<char>(rand() & 0xff);
    Sets g = load(garbage);
    EXPECT_GE(g.fps, 50);
    EXPECT_LE(g.fps, 200);
    EXPECT_GE(g.playermaara, 2);
    EXPECT_LE(g.playermaara, 16);
    for (int k = 0; k < 4; k++) EXPECT_LE(strlen(g.nick[k]), 20u);
    for (int t : g.team) EXPECT_TRUE(t >= 0 && t <= 15);
  }
}

TEST(SettingsReader, ContainsWalksWithoutRetryingTheFailingCharacter) {
  Sets s;
  EXPECT_TRUE(s.sisaltaa("\nscreenwidth=640", "screenwidth", 10));
  EXPECT_TRUE(s.sisaltaa("\nfps=1", "fps", 3));
  // "pla" is inside "ppla", but the second 'p' breaks the match and is not retried.
  EXPECT_FALSE(s.sisaltaa("ppla", "pla", 3));
  EXPECT_FALSE(s.sisaltaa("\nplayer12ihmispelaaja=1", "player2ihmis", 9));
  // Only the first 40 characters are searched.
  EXPECT_FALSE(s.sisaltaa((std::string(38, ' ') + "fps=1").c_str(), "fps", 3));
}

TEST(SettingsReader, NumberReaderQuirks) {
  Sets s;
  EXPECT_EQ(s.arvo("\nscreenwidth=640"), 640);
  EXPECT_EQ(s.arvo("no digits"), 0);
  EXPECT_EQ(s.arvo("\nplayer10team=6", 9), 6);
  // At most nine digits are taken.
  EXPECT_EQ(s.arvo("x1234567890123"), 123456789);
  // A later lone digit abandons the run; the next digit overwrites position 0 only.
  EXPECT_EQ(s.arvo("a12b3c4"), 42);
}

class SettingsRoundTrip : public ::testing::Test {
protected:
  TempWorkDir dir;
};

TEST_F(SettingsRoundTrip, SavedFileLoadsBack) {
  Sets out;
  out.width = 800;
  out.height = 600;
  out.efects = 1;
  out.musics = 1;
  out.fullscreen = 1;
  out.credits = 350.7;
  out.ai = 2;
  out.fps = 120;
  out.musicvolume = 55.9f;
  out.soundvolume = 33;
  out.playermaara = 4;
  out.aikohteet = true;
  strcpy(out.nick[1], "BOB");
  strcpy(out.nick[2], "a very long nick 20c");
  out.cammode = 2;
  out.detail = 1;
  out.mode256 = true;
  out.ihminen[1] = false;
  out.ihminen[5] = true;
  for (int i = 0; i < 16; i++) out.team[i] = (i * 5) % 16;
  testing::internal::CaptureStdout();
  ASSERT_TRUE(out.saveFile());
  EXPECT_EQ(testing::internal::GetCapturedStdout().substr(0, 4), "pl:4");

  Sets in;
  testing::internal::CaptureStdout();
  ASSERT_TRUE(in.loadFile("sets.txt"));
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(in.width, 800);
  EXPECT_EQ(in.height, 600);
  EXPECT_EQ(in.efects, 1);
  EXPECT_EQ(in.musics, 1);
  EXPECT_EQ(in.fullscreen, 1);
  EXPECT_EQ(in.credits, 350);
  EXPECT_EQ(in.ai, 2);
  EXPECT_EQ(in.fps, 120);
  EXPECT_EQ(in.musicvolume, 55);
  EXPECT_EQ(in.soundvolume, 33);
  EXPECT_EQ(in.playermaara, 4);
  EXPECT_TRUE(in.aikohteet);
  EXPECT_STREQ(in.nick[0], "player 1");
  EXPECT_STREQ(in.nick[1], "bob");
  EXPECT_STREQ(in.nick[2], "a very long nick 20c");
  EXPECT_EQ(in.cammode, 2);
  EXPECT_EQ(in.detail, 1);
  EXPECT_TRUE(in.mode256);
  EXPECT_TRUE(in.ihminen[0]);
  EXPECT_FALSE(in.ihminen[1]);
  EXPECT_FALSE(in.ihminen[5]);  // written, but not read back
  for (int i = 0; i < 10; i++) EXPECT_EQ(in.team[i], out.team[i]) << "slot " << i + 1;
  for (int i = 10; i < 16; i++) EXPECT_EQ(in.team[i], 0) << "slot " << i + 1;
}

TEST_F(SettingsRoundTrip, WriterLayout) {
  Sets s;
  s.team[15] = 3;
  testing::internal::CaptureStdout();
  ASSERT_TRUE(s.saveFile());
  testing::internal::GetCapturedStdout();
  const std::string text = readFile("sets.txt");
  EXPECT_EQ(text.rfind("screenwidth=640;\r\nscreenheight=480;\r\n", 0), 0u);
  EXPECT_NE(text.find("\r\nnick1=Player 1;\r\n"), std::string::npos);
  EXPECT_NE(text.find("\r\nmode256=0;\r\nplayer1ihmispelaaja=1;\r\n"), std::string::npos);
  EXPECT_NE(text.find("\r\nplayer16ihmispelaaja=0;\r\nplayer1team=1;\r\n"), std::string::npos);
  EXPECT_NE(text.find("\r\nplayer16team=4;\r\n[]\r\n"), std::string::npos);
  EXPECT_EQ(text.size() - text.rfind("[]\r\n"), 4u);
  int lines = 0;
  for (size_t at = text.find(";\r\n"); at != std::string::npos; at = text.find(";\r\n", at + 1)) lines++;
  EXPECT_EQ(lines, 19 + 16 + 16);
}

TEST_F(SettingsRoundTrip, UnwritableTargetFailsWithoutCrash) {
  // A folder in the way of the file cannot be opened for writing, even by root.
  ASSERT_EQ(testutil::shell("mkdir sets.txt"), 0);
  Sets s;
  testing::internal::CaptureStdout();
  EXPECT_FALSE(s.saveFile());
  testing::internal::GetCapturedStdout();
}

}  // namespace
