// Start-up, the exit path, the SDL event pump, the keyboard map, the music
// playlist callback and the frame clock that every loop of the game runs on.
#include "Main.h"

#include <SDL/SDL_net.h>
#include <glob.h>
#include <sys/time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Alus.h"
#include "Alustuksia.h"
#include "Menu.h"
#include "Player.h"
#include "Sets.h"
#include "audio.h"
#include "glapi.h"
#include "lippu.h"
#include "netpeli.h"

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
bool ohjenappi = false, tilannenappi = false;
int nappainrivinPelaaja[4] = {0, 1, 2, 3};
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

// strncmp stops at a shared end, so two strings that end together match.
bool compare(const char* a, const char* b, int n) { return strncmp(a, b, n) == 0; }

namespace {

const char* const startMusic = "musics/StartMusic/start.mp3";
const int introFps = 150;

// random(n) can return n itself; an index drawn from it must still stay inside.
int randomIndex(int n) { return std::min(static_cast<int>(random(n)), n - 1); }

// ---------------------------------------------------------------- exit path

void printStatisticsAfterShutdown() {
  printf("frames drawn: %i, calculated frames:%i\n", drawedframes, calculatedframes);
  printf("time: %i secs\n", currenttime / 1000);
  // With no calculated frame yet this prints a non-finite rate, which is fine.
  printf("drawn fps: %f\n", static_cast<double>(drawedframes) / calculatedframes * calculatefps);
  printf("calculated fps: %i\n", static_cast<int>(calculatefps));
  if (results > 0)
    printf("received %i bytes gamedata in %i packets %i bytes/packet\n", results, packets,
           packets > 0 ? results / packets : 0);
}

// The first statistics line comes before the libraries go down, the rest after.
void reportAndShutDown() {
  printf("frames drawn: %i\n", framesdrawn);
  SDLNet_Quit();
  uninitAudio();
  SDL_Quit();
  printStatisticsAfterShutdown();
  fflush(stdout);  // the statistics reach a log even if something at exit kills the process
}

// ---------------------------------------------------------------- start-up stages

void scanArguments(int argc, char** argv) {
  for (int i = 1; i < argc; i++)
    if (strcmp(argv[i], "-d") == 0) dserver = true;
  printf(dserver ? "dedicated mode=true\n" : "dedicated mode=false\n");
}

void loadSettings() {
  sets.loadFile("sets.txt");
  screenwidth = sets.width;
  screenheight = sets.height;
  ai = sets.ai;
  fullcredits = sets.credits;
  entterpressed = escpressed = spacepressed = false;
  ekakerta = 1;
  musiikkipaalla = sets.musics > 0;
  efektitpaalla = sets.efects > 0;
  // Sound counts as on from here; initAudio later says whether the mixer really opened.
  if (musiikkipaalla || efektitpaalla) working = true;
  players = sets.playermaara;
}

void initLibraries() {
  if (!dserver) SDL_Init(SDL_INIT_VIDEO);
  if (SDLNet_Init() == -1) {
    printf("SDLNet_Init: %s\n", SDLNet_GetError());
    exit(2);
  }
}

// Index 0 never blocks a later fitting mode: the first fitting index above 0 wins.
void listFullScreenModes() {
  modes = SDL_ListModes(nullptr, SDL_FULLSCREEN | SDL_HWSURFACE);
  if (modes == nullptr) {
    printf("No full-screen modes available!\n");
  } else if (modes == reinterpret_cast<SDL_Rect**>(-1)) {
    printf("All resolutions available.\n");
  } else {
    printf("Available Modes\n");
    for (int i = 0; modes[i]; i++) {
      printf("  %d x %d\n", modes[i]->w, modes[i]->h);
      if (modes[i]->w <= screenwidth && modenumber == 0) modenumber = i;
    }
  }
}

void setWindowIcon() {
  SDL_Surface* icon = SDL_LoadBMP_RW(SDL_RWFromFile("icon.bmp", "rb"), 1);
  if (!icon) {
    printf("Window icon icon.bmp not loaded: %s\n", SDL_GetError());
    return;
  }
  SDL_WM_SetIcon(icon, nullptr);
  SDL_FreeSurface(icon);
}

void prepareVideo() {
  const SDL_VideoInfo* info = SDL_GetVideoInfo();
  if (!info) {
    printf("Could not get video info with SDL: %s.\n", SDL_GetError());
    exitProgram(2);
  }
  listFullScreenModes();
  screenbpp = info->vfmt->BitsPerPixel;
  printf("Video memory available %i kb, color depth:%i\n", static_cast<int>(info->video_mem), screenbpp);
  SDL_GL_SetAttribute(SDL_GL_RED_SIZE, 5);
  SDL_GL_SetAttribute(SDL_GL_GREEN_SIZE, 5);
  SDL_GL_SetAttribute(SDL_GL_BLUE_SIZE, 5);
  SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 16);
  SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
  SDL_GL_SetAttribute(SDL_GL_STENCIL_SIZE, 1);
  SDL_WM_SetCaption("Vorta", nullptr);
  setWindowIcon();
}

