// The network lobby: the transport every network loop runs on, the host's lobby with
// its slot table, the client's side of it, the message framing, the start handshake,
// the lobby screens and the hand-over to the match.
#include "net.h"

#include <GL/gl.h>
#include <SDL/SDL.h>
#include <dirent.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Main.h"
#include "Menu.h"
#include "Player.h"
#include "Sets.h"
#include "Teksti.h"
#include "audio.h"
#include "chat.h"
#include "ctf.h"
#include "glapi.h"
#include "nethelp.h"
#include "netpeli.h"
#include "peliloppu.h"
#include "scene.h"

bool hostpeli = false;
bool joinpeli = false;

int verkkoportti = 9999;
int (*tcpLahetys)(TCPsocket, const void*, int) = SDLNet_TCP_Send;
void (*tcpSulku)(TCPsocket) = SDLNet_TCP_Close;
int (*tcpVastaanotto)(TCPsocket, void*, int) = SDLNet_TCP_Recv;
Yhteys yhteys[yhteyksia + 1];

TCPsocket tcpsoketit[yhteyksia];
int tila[yhteyksia];
int timeout[yhteyksia];
int pelaajiasoketista[yhteyksia];
int soketteja = 0;
int mptiimi[16];
int mpstatus[16];
int pelaajasoketista[16];
int playerslots = 16;
int hosteja = 1;
int timeoutaika = 250;
Uint32 timeouttarkistettu = 0;

TCPsocket joinsoketti = nullptr;
int joinaavia = 1;
bool gamequited = false, started2 = false, alkujuttusaatu = false, valmiinaalottamaan = false;
unsigned omatPaikat = 0;
const char* eroSyy = "";

int ottelunPaikka[16];
int ottelunPelaaja[16] = {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1};

namespace {

void piirraSuoraan(void (*ruutu)(int), int kohta) { ruutu(kohta); }

}  // namespace

void (*aulanPiirto)(void (*)(int), int) = piirraSuoraan;

// ---- Transport ---------------------------------------------------------------------

namespace {

const int tuoreYhteys = 40;  // keep-alive rounds a connection lives without a message
const int vastaanottoKerralla = 64000;
const Uint32 hiljainenHosti = 10000;  // ms without a team table before a client gives up
const Uint32 elossaVali = 500;        // ms between a client's keep-alive messages

std::array<int, yhteyksia + 1> tyhjatKuvaajat() {
  std::array<int, yhteyksia + 1> a;
  a.fill(-1);
  return a;
}
std::array<int, yhteyksia + 1> kuvaajat = tyhjatKuvaajat();  // each connection's descriptor

SDLNet_SocketSet joukko = nullptr;
TCPsocket joukossa[yhteyksia + 1];
int joukossaLkm = 0;

Uint32 nytMs() {
  using namespace std::chrono;
  return static_cast<Uint32>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

TCPsocket& soketinPaikka(int i) { return i == hostiYhteys ? joinsoketti : tcpsoketit[i]; }

bool kaytossa(int fd) { return std::find(kuvaajat.begin(), kuvaajat.end(), fd) != kuvaajat.end(); }

// SDL_net keeps a socket's descriptor to itself. Of this process's open descriptors the
// one wanted is the socket whose peer (getpeername) is the address SDL_net reports and
// that no other connection has taken; one that cannot be told apart so is not used.
int etsiKuvaaja(TCPsocket s) {
  const IPaddress* osoite = SDLNet_TCP_GetPeerAddress(s);
  DIR* kansio = osoite ? opendir("/proc/self/fd") : nullptr;
  if (!kansio) return -1;
  int loydetty = -1, osumia = 0;
  while (const dirent* e = readdir(kansio)) {
    char* loppu = nullptr;
    const long fd = std::strtol(e->d_name, &loppu, 10);
    if (loppu == e->d_name || *loppu || fd == dirfd(kansio) || kaytossa(static_cast<int>(fd))) continue;
    sockaddr_in a{};
    socklen_t koko = sizeof a;
    if (getpeername(static_cast<int>(fd), reinterpret_cast<sockaddr*>(&a), &koko) != 0) continue;
    if (a.sin_family != AF_INET || a.sin_addr.s_addr != osoite->host || a.sin_port != osoite->port) continue;
    loydetty = static_cast<int>(fd);
    ++osumia;
  }
  closedir(kansio);
  return osumia == 1 ? loydetty : -1;
}

bool odottaaVuoroa() { return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR; }

// A connection that cannot go on: a host drops the client, a client leaves its host.
void pudota(int i) {
  if (i == hostiYhteys)
    katkaiseHostista("the connection to the host was lost");
  else
    disconnect(i);
}

bool tyhjennaJono(int i) {
  Yhteys& y = yhteys[i];
  while (y.jononAlku < y.jononLoppu) {
    const int maara = y.jononLoppu - y.jononAlku;
    errno = 0;
    const int lahti = tcpLahetys(soketti(i), y.jono + y.jononAlku, maara);
    if (lahti > 0) {
      y.jononAlku += lahti;
      y.lahetetty += static_cast<uint64_t>(lahti);
    }
    if (lahti >= maara) continue;
    if (odottaaVuoroa()) return true;  // the kernel's buffer is full: the rest waits in the queue
    std::printf("SDLNet_TCP_Send: %s\n", SDLNet_GetError());
    pudota(i);
    return false;
  }
  y.jononAlku = y.jononLoppu = 0;
  return true;
}

// What the peer sent and nobody read would turn the close into a reset that can
// overtake the last bytes sent; it is read away first.
void lueLoput(int fd) {
  char roska[4096];
  for (int kierros = 0; kierros < 16 && recv(fd, roska, sizeof roska, MSG_DONTWAIT) > 0; ++kierros) {}
}

}  // namespace

TCPsocket soketti(int i) { return soketinPaikka(i); }

bool liitaYhteys(int i, TCPsocket s) {
  const int fd = etsiKuvaaja(s);
  if (fd < 0) {
    std::printf("soketin kuvaajaa ei löytynyt, yhteys suljetaan\n");
    tcpSulku(s);
    return false;
  }
  signal(SIGPIPE, SIG_IGN);  // a send to a peer that has gone must not end the game
  fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) | O_NONBLOCK);
  const int paalla = 1;
  setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &paalla, sizeof paalla);
  kuvaajat[i] = fd;
  soketinPaikka(i) = s;
  Yhteys& y = yhteys[i];
  y.saapuneita = y.jononAlku = y.jononLoppu = 0;
  y.lahetetty = y.vastaanotettu = 0;
  return true;
}

bool laheta(int i, const void* data, int pituus) {
  if (!soketti(i) || pituus < 0) return false;
  Yhteys& y = yhteys[i];
  if (pituus > jonoTila - (y.jononLoppu - y.jononAlku)) {
    std::printf("lähetysjono täynnä, yhteys %i pudotetaan\n", i);
    pudota(i);
    return false;
  }
  if (pituus > jonoTila - y.jononLoppu) {
    std::memmove(y.jono, y.jono + y.jononAlku, static_cast<size_t>(y.jononLoppu - y.jononAlku));
    y.jononLoppu -= y.jononAlku;
    y.jononAlku = 0;
  }
  std::memcpy(y.jono + y.jononLoppu, data, static_cast<size_t>(pituus));
  y.jononLoppu += pituus;
  return tyhjennaJono(i);
}

