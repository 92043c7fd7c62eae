// The generated effects and music: every file the game loads exists and loads through
// SDL_mixer the way the game loads it, is heard without clipping, the laser loop joins
// without a click, and every song plays through and ends (the playlist moves on only
// then). The generator's toolkit links a library of its own: it is a build tool outside
// the game library.
#include "../tools/soundgen/render.h"
#include "../tools/soundgen/synth.h"

#include <SDL/SDL.h>
#include <SDL/SDL_mixer.h>
#include <glob.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "testutil.h"

namespace {

std::string dataPath(const std::string& name) { return std::string(VORTA_DATA_DIR) + "/" + name; }

const char* const kLaserLoop = "sounds\\a_9_ampumis.wav";

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

// The PCM data of a WAV file as SDL reads it, with its format.
struct Wav {
  SDL_AudioSpec muoto{};
  std::vector<int16_t> samples;
  bool loaded = false;
  double seconds() const { return static_cast<double>(samples.size()) / muoto.freq; }
};

Wav readWav(const std::string& path) {
  Wav wav;
  Uint8* data = nullptr;
  Uint32 bytes = 0;
  if (!SDL_LoadWAV(path.c_str(), &wav.muoto, &data, &bytes)) return wav;
  wav.loaded = true;
  wav.samples.resize(bytes / 2);
  std::memcpy(wav.samples.data(), data, wav.samples.size() * 2);
  SDL_FreeWAV(data);
  return wav;
}

int peakOf(const std::vector<int16_t>& s) {
  int p = 0;
  for (int16_t v : s) p = std::max(p, std::abs(static_cast<int>(v)));
  return p;
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

TEST_F(GeneratedAudio, EverySampleLoadsIsHeardUnclippedAndTheLaserLoopJoinsWithoutAClick) {
  // Every generated sample; the catalogue tests check that the game finds each one it names.
  const std::vector<std::string> samples = dataFiles({"sounds\\\\a_*.wav"});
  ASSERT_FALSE(samples.empty());
  for (const std::string& path : samples) {
    SCOPED_TRACE(path);
    Mix_Chunk* chunk = Mix_LoadWAV(path.c_str());
    EXPECT_NE(chunk, nullptr) << Mix_GetError();
    if (chunk) Mix_FreeChunk(chunk);
    const Wav wav = readWav(path);
    ASSERT_TRUE(wav.loaded) << SDL_GetError();
    EXPECT_TRUE(wav.seconds() > 0.05 && wav.seconds() < 2.0) << wav.seconds();
    const int peak = peakOf(wav.samples);
    EXPECT_TRUE(peak > 26000 && peak < 32767) << peak;
  }
  // Held fire repeats the laser: the step from its last sample back to the first is no
  // bigger than the steps inside.
  const std::vector<int16_t> s = readWav(dataPath(kLaserLoop)).samples;
  ASSERT_GT(s.size(), 100u);
  int largestStep = 0;
  for (size_t i = 1; i < s.size(); ++i) largestStep = std::max(largestStep, std::abs(s[i] - s[i - 1]));
  EXPECT_LE(std::abs(s.front() - s.back()), largestStep);
}

TEST_F(GeneratedAudio, StartMusicPlaysThroughEndsAndAnswersToItsBackslashPath) {
  const std::string path = dataPath("musics/StartMusic/start.mp3");
  const Playback played = playThrough(path, 30);
  EXPECT_TRUE(played.ended);
  EXPECT_GT(played.peak, 1000);
  // The intro's music callback asks for it by a backslash path, one file name here.
  const std::string backslashed = dataPath("musics\\StartMusic\\start.mp3");
  EXPECT_EQ(testutil::readFile(backslashed), testutil::readFile(path));
}

TEST_F(GeneratedAudio, EverySongOfThePlaylistPlaysThroughAndEnds) {
  const std::vector<std::string> songs =
      dataFiles({"musics/*.mp3", "musics/*.s3m", "musics/*.ogg", "musics/*.xm", "musics/*.mod", "musics/*.it"});
  EXPECT_FALSE(songs.empty());
  for (const std::string& path : songs) {
    SCOPED_TRACE(path);
    const Playback played = playThrough(path, 400);
    EXPECT_TRUE(played.ended);
    EXPECT_GT(played.peak, 8000);
  }
}

// ---- The generator's toolkit ----

TEST(SoundSynth, OscillatorsAndFiltersStayBoundedAcrossSweeps) {
  synth::Osc saw(synth::Osc::Saw), square(synth::Osc::Square);
  synth::Svf filter;
  synth::Noise noise(7);
  float loudest = 0.0f;
  for (int i = 0; i < synth::kRate; ++i) {
    double hz = synth::glide(20.0, 20000.0, synth::seconds(i), 1.0);
    loudest = std::max({loudest, std::fabs(saw.next(hz)), std::fabs(square.next(hz))});
    float out = filter.lowpass(noise.next(), hz, 8.0);
    ASSERT_TRUE(std::isfinite(out));
    loudest = std::max(loudest, std::fabs(out) / 20.0f);  // resonance may ring, never run away
  }
  EXPECT_LT(loudest, 1.2f);
  EXPECT_EQ(synth::toPcm16(2.0f), 32767);
  EXPECT_EQ(synth::toPcm16(-2.0f), -32768);
  EXPECT_EQ(synth::toPcm16(0.5f), 16384);
}

}  // namespace
