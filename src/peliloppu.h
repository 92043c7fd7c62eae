// Match end, the leader and the victory screen.
#pragma once

extern int mpcredits;            // score limit / credits of a networked game
extern signed char voittotiimi;  // winning team as received by a client

// Local end rules, checked by the local game loops after the world steps.
bool tiimisaantoLoppu();  // death matches: at most one team left in play
bool pistesaantoLoppu();  // objective modes: someone reached fullcredits
int johtavaTiimi();       // team of the leader (the victory screen's argument)

int peliloppu();  // network host's end rule: 1 = match over
void drawVictory(int tiimi);

// What a victory screen shows: the winners' ships (a bit per slot), the team number as
// printed, the credits line with its sum, or with no winner its one word.
struct Voittonakyma {
  unsigned voittajat;
  int voittajia;
  int tiimi;
  bool krediitit;
  int krediittiSumma;
  const char* eiVoittajaa;
};
enum class Voittoruutu { paikallinen, isanta, asiakas };
// `tiimi`: the local death match's leader (johtavaTiimi); the network screens ignore it.
Voittonakyma voittonakyma(Voittoruutu ruutu, int tiimi);

// The network end of a match.
extern bool netGameQuit;  // the network match is over: the loops and the screens over them leave
// Host: sends the victory message to every client through the send queues, then runs
// the victory screen (nothing in a mode without one).
void netVictory();
// The victory screen of a network match until Enter or Escape; for its first 2 s it
// keeps sending what the queues still hold, never blocking.
void netVictoryLoop();
void drawNetVictoryLoop();      // host
void drawJoinNetVictoryLoop();  // client
// Client: a "victoryo"/"victoryd" message: the mode, the winning team and the scores are
// taken, the connection to the host closed and the victory screen run. Returns the
// message's length, or 0 (nothing done) for a message that is not whole or not one of these.
int kasitteleVictoryMsg(const char* msg, int len);
// The victory screen the two above run (netVictoryLoop); tests and fuzz targets replace it.
extern void (*verkkoVoitonSilmukka)();
