// Network matches over 127.0.0.1, all headless. The test process hosts and forked
// children join through the lobby. Both sides record the world at the host's FRAMEs:
// the client's ships and live shots must be the host's at the same frame, and its
// victory message and scores the host's. Then clients that lag, stall, stop or die
// under a running host; and, in this one process, the host's window, queue, RESYNC
// and time-outs against a peer that reads nothing until told.
#include <SDL/SDL.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "Main.h"
#include "Sets.h"
#include "localgame.h"
#include "net.h"
#include "netav.h"
#include "netpeli.h"
#include "peliloppu.h"
#include "scene.h"
#include "simscene.h"
#include "testutil.h"
#include "verkkoapu.h"

namespace {

using namespace verkkoapu;

// ---- Records ---------------------------------------------------------------------------

// The world at one frame: each ship's place, and its live shots as (player, array, slot).
struct Kuva {
  int frame = 0;
  std::vector<float> paikat;
  std::vector<int> laukaukset;
};

Kuva kuvaa(int f) {
  Kuva k;
  k.frame = f;
  for (int i = 0; i < players; ++i) {
    const Player& p = player[i];
    k.paikat.insert(k.paikat.end(), {p.x, p.y});
    for (int e = 0; e < 2; ++e)
      for (int s = 0; s < (e ? maksimiepadit : maksimipadit); ++s)
        if ((e ? p.epati : p.pati)[s].aika > 0) k.laukaukset.push_back((i * 2 + e) * 100000 + s);
  }
  return k;
}

// What a client takes home: its pictures, the victory message it got, the scores it
// then showed, and why it left when it left against its will.
struct Tulos {
  std::vector<Kuva> kuvat;
  std::string voitto;
  std::vector<int> pisteet, kierrokset;
  std::string syy;
  int viive = 0;
};

template <class T>
void kirjoitaVektori(FILE* f, const std::vector<T>& v) {
  const int n = (int)v.size();
  std::fwrite(&n, sizeof n, 1, f);
  if (n > 0) std::fwrite(v.data(), sizeof(T), v.size(), f);
}

template <class T>
bool lueVektori(FILE* f, std::vector<T>& v) {
  int n = 0;
  if (std::fread(&n, sizeof n, 1, f) != 1 || n < 0 || n > 10000000) return false;
  v.resize((size_t)n);
  return n == 0 || std::fread(v.data(), sizeof(T), v.size(), f) == v.size();
}

void tallenna(const std::string& polku, const Tulos& t) {
  FILE* f = std::fopen(polku.c_str(), "wb");
  const int kuvia = (int)t.kuvat.size();
  std::fwrite(&kuvia, sizeof kuvia, 1, f);
  for (const Kuva& k : t.kuvat) {
    std::fwrite(&k.frame, sizeof k.frame, 1, f);
    kirjoitaVektori(f, k.paikat);
    kirjoitaVektori(f, k.laukaukset);
  }
  kirjoitaVektori(f, std::vector<char>(t.voitto.begin(), t.voitto.end()));
  kirjoitaVektori(f, t.pisteet);
  kirjoitaVektori(f, t.kierrokset);
  kirjoitaVektori(f, std::vector<char>(t.syy.begin(), t.syy.end()));
  std::fwrite(&t.viive, sizeof t.viive, 1, f);
  std::fclose(f);
}

Tulos lataa(const std::string& polku) {
  Tulos t;
  FILE* f = std::fopen(polku.c_str(), "rb");
  if (!f) return t;
  int kuvia = 0;
  std::vector<char> voitto, syy;
  bool ok = std::fread(&kuvia, sizeof kuvia, 1, f) == 1;
  for (int n = 0; ok && n < kuvia; ++n) {
    Kuva k;
    ok = std::fread(&k.frame, sizeof k.frame, 1, f) == 1 && lueVektori(f, k.paikat) &&
         lueVektori(f, k.laukaukset);
    t.kuvat.push_back(k);
  }
  ok = ok && lueVektori(f, voitto) && lueVektori(f, t.pisteet) && lueVektori(f, t.kierrokset) &&
       lueVektori(f, syy);
  ok = ok && std::fread(&t.viive, sizeof t.viive, 1, f) == 1;
  std::fclose(f);
  t.voitto.assign(voitto.begin(), voitto.end());
  t.syy.assign(syy.begin(), syy.end());
  return t;
}

std::vector<int> pisteet() {
  std::vector<int> v;
  for (int i = 0; i < players; ++i) v.push_back((int)player[i].pisteet);
  return v;
}

std::vector<int> kierrokset() { return std::vector<int>(kierrosaikaMs, kierrosaikaMs + players); }

// The last victory message in a byte stream, as long as the message says it is.
std::string voittoviesti(const std::string& virta) {
  const size_t alku = virta.rfind("victory");
  if (alku == std::string::npos || alku + 10 > virta.size()) return "";
  const size_t pituus = virta[alku + 7] == 'o' ? 11 : 12 + 4 * (unsigned char)virta[alku + 9];
  return virta.substr(alku, pituus);
}

// ---- Both sides ------------------------------------------------------------------------

std::string vastaanotetut;                      // every byte this client received
std::map<TCPsocket, std::string> lahetetyt;     // every byte the host sent, by socket

int tallentavaVastaanotto(TCPsocket s, void* data, int enintaan) {
  const int n = SDLNet_TCP_Recv(s, data, enintaan);
  if (n > 0) vastaanotetut.append((const char*)data, (size_t)n);
  return n;
}

int tallentavaLahetys(TCPsocket s, const void* data, int pituus) {
  const int n = SDLNet_TCP_Send(s, data, pituus);
  if (n > 0) lahetetyt[s].append((const char*)data, (size_t)n);
  return n;
}

void eiKuvaa(int) {}
void eiAulaa(void (*)(int), int) {
  if (gamequited) entterpressed = true;  // an error screen closes at once
}

// ---- Client ----------------------------------------------------------------------------

Tulos asiakkaanTulos;

int omaPelaaja() {
  for (int s = 0; s < 16; ++s)
    if (omatPaikat >> s & 1u) return ottelunPelaaja[s];
  return -1;
}

bool kaasuPohjassa = false;

// Records each FRAME's frame that arrived before the client's world reached it, and
// flies its ship: thrust, turns and fire that change now and then.
void asiakkaanAskel(int f) {
  if (f % frameVali == 0 && peliVastaanotto.uusinFrame >= f) asiakkaanTulos.kuvat.push_back(kuvaa(f));
  const int oma = omaPelaaja();
  if (oma < 0) return;
  Player& p = player[oma];
  p.pylos = kaasuPohjassa || f / 40 % 3 != 0;
  p.pleft = f / 70 % 2 == 0;
  p.pfire = f / 15 % 2 == 0;
}

// The choice screen: the first entry, whatever the flying keys did to the cursor meanwhile.
void valitseHeti(int pelaaja, int, int) {
  Player& p = player[pelaaja];
  p.pylos = p.palas = p.pleft = p.pright = false;
  p.pfire = true;
}

void asiakkaanVoitto() {
  asiakkaanTulos.pisteet = pisteet();
  asiakkaanTulos.kierrokset = kierrokset();
}

// A client in a child process: joins as `nimi`, plays the match through and leaves its
// record in `polku`. `valmistele` may slow its transport first.
int pelaaAsiakkaana(const char* nimi, const std::string& polku, void (*valmistele)()) {
  asiakkaanTulos = Tulos{};
  vastaanotetut.clear();
  tcpVastaanotto = tallentavaVastaanotto;
  if (valmistele) valmistele();
  aulanPiirto = eiAulaa;
  pelinPiirto = eiKuvaa;
  alusvalinnanPiirto = valitseHeti;
  verkkoVoitonSilmukka = asiakkaanVoitto;
  verkkoAskeleenJalkeen = asiakkaanAskel;
  std::snprintf(sets.nick[0], sizeof sets.nick[0], "%s", nimi);
  joinaavia = 1;
  if (!yhdistaHostiin("127.0.0.1")) return 10;
  if (!odota([] { return omatPaikat != 0; }, kuuntelejoin, 15)) return 11;
  joinwaitforstart();
  asiakkaanTulos.voitto = voittoviesti(vastaanotetut);
  if (gamequited) asiakkaanTulos.syy = eroSyy;
  asiakkaanTulos.viive = verkkoLaskurit.viive;
  tallenna(polku, asiakkaanTulos);
  return 0;
}

// ---- Host ------------------------------------------------------------------------------

class Verkkopeli : public ::testing::Test {
protected:
  void SetUp() override {
    SDL_Init(SDL_INIT_TIMER);
    simscene::maailma(2);
    sets.ai = 2;
    starttime = (int)SDL_GetTicks();
    aulanPiirto = eiAulaa;
    pelinPiirto = eiKuvaa;
    verkkoVoitonSilmukka = isannanVoitto;
    verkkoAskeleenJalkeen = isannanAskel;
    tcpLahetys = tallentavaLahetys;
    lahetetyt.clear();
    kuvat.clear();
    loppuPisteet.clear();
    ajastus = nullptr;
    verkkoportti = vapaaPortti();
    hostpeli = true;
    alustaAula();
    pelaajiasoketista[0] = 0;  // nobody plays on the host: pilots and the clients
  }
  void TearDown() override {
    for (int c = 0; c < yhteyksia; ++c) disconnect(c);
    aulanPiirto = [](void (*ruutu)(int), int kohta) { ruutu(kohta); };
    pelinPiirto = drawFrame;
    verkkoVoitonSilmukka = netVictoryLoop;
    verkkoAskeleenJalkeen = nullptr;
    tcpLahetys = SDLNet_TCP_Send;
    hostpeli = joinpeli = false;
    calculatefps = 100;
  }

