// The sound generator and what it generates. The generated effects and music: every
// file the game loads exists, loads through SDL_mixer the way the game loads it, and has
// the level, length and loop behaviour the game relies on. The generator's own toolkit
// (notation, synthesis, module writer, mix bus): the generator is a build tool outside
// the game library, so this test links its toolkit library of its own.
#include "../tools/soundgen/layers.h"
#include "../tools/soundgen/render.h"
#include "../tools/soundgen/score.h"
#include "../tools/soundgen/synth.h"
#include "../tools/soundgen/xm.h"

#include <SDL/SDL.h>
#include <SDL/SDL_mixer.h>
#include <glob.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
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
  const std::string bytes = testutil::readFile(path);
  const std::string ending = path.substr(path.rfind('.') + 1);
  if (ending == "mp3") return mp3Seconds(bytes);
  if (ending == "ogg") return oggSeconds(bytes);
  if (ending == "xm") return xmSeconds(bytes);
  return -1.0;
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

TEST_F(GeneratedAudio, StartMusicIsAnAbout10SecondMp3ThatPlays) {
  const std::string path = dataPath("musics/StartMusic/start.mp3");
  const double seconds = mp3Seconds(testutil::readFile(path));
  EXPECT_TRUE(seconds >= 8.0 && seconds <= 12.5) << seconds;
  expectLoadsAndPlays(path);
  // The intro's music callback asks for it by a backslash path, one file name here.
  const std::string backslashed = dataPath("musics\\StartMusic\\start.mp3");
  EXPECT_EQ(testutil::readFile(backslashed), testutil::readFile(path));
}

TEST_F(GeneratedAudio, PlaylistHasSongsOfOneToThreeMinutesThatPlay) {
  const std::vector<std::string> songs =
      dataFiles({"musics/*.mp3", "musics/*.s3m", "musics/*.ogg", "musics/*.xm", "musics/*.mod", "musics/*.it"});
  EXPECT_GE(songs.size(), 2u);
  for (const std::string& path : songs) {
    SCOPED_TRACE(path);
    const double seconds = songSeconds(path);
    EXPECT_TRUE(seconds >= 60.0 && seconds <= 180.0) << seconds;
    expectLoadsAndPlays(path);
  }
}

// ---- The generator's toolkit ----

// A note as (first step, length, pitch), for comparing whole lines at once.
std::vector<std::array<int, 3>> asTriples(const std::vector<score::Note>& notes) {
  std::vector<std::array<int, 3>> out;
  for (const score::Note& n : notes) out.push_back({n.step, n.length, n.pitch});
  return out;
}

TEST(SoundScore, MelodyLinesHoldRestAndSpellAccidentals) {
  // An unknown word silences the line like a rest: the hold after it starts nothing.
  EXPECT_EQ(asTriples(score::parse("A4 - - . Bb3 C#5 - x - E5")),
            (std::vector<std::array<int, 3>>{{0, 3, 69}, {4, 1, 58}, {5, 2, 73}, {9, 1, 76}}));
  EXPECT_EQ(score::pitchOf("Cb4"), 59);
  EXPECT_EQ(score::pitchOf("B#3"), 60);
  EXPECT_EQ(score::pitchOf("H4"), -1);
  EXPECT_EQ(score::pitchOf("C"), -1);
}

TEST(SoundScore, ChordsAreVoicedCloseWithTheRootInTheBass) {
  for (const char* name : {"Am", "F", "C", "G", "Em", "Dm", "Bb", "Gm", "A", "E", "Ab", "G7", "Asus"}) {
    SCOPED_TRACE(name);
    const score::Chord c = score::chord(name);
    for (int tone : c.tones) {
      EXPECT_GE(tone, 55);
      EXPECT_LT(tone, 67);
    }
    EXPECT_TRUE(std::is_sorted(c.tones.begin(), c.tones.end()));
    EXPECT_GE(c.bass, 36);
    EXPECT_LT(c.bass, 48);
  }
  EXPECT_EQ(score::chord("Am").tones, (std::vector<int>{57, 60, 64}));
  EXPECT_EQ(score::chord("Am").bass, 45);
  EXPECT_EQ(score::chord("E").tones, (std::vector<int>{56, 59, 64}));  // G#: major third
  EXPECT_EQ(score::chord("Asus").tones, (std::vector<int>{57, 62, 64}));
  EXPECT_EQ(score::chord("G7").tones, (std::vector<int>{55, 59, 62, 65}));
  EXPECT_EQ(score::chords("Am F C").size(), 3u);
}

