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

TEST(FlagCloth, StartsFlatAndMovesEveryFrame) {
  alustaLippu();
  for (float z : depths()) EXPECT_EQ(z, 0.0f);
  EXPECT_EQ(lippu[3][5].nz, 1.0f);
  lippuAskel(1);
  const auto first = depths();
  lippuAskel(2);
  EXPECT_NE(depths(), first);
  for (int i = 0; i < 30; i++) lippuAskel(3 + i);
  EXPECT_NE(depths(), first);
}

TEST(FlagCloth, StaysFiniteBoundedAndHoistedAtThePole) {
  alustaLippu();
  const float x0 = lippu[0][0].x;
  float widest = 0;
  for (int frame = 1; frame <= 3000; frame++) {
    lippuAskel(frame);
    for (int i = 0; i < lippuRiveja; i++) {
      EXPECT_EQ(lippu[i][0].z, 0.0f);
      EXPECT_EQ(lippu[i][0].x, x0);
      for (int j = 0; j < lippuSarakkeita; j++) {
        const LippuPiste& p = lippu[i][j];
        ASSERT_TRUE(std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z)) << frame;
        ASSERT_LT(std::fabs(p.z), 2.6f) << frame;
        ASSERT_NEAR(p.nx * p.nx + p.ny * p.ny + p.nz * p.nz, 1.0f, 1e-4) << frame;
        widest = std::max(widest, std::fabs(p.z));
      }
    }
  }
  EXPECT_GT(widest, 0.5f);  // it really waves
}

// A vertex normal stands square to the cloth around it and faces the viewer's side.
TEST(FlagCloth, NormalsAreSquareToTheSurface) {
  alustaLippu();
  for (int frame = 1; frame <= 77; frame++) lippuAskel(frame);
  for (int i = 1; i + 1 < lippuRiveja; i += 5) {
    for (int j = 1; j + 1 < lippuSarakkeita; j += 5) {
      const LippuPiste &p = lippu[i][j], &l = lippu[i][j - 1], &r = lippu[i][j + 1];
      const LippuPiste &d = lippu[i - 1][j], &u = lippu[i + 1][j];
      const float across = (r.x - l.x) * p.nx + (r.y - l.y) * p.ny + (r.z - l.z) * p.nz;
      const float up = (u.x - d.x) * p.nx + (u.y - d.y) * p.ny + (u.z - d.z) * p.nz;
      EXPECT_NEAR(across, 0, 1e-4) << i << "," << j;
      EXPECT_NEAR(up, 0, 1e-4) << i << "," << j;
      EXPECT_GT(p.nz, 0) << i << "," << j;
    }
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
  // The pass drawn before the skip shows the lit flag in the middle of the picture,
  // with as much of it left as right of the centre, over black space.
  const std::vector<GLubyte> kuva = testutil::readRgb(0, 0, 320, 240);
  double maara = 0, xSumma = 0;
  for (int i = 0; i < 320 * 240; i++) {
    if (kuva[i * 3] + kuva[i * 3 + 1] + kuva[i * 3 + 2] < 60) continue;
    maara++;
    xSumma += i % 320;
  }
  EXPECT_GT(maara, 320 * 240 / 5);
  EXPECT_NEAR(xSumma / maara, 160, 8);
  EXPECT_LT(kuva[0] + kuva[1] + kuva[2], 30);
}

}  // namespace
