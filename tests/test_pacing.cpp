// The frame clock against a fake clock: waiting, catch-up policies, backlog
// dropping and the menu variant.
#include <gtest/gtest.h>

#include <vector>

#include "Main.h"

namespace {

Uint32 fakeNow = 0;
int sleeps = 0;
std::vector<int> stepped;

Uint32 fakeTicks() { return fakeNow; }
void fakeDelay(Uint32 ms) {
  sleeps++;
  fakeNow += ms;
}
void recordStep(int frame) { stepped.push_back(frame); }

std::vector<int> range(int first, int last) {
  std::vector<int> frames;
  for (int f = first; f <= last; f++) frames.push_back(f);
  return frames;
}

class Pacing : public ::testing::Test {
protected:
  void SetUp() override {
    savedTicks = pacingTicks;
    savedDelay = pacingDelay;
    pacingTicks = fakeTicks;
    pacingDelay = fakeDelay;
    fakeNow = 1000;
    starttime = 1000;
    sleeps = 0;
    stepped.clear();
    calculatefps = 100;
    oldframecounter = framecounter = 0;
    calculatedframes = 0;
  }
  void TearDown() override {
    pacingTicks = savedTicks;
    pacingDelay = savedDelay;
  }
  // Puts the clock `ms` after the start of the game.
  void at(int ms) { fakeNow = 1000 + ms; }
  Uint32 (*savedTicks)() = nullptr;
  void (*savedDelay)(Uint32) = nullptr;
};

TEST_F(Pacing, WaitsInTwoMillisecondSleepsForTheNextFrame) {
  EXPECT_EQ(paceAndCalculate(CatchUp::DropBacklog, 5, recordStep), 1);
  EXPECT_EQ(stepped, std::vector<int>{1});
  EXPECT_EQ(sleeps, 5);
  EXPECT_EQ(currenttime, 10);
  EXPECT_EQ(framecounter, 1);

  // The next pass never repeats frame 1: it waits for frame 2.
  sleeps = 0;
  EXPECT_EQ(paceAndCalculate(CatchUp::DropBacklog, 5, recordStep), 1);
  EXPECT_EQ(stepped, range(1, 2));
  EXPECT_EQ(sleeps, 5);
  EXPECT_EQ(calculatedframes, 2);
}

TEST_F(Pacing, CatchesUpWithinTheLimit) {
  oldframecounter = 10;
  at(150);  // frame 15: exactly `limit` behind is still caught up
  EXPECT_EQ(paceAndCalculate(CatchUp::DropBacklog, 5, recordStep), 5);
  EXPECT_EQ(stepped, range(11, 15));
  EXPECT_EQ(oldframecounter, 15);
  EXPECT_EQ(skipframes, 0);
  EXPECT_EQ(sleeps, 0);
}

TEST_F(Pacing, DropBacklogLosesTheTimeAndComputesNothing) {
  oldframecounter = 10;
  at(160);
  EXPECT_EQ(paceAndCalculate(CatchUp::DropBacklog, 5, recordStep), 0);
  EXPECT_TRUE(stepped.empty());
  EXPECT_EQ(oldframecounter, 16);
  EXPECT_EQ(calculatedframes, 0);
  // The following pass resumes from the clock.
  EXPECT_EQ(paceAndCalculate(CatchUp::DropBacklog, 5, recordStep), 1);
  EXPECT_EQ(stepped, std::vector<int>{17});
}

TEST_F(Pacing, KeepOneComputesOnlyTheNewestFrameAfterAStall) {
  oldframecounter = 10;
  at(500);
  EXPECT_EQ(paceAndCalculate(CatchUp::KeepOne, 10, recordStep), 1);
  EXPECT_EQ(stepped, std::vector<int>{50});
  oldframecounter = 50;  // exactly the limit behind: every frame is computed
  stepped.clear();
  at(600);
  EXPECT_EQ(paceAndCalculate(CatchUp::KeepOne, 10, recordStep), 10);
  EXPECT_EQ(stepped, range(51, 60));
}

TEST_F(Pacing, UnlimitedComputesEveryMissedFrame) {
  oldframecounter = 10;
  at(5000);
  EXPECT_EQ(paceAndCalculate(CatchUp::Unlimited, 5, recordStep), 490);
  EXPECT_EQ(stepped, range(11, 500));
  EXPECT_EQ(calculatedframes, 490);
}

TEST_F(Pacing, RateFollowsCalculateFps) {
  calculatefps = 150;
  at(1000);
  oldframecounter = 149;
  paceAndCalculate(CatchUp::DropBacklog, 5, recordStep);
  EXPECT_EQ(stepped, std::vector<int>{150});
  // 55 ms at 50 frames a second is frame 2.75: truncated to 2.
  calculatefps = 50;
  oldframecounter = 1;
  at(55);
  stepped.clear();
  paceAndCalculate(CatchUp::DropBacklog, 5, recordStep);
  EXPECT_EQ(stepped, std::vector<int>{2});
}

TEST_F(Pacing, ClockBehindTheLastFrameWaitsInsteadOfSpinning) {
  // As after the intro: frames counted at 150 a second, clock now read at 100.
  oldframecounter = 300;
  at(2000);
  EXPECT_EQ(paceAndCalculate(CatchUp::DropBacklog, 5, recordStep), 1);
  EXPECT_EQ(stepped, std::vector<int>{201});
  EXPECT_EQ(sleeps, 5);
}

TEST_F(Pacing, MenuWaitOnlyFollowsTheClock) {
  at(333);
  oldframecounter = 2;
  waitNextFrame();
  EXPECT_EQ(oldframecounter, 33);
  EXPECT_EQ(sleeps, 0);
  waitNextFrame();
  EXPECT_EQ(oldframecounter, 34);
  EXPECT_EQ(sleeps, 4);  // 333 ms -> 341 ms
  EXPECT_EQ(calculatedframes, 0);
}

}  // namespace
