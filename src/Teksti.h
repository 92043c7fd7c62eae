// Bitmap-font text, and text and tables drawn in window pixels over a finished picture.
#pragma once

#include <cstddef>

// Glyph advances in glyph-half-widths: the start values of letterwidth, and the widths
// the font atlas generator sizes each glyph to, so that text runs evenly spaced.
// clang-format off
inline constexpr float kirjainleveys[256] = {
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
// clang-format on

extern float letterwidth[256];

void gl_println(float x, float y, float z, const char* text);
void gl_println(float x, float y, float z, const char* text, float size);
double gl_pituus(const char* text);
// Where a line of text of size `koko` starts so that it is centred on x = keskus.
float keskitettyX(const char* teksti, float koko, float keskus = 0);

// Drawing in window pixels over the finished picture: x right and y up from the
// bottom-left corner, text sizes in pixels (half a glyph). lopetaRuutupiirto gives the
// caller's matrices and state back.
void aloitaRuutupiirto();
void lopetaRuutupiirto();
// A black veil of opacity `peitto` over a rectangle of the window.
void ruudunVerho(float x1, float y1, float x2, float y2, float peitto);
// A line in the current colour over a dark shadow, so that it reads over anything.
void varjostettuRivi(float x, float y, const char* teksti, float koko);

// A table in the middle of the window over a dark veil: a title, a row of headings,
// the rows, and a line under them; each column as wide as its widest text.
struct Taulukko {
  const char* otsikko;
  int sarakkeita, riveja;  // at most taulukonSarakkeita columns; rows without the headings
  const void* tiedot;      // what `solu` reads
  // The text of a cell (rivi -1: the headings), written into `tila` when it is made;
  // it may set the colour, which is otherwise white (the headings red).
  const char* (*solu)(const void* tiedot, int rivi, int sarake, char* tila, size_t koko);
  const char* alarivi;  // or null
};
const int taulukonSarakkeita = 8;
void piirraTaulukko(const Taulukko& t);
