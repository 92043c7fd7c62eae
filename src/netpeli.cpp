// In-game network play. The host finds what changed in the world by comparing it
// with shadow copies after each calculated frame and sends it every few frames as a
// FRAME; a client checks each message whole before applying anything of it, keeps
// FRAMEs until it reaches their frame, and flies the shots it was told of itself.
#include "netpeli.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include <GL/gl.h>

#include <climits>

#include "Main.h"
#include "Menu.h"
#include "Teksti.h"
#include "audio.h"
#include "ctf.h"
#include "domination.h"
#include "glapi.h"
#include "localgame.h"
#include "net.h"
#include "netav.h"
#include "netgamesets.h"
#include "peliloppu.h"
#include "scene.h"
#include "sieni.h"

int results = 0;
int packets = 0;
limajuttu netlima;
bool limalaitetaan = false;

PeliVastaanotto peliVastaanotto = {-1, 0, false, -1};
int64_t alusvalintaPyynto[maxPlayers];
int isannanKierrosajat[maxPlayers];
AsiakasYhteys asiakasYhteys[maxYhteyksia];
int alusvalinta[maxPlayers];

namespace {

// ==== Framing ======================================================================

bool saaLahettaa(uint8_t laji, Lahettaja lahettaja) {
  if (lahettaja == Lahettaja::isanta) return laji >= lajiFrame && laji <= lajiResyncLoppu;
  return laji >= lajiNapit && laji <= lajiLahto;
}

// The text messages that may arrive in game, with their lengths as sent: the victory
// messages with ';' and a zero byte, "victoryd" by its rows (at most one per slot).
struct TekstiViesti {
  const char* avain;
  int pituus;  // -1: "victoryd", 12 + 4 per row
  Lahettaja lahettaja;
};
const TekstiViesti tekstit[] = {
    {"victoryo", 11, Lahettaja::isanta},
    {"victoryd", -1, Lahettaja::isanta},
    {"quiting..;", 10, Lahettaja::isanta},
    {"alku huomattu", 13, Lahettaja::asiakas},
    {"tiimit saatu", 12, Lahettaja::asiakas},
    {"elossa", 6, Lahettaja::asiakas},  // the lobby's keep-alive, still on its way at the start
};

PeliViesti tekstiViesti(const unsigned char* p, int n, Lahettaja lahettaja, int ohitettu) {
  PeliViesti v{PeliViesti::virhe, 0, nullptr, 0, ohitettu};
  bool alkua = false;  // what has come is the start of some text
  for (const TekstiViesti& t : tekstit) {
    const int a = (int)std::strlen(t.avain);
    if (t.lahettaja != lahettaja || std::memcmp(p, t.avain, (size_t)std::min(a, n)) != 0) continue;
    int pituus = t.pituus;
    if (pituus < 0 && n >= 10) {
      if (p[9] > maxPlayers) return v;
      pituus = 12 + 4 * p[9];
    }
    if (pituus < 0 || n < pituus) {
      alkua = true;
      continue;
    }
    v.tyyppi = PeliViesti::teksti;
    v.data = p;
    v.pituus = pituus;
    v.kulutettu += pituus;
    return v;
  }
  if (alkua) v.tyyppi = PeliViesti::kesken;
  return v;
}

}  // namespace

PeliViesti seuraavaPeliViesti(const unsigned char* data, int pituus, Lahettaja lahettaja) {
  int alku = 0;
  while (alku < pituus && (data[alku] == 0 || data[alku] == ';')) ++alku;  // ends of earlier texts
  PeliViesti v{PeliViesti::kesken, 0, nullptr, 0, alku};
  if (alku >= pituus) return v;
  const unsigned char* p = data + alku;
  const int n = pituus - alku;
  if (p[0] >= 0x20) return tekstiViesti(p, n, lahettaja, alku);
  if (!saaLahettaa(p[0], lahettaja)) {
    v.tyyppi = PeliViesti::virhe;
    return v;
  }
  if (n < peliOtsake) return v;
  const int koko = p[1] | (p[2] << 8);
  if (koko > (lahettaja == Lahettaja::isanta ? maxIsannanKehys : maxAsiakkaanKehys)) {
    v.tyyppi = PeliViesti::virhe;
    return v;
  }
  if (n < peliOtsake + koko) return v;
  v.tyyppi = PeliViesti::kehys;
  v.laji = p[0];
  v.data = p + peliOtsake;
  v.pituus = koko;
  v.kulutettu = alku + peliOtsake + koko;
  return v;
}

namespace {

// ==== Shared by both sides =========================================================

const float paikkaKerroin = 150, vauhtiKerroin = 2000, energiaKerroin = 16;
const int patiPaikkoja = 10000;  // the shadows cover this many slots of each shot array
const int laukausKoko = 17, taysiLaukausKoko = 20, limaKoko = 14;
const uint8_t syntyiOsio[2][2] = {{osioPatiSyntyi, osioPatiSyntyiTaysi},
                                  {osioEpatiSyntyi, osioEpatiSyntyiTaysi}};

bool pelaajaIndeksi(int i) { return i >= 0 && i < saannot::pelaajia(); }

int paikkoja(bool erikoinen) { return std::clamp(erikoinen ? maksimiepadit : maksimipadit, 0, patiPaikkoja); }
Pati* padit(const Player& p, bool erikoinen) { return erikoinen ? p.epati : p.pati; }

// Slots the ship flies: its loops run while the index is below the double limit.
int kaytossa(const Player& p, bool erikoinen) {
  const double raja = erikoinen ? p.alus.maxepadit : p.alus.maxpadit;
  if (!padit(p, erikoinen) || !(raja > 0)) return 0;
  return std::min(paikkoja(erikoinen), (int)std::ceil(raja));
}

// Shots whose drawing or flight needs their energy (charge ball, hot gun) or their
// counter (a leech pod's victim) travel with both.
bool taysiLaukaus(const Player& p, bool erikoinen) {
  if (erikoinen) return p.alus.easelaji == 5;
  return p.alus.aselaji == 13 || p.alus.aselaji == 19;
}

// Shots steered by other ships or by the host's dice drift away from the client's
// flight and are sent again now and then.
bool ajelehtiva(const Player& p, bool erikoinen) {
  if (erikoinen) return p.alus.easelaji == 8 || p.alus.easelaji == 13 || p.alus.easelaji == 21;
  const int n = p.alus.numero;
  return n == 7 || n == 14 || n == 16 || n == 23;
}

uint16_t q16u(float v, float k, bool rajattu) { return (uint16_t)q16(v, k, rajattu); }

// ==== Host: collecting =============================================================

const uint8_t likainen = 1;  // born (or changed) since the last FRAME
const uint8_t tunnettu = 2;  // live as far as the clients know
const uint8_t juuri = 4;     // written into the FRAME being built
const short odotus = 200;    // a dead ship's timer waits here on a host until it is respawned

struct PatiVarjo {
  short aika[patiPaikkoja];
  uint8_t tila[patiPaikkoja];
};
PatiVarjo patiVarjo[maxPlayers][2];

struct AlusVarjo {
  int numero;
  short kuolema;
  bool rajahti, syntyi, pelissa;
  float rx, ry;
  int ohjaus;       // queued control notice: -1 none, 0 computer, 1 human
  int64_t valinta;  // queued choose-a-ship deadline, -1 none
};
AlusVarjo alusVarjo[maxPlayers];

struct LimaVarjo {
  int n;
  float x[limoja], y[limoja];
  bool likainen;
};
LimaVarjo limaVarjo[maxPlayers];

short miesVarjo[pikkumiehia];
uint8_t miesTila[pikkumiehia];

Pati asteroidiVarjo[asteroideja];
bool asteroidiUusi[asteroideja];
const int maxRajahdyksia = 64;
asteroidipox rajahdykset[maxRajahdyksia];
int rajahdyksia = 0;

std::vector<CPiste> kukkaVarjo;
std::vector<int> valtausVarjo;
std::vector<SPiste> sieniVarjo;

int framejaKoodattu = 0;
int asteroidiVuoro = 0;
struct {
  int pelaaja, taulukko, indeksi;
} ajelehtivaVuoro;
const int ajelehtiviaFramessa = 2;    // drifting shots sent again per FRAME
const int kaikkiTavoitteetVali = 10;  // every tenth FRAME carries every objective
const int kierrosaikaVali = 50;       // and every fiftieth the round trips (once a second at k = 2)
const uint16_t isannanOma = 0xffff;

// `lensi`: the owner flew this frame, so each of its shots aged by one.
void keraaPadit(int i, bool e, bool lensi, bool kaikkiElavat) {
  const Pati* s = padit(player[i], e);
  PatiVarjo& v = patiVarjo[i][e];
  for (int k = 0, n = kaytossa(player[i], e); k < n; ++k) {
    // A free slot filled, or a life raised or held (a pod latched, a ball charging):
    // born or reshaped. A slot freed and filled again at a lower life within one
    // frame passes unseen.
    const short aika = s[k].aika;
    if (aika > 0 && (aika > v.aika[k] || (lensi && aika == v.aika[k]) || kaikkiElavat)) v.tila[k] |= likainen;
    v.aika[k] = aika;
  }
}

// A respawn cleared the ship's shots on both sides: nothing of them is known any more.
void nollaaPadit(int i, bool e) {
  const Pati* s = padit(player[i], e);
  PatiVarjo& v = patiVarjo[i][e];
  for (int k = 0, n = kaytossa(player[i], e); k < n; ++k) {
    v.aika[k] = s[k].aika;
    v.tila[k] = s[k].aika > 0 ? likainen : 0;
  }
}

// Blobs stay in their order while they live (older first, new ones appended), and
// each keeps its place on the hull: a live blob not found in the shadow is new.
void keraaLimat(int i) {
  const Player& p = player[i];
  LimaVarjo& v = limaVarjo[i];
  int seuraava = 0, n = 0;
  float x[limoja], y[limoja];
  for (int b = 0; p.lima && b < limoja; ++b) {
    const Pati& m = p.lima[b];
    if (m.aika <= 0) continue;
    int k = seuraava;
    while (k < v.n && (v.x[k] != m.x || v.y[k] != m.y)) ++k;
    if (k < v.n)
      seuraava = k + 1;
    else
      v.likainen = true;
    x[n] = m.x;
    y[n++] = m.y;
  }
  v.n = n;
  std::copy(x, x + n, v.x);
  std::copy(y, y + n, v.y);
}

void keraaAlus(int i) {
  Player& p = player[i];
  AlusVarjo& a = alusVarjo[i];
  const bool rajahti = playerrajahtaa[i];
  if (rajahti) {
    a.rajahti = true;
    a.rx = prajahdys[i][0];
    a.ry = prajahdys[i][1];
    playerrajahtaa[i] = false;
  }
  // Back in the world: a new ship type, the timer let go of its wait, or a ship that
  // blew up and lives on (the resurrecting special).
  const bool tuli =
      p.alus.numero != a.numero || (a.kuolema >= odotus && p.kuolema < odotus) || (rajahti && p.kuolema < 1);
  // A client learns of a death up to a FRAME late and flies the shots meanwhile;
  // the frozen shots are sent again so that they stop where the host's stopped.
  const bool kuoli = a.kuolema < 1 && p.kuolema >= 1;
  const bool lensi = a.kuolema < 1 && saannot::pelissa(player[i]);
  a.numero = p.alus.numero;
  a.kuolema = p.kuolema;
  if (tuli) {
    a.syntyi = true;
    limaVarjo[i].n = 0;
  }
  for (bool e : {false, true}) {
    if (tuli)
      nollaaPadit(i, e);
    else
      keraaPadit(i, e, lensi, kuoli);
  }
  keraaLimat(i);
}

void keraaAsteroidit() {
  int viimeinen = -1;  // arajahdys holds the last one blown up this frame
  for (int i = 0; i < asteroideja; ++i)
    if (asteroidiuudestaan[i]) viimeinen = i;
  for (int i = 0; i < asteroideja; ++i) {
    if (!asteroidiuudestaan[i]) continue;
    asteroidiuudestaan[i] = false;
    asteroidiUusi[i] = true;
    if (rajahdyksia == maxRajahdyksia) continue;
    const Pati& vanha = asteroidiVarjo[i];
    rajahdykset[rajahdyksia++] = i == viimeinen ? asteroidipox{arajahdys[0], arajahdys[1]}
                                                : asteroidipox{vanha.x + vanha.xv, vanha.y + vanha.yv};
  }
  asteroidirajahtaa = false;
  std::copy(asteroidi, asteroidi + asteroideja, asteroidiVarjo);
}

void keraaPikkumiehet() {
  for (int m = 0; m < pikkumiehia; ++m) {
    if (pikkumies[m].aika > miesVarjo[m]) miesTila[m] |= likainen;
    miesVarjo[m] = pikkumies[m].aika;
  }
}

// ==== Host: encoding ===============================================================

// Writes records into sections, opening one whenever the tag or param changes.
class Osiot {
 public:
  Osiot(Kirjoittaja& k, int raja) : k(k), raja_(raja) {}
  Kirjoittaja& k;

