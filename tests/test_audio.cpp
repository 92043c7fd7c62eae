// Sound over the mixer: fields with the library off; real output through the disk driver,
// the music stop callback, fades, sharing and the mix of a whole battle.
#include "../tools/soundgen/writers.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

#include "audio.h"
#include "taisteluaani.h"
#include "testutil.h"

namespace {

int callbackCalls = 0;
void countCall(Sound*) { callbackCalls++; }

bool listed(const Sound* s) {
  for (soundlist* node = allsounds; node; node = node->next)
    if (node->sound == s) return true;
  return false;
}

// Calls updateAudio as a game loop would, for `ms`.
void pumpAudio(int ms) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
  while (std::chrono::steady_clock::now() < end && callbackCalls == 0) {
    updateAudio();
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  updateAudio();
}

void quietPlay(Sound& s) {
  testing::internal::CaptureStdout();
  s.play();
  testing::internal::GetCapturedStdout();
}

TEST(SoundOff, TypeByEndingAndFieldOnlyOperations) {
  working = false;
  callbackCalls = 0;
  const std::pair<const char*, int> endings[] = {
      {"a.MP3", 2}, {"b.ogg", 2}, {"sounds\\a_0.wav", 3}, {"d.RAW", 3}, {"e.s3m", 1},   {"f.Xm", 1},
      {"g.it", 1},  {"h.mid", 1}, {"k.mod", 1},           {"l.txt", 0}, {"noending", 0}};
  for (const auto& [file, type] : endings) EXPECT_EQ(Sound(file).type, type) << file;
  EXPECT_EQ(Sound("anything.bin", 2).type, 2);

  Sound s("boom.wav", true);
  EXPECT_EQ(s.sample, nullptr);
  s.setVolume(0.25f);
  s.setStopCallback(countCall);
  testing::internal::CaptureStdout();
  s.play();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "1\n2\n3\n4\n5\n6\n7\n8\n");
  EXPECT_TRUE(s.running);
  s.setFinished();
  updateAudio();
  EXPECT_EQ(callbackCalls, 0);  // nothing is ever finished without the library

  Sound* copy = new Sound(&s);
  EXPECT_EQ(allsounds->sound, copy);  // pushed at the front
  EXPECT_TRUE(copy->loops && copy->volume == 0.25f && copy->stopcallback == countCall);
  delete copy;
  EXPECT_FALSE(listed(copy));
  EXPECT_TRUE(listed(&s));
}

synth::Samples sine(double seconds) {
  synth::Samples wave(synth::frames(seconds));
  for (size_t i = 0; i < wave.size(); i++)
    wave[i] = 0.6f * float(std::sin(2 * M_PI * 440 * i / synth::kRate));
  return wave;
}

class SoundOn : public ::testing::Test {
 protected:
  void SetUp() override {
    setenv("SDL_AUDIODRIVER", "disk", 1);
    setenv("SDL_DISKAUDIOFILE", output.c_str(), 1);
    setenv("SDL_DISKAUDIODELAY", "23", 1);  // ms a buffer of 23 ms: about as fast as it plays
    callbackCalls = 0;
    initAudio();
    ASSERT_TRUE(working);
    ASSERT_TRUE(audiofile::writeWav(tone, sine(0.3)));
  }
  void TearDown() override {
    uninitAudio();
    setenv("SDL_AUDIODRIVER", "dummy", 1);
  }
  // What the mixer has written so far, as 16-bit samples.
  std::vector<int16_t> outputSamples() const {
    const std::string raw = testutil::readFile(output);
    std::vector<int16_t> samples(raw.size() / 2);
    memcpy(samples.data(), raw.data(), 2 * samples.size());
    return samples;
  }
  int loudestOutput() const {
    int loudest = 0;
    for (int16_t v : outputSamples()) loudest = std::max(loudest, std::abs(static_cast<int>(v)));
    return loudest;
  }
  testutil::TempDir dir;
  std::string output = dir.file("mixer.raw"), tone = dir.file("tone.wav");
};

TEST_F(SoundOn, EffectIsHeardAtItsOwnLevelAndNeverCallsBack) {
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  EXPECT_LT(loudestOutput(), 10);  // silence before
  Sound effect(tone.c_str());
  effect.setStopCallback(countCall);
  quietPlay(effect);
  EXPECT_GE(effect.channel, 0);
  EXPECT_FALSE(effect.running);
  pumpAudio(700);
  // The mix's headroom is given back after the mix: a lone sound keeps its punch.
  EXPECT_NEAR(loudestOutput(), 0.6 * 32767, 0.02 * 32767);
  EXPECT_EQ(callbackCalls, 0);
}

Sound* successor = nullptr;
void playSuccessor(Sound*) {
  callbackCalls++;
  quietPlay(*successor);
}

