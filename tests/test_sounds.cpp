// The generated sound effects and music: every file the game loads exists, loads through
// SDL_mixer the way the game loads it, and has the level, length and loop behaviour the
// game relies on.
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
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

std::string dataPath(const std::string& name) { return std::string(VORTA_DATA_DIR) + "/" + name; }

const char* const kSampleFiles[] = {
    "sounds\\a_0_ampumis.wav",   "sounds\\a_0_eampumis.wav",  "sounds\\a_1_ampumis.wav",
    "sounds\\a_1_osumis.wav",    "sounds\\a_2_eampumis.wav",  "sounds\\a_3_ampumis.wav",
    "sounds\\a_3_eosumis.wav",   "sounds\\a_4_eosumis.wav",   "sounds\\a_4_ampumis.wav",
    "sounds\\a_4_eampumis.wav",  "sounds\\a_5_ampumis.wav",   "sounds\\a_5_osumis.wav",
    "sounds\\a_6_eampumis.wav",  "sounds\\a_7_ampumis.wav",   "sounds\\a_9_ampumis.wav",
    "sounds\\a_10_ampumis.wav",  "sounds\\a_10_eampumis.wav", "sounds\\a_11_ampumis.wav",
    "sounds\\a_11_eosumis.wav",  "sounds\\a_13_ampumis.wav",  "sounds\\a_13_eampumis.wav",
    "sounds\\a_13_osumis.wav",   "sounds\\a_14_ampumis.wav",  "sounds\\a_14_eampumis.wav",
    "sounds\\a_14_osumis.wav",   "sounds\\a_15_ampumis.wav",  "sounds\\a_15_eampumis.wav",
    "sounds\\a_16_ampumis.wav",  "sounds\\a_16_eampumis.wav", "sounds\\a_16_osumis.wav",
    "sounds\\a_17_ampumis.wav",  "sounds\\a_17_eampumis.wav", "sounds\\a_17_osumis.wav",
    "sounds\\a_17_eosumis.wav",  "sounds\\a_18_ampumis.wav",  "sounds\\a_18_eampumis.wav",
    "sounds\\a_20_ampumis.wav",
};
const char* const kLaserLoop = "sounds\\a_9_ampumis.wav";
const char* const kExplosion = "sounds\\a_2_eampumis.wav";
const char* const kMusicPatterns[] = {"musics/*.mp3", "musics/*.s3m", "musics/*.ogg",
                                      "musics/*.xm",  "musics/*.mod", "musics/*.it"};

struct Range {
  double low, high;
};

// How long a sample may last, by the slot its name says it serves.
Range lengthRange(const std::string& name) {
  if (name == kExplosion) return {1.0, 1.5};
  if (name == kLaserLoop) return {0.1, 2.0};
  if (name.find("_eampumis") != std::string::npos || name.find("_eosumis") != std::string::npos) return {0.08, 0.65};
  if (name.find("_osumis") != std::string::npos) return {0.08, 0.3};
  return {0.06, 0.25};
}

// The PCM data of a WAV file as SDL reads it, with its format.
struct Wav {
  SDL_AudioSpec spec{};
  std::vector<int16_t> samples;
  bool loaded = false;
  double seconds() const { return static_cast<double>(samples.size()) / spec.freq; }
};

