// The frame drawing, read back from a real (software) GL context.
#include <GL/gl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

#include "Main.h"
#include "Player.h"
#include "Sets.h"
#include "glapi.h"
#include "net.h"
#include "peliloppu.h"
#include "scene.h"
#include "testutil.h"

namespace {

struct Rgb {
  float r, g, b;
};

class Render : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    ASSERT_EQ(chdir(VORTA_DATA_DIR), 0);  // the game's textures
    window = &testutil::gameWindow(1024, 768);
  }

  // An empty field seen from straight above, far enough to show the whole frame.
  void SetUp() override {
    ASSERT_TRUE(window->ok()) << window->error();
    screenwidth = 1024;
    screenheight = 768;
    players = 0;
    gamemode = 0;
    pistepeli = false;
    sets.cammode = 1;
    sets.detail = 0;
    camposx = camposy = 0;
    camposz = 400;
    alfa = beta = alfa2 = beta2 = 0;
    std::memset(sirpale, 0, sizeof sirpale);
    std::memset(pikkumies, 0, sizeof pikkumies);
    for (Pati& a : asteroidi) a = Pati{1000, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};  // out of sight
    for (int i = 0; i < maxPlayers; ++i) player[i].numero = player[i].tiimi = i;
  }

  // The colour shown at a point at depth z under the modelview matrix as it stands.
  static Rgb pixel(double x, double y, double z) {
    int px, py;
    testutil::projectToWindow(x, y, z, px, py);
    const std::vector<GLubyte> p = testutil::readRgb(px, py, 1, 1);
    return {p[0] / 255.0f, p[1] / 255.0f, p[2] / 255.0f};
  }
  static Rgb fieldPixel(double x, double y) {  // after a full frame
    asetaKameraJaValo();
    return pixel(x, y, -35);
  }
  static Rgb hudPixel(double x, double y) {
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    return pixel(x, y, -30);
  }

  static int countRed(int y1, int y2) {
    const std::vector<GLubyte> rows = testutil::readRgb(0, y1, 1024, y2 - y1);
    int red = 0;
    for (size_t i = 0; i < rows.size(); i += 3) red += rows[i] > 100 && rows[i + 1] < 40 && rows[i + 2] < 40;
    return red;
  }
  static testutil::GLWindow* window;
};
testutil::GLWindow* Render::window = nullptr;

float brightness(Rgb c) { return c.r + c.g + c.b; }

TEST(PrintedAsInt, ShowsTheLowWordOfTheDouble) {
  // Whole and half amounts have an all-zero low word.
  for (double d : {25.0, 0.0, 1.5, -1.0}) EXPECT_EQ(printedAsInt(d), 0) << d;
  // 0x3FD5555555555555 and 0x3FB999999999999A: the low word, signed.
  EXPECT_EQ(printedAsInt(1.0 / 3.0), 0x55555555);
  EXPECT_EQ(printedAsInt(0.1), -1717986918);
}

// The whole frame seen from far above: its edges lit, the field inside dark; closer,
// the planet in the middle in both camera modes, with dark space beside it.
TEST_F(Render, FrameEdgesAndThePlanetShowInBothCameraModes) {
  drawFrame(0);
  for (const auto& xy : {std::pair{144, 120}, {-160, 108}, {-144, -120}, {160, -108}})
    EXPECT_GT(brightness(fieldPixel(xy.first, xy.second)), 0.9f) << xy.first << ", " << xy.second;
  EXPECT_LT(brightness(fieldPixel(0, 60)), 0.2f);
  for (int mode : {0, 1}) {
    sets.cammode = mode;
    camposz = 100;
    drawFrame(0);
    const std::vector<GLubyte> keski = testutil::readRgb(512, 384, 1, 1);
    EXPECT_GT(keski[0] + keski[1] + keski[2], 0.9f * 255) << "camera mode " << mode;
    EXPECT_LT(brightness(fieldPixel(40, 0)), 0.2f) << "camera mode " << mode;
  }
}