TEST(SoundScore, FiguresWalkTheChordAndDrumLinesSkipSpaces) {
  const score::Chord am = score::chord("Am");
  // Past the last tone comes the first one an octave up; R is the bass, O the root.
  EXPECT_EQ(asTriples(score::figure("0123 R.-O", am)),
            (std::vector<std::array<int, 3>>{
                {0, 1, 57}, {1, 1, 60}, {2, 1, 64}, {3, 1, 69}, {4, 2, 45}, {7, 1, 57}}));
  EXPECT_EQ(score::hits("x... ..x. x"), (std::vector<int>{0, 6, 8}));
}

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

TEST(SoundMix, WrappedMixFoldsItsTailOntoTheStart) {
  render::Mix wrapped(1.0), open(1.0);
  const synth::Samples beep(synth::frames(0.2), 0.5f);
  for (render::Mix* mix : {&wrapped, &open}) mix->add(beep, 0.9, 1.0f, -1.0f, 0.0f);  // rings 0.1 s past the end
  const synth::Stereo loop = wrapped.finish(0.0f, true);
  const synth::Stereo kept = open.finish(0.0f, false);
  ASSERT_EQ(loop.left.size(), static_cast<size_t>(synth::frames(1.0)));
  EXPECT_GT(kept.left.size(), loop.left.size());
  EXPECT_NEAR(loop.left[synth::frames(0.05)], 0.5f, 1e-6);  // the part past the end
  EXPECT_NEAR(loop.left[synth::frames(0.5)], 0.0f, 1e-6);
  EXPECT_NEAR(loop.left.back(), 0.5f, 1e-6);
  EXPECT_NEAR(loop.right.back(), 0.0f, 1e-6);  // panned hard left
}

// A small module through the writer and back: the byte layout the module player
// expects, and a note that really sounds.
TEST_F(GeneratedAudio, ModuleWriterLaysOutHeadersPatternsAndDeltaSamples) {
  xm::Module m;
  m.name = "test";
  m.channels = 2;
  m.bpm = 150;
  m.speed = 3;
  xm::Pattern p(8, 2);
  p.at(0, 0) = {xm::noteFromMidi(60), 1, 0x50, 0, 0};
  p.at(4, 0).note = xm::kKeyOff;
  p.at(2, 1) = {0, 0, 0, 0x08, 0x40};
  m.patterns.push_back(p);
  m.order = {0, 0, 0};
  xm::Instrument ins;
  ins.name = "square";
  for (int i = 0; i < 400; ++i) ins.sample.data.push_back(static_cast<int16_t>(i % 100 < 50 ? 20000 : -20000));
  ins.sample.loopStart = 100;
  ins.sample.loopLength = 300;
  ins.sample.tune(441.0, 44100.0);
  ins.volumeEnvelope = {{0, 64}, {10, 32}};
  ins.sustainPoint = 1;
  m.instruments.push_back(ins);
  const std::string b = xm::encode(m);

  EXPECT_DOUBLE_EQ(xmSeconds(b), 3 * 8 * 3 * 2.5 / 150);
  EXPECT_EQ(le(b, 68, 2), 2u);  // channels
  // Pattern: each cell is a flag byte and the fields it names, so the note with
  // instrument and volume takes 4 bytes, the key-off 2, the panning 3, the 13 empty 1 each.
  const size_t pattern = 60 + le(b, 60, 4);
  const size_t packed = le(b, pattern + 7, 2);
  EXPECT_EQ(packed, 4u + 2 + 3 + 13);
  const size_t instrument = pattern + 9 + packed;
  EXPECT_EQ(le(b, instrument, 4), 263u);
  EXPECT_EQ(b.compare(instrument + 4, 6, "square"), 0);
  const size_t sample = instrument + 263;
  // Length, loop start and loop length in bytes.
  EXPECT_EQ((std::array<uint32_t, 3>{le(b, sample, 4), le(b, sample + 4, 4), le(b, sample + 8, 4)}),
            (std::array<uint32_t, 3>{800, 200, 600}));
  EXPECT_EQ(static_cast<uint8_t>(b[sample + 14]), 0x11);  // 16-bit, forward loop
  // Delta coding decodes back to the data.
  ASSERT_EQ(b.size(), sample + 40 + 800);
  int16_t value = 0;
  for (size_t i = 0; i < ins.sample.data.size(); ++i) {
    value = static_cast<int16_t>(value + static_cast<int16_t>(le(b, sample + 40 + 2 * i, 2)));
    ASSERT_EQ(value, ins.sample.data[i]) << i;
  }
  // 441 Hz content tuned to play C-4 at middle C: 8363 Hz shifted by relative note and finetune.
  const double c4 = 8363.0 * std::pow(2.0, (ins.sample.relativeNote + ins.sample.finetune / 128.0) / 12.0);
  EXPECT_NEAR(c4 * 441.0 / 44100.0, 261.63, 0.2);

  const std::string path = ::testing::TempDir() + "soundgen_test.xm";
  std::ofstream(path, std::ios::binary) << b;
  expectLoadsAndPlays(path);
  std::remove(path.c_str());
}

}  // namespace
