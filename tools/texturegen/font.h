// FreeType text: the game's bitmap-font atlas and large lettering for the title picture.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <string>
#include <vector>

#include "image.h"

// One rendered glyph: 8-bit coverage rows plus its placement relative to the pen.
struct Glyph {
  int width = 0, rows = 0;
  int left = 0, top = 0;  // bitmap offset from the pen position, top measured upwards
  float advance = 0;      // pen advance in pixels
  std::vector<unsigned char> coverage;
  unsigned char at(int x, int y) const { return coverage[static_cast<size_t>(y) * width + x]; }
};

class Typeface {
 public:
  explicit Typeface(const char* path);  // prints a message when the font cannot be opened
  ~Typeface();
  Typeface(const Typeface&) = delete;
  Typeface& operator=(const Typeface&) = delete;

  bool ok() const { return face != nullptr; }
  // Renders a character at a pixel size, stretched horizontally by scaleX.
  Glyph render(unsigned char code, int pixelSize, float scaleX = 1.0f) const;
  // Adds a line's coverage (0..1) to every channel of `mask`, the baseline starting at (x, y).
  // Returns the width of the line in pixels.
  float drawLine(Image& mask, const std::string& text, float x, float y, int pixelSize,
                 float tracking = 0) const;
  float lineWidth(const std::string& text, int pixelSize, float tracking = 0) const;

 private:
  FT_Library library = nullptr;
  FT_Face face = nullptr;
};

// The 1024 x 1024 atlas: a 16 x 16 grid of 64-pixel cells, byte b in column b & 15 and
// row b >> 4, white glyphs for codes 32-126 on black.
Image makeFontAtlas(const Typeface& font);