// One ship of the given weapon kind with a few shots of its own.
class Shots : public Render {
 protected:
  Pati shots[4] = {};
  Pati* ownShots = std::exchange(player[0].pati, shots);

  void SetUp() override {
    Render::SetUp();
    camposz = 100;
    players = 1;
    Player& p = player[0];
    p.kuolema = 0;
    p.x = p.y = 100;  // the ship itself out of the way
    p.alus.maxpadit = 4;
    p.alus.patitexture = texture[18];
  }
  void TearDown() override { player[0].pati = ownShots; }

  Pati& shoot(int kind, float x, float y, float radius) {
    player[0].alus.aselaji = kind;
    player[0].alus.patisade = radius;
    return shots[0] = Pati{x, y, 0, 0, 0, 0, 0, 0, 0, 0, 0, 10, 0};
  }
};

// A shot that never got a colour is drawn all the same; the beam kinds leave their
// shots to the lines; the charge ball grows with its energy.
TEST_F(Shots, EachKindShowsItsShotsItsOwnWay) {
  shoot(0, 20, 10, 0.8f);
  drawFrame(0);
  EXPECT_GT(brightness(fieldPixel(20, 10)), 0.5f);
  for (int kind : {6, 9, 18}) {
    shoot(kind, 20, 10, 2).r = 1;
    drawFrame(0);
    EXPECT_LT(brightness(fieldPixel(20, 10)), 0.2f) << "beam kind " << kind;
  }
  Pati& ball = shoot(13, 20, 10, 3);
  ball.r = 1;
  ball.energia = 100;
  drawFrame(0);
  EXPECT_LT(fieldPixel(22.5, 10).r, 0.05f) << "a fresh ball is small";
  ball.energia = 2000;
  drawFrame(0);
  EXPECT_GT(fieldPixel(22.5, 10).r, 0.2f) << "a full ball is big";
}

// A human player's ship is marked in its team colour where it flies; a computer
// pilot's ship is not.
TEST_F(Render, HumanShipsCarryAMarkerInTheirTeamColour) {
  players = 2;
  const float paikat[2][2] = {{40, 30}, {-60, -40}};
  for (int i = 0; i < 2; ++i) {
    Player& p = player[i];
    p.tiimi = 3;  // cyan (0, 1, 1)
    p.kuolema = 0;
    p.x = paikat[i][0];
    p.y = paikat[i][1];
    p.ihmispelaaja = i == 0;
  }
  drawFrame(0);
  asetaKameraJaValo();
  auto cyanAround = [](float x, float y) {
    int px, py;
    testutil::projectToWindow(x, y, -35, px, py);
    const int half = 40;
    const std::vector<GLubyte> block = testutil::readRgb(px - half, py - half, 2 * half, 2 * half);
    int n = 0;
    for (size_t i = 0; i < block.size(); i += 3)
      n += block[i] < 60 && block[i + 1] > 235 && block[i + 2] > 235;
    return n;
  };
  EXPECT_GT(cyanAround(40, 30), 40);
  EXPECT_EQ(cyanAround(-60, -40), 0);
  player[0].ihmispelaaja = false;
}

// The standings show what the panels' "%d" hides: whole scores, best first, those out
// of a credit game last, and over the network the nicks and round-trip times.
TEST(Standings, RealNumbersBestFirstAndRoundTripsOverTheNetwork) {
  players = 3;
  pistepeli = true;
  hostpeli = joinpeli = false;
  const float pisteet[3] = {12.75f, -1, 150.2f};
  for (int i = 0; i < 3; ++i) {
    player[i].numero = i;
    player[i].pisteet = pisteet[i];
  }
  Tilannerivi rivit[maxPlayers];
  ASSERT_EQ(tilanteenRivit(rivit), 3);
  const int jarjestys[3] = {2, 0, 1};
  const char* luvut[3] = {"150", "12", "out"};
  for (int k = 0; k < 3; ++k) {
    EXPECT_EQ(rivit[k].pelaaja, jarjestys[k]);
    EXPECT_STREQ(rivit[k].pisteet, luvut[k]);
    EXPECT_STREQ(rivit[k].kierros, "");
  }
  EXPECT_STREQ(rivit[0].nimi, "player 3");

  hostpeli = true;
  std::snprintf(netnick[2], sizeof netnick[2], "ace");
  kierrosaikaMs[2] = 42;
  tilanteenRivit(rivit);
  hostpeli = false;
  kierrosaikaMs[2] = -1;
  EXPECT_STREQ(rivit[0].nimi, "ace");
  EXPECT_STREQ(rivit[0].kierros, "42 ms");
  EXPECT_STREQ(rivit[1].kierros, "-");  // played on this machine
}