Wav readWav(const std::string& path) {
  Wav wav;
  Uint8* data = nullptr;
  Uint32 bytes = 0;
  if (!SDL_LoadWAV(path.c_str(), &wav.spec, &data, &bytes)) return wav;
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

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

uint32_t le(const std::string& b, size_t at, int bytes) {
  uint32_t v = 0;
  for (int i = bytes - 1; i >= 0; --i) v = v << 8 | static_cast<uint8_t>(b[at + i]);
  return v;
}

// Playing time of an MPEG-1 Layer III file, counted frame by frame (1152 samples each);
// negative when a frame header is not MPEG-1 Layer III.
double mp3Seconds(const std::string& b) {
  static const int kKbps[16] = {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 0};
  static const int kRates[4] = {44100, 48000, 32000, 0};
  size_t at = 0;
  long frames = 0;
  int rate = 0;
  while (at + 4 <= b.size()) {
    uint32_t h = static_cast<uint8_t>(b[at]) << 24 | static_cast<uint8_t>(b[at + 1]) << 16 |
                 static_cast<uint8_t>(b[at + 2]) << 8 | static_cast<uint8_t>(b[at + 3]);
    if ((h & 0xfffe0000u) != 0xfffa0000u) return -1.0;  // sync, MPEG-1, Layer III
    int kbps = kKbps[(h >> 12) & 15];
    rate = kRates[(h >> 10) & 3];
    if (kbps == 0 || rate == 0) return -1.0;
    at += 144000 * kbps / rate + ((h >> 9) & 1);
    ++frames;
  }
  return rate ? frames * 1152.0 / rate : -1.0;
}

// Playing time of an Ogg Vorbis file: the last page's granule position over the rate in
// the identification header.
double oggSeconds(const std::string& b) {
  size_t id = b.find("\x01vorbis");
  size_t last = b.rfind("OggS");
  if (id == std::string::npos || last == std::string::npos || last + 14 > b.size() || id + 16 > b.size()) return -1.0;
  double granule = static_cast<double>(le(b, last + 6, 4)) + 4294967296.0 * le(b, last + 10, 4);
  return granule / le(b, id + 12, 4);
}

// Playing time of an extended module from its order list and default tempo (the songs
// written by the generator never change the tempo inside patterns).
double xmSeconds(const std::string& b) {
  if (b.compare(0, 17, "Extended Module: ") != 0 || b.size() < 336) return -1.0;
  const size_t orders = le(b, 64, 2), patterns = le(b, 70, 2), speed = le(b, 76, 2), bpm = le(b, 78, 2);
  std::vector<size_t> rows;
  size_t at = 60 + le(b, 60, 4);
  for (size_t p = 0; p < patterns; ++p) {
    if (at + 9 > b.size()) return -1.0;
    rows.push_back(le(b, at + 5, 2));
    at += le(b, at, 4) + le(b, at + 7, 2);
  }
  size_t total = 0;
  for (size_t o = 0; o < orders; ++o) {
    size_t pattern = static_cast<uint8_t>(b[80 + o]);
    if (pattern >= rows.size()) return -1.0;
    total += rows[pattern];
  }
  return bpm ? total * speed * 2.5 / bpm : -1.0;
}

double songSeconds(const std::string& path) {
  const std::string bytes = readFile(path);
  const std::string ending = path.substr(path.rfind('.') + 1);
  if (ending == "mp3") return mp3Seconds(bytes);
  if (ending == "ogg") return oggSeconds(bytes);
  if (ending == "xm") return xmSeconds(bytes);
  return -1.0;
}

std::vector<std::string> playlist() {
  std::vector<std::string> songs;
  for (const char* pattern : kMusicPatterns) {
    glob_t found{};
    if (glob(dataPath(pattern).c_str(), 0, nullptr, &found) == 0)
      songs.insert(songs.end(), found.gl_pathv, found.gl_pathv + found.gl_pathc);
    globfree(&found);
  }
  return songs;
}

std::atomic<int> g_mixPeak{0};

void recordPeak(void*, Uint8* stream, int len) {
  const Sint16* s = reinterpret_cast<const Sint16*>(stream);
  int p = 0;
  for (int i = 0; i < len / 2; ++i) p = std::max(p, std::abs(static_cast<int>(s[i])));
  if (p > g_mixPeak.load()) g_mixPeak.store(p);
}

// Whether the mixer's output reaches an audible level within a few seconds of starting
// the music: proves the decoder makes sound of the file, not only that it opened it.
bool playsAudibly(Mix_Music* music) {
  g_mixPeak = 0;
  Mix_SetPostMix(recordPeak, nullptr);
  Mix_PlayMusic(music, 0);
  for (int waited = 0; waited < 5000 && g_mixPeak.load() < 1000; waited += 10) SDL_Delay(10);
  Mix_HaltMusic();
  Mix_SetPostMix(nullptr, nullptr);
  return g_mixPeak.load() >= 1000;
}

void expectLoadsAndPlays(const std::string& path) {
  Mix_Music* music = Mix_LoadMUS(path.c_str());
  ASSERT_NE(music, nullptr) << Mix_GetError();
  EXPECT_TRUE(playsAudibly(music));
  Mix_FreeMusic(music);
}

class GeneratedAudio : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    ASSERT_EQ(SDL_Init(SDL_INIT_AUDIO), 0) << SDL_GetError();
    ASSERT_EQ(Mix_OpenAudio(44100, AUDIO_S16SYS, 2, 1024), 0) << Mix_GetError();
  }
  static void TearDownTestSuite() {
    Mix_CloseAudio();
    SDL_Quit();
  }
};

