// Start-up and exit: the dedicated switch, the real game reaching its main
// menu under the test's X display, the exit statistics and the music playlist.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "Main.h"
#include "Sets.h"
#include "audio.h"
#include "netpeli.h"
#include "testutil.h"

namespace {

using testutil::ChildProcess;
using testutil::readFile;
using testutil::shell;
namespace fs = std::filesystem;

// The whole game runs here, so Mesa unloads its driver at exit and leaks inside
// it come from an unknown module that no suppression can name: the leak check
// stays with the in-process tests.
ChildProcess::Options gameOptions(const std::string& dir) {
  ChildProcess::Options o;
  o.workdir = dir;
  o.setEnv = {"SDL_AUDIODRIVER=dummy", "SDL_VIDEODRIVER=x11", "LIBGL_ALWAYS_SOFTWARE=1",
              "ASAN_OPTIONS=detect_leaks=0"};
  return o;
}

// Fills `dir` with the game's data folder: large files and folders as symbolic links,
// small files (settings, host list) as copies the game may overwrite.
void mirrorDataFolder(const std::string& from, const std::string& dir) {
  const std::uintmax_t copyLimit = 64 * 1024;
  for (const auto& entry : fs::directory_iterator(from)) {
    const fs::path target = fs::path(dir) / entry.path().filename();
    if (entry.is_regular_file() && entry.file_size() < copyLimit)
      fs::copy_file(entry.path(), target);
    else
      fs::create_symlink(entry.path(), target);
  }
}

// The game's window is found by its exact title (xdotool, xwd). Waits until it exists;
// gives up early when `stillWorth` turns false.
bool waitForWindow(const std::string& title, const std::function<bool()>& stillWorth, int timeoutMs) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  while (stillWorth() && std::chrono::steady_clock::now() < end) {
    if (shell("xdotool search --name '^" + title + "$'") == 0) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  return false;
}

bool sendKey(const std::string& title, const std::string& key) {
  return shell("xdotool search --name '^" + title + "$' windowfocus --sync key " + key) == 0;
}

// XWD headers are big-endian 32-bit fields.
size_t xwdField(const std::string& image, int index) {
  size_t value = 0;
  for (int k = 0; k < 4; k++) value = value << 8 | static_cast<unsigned char>(image[index * 4 + k]);
  return value;
}

// True when a screenshot of the window (kept at `shotPath`) shows a picture: a hundred
// pixels differ from the first one.
bool windowHasPicture(const std::string& title, const std::string& shotPath) {
  if (shell("xwd -name '" + title + "' -silent -out '" + shotPath + "'") != 0) return false;
  const std::string image = readFile(shotPath);
  if (image.size() < 100) return false;
  const size_t pixels = xwdField(image, 0) + xwdField(image, 19) * 12;  // header, colour table
  const size_t bytesPerPixel = xwdField(image, 11) / 8;
  if (bytesPerPixel < 3 || pixels + bytesPerPixel > image.size()) return false;
  int differing = 0;
  for (size_t i = pixels; i + bytesPerPixel <= image.size(); i += bytesPerPixel)
    if (image.compare(i, 3, image, pixels, 3) != 0 && ++differing >= 100) return true;
  return false;
}

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// The X server now and then refuses a connection while other test programs open
// theirs; a game that could not open the display is started again.
std::unique_ptr<ChildProcess> startGameWindow(const std::string& dir) {
  for (int attempt = 1;; attempt++) {
    auto game = std::make_unique<ChildProcess>(std::vector<std::string>{VORTA_EXE}, gameOptions(dir));
    const bool window = waitForWindow(
        "Vorta", [&] { return game->running(); }, 30000);
    if (window || attempt == 5 || !contains(game->output(), "Couldn't open X11 display")) return game;
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
  }
}

// The dedicated start runs no intro, so the music callback never takes it for a started game.
TEST(Startup, DedicatedModeNeverCountsAsStarted) {
  testutil::TempWorkDir dir;
  char ohjelma[] = "vorta", valitsin[] = "-d";
  char* argv[] = {ohjelma, valitsin, nullptr};
  testing::internal::CaptureStdout();
  EXPECT_EQ(vortaMain(2, argv), 0);
  testing::internal::GetCapturedStdout();
  EXPECT_TRUE(dserver);
  EXPECT_FALSE(alotettu);
}

// The play script on a folder already built, with a dedicated start and no display:
// one line on the terminal naming the log, and everything the game prints in that log;
// the dedicated game initialises no screen and exits cleanly.
TEST(Startup, PlayScriptLogsADedicatedStartThatNeedsNoDisplay) {
  testutil::TempDir build;
  ASSERT_EQ(symlink(VORTA_EXE, build.file("vorta").c_str()), 0);
  ASSERT_EQ(mkdir(build.file("data").c_str(), 0755), 0);
  ChildProcess::Options o = gameOptions(build.path());
  o.setEnv.push_back("VORTA_BUILD=" + build.path());
  o.unsetEnv = {"DISPLAY"};
  const testutil::RunResult run = testutil::runProgram({VORTA_SOURCE_DIR "/tools/play.sh", "-d"}, o, 60000);
  ASSERT_TRUE(run.exited) << run.output;
  EXPECT_EQ(run.status, 0) << run.output;
  EXPECT_EQ(run.output, "Vorta's messages go to " + build.file("data/vorta.log") + "\n");
  const std::string log = testutil::readFile(build.file("data/vorta.log"));
  EXPECT_EQ(log.rfind("dedicated mode=true\n", 0), 0u) << log;
  EXPECT_FALSE(contains(log, "Initialized in") || contains(log, "frames drawn")) << log;
}

// The game in a private copy of the data folder, windowed.
class GameRun : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(getenv("DISPLAY"), nullptr) << "needs an X display (run under xvfb-run)";
    mirrorDataFolder(VORTA_DATA_DIR, dir.path());
    testutil::writeFile(dir.file("sets.txt"),
                        "screenwidth=640;\r\nscreenheight=480;\r\nfullscreen=0;\r\n[]\r\n");
  }
  testutil::TempDir dir;
};