  bool mahtuu(int tavua) const { return k.pituus() + tavua <= raja_; }

  // Room for one record of `koko` bytes in section (tunniste, param); false when the
  // message is full. The caller then writes exactly the record.
  bool tietue(uint8_t tunniste, uint8_t param, int koko) {
    const bool jatkuu = laskuri_ >= 0 && tunniste == tunniste_ && param == param_ && maara_ < 255;
    if (!mahtuu(koko + (jatkuu ? 0 : 3))) return false;
    if (!jatkuu) {
      k.tavu(tunniste);
      k.tavu(param);
      laskuri_ = k.pituus();
      k.tavu(0);
      tunniste_ = tunniste;
      param_ = param;
      maara_ = 0;
    }
    k.alku()[laskuri_] = (unsigned char)++maara_;
    return true;
  }

 private:
  int raja_;
  int laskuri_ = -1;
  uint8_t tunniste_ = 0, param_ = 0;
  int maara_ = 0;
};

void paikka(Kirjoittaja& k, float x, float y) {
  k.u16(q16u(x, paikkaKerroin, true));
  k.u16(q16u(y, paikkaKerroin, true));
}

bool lisaaRajahdys(Osiot& o, int i, float x, float y) {
  if (!o.tietue(osioRajahdys, 0, 5)) return false;
  o.k.tavu((uint8_t)i);
  paikka(o.k, x, y);
  return true;
}

bool lisaaSyntyma(Osiot& o, int i) {
  const Player& p = player[i];
  if (!o.tietue(osioSyntyma, 0, 8)) return false;
  o.k.tavu((uint8_t)i);
  o.k.tavu((uint8_t)p.alus.numero);
  paikka(o.k, p.x, p.y);
  o.k.u16(q16u(p.kulma, paikkaKerroin, false));
  return true;
}

bool lisaaAlus(Osiot& o, int i) {
  const Player& p = player[i];
  if (!o.tietue(osioAlus, 0, 8)) return false;
  o.k.tavu((uint8_t)i);
  o.k.tavu((uint8_t)p.alus.numero);
  o.k.tavu((uint8_t)p.tiimi);
  o.k.tavu(p.ihmispelaaja ? 1 : 0);
  o.k.u16(q16u(p.xvauhti, vauhtiKerroin, true));
  o.k.u16(q16u(p.yvauhti, vauhtiKerroin, true));
  return true;
}

bool lisaaOhjaus(Osiot& o, int i, bool ihminen) {
  if (!o.tietue(osioOhjaus, 0, 2)) return false;
  o.k.tavu((uint8_t)i);
  o.k.tavu(ihminen ? 1 : 0);
  return true;
}

bool lisaaValinta(Osiot& o, int i, int64_t takaraja) {
  if (!o.tietue(osioValinta, 0, 5)) return false;
  o.k.tavu((uint8_t)i);
  o.k.u32((uint32_t)takaraja);
  return true;
}

bool lisaaAsteroidi(Osiot& o, int i) {
  if (!o.tietue(osioAsteroidi, 0, 1 + asteroidikoko)) return false;
  o.k.tavu((uint8_t)i);
  o.k.tietue(&asteroidi[i], asteroidikoko, kirjotaAsteroidi);
  return true;
}

bool lisaaAsteroidiRajahdys(Osiot& o, const asteroidipox& a) {
  return o.tietue(osioAsteroidiRajahdys, 0, asteroidipoxkoko) &&
         o.k.tietue(&a, asteroidipoxkoko, kirjotaAsteroidipox);
}

bool lisaaKukka(Osiot& o, int i) {
  if (!o.tietue(osioKukka, 0, 1 + cpistekoko)) return false;
  o.k.tavu((uint8_t)i);
  o.k.tietue(&cpiste[i], cpistekoko, kirjotaCPiste);
  return true;
}

bool lisaaValtaus(Osiot& o, int i) {
  if (!o.tietue(osioValtaus, 0, 2)) return false;
  o.k.tavu((uint8_t)i);
  o.k.tavu((uint8_t)(int8_t)dpiste[i].tiimi);
  return true;
}

bool lisaaSieni(Osiot& o, int i) {
  if (!o.tietue(osioSieni, 0, 1 + spistekoko)) return false;
  o.k.tavu((uint8_t)i);
  o.k.tietue(&spiste[i], spistekoko, kirjotaSPiste);
  return true;
}

// All of a player's blobs in one section, or nothing.
bool lisaaLimat(Osiot& o, int i) {
  const Player& p = player[i];
  int n = 0;
  for (int b = 0; p.lima && b < limoja; ++b) n += p.lima[b].aika > 0;
  if (n == 0) return true;
  if (!o.mahtuu(3 + n * limaKoko)) return false;
  for (int b = 0; b < limoja; ++b) {
    const Pati& m = p.lima[b];
    if (m.aika <= 0) continue;
    const limajuttu l{m.x, m.y, (short)i, (short)b};
    o.tietue(osioLimat, (uint8_t)i, limaKoko);
    o.k.tietue(&l, limakoko, kirjotaLimajuttu);
    o.k.u16((uint16_t)m.aika);
  }
  return true;
}

bool lisaaKierrosaika(Osiot& o, int i) {
  if (!o.tietue(osioKierrosajat, 0, 3)) return false;
  o.k.tavu((uint8_t)i);
  o.k.u16(kierrosaikaMs[i] < 0 ? isannanOma : (uint16_t)std::min(kierrosaikaMs[i], 65534));
  return true;
}

bool lisaaPikkumies(Osiot& o, int m) {
  const Pati& s = pikkumies[m];
  const pikkumiessiirto t{s.x, s.y, s.energia, (short)std::max<short>(s.aika, 0), (short)m};
  return o.tietue(osioPikkumies, 0, pikkumieskoko) && o.k.tietue(&t, pikkumieskoko, kirjotaPikkumiessiirto);
}

bool lisaaLaukaus(Osiot& o, int i, bool e, int k) {
  const Player& p = player[i];
  const Pati& s = padit(p, e)[k];
  const bool taysi = taysiLaukaus(p, e);
  if (!o.tietue(syntyiOsio[e][taysi], (uint8_t)(k >> 8), taysi ? taysiLaukausKoko : laukausKoko))
    return false;
  // Headings only matter modulo a turn where the wire form would wrap.
  const float kulma = std::fabs(s.kulma) < 655 ? s.kulma : std::fmod(s.kulma, 360.0f);
  const netPati n{s.x, s.y, s.xv, s.yv, kulma, s.r, s.g, s.b, (char)i, (unsigned short)k};
  o.k.tietue(&n, netpatikoko, kirjotaNetpati);
  o.k.u16((uint16_t)s.aika);
  if (taysi) {
    const float energia = s.energia * energiaKerroin;
    o.k.u16(energia > 0 ? (uint16_t)std::min(energia, 65535.0f) : 0);
    o.k.tavu((uint8_t)std::clamp<int>(s.ampumisviive, 0, 255));
  }
  return true;
}

bool lisaaKuollutLaukaus(Osiot& o, int i, bool e, int k) {
  const kuolevaPati t{(unsigned short)k, (char)i};
  return o.tietue(e ? osioEpatiKuoli : osioPatiKuoli, (uint8_t)(k >> 8), kuolevapatikoko) &&
         o.k.tietue(&t, kuolevapatikoko, kirjotaKuolevapati);
}

// The first bytes of every in-game payload from the host: the frame and the coords of
// the players in `maski`.
void aloitaViesti(Kirjoittaja& k, uint8_t laji, uint32_t frame, uint16_t maski) {
  k.tavu(laji);
  k.u16(0);
  k.u32(frame);
  k.u16(maski);
  for (int i = 0; i < maxPlayers; ++i)
    if (maski & (1u << i)) k.tietue(&player[i], coordkoko, kirjotaCoords);
}

int valmisViesti(Kirjoittaja& k) {
  k.u16Kohtaan(1, (uint16_t)(k.pituus() - peliOtsake));
  return k.ok() ? k.pituus() : 0;
}

void lisaaAlustenTapahtumat(Osiot& o) {
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    AlusVarjo& a = alusVarjo[i];
    if (a.rajahti && lisaaRajahdys(o, i, a.rx, a.ry)) a.rajahti = false;
    if (a.syntyi && lisaaSyntyma(o, i)) a.syntyi = false;
    if (a.ohjaus >= 0 && lisaaOhjaus(o, i, a.ohjaus == 1)) a.ohjaus = -1;
    if (a.valinta >= 0 && lisaaValinta(o, i, a.valinta)) a.valinta = -1;
  }
}

void lisaaAsteroidit(Osiot& o) {
  int j = 0;
  while (j < rajahdyksia && lisaaAsteroidiRajahdys(o, rajahdykset[j])) ++j;
  std::copy(rajahdykset + j, rajahdykset + rajahdyksia, rajahdykset);
  rajahdyksia -= j;
  // One more is refreshed every second FRAME, so that the client's asteroids never drift far.
  if (framejaKoodattu % 2 == 0) {
    asteroidiVuoro = (asteroidiVuoro + 1) % asteroideja;
    asteroidiUusi[asteroidiVuoro] = true;
  }
  for (int i = 0; i < asteroideja; ++i)
    if (asteroidiUusi[i] && lisaaAsteroidi(o, i)) asteroidiUusi[i] = false;
}

bool samaKukka(const CPiste& a, const CPiste& b) {
  return a.x == b.x && a.y == b.y && a.player == b.player && a.numero == b.numero && a.enabled == b.enabled;
}