  // Slots in lobby order: 'c' a computer pilot, 'o' open for a client, the rest closed.
  void aula(const std::string& paikat, int tila, int raja, float fps) {
    for (int s = 0; s < 16; ++s) {
      const char p = s < (int)paikat.size() ? paikat[s] : '-';
      mpstatus[s] = p == 'c' ? 2 : p == 'o' ? 0 : 1;
      mptiimi[s] = s % 3;
    }
    gamemode = tila;
    mpcredits = raja;
    calculatefps = fps;
    addsocket();
  }

  // Hosts once the `asiakkaita` clients are in: the match runs until `ajastus` ends it.
  void isannoi(int asiakkaita) {
    ASSERT_TRUE(odota(
        [&] {
          int n = 0;
          for (int s = 0; s < 16; ++s) n += mpstatus[s] == 3;
          return n == asiakkaita;
        },
        aulanVerkko, 20));
    hostStart();
  }

  static void isannanAskel(int f) {
    if (f % frameVali == 0 || peliloppu()) kuvat.push_back(kuvaa(f));
    if (ajastus) ajastus(f);
  }
  static void isannanVoitto() {
    loppuPisteet = pisteet();
    loppuKierrokset = kierrokset();
  }

  // From this frame on, the match ends at the next end check: objective modes by a score
  // at the limit, death matches by all but the first player's team out.
  static void paataOttelu() {
    for (int i = 0; i < players; ++i) {
      if (gamemode >= 2) player[0].pisteet = (float)mpcredits;
      else if (player[i].tiimi != player[0].tiimi) player[i].pisteet = -1;
    }
  }

