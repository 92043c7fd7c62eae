// The ship catalogue and the player slot's life cycle.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstring>

#include "audio.h"
#include "simscene.h"

using namespace simscene;

namespace {

Sound* Alus::*const paikat[4] = {&Alus::ampumisaani, &Alus::osumisaani, &Alus::eampumisaani,
                                 &Alus::eosumisaani};

int aanilistanPituus() {
  int n = 0;
  for (soundlist* s = allsounds; s; s = s->next) ++n;
  return n;
}

// The catalogue with sounds loaded from the generated assets.
void aanellinenKataloogi() {
  ASSERT_EQ(chdir(VORTA_DATA_DIR), 0);
  dserver = false;
  alota();
}

}  // namespace

// The fields the table fills from single-precision constants keep the widened value,
// not the nearest double to the decimal; fields written as doubles stay exact.
TEST(Catalogue, WidenedFloatsAreKeptAndEveryShipNamesItsOwnWeapons) {
  kataloogi();
  EXPECT_EQ(alus[0].sade, 2.5999999046325684);
  EXPECT_EQ(alus[8].kaantonopeus, (double)2.4f);
  EXPECT_EQ(alus[3].kaantonopeus, 2.3);
  EXPECT_EQ(alus[14].patinopeus, (double)0.007f);
  EXPECT_EQ(alus[5].epatisade, (double)0.45f);
  for (int n = 0; n < alustyyppeja; ++n)
    EXPECT_TRUE(alus[n].aselaji == n && alus[n].easelaji == n && alus[n].numero == n) << n;
}

TEST(CatalogueSounds, SilentSlotsAreNullEverySlotIsItsOwnSoundAndADedicatedHostHasNone) {
  aanellinenKataloogi();
  const bool tyhja[24][4] = {{0, 0, 0, 1}, {}, {0, 0, 0, 1}, {}, {}, {}, {0, 1, 0, 1}, {0, 0, 0, 1}};
  for (int n = 0; n < alustyyppeja; ++n)
    for (int s = 0; s < 4; ++s) {
      Sound* aani = alus[n].*paikat[s];
      EXPECT_EQ(aani == nullptr, tyhja[n][s]) << "ship " << n << " slot " << s;
      for (int m = 0; aani && m < n; ++m)
        for (auto paikka : paikat) EXPECT_NE(alus[m].*paikka, aani);
    }
  dserver = true;  // a dedicated host creates no sounds at all
  alota();
  for (int n = 0; n < alustyyppeja; ++n)
    for (auto paikka : paikat) EXPECT_EQ(alus[n].*paikka, nullptr) << n;
}

TEST(CatalogueSounds, EveryNamedFileLoadsOnceAndVolumesFollowTheSetting) {
  initAudio();
  aanellinenKataloogi();
  ASSERT_TRUE(working) << "no audio device";
  ASSERT_NE(alus[0].ampumisaani->sample, nullptr) << "no generated samples";
  for (int n = 0; n < alustyyppeja; ++n)  // every file the catalogue names was found
    for (auto paikka : paikat) EXPECT_TRUE(!(alus[n].*paikka) || (alus[n].*paikka)->sample) << "ship " << n;
  EXPECT_EQ(alus[8].ampumisaani->sample, alus[0].ampumisaani->sample);  // one file, loaded once
  EXPECT_TRUE(alus[9].ampumisaani->loops);                              // the laser's hum

  sets.soundvolume = 80;
  setSoundVolumes();
  EXPECT_FLOAT_EQ(alus[12].ampumisaani->volume, 0.8f * 0.34f);  // the table's level times the setting
  EXPECT_EQ(alus[15].osumisaani->volume, 0.0f);                 // loaded but muted on purpose
  dserver = true;
  alota();
  uninitAudio();
}

TEST(PlayerLifeCycle, RespawnKeepsAwayFromThePlanetInsideTheFieldFacingTheSameWay) {
  maailma(1);
  Player& p = laita(0, 3, 10, 10, 123.0f);
  p.energia = 1;
  p.fuel = 0;
  for (unsigned siemen = 1; siemen <= 300; ++siemen) {
    srand(siemen);
    p.uudestaan(alus[siemen % alustyyppeja]);
    const double d = std::hypot(p.x, p.y);
    ASSERT_GE(d, 80);
    ASSERT_LE(std::fabs(p.x), 160);
    ASSERT_LE(std::fabs(p.y), 120);
  }
  EXPECT_EQ(p.kulma, 123.0f);
  EXPECT_EQ(p.energia, (float)p.alus.energia);
  EXPECT_EQ(p.ampumisviive, 40);
}

TEST(PlayerLifeCycle, RespawnFreesOnlyTheSlotsTheNewShipUses) {
  maailma(1);
  Player& p = laita(0, 0, 0, 0);
  for (int k = 0; k < 50; ++k) ammus(0, k, 100, 0);
  p.epati[3].aika = 5;
  p.lima[29].aika = 5;
  p.limacount = 30;
  p.viivat[59].aika = 3;

  p.uudestaan(alus[9]);  // no primary slots: nothing of pati is touched
  EXPECT_EQ(p.pati[0].aika, 1000);
  EXPECT_EQ(p.epati[3].aika, 0);  // ship 9 has 20 special slots
  EXPECT_EQ(p.lima[29].aika, 0);
  EXPECT_EQ(p.limacount, 0);
  EXPECT_EQ(p.viivat[59].aika, 0);
  EXPECT_EQ(p.viivat[59].x1, 100);

  p.uudestaan(alus[0]);  // 40 slots
  EXPECT_EQ(p.pati[39].aika, 0);
  EXPECT_EQ(p.pati[40].aika, 1000);

  Alus murto = alus[0];
  murto.maxpadit = 42.5;  // a fractional limit reaches one slot further
  p.uudestaan(murto);
  EXPECT_EQ(p.pati[42].aika, 0);
  EXPECT_EQ(p.pati[43].aika, 1000);
}

TEST(PlayerLifeCycle, TakingAShipReallocatesClearedArrays) {
  maailma(1);
  Player& p = laita(0, 5, 0, 0);
  ammus(0, 7, 1, 1);
  p.alkusirpale[4].aika = 9;
  p.laseraani = p.suojapaalla = true;
  p.ampumisjuttu = 50;

  p.asetaAlus(alus[2]);
  EXPECT_EQ(p.pati[7].aika, 0);
  EXPECT_EQ(p.alkusirpale[4].aika, 0);
  EXPECT_FALSE(p.laseraani || p.suojapaalla || p.ampumisjuttu != 0);
  EXPECT_EQ(p.energia, (float)alus[2].energia);
}

TEST(PlayerLifeCycle, RespawnReplacesSoundCopiesInTheSoundList) {
  maailma(1);
  aanellinenKataloogi();
  Player& p = laita(0, 17, 0, 0);
  ASSERT_NE(p.ampumisaani, nullptr);
  EXPECT_NE(p.ampumisaani, alus[17].ampumisaani);  // a copy, with its own channel
  const int ennen = aanilistanPituus();
  p.uudestaan(alus[0]);  // four copies out, three in (ship 0 has no special hit sound)
  EXPECT_EQ(aanilistanPituus(), ennen - 1);
  EXPECT_EQ(p.eosumisaani, nullptr);
  p.asetaAlus(alus[17]);
  EXPECT_EQ(aanilistanPituus(), ennen);
  p.asetaAlus(alus[0]);
  dserver = true;
  alota();
}