// Objectives that can travel: a byte holds their index.
int tavoitteita(const void* taulukko, int maara) { return taulukko ? std::clamp(maara, 0, 256) : 0; }
int kukkia() { return std::min(tavoitteita(cpiste, cpisteita), (int)kukkaVarjo.size()); }
int valtauksia() { return std::min(tavoitteita(dpiste, dpisteita), (int)valtausVarjo.size()); }
int sienia() { return std::min(tavoitteita(spiste, spisteita), (int)sieniVarjo.size()); }

// What changed, and now and then all of the mode's own objectives (the others never change).
void lisaaTavoitteet(Osiot& o, bool kaikki) {
  for (int i = 0; i < kukkia(); ++i)
    if (((kaikki && gamemode == 3) || !samaKukka(cpiste[i], kukkaVarjo[i])) && lisaaKukka(o, i))
      kukkaVarjo[i] = cpiste[i];
  for (int i = 0; i < valtauksia(); ++i)
    if (((kaikki && gamemode == 2) || dpiste[i].tiimi != valtausVarjo[i]) && lisaaValtaus(o, i))
      valtausVarjo[i] = dpiste[i].tiimi;
  for (int i = 0; i < sienia(); ++i) {
    SPiste& s = spiste[i];
    const bool muuttui = s.uusiks || s.x != sieniVarjo[i].x || s.y != sieniVarjo[i].y;
    if (((kaikki && gamemode == 4) || muuttui) && lisaaSieni(o, i)) {
      s.uusiks = false;
      sieniVarjo[i] = s;
    }
  }
}

void lisaaPikkumiehet(Osiot& o) {
  for (int m = 0; m < pikkumiehia; ++m) {
    uint8_t& t = miesTila[m];
    const bool elossa = pikkumies[m].aika > 0;
    if (elossa ? !(t & likainen) : !(t & tunnettu)) {
      t &= (uint8_t)~likainen;  // born and gone between two FRAMEs, or nothing new
      continue;
    }
    if (!lisaaPikkumies(o, m)) return;
    t = elossa ? tunnettu : 0;
  }
}

// Deaths first, then births, each in index order so that sections stay long.
bool lisaaLaukaukset(Osiot& o, int i, bool e) {
  const Pati* s = padit(player[i], e);
  uint8_t* tila = patiVarjo[i][e].tila;
  const int n = kaytossa(player[i], e);
  for (int k = 0; k < n; ++k) {
    tila[k] &= (uint8_t)~juuri;
    if (s[k].aika > 0) continue;
    if (tila[k] & tunnettu) {
      if (!lisaaKuollutLaukaus(o, i, e, k)) return false;
      tila[k] = 0;
    }
    tila[k] &= (uint8_t)~likainen;
  }
  for (int k = 0; k < n; ++k) {
    if (s[k].aika <= 0 || !(tila[k] & likainen)) continue;
    if (!lisaaLaukaus(o, i, e, k)) return false;
    tila[k] = tunnettu | juuri;
  }
  return true;
}

// A few drifting shots are sent again each FRAME, taking turns.
void lisaaAjelehtivat(Osiot& o) {
  auto& v = ajelehtivaVuoro;
  if (saannot::pelaajia() == 0) return;
  int jaljella = ajelehtiviaFramessa;
  for (int kierros = 0; kierros <= maxPlayers * 2 && jaljella > 0; ++kierros) {
    if (v.pelaaja >= saannot::pelaajia()) v.pelaaja = 0;
    const Player& p = player[v.pelaaja];
    const bool e = v.taulukko == 1;
    if (ajelehtiva(p, e)) {
      const Pati* s = padit(p, e);
      const uint8_t* tila = patiVarjo[v.pelaaja][e].tila;
      for (const int n = kaytossa(p, e); v.indeksi < n && jaljella > 0; ++v.indeksi) {
        const int k = v.indeksi;
        if (s[k].aika <= 0 || (tila[k] & juuri) || !(tila[k] & tunnettu)) continue;
        if (!lisaaLaukaus(o, v.pelaaja, e, k)) return;
        --jaljella;
      }
      if (jaljella == 0) return;
    }
    v.indeksi = 0;
    if (++v.taulukko == 2) {
      v.taulukko = 0;
      ++v.pelaaja;
    }
  }
}

}  // namespace

void aloitaKeraaja() {
  for (int i = 0; i < maxPlayers; ++i) {
    const Player& p = player[i];
    alusVarjo[i] =
        AlusVarjo{p.alus.numero, p.kuolema, false, false, saannot::pelissa(player[i]), 0, 0, -1, -1};
    for (bool e : {false, true}) {
      PatiVarjo& v = patiVarjo[i][e];
      const Pati* s = padit(p, e);
      for (int k = 0, n = kaytossa(p, e); k < n; ++k) {
        v.aika[k] = s[k].aika;
        v.tila[k] = s[k].aika > 0 ? tunnettu : 0;
      }
    }
    limaVarjo[i].n = 0;
    keraaLimat(i);
    limaVarjo[i].likainen = false;
    playerrajahtaa[i] = false;
  }
  for (int m = 0; m < pikkumiehia; ++m) {
    miesVarjo[m] = pikkumies[m].aika;
    miesTila[m] = pikkumies[m].aika > 0 ? tunnettu : 0;
  }
  std::fill(asteroidiuudestaan, asteroidiuudestaan + asteroideja, false);
  std::fill(asteroidiUusi, asteroidiUusi + asteroideja, false);
  std::copy(asteroidi, asteroidi + asteroideja, asteroidiVarjo);
  asteroidirajahtaa = false;
  rajahdyksia = 0;
  kukkaVarjo.assign(cpiste, cpiste + tavoitteita(cpiste, cpisteita));
  valtausVarjo.clear();
  for (int i = 0; i < tavoitteita(dpiste, dpisteita); ++i) valtausVarjo.push_back(dpiste[i].tiimi);
  sieniVarjo.assign(spiste, spiste + tavoitteita(spiste, spisteita));
  framejaKoodattu = 0;
  asteroidiVuoro = 0;
  ajelehtivaVuoro = {0, 0, 0};
}

void keraaTapahtumat() {
  for (int i = 0; i < saannot::pelaajia(); ++i) keraaAlus(i);
  keraaAsteroidit();
  keraaPikkumiehet();
}

void ilmoitaOhjaus(int pelaaja, bool ihminen) {
  if (pelaajaIndeksi(pelaaja)) alusVarjo[pelaaja].ohjaus = ihminen ? 1 : 0;
}

void pyydaAlusvalinta(int pelaaja, uint32_t takaraja) {
  if (pelaajaIndeksi(pelaaja)) alusVarjo[pelaaja].valinta = takaraja;
}

int koodaaFrame(uint32_t frame, unsigned char* buf, int tila) {
  const int raja = std::min(tila, maxFrameViesti);
  // A player who has just left play is sent once more, so that clients see him out.
  uint16_t maski = 0;
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    const bool mukana = saannot::pelissa(player[i]);
    if (mukana || alusVarjo[i].pelissa) maski |= (uint16_t)(1u << i);
    alusVarjo[i].pelissa = mukana;
  }
  Kirjoittaja k(buf, raja);
  aloitaViesti(k, lajiFrame, frame, maski);
  if (!k.ok()) return 0;
  Osiot o(k, raja);
  lisaaAlustenTapahtumat(o);
  lisaaAsteroidit(o);
  lisaaTavoitteet(o, framejaKoodattu % kaikkiTavoitteetVali == 0);
  for (int i = 0; framejaKoodattu % kierrosaikaVali == 0 && i < saannot::pelaajia(); ++i)
    lisaaKierrosaika(o, i);
  for (int i = 0; i < saannot::pelaajia(); ++i)
    if (limaVarjo[i].likainen && lisaaLimat(o, i)) limaVarjo[i].likainen = false;
  lisaaPikkumiehet(o);
  bool tilaa = true;
  for (int i = 0; i < saannot::pelaajia() && tilaa; ++i)
    for (bool e : {false, true}) tilaa = tilaa && lisaaLaukaukset(o, i, e);
  if (tilaa) lisaaAjelehtivat(o);
  ++framejaKoodattu;
  return valmisViesti(k);
}

int ilmanCoordseja(const unsigned char* viesti, int pituus, unsigned char* ulos) {
  const int maski = peliOtsake + 4, coordsit = maski + 2;  // after the kind, length and frame
  std::memcpy(ulos, viesti, (size_t)std::min(pituus, coordsit));
  if (pituus < coordsit || viesti[0] != lajiFrame) return pituus;
  const int bitit = viesti[maski] | (viesti[maski + 1] << 8);
  int pois = 0;
  for (int i = 0; i < maxPlayers; ++i)
    if (bitit & (1 << i)) pois += coordkoko;
  pois = std::min(pois, pituus - coordsit);
  std::memcpy(ulos + coordsit, viesti + coordsit + pois, (size_t)(pituus - coordsit - pois));
  ulos[maski] = ulos[maski + 1] = 0;
  const int koko = pituus - pois - peliOtsake;
  ulos[1] = (unsigned char)(koko & 0xff);
  ulos[2] = (unsigned char)(koko >> 8);
  return pituus - pois;
}

// ---- RESYNC ------------------------------------------------------------------------

namespace {

enum ResyncVaihe {
  rAlku,
  rAlukset,
  rAsteroidit,
  rKukat,
  rValtaukset,
  rSienet,
  rMiehet,
  rLimat,
  rLaukaukset,
  rLoppu,
  rValmis
};

// Writes the record at the cursor; false when the message is full.
bool resyncTietue(ResyncKoodaaja& r, Osiot& o) {
  const int i = r.indeksi;
  switch (r.vaihe) {
    case rAlukset: return lisaaAlus(o, i);
    case rAsteroidit: return lisaaAsteroidi(o, i);
    case rKukat: return lisaaKukka(o, i);
    case rValtaukset: return lisaaValtaus(o, i);
    case rSienet: return lisaaSieni(o, i);
    case rMiehet: return pikkumies[i].aika <= 0 || lisaaPikkumies(o, i);
    case rLimat: return lisaaLimat(o, i);
    default: return true;
  }
}

int resyncVaiheenPituus(const ResyncKoodaaja& r) {
  switch (r.vaihe) {
    case rAlukset:
    case rLimat: return saannot::pelaajia();
    case rAsteroidit: return asteroideja;
    case rKukat: return tavoitteita(cpiste, cpisteita);
    case rValtaukset: return tavoitteita(dpiste, dpisteita);
    case rSienet: return tavoitteita(spiste, spisteita);
    case rMiehet: return pikkumiehia;
    default: return 0;
  }
}

// The live shots from the cursor on; false when the message is full.
bool resyncLaukaukset(ResyncKoodaaja& r, Osiot& o) {
  for (; r.pelaaja < saannot::pelaajia(); ++r.pelaaja, r.taulukko = 0) {
    for (; r.taulukko < 2; ++r.taulukko, r.indeksi = 0) {
      const bool e = r.taulukko == 1;
      const Pati* s = padit(player[r.pelaaja], e);
      for (const int n = kaytossa(player[r.pelaaja], e); r.indeksi < n; ++r.indeksi)
        if (s[r.indeksi].aika > 0 && !lisaaLaukaus(o, r.pelaaja, e, r.indeksi)) return false;
    }
  }
  return true;
}

}  // namespace

void aloitaResync(ResyncKoodaaja& r, uint32_t frame) { r = ResyncKoodaaja{frame, rAlku, 0, 0, 0}; }