// A full-screen mode that fails falls back to 640 x 480 in a window, and the
// settings remember that so a later save keeps a mode that works.
void openWindow() {
  SDL_Surface* surface;
  if (sets.fullscreen > 0) {
    surface = setVideoMode(screenwidth, screenheight, true);
    if (!surface) {
      surface = setVideoMode(640, 480, false);
      if (!surface) exitProgram(-1);
      sets.width = screenwidth = 640;
      sets.height = screenheight = 480;
      sets.fullscreen = 0;
    }
    SDL_ShowCursor(SDL_DISABLE);
  } else {
    surface = setVideoMode(screenwidth, screenheight, false);
    if (!surface) exitProgram(-1);
  }
  printf("Initialized in %ix%i resolution\n", surface->w, surface->h);
}

// Only the millisecond part of the time of day seeds the generator.
void startClock() {
  timeval now;
  gettimeofday(&now, nullptr);
  srand(static_cast<unsigned>(now.tv_usec / 1000));
  starttime = static_cast<int>(SDL_GetTicks());
  oldframecounter = 0;
  framesdrawn = 0;
  calculatefps = static_cast<float>(sets.fps);
}

void failMusicSearch(int code) {
  fprintf(stderr, "Ei muistia tai jotain muuta hassua tuli (%d)? :(\n", code);
  exit(255);
}

void findMusic() {
  static const char* const patterns[] = {"musics/*.mp3", "musics/*.s3m", "musics/*.ogg",
                                         "musics/*.xm",  "musics/*.mod", "musics/*.it"};
  glob_t found{};
  int code = 0;
  bool first = true;
  for (const char* pattern : patterns) {
    code |= glob(pattern, first ? 0 : GLOB_APPEND, nullptr, &found);
    first = false;
  }
  if (code != 0 && code != GLOB_NOMATCH) failMusicSearch(code);
  count = static_cast<int>(found.gl_pathc);
  names = new char*[count];
  for (int i = 0; i < count; i++) {
    names[i] = strdup(found.gl_pathv[i]);
    if (!names[i]) failMusicSearch(0);
    printf(" %s\r\n", names[i]);
  }
  globfree(&found);
}

// Play, stop and play again: the start music is kicked twice on purpose.
void startIntroMusic() {
  backgroundsong = new Sound(startMusic);
  backgroundsong->setVolume(sets.musicvolume / 100);
  backgroundsong->setStopCallback(test);
  backgroundsong->play();
  backgroundsong->stop();
  backgroundsong->play();
}

void runIntro() {
  calculatefps = introFps;
  AlotaLippu();
  calculatefps = static_cast<float>(sets.fps);
}

// The first song is only loaded here; its volume is the raw settings value
// (not divided by 100), unlike the intro music and the playlist callback.
void chooseFirstSong() {
  printf("Starting musics, Song:");
  const int i = randomIndex(count);
  if (count > 0) {
    printf("%s", names[i]);
    backgroundsong = new Sound(names[i]);
    backgroundsong->setStopCallback(test);
    backgroundsong->setVolume(sets.musicvolume);
  }
  printf("\n");
}

void seatPlayers() {
  for (int i = 0; i < maxPlayers; i++) {
    const double r = random(1000);
    player[i].asetaAlus(alus[1]);
    player[i].uudestaan(alus[std::min(static_cast<int>(r / 1000 * alustyyppeja), alustyyppeja - 1)]);
    player[i].numero = i;
    snprintf(netnick[i], sizeof netnick[i], "player %i", i + 1);
    for (int j = 0; j < maxPlayers; j++) snprintf(tcpnick[i][j], sizeof tcpnick[i][j], "player %i", j + 1);
  }
}

bool musicAllowed() { return musiikkipaalla && !dserver; }