  // The host's picture at the client's frame, or null.
  static const Kuva* isannanKuva(int f) {
    const auto aiempi = [](const Kuva& k, int x) { return k.frame < x; };
    const auto it = std::lower_bound(kuvat.begin(), kuvat.end(), f, aiempi);
    return it != kuvat.end() && it->frame == f ? &*it : nullptr;
  }

  // Every picture the client took matches the host's of the same frame (but those from
  // `ohitaAlku` to `ohitaLoppu`, which may lack coords); returns how many were compared.
  static int vertaa(const Tulos& t, int ohitaAlku = 0, int ohitaLoppu = 0) {
    int verrattu = 0;
    for (const Kuva& k : t.kuvat) {
      const Kuva* h = isannanKuva(k.frame);
      if (!h || (k.frame >= ohitaAlku && k.frame < ohitaLoppu)) continue;
      ++verrattu;
      EXPECT_EQ(k.laukaukset, h->laukaukset) << "frame " << k.frame;
      EXPECT_EQ(k.paikat.size(), h->paikat.size());
      for (size_t n = 0; n < std::min(k.paikat.size(), h->paikat.size()); ++n)
        EXPECT_NEAR(k.paikat[n], h->paikat[n], 1.0 / 150 + 1e-4) << "frame " << k.frame << " slot " << n / 2;
      if (::testing::Test::HasFailure()) break;  // one frame's differences say enough
    }
    return verrattu;
  }

