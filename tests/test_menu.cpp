// The main menu: cursor rules, leaving it, and what its frame shows.
#include <GL/gl.h>
#include <gtest/gtest.h>

#include "Main.h"
#include "Menu.h"
#include "Player.h"
#include "glapi.h"
#include "net.h"
#include "testutil.h"

namespace {

class MenuInput : public ::testing::Test {
 protected:
  void SetUp() override { unohdaNapit(); }
  void TearDown() override { unohdaNapit(); }
  Player& p = player[0];
};

TEST_F(MenuInput, CursorWrapsBothWays) {
  struct Case {
    int from, last;
    bool up;
    int to;
  };
  for (const Case& c : {Case{0, 4, true, 4}, Case{4, 4, false, 0}, Case{0, 4, false, 1}, Case{3, 4, true, 2},
                        Case{5, 5, false, 0}, Case{0, 5, true, 5}}) {
    int item = c.from;
    (c.up ? p.pylos : p.palas) = true;
    EXPECT_FALSE(valikonSyote(item, c.last));
    EXPECT_EQ(item, c.to) << c.from << (c.up ? " up" : " down");
    EXPECT_FALSE(p.pylos || p.palas);  // each press moves once
  }
}

TEST_F(MenuInput, OneKeyActsPerPassAndEscapeJumpsToQuit) {
  int item = 2;
  entterpressed = p.pylos = p.palas = escpressed = true;
  EXPECT_TRUE(valikonSyote(item, 4));  // Enter first: it chooses the current item
  EXPECT_EQ(item, 2);
  EXPECT_TRUE(p.pylos && p.palas && escpressed && !entterpressed);
  EXPECT_FALSE(valikonSyote(item, 4));  // then up, alone
  EXPECT_EQ(item, 1);
  EXPECT_TRUE(p.palas && escpressed);
  EXPECT_FALSE(valikonSyote(item, 4));  // then down
  EXPECT_EQ(item, 2);
  EXPECT_TRUE(valikonSyote(item, 4));  // then Escape, choosing Quit from the middle
  EXPECT_EQ(item, 4);
  EXPECT_FALSE(escpressed);
}

TEST_F(MenuInput, KeysHeldWhenAScreenEndsDoNotActInTheMenu) {
  int item = 3;
  entterpressed = escpressed = true;
  p.pylos = p.palas = p.pleft = p.pright = p.pfire = true;
  unohdaNapit();
  EXPECT_FALSE(valikonSyote(item, 4));
  EXPECT_EQ(item, 3);
  EXPECT_FALSE(p.pleft || p.pright || p.pfire);
}

TEST_F(MenuInput, EscapeLeavesTheMainMenuAsALocalGame) {
  saavalita = false;
  hostpeli = joinpeli = true;
  escpressed = true;
  mainmenu();  // returns without drawing: Quit is chosen in the first pass
  EXPECT_TRUE(saavalita);
  EXPECT_FALSE(hostpeli || joinpeli || escpressed);
}

// --- The drawn frame.

class MenuFrame : public ::testing::Test {
 protected:
  // No images here: the labels draw as solid glyph squares over a plain backdrop.
  void SetUp() override {
    ASSERT_TRUE(testutil::menuScreen(W, H, 31));
    nuolirot = 0;
  }

  // A row of the window: the one where a point seen with the menu's identity model-view lands.
  static std::vector<GLubyte> frameRow(float x, float y, float z) {
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    int px, py;
    testutil::projectToWindow(x, y, z, px, py);
    return testutil::readRgb(0, py, W, 1);
  }

  static int redPixels(float y) {
    const auto row = frameRow(0, y, -40);
    int n = 0;
    for (int x = 0; x < W; x++) n += row[x * 3] > 200 && row[x * 3 + 1] < 100 && row[x * 3 + 2] < 100;
    return n;
  }

  static const int W = 320, H = 240;
};

TEST_F(MenuFrame, F1ShowsTheKeyHelpOverTheMenuWhileHeld) {
  // Right of the panel the menu shows only its backdrop; the help's white key names cover it.
  auto whiteOnRight = [] {
    const auto block = testutil::readRgb(W / 2, 0, W / 2, H);
    int n = 0;
    for (size_t i = 0; i < block.size(); i += 3)
      n += block[i] > 150 && block[i + 1] > 150 && block[i + 2] > 150;
    return n;
  };
  ohjenappi = true;
  drawmenu(0);
  ohjenappi = false;
  EXPECT_GT(whiteOnRight(), 30);
  drawmenu(0);
  EXPECT_EQ(whiteOnRight(), 0);
}

// The five labels on their rows; the table's title, "main menu", is not drawn above them.
TEST_F(MenuFrame, LabelsWithoutTheTitleAndTheCursorArrowsFollowTheItem) {
  // The arrows are gold, neither red label nor blue background: count them on the item's row.
  auto goldOn = [](float arrowY) {
    const auto row = frameRow(-6.5f, arrowY, -12);
    int n = 0;
    for (int x = 0; x < W; x++) n += row[x * 3 + 1] > 60 && row[x * 3 + 2] < row[x * 3 + 1] / 2;
    return n;
  };
  drawmenu(0);
  for (int i = 0; i < 5; i++) EXPECT_GT(redPixels(4.0f - 2.0f * i), 10) << i;
  EXPECT_EQ(redPixels(6.0f), 0);
  EXPECT_GT(goldOn(1.0f), 2);
  EXPECT_EQ(goldOn(1.0f - 0.55f * 3), 0);
  drawmenu(3);
  EXPECT_GT(goldOn(1.0f - 0.55f * 3), 2);
  EXPECT_EQ(goldOn(1.0f), 0);
}

}  // namespace
