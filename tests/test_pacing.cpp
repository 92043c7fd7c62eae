// The frame clock against a fake clock: waiting, the catch-up policies and
// the menu variant.
#include <gtest/gtest.h>

#include <vector>

#include "Main.h"
#include "testutil.h"

namespace {

using testutil::FakeClock;

std::vector<int> stepped;
void recordStep(int frame) { stepped.push_back(frame); }

std::vector<int> range(int first, int last) {
  std::vector<int> frames;
  for (int f = first; f <= last; f++) frames.push_back(f);
  return frames;
}

class Pacing : public ::testing::Test {
 protected:
  void SetUp() override {
    starttime = 1000;
    calculatefps = 100;
    calculatedframes = 0;
  }
  // One pass with the clock `ms` after the start and `old` frames computed.
  int pass(CatchUp policy, int limit, int old, int ms) {
    oldframecounter = old;
    FakeClock::now = 1000 + ms;
    FakeClock::sleeps = 0;
    stepped.clear();
    return paceAndCalculate(policy, limit, recordStep);
  }
  FakeClock clock;
};

TEST_F(Pacing, WaitsInTwoMillisecondSleepsAndNeverRepeatsAFrame) {
  EXPECT_EQ(pass(CatchUp::DropBacklog, 5, 0, 0), 1);
  EXPECT_EQ(stepped, std::vector<int>{1});
  EXPECT_EQ(FakeClock::sleeps, 5);
  EXPECT_EQ(currenttime, 10);
  EXPECT_EQ(pass(CatchUp::DropBacklog, 5, oldframecounter, 10), 1);
  EXPECT_EQ(stepped, std::vector<int>{2});
  EXPECT_EQ(calculatedframes, 2);
}

TEST_F(Pacing, CatchUpPolicies) {
  // Exactly `limit` behind is still caught up, frame by frame.
  EXPECT_EQ(pass(CatchUp::DropBacklog, 5, 10, 150), 5);
  EXPECT_EQ(stepped, range(11, 15));
  EXPECT_EQ(skipframes, 0);
  // One more: the backlog is dropped and this pass computes nothing.
  EXPECT_EQ(pass(CatchUp::DropBacklog, 5, 10, 160), 0);
  EXPECT_EQ(oldframecounter, 16);
  EXPECT_EQ(pass(CatchUp::DropBacklog, 5, oldframecounter, 160), 1);
  EXPECT_EQ(stepped, std::vector<int>{17});

  EXPECT_EQ(pass(CatchUp::KeepOne, 10, 10, 500), 1);
  EXPECT_EQ(stepped, std::vector<int>{50});
  EXPECT_EQ(pass(CatchUp::KeepOne, 10, 40, 500), 10);
  EXPECT_EQ(stepped, range(41, 50));

  EXPECT_EQ(pass(CatchUp::Unlimited, 5, 10, 5000), 490);
  EXPECT_EQ(stepped, range(11, 500));
}

TEST_F(Pacing, ClockBehindTheLastFrameWaitsInsteadOfSpinning) {
  // As after the intro: frames counted at 150 a second, the clock now read at 100.
  EXPECT_EQ(pass(CatchUp::DropBacklog, 5, 300, 2000), 1);
  EXPECT_EQ(stepped, std::vector<int>{201});
  EXPECT_EQ(FakeClock::sleeps, 5);
  calculatefps = 50;
  pass(CatchUp::DropBacklog, 5, 1, 55);  // frame 2.75, truncated
  EXPECT_EQ(stepped, std::vector<int>{2});
}

TEST_F(Pacing, MenuWaitOnlyFollowsTheClock) {
  oldframecounter = 2;
  FakeClock::now = 1333;
  waitNextFrame();
  EXPECT_EQ(oldframecounter, 33);
  EXPECT_EQ(FakeClock::sleeps, 0);
  waitNextFrame();
  EXPECT_EQ(oldframecounter, 34);
  EXPECT_EQ(FakeClock::sleeps, 4);
  EXPECT_EQ(calculatedframes, 0);
}

}  // namespace
