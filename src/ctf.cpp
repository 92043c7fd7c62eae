// SCAFFOLD: replaced by the simulation and rendering work.
#include "ctf.h"

#include <GL/gl.h>

#include "Player.h"
#include "glapi.h"
#include "scene.h"

int cpisteita = 16;
CPiste* cpiste = nullptr;
CPiste* alkupiste = nullptr;
float ctfpisteet = 25, ckuolemapisteet = 1;
void alustaCPisteet() {}
void aloitaCPisteet() {}
void laskeCPisteet() {}

// Drawing (filled by the rendering work)

// The home square of a flower glows in its team's colour.
static void piirraKoti(const CPiste& koti, int tiimi) {
  glEnable(GL_BLEND);
  glEnable(GL_TEXTURE_2D);
  glBindTexture(GL_TEXTURE_2D, texture[18]);
  valitseVari(tiimi);
  glBegin(GL_QUADS);
  glNormal3f(0, 0, 1);
  glTexCoord2f(0, 0);
  glVertex3f(koti.x - 10, koti.y - 10, -34);
  glTexCoord2f(1, 0);
  glVertex3f(koti.x + 10, koti.y - 10, -34);
  glTexCoord2f(1, 1);
  glVertex3f(koti.x + 10, koti.y + 10, -34);
  glTexCoord2f(0, 1);
  glVertex3f(koti.x - 10, koti.y + 10, -34);
  glEnd();
  glDisable(GL_TEXTURE_2D);
  glDisable(GL_BLEND);
}

static void piirraKukka(float x, float y, float koko) {
  glPushMatrix();
  glTranslatef(x, y, -35);
  glScalef(koko, koko, koko);
  glRotatef(90, 1, 0, 0);
  glCallList(list_int[22]);
  glPopMatrix();
}

// A carried flower rides on its carrier's drawing.
void piirraCPisteet() {
  if (cpiste == nullptr || alkupiste == nullptr) return;
  glEnable(GL_DEPTH_TEST);
  glEnable(GL_LIGHTING);
  glDisable(GL_BLEND);
  glDisable(GL_TEXTURE_2D);
  for (int i = 0; i < cpisteita; ++i) {
    const CPiste& kukka = cpiste[i];
    if (!kukka.enabled) continue;
    piirraKoti(alkupiste[i], i);
    if (kukka.player == kukkaKotona) piirraKukka(alkupiste[i].x, alkupiste[i].y, 5);
    else if (kukka.player == kukkaPudonnut) piirraKukka(kukka.x, kukka.y, 5);
  }
}

void piirraCGraffat() { piirraPistetaulu("capture the flower score"); }