void startUp(int argc, char** argv) {
  scanArguments(argc, argv);
  maksimipadit = maksimiepadit = 10000;
  loadSettings();
  printf("musics:%i, effects:%i", musiikkipaalla ? 1 : 0, efektitpaalla ? 1 : 0);
  initLibraries();
  if (!dserver) prepareVideo();
  atexit(SDL_Quit);
  if (!dserver) openWindow();
  startClock();
  if (!dserver) {
    findMusic();
    initAudio();
  }
  alota();
  if (!dserver) LoadGLFont();
  alotettu = false;
  if (musicAllowed()) startIntroMusic();
  if (!dserver) runIntro();
  if (musicAllowed()) backgroundsong->stop();
  if (!dserver) {  // a dedicated start runs no intro, so it never counts as started
    alotettu = true;
    setupOpengl(screenwidth, screenheight);
  }
  framecounter = 0;
  nykymusa = 1;
  camposx = camposy = 0;
  camposz = 20;
  if (musicAllowed()) chooseFirstSong();
  seatPlayers();
  entterpressed = escpressed = pistepeli = false;
}

// ---------------------------------------------------------------- keyboard

// Rows are the four local players, columns their inputs in the order of `controls`,
// each with the name the key help shows.
struct Nappain {
  SDLKey key;
  const char* nimi;
};
const Nappain playerKeys[4][6] = {
    {{SDLK_UP, "Up arrow"},
     {SDLK_DOWN, "Down arrow"},
     {SDLK_LEFT, "Left arrow"},
     {SDLK_RIGHT, "Right arrow"},
     {SDLK_RSHIFT, "right Shift"},
     {SDLK_RCTRL, "right Ctrl"}},
    {{SDLK_w, "W"},
     {SDLK_s, "S"},
     {SDLK_a, "A"},
     {SDLK_d, "D"},
     {SDLK_LSHIFT, "left Shift"},
     {SDLK_LCTRL, "left Ctrl"}},
    {{SDLK_i, "I"}, {SDLK_k, "K"}, {SDLK_j, "J"}, {SDLK_l, "L"}, {SDLK_b, "B"}, {SDLK_n, "N"}},
    {{SDLK_KP8, "keypad 8"},
     {SDLK_KP5, "keypad 5"},
     {SDLK_KP4, "keypad 4"},
     {SDLK_KP6, "keypad 6"},
     {SDLK_KP0, "keypad 0"},
     {SDLK_KP_PERIOD, "keypad period"}},
};
bool Player::*const controls[6] = {&Player::pylos,  &Player::palas, &Player::pleft,
                                   &Player::pright, &Player::pfire, &Player::pease};

// A player's key works only while that player exists; player 1's keys need no
// count, and neither do the releases of left Shift and left Ctrl (harmless: releasing
// a key of a slot that does not exist clears a flag nobody reads).
bool keyCounts(int row, int slot, SDLKey key, bool pressed) {
  if (row == 0) return true;
  if (!pressed && (key == SDLK_LSHIFT || key == SDLK_LCTRL)) return true;
  return saannot::pelaajia() > slot;
}

void applyKey(SDLKey key, bool pressed) {
  if (key == SDLK_RCTRL) rctrl = pressed;
  if (key == SDLK_LCTRL) lctrl = pressed;
  for (int row = 0; row < 4; row++) {
    const int slot = nappainrivinPelaaja[row];
    if (slot < 0 || slot >= maxPlayers) continue;
    for (int c = 0; c < 6; c++)
      if (playerKeys[row][c].key == key && keyCounts(row, slot, key, pressed))
        player[slot].*controls[c] = pressed;
  }
}

// The keys that show something only while they are held.
void applyHeldKey(SDLKey key, bool pressed) {
  if (key == SDLK_F1) ohjenappi = pressed;
  if (key == SDLK_TAB) tilannenappi = pressed;
}

bool isModifierKey(SDLKey key) {
  return key == SDLK_RCTRL || key == SDLK_LCTRL || key == SDLK_RSHIFT || key == SDLK_LSHIFT;
}

// The modifier keys still steer while a line is typed; every other key is text.
void takeTypedKey(const SDL_keysym* keysym) {
  if (keysym->sym == SDLK_RETURN) {
    entterpressed = true;
  } else if (keysym->sym == SDLK_ESCAPE) {
    escpressed = true;
  } else {
    luettunappi = static_cast<char>(keysym->unicode & 127);
    luetaan = 2;
  }
  modifier = keysym->mod;
  sdlnappi = keysym->sym;
  printf("k=%i\n", keysym->sym);
}

// ---------------------------------------------------------------- frame clock

Uint32 realTicks() { return SDL_GetTicks(); }
void realDelay(Uint32 ms) { SDL_Delay(ms); }

// Steps 1-3 of a paced pass. A clock behind the last computed frame (the rate
// changed, as after the intro) restarts the count from the clock instead of
// drawing without pause until it catches up.
void waitForDueFrame() {
  for (;;) {
    readFrameClock();
    if (framecounter < oldframecounter) oldframecounter = framecounter;
    if (framecounter != oldframecounter) return;
    pacingDelay(2);
  }
}