int seuraavaResyncOsa(ResyncKoodaaja& r, unsigned char* buf, int tila) {
  const int raja = std::min(tila, maxFrameViesti);
  Kirjoittaja k(buf, raja);
  if (r.vaihe == rValmis) return 0;
  if (r.vaihe == rAlku || r.vaihe == rLoppu) {
    // The end carries every slot's coords, so that clients also learn who is out.
    const bool loppu = r.vaihe == rLoppu;
    aloitaViesti(k, loppu ? lajiResyncLoppu : lajiResyncAlku, r.frame,
                 loppu ? (uint16_t)((1u << saannot::pelaajia()) - 1) : 0);
    r.vaihe = loppu ? rValmis : rAlukset;
    return valmisViesti(k);
  }
  aloitaViesti(k, lajiResyncOsa, r.frame, 0);
  Osiot o(k, raja);
  while (r.vaihe < rLoppu) {
    if (r.vaihe == rLaukaukset) {
      if (!resyncLaukaukset(r, o)) break;
    } else {
      if (r.indeksi < resyncVaiheenPituus(r)) {
        if (!resyncTietue(r, o)) break;
        ++r.indeksi;
        continue;
      }
    }
    ++r.vaihe;
    r.pelaaja = r.taulukko = r.indeksi = 0;
  }
  return valmisViesti(k);
}

// ==== Client: checking and applying ===================================================

namespace {

int64_t tilaFrame[maxPlayers];  // the frame of each ship's last state, -1 none
const int maxOdottavia = 64;
asteroidipox odottavatRajahdykset[maxOdottavia];  // the world step blows up one asteroid a frame
int odottavia = 0;

// FRAMEs kept until their frame: payloads back to back in arrival order.
const int jononTavut = 128 * 1024, jononPituus = 64;
unsigned char jonoData[jononTavut];
struct Jonossa {
  uint32_t frame;
  int pituus;
};
Jonossa jono[jononPituus];
int jonossa = 0, jonoTavuja = 0;

bool aarellinen(float v) { return std::isfinite(v); }

// Each record reader takes the header's param, checks the record and, when
// `soveltaa`, applies it. A false return makes the whole message malformed.
struct Lukutila {
  Lukija& l;
  uint8_t param;
  bool soveltaa;
  int64_t frame;
};

bool lueRajahdys(Lukutila& t) {
  uint8_t i;
  int16_t x, y;
  if (!t.l.tavu(i) || !t.l.i16(x) || !t.l.i16(y) || !pelaajaIndeksi(i)) return false;
  if (t.soveltaa) {
    playerrajahtaa[i] = true;
    prajahdys[i][0] = x / paikkaKerroin;
    prajahdys[i][1] = y / paikkaKerroin;
  }
  return true;
}

bool lueSyntyma(Lukutila& t) {
  uint8_t i, tyyppi;
  int16_t x, y, kulma;
  if (!t.l.tavu(i) || !t.l.tavu(tyyppi) || !t.l.i16(x) || !t.l.i16(y) || !t.l.i16(kulma)) return false;
  if (!pelaajaIndeksi(i) || tyyppi >= alustyyppeja) return false;
  if (t.soveltaa) {
    Player& p = player[i];
    p.uudestaan(alus[tyyppi]);
    p.x = x / paikkaKerroin;
    p.y = y / paikkaKerroin;
    p.kulma = kulma / paikkaKerroin;
    p.laitaAlkuSirpaleet();
    tilaFrame[i] = t.frame;
  }
  return true;
}

bool lueAlus(Lukutila& t) {
  uint8_t i, tyyppi, tiimi, ihminen;
  int16_t xv, yv;
  if (!t.l.tavu(i) || !t.l.tavu(tyyppi) || !t.l.tavu(tiimi) || !t.l.tavu(ihminen)) return false;
  if (!t.l.i16(xv) || !t.l.i16(yv)) return false;
  if (!pelaajaIndeksi(i) || tyyppi >= alustyyppeja || tiimi >= maxPlayers || ihminen > 1) return false;
  if (t.soveltaa) {
    Player& p = player[i];
    if (p.alus.numero != tyyppi) p.uudestaan(alus[tyyppi]);
    p.tiimi = tiimi;
    p.ihmispelaaja = ihminen;
    p.xvauhti = xv / vauhtiKerroin;
    p.yvauhti = yv / vauhtiKerroin;
    tilaFrame[i] = t.frame;
  }
  return true;
}

bool lueOhjaus(Lukutila& t) {
  uint8_t i, ihminen;
  if (!t.l.tavu(i) || !t.l.tavu(ihminen) || !pelaajaIndeksi(i) || ihminen > 1) return false;
  if (t.soveltaa) player[i].ihmispelaaja = ihminen;
  return true;
}

bool lueValinta(Lukutila& t) {
  uint8_t i;
  uint32_t takaraja;
  if (!t.l.tavu(i) || !t.l.u32(takaraja) || !pelaajaIndeksi(i)) return false;
  if (t.soveltaa) alusvalintaPyynto[i] = takaraja;
  return true;
}

bool lueKierrosaika(Lukutila& t) {
  uint8_t i;
  uint16_t ms;
  if (!t.l.tavu(i) || !t.l.u16(ms) || !pelaajaIndeksi(i)) return false;
  if (t.soveltaa) isannanKierrosajat[i] = ms == isannanOma ? -1 : ms;
  return true;
}

bool lueAsteroidiOsa(Lukutila& t) {
  uint8_t i;
  if (!t.l.tavu(i) || i >= asteroideja) return false;
  Pati a = asteroidi[i];
  if (!t.l.tietue(&a, asteroidikoko, lueAsteroidi)) return false;
  if (t.soveltaa) asteroidi[i] = a;
  return true;
}

bool lueAsteroidiRajahdys(Lukutila& t) {
  asteroidipox a;
  if (!t.l.tietue(&a, asteroidipoxkoko, lueAsteroidipox) || !aarellinen(a.x) || !aarellinen(a.y))
    return false;
  if (t.soveltaa && odottavia < maxOdottavia) odottavatRajahdykset[odottavia++] = a;
  return true;
}

bool lueKukka(Lukutila& t) {
  uint8_t i;
  CPiste c;
  if (!t.l.tavu(i) || !t.l.tietue(&c, cpistekoko, lueCPiste)) return false;
  // A carrier's slot past the players is let through: the flower rule drops such a flower.
  const bool tila =
      c.player == kukkaKotona || c.player == kukkaPudonnut || (c.player >= 0 && c.player < maxPlayers);
  if (!cpiste || i >= cpisteita || !tila) return false;
  if (t.soveltaa) cpiste[i] = c;
  return true;
}

bool lueValtaus(Lukutila& t) {
  uint8_t i, tiimi;
  if (!t.l.tavu(i) || !t.l.tavu(tiimi) || !dpiste || i >= dpisteita) return false;
  const int omistaja = (int8_t)tiimi;
  if (omistaja < -1 || omistaja >= maxPlayers) return false;
  if (t.soveltaa) dpiste[i].tiimi = omistaja;
  return true;
}

bool lueSieni(Lukutila& t) {
  uint8_t i;
  SPiste s{};
  if (!t.l.tavu(i) || !t.l.tietue(&s, spistekoko, lueSPiste) || !spiste || i >= spisteita) return false;
  if (t.soveltaa) {
    spiste[i].x = s.x;
    spiste[i].y = s.y;
  }
  return true;
}

bool lueLima(Lukutila& t) {
  limajuttu l;
  uint16_t aika;
  if (!t.l.tietue(&l, limakoko, lueLimajuttu) || !t.l.u16(aika)) return false;
  if (l.player != t.param || l.kohta < 0 || l.kohta >= limoja || aika == 0 || aika > 32767) return false;
  if (!aarellinen(l.x) || !aarellinen(l.y)) return false;
  Player& p = player[t.param];
  if (t.soveltaa && p.lima) {
    Pati& m = p.lima[l.kohta];
    m.x = l.x;
    m.y = l.y;
    m.aika = (short)aika;
    p.limacount = std::max(p.limacount, l.kohta + 1);
  }
  return true;
}

const short poimintaViive = 70;  // a little man let go cannot be picked up at once

bool luePikkumies(Lukutila& t) {
  pikkumiessiirto s;
  if (!t.l.tietue(&s, pikkumieskoko, luePikkumiessiirto)) return false;
  if (s.numero < 0 || s.numero >= pikkumiehia || !aarellinen(s.x) || !aarellinen(s.y) ||
      !aarellinen(s.energia))
    return false;
  if (t.soveltaa) {
    Pati& m = pikkumies[s.numero];
    if (s.aika > 0) {
      if (m.aika <= 0) m.ampumisviive = poimintaViive;
      m.x = s.x;
      m.y = s.y;
      m.energia = s.energia;
    }
    m.aika = std::max<short>(s.aika, 0);
  }
  return true;
}

Pati* laukausPaikka(int omistaja, bool erikoinen, int indeksi) {
  if (!pelaajaIndeksi(omistaja) || indeksi >= paikkoja(erikoinen)) return nullptr;
  Pati* a = padit(player[omistaja], erikoinen);
  return a ? &a[indeksi] : nullptr;
}

bool lueKuollut(Lukutila& t, bool erikoinen) {
  kuolevaPati k;
  if (!t.l.tietue(&k, kuolevapatikoko, lueKuolevapati)) return false;
  const int omistaja = (unsigned char)k.pelaaja, indeksi = (t.param << 8) | k.pati;
  if (!pelaajaIndeksi(omistaja) || indeksi >= paikkoja(erikoinen)) return false;
  Pati* s = laukausPaikka(omistaja, erikoinen, indeksi);
  if (t.soveltaa && s) s->aika = 0;
  return true;
}

bool lueSyntynyt(Lukutila& t, bool erikoinen, bool taysi) {
  netPati n;
  uint16_t aika, energia = 0;
  uint8_t laskuri = 0;
  if (!t.l.tietue(&n, netpatikoko, lueNetpati) || !t.l.u16(aika)) return false;
  if (taysi && (!t.l.u16(energia) || !t.l.tavu(laskuri))) return false;
  const int omistaja = (unsigned char)n.pelaaja, indeksi = (t.param << 8) | n.pati;
  if (!pelaajaIndeksi(omistaja) || indeksi >= paikkoja(erikoinen) || aika == 0 || aika > 32767) return false;
  Pati* s = laukausPaikka(omistaja, erikoinen, indeksi);
  if (!t.soveltaa || !s) return true;
  const Alus& a = player[omistaja].alus;
  if (s->aika <= 0) s->alku = aika;  // a special shot hit on a client is heard once: alku turns negative
  s->x = n.x;
  s->y = n.y;
  s->xv = n.xv;
  s->yv = n.yv;
  s->kulma = n.kulma;
  s->r = n.r;
  s->g = n.g;
  s->b = n.b;
  s->aika = (short)aika;
  s->energia = taysi ? energia / energiaKerroin : (float)(erikoinen ? a.epatienergia : a.patienergia);
  s->ampumisviive = laskuri;
  return true;
}

bool lueTietue(Lukutila& t, uint8_t tunniste) {
  switch (tunniste) {
    case osioRajahdys: return lueRajahdys(t);
    case osioSyntyma: return lueSyntyma(t);
    case osioAlus: return lueAlus(t);
    case osioOhjaus: return lueOhjaus(t);
    case osioValinta: return lueValinta(t);
    case osioAsteroidi: return lueAsteroidiOsa(t);
    case osioAsteroidiRajahdys: return lueAsteroidiRajahdys(t);
    case osioKukka: return lueKukka(t);
    case osioValtaus: return lueValtaus(t);
    case osioSieni: return lueSieni(t);
    case osioLimat: return lueLima(t);
    case osioPikkumies: return luePikkumies(t);
    case osioPatiKuoli: return lueKuollut(t, false);
    case osioEpatiKuoli: return lueKuollut(t, true);
    case osioPatiSyntyi: return lueSyntynyt(t, false, false);
    case osioEpatiSyntyi: return lueSyntynyt(t, true, false);
    case osioPatiSyntyiTaysi: return lueSyntynyt(t, false, true);
    case osioEpatiSyntyiTaysi: return lueSyntynyt(t, true, true);
    case osioKierrosajat: return lueKierrosaika(t);
    default: return false;
  }
}

bool kaytaaParamia(uint8_t tunniste) {
  return tunniste == osioLimat || (tunniste >= osioPatiKuoli && tunniste <= osioEpatiSyntyiTaysi);
}

// A player's slime section replaces all of its blobs.
void tyhjennaLimat(int i) {
  Player& p = player[i];
  for (int b = 0; p.lima && b < limoja; ++b) p.lima[b].aika = 0;
  p.limacount = 0;
}

// Coords: the velocity is the position change over the frames between two states;
// a second state at the same frame keeps the velocity it had.
void sovellaCoords(int i, const unsigned char* c, int64_t frame) {
  Player& p = player[i];
  const float xv = p.xvauhti, yv = p.yvauhti;
  const short kuolema = p.kuolema;
  lueCoords(&p, c);
  const int64_t g = tilaFrame[i] >= 0 ? frame - tilaFrame[i] : 0;
  if (g > 0) {
    p.xvauhti /= (float)g;
    p.yvauhti /= (float)g;
  } else {
    p.xvauhti = xv;
    p.yvauhti = yv;
  }
  tilaFrame[i] = std::max(tilaFrame[i], frame);
  // A ship the host has alive has energy left, however little the byte could show;
  // at zero the client's world step would blow it up.
  if (p.kuolema < 1 && p.energia <= 0) p.energia = (float)p.alus.energia / 400;
  // The revival frame (timer 1) may fall between two states; the world step still
  // has to see it to burst the swirl into the ship.
  if (kuolema > 1 && p.kuolema < 1) p.kuolema = 1;
}

// Walks a FRAME-form payload: frame, coords mask, coords, sections. Checks only, or
// (once checked) applies as well.
bool kayKehys(const unsigned char* data, int pituus, bool soveltaa, uint32_t& frame) {
  Lukija l(data, pituus);
  uint16_t maski;
  if (!l.u32(frame) || !l.u16(maski)) return false;
  for (int i = 0; i < maxPlayers; ++i) {
    if (!(maski & (1u << i))) continue;
    const unsigned char* c = l.kohta();
    if (!pelaajaIndeksi(i) || !l.ohita(coordkoko)) return false;
    if (soveltaa) sovellaCoords(i, c, frame);
  }
  while (l.jaljella() > 0) {
    uint8_t tunniste, param, maara;
    if (!l.tavu(tunniste) || !l.tavu(param) || !l.tavu(maara)) return false;
    if (tunniste == 0 || tunniste >= osioja) return false;
    if (kaytaaParamia(tunniste) ? tunniste == osioLimat && !pelaajaIndeksi(param) : param != 0) return false;
    if (soveltaa && tunniste == osioLimat) tyhjennaLimat(param);
    Lukutila t{l, param, soveltaa, frame};
    for (int n = 0; n < maara; ++n)
      if (!lueTietue(t, tunniste)) return false;
  }
  return l.ok();
}

void sovella(const unsigned char* data, int pituus) {
  uint32_t frame;
  kayKehys(data, pituus, true, frame);
}

void poistaJonosta() {
  const int n = jono[0].pituus;
  std::memmove(jonoData, jonoData + n, (size_t)(jonoTavuja - n));
  jonoTavuja -= n;
  std::copy(jono + 1, jono + jonossa, jono);
  --jonossa;
}

void sovellaEnsimmainen() {
  sovella(jonoData, jono[0].pituus);
  poistaJonosta();
}

// The queue is bounded: when it is full the oldest FRAME is applied early.
void jonoon(uint32_t frame, const unsigned char* data, int pituus) {
  while (jonossa > 0 && (jonossa == jononPituus || jonoTavuja + pituus > jononTavut)) sovellaEnsimmainen();
  std::memcpy(jonoData + jonoTavuja, data, (size_t)pituus);
  jonoTavuja += pituus;
  jono[jonossa++] = Jonossa{frame, pituus};
}

// The world is about to be replaced: nothing of the old one may linger.
void tyhjennaMaailma(uint32_t frame) {
  for (int i = 0; i < maxPlayers; ++i) {
    Player& p = player[i];
    for (bool e : {false, true}) {
      // Slots past the ship's own are never flown or drawn, and a respawn clears its new range.
      Pati* s = padit(p, e);
      for (int k = 0, n = kaytossa(p, e); k < n; ++k) s[k].aika = 0;
    }
    tyhjennaLimat(i);
    tilaFrame[i] = -1;
    playerrajahtaa[i] = false;
  }
  for (Pati& m : pikkumies) m.aika = 0;
  odottavia = 0;
  asteroidirajahtaa = false;
  while (jonossa > 0 && jono[0].frame <= frame) poistaJonosta();
}

}  // namespace

