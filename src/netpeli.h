// In-game network play: the framing of the in-game messages, the host's collector
// and encoder of what changed in the world, the client's check-then-apply of what
// the host sends, and the client's button, choice and leave messages.
#pragma once

#include <cstdint>

#include "Player.h"
#include "nethelp.h"

extern int results;         // bytes of game data received
extern int packets;         // packets of game data received
extern limajuttu netlima;   // the last slime blob stuck, for the host to send
extern bool limalaitetaan;  // netlima waits to be sent

// ---- Framing -------------------------------------------------------------------
//
// After the start handshake both directions carry frames [kind u8][length u16 LE]
// [payload]. A first byte of 0x20 or more starts one of the few text messages,
// which keep their lobby bytes; zero bytes and ';' between messages are skipped.

enum PeliLaji : uint8_t {
  // host -> client
  lajiFrame = 1,       // the changes since the last FRAME and the ships' coords
  lajiResyncAlku = 2,  // RESYNC: the world is replaced by what follows
  lajiResyncOsa = 3,
  lajiResyncLoppu = 4,  // the last part, with the ships' coords
  // client -> host
  lajiNapit = 0x10,    // BUTTONS
  lajiValinta = 0x11,  // CHOICE
  lajiLahto = 0x12,    // LEAVE
};

const int peliOtsake = 3;
const int maxIsannanKehys = 16 * 1024;  // payload from the host
const int maxAsiakkaanKehys = 64;       // payload from a client
const int maxFrameViesti = peliOtsake + maxIsannanKehys;

// Sections of a FRAME or RESYNC payload: [tag][param][count] and count records.
enum Osio : uint8_t {
  osioRajahdys = 1,       // ship exploded: slot, x, y
  osioSyntyma,            // ship (re)spawned: slot, type, x, y, heading
  osioAlus,               // a ship beyond its coords (RESYNC): slot, type, team, human, velocity
  osioOhjaus,             // control changed: slot, human
  osioValinta,            // choose a ship: slot, deadline frame
  osioAsteroidi,          // index + asteroid record
  osioAsteroidiRajahdys,  // asteroidipox
  osioKukka,              // index + flower record
  osioValtaus,            // index + owning team of a domination point
  osioSieni,              // index + mushroom record
  osioLimat,              // param = player: all its blobs, limajuttu + life
  osioPikkumies,          // pikkumiessiirto; a life of 0 or less: gone
  osioPatiKuoli,          // param = high byte of the index: kuolevaPati
  osioEpatiKuoli,
  osioPatiSyntyi,  // param = high byte: netPati + life
  osioEpatiSyntyi,
  osioPatiSyntyiTaysi,  // ... + energy + the shot's own counter
  osioEpatiSyntyiTaysi,
  osioKierrosajat,  // slot + the round trip in ms to the machine that plays it (0xffff: the host)
  osioja
};

enum class Lahettaja { isanta, asiakas };

struct PeliViesti {
  enum Tyyppi { kesken, kehys, teksti, virhe } tyyppi;
  uint8_t laji;               // kehys: its kind
  const unsigned char* data;  // kehys: the payload; teksti: the whole text
  int pituus;
  int kulutettu;  // bytes to drop from the front of the stream (also with kesken)
};

// The next whole message at the front of a received byte stream from `lahettaja`.
// `kesken`: the bytes so far are the start of a message, keep them for later.
// `virhe`: too long, unknown or not the sender's to send; drop the connection.
PeliViesti seuraavaPeliViesti(const unsigned char* data, int pituus, Lahettaja lahettaja);

// ---- Host: collecting and encoding ----------------------------------------------

// A match starts: the collector takes the world as the clients know it (they are sent a RESYNC).
void aloitaKeraaja();
// After each calculated frame: finds what was born, died, blew up or came back.
void keraaTapahtumat();
// Notices the host loop queues for the next FRAME.
void ilmoitaOhjaus(int pelaaja, bool ihminen);          // the slot is flown by a human or a pilot now
void pyydaAlusvalinta(int pelaaja, uint32_t takaraja);  // its owner chooses a ship by frame `takaraja`

// One FRAME message (header included) of the events since the last one and the coords
// of every player in play. Events that do not fit wait for the next FRAME. Returns its length.
int koodaaFrame(uint32_t frame, unsigned char* buf, int tila);

// The same FRAME without its coords, for a client too far behind for positions to
// matter: its events still do. `ulos` has room for `pituus` bytes; returns the new length.
int ilmanCoordseja(const unsigned char* viesti, int pituus, unsigned char* ulos);

// RESYNC: the whole world at one frame in messages of at most maxFrameViesti bytes.
struct ResyncKoodaaja {
  uint32_t frame;
  int vaihe, pelaaja, taulukko, indeksi;
};
void aloitaResync(ResyncKoodaaja& r, uint32_t frame);
// The next message of the RESYNC into buf; 0 once the last one has been given.
int seuraavaResyncOsa(ResyncKoodaaja& r, unsigned char* buf, int tila);

// ---- Client: checking and applying ----------------------------------------------

