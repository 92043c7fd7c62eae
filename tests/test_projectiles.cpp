// Projectile flight and hits, and shots breaking shots (checked against a plain pair scan).
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "audio.h"
#include "simscene.h"

using namespace simscene;

TEST(Flight, ThePlanetSwallowsWithin8AndBendsWithin40) {
  maailma(1);
  Player& p = laita(0, 2, 100, 100);
  Pati& reuna = ammus(0, 0, 8, 0);
  Pati& sisalla = ammus(0, 1, 0, 7.99f);
  Pati& raja = ammus(0, 2, -40, 0);
  Pati& veto = ammus(0, 3, 0, -20);
  p.liikutaPadit();
  EXPECT_GT(reuna.aika, 0);
  EXPECT_FLOAT_EQ(reuna.xv, -0.1f * 8 / 64);
  EXPECT_EQ(sisalla.aika, 0);
  EXPECT_EQ(raja.xv, 0);
  EXPECT_FLOAT_EQ(veto.yv, 0.1f * 20 / 400);
  EXPECT_EQ(reuna.aika, 999);
}

TEST(Hits, AShotHitsEveryShipItTouchesButNeverItsOwnerAShieldOrAPlayerOutOfPlay) {
  maailma(3);
  Player& o = laita(0, 17, 0, 50);
  Player& a = laita(1, 0, 30, 30);
  Player& b = laita(2, 3, 30.5f, 30);
  ammus(0, 0, 0, 50, 0.1f, 0);      // inside its own ship
  ammus(0, 1, 30, 30, 0.5f, -0.5f);  // on both targets
  o.liikutaPadit();
  EXPECT_GT(o.pati[0].aika, 0);
  EXPECT_EQ(o.energia, 15);
  EXPECT_EQ(o.pati[1].aika, 0);
  EXPECT_FLOAT_EQ(a.energia, 50 - 2);
  EXPECT_FLOAT_EQ(b.energia, 40 - 2);
  EXPECT_FLOAT_EQ(a.xvauhti, 0.5f * 0.01f);
  EXPECT_FLOAT_EQ(b.yvauhti, -0.5f * 0.01f);

  a.suojapaalla = true;  // a shield, and a player out of a credit game, are never hit
  pistepeli = true;
  b.pisteet = -1;
  ammus(0, 1, 30, 30);
  o.liikutaPadit();
  pistepeli = false;
  EXPECT_FLOAT_EQ(a.energia, 50 - 2);
  EXPECT_FLOAT_EQ(b.energia, 40 - 2);
  EXPECT_GT(o.pati[1].aika, 0);
}

TEST(Hits, DamageByKindTheChargeBallByItsChargeSomeKindsTwiceAndAClientOnce) {
  maailma(2);
  Player& o = laita(0, 13, 0, 50);
  Player& k = laita(1, 3, 30, 30);
  ammus(0, 0, 30, 30).energia = 2000;
  o.liikutaPadit();
  EXPECT_FLOAT_EQ(k.energia, 0);  // exactly the 40 damage
  EXPECT_EQ(o.ampumisviive, 100);
  laita(1, 3, 30, 30);
  o.ampumisviive = 0;
  ammus(0, 1, 30, 30).energia = 100;
  o.liikutaPadit();
  EXPECT_FLOAT_EQ(k.energia, 40 - 2);
  EXPECT_EQ(o.ampumisviive, 0);  // a launched ball in another slot does not

  for (int n : {15, 16, 20}) {  // these kinds take their damage twice
    laita(0, n, 0, 50);
    laita(1, 4, 30, 30);
    ammus(0, 0, 30, 30, 0.01f, 0);
    o.liikutaPadit();
    EXPECT_FLOAT_EQ(k.energia, 50 - 2 * alus[n].damage) << n;
    EXPECT_EQ(o.pati[0].aika, 0) << n;
  }
  // Kinds 7 and 14 count the first blow only when they have a hit sound.
  laita(0, 14, 0, 50);
  laita(1, 4, 30, 30);
  ammus(0, 0, 30, 30);
  o.liikutaPadit();
  EXPECT_FLOAT_EQ(k.energia, 50 - 5);
  laita(1, 4, 30, 30);
  o.osumisaani = new Sound("osuma.wav");
  ammus(0, 0, 30, 30);
  o.liikutaPadit();
  EXPECT_FLOAT_EQ(k.energia, 50 - 2 * 5);
  delete o.osumisaani;
  o.osumisaani = nullptr;
  // A client does not kill the shot and takes one blow of the doubled kinds.
  laita(1, 4, 30, 30);
  ammus(0, 0, 30, 30);
  Player& m = laita(0, 16, 0, 50);
  ammus(0, 0, 30, 30);
  joinpeli = true;
  m.liikutaPadit();
  joinpeli = false;
  EXPECT_FLOAT_EQ(k.energia, 50 - 3.5f);
  EXPECT_GT(m.pati[0].aika, 0);
}

