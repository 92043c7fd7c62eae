// Start-up and exit: the dedicated switch, the real game reaching its main
// menu under the test's X display, the exit statistics and the music playlist.
#include <gtest/gtest.h>

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>

#include "Main.h"
#include "Sets.h"
#include "audio.h"
#include "netpeli.h"
#include "testutil.h"

namespace {

using testutil::ChildProcess;

ChildProcess::Options gameOptions(const std::string& dir) {
  ChildProcess::Options o;
  o.workdir = dir;
  o.setEnv = {"SDL_AUDIODRIVER=dummy", "SDL_VIDEODRIVER=x11", "LIBGL_ALWAYS_SOFTWARE=1", testutil::leakCheckEnvironment()};
  return o;
}

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(Startup, DedicatedModeInitialisesAndExitsWithoutADisplay) {
  testutil::TempDir dir;
  ChildProcess::Options o = gameOptions(dir.path());
  o.unsetEnv = {"DISPLAY"};
  const testutil::RunResult run = testutil::runProgram({VORTA_EXE, "-d"}, o, 60000);
  ASSERT_TRUE(run.exited) << run.output;
  EXPECT_EQ(run.status, 0) << run.output;
  EXPECT_EQ(run.output.rfind("dedicated mode=true\n", 0), 0u) << run.output;
  EXPECT_FALSE(contains(run.output, "Initialized in")) << run.output;
  EXPECT_FALSE(contains(run.output, "frames drawn")) << run.output;
}

// The game in a private copy of the data folder, windowed.
class GameRun : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_NE(getenv("DISPLAY"), nullptr) << "needs an X display (run under xvfb-run)";
    testutil::mirrorDataFolder(VORTA_DATA_DIR, dir.path());
    testutil::writeFile(dir.file("sets.txt"), "screenwidth=640;\r\nscreenheight=480;\r\nfullscreen=0;\r\n[]\r\n");
  }
  // Sends one key to the game's window; false if the window is not (or no longer) there.
  bool sendKey(const std::string& key) {
    return testutil::shell("xdotool search --name '^Vorta$' windowfocus --sync key " + key) == 0;
  }
  bool waitForWindow(ChildProcess& game, int ms) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    while (game.running() && std::chrono::steady_clock::now() < end) {
      if (testutil::shell("xdotool search --name '^Vorta$'") == 0) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return false;
  }
  // True when a screenshot of the game's window shows a picture: at least
  // `enough` pixels differ from the first one.
  bool windowHasPicture(int enough = 100) {
    const std::string shot = dir.file("screen.xwd");
    if (testutil::shell("xwd -name Vorta -silent -out " + shot) != 0) return false;
    const std::string image = testutil::readFile(shot);
    if (image.size() < 100) return false;
    const size_t pixels = headerField(image, 0) + headerField(image, 19) * 12;  // header + colour table
    const size_t bytesPerPixel = headerField(image, 11) / 8;
    if (bytesPerPixel < 3 || pixels + bytesPerPixel > image.size()) return false;
    int differing = 0;
    for (size_t i = pixels; i + bytesPerPixel <= image.size(); i += bytesPerPixel)
      if (image.compare(i, 3, image, pixels, 3) != 0 && ++differing >= enough) return true;
    return false;
  }
  // XWD headers are big-endian 32-bit fields.
  static size_t headerField(const std::string& image, int index) {
    size_t value = 0;
    for (int k = 0; k < 4; k++) value = value << 8 | static_cast<unsigned char>(image[index * 4 + k]);
    return value;
  }
  testutil::TempDir dir;
};

