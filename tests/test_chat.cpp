// The chat: long lines continue under their sender, the input line's limits and scroll,
// and the screen closing itself when the game starts.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "Main.h"
#include "Player.h"
#include "chat.h"
#include "net.h"
#include "testutil.h"

namespace {

using testutil::FakeClock;

TEST(Chat, LongLinesContinueUnderTheSenderAndTheOldestLineScrollsOut) {
  tyhjennaChatBufferi();
  const std::string teksti(200, 'q');
  lisaaRivi(("anna      :" + teksti).c_str(), 211);
  EXPECT_EQ(std::string(chatbuffer[2]), "anna      :" + teksti.substr(0, 73));
  EXPECT_EQ(std::string(chatbuffer[1]), "anna      :" + teksti.substr(0, 73));
  EXPECT_EQ(std::string(chatbuffer[0]), "anna      :" + teksti.substr(0, 54));
  for (int i = 0; i < 20; ++i) lisaaRivi("bob       :hi", 13);
  EXPECT_EQ(std::string(chatbuffer[22]), "anna      :" + teksti.substr(0, 73));
  lisaaRivi("bob       :hi", 13);
  lisaaRivi("bob       :hi", 13);
  EXPECT_EQ(std::string(chatbuffer[22]), "anna      :" + teksti.substr(0, 54));
  lisaaRivi("ab", 2);  // shorter than its prefix: padded, nothing read past it
  EXPECT_STREQ(chatbuffer[0], "ab         ");
}

TEST(Chat, TheInputStopsAt498AndKeepsTheCursorInView) {
  tyhjennaKirjotusBufferi();
  for (int i = 0; i < 30; ++i) kirjoitaNappi('a', 0, 'a');
  for (char c : {';', '\t', '\0'}) kirjoitaNappi(c, 0, 0);
  kirjoitaNappi('v', 64, 'v');  // paste
  kirjoitaNappi('x', 0, SDLK_INSERT);
  EXPECT_EQ(std::strlen(kirjotusbuffer), 30u);
  for (int i = 30; i < 510; ++i) kirjoitaNappi(static_cast<char>('a' + i % 26), 0, 0);
  EXPECT_EQ(kirjotettavakirjain, 498);
  EXPECT_EQ(std::strlen(kirjotusbuffer), 499u);
  EXPECT_EQ(kirjotusbuffer[498], 'a' + 509 % 26);  // the last position was overwritten
  EXPECT_EQ(vasenkirjain, 498 - ruudunleveys);
  kirjoitaNappi(8, 0, SDLK_BACKSPACE);
  EXPECT_EQ(std::strlen(kirjotusbuffer), 498u);
  for (int i = 0; i < 400; ++i) kirjoitaNappi(8, 0, SDLK_BACKSPACE);
  EXPECT_EQ(kirjotettavakirjain, 98);
  EXPECT_EQ(vasenkirjain, 88);  // the last ten stay visible
}

TEST(Chat, TheScreenClosesWhenTheGameStartsEvenWhileTyping) {
  FakeClock kello;
  aulanPiirto = [](void (*)(int), int) {};
  hostpeli = false;
  static int askel;
  askel = 0;
  FakeClock::onSleep = [] {
    switch (++askel) {
      case 1: entterpressed = true; break;  // "write"
      case 20: luettunappi = 'k', luetaan = 2; break;
      case 40: started2 = true; break;
      case 10000: escpressed = true; break;  // a watchdog, should the screen stay
      default: break;
    }
  };
  chatScreen();
  EXPECT_LT(askel, 10000);
  EXPECT_STREQ(kirjotusbuffer, "k");
  EXPECT_EQ(luetaan, 0);
  aulanPiirto = [](void (*ruutu)(int), int kohta) { ruutu(kohta); };
}

}  // namespace