void aloitaAsiakas() {
  std::fill(tilaFrame, tilaFrame + maxPlayers, -1);
  std::fill(alusvalintaPyynto, alusvalintaPyynto + maxPlayers, -1);
  std::fill(isannanKierrosajat, isannanKierrosajat + maxPlayers, -1);
  odottavia = 0;
  jonossa = jonoTavuja = 0;
  peliVastaanotto = PeliVastaanotto{-1, 0, false, -1};
}

bool tarkistaPeliMsg(uint8_t laji, const unsigned char* data, int pituus) {
  uint32_t frame;
  return saaLahettaa(laji, Lahettaja::isanta) && pituus <= maxIsannanKehys &&
         kayKehys(data, pituus, false, frame);
}

bool kasittelePeliMsg(uint8_t laji, const unsigned char* data, int pituus, int asiakkaanFrame) {
  if (!tarkistaPeliMsg(laji, data, pituus)) return false;
  uint32_t frame;
  Lukija(data, pituus).u32(frame);
  PeliVastaanotto& v = peliVastaanotto;
  switch (laji) {
    case lajiFrame:
      v.uusinFrame = std::max<int64_t>(v.uusinFrame, frame);
      jonoon(frame, data, pituus);
      if ((int64_t)frame <= asiakkaanFrame) {
        ++v.myohassa;
        sovellaErat(asiakkaanFrame);
      }
      break;
    case lajiResyncAlku:
      tyhjennaMaailma(frame);
      v.resyncKesken = true;
      sovella(data, pituus);
      break;
    case lajiResyncOsa: sovella(data, pituus); break;
    default:  // the end
      sovella(data, pituus);
      v.resyncKesken = false;
      v.resyncValmis = frame;
      v.uusinFrame = std::max<int64_t>(v.uusinFrame, frame);
      break;
  }
  return true;
}

void sovellaErat(int frame) {
  while (jonossa > 0 && (int64_t)jono[0].frame <= frame) sovellaEnsimmainen();
  if (odottavia > 0 && !asteroidirajahtaa) {
    asteroidirajahtaa = true;
    arajahdys[0] = odottavatRajahdykset[0].x;
    arajahdys[1] = odottavatRajahdykset[0].y;
    std::copy(odottavatRajahdykset + 1, odottavatRajahdykset + odottavia, odottavatRajahdykset);
    --odottavia;
  }
}

// ==== Client to host ======================================================================

uint8_t napitBitteina(const Player& p) {
  return (uint8_t)((p.pfire ? nappiTuli : 0) | (p.pease ? nappiErikois : 0) | (p.pylos ? nappiKaasu : 0) |
                   (p.pleft ? nappiVasen : 0) | (p.pright ? nappiOikea : 0) | (p.palas ? nappiPakki : 0));
}

namespace {

void aloitaAsiakkaanViesti(Kirjoittaja& k, uint8_t laji) {
  k.tavu(laji);
  k.u16(0);
}

const uint8_t kaikkiNapit = 63;

// Walks a client's payload; applies as well once it has been checked.
bool kayAsiakkaanViesti(uint8_t laji, const unsigned char* data, int pituus, bool soveltaa, int yhteys,
                        const int* omistaja) {
  Lukija l(data, pituus);
  auto oma = [&](int slot) { return soveltaa && omistaja[slot] == yhteys; };
  switch (laji) {
    case lajiNapit: {
      AsiakasYhteys y{true, 0, 0, 0};
      uint8_t maara;
      if (!l.u16(y.jarjestys) || !l.u32(y.kuitattu) || !l.u32(y.nahtyFrame) || !l.tavu(maara)) return false;
      if (maara > maxPlayers) return false;
      for (int n = 0; n < maara; ++n) {
        uint8_t slot, napit;
        if (!l.tavu(slot) || !l.tavu(napit) || slot >= maxPlayers || (napit & ~kaikkiNapit)) return false;
        if (!oma(slot)) continue;
        Player& p = player[slot];
        p.pfire = napit & nappiTuli;
        p.pease = napit & nappiErikois;
        p.pylos = napit & nappiKaasu;
        p.pleft = napit & nappiVasen;
        p.pright = napit & nappiOikea;
        p.palas = napit & nappiPakki;
      }
      if (soveltaa) asiakasYhteys[yhteys] = y;
      break;
    }
    case lajiValinta: {
      uint8_t slot, tyyppi;
      if (!l.tavu(slot) || !l.tavu(tyyppi) || slot >= maxPlayers || tyyppi >= alustyyppeja) return false;
      if (oma(slot)) alusvalinta[slot] = tyyppi;
      break;
    }
    case lajiLahto: break;
    default: return false;
  }
  return l.ok() && l.jaljella() == 0;
}

}  // namespace

int koodaaNapit(unsigned char* buf, int tila, uint16_t jarjestys, uint32_t saatu, uint32_t nahtyFrame,
                const SlotinNapit* napit, int maara) {
  if (maara < 0 || maara > maxPlayers) return 0;
  Kirjoittaja k(buf, tila);
  aloitaAsiakkaanViesti(k, lajiNapit);
  k.u16(jarjestys);
  k.u32(saatu);
  k.u32(nahtyFrame);
  k.tavu((uint8_t)maara);
  for (int n = 0; n < maara; ++n) {
    k.tavu(napit[n].pelaaja);
    k.tavu(napit[n].napit & kaikkiNapit);
  }
  return valmisViesti(k);
}

int koodaaValinta(unsigned char* buf, int tila, int pelaaja, int alusnumero) {
  Kirjoittaja k(buf, tila);
  aloitaAsiakkaanViesti(k, lajiValinta);
  k.tavu((uint8_t)pelaaja);
  k.tavu((uint8_t)alusnumero);
  return valmisViesti(k);
}

