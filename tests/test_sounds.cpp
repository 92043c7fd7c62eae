// The generated music plays through the mixer as the game plays it and ends by itself;
// the start music answers to the intro's backslash path.
#include <SDL/SDL.h>
#include <SDL/SDL_mixer.h>
#include <glob.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <string>
#include <vector>

#include "testutil.h"

namespace {

std::string dataPath(const std::string& name) { return std::string(VORTA_DATA_DIR) + "/" + name; }

// The data files matching glob patterns. Glob reads a backslash as an escape: one
// in a file name is doubled in the pattern.
std::vector<std::string> dataFiles(std::initializer_list<const char*> patterns) {
  std::vector<std::string> files;
  for (const char* pattern : patterns) {
    glob_t found{};
    if (glob(dataPath(pattern).c_str(), 0, nullptr, &found) == 0)
      files.insert(files.end(), found.gl_pathv, found.gl_pathv + found.gl_pathc);
    globfree(&found);
  }
  return files;
}

// How a music file plays through the mixer: whether it ends by itself, and how loud.
// The mixer runs faster than real time (see the fixture).
struct Playback {
  int peak;
  bool ended;
};

std::atomic<long> g_mixedFrames{0};
std::atomic<int> g_mixPeak{0};
std::atomic<bool> g_musicEnded{false};

void watchMix(void*, Uint8* stream, int len) {
  if (g_musicEnded) return;
  const Sint16* s = reinterpret_cast<const Sint16*>(stream);
  int p = 0;
  for (int i = 0; i < len / 2; ++i) p = std::max(p, std::abs(static_cast<int>(s[i])));
  if (p > g_mixPeak) g_mixPeak = p;
  g_mixedFrames += len / 4;
}

void musicEnded() { g_musicEnded = true; }

Playback playThrough(const std::string& path, double limitSeconds) {
  Mix_Music* music = Mix_LoadMUS(path.c_str());
  EXPECT_NE(music, nullptr) << path << ": " << Mix_GetError();
  if (!music) return {0, false};
  g_mixedFrames = 0;
  g_mixPeak = 0;
  g_musicEnded = false;
  Mix_HookMusicFinished(musicEnded);
  SDL_LockAudio();
  Mix_SetPostMix(watchMix, nullptr);
  Mix_PlayMusic(music, 1);
  SDL_UnlockAudio();
  while (!g_musicEnded && g_mixedFrames < limitSeconds * 44100) SDL_Delay(2);
  Mix_HaltMusic();
  Mix_SetPostMix(nullptr, nullptr);
  Mix_HookMusicFinished(nullptr);
  Mix_FreeMusic(music);
  return {g_mixPeak, g_musicEnded};
}

class GeneratedAudio : public ::testing::Test {
 protected:
  // The disk driver into nowhere, with no wait between buffers: songs play in seconds.
  static void SetUpTestSuite() {
    setenv("SDL_AUDIODRIVER", "disk", 1);
    setenv("SDL_DISKAUDIOFILE", "/dev/null", 1);
    setenv("SDL_DISKAUDIODELAY", "0", 1);
    ASSERT_EQ(SDL_Init(SDL_INIT_AUDIO), 0) << SDL_GetError();
    ASSERT_EQ(Mix_OpenAudio(44100, AUDIO_S16SYS, 2, 1024), 0) << Mix_GetError();
  }
  static void TearDownTestSuite() {
    Mix_CloseAudio();
    SDL_Quit();
  }
};

// The start music is quieter than the playlist's songs; the intro's music callback asks
// for it by a backslash path, one file name here.
TEST_F(GeneratedAudio, EverySongPlaysThroughAndEnds) {
  const std::string start = dataPath("musics/StartMusic/start.mp3");
  EXPECT_EQ(testutil::readFile(dataPath("musics\\StartMusic\\start.mp3")), testutil::readFile(start));
  std::vector<std::string> songs = dataFiles(
      {"musics/*.mp3", "musics/*.s3m", "musics/*.ogg", "musics/*.xm", "musics/*.mod", "musics/*.it"});
  EXPECT_FALSE(songs.empty());
  songs.push_back(start);
  for (const std::string& path : songs) {
    SCOPED_TRACE(path);
    const Playback played = playThrough(path, 400);
    EXPECT_TRUE(played.ended);
    EXPECT_GT(played.peak, path == start ? 1000 : 8000);
  }
}

}  // namespace