struct PeliVastaanotto {
  int64_t uusinFrame;    // newest FRAME received, -1 none yet
  int myohassa;          // FRAMEs that arrived when the client had already reached their frame
  bool resyncKesken;     // a RESYNC has begun and not ended: the world is half built
  int64_t resyncValmis;  // the frame of a RESYNC just completed, -1 none; the loop takes it
};
extern PeliVastaanotto peliVastaanotto;
// Choose-a-ship requests from the host: the frame by which the slot's owner must
// choose, -1 none.
extern int64_t alusvalintaPyynto[maxPlayers];
// The round trips the host last reported: ms to the machine of each slot, -1 the host's own.
extern int isannanKierrosajat[maxPlayers];

// A match starts on a client: nothing kept, nothing pending.
void aloitaAsiakas();
// The parse half: the whole message is well formed and within range. Nothing is applied.
bool tarkistaPeliMsg(uint8_t laji, const unsigned char* data, int pituus);
// Parse, then act: a FRAME is kept until the client reaches its frame (one that is
// already due is applied at once and counted late); a RESYNC is applied as it comes.
// False for a malformed message, of which nothing is applied.
bool kasittelePeliMsg(uint8_t laji, const unsigned char* data, int pituus, int asiakkaanFrame);
// Applies the kept FRAMEs whose frame is `frame` or earlier; call after each calculated frame.
void sovellaErat(int frame);

// ---- Client to host --------------------------------------------------------------

const uint8_t nappiTuli = 1, nappiErikois = 2, nappiKaasu = 4, nappiVasen = 8, nappiOikea = 16,
              nappiPakki = 32;

struct SlotinNapit {
  uint8_t pelaaja, napit;
};

uint8_t napitBitteina(const Player& p);  // the local keys of a player as button bits
int koodaaNapit(unsigned char* buf, int tila, uint16_t jarjestys, uint32_t saatu, uint32_t nahtyFrame,
                const SlotinNapit* napit, int maara);
int koodaaValinta(unsigned char* buf, int tila, int pelaaja, int alusnumero);
int koodaaLahto(unsigned char* buf, int tila);

const int maxYhteyksia = 16;
// What each connection's last BUTTONS said.
struct AsiakasYhteys {
  bool kuultu;  // a BUTTONS has arrived
  uint16_t jarjestys;
  uint32_t kuitattu;    // bytes the client has received of the host's stream
  uint32_t nahtyFrame;  // newest FRAME it had seen
};
extern AsiakasYhteys asiakasYhteys[maxYhteyksia];
// Ship chosen through CHOICE by the slot's owner, -1 none; the host loop checks and takes it.
extern int alusvalinta[maxPlayers];

enum class AsiakkaanTulos { ok, lahtee, virhe };
// The parse half of a client's message.
bool tarkistaAsiakkaanMsg(uint8_t laji, const unsigned char* data, int pituus);
// Parse, then act for connection `yhteys`; `omistaja[slot]` is the connection owning
// each slot. Buttons and choices of slots it does not own are left alone.
AsiakkaanTulos kasitteleAsiakkaanMsg(int yhteys, uint8_t laji, const unsigned char* data, int pituus,
                                     const int* omistaja);

// ---- The in-game loops ----------------------------------------------------------------

const int frameVali = 2;  // a FRAME every second calculated frame

// The match of the lobby's start, hosted or joined, until it is won, left or lost; both
// run without a window when the drawing is replaced (pelinPiirto).
void netHostPeli();
void netJoinPeli();
// One pass of the running loop's work without drawing and without waiting: receives,
// the due world steps with their collecting or applying, sends and time-outs. Screens
// opened over a match call it every pass, so that a network match never pauses.
void verkkoTausta();
// Leaves the match: a host tells its clients ("quiting..;"), a client says goodbye.
void lahdeOttelusta();

// The parts of the host's loop that benchmarks and tests also drive on their own (with
// verkkoTausta for the passes): the start, with a RESYNC to every client; the FRAME of
// frame f to every client as far as each keeps up (whole, without coords, or kept for
// it); and the end, which gives the keys, the drawing and the round trips back.
void aloitaIsannanOttelu();
void hostLahetaPeli(int frame);
void suljeOttelu();

// Called after each world step of either loop with its frame (tests record the world there).
extern void (*verkkoAskeleenJalkeen)(int frame);

// What the loops count, for the tests and the benchmarks.
struct VerkkoLaskurit {
  int pudotetutFramet;  // host: frames the world step fell so far behind that they were skipped
  int lyhennetyt;       // host: FRAMEs sent without coords to a client falling behind
  int jonotetut;        // host: FRAMEs kept in the program for a client that stopped reading
  int hylatyt;          // host: kept FRAMEs thrown away for a RESYNC, as they outgrew their room
  int resynct;          // host: RESYNCs sent after a discarded queue
  int viive;            // client: the playout delay in frames
  int maailmanFrame;    // the frame the world has been calculated to
};
extern VerkkoLaskurit verkkoLaskurit;
