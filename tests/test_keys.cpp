// The shared keyboard: the four players' keys, the one-shot flags, text entry
// and the SDL event pump that feeds them.
#include <gtest/gtest.h>

#include <SDL/SDL.h>
#include <unistd.h>

#include "Main.h"
#include "Player.h"
#include "testutil.h"

namespace {

struct Binding {
  SDLKey key;
  int slot;
  bool Player::*input;
};

const Binding bindings[] = {
    {SDLK_UP, 0, &Player::pylos},    {SDLK_DOWN, 0, &Player::palas},    {SDLK_LEFT, 0, &Player::pleft},
    {SDLK_RIGHT, 0, &Player::pright}, {SDLK_RSHIFT, 0, &Player::pfire}, {SDLK_RCTRL, 0, &Player::pease},
    {SDLK_w, 1, &Player::pylos},     {SDLK_s, 1, &Player::palas},       {SDLK_a, 1, &Player::pleft},
    {SDLK_d, 1, &Player::pright},    {SDLK_LSHIFT, 1, &Player::pfire},  {SDLK_LCTRL, 1, &Player::pease},
    {SDLK_i, 2, &Player::pylos},     {SDLK_k, 2, &Player::palas},       {SDLK_j, 2, &Player::pleft},
    {SDLK_l, 2, &Player::pright},    {SDLK_b, 2, &Player::pfire},       {SDLK_n, 2, &Player::pease},
    {SDLK_KP8, 3, &Player::pylos},   {SDLK_KP5, 3, &Player::palas},     {SDLK_KP4, 3, &Player::pleft},
    {SDLK_KP6, 3, &Player::pright},  {SDLK_KP0, 3, &Player::pfire},     {SDLK_KP_PERIOD, 3, &Player::pease},
};

SDL_keysym keysym(SDLKey key, Uint16 unicode = 0) {
  SDL_keysym k{};
  k.sym = key;
  k.unicode = unicode;
  k.mod = KMOD_NONE;
  return k;
}

void press(SDLKey key, Uint16 unicode = 0) {
  SDL_keysym k = keysym(key, unicode);
  handleKeydown(&k);
}

void release(SDLKey key) {
  SDL_keysym k = keysym(key);
  handleKeyup(&k);
}

bool anyInput(int slot) {
  const Player& p = player[slot];
  return p.pylos || p.palas || p.pleft || p.pright || p.pfire || p.pease;
}

class Keyboard : public ::testing::Test {
protected:
  void SetUp() override {
    for (Player& p : player) p.pylos = p.palas = p.pleft = p.pright = p.pfire = p.pease = false;
    entterpressed = escpressed = spacepressed = false;
    lctrl = rctrl = false;
    luetaan = 0;
    luettunappi = 0;
    players = 4;
  }
};

TEST_F(Keyboard, EachKeyDrivesItsOwnInputOnly) {
  for (const Binding& b : bindings) {
    press(b.key);
    for (int slot = 0; slot < 4; slot++) {
      for (const Binding& other : bindings) {
        if (other.slot != slot) continue;
        const bool expected = other.slot == b.slot && other.input == b.input;
        EXPECT_EQ(player[slot].*other.input, expected) << "key " << b.key;
      }
    }
    release(b.key);
    EXPECT_FALSE(anyInput(b.slot)) << "key " << b.key;
  }
}

TEST_F(Keyboard, KeysOfAbsentPlayersDoNothing) {
  players = 2;
  for (const Binding& b : bindings)
    if (b.slot >= 2) press(b.key);
  EXPECT_FALSE(anyInput(2));
  EXPECT_FALSE(anyInput(3));

  players = 1;
  press(SDLK_w);
  press(SDLK_LSHIFT);
  press(SDLK_LCTRL);
  EXPECT_FALSE(anyInput(1));
  EXPECT_TRUE(lctrl);  // left Ctrl is tracked whatever the count
  press(SDLK_UP);
  EXPECT_TRUE(player[0].pylos);

  players = 3;
  press(SDLK_KP8);
  EXPECT_FALSE(anyInput(3));
  press(SDLK_i);
  EXPECT_TRUE(player[2].pylos);
}

TEST_F(Keyboard, ReleasesOfLeftShiftAndCtrlIgnoreThePlayerCount) {
  players = 1;
  player[1].pease = player[1].pfire = player[1].pylos = true;
  lctrl = true;
  release(SDLK_LCTRL);
  release(SDLK_LSHIFT);
  release(SDLK_w);
  EXPECT_FALSE(player[1].pease);
  EXPECT_FALSE(player[1].pfire);
  EXPECT_FALSE(lctrl);
  EXPECT_TRUE(player[1].pylos);  // W's release still needs two players
}

TEST_F(Keyboard, CtrlKeysAreTracked) {
  press(SDLK_RCTRL);
  press(SDLK_LCTRL);
  EXPECT_TRUE(rctrl);
  EXPECT_TRUE(lctrl);
  release(SDLK_RCTRL);
  EXPECT_FALSE(rctrl);
  EXPECT_FALSE(player[0].pease);
  EXPECT_TRUE(lctrl);
}

TEST_F(Keyboard, OneShotFlagsSurviveTheirRelease) {
  press(SDLK_SPACE);
  press(SDLK_RETURN);
  press(SDLK_ESCAPE);
  release(SDLK_SPACE);
  release(SDLK_RETURN);
  release(SDLK_ESCAPE);
  EXPECT_TRUE(spacepressed);
  EXPECT_TRUE(entterpressed);
  EXPECT_TRUE(escpressed);
  for (int slot = 0; slot < 4; slot++) EXPECT_FALSE(anyInput(slot));
}

TEST_F(Keyboard, TextEntryTakesLettersButModifiersStillSteer) {
  luetaan = 1;
  testing::internal::CaptureStdout();
  press(SDLK_w, 'w');
  EXPECT_EQ(luettunappi, 'w');
  EXPECT_EQ(luetaan, 2);
  EXPECT_EQ(sdlnappi, SDLK_w);
  EXPECT_FALSE(player[1].pylos);

  press(SDLK_LCTRL);
  EXPECT_TRUE(player[1].pease);
  press(SDLK_RSHIFT);
  EXPECT_TRUE(player[0].pfire);

  // The character is masked to seven bits.
  press(SDLK_a, 0xE4);
  EXPECT_EQ(luettunappi, 0x64);

  luetaan = 1;
  press(SDLK_ESCAPE);
  EXPECT_TRUE(escpressed);
  EXPECT_EQ(luetaan, 1);
  press(SDLK_RETURN);
  EXPECT_TRUE(entterpressed);
  EXPECT_EQ(luetaan, 1);
  press(SDLK_SPACE, ' ');
  EXPECT_FALSE(spacepressed);
  EXPECT_EQ(luettunappi, ' ');
  const std::string out = testing::internal::GetCapturedStdout();
  EXPECT_NE(out.find("k=119\n"), std::string::npos);
  EXPECT_NE(out.find("k=27\n"), std::string::npos);

  // Releases are not affected by text entry.
  player[1].pylos = true;
  release(SDLK_w);
  EXPECT_FALSE(player[1].pylos);
}

class EventPump : public Keyboard {
protected:
  testutil::GLWindow window{320, 240};
};

void pushKey(Uint8 type, SDLKey key) {
  SDL_Event e{};
  e.type = type;
  e.key.type = type;
  e.key.state = type == SDL_KEYDOWN ? SDL_PRESSED : SDL_RELEASED;
  e.key.keysym = keysym(key);
  SDL_PushEvent(&e);
}

TEST_F(EventPump, KeysAndResizeReachTheGame) {
  ASSERT_TRUE(window.ok());
  pushKey(SDL_KEYDOWN, SDLK_UP);
  pushKey(SDL_KEYDOWN, SDLK_d);
  pushKey(SDL_KEYUP, SDLK_UP);
  SDL_Event resize{};
  resize.type = SDL_VIDEORESIZE;
  resize.resize.type = SDL_VIDEORESIZE;
  resize.resize.w = 400;
  resize.resize.h = 300;
  SDL_PushEvent(&resize);
  processEvents();
  EXPECT_FALSE(player[0].pylos);
  EXPECT_TRUE(player[1].pright);
  EXPECT_EQ(screenwidth, 400);
  EXPECT_EQ(screenheight, 300);
  SDL_Event left;
  EXPECT_EQ(SDL_PollEvent(&left), 0);  // the queue is drained
}

TEST(EventPumpQuit, QuitEventEndsTheProgramWithStatusZero) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        testutil::GLWindow window(320, 240);
        SDL_Event quit{};
        quit.type = SDL_QUIT;
        SDL_PushEvent(&quit);
        dup2(2, 1);  // the statistics go to standard output
        processEvents();
      },
      ::testing::ExitedWithCode(0), "frames drawn: 0\n(.|\n)*calculated fps: 100");
}

}  // namespace