int koodaaLahto(unsigned char* buf, int tila) {
  Kirjoittaja k(buf, tila);
  aloitaAsiakkaanViesti(k, lajiLahto);
  return valmisViesti(k);
}

bool tarkistaAsiakkaanMsg(uint8_t laji, const unsigned char* data, int pituus) {
  return pituus <= maxAsiakkaanKehys && kayAsiakkaanViesti(laji, data, pituus, false, -1, nullptr);
}

AsiakkaanTulos kasitteleAsiakkaanMsg(int yhteys, uint8_t laji, const unsigned char* data, int pituus,
                                     const int* omistaja) {
  if (yhteys < 0 || yhteys >= maxYhteyksia || !tarkistaAsiakkaanMsg(laji, data, pituus))
    return AsiakkaanTulos::virhe;
  kayAsiakkaanViesti(laji, data, pituus, true, yhteys, omistaja);
  return laji == lajiLahto ? AsiakkaanTulos::lahtee : AsiakkaanTulos::ok;
}

// ==== The in-game loops ===================================================================
//
// Both loops reuse the frame clock's catch-up (calculateUpTo) with their own count of
// the world's frames, which screens opened over the match leave alone. Their socket
// wait takes the place of the paced loops' idle sleep.

VerkkoLaskurit verkkoLaskurit;
void (*verkkoAskeleenJalkeen)(int) = nullptr;

namespace {

enum class Rooli { ei, isanta, asiakas };
Rooli rooli = Rooli::ei;
int maailmanFrame = 0;
bool valintaAuki = false;          // one choice screen at a time on a machine
const Uint32 enintaanOdotus = 20;  // ms a pass waits on its sockets at most
const Uint32 piirtoVali = 20;      // ms: a loop waiting for frames still draws this often

Uint32 nyt() { return pacingTicks(); }

unsigned char viesti[maxFrameViesti];
unsigned char lyhyt[maxFrameViesti];

// ms until the clock reaches frame `f` (counted from `starttime`, less `etuajassa` ms).
Uint32 aikaaFrameen(int f, double etuajassa) {
  const double hetki = f * 1000.0 / calculatefps - etuajassa;
  const double jaljella = hetki - (double)(Uint32)(nyt() - (Uint32)starttime);
  return jaljella <= 0 ? 0 : (Uint32)std::min<double>(std::ceil(jaljella), enintaanOdotus);
}

// A world step of the loop's role for each frame due up to `tavoite`; returns how many
// frames the catch-up skipped.
int laskeMaailma(int tavoite, CatchUp kiinniotto, int raja, void (*askel)(int)) {
  const int ennen = maailmanFrame;
  oldframecounter = maailmanFrame;
  const int laskettu = calculateUpTo(tavoite, kiinniotto, raja, askel);
  maailmanFrame = oldframecounter;
  verkkoLaskurit.maailmanFrame = maailmanFrame;
  return maailmanFrame - ennen - laskettu;
}

// Each row of keys steers a human of this machine, in slot order; the menus read row 0's.
void asetaNappaimisto(const int* omat, int maara) {
  for (int r = 0; r < 4; ++r) nappainrivinPelaaja[r] = r < maara ? omat[r] : -1;
  if (maara == 0) nappainrivinPelaaja[0] = 0;
}

// ---- The menu over a running match (Escape) ----------------------------------------------

enum ValikonKohta { vkLahde, vkAsetukset, vkPalaa };
int valikko = -1;  // the cursor while the menu is open
const char* const valikonRivit[3] = {"Leave the Game", "Settings", "Back to the Game"};
const char* ilmoitus = nullptr;  // a notice drawn over the field ("waiting for the host...")

void piirraPaalle() {
  if (valikko < 0 && !ilmoitus) return;
  tummennaRuutu(valikko >= 0 ? 0.55f : 0.25f);
  valikonNakyma(-24, 24);
  glEnable(GL_TEXTURE_2D);
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE);
  if (ilmoitus) {
    glColor4f(1, 1, 1, 1);
    gl_println(keskitettyX(ilmoitus, 0.8f), -8, -40, ilmoitus, 0.8f);
  }
  if (valikko >= 0) {
    piirraValikonOtsikko("Network Game");
    for (int r = 0; r < 3; ++r) piirraRivi(-8, 4 - 2.5f * r, valikonRivit[r], nullptr, 0);
    piirraAlarivi("the match goes on meanwhile");
    piirraKursori(-8, tekstinLoppu(-8, valikonRivit[valikko], 0.8f), 4 - 2.5f * valikko);
  }
  glEnable(GL_TEXTURE_2D);
  glEnable(GL_LIGHTING);
  glEnable(GL_DEPTH_TEST);
  glDisable(GL_BLEND);
  glColor4f(1, 1, 1, 1);
}

// Escape opens the menu; its last row, and Escape again, close it.
void peliValikko() {
  if (valikko < 0) {
    if (!escpressed) return;
    escpressed = false;
    valikko = vkPalaa;
    return;
  }
  if (!valikonSyote(valikko, vkPalaa)) return;
  const int valittu = valikko;
  valikko = -1;
  if (valittu == vkLahde) lahdeOttelusta();
  if (valittu == vkAsetukset) netGameSets();
  unohdaNapit();
}

Uint32 piirretty = 0;

// One picture of the match when the world moved or a while has passed.
void piirra(int laskettu) {
  if (laskettu == 0 && nyt() - piirretty < piirtoVali) return;
  piirretty = nyt();
  kuvanPaalle = piirraPaalle;
  drawedframes++;
  pelinPiirto(framecounter);
  framesdrawn++;
  kuvanPaalle = nullptr;
  updateAudio();
}

// ---- Host ----------------------------------------------------------------------------------

const uint32_t taysiRaja = 8 * 1024;       // bytes in flight up to which a client gets whole FRAMEs
const uint32_t tapahtumaRaja = 16 * 1024;  // ... and events only; beyond, FRAMEs wait in the program
const int ohjelmanJono = 128 * 1024;       // beyond this the waiting FRAMEs go and a RESYNC follows
const Uint32 hiljaaVapaat = 250;           // ms of silence that release a client's buttons
const Uint32 eiEdistysta = 5000;           // ms without progress that drop it
const Uint32 kierrosIkkuna = 1000;         // the round trip is the least of this many ms' samples
const int isannanKiinniotto = 25;          // frames behind beyond which the host skips ahead

struct Asiakas {
  bool mukana;
  uint64_t annettu;   // bytes handed to the transport since the connection opened
  uint32_t kuitattu;  // of which the client says it has received this many
  Uint32 kuultu, edistyi;
  bool napitPaalla;
  bool resync;
  uint32_t nahty;  // the newest FRAME it has reported
  int kierros, ikkunanPienin;
  Uint32 ikkunanAlku;
  int jonossa;
  unsigned char jono[ohjelmanJono];
};
Asiakas asiakkaat[yhteyksia];

int omistaja[maxPlayers];  // match player -> the connection that flies it: 0 the host, -2 a pilot
bool ottelunLoppu = false;

const int lahetyksia = 256;
struct Lahetys {
  uint32_t frame;
  Uint32 aika;
};
Lahetys lahetykset[lahetyksia];  // recent FRAMEs and when they went, by frame / k

uint32_t lennossa(const Asiakas& a) { return (uint32_t)a.annettu - a.kuitattu; }

bool lahetaAsiakkaalle(int c, const unsigned char* data, int pituus) {
  if (!laheta(c, data, pituus)) return false;
  asiakkaat[c].annettu += (uint64_t)pituus;
  return true;
}

void lahetaResync(int c, uint32_t frame) {
  ResyncKoodaaja r;
  aloitaResync(r, frame);
  while (const int n = seuraavaResyncOsa(r, viesti, sizeof viesti))
    if (!lahetaAsiakkaalle(c, viesti, n)) return;
  asiakkaat[c].resync = false;
}

// The waiting FRAMEs go on while the client takes them (all of them at the end of the match).
void purkaJono(int c, bool kaikki) {
  Asiakas& a = asiakkaat[c];
  int kohta = 0;
  while (kohta < a.jonossa && (kaikki || lennossa(a) <= tapahtumaRaja)) {
    const int n = peliOtsake + (a.jono[kohta + 1] | a.jono[kohta + 2] << 8);
    if (!lahetaAsiakkaalle(c, a.jono + kohta, n)) return;
    kohta += n;
  }
  std::memmove(a.jono, a.jono + kohta, (size_t)(a.jonossa - kohta));
  a.jonossa -= kohta;
}

void jonoon(int c, const unsigned char* data, int pituus) {
  Asiakas& a = asiakkaat[c];
  if (a.jonossa + pituus > ohjelmanJono) {
    a.jonossa = 0;
    a.resync = true;
    ++verkkoLaskurit.hylatyt;
    return;
  }
  std::memcpy(a.jono + a.jonossa, data, (size_t)pituus);
  a.jonossa += pituus;
  ++verkkoLaskurit.jonotetut;
}

}  // namespace

// A FRAME to every client as far as each keeps up: whole, events only, or kept.
void hostLahetaPeli(int f) {
  const int pituus = koodaaFrame((uint32_t)f, viesti, sizeof viesti);
  if (pituus <= 0) return;
  lahetykset[(uint32_t)f / frameVali % lahetyksia] = Lahetys{(uint32_t)f, nyt()};
  int lyhyenPituus = -1;
  for (int c = 1; c < yhteyksia; ++c) {
    Asiakas& a = asiakkaat[c];
    if (!a.mukana || !tcpsoketit[c]) continue;
    if (a.resync) {
      // It missed events: the whole world, once it reads again.
      if (lennossa(a) <= taysiRaja) {
        lahetaResync(c, (uint32_t)f);
        ++verkkoLaskurit.resynct;
      }
      continue;
    }
    const uint32_t n = lennossa(a);
    if (n <= taysiRaja && a.jonossa == 0) {
      lahetaAsiakkaalle(c, viesti, pituus);
      continue;
    }
    if (lyhyenPituus < 0) lyhyenPituus = ilmanCoordseja(viesti, pituus, lyhyt);
    if (n <= tapahtumaRaja && a.jonossa == 0) {
      lahetaAsiakkaalle(c, lyhyt, lyhyenPituus);
      ++verkkoLaskurit.lyhennetyt;
    } else {
      jonoon(c, lyhyt, lyhyenPituus);
    }
  }
}

namespace {

// A ship for a player at the respawn point: drawn now, or chosen by its owner.
void jaaAlus(int i, signed char pyynto) {
  if (odottaaValintaa(i)) return;  // asked already; the hold repeats the request
  if (pyynto == 2)
    pyydaValinta(i);
  else
    annaArvottuAlus(i);
}

void jaaAlukset() {
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    const signed char pyynto = playeruudestaan[i];
    playeruudestaan[i] = 0;
    if (pyynto) jaaAlus(i, pyynto);
  }
}

void isannanAskel(int f) {
  if (ottelunLoppu) return;
  calculateFrame(f);
  jaaAlukset();
  keraaTapahtumat();
  ottelunLoppu = peliloppu() == 1;
  if (ottelunLoppu || f % frameVali == 0) hostLahetaPeli(f);  // the last one carries the final scores
  if (ottelunLoppu) netGameQuit = true;  // a screen open over the match closes for the victory
  if (verkkoAskeleenJalkeen) verkkoAskeleenJalkeen(f);
}

