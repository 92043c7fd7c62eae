// The sound generator and what it generates. The generated effects and music: every
// file the game loads exists, loads through SDL_mixer the way the game loads it, and has
// the level, length and loop behaviour the game relies on; every song plays through and
// ends. The generator's own toolkit (synthesis, mix bus): the generator is a build tool
// outside the game library, so this test links its toolkit library of its own.
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
const char* const kExplosion = "sounds\\a_2_eampumis.wav";

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

struct Range {
  double low, high;
};

// How long a sample may last, by the slot its name says it serves.
Range lengthRange(const std::string& path) {
  if (path == dataPath(kExplosion)) return {1.0, 1.5};
  if (path == dataPath(kLaserLoop)) return {0.1, 2.0};
  if (path.find("_eampumis") != std::string::npos || path.find("_eosumis") != std::string::npos) return {0.08, 0.65};
  if (path.find("_osumis") != std::string::npos) return {0.08, 0.3};
  return {0.06, 0.25};
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

int peakOf(const std::vector<int16_t>& s, size_t from, size_t to) {
  int p = 0;
  for (size_t i = from; i < to && i < s.size(); ++i) p = std::max(p, std::abs(static_cast<int>(s[i])));
  return p;
}

double rmsOf(const std::vector<int16_t>& s, size_t from, size_t to) {
  double sum = 0.0;
  to = std::min(to, s.size());
  for (size_t i = from; i < to; ++i) sum += static_cast<double>(s[i]) * s[i];
  return to > from ? std::sqrt(sum / (to - from)) : 0.0;
}

// How a music file plays through the mixer: for how long until it ends by itself, and
// how loud. The mixer runs faster than real time (see the fixture).
struct Playback {
  double seconds;
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
  if (!music) return {0, 0, false};
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
  return {g_mixedFrames / 44100.0, g_mixPeak, g_musicEnded};
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

TEST_F(GeneratedAudio, EverySampleIsAShortLoudCleanMonoWavOfItsOwnThatTheMixerLoads) {
  // Every generated sample; the catalogue tests check that the game finds each one it names.
  const std::vector<std::string> samples = dataFiles({"sounds\\\\a_*.wav"});
  ASSERT_FALSE(samples.empty());
  std::vector<std::vector<int16_t>> seen;
  for (const std::string& path : samples) {
    SCOPED_TRACE(path);
    Mix_Chunk* chunk = Mix_LoadWAV(path.c_str());
    EXPECT_NE(chunk, nullptr) << Mix_GetError();
    if (chunk) Mix_FreeChunk(chunk);

    Wav wav = readWav(path);
    ASSERT_TRUE(wav.loaded) << SDL_GetError();
    EXPECT_EQ(wav.muoto.format, AUDIO_S16LSB);
    EXPECT_EQ(wav.muoto.channels, 1);
    EXPECT_TRUE(wav.muoto.freq == 22050 || wav.muoto.freq == 44100) << wav.muoto.freq;
    const Range range = lengthRange(path);
    EXPECT_TRUE(wav.seconds() >= range.low && wav.seconds() <= range.high) << wav.seconds();

    // Normalised near -1 dBFS: clearly audible, never clipped.
    const int peak = peakOf(wav.samples, 0, wav.samples.size());
    EXPECT_TRUE(peak > 26000 && peak < 32767) << peak;
    EXPECT_EQ(std::count(seen.begin(), seen.end(), wav.samples), 0);  // every ship sounds its own
    seen.push_back(wav.samples);
    if (path == dataPath(kLaserLoop)) continue;
    // A one-shot starts and stops at silence: no click when it starts or is cut off.
    ASSERT_FALSE(wav.samples.empty());
    EXPECT_LT(std::abs(static_cast<int>(wav.samples.front())), 300);
    EXPECT_LT(std::abs(static_cast<int>(wav.samples.back())), 300);
  }
}

TEST_F(GeneratedAudio, LaserLoopJoinsWithoutAJumpStartsQuietlyAndIsNotFaded) {
  Wav wav = readWav(dataPath(kLaserLoop));
  ASSERT_TRUE(wav.loaded);
  const std::vector<int16_t>& s = wav.samples;
  ASSERT_GT(s.size(), 100u);
  // The step from the last sample back to the first is no bigger than the steps inside.
  int largestStep = 0;
  for (size_t i = 1; i < s.size(); ++i) largestStep = std::max(largestStep, std::abs(s[i] - s[i - 1]));
  EXPECT_LE(std::abs(s.front() - s.back()), largestStep);
  // It begins at a zero crossing, so the beam switches on without a click.
  EXPECT_LE(std::abs(static_cast<int>(s.front())), largestStep);
  // A loop with faded ends would pulse at every repeat: both ends carry full level.
  const size_t edge = wav.muoto.freq / 50;
  const double whole = rmsOf(s, 0, s.size());
  EXPECT_GT(rmsOf(s, 0, edge), whole * 0.5);
  EXPECT_GT(rmsOf(s, s.size() - edge, s.size()), whole * 0.5);
}

TEST_F(GeneratedAudio, StartMusicIsAShortMp3ThatPlaysThroughAndEnds) {
  const std::string path = dataPath("musics/StartMusic/start.mp3");
  const Playback played = playThrough(path, 30);
  EXPECT_TRUE(played.ended);
  EXPECT_TRUE(played.seconds >= 8.0 && played.seconds <= 12.5) << played.seconds;
  EXPECT_GT(played.peak, 1000);
  // The intro's music callback asks for it by a backslash path, one file name here.
  const std::string backslashed = dataPath("musics\\StartMusic\\start.mp3");
  EXPECT_EQ(testutil::readFile(backslashed), testutil::readFile(path));
}

TEST_F(GeneratedAudio, PlaylistHasFiveSongsOfTwoMinutesOrMoreThatPlayThroughAndEnd) {
  const std::vector<std::string> songs =
      dataFiles({"musics/*.mp3", "musics/*.s3m", "musics/*.ogg", "musics/*.xm", "musics/*.mod", "musics/*.it"});
  EXPECT_GE(songs.size(), 5u);
  for (const std::string& path : songs) {
    SCOPED_TRACE(path);
    const Playback played = playThrough(path, 400);
    EXPECT_TRUE(played.ended);  // the playlist moves on only when a song ends
    EXPECT_TRUE(played.seconds >= 120.0 && played.seconds <= 300.0) << played.seconds;
    EXPECT_GT(played.peak, 8000);
  }
}

// ---- The generator's toolkit ----

TEST(SoundSynth, EnvelopesStartAtZeroAndReleaseWithoutAJump) {
  const synth::Adsr adsr{0.1, 0.2, 0.5, 0.3};
  EXPECT_DOUBLE_EQ(adsr.at(0.0, 1.0), 0.0);
  EXPECT_DOUBLE_EQ(adsr.at(0.1, 1.0), 1.0);
  EXPECT_DOUBLE_EQ(adsr.at(0.6, 1.0), 0.5);
  EXPECT_DOUBLE_EQ(adsr.at(1.3, 1.0), 0.0);
  // Released during the attack: the release starts from where the attack had got to.
  EXPECT_NEAR(adsr.at(0.05, 0.05), adsr.at(0.05 - 1e-9, 0.05), 1e-6);
  EXPECT_NEAR(adsr.at(0.05 + 0.15, 0.05), 0.25, 1e-9);
  EXPECT_DOUBLE_EQ(synth::percussive(-0.1, 0.01, 1.0), 0.0);
  EXPECT_NEAR(synth::percussive(1.01, 0.01, 1.0), 0.001, 1e-4);  // -60 dB at the decay time
  EXPECT_DOUBLE_EQ(synth::glide(100, 400, 0.5, 1.0), 200.0);     // halfway in ratio, not in Hz
  EXPECT_DOUBLE_EQ(synth::glide(100, 400, 2.0, 1.0), 400.0);
}

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