TEST(Homing, SeeksTheNearestEnemyElsePlayerZeroEvenItsOwner) {
  maailma(3);
  Player& o = laita(0, 7, 0, 100);
  laita(1, 0, -100, 0);
  laita(2, 0, 100, 0).tiimi = 0;  // a team-mate is not a target
  Pati& s = ammus(0, 0, 0, 0);
  o.liikutaPadit();
  EXPECT_LT(s.xv, 0);
  EXPECT_NEAR(s.kulma, 180, 1e-3);

  player[1].tiimi = 0;  // nobody left to chase: it turns on player 0, its owner
  Pati& t = ammus(0, 1, 0, 0);
  o.liikutaPadit();
  EXPECT_GT(t.yv, 0);
  EXPECT_NEAR(t.kulma, 90, 1e-3);
}

TEST(Flight, Type23BouncesOffEvenItsOwnerMinesJitterAndWanderersKeepTheirSpeed) {
  maailma(2);
  Player& o = laita(0, 23, 0, 50);
  Player& k = laita(1, 4, 30, 30);
  k.xvauhti = 0.1f;
  Pati& s = ammus(0, 0, 30, 30, 0.2f, 0);
  o.liikutaPadit();
  EXPECT_GT(s.aika, 0);
  EXPECT_FLOAT_EQ(k.energia, 50 - 1.5f);
  EXPECT_NEAR(k.xvauhti, 0.1 + 0.2 * 0.2 * 240 / 500, 1e-6);
  EXPECT_NEAR(s.xv, 0.2 - 0.1 * 500 / 200.0, 1e-6);

  Pati& oma = ammus(0, 1, 0, 50);
  o.liikutaPadit();
  EXPECT_GT(oma.aika, 0);
  EXPECT_FLOAT_EQ(o.energia, 24 - 1.5f);

  laita(0, 15, 0, 100);  // mines jitter in place; wanderers keep their speed
  Pati& m = ammus(0, 0, 50, 50);
  for (int i = 0; i < 100; ++i) o.liikutaPadit();
  EXPECT_LE(std::hypot(m.x - 50, m.y - 50), 100 * 0.5 * 0.05 * 1.5);
  EXPECT_EQ(m.xv, 0);

  laita(0, 16, 0, 100);
  Pati& w = ammus(0, 0, 60, 60, 0.3f, 0.4f);
  for (int i = 0; i < 50; ++i) o.liikutaPadit();
  EXPECT_NEAR(std::hypot(w.xv, w.yv), 0.5, 1e-5);
}