void kierrosaika(int c, uint32_t nahty) {
  Asiakas& a = asiakkaat[c];
  if (nahty == a.nahty) return;
  a.nahty = nahty;
  const Lahetys& l = lahetykset[nahty / frameVali % lahetyksia];
  if (l.frame != nahty) return;
  // A BUTTONS leaves up to 50 ms after the FRAME it reports: the least sample of a
  // while is the one that left at once.
  const int nayte = (int)(nyt() - l.aika);
  if (nyt() - a.ikkunanAlku >= kierrosIkkuna) {
    a.kierros = a.ikkunanPienin;
    a.ikkunanPienin = nayte;
    a.ikkunanAlku = nyt();
  }
  a.ikkunanPienin = std::min(a.ikkunanPienin, nayte);
  if (a.kierros < 0) a.kierros = nayte;
  for (int i = 0; i < saannot::pelaajia(); ++i)
    if (omistaja[i] == c) kierrosaikaMs[i] = a.kierros;
}

void kuultiin(int c, uint8_t laji) {
  Asiakas& a = asiakkaat[c];
  a.kuultu = nyt();
  if (laji == lajiValinta) {
    for (int i = 0; i < maxPlayers; ++i)
      if (alusvalinta[i] >= 0) {
        tarjoaValinta(c, i, alusvalinta[i]);
        alusvalinta[i] = -1;
      }
  }
  if (laji != lajiNapit) return;
  a.napitPaalla = true;
  const AsiakasYhteys& y = asiakasYhteys[c];
  if ((int32_t)(y.kuitattu - a.kuitattu) > 0) {
    a.kuitattu = y.kuitattu;
    a.edistyi = nyt();
  }
  if (lennossa(a) == 0) a.edistyi = nyt();
  kierrosaika(c, y.nahtyFrame);
}

void lueAsiakkaalta(int c) {
  const int saatu = vastaanota(c);
  if (saatu == -2) return;
  if (saatu <= 0) {
    std::printf("yhteys %i katkesi pelissä (%i)\n", c, saatu);
    disconnect(c);
    return;
  }
  Yhteys& y = yhteys[c];
  int kohta = 0;
  while (tcpsoketit[c]) {
    const PeliViesti v = seuraavaPeliViesti(y.saapuneet + kohta, y.saapuneita - kohta, Lahettaja::asiakas);
    if (v.tyyppi == PeliViesti::virhe) {
      std::printf("yhteys %i lähetti kelvottoman viestin\n", c);
      disconnect(c);
      return;
    }
    kohta += v.kulutettu;
    if (v.tyyppi == PeliViesti::kesken) break;
    if (v.tyyppi == PeliViesti::teksti) continue;  // a lobby message still on its way
    const AsiakkaanTulos t = kasitteleAsiakkaanMsg(c, v.laji, v.data, v.pituus, omistaja);
    if (t != AsiakkaanTulos::ok) {
      if (t == AsiakkaanTulos::virhe) std::printf("yhteys %i lähetti kelvottoman viestin\n", c);
      disconnect(c);
      return;
    }
    kuultiin(c, v.laji);
  }
  kuluta(c, kohta);
}

void vapautaNapit(int c) {
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    if (omistaja[i] != c) continue;
    Player& p = player[i];
    p.pylos = p.palas = p.pleft = p.pright = p.pfire = p.pease = false;
  }
}

// A client gone, by its own doing or the host's: its ships are pilots' now, for everyone.
void huomaaPoistuneet() {
  for (int c = 1; c < yhteyksia; ++c) {
    Asiakas& a = asiakkaat[c];
    if (!a.mukana || tcpsoketit[c]) continue;
    a.mukana = false;
    a.jonossa = 0;
    for (int i = 0; i < saannot::pelaajia(); ++i) {
      if (omistaja[i] != c) continue;
      omistaja[i] = -2;
      player[i].ihmispelaaja = false;
      kierrosaikaMs[i] = -1;
      ilmoitaOhjaus(i, false);
    }
  }
}

void aikarajat() {
  const Uint32 t = nyt();
  for (int c = 1; c < yhteyksia; ++c) {
    Asiakas& a = asiakkaat[c];
    if (!a.mukana || !tcpsoketit[c]) continue;
    if (a.napitPaalla && t - a.kuultu > hiljaaVapaat) {
      vapautaNapit(c);
      a.napitPaalla = false;
    }
    if (t - a.edistyi > eiEdistysta) {
      std::printf("yhteys %i ei edistynyt viiteen sekuntiin, pudotetaan\n", c);
      disconnect(c);
    }
  }
}

void isannanKierros(Uint32 odotus) {
  oldframecounter = maailmanFrame;  // what the pass's rules read as the world's frame
  odotaSoketteja((int)odotus);
  if (tcpsoketit[0] && SDLNet_SocketReady(tcpsoketit[0])) {
    // Nobody joins a match under way.
    if (TCPsocket myohainen = SDLNet_TCP_Accept(tcpsoketit[0])) tcpSulku(myohainen);
  }
  for (int c = 1; c < yhteyksia; ++c)
    if (asiakkaat[c].mukana && tcpsoketit[c] && SDLNet_SocketReady(tcpsoketit[c])) lueAsiakkaalta(c);
  huomaaPoistuneet();
  valintaAjat();
  verkkoLaskurit.pudotetutFramet +=
      laskeMaailma(readFrameClock(), CatchUp::KeepOne, isannanKiinniotto, isannanAskel);
  aikarajat();
  for (int c = 1; c < yhteyksia; ++c)
    if (asiakkaat[c].mukana && tcpsoketit[c]) purkaJono(c, false);
  tyhjennaJonot();
  huomaaPoistuneet();
}

// A human of this machine at the respawn point chooses on this screen, one at a time.
void isannanValinnat() {
  if (valintaAuki) return;
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    if (omistaja[i] != 0 || !odottaaValintaa(i)) continue;
    valintaAuki = true;
    const int n = netValitseAlus(i, valinnanAikaaMs(i));
    valintaAuki = false;
    if (n >= 0 && !netGameQuit) tarjoaValinta(0, i, n);
    unohdaNapit();
    return;
  }
}

}  // namespace

void aloitaIsannanOttelu() {
  rooli = Rooli::isanta;
  netGameQuit = false;
  ottelunLoppu = false;
  verkkoLaskurit = VerkkoLaskurit{};
  int omat[4], omia = 0;
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    const int s = ottelunPaikka[i];
    omistaja[i] = mpstatus[s] == 3 ? pelaajasoketista[s] : -2;
    if (omistaja[i] == 0 && omia < 4) omat[omia++] = i;
    kierrosaikaMs[i] = -1;
  }
  asetaNappaimisto(omat, omia);
  for (Lahetys& l : lahetykset) l = Lahetys{UINT32_MAX, 0};
  std::fill(alusvalinta, alusvalinta + maxPlayers, -1);
  aloitaValinnat();
  aloitaKeraaja();
  maailmanFrame = readFrameClock();
  for (int c = 1; c < yhteyksia; ++c) {
    Asiakas& a = asiakkaat[c];
    a.mukana = tcpsoketit[c] != nullptr;
    if (!a.mukana) continue;
    const Yhteys& y = yhteys[c];
    a.annettu = y.lahetetty + (uint64_t)(y.jononLoppu - y.jononAlku);
    a.kuitattu = (uint32_t)a.annettu;  // the lobby's bytes count as received until it says
    a.kuultu = a.edistyi = a.ikkunanAlku = nyt();
    a.napitPaalla = false;
    a.nahty = UINT32_MAX;
    a.kierros = -1;
    a.ikkunanPienin = INT32_MAX;
    a.jonossa = 0;
    lahetaResync(c, (uint32_t)maailmanFrame);
  }
}

