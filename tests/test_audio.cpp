// Sound over the mixer: field behaviour with the library off, real playback
// through SDL's disk audio driver, the end-of-music stop callback and sharing.
#include <gtest/gtest.h>

#include <SDL/SDL.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

#include "audio.h"
#include "testutil.h"

namespace {

int callbackCalls = 0;
Sound* callbackSound = nullptr;
void countCall(Sound* s) {
  callbackCalls++;
  callbackSound = s;
}

bool inAllSounds(const Sound* s) {
  for (soundlist* node = allsounds; node; node = node->next)
    if (node->sound == s) return true;
  return false;
}

// Runs updateAudio as a game loop would, for at most `ms`, until `done`.
template <typename Done>
void pumpAudio(int ms, Done done) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
  while (!done() && std::chrono::steady_clock::now() < end) {
    updateAudio();
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

class SoundOff : public ::testing::Test {
protected:
  void SetUp() override {
    working = false;
    callbackCalls = 0;
  }
};

TEST_F(SoundOff, TypeFollowsTheEndingWhateverItsCase) {
  const struct {
    const char* file;
    int type;
  } cases[] = {{"musics/a.MP3", 2}, {"b.mp2", 2}, {"c.Ogg", 2}, {"sounds\\a_0_ampumis.wav", 3}, {"d.RAW", 3},
               {"e.s3m", 1},        {"f.XM", 1},  {"g.it", 1},  {"h.mid", 1}, {"i.rmi", 1}, {"j.sgr", 1},
               {"k.mod", 1},        {"l.txt", 0}, {"noending", 0}, {"dir.wav/song", 0}};
  for (const auto& c : cases) {
    Sound s(c.file);
    EXPECT_EQ(s.type, c.type) << c.file;
  }
  Sound forced("anything.bin", 2);
  EXPECT_EQ(forced.type, 2);
}

TEST_F(SoundOff, OperationsOnlyUpdateTheFields) {
  Sound s("boom.wav");
  EXPECT_EQ(s.sample, nullptr);
  EXPECT_FLOAT_EQ(s.volume, 1.0f);
  EXPECT_EQ(s.stopcallback, nullptr);
  EXPECT_TRUE(inAllSounds(&s));
  s.setVolume(0.25f);
  EXPECT_FLOAT_EQ(s.volume, 0.25f);
  s.setStopCallback(countCall);
  testing::internal::CaptureStdout();
  s.play();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "1\n2\n3\n4\n5\n6\n7\n8\n");
  EXPECT_TRUE(s.running);  // even an effect: nothing plays, nothing is cleared
  s.setFinished();
  EXPECT_FALSE(s.isFinished());
  updateAudio();
  EXPECT_EQ(callbackCalls, 0);
  s.stop();
}

TEST_F(SoundOff, CopiesShareTheDataAndLeaveTheListOnDelete) {
  Sound original("shot.wav", true);
  original.setVolume(0.5f);
  original.setStopCallback(countCall);
  Sound* copy = new Sound(&original);
  EXPECT_EQ(copy->type, 3);
  EXPECT_TRUE(copy->loops);
  EXPECT_FLOAT_EQ(copy->volume, 0.5f);
  EXPECT_EQ(copy->stopcallback, countCall);
  EXPECT_TRUE(inAllSounds(copy));
  EXPECT_EQ(allsounds->sound, copy);  // new sounds go to the front
  delete copy;
  EXPECT_FALSE(inAllSounds(copy));
  EXPECT_TRUE(inAllSounds(&original));
}

// Audio through SDL's disk driver: what the mixer outputs lands in a file.
class SoundOn : public ::testing::Test {
protected:
  void SetUp() override {
    output = dir.file("mixer.raw");
    setenv("SDL_AUDIODRIVER", "disk", 1);
    setenv("SDL_DISKAUDIOFILE", output.c_str(), 1);
    callbackCalls = 0;
    callbackSound = nullptr;
    initAudio();
    ASSERT_TRUE(working);
    tone = dir.file("tone.wav");
    testutil::writeToneWav(tone, 0.3);
  }
  void TearDown() override {
    uninitAudio();
    setenv("SDL_AUDIODRIVER", "dummy", 1);
  }
  // Largest absolute 16-bit sample the mixer has written so far.
  int loudestOutput() const {
    const std::string raw = testutil::readFile(output);
    int loudest = 0;
    for (size_t i = 0; i + 1 < raw.size(); i += 2) {
      int16_t v;
      memcpy(&v, raw.data() + i, 2);
      loudest = std::max(loudest, std::abs(static_cast<int>(v)));
    }
    return loudest;
  }
  testutil::TempDir dir;
  std::string output, tone;
};

TEST_F(SoundOn, PlayedEffectReachesTheOutput) {
  Sound effect(tone.c_str());
  ASSERT_NE(effect.sample, nullptr);
  testing::internal::CaptureStdout();
  effect.play();
  testing::internal::GetCapturedStdout();
  EXPECT_GE(effect.channel, 0);
  EXPECT_FALSE(effect.running);  // effects are not watched
  std::this_thread::sleep_for(std::chrono::milliseconds(600));
  EXPECT_GT(loudestOutput(), 1000);
}

TEST_F(SoundOn, SilenceWhenNothingPlays) {
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  EXPECT_LT(loudestOutput(), 10);
}

TEST_F(SoundOn, StreamEndCallsItsStopCallbackOnce) {
  Sound song(tone.c_str(), 2);
  ASSERT_NE(song.stream, nullptr);
  song.setStopCallback(countCall);
  testing::internal::CaptureStdout();
  song.play();
  testing::internal::GetCapturedStdout();
  EXPECT_TRUE(song.running);
  pumpAudio(5000, [] { return callbackCalls > 0; });
  EXPECT_EQ(callbackCalls, 1);
  EXPECT_EQ(callbackSound, &song);
  EXPECT_FALSE(song.running);
  pumpAudio(200, [] { return false; });
  EXPECT_EQ(callbackCalls, 1);
}

TEST_F(SoundOn, EffectNeverCallsItsStopCallback) {
  Sound effect(tone.c_str());
  effect.setStopCallback(countCall);
  testing::internal::CaptureStdout();
  effect.play();
  testing::internal::GetCapturedStdout();
  pumpAudio(700, [] { return false; });
  EXPECT_EQ(callbackCalls, 0);
}

TEST_F(SoundOn, StoppingTheWatchedMusicMovesThePlaylistOn) {
  Sound song(tone.c_str(), 2, true);
  song.setStopCallback(countCall);
  testing::internal::CaptureStdout();
  song.play();
  song.stop();
  song.play();  // a fresh play forgets the stop
  testing::internal::GetCapturedStdout();
  updateAudio();
  EXPECT_EQ(callbackCalls, 0);
  song.stop();
  updateAudio();
  EXPECT_EQ(callbackCalls, 1);
}

TEST_F(SoundOn, VolumesAreFactorsOfFullScale) {
  Sound loop(tone.c_str(), true);
  Sound song(tone.c_str(), 2, true);
  testing::internal::CaptureStdout();
  loop.play();
  song.setVolume(0.25f);
  song.play();
  testing::internal::GetCapturedStdout();
  EXPECT_TRUE(loop.running);  // a looping effect stays running
  loop.setVolume(0.5f);
  EXPECT_EQ(Mix_Volume(loop.channel, -1), MIX_MAX_VOLUME / 2);
  loop.setVolume(100);  // out of range: capped at full volume
  EXPECT_EQ(Mix_Volume(loop.channel, -1), MIX_MAX_VOLUME);
  EXPECT_EQ(Mix_VolumeMusic(-1), MIX_MAX_VOLUME / 4);
  loop.stop();
  EXPECT_EQ(Mix_Playing(loop.channel), 0);
}

TEST_F(SoundOn, SharedSampleOutlivesWhicheverSoundGoesFirst) {
  Sound* original = new Sound(tone.c_str());
  Sound* copy = new Sound(original);
  ASSERT_EQ(copy->sample, original->sample);
  delete copy;
  testing::internal::CaptureStdout();
  original->play();  // still valid: the sanitizer would catch a freed chunk
  copy = new Sound(original);
  delete original;
  copy->play();
  testing::internal::GetCapturedStdout();
  EXPECT_GE(copy->channel, 0);
  delete copy;  // the last holder frees it (the leak checker watches)
}

TEST_F(SoundOn, MissingFileIsReportedAndPlaysNothing) {
  testutil::writeFile(dir.file("garbage.wav"), std::string("RIFF\xff\xff\xff\x7fWAVEfmt \x01", 17) + std::string(64, '\xee'));
  testing::internal::CaptureStdout();
  Sound missing("no-such-dir/boom.wav");
  Sound missingSong("no-such-dir/song.ogg");
  Sound garbage(dir.file("garbage.wav").c_str());
  missing.play();
  missingSong.play();
  const std::string out = testing::internal::GetCapturedStdout();
  EXPECT_EQ(missing.sample, nullptr);
  EXPECT_EQ(missingSong.stream, nullptr);
  EXPECT_NE(out.find("no-such-dir/boom.wav"), std::string::npos);
  EXPECT_NE(out.find("no-such-dir/song.ogg"), std::string::npos);
  EXPECT_EQ(garbage.sample, nullptr);
  EXPECT_EQ(missing.channel, -1);
  EXPECT_FALSE(missingSong.isFinished());
}

TEST(SoundInit, FailureLeavesTheGameSilent) {
  setenv("SDL_AUDIODRIVER", "no-such-driver", 1);
  testing::internal::CaptureStdout();
  initAudio();
  const std::string out = testing::internal::GetCapturedStdout();
  setenv("SDL_AUDIODRIVER", "dummy", 1);
  EXPECT_FALSE(working);
  EXPECT_EQ(out, "Audio system not initialized\r\n");
}

}  // namespace