  static std::vector<Kuva> kuvat;
  static std::vector<int> loppuPisteet, loppuKierrokset;
  static void (*ajastus)(int f);
  static int alku;
  testutil::TempDir kansio;
};

std::vector<Kuva> Verkkopeli::kuvat;
std::vector<int> Verkkopeli::loppuPisteet, Verkkopeli::loppuKierrokset;
void (*Verkkopeli::ajastus)(int) = nullptr;
int Verkkopeli::alku = -1;

// ---- One match in every mode ------------------------------------------------------------

class Ottelu : public Verkkopeli, public ::testing::WithParamInterface<int> {};

TEST_P(Ottelu, TheClientSeesTheHostsWorldVictoryAndScores) {
  const int tila = GetParam();
  aula("cccoc", tila, tila <= 1 ? 150 : 30000, 200);
  alku = -1;
  ajastus = [](int f) {
    if (alku < 0) alku = f;
    if (f - alku >= 1200) paataOttelu();
  };
  const std::string polku = kansio.file("asiakas");
  const pid_t lapsi = lapsena([&] { return pelaaAsiakkaana("eta", polku, nullptr); });
  isannoi(1);
  ASSERT_EQ(odotaLasta(lapsi, 30), 0);
  const Tulos t = lataa(polku);

  EXPECT_EQ(t.syy, "");
  EXPECT_GT(vertaa(t), 300);
  const int etainen = ottelunPelaaja[3];
  if (tila == 0) {
    EXPECT_EQ(player[etainen].alus.numero, 0);  // its own choice, sent as CHOICE
  }
  // Round trips: the host measures the client's and has none for its pilots; the client
  // shows its own slot as local and every other (all flown on the host) at its own.
  for (int i = 0; i < (int)t.kierrokset.size(); ++i) {
    EXPECT_EQ(loppuKierrokset[i] >= 0, i == etainen) << i;
    EXPECT_EQ(t.kierrokset[i] >= 0, i != etainen) << i;
  }
  EXPECT_EQ(t.kierrokset.size(), loppuKierrokset.size());
  std::string lahti;
  for (const auto& [s, tavut] : lahetetyt) lahti += voittoviesti(tavut);
  EXPECT_EQ(t.voitto.substr(0, 8), tila <= 1 ? "victoryd" : "victoryo");
  EXPECT_EQ(t.voitto, lahti);
  EXPECT_EQ(t.pisteet, loppuPisteet);
}

INSTANTIATE_TEST_SUITE_P(EveryMode, Ottelu, ::testing::Range(0, 5));

// ---- Clients that lag, stop and die under a running host ---------------------------------

// What the client's transport receives is held back: 30 ms, up to 20 ms more at random,
// and everything that arrives in a spike (every third second, 200-500 ms) until it ends.
struct Pala {
  Uint32 aika;
  std::string tavut;
};
std::vector<Pala> viivastetyt;
bool loppui = false;

Uint32 luovutusAika(Uint32 nyt) {
  Uint32 aika = nyt + 30 + (Uint32)(rand() % 21);
  const Uint32 jakso = nyt / 3000, piikki = 200 + jakso * 137 % 301;
  if (nyt % 3000 < piikki) aika = std::max(aika, jakso * 3000 + piikki);
  return viivastetyt.empty() ? aika : std::max(aika, viivastetyt.back().aika);
}

int viivastava(TCPsocket s, void* data, int enintaan) {
  char b[65536];
  int n;
  while ((n = tallentavaVastaanotto(s, b, sizeof b)) > 0)
    viivastetyt.push_back(Pala{luovutusAika(SDL_GetTicks()), std::string(b, (size_t)n)});
  loppui = loppui || n == 0;
  if (!viivastetyt.empty() && viivastetyt.front().aika <= SDL_GetTicks()) {
    Pala& p = viivastetyt.front();
    const int m = std::min(enintaan, (int)p.tavut.size());
    std::memcpy(data, p.tavut.data(), (size_t)m);
    p.tavut.erase(0, (size_t)m);
    if (p.tavut.empty()) viivastetyt.erase(viivastetyt.begin());
    return m;
  }
  if (viivastetyt.empty() && loppui) return 0;
  errno = EAGAIN;
  return -1;
}

void viivasta() { tcpVastaanotto = viivastava; }
void pidaKaasu() { kaasuPohjassa = true; }

pid_t pysaytetyt[2], tapettu;
int pelaajaNimelta(const char* nimi) {
  for (int s = 0; s < 16; ++s)
    if (mpstatus[s] == 3 && std::strcmp(netnick[s], nimi) == 0) return ottelunPelaaja[s];
  return -1;
}

TEST_F(Verkkopeli, LaggingStoppedAndKilledClientsNeverHoldUpTheHost) {
  aula("ccoooo", 2, 30000, 100);
  const std::string seis1 = kansio.file("seis1"), seis8 = kansio.file("seis8"), viive = kansio.file("viive");
  pysaytetyt[0] = lapsena([&] { return pelaaAsiakkaana("seis1", seis1, pidaKaasu); });
  pysaytetyt[1] = lapsena([&] { return pelaaAsiakkaana("seis8", seis8, nullptr); });
  tapettu = lapsena([&] { return pelaaAsiakkaana("tapettu", kansio.file("tapettu"), nullptr); });
  const pid_t viivastetty = lapsena([&] { return pelaaAsiakkaana("viive", viive, viivasta); });
  // Two seconds in, the first stops for one second and the second for eight; the third
  // is killed. Each frame the host notes its view of them.
  static int a, b, c, kaasuEnnen, kaasuSeis, bPilotiksi, cPilotiksi;
  a = b = c = -1;
  kaasuEnnen = kaasuSeis = bPilotiksi = cPilotiksi = -1;
  alku = -1;
  ajastus = [](int f) {
    if (alku < 0) {
      alku = f;
      a = pelaajaNimelta("seis1");
      b = pelaajaNimelta("seis8");
      c = pelaajaNimelta("tapettu");
    }
    const int t = f - alku;
    if (t == 190) kaasuEnnen = player[a].pylos;
    if (t == 200) {
      for (pid_t p : pysaytetyt) kill(p, SIGSTOP);
      kill(tapettu, SIGKILL);
    }
    if (t == 250) kaasuSeis = player[a].pylos;
    if (t == 300) kill(pysaytetyt[0], SIGCONT);
    if (bPilotiksi < 0 && !player[b].ihmispelaaja) bPilotiksi = t - 200;
    if (cPilotiksi < 0 && !player[c].ihmispelaaja) cPilotiksi = t - 200;
    if (t == 1000) kill(pysaytetyt[1], SIGCONT);
    if (t >= 1100) paataOttelu();
  };
  isannoi(4);
  EXPECT_EQ(odotaLasta(tapettu, 5), -1);
  ASSERT_EQ(odotaLasta(pysaytetyt[0], 20), 0);
  ASSERT_EQ(odotaLasta(pysaytetyt[1], 20), 0);
  ASSERT_EQ(odotaLasta(viivastetty, 20), 0);

  EXPECT_EQ(verkkoLaskurit.pudotetutFramet, 0);  // never held up
  EXPECT_EQ(kaasuEnnen, 1);
  EXPECT_EQ(kaasuSeis, 0);  // a silent client's buttons let go
  EXPECT_GE(cPilotiksi, 0);
  EXPECT_LE(cPilotiksi, 100);  // a killed client's ship a pilot's within a second
  EXPECT_GE(bPilotiksi, 480);  // five seconds without progress
  EXPECT_LT(bPilotiksi, 800);
  std::string lahti;
  for (const auto& [s, tavut] : lahetetyt) lahti = std::max(lahti, voittoviesti(tavut));
  for (const std::string& polku : {seis1, viive}) {
    const Tulos t = lataa(polku);
    EXPECT_EQ(t.syy, "") << polku;
    EXPECT_EQ(t.voitto, lahti) << polku;
    EXPECT_EQ(t.pisteet, loppuPisteet) << polku;
    // While it was stopped and catching up its FRAMEs may have come without coords.
    EXPECT_GT(vertaa(t, alku + 200, alku + 500), 200) << polku;
  }
  EXPECT_EQ(lataa(seis8).syy, "the connection to the host was lost");
  const int kasvanut = lataa(viive).viive;  // late FRAMEs made room for themselves
  EXPECT_GT(kasvanut, frameVali + 1);
  EXPECT_LE(kasvanut, 20);
}

// ---- A peer that reads only when told, in this process --------------------------------

// A client of bare sockets: it reads when asked and says what it likes in BUTTONS.
struct Raaka {
  TCPsocket s = nullptr;
  uint32_t luettu = 0;  // bytes read since connecting
  std::string virta;    // what was read after `kirjaa` was set
  bool kirjaa = false;
  uint16_t jarjestys = 0;