TEST(ClusterBomb, FliesWhileFireIsHeldAndBurstsOnRelease) {
  maailma(1);
  Player& o = laita(0, 4, 0, 100);
  laita(1, 5, 150, 100);
  o.pfire = true;
  Pati& pommi = ammus(0, 0, 50, 50, 0.3f, 0);
  o.liikutaPadit();
  EXPECT_GT(pommi.aika, 0);
  EXPECT_EQ(o.pati[1].aika, 0);

  o.pfire = false;
  o.liikutaPadit();
  EXPECT_EQ(pommi.aika, 0);
  int sirpaleet = 0;
  for (int i = 1; i <= 30; ++i) {
    const Pati& s = o.pati[i];
    if (s.aika <= 0) continue;
    ++sirpaleet;
    EXPECT_FLOAT_EQ(s.energia, 15 * 0.125f);
    EXPECT_NEAR(std::hypot(s.xv, s.yv), 0.15, 1e-6);  // the bomb's own speed is not inherited
    EXPECT_LE(s.aika, 40);
  }
  EXPECT_EQ(sirpaleet, 30);
  EXPECT_EQ(o.pati[31].aika, 0);

  Player& k = laita(1, 5, 50, 50);  // the bomb hits in full, a fragment an eighth
  players = 2;
  o.pfire = true;
  ammus(0, 0, 50, 50);
  o.liikutaPadit();
  EXPECT_FLOAT_EQ(k.energia, 60 - 17);
  ammus(0, 5, 50, 50);
  o.liikutaPadit();
  EXPECT_FLOAT_EQ(k.energia, 60 - 17 - 17 * 0.125f);
}

// ---- Shots against shots ----------------------------------------------------------

TEST(ShotsBreak, ShotsWearEachOtherDownOneBlowPerPairingButAnUnbreakableShotHitsThemAll) {
  maailma(2);
  laita(0, 0, 0, 100);
  laita(1, 3, 0, -100);
  Pati& r = ammus(0, 0, 50, 50);  // 3 energy, ship damage 1
  Pati& t = ammus(1, 0, 50.2f, 50);  // 3 energy, ship damage 3
  player[0].tarkistaHajosikoPadit();
  EXPECT_EQ(r.aika, 0);
  EXPECT_FLOAT_EQ(t.energia, 2);
  EXPECT_GT(t.aika, 0);

  laita(1, 0, 0, -100);
  Pati& p = ammus(0, 0, 50, 50);
  Pati& q1 = ammus(1, 0, 50.1f, 50);
  Pati& q2 = ammus(1, 1, 50, 50.1f);
  player[0].tarkistaHajosikoPadit();
  EXPECT_FLOAT_EQ(p.energia, 2);
  EXPECT_FLOAT_EQ(q1.energia, 2);
  EXPECT_FLOAT_EQ(q2.energia, 3);

  laita(0, 13, 0, 100);  // the charge ship's shots break others and cannot be broken
  Pati& pallo = ammus(0, 0, 50, 50);
  ammus(1, 0, 50.1f, 50);
  ammus(1, 1, 50, 50.1f);
  player[0].tarkistaHajosikoPadit();
  EXPECT_EQ(player[1].pati[0].aika, 0);
  EXPECT_EQ(player[1].pati[1].aika, 0);
  EXPECT_EQ(pallo.energia, 100);

  laita(0, 0, 0, 100);  // a ship's own shots meet too, a blow each way in both orders
  Pati& a = ammus(0, 0, 50, 50);
  Pati& b = ammus(0, 1, 50.1f, 50);
  player[0].tarkistaHajosikoPadit();
  EXPECT_FLOAT_EQ(a.energia, 1);
  EXPECT_FLOAT_EQ(b.energia, 1);
}

