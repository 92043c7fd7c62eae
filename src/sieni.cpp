// SCAFFOLD: replaced by the simulation and rendering work.
#include "sieni.h"

#include <GL/gl.h>

#include "glapi.h"
#include "scene.h"

int spisteita = 1;
SPiste* spiste = nullptr;
float sienipisteet = 10, skuolemapisteet = 1;
void alustaSPisteet() {}
void laskeSPisteet() {}

// Drawing (filled by the rendering work)

void piirraSPisteet() {
  if (spiste == nullptr) return;
  glEnable(GL_DEPTH_TEST);
  glEnable(GL_LIGHTING);
  glDisable(GL_BLEND);
  glDisable(GL_TEXTURE_2D);
  glColor4f(1, 1, 1, 1);
  for (int i = 0; i < spisteita; ++i) {
    glPushMatrix();
    glTranslatef(spiste[i].x, spiste[i].y, -35);
    glScalef(5, 5, 5);
    glRotatef(90, 1, 0, 0);
    glCallList(list_int[23]);
    glPopMatrix();
  }
}

void piirraSGraffat() { piirraPistetaulu("mushroom score"); }
