// Network roles, the transport under every network loop (connections with their
// receive buffers and send queues), the host's and the client's lobby, the start
// handshake and the lobby screens.
#pragma once

#include <SDL/SDL_net.h>

#include <cstdint>

extern bool hostpeli;  // this machine hosts a networked game
extern bool joinpeli;  // this machine is a client of one

void hostMultiplayer();
void joinMultiplayer();

// ---- Transport ---------------------------------------------------------------------

const int yhteyksia = 16;               // host connections: 0 is the listening socket, 1..15 clients
const int hostiYhteys = 16;             // a client's one connection, to its host
const int vastaanottoTila = 64 * 1024;  // received bytes not yet handled, per connection
const int jonoTila = 128 * 1024;        // bytes waiting for the kernel, per connection

extern int verkkoportti;  // 9999; tests pick a free one

// Every send and every close goes through these (SDLNet_TCP_Send, SDLNet_TCP_Close), so
// tests and fuzz targets capture the bytes without sockets.
extern int (*tcpLahetys)(TCPsocket soketti, const void* data, int pituus);
extern void (*tcpSulku)(TCPsocket soketti);
// Every receive goes through this one (SDLNet_TCP_Recv on a non-blocking socket: -1 with
// errno EAGAIN when nothing waits), so tests can delay what arrives.
extern int (*tcpVastaanotto)(TCPsocket soketti, void* data, int enintaan);

struct Yhteys {
  unsigned char saapuneet[vastaanottoTila];  // received, not yet handled
  int saapuneita;
  unsigned char jono[jonoTila];  // sent by the game, not yet taken by the kernel
  int jononAlku, jononLoppu;
  uint64_t lahetetty;      // bytes the kernel has taken
  uint64_t vastaanotettu;  // bytes received
};
extern Yhteys yhteys[yhteyksia + 1];

// The socket of a connection (tcpsoketit, or joinsoketti for hostiYhteys).
TCPsocket soketti(int i);
// Takes a new socket into use: non-blocking, no send delay, empty buffers.
// False (the socket is closed) when its descriptor cannot be found.
bool liitaYhteys(int i, TCPsocket s);
// Queues bytes for the connection and sends what the kernel takes now; never blocks.
// A connection whose queue would overflow, or whose send fails, is dropped (false).
bool laheta(int i, const void* data, int pituus);
bool lahetaTeksti(int i, const char* teksti);  // a text message with its zero byte
// Sends what the kernel takes of every connection's queue.
void tyhjennaJonot();
// Waits up to `ms` for any connection to have bytes (or a waiting connection);
// afterwards SDLNet_SocketReady tells which. Returns SDLNet_CheckSockets' result.
int odotaSoketteja(int ms);
// One receive into the connection's buffer: bytes received, 0 when the peer has
// closed, -1 on an error, -2 when nothing was waiting after all.
int vastaanota(int i);
// Forgets the first n bytes of the buffer (the handler has used them).
void kuluta(int i, int n);
// Closes a connection's socket and empties its buffers.
void suljeYhteys(int i);

// ---- Lobby state (host side indexed by connection or by player slot) ---------------

extern TCPsocket tcpsoketit[yhteyksia];
extern int tila[yhteyksia];  // 0 none, 1 connected, 2 start noticed, 3 teams received
extern int timeout[yhteyksia];
extern int pelaajiasoketista[yhteyksia];
extern int soketteja;
extern int mptiimi[16];
extern int mpstatus[16];  // 0 open, 1 closed, 2 cpu, 3 human
extern int pelaajasoketista[16];
extern int playerslots;
extern int hosteja;
extern int timeoutaika;
extern Uint32 timeouttarkistettu;

// Client side.
extern TCPsocket joinsoketti;
extern int joinaavia;
extern bool gamequited, started2, alkujuttusaatu, valmiinaalottamaan;
extern unsigned omatPaikat;  // bit per slot the host says this client owns
bool omaPaikka(int s);       // a player of this machine has lobby slot s
extern const char* eroSyy;   // why the lobby ended, for the error screen

// Host.
void alustaAula();  // empty lobby tables for a new lobby
void addsocket();
void kuuntele();
int hostNetKasittele(int yhteys, const unsigned char* buf, int pituus);  // returns bytes used
void lahetaAlkuRuutu(int yhteys);
void lahettele();
void paivitaPelaajat();
void disconnect(int yhteys);
void hostQuit();
void hostStart();

// Client.
// Opens the connection to the host; `jatketaanko`, called while it waits, may give up
// (false). False: eroSyy says why.
bool yhdistaHostiin(const char* osoite, bool (*jatketaanko)() = nullptr);
void kuuntelejoin();
int joinwaitKasittele(const unsigned char* buf, int pituus);  // returns bytes used
void lahetaTiiminVaihto(int paikka);
void joinwaitforstart();
// A client leaves its host: the connection closes, gamequited is set and eroSyy says why.
void katkaiseHostista(const char* syy);

// One lobby network pass for whichever side this is (the chat keeps the lobby running with it).
void aulanVerkko();

// The last host address file.
void readHostFile(char* buf);  // buf holds at least 48 bytes
void writeHostFile(const char* buf);

// ---- Game start ----------------------------------------------------------------------

// The match from the lobby tables: human and cpu slots take part, in slot order, with
// their teams and nicks; the mode, the limit and the rate as the lobby set them.
void rakennaVerkkoOttelu();
extern int ottelunPaikka[16];   // match player -> lobby slot
extern int ottelunPelaaja[16];  // lobby slot -> match player, -1 when not in the match

// Draws one frame of a lobby screen; tests replace it to run without a window.
extern void (*aulanPiirto)(void (*ruutu)(int), int kohta);