bool lahetaTeksti(int i, const char* teksti) {
  return laheta(i, teksti, static_cast<int>(std::strlen(teksti)) + 1);
}

void tyhjennaJonot() {
  for (int i = 1; i <= hostiYhteys; ++i)
    if (soketti(i)) tyhjennaJono(i);
}

int odotaSoketteja(int ms) {
  if (!joukko) joukko = SDLNet_AllocSocketSet(yhteyksia + 1);
  if (!joukko) return -1;
  for (int k = 0; k < joukossaLkm; ++k) SDLNet_TCP_DelSocket(joukko, joukossa[k]);
  joukossaLkm = 0;
  for (int i = 0; i <= hostiYhteys; ++i) {
    TCPsocket s = soketti(i);
    if (s && (i == hostiYhteys || tila[i] > 0)) {
      SDLNet_TCP_AddSocket(joukko, s);
      joukossa[joukossaLkm++] = s;
    }
  }
  const int valmiita = SDLNet_CheckSockets(joukko, static_cast<Uint32>(ms));
  if (valmiita < 0) {
    std::printf("SDLNet_CheckSockets: %s\n", SDLNet_GetError());
    perror("SDLNet_CheckSockets");
  }
  return valmiita;
}

int vastaanota(int i) {
  Yhteys& y = yhteys[i];
  const int tilaa = std::min(vastaanottoKerralla, vastaanottoTila - y.saapuneita);
  if (tilaa <= 0) return -1;  // a peer that never completes a message
  errno = 0;
  const int saatu = tcpVastaanotto(soketti(i), y.saapuneet + y.saapuneita, tilaa);
  if (saatu > 0) {
    y.saapuneita += saatu;
    y.vastaanotettu += static_cast<uint64_t>(saatu);
  }
  if (saatu < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return -2;
  return saatu;
}

void kuluta(int i, int n) {
  Yhteys& y = yhteys[i];
  n = std::clamp(n, 0, y.saapuneita);
  std::memmove(y.saapuneet, y.saapuneet + n, static_cast<size_t>(y.saapuneita - n));
  y.saapuneita -= n;
}

void suljeYhteys(int i) {
  TCPsocket& s = soketinPaikka(i);
  if (s) {
    if (kuvaajat[i] >= 0) lueLoput(kuvaajat[i]);
    tcpSulku(s);
  }
  s = nullptr;
  kuvaajat[i] = -1;
  Yhteys& y = yhteys[i];
  y.saapuneita = y.jononAlku = y.jononLoppu = 0;
}

// ---- Messages --------------------------------------------------------------------------

namespace {

const char liittyi[] = "you have joined the game;";
const char montako[] = "pelaajia montako;";
const char liikaa[] = "pelaajia liikaa!;";
const char alkoi[] = "game started;";
const char kunnossa[] = "kaikki kunnossa;";
const char lopetti[] = "quiting..;";
const char huomattu[] = "alku huomattu;";
const char tiimitSaatu[] = "tiimit saatu;";
const char elossa[] = "elossa;";    // the client's keep-alive
const char omat[] = "omat paikat";  // + the slots of the connection (u16 bits) + ';'
const char chat[] = "x\xe4t";
const char tiimit[] = "tiimit";

const int omatKoko = 11 + 2 + 1;
const int nickKoko = 11;
const int taulunKoko = 15 + 13 * 16;
const int chatEnintaan = 3 + 11 + kirjotusKoko + 2;
const int ilmoitus = 9;  // "pelaajia " before the count

const int vajaa = 0, eiViesti = -1;

// One kind of message: its keyword, how many bytes identify it, its length when fixed
// (as this side's peer sends it) or how to measure it, and its handler, which says
// whether to read on (false: the connection was dropped or the lobby is over).
struct Viesti {
  const char* avain;
  int vertailu;
  int koko;
  int (*mittaa)(const unsigned char* p, int n);  // >0 length, 0 need more, -1 not a message
  bool (*kasittele)(int yhteys, const unsigned char* p, int n);
};

// The length of the message at p, 0 while it is still arriving, -1 for bytes that begin
// no message.
int tunnista(const Viesti* viestit, int lkm, const unsigned char* p, int n, const Viesti*& loydetty) {
  bool alkua = false;
  for (int k = 0; k < lkm; ++k) {
    const Viesti& v = viestit[k];
    if (n < v.vertailu) {
      alkua = alkua || std::memcmp(p, v.avain, static_cast<size_t>(n)) == 0;
      continue;
    }
    if (!compare(reinterpret_cast<const char*>(p), v.avain, v.vertailu)) continue;
    loydetty = &v;
    if (v.koko > 0) return n >= v.koko ? v.koko : vajaa;
    return v.mittaa(p, n);
  }
  return alkua ? vajaa : eiViesti;
}

// Resynchronising: the next message begins after a ';' that a lowercase letter follows.
int tahdista(const unsigned char* buf, int kohta, int pituus) {
  for (int i = kohta + 1; i + 1 < pituus; ++i)
    if (buf[i] == ';' && buf[i + 1] >= 'a' && buf[i + 1] <= 'z') return i + 1;
  return pituus;
}

// Handles the complete messages at the front of buf, skipping the ';' and zero bytes that
// end text messages and resynchronising after bytes that begin none. Returns the bytes
// used; the rest, a message still arriving, waits for the next receive.
int kasitteleViestit(const Viesti* viestit, int lkm, int yhteys, const unsigned char* buf, int pituus,
                     void (*kuultu)(int yhteys)) {
  int kohta = 0;
  while (kohta < pituus && soketti(yhteys)) {
    if (buf[kohta] == ';' || buf[kohta] == 0) {
      ++kohta;
      continue;
    }
    const Viesti* v = nullptr;
    const int koko = tunnista(viestit, lkm, buf + kohta, pituus - kohta, v);
    if (koko == vajaa) break;
    if (koko == eiViesti) {
      kohta = tahdista(buf, kohta, pituus);
      continue;
    }
    const unsigned char* viesti = buf + kohta;
    kohta += koko;
    if (kuultu) kuultu(yhteys);
    if (!v->kasittele(yhteys, viesti, koko)) break;
  }
  return kohta;
}

bool eiMitaan(int, const unsigned char*, int) { return true; }

// A name of L bytes from a peer, cut to what a nick holds.
void tallennaNimi(char* nimi, const unsigned char* lahde, int pituus) {
  const int n = std::min(pituus, nickKoko - 1);
  std::memcpy(nimi, lahde, static_cast<size_t>(n));
  nimi[n] = 0;
}

void asetaNimi(int paikka, const char* nimi) { std::snprintf(netnick[paikka], nickKoko, "%s", nimi); }

// --- From a client to the host.

void tuore(int c) { timeout[c] = tuoreYhteys; }

bool vaihdaTiimi(int c, const unsigned char* p, int) {
  const int paikka = p[4];
  if (paikka < playerslots && pelaajasoketista[paikka] == c && mpstatus[paikka] == 3)
    mptiimi[paikka] = mptiimi[paikka] >= 15 ? 0 : mptiimi[paikka] + 1;
  return true;
}

// A chat line ends with its zero byte.
int mittaaChat(const unsigned char* p, int n) {
  const int raja = std::min(n, chatEnintaan);
  const void* nolla = std::memchr(p + 3, 0, static_cast<size_t>(raja - 3));
  if (nolla) return static_cast<int>(static_cast<const unsigned char*>(nolla) - p) + 1;
  return n >= chatEnintaan ? eiViesti : vajaa;
}

bool kuuleChat(int, const unsigned char* p, int n) {
  // The line from byte 3 without the ';' before the zero; the message goes on without the zero.
  lisaaRivi(reinterpret_cast<const char*>(p) + 3, n - 5);
  lahetaRiviKlienteille(p, n - 1);
  return true;
}

// "pelaajia ", the count, then per player a length byte and the name, then a zero byte.
int mittaaIlmoitus(const unsigned char* p, int n) {
  if (n <= ilmoitus) return vajaa;
  const int lkm = p[ilmoitus];
  if (lkm < 1 || lkm > 4) return ilmoitus + 1;  // refused as it stands
  int koko = ilmoitus + 1;
  for (int k = 0; k < lkm; ++k) {
    if (n <= koko) return vajaa;
    koko += 1 + p[koko];
  }
  ++koko;
  return n >= koko ? koko : vajaa;
}

int avoimiaPaikkoja() {
  int avoimia = 0;
  for (int s = 0; s < playerslots; ++s) avoimia += mpstatus[s] == 0;
  return avoimia;
}

bool kuuleIlmoitus(int c, const unsigned char* p, int n) {
  const int lkm = p[ilmoitus];
  std::printf("saatu:pelaajia soketista %i %i kpl", c, lkm);
  if (lkm < 1 || lkm > 4 || avoimiaPaikkoja() < lkm) {
    lahetaTeksti(c, liikaa);
    disconnect(c);
    return false;
  }
  Lukija r(p + ilmoitus + 1, n - ilmoitus - 1);
  for (int k = 0; k < lkm; ++k) {
    uint8_t pituus = 0;
    r.tavu(pituus);
    const unsigned char* nimi = r.kohta();
    if (!r.ohita(pituus)) break;
    if (pituus < 12) tallennaNimi(tcpnick[c][k], nimi, pituus);
  }
  pelaajiasoketista[c] = lkm;
  paivitaPelaajat();  // a second announcement in the same poll sees these slots taken
  return true;
}

bool alkuHuomattu(int c, const unsigned char*, int) {
  if (tila[c] == 1) tila[c] = 2;
  return true;
}

bool tiimitSaatuViesti(int c, const unsigned char*, int) {
  if (tila[c] == 2) tila[c] = 3;
  return true;
}

const Viesti hostinViestit[] = {
    {"team", 4, 5, nullptr, vaihdaTiimi},
    {chat, 3, 0, mittaaChat, kuuleChat},
    {"pelaajia ", 7, 0, mittaaIlmoitus, kuuleIlmoitus},
    {huomattu, 10, sizeof huomattu, nullptr, alkuHuomattu},
    {tiimitSaatu, 10, sizeof tiimitSaatu, nullptr, tiimitSaatuViesti},
    {elossa, 6, sizeof elossa, nullptr, eiMitaan},
};

// --- From the host to a client.

float verkkoFps = 100;  // the rate the host's table says
Uint32 taulunAika = 0;  // when the last team table came
Uint32 elossaAika = 0;  // when the last keep-alive went

int mittaaTiimit(const unsigned char* p, int n) {
  if (n < 7) return vajaa;
  if (p[6] > 16) return eiViesti;
  const int koko = 15 + 13 * p[6];
  return n >= koko ? koko : vajaa;
}

bool kuuleTiimit(int, const unsigned char* p, int n) {
  Lukija r(p + 6, n - 6);
  uint8_t paikkoja = 0;
  r.tavu(paikkoja);
  playerslots = paikkoja;
  for (int s = 0; s < playerslots; ++s) mptiimi[s] = mpstatus[s] = 0;
  for (int s = 0; s < playerslots && r.jaljella() >= 2 + nickKoko; ++s) {
    uint8_t tiimi = 0, status = 0;
    r.tavu(tiimi);
    r.tavu(status);
    mptiimi[s] = tiimi < 16 ? tiimi : 0;
    mpstatus[s] = status <= 3 ? status : 1;
    tallennaNimi(netnick[s], r.kohta(), nickKoko);
    r.ohita(nickKoko);
  }
  AlkuTiedot alku{};
  if (r.tietue(&alku, alkutiedotkoko, lueAlkuTiedot)) {
    if (alku.gamemode >= 0 && alku.gamemode <= 4) gamemode = alku.gamemode;
    mpcredits = alku.mpcredits;
    if (alku.fps >= 50 && alku.fps <= 200) verkkoFps = alku.fps;
  }
  taulunAika = nytMs();
  if (started2) {
    alkujuttusaatu = true;
    std::printf("tiimit saatu lopullisesti\n");
  }
  return true;
}

bool ilmoitaPelaajat(int, const unsigned char*, int) {
  unsigned char b[ilmoitus + 1 + 4 * (1 + nickKoko) + 1];
  Kirjoittaja w(b, sizeof b);
  const int lkm = std::clamp(joinaavia, 1, 4);
  w.tavut("pelaajia ", ilmoitus);
  w.tavu(static_cast<uint8_t>(lkm));
  for (int k = 0; k < lkm; ++k) {
    w.tavu(nickKoko);
    w.tavut(sets.nick[k], nickKoko);
  }
  w.tavu(0);
  laheta(hostiYhteys, b, w.pituus());
  std::printf("lähetettiin hostille %i pelaajaa\n", lkm);
  return true;
}

bool lopeta(const char* syy) {
  gamequited = true;
  eroSyy = syy;
  return false;
}

bool eiMahtunut(int, const unsigned char*, int) { return lopeta("ei mahtunut mukaan"); }
bool hostLopetti(int, const unsigned char*, int) { return lopeta("the host left the game"); }

bool peliAlkoi(int, const unsigned char*, int) {
  started2 = true;
  return true;
}

// What follows "kaikki kunnossa;" belongs to the game.
bool kaikkiKunnossa(int, const unsigned char*, int) {
  valmiinaalottamaan = true;
  return false;
}

bool kuuleOmat(int, const unsigned char* p, int) {
  omatPaikat = static_cast<unsigned>(p[11] | p[12] << 8);
  return true;
}

// A relayed chat line ends with its ';'.
int mittaaValitettyChat(const unsigned char* p, int n) {
  const int raja = std::min(n, chatEnintaan - 1);
  const void* loppu = std::memchr(p + 3, ';', static_cast<size_t>(raja - 3));
  if (loppu) return static_cast<int>(static_cast<const unsigned char*>(loppu) - p) + 1;
  return n >= chatEnintaan - 1 ? eiViesti : vajaa;
}

bool kuuleValitettyChat(int, const unsigned char* p, int n) {
  lisaaRivi(reinterpret_cast<const char*>(p) + 3, n - 4);
  return true;
}

const Viesti joininViestit[] = {
    {tiimit, 6, 0, mittaaTiimit, kuuleTiimit},
    {liittyi, 10, sizeof liittyi, nullptr, ilmoitaPelaajat},
    {liikaa, 15, sizeof liikaa, nullptr, eiMahtunut},
    {montako, 16, sizeof montako, nullptr, eiMitaan},
    {alkoi, 12, sizeof alkoi, nullptr, peliAlkoi},
    {kunnossa, 15, sizeof kunnossa, nullptr, kaikkiKunnossa},
    {lopetti, 10, sizeof lopetti, nullptr, hostLopetti},
    {omat, 11, omatKoko, nullptr, kuuleOmat},
    {chat, 3, 0, mittaaValitettyChat, kuuleValitettyChat},
};

template <size_t N>
constexpr int lukumaara(const Viesti (&)[N]) {
  return static_cast<int>(N);
}

}  // namespace

int hostNetKasittele(int yhteys, const unsigned char* buf, int pituus) {
  return kasitteleViestit(hostinViestit, lukumaara(hostinViestit), yhteys, buf, pituus, tuore);
}

int joinwaitKasittele(const unsigned char* buf, int pituus) {
  return kasitteleViestit(joininViestit, lukumaara(joininViestit), hostiYhteys, buf, pituus, nullptr);
}

// ---- Host ------------------------------------------------------------------------------

namespace {

void koneenNimi(int paikka, int numero) {
  std::snprintf(netnick[paikka], nickKoko, "cpu %i", std::clamp(numero, 0, 99));
}

int hyvaksy() {
  TCPsocket uusi = SDLNet_TCP_Accept(tcpsoketit[0]);
  if (!uusi) return -1;
  ++soketteja;
  int c = 1;
  while (c < yhteyksia && tcpsoketit[c]) ++c;
  // With every connection taken the socket is left as it is, neither kept nor closed.
  if (c < yhteyksia && liitaYhteys(c, uusi)) {
    ++soketteja;
    tila[c] = 1;
    timeout[c] = tuoreYhteys;
    pelaajiasoketista[c] = 0;
    lahetaTeksti(c, liittyi);
  }
  std::printf("Tulipa yksi soketti taas lisättyä\n");
  return c;
}

void lueKlientilta(int c) {
  const int saatu = vastaanota(c);
  if (saatu == -2) return;
  if (saatu < 0) {
    std::printf("jotain hassua pääsi käymään, tuli %i byteä.\n", saatu);
    disconnect(c);
    return;
  }
  if (saatu == 0) {
    // The peer has closed: nothing can follow.
    std::printf("nollaa byteä sataa\n");
    disconnect(c);
    return;
  }
  Yhteys& y = yhteys[c];
  const int kaytetty = hostNetKasittele(c, y.saapuneet, y.saapuneita);
  if (tcpsoketit[c]) kuluta(c, kaytetty);
}

void lahetaOmat(int c) {
  unsigned bitit = 0;
  for (int s = 0; s < playerslots; ++s)
    if (mpstatus[s] == 3 && pelaajasoketista[s] == c) bitit |= 1u << s;
  unsigned char b[omatKoko];
  std::memcpy(b, omat, 11);
  b[11] = static_cast<unsigned char>(bitit & 0xff);
  b[12] = static_cast<unsigned char>(bitit >> 8);
  b[13] = ';';
  laheta(c, b, omatKoko);
}

bool klienttejaTilassa(int alle) {
  for (int c = 1; c < playerslots; ++c)
    if (tila[c] > 0 && tila[c] < alle) return true;
  return false;
}

void lahetaAlkoi(int c) { lahetaTeksti(c, alkoi); }

// One step of the start: sends to every client and polls until each has reached
// `valmis`; a client still behind after the time-out is dropped.
void odotaKlientteja(int valmis, void (*lahetys)(int)) {
  const Uint32 alku = nytMs();
  while (klienttejaTilassa(valmis)) {
    for (int c = 1; c < playerslots; ++c)
      if (tila[c] > 0) lahetys(c);
    SDL_Delay(10);
    kuuntele();
    if (nytMs() - alku < hiljainenHosti) continue;
    for (int c = 1; c < playerslots; ++c) {
      if (tila[c] <= 0 || tila[c] >= valmis) continue;
      std::printf("yhteys %i ei vastannut aloitukseen\n", c);
      disconnect(c);
    }
  }
}

}  // namespace

void alustaAula() {
  for (int c = 0; c < yhteyksia; ++c) {
    if (tcpsoketit[c]) suljeYhteys(c);
    tila[c] = timeout[c] = pelaajiasoketista[c] = 0;
  }
  for (int s = 0; s < 16; ++s) {
    mptiimi[s] = s;
    mpstatus[s] = 0;
    pelaajasoketista[s] = -1;
    ottelunPelaaja[s] = -1;
    asetaNimi(s, "-");
  }
  soketteja = 0;
  playerslots = 16;
  gamemode = 0;
  mpcredits = std::clamp(static_cast<int>(fullcredits), 10, 30000);
  timeouttarkistettu = nytMs();
  alustaChat();
}

void addsocket() {
  IPaddress ip;
  if (SDLNet_ResolveHost(&ip, nullptr, static_cast<Uint16>(verkkoportti)) == -1) {
    std::printf("SDLNet_ResolveHost: %s\n", SDLNet_GetError());
    exit(3);
  }
  tcpsoketit[0] = SDLNet_TCP_Open(&ip);
  if (!tcpsoketit[0]) {
    std::printf("SDLNet_TCP_Open: %s\n", SDLNet_GetError());
    exit(2);
  }
  tila[0] = 1;
}

void kuuntele() {
  const Uint32 nyt = nytMs();
  if (nyt - timeouttarkistettu >= static_cast<Uint32>(timeoutaika)) {
    timeouttarkistettu = nyt;
    for (int c = 1; c < yhteyksia; ++c) {
      if (tila[c] <= 0) continue;
      if (--timeout[c] <= 0) {
        disconnect(c);
      } else {
        lahetaAlkuRuutu(c);
        lahetaOmat(c);
      }
    }
  }
  odotaSoketteja(20);
  const int uusi = tcpsoketit[0] && SDLNet_SocketReady(tcpsoketit[0]) ? hyvaksy() : -1;
  for (int c = 1; c < playerslots; ++c)
    if (c != uusi && tcpsoketit[c] && SDLNet_SocketReady(tcpsoketit[c])) lueKlientilta(c);
  tyhjennaJonot();
}

void lahetaAlkuRuutu(int c) {
  unsigned char b[taulunKoko];
  Kirjoittaja w(b, sizeof b);
  w.tavut(tiimit, 6);
  w.tavu(static_cast<uint8_t>(playerslots));
  for (int s = 0; s < playerslots; ++s) {
    w.tavu(static_cast<uint8_t>(mptiimi[s]));
    w.tavu(static_cast<uint8_t>(mpstatus[s]));
    w.tavut(netnick[s], nickKoko);
  }
  const AlkuTiedot alku{static_cast<char>(gamemode), static_cast<short>(mpcredits), calculatefps};
  w.tietue(&alku, alkutiedotkoko, kirjotaAlkuTiedot);
  w.tavu(';');
  laheta(c, b, w.pituus());
}

void lahettele() {
  for (int c = 1; c < playerslots; ++c)
    if (tila[c] > 0 && pelaajiasoketista[c] == 0) lahetaTeksti(c, montako);
}

void paivitaPelaajat() {
  for (int c = 0; c < yhteyksia; ++c)
    if (tila[c] < 1) pelaajiasoketista[c] = 0;
  int paikka = 0, koneita = 0;
  for (int c = 0; c < playerslots; ++c) {
    if (tila[c] < 1) continue;
    for (int k = 0; k < pelaajiasoketista[c] && paikka < playerslots; ++k) {
      // Closed and computer slots are passed over without using up the player.
      for (; paikka < playerslots && (mpstatus[paikka] == 1 || mpstatus[paikka] == 2); ++paikka) {
        if (mpstatus[paikka] == 1) {
          pelaajasoketista[paikka] = -1;
          asetaNimi(paikka, "closed");
        } else {
          pelaajasoketista[paikka] = -2;
          koneenNimi(paikka, ++koneita);
        }
      }
      if (paikka == playerslots) break;
      pelaajasoketista[paikka] = c;
      asetaNimi(paikka, tcpnick[c][k]);
      mpstatus[paikka] = 3;
      ++paikka;
    }
  }
  for (; paikka < playerslots; ++paikka) {
    if (mpstatus[paikka] == 3) mpstatus[paikka] = 0;
    if (mpstatus[paikka] == 2) {
      pelaajasoketista[paikka] = -2;
      koneenNimi(paikka, ++koneita);
    } else {
      pelaajasoketista[paikka] = -1;
      asetaNimi(paikka, "-");
    }
  }
}

void disconnect(int c) {
  tila[c] = 0;
  suljeYhteys(c);
  pelaajiasoketista[c] = 0;
  if (!hostpeli) return;
  for (int s = 0; s < playerslots; ++s) {
    if (pelaajasoketista[s] != c || mpstatus[s] != 3) continue;
    mpstatus[s] = 2;
    if (ottelunPelaaja[s] >= 0) player[ottelunPelaaja[s]].ihmispelaaja = false;
  }
}

void hostQuit() {
  for (int c = 1; c < playerslots; ++c)
    if (tcpsoketit[c]) lahetaTeksti(c, lopetti);
}

void hostStart() {
  odotaKlientteja(2, lahetaAlkoi);
  odotaKlientteja(3, lahetaAlkuRuutu);
  for (int c = 1; c < playerslots; ++c) {
    if (tila[c] <= 0) continue;
    lahetaTeksti(c, kunnossa);
    std::printf("sanottiin %i:lle:\"%s\"", c, kunnossa);
  }
  rakennaVerkkoOttelu();
  netHostPeli();
}

// ---- Client ----------------------------------------------------------------------------

void katkaiseHostista(const char* syy) {
  suljeYhteys(hostiYhteys);
  lopeta(syy);
}

namespace {

void lueHostilta() {
  const int saatu = vastaanota(hostiYhteys);
  if (saatu == -2) return;
  if (saatu <= 0) {
    std::printf("jotain hassua pääsi käymään, tuli %i byteä.\n", saatu);
    katkaiseHostista("the connection to the host was lost");
    return;
  }
  Yhteys& y = yhteys[hostiYhteys];
  const int kaytetty = joinwaitKasittele(y.saapuneet, y.saapuneita);
  if (joinsoketti) kuluta(hostiYhteys, kaytetty);
}

}  // namespace

namespace {

// Opening a connection can block for minutes on an address that never answers, so it runs
// on a thread of its own while the screen stays alive. Whichever side finishes last (the
// thread, or the screen giving up) closes an unwanted socket and frees the record.
struct Avaus {
  IPaddress ip;
  TCPsocket soketti = nullptr;
  char virhe[128] = "";
  std::atomic<int> tila{0};  // avausKesken, avausValmis, avausHylatty
};
enum { avausKesken, avausValmis, avausHylatty };
const Uint32 avauksenAikaraja = 10000;

int avaa(void* data) {
  Avaus* a = static_cast<Avaus*>(data);
  a->soketti = SDLNet_TCP_Open(&a->ip);
  if (!a->soketti)
    std::snprintf(a->virhe, sizeof a->virhe, "%s", SDLNet_GetError());  // errors are per thread
  if (a->tila.exchange(avausValmis) == avausHylatty) {
    if (a->soketti) SDLNet_TCP_Close(a->soketti);
    delete a;
  }
  return 0;
}

// The socket to the host, or null when it cannot be opened, the time limit passes or
// `jatketaanko` says to give up (eroSyy then says why).
TCPsocket avaaYhteys(const IPaddress& ip, bool (*jatketaanko)()) {
  Avaus* a = new Avaus;
  a->ip = ip;
  SDL_Thread* saie = SDL_CreateThread(avaa, a);
  if (!saie) avaa(a);  // no thread to be had: wait as the system makes us
  const Uint32 alku = nytMs();
  bool luovuttu = false;
  while (!luovuttu && a->tila.load() == avausKesken) {
    if (nytMs() - alku > avauksenAikaraja || (jatketaanko && !jatketaanko())) {
      if (a->tila.exchange(avausHylatty) == avausKesken) {
        eroSyy = "the host did not answer";
        return nullptr;  // the thread closes what it opens and frees the record
      }
      luovuttu = true;  // it finished just as the screen gave up
    }
    SDL_Delay(10);
  }
  if (saie) SDL_WaitThread(saie, nullptr);
  TCPsocket s = a->soketti;
  if (s && luovuttu) {
    SDLNet_TCP_Close(s);
    s = nullptr;
    eroSyy = "the host did not answer";
  } else if (!s) {
    std::printf("SDLNet_TCP_Open: %s\n", a->virhe);
    eroSyy = "connection refused";
  }
  delete a;
  return s;
}

}  // namespace

bool yhdistaHostiin(const char* osoite, bool (*jatketaanko)()) {
  IPaddress ip;
  if (SDLNet_ResolveHost(&ip, osoite, static_cast<Uint16>(verkkoportti)) == -1) {
    std::printf("SDLNet_ResolveHost: %s\n", SDLNet_GetError());
    eroSyy = "host not found";
    return false;
  }
  TCPsocket s = avaaYhteys(ip, jatketaanko);
  if (!s) return false;
  if (!liitaYhteys(hostiYhteys, s)) {
    eroSyy = "the connection could not be set up";
    return false;
  }
  joinpeli = true;
  gamequited = started2 = alkujuttusaatu = valmiinaalottamaan = false;
  omatPaikat = 0;
  playerslots = 0;
  eroSyy = "";
  alustaChat();
  taulunAika = elossaAika = nytMs();
  return true;
}

void kuuntelejoin() {
  if (!joinsoketti) return;
  if (nytMs() - elossaAika >= elossaVali) {
    elossaAika = nytMs();
    lahetaTeksti(hostiYhteys, elossa);
  }
  if (joinsoketti && odotaSoketteja(20) > 0 && SDLNet_SocketReady(joinsoketti)) lueHostilta();
  if (joinsoketti && nytMs() - taulunAika > hiljainenHosti) katkaiseHostista("the host stopped answering");
  tyhjennaJonot();
}

void lahetaTiiminVaihto(int paikka) {
  const unsigned char b[5] = {'t', 'e', 'a', 'm', static_cast<unsigned char>(paikka)};
  laheta(hostiYhteys, b, sizeof b);
}

void aulanVerkko() {
  if (hostpeli) {
    paivitaPelaajat();
    kuuntele();
    lahettele();
  } else {
    kuuntelejoin();
  }
}

void readHostFile(char* buf) {
  std::memset(buf, 0, 48);
  FILE* f = std::fopen("lasthost.txt", "rb");
  if (!f) {
    std::printf("lashost.txt not found.\n");
    return;
  }
  const size_t luettu = std::fread(buf, 1, 40, f);
  std::fclose(f);
  std::memset(buf + luettu, 0, 48 - luettu);
}

void writeHostFile(const char* buf) {
  int pituus = 0;
  while (pituus < 90 && buf[pituus]) ++pituus;
  if (pituus == 90) pituus = 0;
  FILE* f = std::fopen("lasthost.txt", "wb");
  if (!f) {
    std::printf("cannot open lashost.txt for writing.\n");
    return;
  }
  std::fwrite(buf, 1, static_cast<size_t>(std::min(pituus, 64)), f);
  std::fclose(f);
}

// ---- Game start ------------------------------------------------------------------------

void rakennaVerkkoOttelu() {
  char nimet[16][nickKoko];
  std::memcpy(nimet, netnick, sizeof nimet);
  const bool krediitit = gamemode <= 1;
  int n = 0;
  for (int s = 0; s < playerslots; ++s) {
    ottelunPelaaja[s] = -1;
    if (mpstatus[s] != 2 && mpstatus[s] != 3) continue;
    Player& p = player[n];
    p.numero = n;
    p.tiimi = std::clamp(mptiimi[s], 0, std::min(cpisteita, maxPlayers) - 1);
    p.ihmispelaaja = mpstatus[s] == 3;
    std::memcpy(netnick[n], nimet[s], nickKoko);
    ottelunPaikka[n] = s;
    ottelunPelaaja[s] = n;
    ++n;
  }
  players = n;
  nollaaOttelu(gamemode, krediitit, false, krediitit ? static_cast<float>(mpcredits) : 0.0f);
  for (int i = 0; i < n; ++i) player[i].uudestaan(alus[satunnainenAlusnumero()]);
  if (joinpeli) calculatefps = verkkoFps;
}

// ---- Lobby screens -----------------------------------------------------------------------

bool omaPaikka(int s) {
  if (hostpeli) return mpstatus[s] == 3 && pelaajasoketista[s] == 0;
  return (omatPaikat >> s) & 1u;
}

namespace {

const char* const pelitilojenNimet[5] = {"death match", "death match with random ships", "flower domination",
                                         "capture the flower", "eat the mushroom"};
const char* const tilojenNimet[4] = {"open", "closed", "cpu", "human"};

const int paikkoja = 16;      // rows of the slot table; the screens' other items follow
const int muutaStatusta = 3;  // statuses the host cycles through: open, closed, cpu
const float aulaZ = -40, aulanLeveys = 30, paikanKoko = 0.7f, riviKoko = 0.8f;
const float alaX = -22, alaArvoX = -3;
const float alarivienY[6] = {-3.4f, -5.1f, -6.8f, -8.9f, -10.6f, -12.3f};

float paikanX(int s) { return s < paikkoja / 2 ? -29.0f : 1.0f; }
float paikanY(int s) { return 10.5f - 1.7f * static_cast<float>(s % (paikkoja / 2)); }

// One row of the slot table; returns where it ends.
float piirraPaikka(int s) {
  const float x = paikanX(s), y = paikanY(s);
  char teksti[24];
  glColor4f(1, 1, 1, 1);
  std::snprintf(teksti, sizeof teksti, "%d", s + 1);
  gl_println(x, y, aulaZ, teksti, paikanKoko);
  valitseVari(mptiimi[s]);
  std::snprintf(teksti, sizeof teksti, "team %d", mptiimi[s] + 1);
  gl_println(x + 2.2f, y, aulaZ, teksti, paikanKoko);
  const int status = std::clamp(mpstatus[s], 0, 3);
  const float harmaa = status <= 1 ? 0.6f : 1.0f;
  glColor4f(harmaa, harmaa, harmaa, 1);
  gl_println(x + 9.5f, y, aulaZ, tilojenNimet[status], paikanKoko);
  if (omaPaikka(s))
    glColor4f(1, 0.75f, 0.15f, 1);
  else
    glColor4f(1, 1, 1, 1);
  gl_println(x + 15, y, aulaZ, netnick[s], paikanKoko);
  return tekstinLoppu(x + 15, netnick[s], paikanKoko);
}

// The slot table, then the mode, the limit and the rate, then the screen's three actions.
// Items 0..15 are the slots; after them come the first `valittavia` of the settings
// rows and the actions.
void piirraAula(int kohta, const char* otsikko, const char* const toiminnot[3], int valittavia,
                const char* vihje) {
  aloitaValikonKuva(aulanLeveys, tekstiruudunVerho);
  piirraValikonOtsikko(otsikko);
  float alku = 0, loppu = 0, y = 0;
  for (int s = 0; s < playerslots; ++s) {
    const float rivinLoppu = piirraPaikka(s);
    if (s != kohta) continue;
    alku = paikanX(s);
    loppu = rivinLoppu;
    y = paikanY(s);
  }
  char tahti[24], raja[16];
  std::snprintf(raja, sizeof raja, "%d", mpcredits);
  std::snprintf(tahti, sizeof tahti, "%d per second", static_cast<int>(hostpeli ? calculatefps : verkkoFps));
  const char* nimet[6] = {
      "Game Mode:", gamemode <= 1 ? "Credits:" : "Score Limit:", "Rate:", toiminnot[0], toiminnot[1],
      toiminnot[2]};
  const char* arvot[6] = {
      pelitilojenNimet[std::clamp(gamemode, 0, 4)], raja, tahti, nullptr, nullptr, nullptr};
  const int ala = kohta - paikkoja;
  const int valittuRivi = ala < 0 ? -1 : ala < valittavia ? ala : ala + 3 - valittavia;
  for (int r = 0; r < 6; ++r) {
    piirraRivi(alaX, alarivienY[r], nimet[r], arvot[r], alaArvoX);
    if (r != valittuRivi) continue;
    alku = alaX;
    loppu = arvot[r] ? tekstinLoppu(alaArvoX, arvot[r], riviKoko) : tekstinLoppu(alaX, nimet[r], riviKoko);
    y = alarivienY[r];
  }
  piirraAlarivi(vihje);
  piirraKursori(alku, loppu, y);
  lopetaValikonKuva();
}

// A message screen: the title, the message and what the keys do.
const char* ilmoitusOtsikko = "";
const char* ilmoitusTeksti = "";
const char* ilmoitusOhje = "";

void piirraIlmoitus(int) {
  aloitaValikonKuva(24);
  piirraValikonOtsikko(ilmoitusOtsikko);
  glColor4f(1, 1, 1, 1);
  gl_println(keskitettyX(ilmoitusTeksti, riviKoko), 2, aulaZ, ilmoitusTeksti, riviKoko);
  piirraAlarivi(ilmoitusOhje);
  lopetaValikonKuva();
}

void ilmoita(const char* otsikko, const char* teksti, const char* ohje) {
  ilmoitusOtsikko = otsikko;
  ilmoitusTeksti = teksti;
  ilmoitusOhje = ohje;
  aulanPiirto(piirraIlmoitus, 0);
}

// Every failure of joining ends here, with a way back.
void virheRuutu(const char* syy) {
  unohdaNapit();
  while (!entterpressed && !escpressed) {
    processEvents();
    waitNextFrame();
    ilmoita("Join Multiplayer", syy, "Enter: back");
    updateAudio();
  }
  unohdaNapit();
}

// --- Host.

enum HostinKohta { hkPelitila = paikkoja, hkRaja, hkChat, hkAloita, hkPoistu };
const char* const hostinToiminnot[3] = {"Chat", "Start Game", "Leave"};

void piirraMontako(int maara) {
  aloitaValikonKuva(24);
  piirraValikonOtsikko("Host Multiplayer");
  char arvo[4];
  std::snprintf(arvo, sizeof arvo, "%d", maara);
  const char* nimi = "Players on this machine:";
  piirraRivi(alaX, 2, nimi, arvo, 0);
  piirraAlarivi("left, right: how many     Enter: open the lobby     Escape: back");
  piirraKursori(alaX, tekstinLoppu(0, arvo, riviKoko), 2);
  lopetaValikonKuva();
}

// How many players play on this machine: 1..4, or -1 when the host turns back.
int montakoHostia() {
  int maara = std::clamp(hosteja, 1, 4);
  unohdaNapit();
  for (;;) {
    processEvents();
    pyoritaNuolia();
    if (escpressed || entterpressed) {
      const bool takaisin = escpressed;
      unohdaNapit();
      return takaisin ? -1 : maara;
    }
    maara = std::clamp(maara + sivusuunta(), 1, 4);
    waitNextFrame();
    aulanPiirto(piirraMontako, maara);
    updateAudio();
  }
}

// Enter (suunta 0) cycles an open, closed or cpu slot; left and right change its team,
// the mode or the limit.
void muutaAulaa(int kohta, int suunta) {
  if (kohta < paikkoja) {
    if (suunta != 0)
      mptiimi[kohta] = (mptiimi[kohta] + suunta + 16) % 16;
    else if (mpstatus[kohta] != 3)
      mpstatus[kohta] = (mpstatus[kohta] + 1) % muutaStatusta;
  } else if (kohta == hkPelitila) {
    gamemode = (gamemode + (suunta != 0 ? suunta : 1) + 5) % 5;
  } else if (kohta == hkRaja) {
    mpcredits = std::clamp(mpcredits + 10 * suunta, 10, 30000);
  }
}

void piirraHostinAula(int kohta) {
  int liittyneita = 0;
  for (int c = 1; c < yhteyksia; ++c) liittyneita += tila[c] > 0;
  const char* ohje = kohta < paikkoja  ? "Enter: open, closed, cpu   left, right: team"
                     : kohta <= hkRaja ? "left, right: change"
                                       : "";
  char vihje[96];
  std::snprintf(vihje, sizeof vihje, "port %d, %d joined     %s", verkkoportti, liittyneita, ohje);
  piirraAula(kohta, "Host Multiplayer", hostinToiminnot, 2, vihje);
}

void suljeAula() {
  for (int c = 0; c < yhteyksia; ++c) {
    suljeYhteys(c);
    tila[c] = 0;
  }
  hostpeli = false;
}

void hostMenu() {
  const int maara = montakoHostia();
  if (maara < 0) return;
  hosteja = maara;
  hostpeli = true;
  alustaAula();
  pelaajiasoketista[0] = hosteja;
  for (int k = 0; k < 4; ++k)
    tallennaNimi(tcpnick[0][k], reinterpret_cast<const unsigned char*>(sets.nick[k]), nickKoko);
  addsocket();
  int kohta = hkAloita;
  for (;;) {
    processEvents();
    pyoritaNuolia();
    if (const int suunta = sivusuunta()) muutaAulaa(kohta, suunta);
    if (valikonSyote(kohta, hkPoistu)) {
      if (kohta == hkPoistu) break;
      if (kohta == hkAloita) {
        hostStart();
        break;
      }
      if (kohta == hkChat)
        chatScreen();
      else
        muutaAulaa(kohta, 0);
      unohdaNapit();
    }
    waitNextFrame();
    aulanVerkko();
    aulanPiirto(piirraHostinAula, kohta);
    updateAudio();
  }
  hostQuit();
  suljeAula();
}

// --- Client.

enum OdotuksenKohta { okChat = paikkoja, okAsetukset, okPoistu };
const char* const odotuksenToiminnot[3] = {"Chat", "Settings", "Leave"};

void piirraOdotus(int kohta) {
  const bool hiljaa = nytMs() - taulunAika > 1000;
  const char* vihje = hiljaa                                 ? "waiting for the host..."
                      : kohta < paikkoja && omaPaikka(kohta) ? "Enter, left, right: change team"
                                                             : "waiting for the host to start";
  piirraAula(kohta, "Join Multiplayer", odotuksenToiminnot, 0, vihje);
}

// The settings menu over a running lobby: the connection stays alive underneath, and the
// menu closes (as by Escape) when the game starts or the host goes.
void pidaAulaKaynnissa() {
  kuuntelejoin();
  if (started2 || gamequited) escpressed = true;
}

void asetuksetAulassa() {
  taustatyo = pidaAulaKaynnissa;
  asetusmenu();
  taustatyo = nullptr;
}

// The client's half of the start: "alku huomattu" until a team table has come after the
// start, then "tiimit saatu" until "kaikki kunnossa". A host that falls silent ends it.
void kattelyJoin() {
  // At least once: a table sent before the start may already have come with "game started".
  do {
    if (!lahetaTeksti(hostiYhteys, huomattu)) {
      std::printf("yritettiin sanoa alku huomattu hostille\n");
      return;
    }
    SDL_Delay(10);
    kuuntelejoin();
  } while (!alkujuttusaatu && !gamequited);
  while (!valmiinaalottamaan && !gamequited) {
    if (!lahetaTeksti(hostiYhteys, tiimitSaatu)) {
      std::printf("yritettiin sanoa tiimit saatu hostille\n");
      return;
    }
    std::printf("lähetettiin hostille %s\n", tiimitSaatu);
    SDL_Delay(10);
    kuuntelejoin();
  }
}

// --- Join menu.

enum JoininKohta { jkOsoite, jkPelaajat, jkNimet, jkTakaisin };
const int osoitteenPituus = 40;
char osoite[48];

// One typed key into a line of at most `enintaan` characters: backspace or a character.
// Returns the key, so that the arrows can still move the cursor.
int muokkaaRivia(char* rivi, int enintaan) {
  luetaan = 1;
  const int n = static_cast<int>(std::strlen(rivi));
  if (luettunappi == 8) {
    if (n > 0) rivi[n - 1] = 0;
  } else if (kirjoitettava(luettunappi) && n < enintaan) {
    rivi[n] = luettunappi;
    rivi[n + 1] = 0;
  }
  return sdlnappi;
}

void piirraJoinMenu(int kohta) {
  aloitaValikonKuva(24);
  piirraValikonOtsikko("Join Multiplayer");
  char arvo[sizeof osoite + 2], maara[4];
  std::snprintf(arvo, sizeof arvo, "%s%s", osoite, kohta == jkOsoite ? "_" : "");
  std::snprintf(maara, sizeof maara, "%d", joinaavia);
  const char* nimet[4] = {"Host Address:", "Players:", "Nicks", "Back"};
  const char* arvot[4] = {arvo, maara, nullptr, nullptr};
  for (int r = 0; r < 4; ++r) piirraRivi(alaX, 6 - 2.0f * r, nimet[r], arvot[r], -6);
  piirraAlarivi(kohta == jkOsoite     ? "type the address     Enter: join"
                : kohta == jkPelaajat ? "left, right: players on this machine     Enter: join"
                                      : "");
  const float loppu =
      arvot[kohta] ? tekstinLoppu(-6, arvot[kohta], riviKoko) : tekstinLoppu(alaX, nimet[kohta], riviKoko);
  piirraKursori(alaX, loppu, 6 - 2.0f * kohta);
  lopetaValikonKuva();
}

// The nick change: one row per local player; Enter edits a nick, Enter again saves it.
const int nickRiveja = 4;
int muokattavaNick = -1;
char uusiNick[nickKoko];

void piirraNikit(int kohta) {
  aloitaValikonKuva(24);
  piirraValikonOtsikko("Nicks");
  char otsikko[16], arvo[nickKoko + 1];
  float loppu = 0;
  for (int r = 0; r <= nickRiveja; ++r) {
    const float y = 6 - 2.0f * r;
    if (r == nickRiveja) {
      piirraRivi(alaX, y, "Back", nullptr, 0);
      if (r == kohta) loppu = tekstinLoppu(alaX, "Back", riviKoko);
      continue;
    }
    std::snprintf(otsikko, sizeof otsikko, "Player %d:", r + 1);
    std::snprintf(arvo, sizeof arvo, "%.10s%s", r == muokattavaNick ? uusiNick : sets.nick[r],
                  r == muokattavaNick ? "_" : "");
    piirraRivi(alaX, y, otsikko, arvo, -8);
    if (r == kohta) loppu = tekstinLoppu(-8, arvo, riviKoko);
  }
  piirraAlarivi(muokattavaNick >= 0 ? "type the nick     Enter: save     Escape: cancel" : "Enter: change");
  piirraKursori(alaX, loppu, 6 - 2.0f * kohta);
  lopetaValikonKuva();
}

void nikinVaihtoMenu() {
  int kohta = 0;
  muokattavaNick = -1;
  for (;;) {
    processEvents();
    pyoritaNuolia();
    if (muokattavaNick >= 0) {
      if (entterpressed || escpressed) {
        if (entterpressed) {
          std::memset(sets.nick[muokattavaNick], 0, sizeof sets.nick[muokattavaNick]);
          std::memcpy(sets.nick[muokattavaNick], uusiNick, std::strlen(uusiNick));
          sets.saveFile();
        }
        entterpressed = escpressed = false;
        muokattavaNick = -1;
        luetaan = 0;
      } else if (luetaan >= 2) {
        muokkaaRivia(uusiNick, nickKoko - 1);
      }
    } else if (valikonSyote(kohta, nickRiveja)) {
      if (kohta == nickRiveja) break;
      muokattavaNick = kohta;
      std::snprintf(uusiNick, sizeof uusiNick, "%.10s", sets.nick[kohta]);
      luetaan = 1;
    }
    waitNextFrame();
    aulanPiirto(piirraNikit, kohta);
    updateAudio();
  }
  unohdaNapit();
}

// The connecting screen stays alive while the host is sought; Escape gives up.
bool yhdistetaanYha() {
  processEvents();
  ilmoita("Join Multiplayer", "connecting...", "Escape: cancel");
  updateAudio();
  return !escpressed;
}

void liity() {
  writeHostFile(osoite);
  unohdaNapit();
  if (!yhdistaHostiin(osoite, yhdistetaanYha)) {
    virheRuutu(eroSyy);
    return;
  }
  joinwaitforstart();
  joinpeli = false;
}

void joinMenu() {
  readHostFile(osoite);
  for (char& c : osoite)
    if (c != 0 && static_cast<unsigned char>(c) < 32) c = 0;  // a line end typed by an editor
  const int unicode = SDL_EnableUNICODE(1);
  unohdaNapit();
  int kohta = jkOsoite;
  for (;;) {
    processEvents();
    pyoritaNuolia();
    if (kohta == jkOsoite && luetaan >= 2) {
      const int nappi = muokkaaRivia(osoite, osoitteenPituus);
      player[0].pylos = nappi == SDLK_UP;
      player[0].palas = nappi == SDLK_DOWN;
    }
    const int suunta = sivusuunta();
    if (kohta == jkPelaajat) joinaavia = std::clamp(joinaavia + suunta, 1, 4);
    if (valikonSyote(kohta, jkTakaisin)) {
      if (kohta == jkTakaisin) break;
      luetaan = 0;
      if (kohta == jkNimet)
        nikinVaihtoMenu();
      else
        liity();
      unohdaNapit();
    }
    luetaan = kohta == jkOsoite ? std::max(luetaan, 1) : 0;
    waitNextFrame();
    aulanPiirto(piirraJoinMenu, kohta);
    updateAudio();
  }
  luetaan = 0;
  SDL_EnableUNICODE(unicode);
}

}  // namespace

void joinwaitforstart() {
  int kohta = okChat;
  unohdaNapit();
  bool lahti = false;
  while (!started2 && !gamequited && !lahti) {
    processEvents();
    pyoritaNuolia();
    const bool oma = kohta < paikkoja && omaPaikka(kohta);
    if (sivusuunta() != 0 && oma) lahetaTiiminVaihto(kohta);
    if (valikonSyote(kohta, okPoistu)) {
      lahti = kohta == okPoistu;
      if (kohta == okChat) chatScreen();
      if (kohta == okAsetukset) asetuksetAulassa();
      if (oma) lahetaTiiminVaihto(kohta);
      unohdaNapit();
    }
    waitNextFrame();
    kuuntelejoin();
    aulanPiirto(piirraOdotus, kohta);
    updateAudio();
  }
  if (started2 && !gamequited) kattelyJoin();
  if (valmiinaalottamaan) {
    rakennaVerkkoOttelu();
    netJoinPeli();
    calculatefps = static_cast<float>(sets.fps);
  }
  if (gamequited) virheRuutu(eroSyy);  // the lobby, or the match, ended without the player's say
  suljeYhteys(hostiYhteys);
}

void hostMultiplayer() { hostMenu(); }
void joinMultiplayer() { joinMenu(); }