TEST_F(GameRun, EscapeQuitsWithStatusZeroAndStatistics) {
  ChildProcess game({VORTA_EXE}, gameOptions(dir.path()));
  if (waitForWindow(game, 30000)) {
    sendKey("space");  // skips the intro
    for (int i = 0; i < 50 && game.running(); i++) {
      sendKey("Escape");
      std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
  }
  ASSERT_TRUE(game.waitExit(30000)) << game.output();
  const std::string out = game.output();
  EXPECT_EQ(game.exitStatus(), 0) << out;
  EXPECT_TRUE(contains(out, "dedicated mode=false\n")) << out;
  EXPECT_TRUE(contains(out, "Initialized in 640x480 resolution\n")) << out;
  EXPECT_TRUE(contains(out, "frames drawn: ")) << out;
  EXPECT_TRUE(contains(out, ", calculated frames:")) << out;
  EXPECT_TRUE(contains(out, "\ntime: ")) << out;
  EXPECT_TRUE(contains(out, "\ndrawn fps: ")) << out;
  EXPECT_TRUE(contains(out, "\ncalculated fps: 100\n")) << out;
}

TEST_F(GameRun, MainMenuIsDrawnAfterTheIntroIsSkipped) {
  ChildProcess game({VORTA_EXE}, gameOptions(dir.path()));
  ASSERT_TRUE(waitForWindow(game, 30000)) << "no window; output:\n" << game.output();
  sendKey("space");
  bool drawn = false;
  for (int i = 0; i < 40 && !drawn && game.running(); i++) {
    std::this_thread::sleep_for(std::chrono::milliseconds(250));
    drawn = windowHasPicture();
  }
  EXPECT_TRUE(drawn) << game.output();
  ASSERT_TRUE(game.running()) << "the game left before Escape:\n" << game.output();
  sendKey("Escape");
  ASSERT_TRUE(game.waitExit(20000)) << game.output();
  EXPECT_EQ(game.exitStatus(), 0) << game.output();
}

// In-process: exitProgram and the statistics, run in a child by the death test.
TEST(ExitStatistics, PrintedInOrderAndSurviveZeroPackets) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        dup2(2, 1);
        framesdrawn = 7;
        drawedframes = 50;
        calculatedframes = 100;
        currenttime = 2999;
        calculatefps = 100;
        results = 100;
        packets = 0;
        exitProgram(3);
      },
      ::testing::ExitedWithCode(3),
      "\nframes drawn: 7\nframes drawn: 50, calculated frames:100\ntime: 2 secs\ndrawn fps: 50.000000\n"
      "calculated fps: 100\nreceived 100 bytes gamedata in 0 packets 0 bytes/packet\n");
}

class Playlist : public ::testing::Test {
protected:
  void SetUp() override {
    working = false;
    musiikkipaalla = true;
    alotettu = true;
    sets.musicvolume = 60;
    backgroundsong = nullptr;
  }
  void TearDown() override {
    delete backgroundsong;
    backgroundsong = nullptr;
    count = 0;
    names = nullptr;
  }
};

TEST_F(Playlist, NoSongsMeansNothingChanges) {
  count = 0;
  test(nullptr);
  EXPECT_EQ(backgroundsong, nullptr);
}

TEST_F(Playlist, MusicOffMeansNothingChanges) {
  char song[] = "musics/one.ogg";
  char* list[] = {song};
  names = list;
  count = 1;
  musiikkipaalla = false;
  test(nullptr);
  EXPECT_EQ(backgroundsong, nullptr);
}

TEST_F(Playlist, NextSongPlaysWatchedAtTheSettingsVolume) {
  char one[] = "musics/one.ogg", two[] = "musics/two.xm";
  char* list[] = {one, two};
  names = list;
  count = 2;
  testing::internal::CaptureStdout();
  test(nullptr);
  testing::internal::GetCapturedStdout();
  ASSERT_NE(backgroundsong, nullptr);
  EXPECT_TRUE(backgroundsong->type == 1 || backgroundsong->type == 2);
  EXPECT_TRUE(backgroundsong->running);
  EXPECT_EQ(backgroundsong->stopcallback, test);
  EXPECT_FLOAT_EQ(backgroundsong->volume, 0.6f);
}

TEST_F(Playlist, BeforeTheIntroEndsTheStartMusicComesBack) {
  alotettu = false;
  count = 0;
  testing::internal::CaptureStdout();
  test(nullptr);
  testing::internal::GetCapturedStdout();
  ASSERT_NE(backgroundsong, nullptr);
  EXPECT_EQ(backgroundsong->type, 2);
  EXPECT_EQ(backgroundsong->stopcallback, test);
}

TEST(Random, StaysWithinBothEnds) {
  srand(1);
  for (int i = 0; i < 10000; i++) {
    const double r = random(24);
    ASSERT_GE(r, 0.0);
    ASSERT_LE(r, 24.0);
  }
}

TEST(Compare, MatchesPrefixOrSharedEnd) {
  EXPECT_TRUE(compare("JOIN player", "JOIN", 4));
  EXPECT_TRUE(compare("ok", "ok", 10));
  EXPECT_FALSE(compare("ok", "okay", 10));
  EXPECT_FALSE(compare("HOST", "JOIN", 4));
}

}  // namespace