// One run of the real game: past the intro to a drawn main menu, then out by Escape
// with the exit statistics (their exact layout is pinned in-process below).
TEST_F(GameRun, MainMenuIsDrawnAfterTheIntroAndEscapeQuitsCleanly) {
  const auto started = startGameWindow(dir.path());
  ChildProcess& game = *started;
  ASSERT_TRUE(game.running()) << "no window; output:\n" << game.output();
  // Space skips the intro once it reads keys; the menu ignores it. Past the
  // intro's own length the menu is up whether or not a key was taken.
  for (int i = 0; i < 25 && game.running(); i++) {
    sendKey("Vorta", "space");
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
  }
  bool drawn = false;
  for (int i = 0; i < 40 && !drawn && game.running(); i++) {
    drawn = windowHasPicture("Vorta", dir.file("screen.xwd"));
    if (!drawn) std::this_thread::sleep_for(std::chrono::milliseconds(250));
  }
  EXPECT_TRUE(drawn) << game.output();
  ASSERT_TRUE(game.running()) << "the game left before Escape:\n" << game.output();
  // A busy X server now and then drops a key: Escape again until the game goes.
  for (int i = 0; i < 50 && game.running(); i++) {
    sendKey("Vorta", "Escape");
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
  }
  ASSERT_TRUE(game.waitExit(30000)) << game.output();
  const std::string out = game.output();
  EXPECT_EQ(game.exitStatus(), 0) << out;
  EXPECT_TRUE(contains(out, "dedicated mode=false\n")) << out;
  EXPECT_TRUE(contains(out, "Initialized in 640x480 resolution\n")) << out;
  EXPECT_TRUE(contains(out, "\nframes drawn: ") && contains(out, "\ncalculated fps: 100\n")) << out;
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

// The music stop callback, with the library off (fields only).
TEST(Playlist, NextSongOnlyWithSongsAndMusicOn) {
  char one[] = "musics/one.ogg", two[] = "musics/two.xm";
  char* list[] = {one, two};
  working = false;
  musiikkipaalla = alotettu = true;
  sets.musicvolume = 60;
  names = list;
  test(nullptr);  // count is 0
  musiikkipaalla = false;
  count = 2;
  test(nullptr);
  EXPECT_EQ(backgroundsong, nullptr);

  musiikkipaalla = true;
  testing::internal::CaptureStdout();
  test(nullptr);
  Sound* song = backgroundsong;
  alotettu = false;  // before the intro has ended the start music comes back instead
  test(nullptr);
  testing::internal::GetCapturedStdout();
  ASSERT_NE(song, nullptr);
  EXPECT_TRUE(song->running && (song->type == 1 || song->type == 2) && song->stopcallback == test);
  EXPECT_FLOAT_EQ(song->volume, 0.6f);
  EXPECT_TRUE(backgroundsong->type == 2 && backgroundsong->stopcallback == test);
  delete song;
  delete backgroundsong;
  names = nullptr;
  count = 0;
}

}  // namespace
