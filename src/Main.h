// Start-up, the shell's global state, the SDL event pump and the frame clock.
#pragma once

#include <SDL/SDL.h>

class Sets;
class Sound;

// Window and video.
extern int screenwidth, screenheight, screenbpp;
extern bool fullscreen;
extern SDL_Rect** modes;
extern int modenumber;
// The window's OpenGL video mode, resizable, at `screenbpp`; prints why when the display
// refuses it (null).
SDL_Surface* setVideoMode(int width, int height, bool fullScreen);

// Run state.
extern bool dserver;   // dedicated mode ("-d")
extern bool alotettu;  // the intro has ended
extern bool active;

// Frame clock.
extern float calculatefps;
extern int starttime, currenttime;
extern int framecounter, oldframecounter, skipframes;
extern int calculatedframes, drawedframes, framesdrawn;

// Music.
extern int count;     // music files found
extern char** names;  // their paths
extern Sound* backgroundsong;
extern int nykymusa;
extern bool musiikkipaalla, efektitpaalla;

// Limits and pools.
extern int maksimipadit, maksimiepadit;
extern int sirpaleita, alkusirpaleita;

extern int players;
extern int ai;
extern double fullcredits;

// One-shot keys and the text-entry handshake (keyboard).
extern bool entterpressed, escpressed, spacepressed;
extern bool ohjenappi, tilannenappi;  // F1 (the key help) and Tab (the standings), while held
// The slot each row of keys (player 1's to player 4's) steers, -1 none: slots 0..3 in a
// local game, the humans of this machine in a network game. The menus read row 0's slot.
extern int nappainrivinPelaaja[4];
extern bool lctrl, rctrl;
extern int luetaan;
extern char luettunappi;
extern int modifier;
extern SDLKey sdlnappi;

extern int ekakerta;
extern bool pistepeli, ekapisteframe;
extern double camposx, camposy, camposz;

extern char netnick[16][11];
extern char tcpnick[16][16][11];

extern Sets sets;

// A double in [0, max] (both ends reachable): rand() * max / 2147483647.0.
double random(double max);
// True when the first n bytes match, or both strings end before a difference.
bool compare(const char* a, const char* b, int n);

// The program entry (src/vorta.cpp calls it).
int vortaMain(int argc, char** argv);

void processEvents();
void exitProgram(int status);
void handleKeydown(SDL_keysym* keysym);
void handleKeyup(SDL_keysym* keysym);
// What the key help calls local player `pelaaja`'s (0..3) key for input `ohjain`
// (0..5: thrust, reverse, left, right, fire, special); "" outside those.
const char* nappaimenNimi(int pelaaja, int ohjain);
void test(Sound* finishedSong);  // the music stop callback

// Frame pacing shared by every game loop.
// How a loop that has fallen behind the clock catches up.
enum class CatchUp {
  Unlimited,    // compute every missed frame, however many
  DropBacklog,  // more than `limit` behind: drop the whole backlog, compute nothing this pass
  KeepOne       // more than `limit` behind: skip to one frame before the clock, compute one
};
// Steps 1-5 of a paced pass: waits (2 ms sleeps) until a new calculated frame is due,
// then runs `step(++oldframecounter)` once per due frame under the catch-up policy.
// Returns the number of frames computed.
int paceAndCalculate(CatchUp policy, int limit, void (*step)(int));
// The calculated frame the clock has reached (sets currenttime and framecounter).
int readFrameClock();
// Steps 4-5 on their own, without waiting: runs `step(++oldframecounter)` for each frame up
// to `target` under the catch-up policy (the network loops keep their world's count apart
// from the clock's). Returns the number of frames computed.
int calculateUpTo(int target, CatchUp policy, int limit, void (*step)(int));
// Steps 1-3 for menu loops: wait for the next calculated frame, then oldframecounter = framecounter;
// then the screen underneath does its part (`taustatyo`, when set).
void waitNextFrame();
// Work that a screen keeps doing while a menu opened from it runs (the network lobby
// keeps its connections alive under the settings menu).
extern void (*taustatyo)();
// The clock the pacing reads; tests replace these with a fake clock.
extern Uint32 (*pacingTicks)();
extern void (*pacingDelay)(Uint32 ms);