namespace {

struct Laji {
  Pati* padit;
  int n;
  double sade, vahinko;
  bool hajottaa, voiHajota;
};

Laji laji(Player& p, bool e) {
  auto raja = [](double m, int koko) { return m <= 0 ? 0 : std::min(koko, (int)std::ceil(m)); };
  if (e)
    return {p.epati, raja(p.alus.maxepadit, maksimiepadit), p.alus.epatisade, p.alus.edamage,
            p.alus.epatihajottaa, p.alus.epatiVoiHajota};
  return {p.pati, raja(p.alus.maxpadit, maksimipadit), p.alus.patisade, p.alus.damage,
          p.alus.patihajottaa, p.alus.patiVoiHajota};
}

// The rule as plainly as it can be written: every live pair, in order.
void suoraTarkistus(int a) {
  for (int b = a; b < players; ++b) {
    if (pistepeli && player[b].pisteet < 0) continue;
    for (bool pe : {false, true})
      for (bool qe : {false, true}) {
        const Laji p = laji(player[a], pe), q = laji(player[b], qe);
        const bool qHajoaa = q.voiHajota && p.hajottaa, pHajoaa = p.voiHajota && q.hajottaa;
        if (!qHajoaa && !pHajoaa) continue;
        const double r = q.sade + p.sade;
        for (int i = 0; i < p.n; ++i) {
          Pati& s = p.padit[i];
          if (s.aika <= 0) continue;
          for (int j = 0; j < q.n; ++j) {
            Pati& t = q.padit[j];
            if ((a == b && pe == qe && i == j) || t.aika <= 0) continue;
            const double dx = (double)t.x - s.x, dy = (double)t.y - s.y;
            if (!(std::fabs(dx) < r && std::fabs(dy) < r)) continue;
            if (!(dx * dx + dy * dy < (0.785 * r) * (0.785 * r))) continue;
            if (qHajoaa) {
              t.energia = (float)(t.energia - p.vahinko);
              if (t.energia <= 0) t.aika = 0;
            }
            if (pHajoaa) {
              s.energia = (float)(s.energia - q.vahinko);
              if (s.energia <= 0) s.aika = 0;
              break;
            }
          }
        }
      }
  }
}

// Slots a scene fills per shot kind: beyond every ship's primary limit.
const int taytetyt = 300;

std::vector<Pati> ota() {
  std::vector<Pati> k;
  for (int i = 0; i < players; ++i) {
    k.insert(k.end(), player[i].pati, player[i].pati + taytetyt);
    k.insert(k.end(), player[i].epati, player[i].epati + taytetyt);
  }
  return k;
}

void palauta(const std::vector<Pati>& k) {
  for (int i = 0; i < players; ++i) {
    std::copy_n(k.begin() + i * 2 * taytetyt, taytetyt, player[i].pati);
    std::copy_n(k.begin() + (i * 2 + 1) * taytetyt, taytetyt, player[i].epati);
  }
}

// A crowded random scene: shots of every kind packed into a small area.
void satunnainenKohtaus(unsigned siemen) {
  maailma(1 + siemen % 16, 0, siemen);
  const int laivat[] = {0, 1, 3, 4, 5, 8, 13, 15, 16, 17, 20, 21, 22, 2, 12, 23};
  pistepeli = siemen % 3 == 0;
  for (int i = 0; i < players; ++i) {
    Player& p = player[i];
    if (!p.pati) laita(i, 0, 0, 0);
    p.alus = alus[laivat[(i + siemen) % 16]];  // the arrays are reused: only the ship changes
    p.pisteet = (pistepeli && rand() % 4 == 0) ? -1 : 0;
    const float leveys = 5 + siemen % 40;
    for (int k = 0; k < taytetyt; ++k) {
      for (Pati* t : {&p.pati[k], &p.epati[k]}) {
        *t = Pati{};
        if (rand() % 3 == 0) continue;
        t->x = (float)(random(leveys) - leveys / 2 + (siemen % 5 == 0 ? 400 : 0));
        t->y = (float)(random(leveys) - leveys / 2);
        t->energia = (float)(random(6) - 0.5);
        t->aika = (short)(1 + rand() % 50);
      }
    }
  }
}

}  // namespace

TEST(ShotsBreak, TheBroadPhaseGivesExactlyThePlainScansResult) {
  int kosketuksia = 0;
  for (unsigned siemen = 1; siemen <= 80; ++siemen) {
    satunnainenKohtaus(siemen);
    const std::vector<Pati> alku = ota();
    for (int a = 0; a < players; ++a) suoraTarkistus(a);
    const std::vector<Pati> odotettu = ota();
    palauta(alku);
    for (int a = 0; a < players; ++a) player[a].tarkistaHajosikoPadit();
    const std::vector<Pati> saatu = ota();
    for (size_t i = 0; i < odotettu.size(); ++i) {
      SCOPED_TRACE("seed " + std::to_string(siemen) + " slot " + std::to_string(i));
      const Pati &o = odotettu[i], &s = saatu[i];
      ASSERT_EQ(o.aika, s.aika);
      ASSERT_EQ(std::memcmp(&o.energia, &s.energia, sizeof o.energia), 0);
      kosketuksia += o.energia != alku[i].energia;
    }
  }
  pistepeli = false;
  EXPECT_GT(kosketuksia, 10000);  // the scenes really are crowded
}
