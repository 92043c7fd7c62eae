// Network matches over 127.0.0.1, headless: a client's world, victory and scores are the
// host's at the same FRAME; lagging, stopped and dying clients; the host's window and RESYNC.
#include <SDL/SDL.h>
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "Main.h"
#include "Sets.h"
#include "simscene.h"
#include "testutil.h"
#include "verkkoapu.h"

namespace {

using namespace verkkoapu;

// The world at one frame: each ship's place, and how many shots live and which (a hash
// of their (player, array, slot) numbers).
struct Kuva {
  int frame;
  float paikat[2 * maxPlayers];
  int laukauksia;
  uint64_t laukaukset;
};

Kuva kuvaa(int f) {
  Kuva k{f, {}, 0, 1469598103934665603ull};
  for (int i = 0; i < players; ++i) {
    const Player& p = player[i];
    k.paikat[2 * i] = p.x;
    k.paikat[2 * i + 1] = p.y;
    for (int e = 0; e < 2; ++e)
      for (int s = 0; s < (e ? maksimiepadit : maksimipadit); ++s) {
        if ((e ? p.epati : p.pati)[s].aika <= 0) continue;
        ++k.laukauksia;
        k.laukaukset = (k.laukaukset ^ (uint64_t)((i * 2 + e) * 100000 + s)) * 1099511628211ull;
      }
  }
  return k;
}

// What a client leaves for the test.
struct Tulos {
  int kuvia;
  Kuva kuvat[3000];
  char voitto[80];
  int voitonPituus;
  int pisteet[maxPlayers], kierrokset[maxPlayers];
  char syy[64];
  int viive;
};

Tulos* jaettu(int n) {
  void* m = mmap(nullptr, sizeof(Tulos) * n, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  return static_cast<Tulos*>(std::memset(m, 0, sizeof(Tulos) * n));
}

// The last victory message in a byte stream, as long as the message says it is.
std::string voittoviesti(const std::string& virta) {
  const size_t alku = virta.rfind("victory");
  if (alku == std::string::npos || alku + 10 > virta.size()) return "";
  return virta.substr(alku, virta[alku + 7] == 'o' ? 11 : 12 + 4 * (unsigned char)virta[alku + 9]);
}

std::string vastaanotetut;  // every byte a client received

int tallentavaVastaanotto(TCPsocket s, void* data, int enintaan) {
  const int n = SDLNet_TCP_Recv(s, data, enintaan);
  if (n > 0) vastaanotetut.append((const char*)data, (size_t)n);
  return n;
}

// Every byte the host sent, by socket, in `lahetetyt`.
int tallentavaLahetys(TCPsocket s, const void* data, int pituus) {
  const int n = SDLNet_TCP_Send(s, data, pituus);
  if (n > 0) lahetetyt[s].append((const char*)data, (size_t)n);
  return n;
}

void eiKuvaa(int) {}

// ---- Client ----------------------------------------------------------------------------

Tulos* tulos = nullptr;
bool kaasuPohjassa = false;

// Notes each FRAME's frame that came before the client's world reached it, and flies its
// ship with thrust, turns and fire that change now and then.
void asiakkaanAskel(int f) {
  if (f % frameVali == 0 && peliVastaanotto.uusinFrame >= f && tulos->kuvia < 3000)
    tulos->kuvat[tulos->kuvia++] = kuvaa(f);
  for (int s = 0; s < 16; ++s) {
    if (!(omatPaikat >> s & 1u)) continue;
    Player& p = player[ottelunPelaaja[s]];
    p.pylos = kaasuPohjassa || f / 40 % 3 != 0;
    p.pleft = f / 70 % 2 == 0;
    p.pfire = f / 15 % 2 == 0;
  }
}

// The choice screen: the first entry, whatever the flying keys did meanwhile.
void valitseHeti(int pelaaja, int, int) {
  Player& p = player[pelaaja];
  p.pylos = p.palas = p.pleft = p.pright = false;
  p.pfire = true;
}

void asiakkaanVoitto() {
  for (int i = 0; i < players; ++i) {
    tulos->pisteet[i] = (int)player[i].pisteet;
    tulos->kierrokset[i] = kierrosaikaMs[i];
  }
}

// A client in a child process: joins as `nimi` and plays the match through; `valmistele`
// may first change its transport or keys.
int pelaaAsiakkaana(const char* nimi, Tulos* t, void (*valmistele)()) {
  tulos = t;
  tcpVastaanotto = tallentavaVastaanotto;
  if (valmistele) valmistele();
  pelinPiirto = eiKuvaa;
  alusvalinnanPiirto = valitseHeti;
  verkkoVoitonSilmukka = asiakkaanVoitto;
  verkkoAskeleenJalkeen = asiakkaanAskel;
  std::snprintf(sets.nick[0], sizeof sets.nick[0], "%s", nimi);
  joinaavia = 1;
  if (!yhdistaHostiin("127.0.0.1")) return 10;
  if (!odota([] { return omatPaikat != 0; }, kuuntelejoin, 15)) return 11;
  joinwaitforstart();
  const std::string voitto = voittoviesti(vastaanotetut);
  t->voitonPituus = (int)std::min(voitto.size(), sizeof t->voitto);
  std::memcpy(t->voitto, voitto.data(), (size_t)t->voitonPituus);
  std::snprintf(t->syy, sizeof t->syy, "%s", gamequited ? eroSyy : "");
  t->viive = verkkoLaskurit.viive;
  return 0;
}

// ---- Host ------------------------------------------------------------------------------

std::vector<Kuva> kuvat;
std::vector<int> loppuPisteet, loppuKierrokset;
void (*ajastus)(int f) = nullptr;
int alku = -1;

void isannanAskel(int f) {
  if (alku < 0) alku = f;
  if (f % frameVali == 0 || peliloppu()) kuvat.push_back(kuvaa(f));
  if (ajastus) ajastus(f - alku);
}

void isannanVoitto() {
  loppuPisteet.assign(players, 0);
  loppuKierrokset.assign(kierrosaikaMs, kierrosaikaMs + players);
  for (int i = 0; i < players; ++i) loppuPisteet[i] = (int)player[i].pisteet;
}

// The match ends at the next end check: objective modes by a score at the limit, death
// matches by all but the first player's team out.
void paataOttelu() {
  for (int i = 0; i < players; ++i) {
    if (gamemode >= 2)
      player[0].pisteet = (float)mpcredits;
    else if (player[i].tiimi != player[0].tiimi)
      player[i].pisteet = -1;
  }
}

class Verkkopeli : public ::testing::Test {
 protected:
  void SetUp() override {
    SDL_Init(SDL_INIT_TIMER);
    simscene::maailma(2);
    sets.ai = 2;
    starttime = (int)SDL_GetTicks();
    aulanPiirto = aulaIlmanRuutua;
    pelinPiirto = eiKuvaa;
    verkkoVoitonSilmukka = isannanVoitto;
    verkkoAskeleenJalkeen = isannanAskel;
    tcpLahetys = tallentavaLahetys;
    lahetetyt.clear();
    kuvat.clear();
    ajastus = nullptr;
    alku = -1;
    verkkoportti = vapaaPortti();
    hostpeli = true;
    alustaAula();
    pelaajiasoketista[0] = 0;  // nobody plays on the host: pilots and the clients
  }
  void TearDown() override {
    palautaVerkko();
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

  // Hosts once the `asiakkaita` clients are in, until `ajastus` ends the match.
  void isannoi(int asiakkaita) {
    auto sisalla = [&] { return std::count(mpstatus, mpstatus + 16, 3) == asiakkaita; };
    ASSERT_TRUE(odota(sisalla, aulanVerkko, 20));
    hostStart();
  }

  // Each picture the client took equals the host's of the same frame, except those from
  // `ohitaAlku` to `ohitaLoppu`; returns how many were compared.
  static int vertaa(const Tulos& t, int ohitaAlku = 0, int ohitaLoppu = 0) {
    int verrattu = 0;
    const bool ennen = HasFailure();  // one frame's differences say enough
    for (int n = 0; n < t.kuvia && (ennen || !HasFailure()); ++n) {
      const Kuva& k = t.kuvat[n];
      const auto samalla = [&](const Kuva& h) { return h.frame == k.frame; };
      const auto h = std::find_if(kuvat.begin(), kuvat.end(), samalla);
      if (h == kuvat.end() || (k.frame >= ohitaAlku && k.frame < ohitaLoppu)) continue;
      ++verrattu;
      EXPECT_EQ(k.laukauksia, h->laukauksia) << "frame " << k.frame;
      EXPECT_EQ(k.laukaukset, h->laukaukset) << "frame " << k.frame;
      for (int i = 0; i < 2 * players; ++i)
        EXPECT_NEAR(k.paikat[i], h->paikat[i], 1.0 / 150 + 1e-4) << "frame " << k.frame << " slot " << i / 2;
    }
    return verrattu;
  }

  static std::string lahtenytVoitto() {
    std::string v;
    for (const auto& [s, tavut] : lahetetyt) v = std::max(v, voittoviesti(tavut));
    return v;
  }
};

// ---- One match in every mode ------------------------------------------------------------

class Ottelu : public Verkkopeli, public ::testing::WithParamInterface<int> {};

TEST_P(Ottelu, TheClientSeesTheHostsWorldVictoryAndScores) {
  const int tila = GetParam();
  aula("cccoc", tila, tila <= 1 ? 150 : 30000, 200);
  ajastus = [](int t) {
    if (t >= 1200) paataOttelu();
  };
  Tulos* t = jaettu(1);
  const pid_t lapsi = lapsena([&] { return pelaaAsiakkaana("eta", t, nullptr); });
  isannoi(1);
  ASSERT_EQ(odotaLasta(lapsi, 30), 0);

  EXPECT_STREQ(t->syy, "");
  EXPECT_GT(vertaa(*t), 300);
  const std::string voitto(t->voitto, (size_t)t->voitonPituus);
  EXPECT_EQ(voitto.substr(0, 8), tila <= 1 ? "victoryd" : "victoryo");
  EXPECT_EQ(voitto, lahtenytVoitto());
  EXPECT_EQ(std::vector<int>(t->pisteet, t->pisteet + players), loppuPisteet);
  const int etainen = ottelunPelaaja[3];
  if (tila == 0) {
    EXPECT_EQ(player[etainen].alus.numero, 0);  // its own choice, sent as CHOICE
  }
  // The host measures the client's round trip and has none for its pilots; the client
  // shows its own slot as local and every other (all flown on the host) at its own.
  for (int i = 0; i < players; ++i) {
    EXPECT_EQ(loppuKierrokset[i] >= 0, i == etainen) << i;
    EXPECT_EQ(t->kierrokset[i] >= 0, i != etainen) << i;
  }
}

INSTANTIATE_TEST_SUITE_P(EveryMode, Ottelu, ::testing::Range(0, 5));

// ---- Clients that lag, stop and die under a running host ---------------------------------

// What the client's transport receives is held back: 30 ms, up to 20 ms more at random,
// and everything that arrives in a spike (every third second, 200-500 ms) until it ends.
std::vector<std::pair<Uint32, std::string>> viivastetyt;
bool loppui = false;

int viivastava(TCPsocket s, void* data, int enintaan) {
  char b[65536];
  int n;
  while ((n = tallentavaVastaanotto(s, b, sizeof b)) > 0) {
    const Uint32 nyt = SDL_GetTicks(), jakso = nyt / 3000, piikki = 200 + jakso * 137 % 301;
    Uint32 aika = nyt + 30 + (Uint32)(rand() % 21);
    if (nyt % 3000 < piikki) aika = std::max(aika, jakso * 3000 + piikki);
    if (!viivastetyt.empty()) aika = std::max(aika, viivastetyt.back().first);
    viivastetyt.emplace_back(aika, std::string(b, (size_t)n));
  }
  loppui = loppui || n == 0;
  if (!viivastetyt.empty() && viivastetyt.front().first <= SDL_GetTicks()) {
    std::string& p = viivastetyt.front().second;
    const int m = std::min(enintaan, (int)p.size());
    std::memcpy(data, p.data(), (size_t)m);
    p.erase(0, (size_t)m);
    if (p.empty()) viivastetyt.erase(viivastetyt.begin());
    return m;
  }
  if (viivastetyt.empty() && loppui) return 0;
  errno = EAGAIN;
  return -1;
}

int pelaajaNimelta(const char* nimi) {  // the match's nicks are by match player
  for (int i = 0; i < players; ++i)
    if (std::strcmp(netnick[i], nimi) == 0) return i;
  return 0;
}

pid_t seis1, seis8, tapettu;
int kaasuEnnen, kaasuSeis, seis8Pilotiksi, tapettuPilotiksi;

// Two seconds in, one client stops for a second and one for eight, and one is killed;
// each frame the host notes its view of them. Eleven seconds in, the match ends.
void stallit(int t) {
  const int a = pelaajaNimelta("seis1"), b = pelaajaNimelta("seis8"), c = pelaajaNimelta("tapettu");
  if (t == 190) kaasuEnnen = player[a].pylos;
  if (t == 200) {
    kill(seis1, SIGSTOP);
    kill(seis8, SIGSTOP);
    kill(tapettu, SIGKILL);
  }
  if (t == 250) kaasuSeis = player[a].pylos;
  if (t == 300) kill(seis1, SIGCONT);
  if (seis8Pilotiksi < 0 && !player[b].ihmispelaaja) seis8Pilotiksi = t - 200;
  if (tapettuPilotiksi < 0 && !player[c].ihmispelaaja) tapettuPilotiksi = t - 200;
  if (t == 1000) kill(seis8, SIGCONT);
  if (t >= 1100) paataOttelu();
}

TEST_F(Verkkopeli, LaggingStoppedAndKilledClientsNeverHoldUpTheHost) {
  aula("ccoooo", 2, 30000, 100);
  Tulos* t = jaettu(4);
  seis1 = lapsena([&] { return pelaaAsiakkaana("seis1", &t[0], [] { kaasuPohjassa = true; }); });
  seis8 = lapsena([&] { return pelaaAsiakkaana("seis8", &t[1], nullptr); });
  tapettu = lapsena([&] { return pelaaAsiakkaana("tapettu", &t[2], nullptr); });
  const pid_t viivastetty =
      lapsena([&] { return pelaaAsiakkaana("viive", &t[3], [] { tcpVastaanotto = viivastava; }); });
  kaasuEnnen = kaasuSeis = seis8Pilotiksi = tapettuPilotiksi = -1;
  ajastus = stallit;
  isannoi(4);
  EXPECT_EQ(odotaLasta(tapettu, 5), -1);
  for (pid_t p : {seis1, seis8, viivastetty}) ASSERT_EQ(odotaLasta(p, 20), 0);

  EXPECT_EQ(verkkoLaskurit.pudotetutFramet, 0);  // never held up
  EXPECT_EQ(kaasuEnnen, 1);
  EXPECT_EQ(kaasuSeis, 0);  // a silent client's buttons let go
  EXPECT_GE(tapettuPilotiksi, 0);
  EXPECT_LE(tapettuPilotiksi, 100);  // a killed client's ship a pilot's within a second
  EXPECT_GE(seis8Pilotiksi, 480);    // five seconds without progress
  EXPECT_LT(seis8Pilotiksi, 800);
  for (const Tulos* c : {&t[0], &t[3]}) {
    EXPECT_STREQ(c->syy, "");
    EXPECT_EQ(std::string(c->voitto, (size_t)c->voitonPituus), lahtenytVoitto());
    EXPECT_EQ(std::vector<int>(c->pisteet, c->pisteet + players), loppuPisteet);
    // While the first was stopped and catching up its FRAMEs may have come without coords.
    EXPECT_GT(vertaa(*c, alku + 200, alku + 500), 200);
  }
  EXPECT_STREQ(t[1].syy, "the connection to the host was lost");
  EXPECT_GT(t[3].viive, frameVali + 1);  // late FRAMEs made room for themselves
  EXPECT_LE(t[3].viive, 20);
}

// ---- A peer that reads only when told, in this process --------------------------------

TEST_F(Verkkopeli, APeerFallingBehindGetsLessThenWaitsAndIsResyncedOnceItReadsAgain) {
  testutil::FakeClock kello;
  starttime = 0;
  aula("ccccccccccccccco", 2, 30000, 100);
  TCPsocket peer = raakaAsiakas("hidas");
  ASSERT_TRUE(peer);
  ASSERT_TRUE(odota([] { return mpstatus[15] == 3; }, aulanVerkko, 10));
  rakennaVerkkoOttelu();
  const int hidas = ottelunPelaaja[15];
  // Fans of 18 shots from every other ship, fire held: plenty to send.
  for (int i = 0; i < players; ++i) {
    if (i == hidas) continue;
    simscene::laita(i, 21, 100 * std::cos(i * 0.4f), 100 * std::sin(i * 0.4f), i * 23.0f);
    player[i].ihmispelaaja = true;
  }
  uint32_t luettu = 0;
  auto lue = [&] {
    char b[65536];
    SDLNet_SocketSet joukko = SDLNet_AllocSocketSet(1);
    SDLNet_TCP_AddSocket(joukko, peer);
    for (int n; SDLNet_CheckSockets(joukko, 0) > 0 && (n = SDLNet_TCP_Recv(peer, b, sizeof b)) > 0;)
      luettu += (uint32_t)n;
    SDLNet_FreeSocketSet(joukko);
  };
  uint16_t jarjestys = 0;
  auto kuittaa = [&](uint32_t tavuja) {
    unsigned char b[32];
    SDLNet_TCP_Send(peer, b, koodaaNapit(b, sizeof b, ++jarjestys, tavuja, 0, nullptr, 0));
  };
  // Ten fake milliseconds a pass, a frame each; `peer` acts every tenth pass.
  auto kierrokset = [&](int n, const std::function<bool()>& valmis, const std::function<void()>& vuoro) {
    for (int k = 0; k < n && !valmis(); ++k) {
      testutil::FakeClock::now += 10;
      for (int i = 0; i < players; ++i) {
        player[i].energia = (float)player[i].alus.energia;  // nobody dies, nobody runs dry:
        player[i].fuel = (float)player[i].alus.fuel;        // the fire goes on
        player[i].pfire = i != hidas;
      }
      verkkoTausta();
      if (k % 10 == 9 && vuoro) vuoro();
    }
    return valmis();
  };
  lue();  // the lobby's bytes: received
  aloitaIsannanOttelu();
  const uint32_t alussa = luettu;
  // It reads nothing: past 8 KiB in flight the FRAMEs come without coords, past 16 KiB they wait.
  EXPECT_TRUE(kierrokset(
      400, [] { return verkkoLaskurit.jonotetut > 0; }, [&] { kuittaa(alussa); }));
  EXPECT_GT(verkkoLaskurit.lyhennetyt, 0);
  // It reads, but owns up to a trickle only: the waiting FRAMEs outgrow their room and go.
  uint32_t kuitattu = alussa;
  EXPECT_TRUE(kierrokset(
      3000, [] { return verkkoLaskurit.hylatyt > 0; },
      [&] {
        lue();
        kuittaa(kuitattu += 50);
      }));
  EXPECT_EQ(verkkoLaskurit.resynct, 0);
  // It owns up to all it read: the whole world follows, and the FRAMEs after it.
  lue();
  kuittaa(luettu);
  const uint32_t ennen = luettu;
  EXPECT_TRUE(kierrokset(
      20, [] { return verkkoLaskurit.resynct == 1; }, nullptr));
  kierrokset(
      10, [] { return false; }, nullptr);
  lue();
  EXPECT_GT(luettu, ennen);
  EXPECT_EQ(verkkoLaskurit.pudotetutFramet, 0);
  suljeOttelu();
  SDLNet_TCP_Close(peer);
}

}  // namespace