// Start-up's hand-over from the intro music to the menu's: the intro fades the song out
// and start-up then stops it; the stop lets the fade finish, and the stop callback starts
// the next song as soon as the first has faded.
TEST_F(SoundOn, AFadedSongEndsAfterItsFadeAndTheNextFollows) {
  const std::string file = dir.file("song.ogg");
  ASSERT_TRUE(audiofile::writeOgg(file, {sine(2.0), sine(2.0)}, 0.4f));
  Sound first(file.c_str()), next(file.c_str());
  successor = &next;
  first.setStopCallback(playSuccessor);
  quietPlay(first);
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  fadeOutMusic(400);
  first.stop();
  pumpAudio(100);
  EXPECT_EQ(callbackCalls, 0);  // still fading
  pumpAudio(3000);
  EXPECT_EQ(callbackCalls, 1);
  EXPECT_TRUE(next.running);
}

TEST_F(SoundOn, StreamEndCallsItsStopCallbackOnce) {
  Sound song(tone.c_str(), 2);
  ASSERT_NE(song.stream, nullptr);
  song.setStopCallback(countCall);
  quietPlay(song);
  pumpAudio(5000);
  EXPECT_EQ(callbackCalls, 1);
  EXPECT_FALSE(song.running);
  pumpAudio(100);
  EXPECT_EQ(callbackCalls, 1);

  // Stopping the watched music counts as its end; a fresh play forgets a stop.
  quietPlay(song);
  song.stop();
  quietPlay(song);
  updateAudio();
  EXPECT_EQ(callbackCalls, 1);
  song.stop();
  updateAudio();
  EXPECT_EQ(callbackCalls, 2);
}

TEST_F(SoundOn, SharedSampleOutlivesWhicheverSoundGoesFirst) {
  Sound* original = new Sound(tone.c_str());
  Sound* copy = new Sound(original);
  ASSERT_EQ(copy->sample, original->sample);
  delete copy;
  quietPlay(*original);  // the sanitizer would catch a freed chunk
  copy = new Sound(original);
  delete original;
  quietPlay(*copy);
  EXPECT_GE(copy->channel, 0);
  delete copy;  // the last holder frees it, or the leak checker complains
}

TEST_F(SoundOn, UnloadableFilesAreReportedAndPlayNothing) {
  testutil::writeFile(dir.file("bad.wav"),
                      std::string("RIFF\xff\xff\xff\x7fWAVEfmt ", 16) + std::string(64, '\xee'));
  testing::internal::CaptureStdout();
  Sound missing("no-such-dir/boom.wav");
  Sound missingSong("no-such-dir/song.ogg");
  Sound bad(dir.file("bad.wav").c_str());
  missing.play();
  missingSong.play();
  const std::string out = testing::internal::GetCapturedStdout();
  EXPECT_TRUE(missing.sample == nullptr && missingSong.stream == nullptr && bad.sample == nullptr);
  EXPECT_NE(out.find("\"no-such-dir/boom.wav\""), std::string::npos);
  EXPECT_NE(out.find("\"no-such-dir/song.ogg\""), std::string::npos);
  EXPECT_EQ(missing.channel, -1);
}

TEST(SoundInit, FailureLeavesTheGameSilent) {
  setenv("SDL_AUDIODRIVER", "no-such-driver", 1);
  testing::internal::CaptureStdout();
  initAudio();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Audio system not initialized\r\n");
  setenv("SDL_AUDIODRIVER", "dummy", 1);
  EXPECT_FALSE(working);
}

// A sixteen-ship battle with music, at the default volumes: a clean mix leaves almost
// no sample at full scale, neither inside the mixer nor in what it plays.
TEST(BattleMix, SixteenShipsAndMusicStayUnderFullScale) {
  testutil::ScopedChdir data(VORTA_DATA_DIR);
  taisteluaani::Nauhoitus recording;
  testing::internal::CaptureStdout();
  const bool recorded = taisteluaani::nauhoita(15, "musics/StartMusic/start.mp3", 1, recording);
  const std::string trace = testing::internal::GetCapturedStdout();
  setenv("SDL_AUDIODRIVER", "dummy", 1);
  ASSERT_TRUE(recorded);
  size_t plays = 0;
  for (size_t at = 0; (at = trace.find("8\n", at)) != std::string::npos; ++at) ++plays;
  EXPECT_GT(plays, 300u);  // a loud battle
  const std::vector<int16_t>& s = recording.naytteet;
  EXPECT_LT(taisteluaani::taysia(s, 0, s.size()), static_cast<long>(s.size() / 10000));
  EXPECT_LT(recording.mikserissa, static_cast<long>(s.size() / 10000));
}

}  // namespace
