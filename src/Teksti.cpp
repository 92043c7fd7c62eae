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
const bool leveydetAlussa =
    (std::copy(std::begin(kirjainleveys), std::end(kirjainleveys), letterwidth), true);

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
  glBindTexture(GL_TEXTURE_2D, texture[tx::font]);
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

float keskitettyX(const char* teksti, float koko, float keskus) {
  return keskus + koko - koko * static_cast<float>(gl_pituus(teksti));
}

void aloitaRuutupiirto() {
  glPushAttrib(GL_ENABLE_BIT | GL_COLOR_BUFFER_BIT | GL_CURRENT_BIT | GL_TEXTURE_BIT | GL_LINE_BIT);
  GLint nakyma[4];
  glGetIntegerv(GL_VIEWPORT, nakyma);
  glMatrixMode(GL_PROJECTION);
  glPushMatrix();
  glLoadIdentity();
  glOrtho(0, nakyma[2], 0, nakyma[3], -1, 1);
  glMatrixMode(GL_MODELVIEW);
  glPushMatrix();
  glLoadIdentity();
  glDisable(GL_LIGHTING);
  glDisable(GL_DEPTH_TEST);
  glDisable(GL_CULL_FACE);
  glEnable(GL_BLEND);
}

void lopetaRuutupiirto() {
  glMatrixMode(GL_PROJECTION);
  glPopMatrix();
  glMatrixMode(GL_MODELVIEW);
  glPopMatrix();
  glPopAttrib();
}

void ruudunVerho(float x1, float y1, float x2, float y2, float peitto) {
  glDisable(GL_TEXTURE_2D);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  glColor4f(0, 0, 0, peitto);
  glRectf(x1, y1, x2, y2);
}

void varjostettuRivi(float x, float y, const char* teksti, float koko) {
  GLfloat vari[4];
  glGetFloatv(GL_CURRENT_COLOR, vari);
  glEnable(GL_TEXTURE_2D);
  // The glyphs are white on black: as a blend factor they darken what lies under them.
  glBlendFunc(GL_ZERO, GL_ONE_MINUS_SRC_COLOR);
  glColor4f(1, 1, 1, 1);
  const float siirto = std::max(1.0f, koko * 0.15f);
  gl_println(x + siirto, y - siirto, 0, teksti, koko);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE);
  glColor4f(vari[0], vari[1], vari[2], 1);
  gl_println(x, y, 0, teksti, koko);
}

namespace {

// Over the table's veil a line needs no shadow: it is added to the dark.
void taulukonRivi(float x, float y, const char* teksti, float koko) {
  glEnable(GL_TEXTURE_2D);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE);
  gl_println(x, y, 0, teksti, koko);
}

const char* taulukonSolu(const Taulukko& t, int rivi, int sarake, char* tila, size_t koko) {
  if (rivi < 0)
    glColor4f(1, 0.3f, 0.3f, 1);
  else
    glColor4f(1, 1, 1, 1);
  return t.solu(t.tiedot, rivi, sarake, tila, koko);
}

}  // namespace

void piirraTaulukko(const Taulukko& t) {
  const int sarakkeita = std::min(t.sarakkeita, taulukonSarakkeita);
  const float vali = 1.5f;  // between columns, in glyph units
  float leveys[taulukonSarakkeita];
  float kokoLeveys = -vali;
  char tila[32];
  for (int c = 0; c < sarakkeita; ++c) {
    leveys[c] = 0;
    for (int r = -1; r < t.riveja; ++r)
      leveys[c] = std::max(leveys[c], float(gl_pituus(taulukonSolu(t, r, c, tila, sizeof tila))));
    kokoLeveys += leveys[c] + vali;
  }
  if (t.alarivi) kokoLeveys = std::max(kokoLeveys, float(gl_pituus(t.alarivi)));
  GLint nakyma[4];
  glGetIntegerv(GL_VIEWPORT, nakyma);
  const int riveja = t.riveja + (t.alarivi ? 4 : 2);  // the title, the headings, a gap and the line under
  const float koko = std::min({10.0f, 0.45f * nakyma[2] / kokoLeveys, 0.8f * nakyma[3] / (3.2f * riveja)});
  const float rivi = 3.2f * koko;
  const float vasen = (nakyma[2] - 2 * koko * kokoLeveys) / 2, yla = (nakyma[3] + riveja * rivi) / 2;
  aloitaRuutupiirto();
  ruudunVerho(vasen - 3 * koko, yla + rivi * 0.6f, nakyma[2] - vasen + 3 * koko,
              yla - riveja * rivi + rivi * 0.2f, 0.85f);
  glColor4f(1, 0.75f, 0.15f, 1);
  taulukonRivi(keskitettyX(t.otsikko, koko * 1.4f, nakyma[2] / 2.0f), yla - rivi * 0.3f, t.otsikko,
               koko * 1.4f);
  for (int r = -1; r < t.riveja; ++r) {
    float x = vasen + koko;  // a glyph is centred on the pen
    for (int c = 0; c < sarakkeita; ++c) {
      taulukonRivi(x, yla - rivi * (r + 2.3f), taulukonSolu(t, r, c, tila, sizeof tila), koko);
      x += 2 * koko * (leveys[c] + vali);
    }
  }
  if (t.alarivi) {
    glColor4f(0.85f, 0.85f, 0.85f, 1);
    taulukonRivi(vasen + koko, yla - rivi * (t.riveja + 3.3f), t.alarivi, koko);
  }
  lopetaRuutupiirto();
}
