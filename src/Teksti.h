// Bitmap-font text.
#pragma once

extern float letterwidth[256];

void gl_println(float x, float y, float z, const char* text);
void gl_println(float x, float y, float z, const char* text, float size);
double gl_pituus(const char* text);
