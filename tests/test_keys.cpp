// The shared keyboard: the four players' keys, the one-shot flags, text entry
// and the SDL event pump that feeds them.
#include <gtest/gtest.h>

#include <SDL/SDL.h>
#include <unistd.h>

#include "Main.h"
#include "Player.h"
#include "testutil.h"

namespace {

const SDLKey keys[4][6] = {
    {SDLK_UP, SDLK_DOWN, SDLK_LEFT, SDLK_RIGHT, SDLK_RSHIFT, SDLK_RCTRL},
    {SDLK_w, SDLK_s, SDLK_a, SDLK_d, SDLK_LSHIFT, SDLK_LCTRL},
    {SDLK_i, SDLK_k, SDLK_j, SDLK_l, SDLK_b, SDLK_n},
    {SDLK_KP8, SDLK_KP5, SDLK_KP4, SDLK_KP6, SDLK_KP0, SDLK_KP_PERIOD},
};
bool Player::*const inputs[6] = {&Player::pylos,  &Player::palas, &Player::pleft,
                                 &Player::pright, &Player::pfire, &Player::pease};

void key(bool down, SDLKey sym, Uint16 unicode = 0) {
  SDL_keysym k{};
  k.sym = sym;
  k.unicode = unicode;
  down ? handleKeydown(&k) : handleKeyup(&k);
}

int inputsHeld() {
  int held = 0;
  for (int slot = 0; slot < 4; slot++)
    for (auto input : inputs) held += player[slot].*input;
  return held;
}

class Keyboard : public ::testing::Test {
 protected:
  void SetUp() override {
    for (int slot = 0; slot < 4; slot++)
      for (auto input : inputs) player[slot].*input = false;
    entterpressed = escpressed = spacepressed = lctrl = rctrl = false;
    luetaan = 0;
    players = 4;
  }
};

TEST_F(Keyboard, EachKeyDrivesOneInputOfOnePresentPlayer) {
  for (int count = 1; count <= 4; count++) {
    players = count;
    for (int slot = 0; slot < 4; slot++) {
      for (int c = 0; c < 6; c++) {
        key(true, keys[slot][c]);
        const bool works = slot < count;
        EXPECT_EQ(player[slot].*inputs[c], works)
            << "players " << count << " slot " << slot << " input " << c;
        EXPECT_EQ(inputsHeld(), works ? 1 : 0);
        key(false, keys[slot][c]);
        EXPECT_EQ(inputsHeld(), 0);
      }
    }
  }
}

TEST_F(Keyboard, CtrlTrackingUncheckedReleasesOneShotAndHeldFlags) {
  players = 1;
  key(true, SDLK_LCTRL);
  EXPECT_TRUE(lctrl);  // tracked even without a second player
  key(true, SDLK_RCTRL);
  EXPECT_TRUE(rctrl && player[0].pease);
  player[1].pease = player[1].pfire = player[1].pylos = true;
  key(false, SDLK_LCTRL);
  key(false, SDLK_LSHIFT);
  key(false, SDLK_w);
  EXPECT_FALSE(lctrl || player[1].pease || player[1].pfire);
  EXPECT_TRUE(player[1].pylos);  // W's release still needs two players
  key(false, SDLK_RCTRL);
  EXPECT_FALSE(rctrl);
  // Space, Enter and Escape stay pressed past their release until a screen takes them.
  for (SDLKey k : {SDLK_SPACE, SDLK_RETURN, SDLK_ESCAPE}) key(true, k), key(false, k);
  EXPECT_TRUE(spacepressed && entterpressed && escpressed);
  // The key help (F1) and the standings (Tab) show only while their key is held.
  key(true, SDLK_F1);
  key(true, SDLK_TAB);
  EXPECT_TRUE(ohjenappi && tilannenappi);
  key(false, SDLK_F1);
  key(false, SDLK_TAB);
  EXPECT_FALSE(ohjenappi || tilannenappi);
}

TEST_F(Keyboard, TextEntryTakesCharactersWhileModifiersStillSteer) {
  luetaan = 1;
  testing::internal::CaptureStdout();
  key(true, SDLK_w, 'w');
  EXPECT_TRUE(luettunappi == 'w' && luetaan == 2 && sdlnappi == SDLK_w);
  EXPECT_FALSE(player[1].pylos);
  key(true, SDLK_LCTRL);
  key(true, SDLK_RSHIFT);
  EXPECT_TRUE(player[1].pease && player[0].pfire);
  key(true, SDLK_a, 0xE4);
  EXPECT_EQ(luettunappi, 0x64);  // seven bits only
  luetaan = 1;
  key(true, SDLK_ESCAPE);
  key(true, SDLK_RETURN);
  EXPECT_TRUE(escpressed && entterpressed);
  EXPECT_EQ(luetaan, 1);
  key(true, SDLK_SPACE, ' ');
  EXPECT_FALSE(spacepressed);
  EXPECT_EQ(luettunappi, ' ');
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "k=119\nk=97\nk=27\nk=13\nk=32\n");
  player[1].pylos = true;
  key(false, SDLK_w);  // releases are not affected by text entry
  EXPECT_FALSE(player[1].pylos);
}

void push(SDL_Event e) { SDL_PushEvent(&e); }

SDL_Event keyEvent(Uint8 type, SDLKey sym) {
  SDL_Event e{};
  e.key.type = type;
  e.key.keysym.sym = sym;
  return e;
}

TEST_F(Keyboard, EventPumpDeliversKeysAndResizes) {
  testutil::GLWindow window(320, 240);
  ASSERT_TRUE(window.ok()) << window.error();
  push(keyEvent(SDL_KEYDOWN, SDLK_UP));
  push(keyEvent(SDL_KEYDOWN, SDLK_d));
  push(keyEvent(SDL_KEYUP, SDLK_UP));
  SDL_Event resize{};
  resize.resize = {SDL_VIDEORESIZE, 400, 300};
  push(resize);
  processEvents();
  EXPECT_TRUE(!player[0].pylos && player[1].pright);
  EXPECT_TRUE(screenwidth == 400 && screenheight == 300) << screenwidth << "x" << screenheight;
  EXPECT_EQ(SDL_PollEvent(nullptr), 0);  // drained
}

TEST(EventPump, QuitEventExitsWithStatusZeroAndStatistics) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        testutil::GLWindow window(320, 240);
        SDL_Event quit{};
        quit.type = SDL_QUIT;
        push(quit);
        dup2(2, 1);
        processEvents();
      },
      ::testing::ExitedWithCode(0), "frames drawn: 0\n(.|\n)*calculated fps: 100");
}

}  // namespace
