// The waving-flag intro: the cloth step, the skip keys and the end of the intro.
#include <GL/gl.h>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "Main.h"
#include "Sets.h"
#include "lippu.h"
#include "testutil.h"

namespace {

std::vector<float> depths() {
  std::vector<float> z;
  for (const auto& row : lippu)
    for (const LippuPiste& p : row) z.push_back(p.z);
  return z;
}

// The cloth starts flat, waves every frame and never turns into numbers that are not.
TEST(FlagCloth, WavesAndStaysFinite) {
  alustaLippu();
  for (float z : depths()) EXPECT_EQ(z, 0.0f);
  std::vector<float> previous = depths();
  for (int frame = 1; frame <= 3000; frame++) {
    lippuAskel(frame);
    const std::vector<float> now = depths();
    ASSERT_NE(now, previous) << frame;
    previous = now;
    for (const auto& row : lippu)
      for (const LippuPiste& p : row)
        ASSERT_TRUE(std::isfinite(p.x + p.y + p.z + p.nx + p.ny + p.nz)) << frame;
  }
}

TEST(IntroEnd, SkipKeysEndItAndAreConsumed) {
  entterpressed = spacepressed = escpressed = false;
  EXPECT_TRUE(introJatkuu(0));
  EXPECT_TRUE(introJatkuu(899));
  EXPECT_FALSE(introJatkuu(900));  // six seconds at 150 frames a second
  for (bool* key : {&entterpressed, &spacepressed, &escpressed}) {
    *key = true;
    EXPECT_FALSE(introJatkuu(10));
    EXPECT_FALSE(entterpressed || spacepressed || escpressed);
  }
}

TEST(IntroEnd, RunsInAWindowAndRestoresTheFrameRate) {
  ASSERT_TRUE(testutil::gameWindow(320, 240).ok());
  screenwidth = 320;
  screenheight = 240;
  sets.fps = 120;
  calculatefps = 100;
  escpressed = true;
  AlotaLippu();
  EXPECT_EQ(calculatefps, 120.0f);
  EXPECT_FALSE(escpressed);
  // The pass drawn before the skip shows the lit flag over black space.
  const std::vector<GLubyte> kuva = testutil::readRgb(0, 0, 320, 240);
  int lit = 0;
  for (size_t i = 0; i < kuva.size(); i += 3) lit += kuva[i] + kuva[i + 1] + kuva[i + 2] >= 60;
  EXPECT_GT(lit, 320 * 240 / 5);
  EXPECT_LT(kuva[0] + kuva[1] + kuva[2], 30);
}

}  // namespace