namespace {

// ---- Client --------------------------------------------------------------------------------

const int alkuViive = frameVali + 1, pieninViive = 1, suurinViive = 20;
const Uint32 viiveenTarkistus = 5000;  // ms of spare frames before the delay shrinks
const int ennakkoRaja = 25;            // frames a client may fly on past the newest FRAME
const Uint32 odotusIlmoitus = 1000, hiljainenIsanta = 10000;
const Uint32 napitVahintaan = 20, napitViimeistaan = 50;
const uint32_t kuittausVali = 4096;
const Uint32 oikaisuAika = 100;  // ms over which a small correction is drawn away
const float oikaisuRaja = 10;

struct Asiakkaan {
  bool alkanut;       // a RESYNC has given the world
  int omat[4], omia;  // this machine's players
  Uint32 kuultu;      // when the host was last heard
  // The host's clock: the frame of a FRAME less its arrival, the best of the last two seconds.
  double etu, edellinenEtu;
  Uint32 etuAlku;
  int viive, pieninVara, myohassa;
  Uint32 varaAlku;
  uint8_t napit[4];
  Uint32 napitLahti;
  uint32_t kuitattu;
  uint16_t jarjestys;
  // Drawing: the correction of each ship still being eased away, and since when.
  float oikaisu[maxPlayers][2];
  Uint32 oikaisuAlku[maxPlayers];
  const char* voitto;  // a victory message has come (handled by the loop, not a nested screen)
  int voitonPituus;
} asiakas;
unsigned char voittoViesti[12 + 4 * maxPlayers];

double kellonEtu() { return std::max(asiakas.etu, asiakas.edellinenEtu); }

void kellonNayte(uint32_t frame) {
  Asiakkaan& a = asiakas;
  const double etu = frame * 1000.0 / calculatefps - (double)(Uint32)(nyt() - (Uint32)starttime);
  if (nyt() - a.etuAlku >= 1000) {
    a.edellinenEtu = a.etu;
    a.etu = -1e18;
    a.etuAlku = nyt();
  }
  a.etu = std::max(a.etu, etu);
}

int asiakkaanTavoite() {
  const double kello = (double)(Uint32)(nyt() - (Uint32)starttime) + kellonEtu();
  const int tavoite = (int)std::floor(kello * calculatefps / 1000.0) - asiakas.viive;
  return (int)std::min<int64_t>(tavoite, peliVastaanotto.uusinFrame + ennakkoRaja);
}

// The playout delay grows by a frame for each FRAME that came too late and shrinks
// by one after five seconds in which every FRAME came at least two frames early.
void viiveenNayte(uint32_t frame, bool myohassa) {
  Asiakkaan& a = asiakas;
  if (myohassa) {
    a.viive = std::min(suurinViive, a.viive + 1);
    a.pieninVara = INT32_MAX;
    a.varaAlku = nyt();
  } else {
    a.pieninVara = (int)std::min<int64_t>(a.pieninVara, (int64_t)frame - maailmanFrame);
  }
  if (nyt() - a.varaAlku >= viiveenTarkistus) {
    if (a.pieninVara >= 2 && a.pieninVara != INT32_MAX) a.viive = std::max(pieninViive, a.viive - 1);
    a.pieninVara = INT32_MAX;
    a.varaAlku = nyt();
  }
  verkkoLaskurit.viive = a.viive;
}

// A correction under oikaisuRaja is drawn away over oikaisuAika; a larger one snaps.
void muistaOikaisut(const float (&ennen)[maxPlayers][2]) {
  for (int i = 0; i < saannot::pelaajia(); ++i) {
    const float dx = ennen[i][0] - player[i].x, dy = ennen[i][1] - player[i].y;
    if (dx == 0 && dy == 0) continue;
    const bool pieni = dx * dx + dy * dy < oikaisuRaja * oikaisuRaja && player[i].kuolema < 1;
    asiakas.oikaisu[i][0] = pieni ? piirtoSiirto[i][0] + dx : 0;
    asiakas.oikaisu[i][1] = pieni ? piirtoSiirto[i][1] + dy : 0;
    asiakas.oikaisuAlku[i] = nyt();
  }
}

void paivitaPiirtoSiirrot() {
  for (int i = 0; i < maxPlayers; ++i) {
    const float jaljella = 1.0f - (float)(nyt() - asiakas.oikaisuAlku[i]) / oikaisuAika;
    const float k = std::max(0.0f, jaljella);
    piirtoSiirto[i][0] = asiakas.oikaisu[i][0] * k;
    piirtoSiirto[i][1] = asiakas.oikaisu[i][1] * k;
  }
}

void asiakkaanAskel(int f) {
  calculateFrame(f);
  float ennen[maxPlayers][2];
  for (int i = 0; i < maxPlayers; ++i) {
    ennen[i][0] = player[i].x;
    ennen[i][1] = player[i].y;
  }
  sovellaErat(f);
  muistaOikaisut(ennen);
  if (verkkoAskeleenJalkeen) verkkoAskeleenJalkeen(f);
}

void paataAsiakas(const char* syy) {
  netGameQuit = true;
  escpressed = true;  // a screen open over the match closes
  if (syy) katkaiseHostista(syy);
}

bool alkaa(const unsigned char* p, int n, const char* avain) {
  const int a = (int)std::strlen(avain);
  return n >= a && std::memcmp(p, avain, (size_t)a) == 0;
}

void isannanTeksti(const PeliViesti& v) {
  if (alkaa(v.data, v.pituus, "quiting")) {
    paataAsiakas("the host left the game");
    return;
  }
  // The victory follows the last FRAME: everything before it is applied first.
  sovellaErat(INT32_MAX);
  const int n = std::min<int>(v.pituus, (int)sizeof voittoViesti);
  std::memcpy(voittoViesti, v.data, (size_t)n);
  asiakas.voitto = (const char*)voittoViesti;
  asiakas.voitonPituus = n;
  netGameQuit = true;
  escpressed = true;
}

void lueHostilta() {
  const int saatu = vastaanota(hostiYhteys);
  if (saatu == -2) return;
  if (saatu <= 0) {
    paataAsiakas("the connection to the host was lost");
    return;
  }
  asiakas.kuultu = nyt();
  Yhteys& y = yhteys[hostiYhteys];
  int kohta = 0;
  while (joinsoketti && !netGameQuit) {
    const PeliViesti v = seuraavaPeliViesti(y.saapuneet + kohta, y.saapuneita - kohta, Lahettaja::isanta);
    if (v.tyyppi == PeliViesti::virhe) {
      paataAsiakas("the host sent something this game cannot read");
      return;
    }
    kohta += v.kulutettu;
    if (v.tyyppi == PeliViesti::kesken) break;
    if (v.tyyppi == PeliViesti::teksti) {
      isannanTeksti(v);
      continue;
    }
    uint32_t frame = 0;
    Lukija(v.data, v.pituus).u32(frame);
    const int myohassa = peliVastaanotto.myohassa;
    if (!kasittelePeliMsg(v.laji, v.data, v.pituus, maailmanFrame)) {
      paataAsiakas("the host sent something this game cannot read");
      return;
    }
    if (peliVastaanotto.resyncValmis >= 0) {
      // The world is the host's at that frame: the FRAMEs after it wait for theirs.
      maailmanFrame = (int)peliVastaanotto.resyncValmis;
      peliVastaanotto.resyncValmis = -1;
      asiakas.alkanut = true;
    }
    if (v.laji != lajiFrame && v.laji != lajiResyncLoppu) continue;
    kellonNayte(frame);
    if (v.laji == lajiFrame) viiveenNayte(frame, peliVastaanotto.myohassa != myohassa);
  }
  if (joinsoketti) kuluta(hostiYhteys, kohta);
}

void lahetaNapit() {
  Asiakkaan& a = asiakas;
  SlotinNapit napit[4];
  bool muuttui = false;
  for (int k = 0; k < a.omia; ++k) {
    napit[k] = SlotinNapit{(uint8_t)a.omat[k], napitBitteina(player[a.omat[k]])};
    muuttui = muuttui || napit[k].napit != a.napit[k];
  }
  const uint32_t saatu = (uint32_t)yhteys[hostiYhteys].vastaanotettu;
  const Uint32 vali = nyt() - a.napitLahti;
  const bool aika = (muuttui && vali >= napitVahintaan) || vali >= napitViimeistaan;
  if (!aika && saatu - a.kuitattu < kuittausVali) return;
  const uint32_t nahty = (uint32_t)std::max<int64_t>(0, peliVastaanotto.uusinFrame);
  const int n = koodaaNapit(viesti, sizeof viesti, ++a.jarjestys, saatu, nahty, napit, a.omia);
  if (!laheta(hostiYhteys, viesti, n)) return;
  for (int k = 0; k < a.omia; ++k) a.napit[k] = napit[k].napit;
  a.napitLahti = nyt();
  a.kuitattu = saatu;
}

// Each slot of another machine shows the round trip the host measured to it; the
// host's own show this machine's round trip to the host.
void asiakkaanKierrosajat() {
  const int oma = asiakas.omia > 0 ? isannanKierrosajat[asiakas.omat[0]] : -1;
  for (int i = 0; i < saannot::pelaajia(); ++i)
    kierrosaikaMs[i] = isannanKierrosajat[i] < 0 ? oma : isannanKierrosajat[i];
  for (int k = 0; k < asiakas.omia; ++k) kierrosaikaMs[asiakas.omat[k]] = -1;
}

Uint32 asiakkaanOdotus() {
  if (!asiakas.alkanut || peliVastaanotto.resyncKesken) return enintaanOdotus;
  return aikaaFrameen(maailmanFrame + 1 + asiakas.viive, kellonEtu());
}

void asiakkaanKierros(Uint32 odotus) {
  if (!joinsoketti || netGameQuit) return;
  oldframecounter = maailmanFrame;
  // Every pass reads: a delaying transport may hold bytes the socket no longer shows.
  odotaSoketteja((int)odotus);
  lueHostilta();
  if (!joinsoketti || netGameQuit) return;
  if (asiakas.alkanut && !peliVastaanotto.resyncKesken) {
    const int tavoite = asiakkaanTavoite();
    if (tavoite > maailmanFrame) laskeMaailma(tavoite, CatchUp::DropBacklog, suurinViive, asiakkaanAskel);
    sovellaErat(maailmanFrame);
  }
  lahetaNapit();
  asiakkaanKierrosajat();
  if (nyt() - asiakas.kuultu > hiljainenIsanta) paataAsiakas("the host stopped answering");
  tyhjennaJonot();
}

// The ship choice the host asked of a player of this machine, one at a time.
void asiakkaanValinnat() {
  if (valintaAuki) return;
  for (int k = 0; k < asiakas.omia; ++k) {
    const int i = asiakas.omat[k];
    if (alusvalintaPyynto[i] < 0) continue;
    const double jaljella = (alusvalintaPyynto[i] - maailmanFrame - asiakas.viive) * 1000.0 / calculatefps;
    alusvalintaPyynto[i] = -1;
    valintaAuki = true;
    const int n = netValitseAlus(i, (int)std::max(0.0, jaljella));
    valintaAuki = false;
    if (n >= 0 && !netGameQuit) laheta(hostiYhteys, viesti, koodaaValinta(viesti, sizeof viesti, i, n));
    unohdaNapit();
    return;
  }
}

void aloitaAsiakasPeli() {
  rooli = Rooli::asiakas;
  netGameQuit = false;
  verkkoLaskurit = VerkkoLaskurit{};
  aloitaAsiakas();
  Asiakkaan& a = asiakas;
  a = Asiakkaan{};
  for (int s = 0; s < 16; ++s)
    if ((omatPaikat >> s & 1u) && ottelunPelaaja[s] >= 0 && a.omia < 4) a.omat[a.omia++] = ottelunPelaaja[s];
  asetaNappaimisto(a.omat, a.omia);
  a.kuultu = a.etuAlku = a.varaAlku = a.napitLahti = nyt();
  a.etu = a.edellinenEtu = -1e18;
  a.viive = verkkoLaskurit.viive = alkuViive;
  a.pieninVara = INT32_MAX;
  a.kuitattu = (uint32_t)yhteys[hostiYhteys].vastaanotettu;
  for (int i = 0; i < maxPlayers; ++i) kierrosaikaMs[i] = -1;
}

}  // namespace

// ---- Both ----------------------------------------------------------------------------------

void suljeOttelu() {
  rooli = Rooli::ei;
  netGameQuit = true;
  valikko = -1;
  ilmoitus = nullptr;
  for (int r = 0; r < 4; ++r) nappainrivinPelaaja[r] = r;
  for (auto& s : piirtoSiirto) s[0] = s[1] = 0;
  std::fill(kierrosaikaMs, kierrosaikaMs + maxPlayers, -1);
  unohdaNapit();
}

void verkkoTausta() {
  if (rooli == Rooli::isanta) isannanKierros(0);
  if (rooli == Rooli::asiakas) asiakkaanKierros(0);
}

void lahdeOttelusta() {
  if (netGameQuit) return;
  netGameQuit = true;
  if (rooli == Rooli::isanta) {
    hostQuit();
    tyhjennaJonot();
  } else if (rooli == Rooli::asiakas && joinsoketti) {
    laheta(hostiYhteys, viesti, koodaaLahto(viesti, sizeof viesti));
    tyhjennaJonot();
    suljeYhteys(hostiYhteys);
  }
}

void netHostPeli() {
  aloitaIsannanOttelu();
  escpressed = false;
  while (!netGameQuit) {
    const int ennen = maailmanFrame;
    isannanKierros(aikaaFrameen(maailmanFrame + 1, 0));
    processEvents();
    peliValikko();
    if (valikko < 0) isannanValinnat();
    piirra(maailmanFrame - ennen);
  }
  if (ottelunLoppu) {
    // Whatever waits for a slow client goes before the victory, which follows it.
    for (int c = 1; c < yhteyksia; ++c) {
      if (!asiakkaat[c].mukana || !tcpsoketit[c]) continue;
      purkaJono(c, true);
      if (asiakkaat[c].resync) lahetaResync(c, (uint32_t)maailmanFrame);
    }
    netVictory();
  }
  suljeOttelu();
}

void netJoinPeli() {
  aloitaAsiakasPeli();
  escpressed = false;
  while (!netGameQuit && joinsoketti) {
    const int ennen = maailmanFrame;
    asiakkaanKierros(asiakkaanOdotus());
    if (netGameQuit || !joinsoketti) break;
    processEvents();
    peliValikko();
    if (valikko < 0) asiakkaanValinnat();
    ilmoitus = nyt() - asiakas.kuultu > odotusIlmoitus ? "waiting for the host..." : nullptr;
    paivitaPiirtoSiirrot();
    piirra(maailmanFrame - ennen);
  }
  if (asiakas.voitto) kasitteleVictoryMsg(asiakas.voitto, asiakas.voitonPituus);
  suljeOttelu();
}
