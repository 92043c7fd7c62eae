// Projectile flight and hits, and shots breaking shots (checked against a plain pair scan).
#include <gtest/gtest.h>

#include <cmath>
#include <utility>
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
  ammus(0, 0, 0, 50, 0.1f, 0);       // inside its own ship
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
  laita(0, 14, 0, 50);
  for (int iskuja : {1, 2}) {  // kinds 7 and 14 count the first blow only when they have a hit sound
    laita(1, 4, 30, 30);
    if (iskuja == 2) o.osumisaani = new Sound("osuma.wav");
    ammus(0, 0, 30, 30);
    o.liikutaPadit();
    EXPECT_FLOAT_EQ(k.energia, 50 - iskuja * 5);
  }
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
  Pati& r = ammus(0, 0, 50, 50);     // 3 energy, ship damage 1
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

// The rule as plainly as it can be written: every live pair, in order, one blow per
// pairing to the first shot.
void iske(Pati& t, double vahinko) {
  t.energia = (float)(t.energia - vahinko);
  if (t.energia <= 0) t.aika = 0;
}

void suoraTarkistus(int a) {
  for (int b = a; b < players; ++b)
    for (int pe = 0; pe < 2 && !(pistepeli && player[b].pisteet < 0); ++pe)
      for (int qe = 0; qe < 2; ++qe) {
        const Alus &pa = player[a].alus, &qa = player[b].alus;
        auto raja = [](double m, int koko) { return m <= 0 ? 0 : std::min(koko, (int)std::ceil(m)); };
        Pati* const ps = pe ? player[a].epati : player[a].pati;
        Pati* const qs = qe ? player[b].epati : player[b].pati;
        const int pn = pe ? raja(pa.maxepadit, maksimiepadit) : raja(pa.maxpadit, maksimipadit);
        const int qn = qe ? raja(qa.maxepadit, maksimiepadit) : raja(qa.maxpadit, maksimipadit);
        const bool qHajoaa =
            (qe ? qa.epatiVoiHajota : qa.patiVoiHajota) && (pe ? pa.epatihajottaa : pa.patihajottaa);
        const bool pHajoaa =
            (pe ? pa.epatiVoiHajota : pa.patiVoiHajota) && (qe ? qa.epatihajottaa : qa.patihajottaa);
        const double r = (pe ? pa.epatisade : pa.patisade) + (qe ? qa.epatisade : qa.patisade);
        for (int i = 0; i < pn; ++i)
          for (int j = 0; j < qn && ps[i].aika > 0; ++j) {
            const double dx = (double)qs[j].x - ps[i].x, dy = (double)qs[j].y - ps[i].y;
            if ((a == b && pe == qe && i == j) || qs[j].aika <= 0 ||
                !(std::fabs(dx) < r && std::fabs(dy) < r) || !(dx * dx + dy * dy < (0.785 * r) * (0.785 * r)))
              continue;
            if (qHajoaa) iske(qs[j], pe ? pa.edamage : pa.damage);
            if (pHajoaa) {
              iske(ps[i], qe ? qa.edamage : qa.damage);
              break;
            }
          }
      }
}

// Slots a scene fills per shot kind: beyond every ship's primary limit.
const int taytetyt = 300;

// A crowded random scene: shots of every kind packed into a small area. The same seed
// gives the same scene.
void satunnainenKohtaus(unsigned siemen) {
  maailma(1 + siemen % 16, 0, siemen);
  for (int i = 0; i < players; ++i)
    if (!player[i].pati) laita(i, 0, 0, 0);
  srand(siemen);  // as many draws whether the arrays were there or not
  const int laivat[] = {0, 1, 3, 4, 5, 8, 13, 15, 16, 17, 20, 21, 22, 2, 12, 23};
  pistepeli = siemen % 3 == 0;
  for (int i = 0; i < players; ++i) {
    Player& p = player[i];
    p.alus = alus[laivat[(i + siemen) % 16]];  // the arrays are reused: only the ship changes
    p.pisteet = (pistepeli && rand() % 4 == 0) ? -1 : 0;
    const float leveys = 5 + siemen % 40;
    for (int k = 0; k < taytetyt; ++k)
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

// Each shot's life and energy after every player's check, by the given check.
std::vector<std::pair<short, float>> tulos(unsigned siemen, void (*tarkista)(int)) {
  satunnainenKohtaus(siemen);
  for (int a = 0; a < players; ++a) tarkista(a);
  std::vector<std::pair<short, float>> k;
  for (int i = 0; i < players; ++i)
    for (int s = 0; s < taytetyt; ++s)
      for (const Pati* t : {&player[i].pati[s], &player[i].epati[s]}) k.emplace_back(t->aika, t->energia);
  return k;
}

}  // namespace

TEST(ShotsBreak, TheBroadPhaseGivesExactlyThePlainScansResult) {
  int kosketuksia = 0;
  for (unsigned siemen = 1; siemen <= 80; ++siemen) {
    const auto alku = tulos(siemen, [](int) {});
    const auto odotettu = tulos(siemen, suoraTarkistus);
    ASSERT_TRUE(tulos(siemen, [](int a) { player[a].tarkistaHajosikoPadit(); }) == odotettu)
        << "seed " << siemen;
    for (size_t i = 0; i < alku.size(); ++i) kosketuksia += alku[i].second != odotettu[i].second;
  }
  pistepeli = false;
  EXPECT_GT(kosketuksia, 10000);  // the scenes really are crowded
}