TEST_F(GeneratedAudio, EverySampleIsAShortLoudCleanMonoWavThatTheMixerLoads) {
  for (const char* name : kSampleFiles) {
    SCOPED_TRACE(name);
    const std::string path = dataPath(name);
    Mix_Chunk* chunk = Mix_LoadWAV(path.c_str());
    EXPECT_NE(chunk, nullptr) << Mix_GetError();
    if (chunk) Mix_FreeChunk(chunk);

    Wav wav = readWav(path);
    ASSERT_TRUE(wav.loaded) << SDL_GetError();
    EXPECT_EQ(wav.spec.format, AUDIO_S16LSB);
    EXPECT_EQ(wav.spec.channels, 1);
    EXPECT_TRUE(wav.spec.freq == 22050 || wav.spec.freq == 44100) << wav.spec.freq;
    const Range range = lengthRange(name);
    EXPECT_GE(wav.seconds(), range.low);
    EXPECT_LE(wav.seconds(), range.high);

    // Normalised near -1 dBFS: clearly audible, never clipped.
    const int peak = peakOf(wav.samples, 0, wav.samples.size());
    EXPECT_GT(peak, 26000);
    EXPECT_LT(peak, 32767);
    if (name == std::string(kLaserLoop)) continue;
    // A one-shot starts and stops at silence: no click when it starts or is cut off.
    ASSERT_FALSE(wav.samples.empty());
    EXPECT_LT(std::abs(static_cast<int>(wav.samples.front())), 300);
    EXPECT_LT(std::abs(static_cast<int>(wav.samples.back())), 300);
  }
}

TEST_F(GeneratedAudio, ExplosionIsALowHeavyBlastThatDiesAway) {
  Wav wav = readWav(dataPath(kExplosion));
  ASSERT_TRUE(wav.loaded);
  const size_t tenth = wav.spec.freq / 10;
  // Loud at the start, still rumbling at half time, quiet in the last tenth.
  const double start = rmsOf(wav.samples, 0, 2 * tenth);
  const double middle = rmsOf(wav.samples, 6 * tenth, 8 * tenth);
  const double end = rmsOf(wav.samples, wav.samples.size() - tenth, wav.samples.size());
  EXPECT_GT(start, 3000.0);
  EXPECT_GT(middle, start / 30.0);
  EXPECT_LT(middle, start);
  EXPECT_LT(end, middle);
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
  const size_t edge = wav.spec.freq / 50;
  const double whole = rmsOf(s, 0, s.size());
  EXPECT_GT(rmsOf(s, 0, edge), whole * 0.5);
  EXPECT_GT(rmsOf(s, s.size() - edge, s.size()), whole * 0.5);
}

TEST_F(GeneratedAudio, StartMusicIsAnAbout10SecondMp3ThatPlays) {
  const std::string path = dataPath("musics/StartMusic/start.mp3");
  const double seconds = mp3Seconds(readFile(path));
  EXPECT_GE(seconds, 8.0);
  EXPECT_LE(seconds, 12.5);
  expectLoadsAndPlays(path);
}

TEST_F(GeneratedAudio, PlaylistHasSongsOfOneToThreeMinutesThatPlay) {
  const std::vector<std::string> songs = playlist();
  EXPECT_GE(songs.size(), 2u);
  for (const std::string& path : songs) {
    SCOPED_TRACE(path);
    const double seconds = songSeconds(path);
    EXPECT_GE(seconds, 60.0);
    EXPECT_LE(seconds, 180.0);
    expectLoadsAndPlays(path);
  }
}

}  // namespace
