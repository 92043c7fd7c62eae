// SCAFFOLD: replaced by the shell work.
#include "Main.h"
#include "Sets.h"
#include <cstdlib>
#include <cstring>

int screenwidth = 1024, screenheight = 768, screenbpp = 0;
bool fullscreen = true;
SDL_Rect** modes = nullptr;
int modenumber = 0;
bool dserver = false, alotettu = false, active = true;
float calculatefps = 100;
int starttime = 0, currenttime = 0;
int framecounter = 0, oldframecounter = 0, skipframes = 0;
int calculatedframes = 0, drawedframes = 0, framesdrawn = 0;
int count = 0;
char** names = nullptr;
Sound* backgroundsong = nullptr;
int nykymusa = 1;
bool musiikkipaalla = false, efektitpaalla = false;
int maksimipadit = 10000, maksimiepadit = 10000;
int sirpaleita = 1500, alkusirpaleita = 120;
int players = 2;
int ai = 0;
double fullcredits = 200;
bool entterpressed = false, escpressed = false, spacepressed = false;
bool lctrl = false, rctrl = false;
int luetaan = 0;
char luettunappi = 0;
int modifier = 0;
SDLKey sdlnappi = SDLK_UNKNOWN;
int ekakerta = 1;
bool pistepeli = false, ekapisteframe = false;
double camposx = 0, camposy = 0, camposz = 20;
char netnick[16][11];
char tcpnick[16][16][11];
Sets sets;

double random(double max) { return rand() * max / 2147483647.0; }
bool compare(const char* a, const char* b, int n) { return strncmp(a, b, n) == 0; }
int vortaMain(int, char**) { return 0; }
void processEvents() {}
void exitProgram(int status) { exit(status); }
void handleKeydown(SDL_keysym*) {}
void handleKeyup(SDL_keysym*) {}
void test(Sound*) {}
static Uint32 realTicks() { return SDL_GetTicks(); }
static void realDelay(Uint32 ms) { SDL_Delay(ms); }
Uint32 (*pacingTicks)() = realTicks;
void (*pacingDelay)(Uint32) = realDelay;
int paceAndCalculate(CatchUp, int, void (*)(int)) { return 0; }
void waitNextFrame() {}
