#include "font.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "../../src/Teksti.h"

Typeface::Typeface(const char* path) {
  if (FT_Init_FreeType(&library) != 0) {
    printf("texturegen: FreeType could not be initialised\n");
    library = nullptr;
    return;
  }
  if (FT_New_Face(library, path, 0, &face) != 0) {
    printf("texturegen: cannot open the font %s\n", path);
    face = nullptr;
  }
}

Typeface::~Typeface() {
  if (face) FT_Done_Face(face);
  if (library) FT_Done_FreeType(library);
}

Glyph Typeface::render(unsigned char code, int pixelSize, float scaleX) const {
  Glyph g;
  FT_Set_Pixel_Sizes(face, 0, pixelSize);
  FT_Matrix stretch = {static_cast<FT_Fixed>(scaleX * 65536.0f), 0, 0, 0x10000};
  FT_Set_Transform(face, &stretch, nullptr);
  // Unhinted outlines keep the shapes true when they are stretched.
  if (FT_Load_Char(face, code, FT_LOAD_RENDER | FT_LOAD_NO_HINTING) != 0) return g;
  const FT_GlyphSlot slot = face->glyph;
  const FT_Bitmap& bm = slot->bitmap;
  g.width = static_cast<int>(bm.width);
  g.rows = static_cast<int>(bm.rows);
  g.left = slot->bitmap_left;
  g.top = slot->bitmap_top;
  g.advance = slot->advance.x / 64.0f;
  g.coverage.resize(static_cast<size_t>(g.width) * g.rows);
  for (int y = 0; y < g.rows; ++y)
    std::copy_n(bm.buffer + y * bm.pitch, g.width, g.coverage.begin() + static_cast<size_t>(y) * g.width);
  return g;
}

namespace {

// Adds a glyph's coverage with its bitmap's top-left corner at (x, y), clipped to `clip`.
void blitGlyph(Image& img, const Glyph& g, int x, int y, int clipX0, int clipY0, int clipX1, int clipY1) {
  for (int j = 0; j < g.rows; ++j)
    for (int i = 0; i < g.width; ++i) {
      const int px = x + i, py = y + j;
      if (px < clipX0 || py < clipY0 || px >= clipX1 || py >= clipY1) continue;
      const float c = g.at(i, j) / 255.0f;
      img.at(px, py) += Rgb{c, c, c};
    }
}

}  // namespace

float Typeface::lineWidth(const std::string& text, int pixelSize, float tracking) const {
  float pen = 0;
  for (unsigned char c : text) pen += render(c, pixelSize).advance + tracking;
  return pen - tracking;
}

float Typeface::drawLine(Image& mask, const std::string& text, float x, float y, int pixelSize,
                         float tracking) const {
  float pen = x;
  for (unsigned char c : text) {
    const Glyph g = render(c, pixelSize);
    blitGlyph(mask, g, static_cast<int>(pen) + g.left, static_cast<int>(y) - g.top, 0, 0, mask.width(),
              mask.height());
    pen += g.advance + tracking;
  }
  return pen - tracking - x;
}

namespace {

constexpr int kCell = 64;
constexpr int kFirstGlyph = 33, kLastGlyph = 126;  // space stays blank by nature
constexpr int kGlyphGap = 6;                       // pixels left free between neighbouring glyphs
constexpr float kMinStretch = 0.75f, kMaxStretch = 1.3f;
// The game samples a cell from pixel 2 to pixel 62; the glyphs stay inside that.
constexpr int kUsableHeight = 58;

struct VerticalFit {
  int pixelSize, baseline;
};

// The largest size at which every glyph fits the cell height, with the baseline placed
// so that the tallest ascender and the deepest descender are equally far from the edges.
VerticalFit fitVertically(const Typeface& font) {
  for (int size = 56;; --size) {
    int top = 0, bottom = 0;
    for (int c = kFirstGlyph; c <= kLastGlyph; ++c) {
      const Glyph g = font.render(static_cast<unsigned char>(c), size);
      top = std::max(top, g.top);
      bottom = std::max(bottom, g.rows - g.top);
    }
    if (top + bottom <= kUsableHeight || size <= 8) return {size, (kCell + top - bottom) / 2};
  }
}

}  // namespace

// Each glyph is stretched to fill its advance (kirjainleveys x 64 pixels, less a small gap) and
// centred within that advance, which starts at the cell's left edge: with the game stepping
// the pen by exactly that advance, every pair of neighbours is then the same gap apart.
Image makeFontAtlas(const Typeface& font) {
  Image atlas(16 * kCell, 16 * kCell);
  const VerticalFit fit = fitVertically(font);
  for (int c = kFirstGlyph; c <= kLastGlyph; ++c) {
    const unsigned char code = static_cast<unsigned char>(c);
    const float advance = kirjainleveys[c] * kCell;
    const Glyph natural = font.render(code, fit.pixelSize);
    if (natural.width == 0) continue;
    const float stretch = std::clamp((advance - kGlyphGap) / natural.width, kMinStretch, kMaxStretch);
    const Glyph g = font.render(code, fit.pixelSize, stretch);
    const int cellX = (c & 15) * kCell, cellY = (c >> 4) * kCell;
    const int x = cellX + static_cast<int>(std::lround((advance - g.width) / 2));
    blitGlyph(atlas, g, x, cellY + fit.baseline - g.top, cellX + 2, cellY + 2, cellX + kCell - 1,
              cellY + kCell - 1);
  }
  return atlas;
}
