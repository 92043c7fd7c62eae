// SCAFFOLD: replaced by the simulation and rendering work.
#include "domination.h"

#include <GL/gl.h>

#include "glapi.h"
#include "scene.h"

int dpisteita = 2;
DPiste* dpiste = nullptr;
float pisteetfreimissa = 0.005f;
void alustaDPisteet() {}
void laskeDPisteet() {}

// Drawing (filled by the rendering work)

// Each point is a big flower in its owner's colour, white while nobody holds it.
void piirraDPisteet() {
  if (dpiste == nullptr) return;
  glEnable(GL_DEPTH_TEST);
  glEnable(GL_LIGHTING);
  glDisable(GL_BLEND);
  glDisable(GL_TEXTURE_2D);
  for (int i = 0; i < dpisteita; ++i) {
    const DPiste& p = dpiste[i];
    if (p.tiimi >= 0) valitseVari(p.tiimi);
    else glColor4f(1, 1, 1, 1);
    glPushMatrix();
    glTranslatef(p.x, p.y, -35);
    glScalef(8, 8, 8);
    glRotatef(90, 1, 0, 0);
    glCallList(list_int[22]);
    glPopMatrix();
  }
}

void piirraDGraffat() { piirraPistetaulu("domination score"); }