void resizeWindow(int width, int height) {
  screenwidth = width;
  screenheight = height;
  // The X11 window only takes the new size through the video mode; an OpenGL
  // mode of the same flags keeps its context.
  if (SDL_Surface* surface = SDL_GetVideoSurface())
    setVideoMode(width, height, (surface->flags & SDL_FULLSCREEN) != 0);
  ReSizeGLScene(width, height);
}

}  // namespace

SDL_Surface* setVideoMode(int width, int height, bool fullScreen) {
  const Uint32 flags = SDL_OPENGL | SDL_RESIZABLE | (fullScreen ? SDL_FULLSCREEN : 0);
  SDL_Surface* surface = SDL_SetVideoMode(width, height, screenbpp, flags);
  if (!surface) {
    fprintf(stderr, "Couldn't set %i*%i*%i opengl video mode: %s\n", width, height, screenbpp,
            SDL_GetError());
  }
  return surface;
}

Uint32 (*pacingTicks)() = realTicks;
void (*pacingDelay)(Uint32 ms) = realDelay;

int readFrameClock() {
  currenttime = static_cast<int>(pacingTicks() - static_cast<Uint32>(starttime));
  framecounter = static_cast<int>(currenttime * static_cast<double>(calculatefps) / 1000.0);
  return framecounter;
}

int paceAndCalculate(CatchUp policy, int limit, void (*step)(int)) {
  waitForDueFrame();
  return calculateUpTo(framecounter, policy, limit, step);
}

int calculateUpTo(int target, CatchUp policy, int limit, void (*step)(int)) {
  if (policy != CatchUp::Unlimited && oldframecounter < target - limit)
    oldframecounter = (policy == CatchUp::DropBacklog) ? target : target - 1;
  int computed = 0;
  for (skipframes = target - oldframecounter; skipframes > 0; skipframes--) {
    step(++oldframecounter);
    calculatedframes++;
    computed++;
  }
  return computed;
}

void (*taustatyo)() = nullptr;

void waitNextFrame() {
  waitForDueFrame();
  oldframecounter = framecounter;
  if (taustatyo) taustatyo();
}

void handleKeydown(SDL_keysym* keysym) {
  if (luetaan > 0 && !isModifierKey(keysym->sym)) {
    takeTypedKey(keysym);
    return;
  }
  switch (keysym->sym) {
    case SDLK_SPACE: spacepressed = true; break;
    case SDLK_RETURN: entterpressed = true; break;
    case SDLK_ESCAPE: escpressed = true; break;
    default:
      applyKey(keysym->sym, true);
      applyHeldKey(keysym->sym, true);
      break;
  }
}

void handleKeyup(SDL_keysym* keysym) {
  applyKey(keysym->sym, false);
  applyHeldKey(keysym->sym, false);
}

const char* nappaimenNimi(int pelaaja, int ohjain) {
  if (pelaaja < 0 || pelaaja >= 4 || ohjain < 0 || ohjain >= 6) return "";
  return playerKeys[pelaaja][ohjain].nimi;
}

void processEvents() {
  SDL_Event event;
  while (SDL_PollEvent(&event)) {
    switch (event.type) {
      case SDL_KEYDOWN: handleKeydown(&event.key.keysym); break;
      case SDL_KEYUP: handleKeyup(&event.key.keysym); break;
      case SDL_VIDEORESIZE: resizeWindow(event.resize.w, event.resize.h); break;
      case SDL_ACTIVEEVENT:
        if (event.active.state & SDL_APPACTIVE) active = event.active.gain != 0;
        break;
      case SDL_QUIT: exitProgram(0); break;
      default: break;
    }
  }
}

void exitProgram(int status) {
  reportAndShutDown();
  exit(status);
}

// The playlist: when the watched music ends, load and play the next one.
void test(Sound*) {
  if (!alotettu) {
    backgroundsong = new Sound("musics\\StartMusic\\start.mp3");
  } else {
    const int i = randomIndex(count);
    if (count < 1 || !musiikkipaalla) return;
    backgroundsong = new Sound(names[i]);
  }
  backgroundsong->play();
  backgroundsong->setStopCallback(test);
  backgroundsong->setVolume(sets.musicvolume / 100);
}

int vortaMain(int argc, char** argv) {
  startUp(argc, argv);
  if (dserver) {
    // Dedicated mode only initialises: no server loop runs.
    SDLNet_Quit();
    return 0;
  }
  mainmenu();
  reportAndShutDown();
  return 0;
}