class Panel : public Render {
 protected:
  void SetUp() override {
    Render::SetUp();
    players = 1;
    Player& p = player[0];
    p.energia = p.alus.energia = 40;
    p.alus.fuel = 80;
    p.fuel = 20;
  }

  // A point of the panel of player n given in the panel's own units.
  static Rgb panelPixel(float corner_x, float corner_y, float x, float y) {
    const float scale = std::sqrt(1.0f / (1024 * 0.001953125f));
    return hudPixel(corner_x + x * scale, corner_y + y * scale);
  }

  static void drawHud() {
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    piirraHud();
  }
};

// A player out of a credit game keeps the panel; a shield below zero is clamped in the
// player itself; eleven players and more take two columns of eight.
TEST_F(Panel, ClampsAndColumns) {
  pistepeli = true;
  player[0].pisteet = -1;
  drawHud();
  EXPECT_GT(panelPixel(-14.5f, 10, 2, 0.33f).g, 0.9f) << "a full shield";
  pistepeli = false;

  player[0].energia = -7.5f;
  drawHud();
  EXPECT_EQ(player[0].energia, 0.0f);

  player[9].numero = 9;
  player[9].alus.energia = player[9].energia = 30;
  player[9].alus.fuel = player[9].fuel = 30;
  players = 10;  // only player 9 shows a full shield
  drawHud();
  EXPECT_GT(panelPixel(12.5f, -6, 2, 0.33f).g, 0.9f) << "five down each side";
  players = 11;
  drawHud();
  EXPECT_LT(panelPixel(12.5f, -6, 2, 0.33f).g, 0.1f);
  EXPECT_GT(panelPixel(12.5f, 10 - 2.85f, 2, 0.33f).g, 0.9f) << "second column, second row";
}

class Victory : public Render {
 protected:
  void SetUp() override {
    Render::SetUp();
    players = 2;
    player[0].pisteet = player[1].pisteet = -1;
  }
  // Text rows at depth -25 seen from 15 units: y = 12 lands near pixel row 662.
  static int teamLineRed() { return countRed(630, 700); }
  static int middleRed() { return countRed(355, 415); }
  static std::vector<GLubyte> teamLine() { return testutil::readRgb(0, 630, 1024, 70); }
};

// Nobody left is a draw, else the team is named: the objective screen prints the bare
// team number, so team 0 reaching the limit reads "team 0 won", as a death match won by
// team -1 would.
TEST_F(Victory, ADrawOrTheTeamAndTheObjectiveModeAddsNoOne) {
  drawVictory(0);
  EXPECT_GT(middleRed(), 50) << "\"draw\" in the middle";
  EXPECT_EQ(teamLineRed(), 0);
  player[1].pisteet = 5;
  drawVictory(1);
  EXPECT_GT(teamLineRed(), 50);
  EXPECT_EQ(middleRed(), 0);

  player[1].pisteet = -1;
  gamemode = 2;
  player[0].pisteet = float(fullcredits);
  drawVictory(1);
  const std::vector<GLubyte> objective = teamLine();
  EXPECT_GT(teamLineRed(), 50);
  gamemode = 0;
  player[0].pisteet = 0;
  drawVictory(-1);
  EXPECT_TRUE(teamLine() == objective);
  drawVictory(0);
  EXPECT_TRUE(teamLine() != objective);
}

}  // namespace
