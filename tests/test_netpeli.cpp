// The in-game messages: the host's world comes back the same on a client, a stream cut
// anywhere splits the same, malformed bytes change nothing (both roles in this process).
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "ai.h"
#include "ctf.h"
#include "domination.h"
#include "netpeli.h"
#include "sieni.h"
#include "simscene.h"

#include "varaukset.h"  // the host's per-frame work must allocate nothing

namespace {

using Tavut = std::vector<unsigned char>;
unsigned char puskuri[maxFrameViesti];

void roolit(bool isanta) {
  hostpeli = isanta;
  joinpeli = !isanta;
}

// A world with something of every kind: specials past index 255, a charge ball, a
// latched pod, slime, little men and objectives. The same seed gives the same world.
void isannanMaailma() {
  simscene::maailma(4, 0, 7);
  roolit(true);
  gamemode = 3;
  simscene::laita(0, 16, 50, 40, 30);
  simscene::laita(1, 13, -60, 20, -90);
  simscene::laita(2, 5, 30, -70);
  simscene::laita(3, 7, -100, -50);
  player[2].ihmispelaaja = true;
  Pati& pelletti = player[0].epati[300];
  pelletti = Pati{10, 11, 0.3f, -0.2f, 45, 12, 0, 0, 0, 0, 0, 60, 0};
  Pati& pallo = simscene::ammus(1, 0, -55, 22);
  pallo.energia = 1500;
  Pati& kapseli = player[2].epati[3];
  kapseli = Pati{-99, -48, 0, 0, 120, 2.5f, 0, 0, 0, 0, 0, 90, 4};
  simscene::ammus(3, 2, -90, -45, 0.5f, 0.1f);
  alustaAsteroidit();
  for (Pati& m : pikkumies) m.aika = 0;
  pikkumies[5] = Pati{12, -34, 0, 0, 0, 1, 0, 0, 0, 0, 0, 300, 0};
  player[1].lisaalima();
  player[1].lisaalima();
  aloitaCPisteet();
  cpiste[1].player = 2;
  dpiste[0].tiimi = 3;
  spiste[0] = SPiste{40, -30, false};
}

// What a client must end up holding, each value with the quantisation it travels in.
struct Kuva {
  std::vector<std::string> nimi;
  std::vector<double> arvo, tarkkuus;
  void lisaa(const std::string& n, double v, double t = 0) {
    nimi.push_back(n);
    arvo.push_back(v);
    tarkkuus.push_back(t);
  }
};

Kuva otaKuva() {
  const double paikka = 1.0 / 150 + 1e-5, vauhti = 1.0 / 1000;
  Kuva k;
  for (int i = 0; i < players; ++i) {
    const Player& p = player[i];
    const std::string n = "player " + std::to_string(i);
    k.lisaa(n + " ship", p.alus.numero);
    k.lisaa(n + " x", p.x, paikka);
    k.lisaa(n + " y", p.y, paikka);
    k.lisaa(n + " heading", p.kulma, paikka);
    k.lisaa(n + " energy", p.energia, p.alus.energia / 200);
    k.lisaa(n + " timer", p.kuolema);
    k.lisaa(n + " team", p.tiimi);
    k.lisaa(n + " human", p.ihmispelaaja);
    for (int e = 0; e < 2; ++e)
      for (int s = 0; s < (e ? maksimiepadit : maksimipadit); ++s) {
        const Pati& t = (e ? p.epati : p.pati)[s];
        if (t.aika <= 0) continue;
        const std::string sn = n + (e ? " special " : " shot ") + std::to_string(s);
        k.lisaa(sn + " life", t.aika);
        k.lisaa(sn + " x", t.x, paikka);
        k.lisaa(sn + " y", t.y, paikka);
        k.lisaa(sn + " xv", t.xv, vauhti);
        k.lisaa(sn + " heading", t.kulma, 0.02);
        k.lisaa(sn + " energy", t.energia, 0.07);
        k.lisaa(sn + " counter", t.ampumisviive);
      }
    for (int b = 0; b < limoja; ++b)
      if (p.lima[b].aika > 0) k.lisaa(n + " slime " + std::to_string(b), p.lima[b].x + p.lima[b].aika);
  }
  for (int a = 0; a < asteroideja; ++a) {
    k.lisaa("asteroid " + std::to_string(a) + " x", asteroidi[a].x, 0.01);
    k.lisaa("asteroid " + std::to_string(a) + " yv", asteroidi[a].yv, vauhti);
  }
  for (int m = 0; m < pikkumiehia; ++m)
    if (pikkumies[m].aika > 0) k.lisaa("little man " + std::to_string(m), pikkumies[m].x + pikkumies[m].aika);
  for (int c = 0; c < cpisteita; ++c)
    k.lisaa("flower " + std::to_string(c), cpiste[c].player * 1000 + cpiste[c].x, paikka);
  k.lisaa("domination", dpiste[0].tiimi);
  k.lisaa("mushroom", spiste[0].x * 1000 + spiste[0].y);
  return k;
}

void vertaa(const Kuva& odotettu, const Kuva& saatu) {
  ASSERT_EQ(odotettu.nimi, saatu.nimi);
  for (size_t i = 0; i < odotettu.arvo.size(); ++i)
    EXPECT_NEAR(odotettu.arvo[i], saatu.arvo[i], odotettu.tarkkuus[i]) << odotettu.nimi[i];
}

// Messages split from a stream: kind (0 for a text) and bytes.
struct Viesti {
  uint8_t laji;
  Tavut tavut;
  bool operator==(const Viesti& o) const { return laji == o.laji && tavut == o.tavut; }
};

std::vector<Viesti> pilko(const Tavut& virta, Lahettaja lahettaja, size_t pala = SIZE_MAX) {
  std::vector<Viesti> ulos;
  Tavut vastaanotettu;
  for (size_t alku = 0; alku < virta.size(); alku += pala) {
    const size_t loppu = std::min(virta.size(), alku + pala);
    vastaanotettu.insert(vastaanotettu.end(), virta.begin() + alku, virta.begin() + loppu);
    for (;;) {
      const PeliViesti v = seuraavaPeliViesti(vastaanotettu.data(), (int)vastaanotettu.size(), lahettaja);
      EXPECT_NE(v.tyyppi, PeliViesti::virhe);
      if (v.tyyppi == PeliViesti::virhe) return ulos;
      if (v.tyyppi != PeliViesti::kesken)
        ulos.push_back(
            {v.tyyppi == PeliViesti::kehys ? v.laji : (uint8_t)0, Tavut(v.data, v.data + v.pituus)});
      vastaanotettu.erase(vastaanotettu.begin(), vastaanotettu.begin() + v.kulutettu);
      if (v.tyyppi == PeliViesti::kesken) break;
    }
  }
  return ulos;
}

void lisaa(Tavut& virta, int pituus) { virta.insert(virta.end(), puskuri, puskuri + pituus); }

Tavut resync(uint32_t frame) {
  Tavut virta;
  ResyncKoodaaja r;
  aloitaResync(r, frame);
  while (const int n = seuraavaResyncOsa(r, puskuri, sizeof puskuri)) lisaa(virta, n);
  return virta;
}

// Hands every message to the client; all must be accepted.
void vastaanota(const std::vector<Viesti>& viestit, int asiakkaanFrame) {
  for (const Viesti& v : viestit)
    if (v.laji) {
      ASSERT_TRUE(kasittelePeliMsg(v.laji, v.tavut.data(), (int)v.tavut.size(), asiakkaanFrame));
    }
}

TEST(NetPeli, ResyncRebuildsTheWholeWorldOnAClient) {
  isannanMaailma();
  for (int k = 0; k < 1000; ++k)  // a shotgun's worth of pellets: more than one message holds
    if (k != 300) player[0].epati[k] = Pati{k * 0.1f, -k * 0.1f, 0.2f, 0, 0, 12, 0, 0, 0, 0, 0, 70, 0};
  const Kuva odotettu = otaKuva();
  const Tavut virta = resync(77);
  const std::vector<Viesti> viestit = pilko(virta, Lahettaja::isanta);
  EXPECT_GE(viestit.size(), 4u);  // begin, parts, end

  simscene::maailma(4, 0, 99);  // something else entirely
  for (int i = 0; i < 4; ++i) simscene::laita(i, 20 - i, -i * 10.0f, 5, 0);
  simscene::ammus(0, 7, 1, 1);
  player[3].epati[0].aika = 50;
  pikkumies[9].aika = 40;
  roolit(false);
  aloitaAsiakas();
  vastaanota(viestit, 0);
  EXPECT_EQ(peliVastaanotto.resyncValmis, 77);
  EXPECT_FALSE(peliVastaanotto.resyncKesken);
  vertaa(odotettu, otaKuva());
}

TEST(NetPeli, FrameCarriesEveryKindOfEvent) {
  isannanMaailma();
  aloitaKeraaja();
  player[1].uudestaan(alus[4]);
  simscene::ammus(3, 4, 5, 6, 0.1f, 0);         // born
  player[3].pati[2].aika = 0;                   // gone
  player[0].epati[301] = player[0].epati[300];  // born and gone past index 255
  player[0].epati[300].aika = 0;
  playerrajahtaa[2] = true;
  prajahdys[2][0] = 31;
  prajahdys[2][1] = -69;
  asteroidiuudestaan[6] = true;
  asteroidi[6].x = 170;
  arajahdys[0] = 3;
  arajahdys[1] = 4;
  pikkumies[5].aika = 0;
  pikkumies[7] = Pati{1, 2, 0, 0, 0, 1, 0, 0, 0, 0, 0, 100, 0};
  player[2].lisaalima();
  cpiste[0].player = 3;
  dpiste[0].tiimi = 1;
  spiste[0] = SPiste{-20, 60, true};
  keraaTapahtumat();
  ilmoitaOhjaus(2, false);
  player[2].ihmispelaaja = false;
  pyydaAlusvalinta(3, 1234);
  const int pituus = koodaaFrame(500, puskuri, sizeof puskuri);
  const Kuva odotettu = otaKuva();
  // The ships did not move: the events alone must rebuild the world.
  unsigned char tapahtumat[maxFrameViesti];
  const int lyhyempi = ilmanCoordseja(puskuri, pituus, tapahtumat);
  EXPECT_EQ(lyhyempi, pituus - 4 * coordkoko);

  isannanMaailma();  // the client holds the world as it was before the events
  roolit(false);
  aloitaAsiakas();
  vastaanota(pilko(Tavut(tapahtumat, tapahtumat + lyhyempi), Lahettaja::isanta), 600);
  EXPECT_EQ(peliVastaanotto.myohassa, 1);  // due already: applied at once
  vertaa(odotettu, otaKuva());
  EXPECT_TRUE(playerrajahtaa[2]);
  EXPECT_NEAR(prajahdys[2][0], 31, 0.01);
  EXPECT_TRUE(asteroidirajahtaa);  // the world step blows up one asteroid a frame
  EXPECT_NEAR(arajahdys[1], 4, 1e-6);
  EXPECT_EQ(alusvalintaPyynto[3], 1234);
}

TEST(NetPeli, CoordsGiveTheClientWhatItsWorldStepNeeds) {
  auto kolmeAlusta = [] {  // a credit game
    simscene::maailma(3);
    pistepeli = true;
    for (int i = 0; i < 3; ++i) simscene::laita(i, i + 1, i * 10.0f, 10).pisteet = 50;
  };
  kolmeAlusta();
  roolit(true);
  player[0].energia = 0.01f;  // alive, with less than a byte of energy
  aloitaKeraaja();
  const Tavut eka(puskuri, puskuri + koodaaFrame(10, puskuri, sizeof puskuri));
  player[0].x = 6;
  player[2].pisteet = -1;  // out: no longer in play, but the clients must hear of it
  const Tavut toka(puskuri, puskuri + koodaaFrame(13, puskuri, sizeof puskuri));

  kolmeAlusta();
  roolit(false);
  aloitaAsiakas();
  player[1].kuolema = 40;  // the client last saw it waiting; the host has revived it since
  vastaanota(pilko(eka, Lahettaja::isanta), 10);
  EXPECT_GT(player[0].energia, 0);  // at zero the client's step would blow it up
  EXPECT_EQ(player[1].kuolema, 1);  // so that the step still bursts the swirl into the ship
  vastaanota(pilko(toka, Lahettaja::isanta), 13);
  EXPECT_NEAR(player[0].xvauhti, 2, 0.01);  // six units in three frames
  EXPECT_LT(player[2].pisteet, 0);
  calculateFrame(14);
  EXPECT_EQ(player[0].kuolema, 0);
  EXPECT_EQ(player[1].kuolema, 0);
}

// A headless match of pilots, with the host loop's respawn and a FRAME every second
// frame stood in for, recorded as the host sends it.
TEST(NetPeli, RecordedMatchSplitsTheSameWhereverCut) {
  simscene::maailma(maxPlayers, 1, 5);
  gamemode = 2;
  sets.ai = aiTasoja - 1;
  sets.aikohteet = true;
  aiAlusta();
  simscene::rengas(5);
  roolit(true);
  aloitaKeraaja();
  Tavut virta = resync(0);
  for (int f = 1; f <= 600; ++f) {
    calculateFrame(f);
    for (int i = 0; i < maxPlayers; ++i) {
      if (!playeruudestaan[i]) continue;
      player[i].uudestaan(alus[(f + i) % alustyyppeja]);
      player[i].kuolema = 199;
      playeruudestaan[i] = 0;
    }
    laskeVaraukset = true;
    keraaTapahtumat();
    const int pituus = f % 2 ? 0 : koodaaFrame(f, puskuri, sizeof puskuri);
    laskeVaraukset = false;
    if (pituus) lisaa(virta, pituus);
  }
  const char voitto[] = "victoryo\x02;";
  virta.insert(virta.end(), voitto, voitto + sizeof voitto);
  EXPECT_EQ(varauksia, 0);

  const std::vector<Viesti> kokonaan = pilko(virta, Lahettaja::isanta);
  EXPECT_EQ(kokonaan.front().laji, lajiResyncAlku);
  EXPECT_EQ(kokonaan.back().laji, 0);
  EXPECT_EQ(kokonaan.back().tavut.size(), 11u);
  int frameja = 0;
  for (const Viesti& v : kokonaan) {
    frameja += v.laji == lajiFrame;
    if (v.laji) {
      EXPECT_TRUE(tarkistaPeliMsg(v.laji, v.tavut.data(), (int)v.tavut.size()));
    }
  }
  EXPECT_EQ(frameja, 300);
  for (size_t pala : {1, 2, 3, 5, 13, 100, 1499})
    EXPECT_TRUE(pilko(virta, Lahettaja::isanta, pala) == kokonaan) << pala;
}

TEST(NetPeli, MalformedMessagesAreRefusedWithNothingApplied) {
  isannanMaailma();
  aloitaKeraaja();
  simscene::ammus(3, 4, 5, 6);
  keraaTapahtumat();
  const int pituus = koodaaFrame(9, puskuri, sizeof puskuri);
  const Tavut hyva(puskuri + peliOtsake, puskuri + pituus);
  roolit(false);
  aloitaAsiakas();
  player[0].x = 123;
  const Kuva ennen = otaKuva();
  auto hylkaa = [&](const Tavut& b, const char* miksi) {
    EXPECT_FALSE(kasittelePeliMsg(lajiFrame, b.data(), (int)b.size(), 100)) << miksi;
  };
  // Cut within the coords or within the last record. (A cut between two sections
  // leaves a shorter message that is whole: the frame header is what delimits it.)
  const size_t osiot = 6 + 4 * coordkoko;
  for (size_t n = 0; n < osiot; ++n) hylkaa(Tavut(hyva.begin(), hyva.begin() + n), "truncated");
  hylkaa(Tavut(hyva.begin(), hyva.end() - 1), "truncated");
  Tavut b;
  for (const Tavut& huono : std::vector<Tavut>{{osioRajahdys},                  // a section header cut short
                                               {osioPatiKuoli, 0, 0xff, 2, 3},  // a count of -1: 255 records
                                               {osioRajahdys, 0, 1, 9, 0, 0, 0, 0},  // slot past the players
                                               {osioSyntyma, 0, 1, 1, 24, 0, 0, 0, 0, 0, 0},  // ship 24
                                               {osioAsteroidi, 0, 1, 20, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
                                               {osioValtaus, 0, 1, 0, 16},    // team 16
                                               {osioPatiKuoli, 40, 1, 0, 1},  // index 10240
                                               {osioOhjaus, 1, 1, 0, 1},      // param not used
                                               {osioja, 0, 0}}) {
    b = Tavut(hyva.begin(), hyva.begin() + osiot);
    b.insert(b.end(), huono.begin(), huono.end());
    hylkaa(b, "malformed section");
  }
  b = hyva;
  b[4] = 0x1f;  // coords of slot 4, of four players
  hylkaa(b, "coords mask");
  EXPECT_FALSE(kasittelePeliMsg(lajiNapit, hyva.data(), (int)hyva.size(), 100)) << "a client's kind";
  vertaa(ennen, otaKuva());
  EXPECT_EQ(peliVastaanotto.uusinFrame, -1);

  const std::pair<Tavut, Lahettaja> virheet[] = {
      {{lajiFrame, 0x01, 0x40}, Lahettaja::isanta},  // 16 KiB + 1
      {{lajiNapit, 65, 0}, Lahettaja::asiakas},
      {{lajiNapit, 65, 0}, Lahettaja::isanta},
      {Tavut{'v', 'i', 'c', 't', 'o', 'r', 'x'}, Lahettaja::isanta}};
  for (const auto& [tavut, lahettaja] : virheet)
    EXPECT_EQ(seuraavaPeliViesti(tavut.data(), (int)tavut.size(), lahettaja).tyyppi, PeliViesti::virhe);
  const char myohainen[] = "alku huomattu";
  const PeliViesti v = seuraavaPeliViesti((const unsigned char*)myohainen, 14, Lahettaja::asiakas);
  EXPECT_EQ(v.tyyppi, PeliViesti::teksti);
  EXPECT_EQ(v.kulutettu, 13);
}

TEST(NetPeli, ButtonsAndChoicesReachOnlyTheSlotsTheConnectionOwns) {
  simscene::maailma(4);
  for (int i = 0; i < 4; ++i) simscene::laita(i, 0, 0, 0);
  roolit(true);
  const int omistaja[maxPlayers] = {0, 2, 3, 2};
  const SlotinNapit napit[] = {{1, nappiTuli | nappiVasen}, {2, nappiKaasu}, {3, nappiPakki | nappiErikois}};
  const int n = koodaaNapit(puskuri, sizeof puskuri, 7, 4096, 300, napit, 3);
  const PeliViesti v = seuraavaPeliViesti(puskuri, n, Lahettaja::asiakas);
  ASSERT_EQ(v.tyyppi, PeliViesti::kehys);
  EXPECT_EQ(kasitteleAsiakkaanMsg(2, v.laji, v.data, v.pituus, omistaja), AsiakkaanTulos::ok);
  EXPECT_TRUE(player[1].pfire && player[1].pleft && !player[1].pright);
  EXPECT_FALSE(player[2].pylos);  // connection 3's
  EXPECT_TRUE(player[3].palas && player[3].pease && !player[3].pfire);
  EXPECT_EQ(asiakasYhteys[2].kuitattu, 4096u);
  EXPECT_EQ(asiakasYhteys[2].nahtyFrame, 300u);

  auto kasittele = [&](int pituus) {
    return kasitteleAsiakkaanMsg(2, puskuri[0], puskuri + peliOtsake, pituus - peliOtsake, omistaja);
  };
  alusvalinta[1] = alusvalinta[2] = -1;
  for (int slot : {1, 2})
    EXPECT_EQ(kasittele(koodaaValinta(puskuri, sizeof puskuri, slot, 11)), AsiakkaanTulos::ok);
  EXPECT_EQ(alusvalinta[1], 11);
  EXPECT_EQ(alusvalinta[2], -1);
  EXPECT_EQ(kasittele(koodaaValinta(puskuri, sizeof puskuri, 1, alustyyppeja)), AsiakkaanTulos::virhe);
  EXPECT_EQ(kasittele(koodaaLahto(puskuri, sizeof puskuri)), AsiakkaanTulos::lahtee);
  const unsigned char vieras[] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 16, 1};  // slot 16
  EXPECT_EQ(kasitteleAsiakkaanMsg(2, lajiNapit, vieras, sizeof vieras, omistaja), AsiakkaanTulos::virhe);
  EXPECT_EQ(kasitteleAsiakkaanMsg(2, lajiFrame, vieras, sizeof vieras, omistaja), AsiakkaanTulos::virhe);
}

}  // namespace
