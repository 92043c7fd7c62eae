// Bitmap-font text.
#pragma once

// Glyph advances in glyph-half-widths: the start values of letterwidth, and the widths
// the font atlas generator sizes each glyph to, so that text runs evenly spaced.
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

extern float letterwidth[256];

void gl_println(float x, float y, float z, const char* text);
void gl_println(float x, float y, float z, const char* text, float size);
double gl_pituus(const char* text);
