// Bitmap-font text: a 16 x 16 grid of glyphs in texture slot 28.
#include "Teksti.h"

#include <GL/gl.h>

#include <cstring>

#include "glapi.h"

// Glyph advances in glyph-half-widths.
float letterwidth[256] = {
    // 0-31: control codes
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1,
    // space ! then 34-43
    0.5f, 0.2f, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1,
    // , - . /
    0.2f, 0.45f, 0.2f, 0.5f,
    // 0-9
    0.6f, 0.5f, 0.6f, 0.6f, 0.65f, 0.65f, 0.6f, 0.65f, 0.6f, 0.6f,
    // : then 59-62, ? @
    0.2f, 1, 1, 1, 1, 0.5f, 1,
    // A-Z
    0.7f, 0.6f, 0.7f, 0.7f, 0.65f, 0.6f, 0.7f, 0.8f, 0.6f, 0.7f, 0.7f, 0.6f, 0.9f, 0.85f, 0.8f, 0.6f,
    0.9f, 0.7f, 0.7f, 0.7f, 0.7f, 0.7f, 1, 0.8f, 0.7f, 0.8f,
    // 91-96
    1, 1, 1, 1, 1, 1,
    // a-z
    0.6f, 0.6f, 0.6f, 0.6f, 0.6f, 0.5f, 0.6f, 0.6f, 0.2f, 0.4f, 0.6f, 0.2f, 0.8f, 0.5f, 0.55f, 0.55f,
    0.55f, 0.5f, 0.55f, 0.55f, 0.55f, 0.6f, 0.8f, 0.6f, 0.6f, 0.6f,
    // 123-255
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1,
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1,
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1,
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1,
    1, 1, 1, 1, 1};

namespace {

const size_t maksimiPituus = 1000;  // a line without a zero byte stops here
const float soluPx = 64, kuvaPx = 1024;

size_t pituus(const char* text) { return text ? strnlen(text, maksimiPituus) : 0; }

// Bytes are read unsigned so that every one indexes inside the width table; those
// above 127 have no glyph in the grid and advance as a blank (their width is 1).
bool onGlyfi(unsigned char b) { return b < 128; }
float leveys(unsigned char b) { return letterwidth[b]; }

void piirraGlyfi(unsigned char b, float s) {
  const int sarake = b & 15, rivi = b >> 4;
  const float vasen = (sarake * soluPx + 2) / kuvaPx, oikea = ((sarake + 1) * soluPx - 1) / kuvaPx;
  const float ala = ((rivi + 1) * soluPx - 1) / kuvaPx, yla = (rivi * soluPx + 2) / kuvaPx;
  glBegin(GL_QUADS);
  glNormal3f(0, 0, 1);
  glTexCoord2f(vasen, ala);
  glVertex3f(-s, -s, 0);
  glTexCoord2f(oikea, ala);
  glVertex3f(s, -s, 0);
  glTexCoord2f(oikea, yla);
  glVertex3f(s, s, 0);
  glTexCoord2f(vasen, yla);
  glVertex3f(-s, s, 0);
  glEnd();
}

}  // namespace

void gl_println(float x, float y, float z, const char* text, float size) {
  const size_t n = pituus(text);
  if (n == 0) return;
  glBindTexture(GL_TEXTURE_2D, texture[28]);
  glPushMatrix();
  glTranslatef(x, y, z);
  for (size_t i = 0; i < n; i++) {
    const unsigned char b = static_cast<unsigned char>(text[i]);
    if (onGlyfi(b)) piirraGlyfi(b, size);
    glTranslatef(2 * size * leveys(b), 0, 0);
  }
  glPopMatrix();
}

void gl_println(float x, float y, float z, const char* text) { gl_println(x, y, z, text, 1.0f); }

double gl_pituus(const char* text) {
  const size_t n = pituus(text);
  double summa = 0;
  for (size_t i = 0; i < n; i++) summa += leveys(static_cast<unsigned char>(text[i]));
  return summa;
}
