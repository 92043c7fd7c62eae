// The main menu, the debug view of the ship models, the settings menu and the player set-up screen.
#include "Menu.h"

#include <GL/gl.h>
#include <SDL/SDL.h>

#include <cstdio>

#include "Main.h"
#include "Player.h"
#include "Teksti.h"
#include "audio.h"
#include "glapi.h"
#include "localgame.h"
#include "net.h"

float nuolirot = 0;
bool saavalita = false;
bool debugmode = false;

namespace {

// The title is kept with the entries but never drawn.
const char* const otsikot[6] = {"main menu", "Local Game", "Host Multiplayer", "Join Multiplayer", "Settings",
                                "Quit"};
const int kohtia = 5;

// Where the cursor arrows sit: the right one just after each label.
const float nuoliSyvyys = -12.0f;
const float vasenNuoliX = -6.5f;
const float oikeaNuoliX[kohtia] = {-1.9f, -0.6f, -0.8f, -2.6f, -3.9f};

void pyoritaNuolia() {
  nuolirot += 2.5f;
  if (nuolirot > 180) nuolirot -= 360;
}

void suorakaide(float x1, float y1, float x2, float y2, float z) {
  glBegin(GL_QUADS);
  glTexCoord2f(0, 1);
  glVertex3f(x1, y1, z);
  glTexCoord2f(1, 1);
  glVertex3f(x2, y1, z);
  glTexCoord2f(1, 0);
  glVertex3f(x2, y2, z);
  glTexCoord2f(0, 0);
  glVertex3f(x1, y2, z);
  glEnd();
}

void piirraTausta() {
  glEnable(GL_TEXTURE_2D);
  glBindTexture(GL_TEXTURE_2D, texture[31]);
  glColor4f(1, 1, 1, 1);
  suorakaide(-1, -0.75f, 1, 0.75f, -1.8f);
}

void piirraPaneeli() {
  glDisable(GL_TEXTURE_2D);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  glColor4f(0, 0, 0, 0.6f);
  suorakaide(-2, -0.5f, -0.1f, 0.5f, -3.5f);
}

// The glyphs are white on black: added to the picture, their black vanishes.
void piirraOtsikot() {
  glEnable(GL_TEXTURE_2D);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE);
  glColor4f(1, 0, 0, 1);
  for (int i = 0; i < kohtia; i++) gl_println(-20, 4.0f - 2.0f * i, -40, otsikot[i + 1]);
}

void piirraNuoli(float x, float y, float kaanto) {
  glPushMatrix();
  glTranslatef(x, y, nuoliSyvyys);
  glRotatef(kaanto, 0, 0, 1);
  glRotatef(nuolirot, 1, 0, 0);
  glScalef(0.22f, 0.3f, 0.3f);
  glCallList(list_int[24]);
  glPopMatrix();
}

void piirraNuolet(int item) {
  glDisable(GL_TEXTURE_2D);
  glDisable(GL_BLEND);
  glEnable(GL_LIGHTING);
  glEnable(GL_DEPTH_TEST);
  const GLfloat valo[] = {-0.3f, 0.5f, 1.0f, 0.0f};
  glLightfv(GL_LIGHT0, GL_POSITION, valo);
  glColor4f(1.0f, 0.75f, 0.15f, 1);
  const float y = 1.0f - 0.55f * item;
  piirraNuoli(vasenNuoliX, y, 0);
  // The debug entry has no label, so no arrow after one.
  if (item < kohtia) piirraNuoli(oikeaNuoliX[item], y, 180);
}

// Back to the state the game's own drawing expects.
void palautaTila() {
  glEnable(GL_TEXTURE_2D);
  glEnable(GL_LIGHTING);
  glEnable(GL_DEPTH_TEST);
  glDisable(GL_BLEND);
  glColor4f(1, 1, 1, 1);
}

// The debug view: the 24 ship models in a grid, slowly turning, until Enter or Escape.
void piirraMallit() {
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glLoadIdentity();
  const GLfloat valo[] = {0.3f, 0.5f, 1.0f, 0.0f};
  glLightfv(GL_LIGHT0, GL_POSITION, valo);
  char numero[4];
  for (int i = 0; i < 24; i++) {
    const float x = -22.5f + 9.0f * (i % 6), y = 13.5f - 9.0f * (i / 6);
    glEnable(GL_LIGHTING);
    glDisable(GL_BLEND);
    glColor4f(1, 1, 1, 1);
    glBindTexture(GL_TEXTURE_2D, alus[i].texture);
    glPushMatrix();
    glTranslatef(x, y, -60);
    glRotatef(nuolirot, 0, 0, 1);
    glCallList(list_alus[i]);
    glPopMatrix();
    glDisable(GL_LIGHTING);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    snprintf(numero, sizeof numero, "%d", i);
    gl_println(x, y - 3.5f, -60, numero, 0.8f);
  }
  palautaTila();
  SDL_GL_SwapBuffers();
}

void debugPiirtomenu() {
  while (!entterpressed && !escpressed) {
    processEvents();
    pyoritaNuolia();
    waitNextFrame();
    piirraMallit();
    updateAudio();
  }
  entterpressed = escpressed = false;
}

void avaa(int item) {
  switch (item) {
    case 0: onePlayerGameMenu(); break;
    case 1: hostMultiplayer(); break;
    case 2: joinMultiplayer(); break;
    case 3: asetusmenu(); break;
    default:
      printf("debug\n");
      debugPiirtomenu();
      break;
  }
}

}  // namespace

bool valikonSyote(int& item, int last) {
  Player& p = player[0];
  if (entterpressed) {
    entterpressed = false;
    return true;
  }
  if (p.pylos) {
    item = item == 0 ? last : item - 1;
    p.pylos = false;
  } else if (p.palas) {
    item = item == last ? 0 : item + 1;
    p.palas = false;
  } else if (escpressed) {
    escpressed = false;
    item = last;
    return true;
  }
  return false;
}

void unohdaNapit() {
  escpressed = entterpressed = false;
  Player& p = player[0];
  p.pylos = p.palas = p.pleft = p.pright = p.pfire = false;
}

void mainmenu() {
  saavalita = true;
  const int last = debugmode ? 5 : 4;
  int item = 0;
  for (;;) {
    processEvents();
    pyoritaNuolia();
    joinpeli = hostpeli = false;
    if (valikonSyote(item, last)) {
      if (item == last) return;
      avaa(item);
      unohdaNapit();
    }
    waitNextFrame();
    drawmenu(item);
    updateAudio();
  }
}

void drawmenu(int item) {
  glDisable(GL_LIGHTING);
  glDisable(GL_DEPTH_TEST);
  glEnable(GL_BLEND);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glLoadIdentity();
  piirraTausta();
  piirraPaneeli();
  piirraOtsikot();
  piirraNuolet(item);
  palautaTila();
  SDL_GL_SwapBuffers();
}

// The settings screens are not built yet.
void asetusmenu() {}

// The player set-up screen is not built yet.
void playerMenu() {}
