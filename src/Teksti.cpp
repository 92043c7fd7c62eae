// Bitmap-font text: a 16 x 16 grid of glyphs in texture slot 28.
#include "Teksti.h"

#include <GL/gl.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "glapi.h"

float letterwidth[256];

namespace {
// letterwidth is plain data that the game may change; it starts as the shared table.
const bool leveydetAlussa = (std::copy(std::begin(kirjainleveys), std::end(kirjainleveys), letterwidth), true);

const size_t maksimiPituus = 1000;  // a line without a zero byte stops here
const float soluPx = 64, kuvaPx = 1024;

size_t pituus(const char* text) { return text ? strnlen(text, maksimiPituus) : 0; }

// Bytes are read unsigned so that every one indexes inside the width table; those
// above 127 have no glyph in the grid and advance as a blank (their width is 1).
bool onGlyfi(unsigned char b) { return b < 128; }
float leveys(unsigned char b) { return letterwidth[b]; }

// One glyph's quad centred on the pen at `kyna`; the caller holds glBegin(GL_QUADS).
void piirraGlyfi(unsigned char b, float s, float kyna) {
  const int sarake = b & 15, rivi = b >> 4;
  const float vasen = (sarake * soluPx + 2) / kuvaPx, oikea = ((sarake + 1) * soluPx - 1) / kuvaPx;
  const float ala = ((rivi + 1) * soluPx - 1) / kuvaPx, yla = (rivi * soluPx + 2) / kuvaPx;
  glTexCoord2f(vasen, ala);
  glVertex3f(kyna - s, -s, 0);
  glTexCoord2f(oikea, ala);
  glVertex3f(kyna + s, -s, 0);
  glTexCoord2f(oikea, yla);
  glVertex3f(kyna + s, s, 0);
  glTexCoord2f(vasen, yla);
  glVertex3f(kyna - s, s, 0);
}

}  // namespace

void gl_println(float x, float y, float z, const char* text, float size) {
  const size_t n = pituus(text);
  if (n == 0) return;
  glBindTexture(GL_TEXTURE_2D, texture[28]);
  glPushMatrix();
  glTranslatef(x, y, z);
  // The whole line is one batch of quads: a draw call per letter made text the
  // costliest part of the HUD on a software renderer.
  glBegin(GL_QUADS);
  glNormal3f(0, 0, 1);
  float kyna = 0;
  for (size_t i = 0; i < n; i++) {
    const unsigned char b = static_cast<unsigned char>(text[i]);
    if (onGlyfi(b)) piirraGlyfi(b, size, kyna);
    kyna += 2 * size * leveys(b);
  }
  glEnd();
  glPopMatrix();
}

void gl_println(float x, float y, float z, const char* text) { gl_println(x, y, z, text, 1.0f); }

double gl_pituus(const char* text) {
  const size_t n = pituus(text);
  double summa = 0;
  for (size_t i = 0; i < n; i++) summa += leveys(static_cast<unsigned char>(text[i]));
  return summa;
}
