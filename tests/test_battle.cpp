// A long headless battle: sixteen ships with scripted buttons fly every ship type
// through every game mode. The sanitizers watch memory; the test watches numbers.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "Main.h"
#include "Menu.h"
#include "ctf.h"
#include "domination.h"
#include "simscene.h"

#include "varaukset.h"  // the world step must allocate nothing

namespace {

const int freimeja = 100000;
const int vaihdonVali = 4000;  // every ship changes type this often
const int tilanVali = freimeja / 5;

bool aarellinen(float a) { return std::isfinite(a); }

bool aarellinenPati(const Pati& s) {
  return s.aika <= 0 || (aarellinen(s.x) && aarellinen(s.y) && aarellinen(s.xv) && aarellinen(s.yv));
}

class Battle : public ::testing::Test {
 protected:
  std::set<int> lentaneet;
  int kuolemia = 0;
  int laukauksiaEnintaan = 0;
  bool pisteitaVallattu = false;

  void SetUp() override {
    simscene::maailma(maxPlayers, 1, 1234);
    saavalita = false;
    for (int i = 0; i < maxPlayers; ++i) {
      const float kulma = i * 22.5f * 3.1415927f / 180;
      simscene::laita(i, (i * 5) % alustyyppeja, std::cos(kulma) * 110, std::sin(kulma) * 90, i * 22.5f);
      player[i].tiimi = i % 4;
      player[i].ihmispelaaja = true;
    }
    alustaAsteroidit();
    for (Pati& m : pikkumies) m.aika = 0;
  }

  // Modes in turn: a credit death match, random ships, then the three objectives.
  static void aloitaTila(int tila) {
    gamemode = tila;
    pistepeli = tila == 0;
    ekapisteframe = pistepeli;
    for (int i = 0; i < maxPlayers; ++i) player[i].pisteet = pistepeli ? 1e6f : 0;
    if (tila == 3) aloitaCPisteet();
  }

  static void painaNappeja(int f) {
    for (int i = 0; i < maxPlayers; ++i) {
      Player& p = player[i];
      p.pylos = (f / 97 + i) % 3 != 0;
      p.palas = false;
      p.pleft = (f / 53 + i) % 4 == 0;
      p.pright = (f / 71 + i) % 4 == 1;
      p.pfire = (f / 131 + i) % 5 != 0;
      p.pease = (f / 30 + i) % 3 == 0;  // specials pressed and released often
    }
  }

  static void vaihdaAlukset(int kierros) {
    for (int i = 0; i < maxPlayers; ++i) player[i].uudestaan(alus[(i * 5 + kierros) % alustyyppeja]);
  }

  void tarkistaAlukset(int f) {
    for (int i = 0; i < maxPlayers; ++i) {
      const Player& p = player[i];
      ASSERT_TRUE(aarellinen(p.x) && aarellinen(p.y) && aarellinen(p.xvauhti) && aarellinen(p.yvauhti))
          << "player " << i << " ship " << p.alus.numero << " frame " << f;
      ASSERT_TRUE(aarellinen(p.energia) && aarellinen(p.fuel)) << "player " << i << " frame " << f;
      ASSERT_TRUE(p.limacount >= 0 && p.limacount <= limoja) << "player " << i << " frame " << f;
      lentaneet.insert(p.alus.numero);
      kuolemia += p.kuolema == 350;
    }
    for (const Pati& a : asteroidi)
      ASSERT_TRUE(aarellinen(a.x) && aarellinen(a.y) && aarellinen(a.xv) && aarellinen(a.yv))
          << "frame " << f;
  }

  void tarkistaLaukaukset(int f) {
    for (int i = 0; i < maxPlayers; ++i) {
      const Player& p = player[i];
      int eloja = 0;
      for (int k = 0; k < static_cast<int>(p.alus.maxpadit); ++k) {
        ASSERT_TRUE(aarellinenPati(p.pati[k]))
            << "shot " << k << " of ship " << p.alus.numero << " frame " << f;
        eloja += p.pati[k].aika > 0;
      }
      for (int k = 0; k < static_cast<int>(p.alus.maxepadit); ++k)
        ASSERT_TRUE(aarellinenPati(p.epati[k]))
            << "special " << k << " of ship " << p.alus.numero << " frame " << f;
      laukauksiaEnintaan = std::max(laukauksiaEnintaan, eloja);
    }
    for (const Sirpale& s : sirpale)
      ASSERT_TRUE(s.aika <= 0 || (std::isfinite(s.x) && std::isfinite(s.y) && std::isfinite(s.z)))
          << "frame " << f;
  }
};

TEST_F(Battle, SixteenShipsFightAHundredThousandFramesWithoutFault) {
  for (int f = 0; f < freimeja; ++f) {
    if (f % tilanVali == 0) aloitaTila(f / tilanVali);
    if (f % vaihdonVali == 0) vaihdaAlukset(f / vaihdonVali);
    painaNappeja(f);
    laskeVaraukset = true;
    calculateFrame(f + 1);
    laskeVaraukset = false;
    if (gamemode == 2) pisteitaVallattu = pisteitaVallattu || dpiste[0].tiimi >= 0 || dpiste[1].tiimi >= 0;
    ASSERT_NO_FATAL_FAILURE(tarkistaAlukset(f));
    if (f % 25 == 0) {
      ASSERT_NO_FATAL_FAILURE(tarkistaLaukaukset(f));
    }
  }
  EXPECT_EQ(lentaneet.size(), static_cast<size_t>(alustyyppeja));
  EXPECT_GT(kuolemia, 20);  // ships did meet and fight
  EXPECT_GT(laukauksiaEnintaan, 10);
  EXPECT_TRUE(pisteitaVallattu);
  EXPECT_EQ(varauksia, 0);
}

}  // namespace