  explicit Raaka(const char* nimi) {
    IPaddress ip;
    SDLNet_ResolveHost(&ip, "127.0.0.1", (Uint16)verkkoportti);
    s = SDLNet_TCP_Open(&ip);
    const std::string b = std::string("pelaajia ") + '\x01' + (char)std::strlen(nimi) + nimi + '\0';
    if (s) SDLNet_TCP_Send(s, b.data(), (int)b.size());
  }
  ~Raaka() {
    if (s) SDLNet_TCP_Close(s);
  }
  void lue() {
    SDLNet_SocketSet joukko = SDLNet_AllocSocketSet(1);
    SDLNet_TCP_AddSocket(joukko, s);
    char b[65536];
    while (SDLNet_CheckSockets(joukko, 0) > 0) {
      const int n = SDLNet_TCP_Recv(s, b, sizeof b);
      if (n <= 0) break;
      luettu += (uint32_t)n;
      if (kirjaa) virta.append(b, (size_t)n);
    }
    SDLNet_FreeSocketSet(joukko);
  }
  void napit(int pelaaja, uint8_t napit, uint32_t kuittaus) {
    unsigned char b[64];
    const SlotinNapit n{(uint8_t)pelaaja, napit};
    SDLNet_TCP_Send(s, b, koodaaNapit(b, sizeof b, ++jarjestys, kuittaus, 0, &n, 1));
  }
};

int viesteja(const std::string& virta, uint8_t laji) {
  int n = 0;
  const auto* p = (const unsigned char*)virta.data();
  for (int kohta = 0; kohta < (int)virta.size();) {
    const PeliViesti v = seuraavaPeliViesti(p + kohta, (int)virta.size() - kohta, Lahettaja::isanta);
    if (v.tyyppi == PeliViesti::virhe || v.tyyppi == PeliViesti::kesken) break;
    kohta += v.kulutettu;
    n += v.tyyppi == PeliViesti::kehys && v.laji == laji;
  }
  return n;
}

TEST_F(Verkkopeli, AStalledPeerGetsLessThenWaitsThenIsResyncedAndDroppedWhenItStopsForFiveSeconds) {
  testutil::FakeClock kello;
  starttime = 0;
  aula("ccccccccccccccco", 2, 30000, 100);
  Raaka r("hidas");
  ASSERT_TRUE(r.s);
  ASSERT_TRUE(odota([] { return mpstatus[15] == 3; }, aulanVerkko, 10));
  rakennaVerkkoOttelu();
  const int hidas = ottelunPelaaja[15];
  // Fans of 18 shots from every other ship, fire held: plenty to send.
  for (int i = 0; i < players; ++i) {
    if (i == hidas) continue;
    simscene::laita(i, 21, 100 * std::cos(i * 0.4f), 100 * std::sin(i * 0.4f), i * 23.0f);
    player[i].ihmispelaaja = true;
  }
  r.lue();  // the lobby's bytes: received
  aloitaIsannanOttelu();
  // Ten fake milliseconds a pass, a frame each; `peer` runs every tenth pass.
  auto kierrokset = [&](int n, const std::function<bool()>& valmis, const std::function<void()>& peer) {
    for (int k = 0; k < n && !valmis(); ++k) {
      testutil::FakeClock::now += 10;
      for (int i = 0; i < players; ++i) {
        player[i].energia = (float)player[i].alus.energia;  // nobody dies, nobody runs dry:
        player[i].fuel = (float)player[i].alus.fuel;        // the fire goes on
        player[i].pfire = i != hidas || player[i].pfire;
      }
      verkkoTausta();
      if (k % 10 == 9 && peer) peer();
    }
    return valmis();
  };
  const uint32_t alussa = r.luettu;
  // It reads nothing: past 8 KiB in flight the FRAMEs come without coords, past 16 KiB they wait.
  const auto eiKuittaa = [&] { r.napit(hidas, 0, alussa); };
  EXPECT_TRUE(kierrokset(400, [] { return verkkoLaskurit.jonotetut > 0; }, eiKuittaa));
  EXPECT_GT(verkkoLaskurit.lyhennetyt, 0);
  // It reads, but owns up to a trickle only: the waiting FRAMEs outgrow their room and go.
  uint32_t kuitattu = alussa;
  EXPECT_TRUE(kierrokset(3000, [] { return verkkoLaskurit.hylatyt > 0; }, [&] {
    r.lue();
    r.napit(hidas, 0, kuitattu += 50);
  }));
  EXPECT_EQ(verkkoLaskurit.resynct, 0);
  // It owns up to all it read: the whole world follows.
  r.kirjaa = true;
  r.lue();
  r.napit(hidas, nappiTuli, r.luettu);
  EXPECT_TRUE(kierrokset(20, [] { return verkkoLaskurit.resynct == 1; }, nullptr));
  r.lue();
  EXPECT_EQ(viesteja(r.virta, lajiResyncAlku), 1);
  EXPECT_TRUE(player[hidas].pfire);
  // Silent for 250 ms: its buttons are let go. Five seconds more without progress: dropped,
  // and its ship is a pilot's.
  EXPECT_TRUE(kierrokset(30, [&] { return !player[hidas].pfire; }, nullptr));
  EXPECT_TRUE(player[hidas].ihmispelaaja);
  EXPECT_FALSE(kierrokset(400, [] { return tcpsoketit[1] == nullptr; }, nullptr));
  EXPECT_TRUE(kierrokset(150, [] { return tcpsoketit[1] == nullptr; }, nullptr));
  EXPECT_FALSE(player[hidas].ihmispelaaja);
  EXPECT_EQ(verkkoLaskurit.pudotetutFramet, 0);
  suljeOttelu();
}

}  // namespace
