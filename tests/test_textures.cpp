// The generated images: present and loadable as RGB at their sizes, with glows that the
// game's additive blending shows without their quad.
#include <SDL/SDL.h>
#include <SDL/SDL_image.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

#include "testutil.h"

namespace {

using Surface = std::unique_ptr<SDL_Surface, decltype(&SDL_FreeSurface)>;

const std::string kData = VORTA_DATA_DIR;

Surface loadTexture(const std::string& name) {
  return Surface(IMG_Load((kData + "/textures/" + name).c_str()), SDL_FreeSurface);
}

int brightest(const SDL_Surface* s, int x, int y) {
  const Uint8* p = static_cast<const Uint8*>(s->pixels) + y * s->pitch + x * s->format->BytesPerPixel;
  Uint32 value = 0;
  for (int i = 0; i < s->format->BytesPerPixel; ++i) value |= static_cast<Uint32>(p[i]) << (8 * i);
  Uint8 r, g, b;
  SDL_GetRGB(value, s->format, &r, &g, &b);
  return std::max({r, g, b});
}

// Glows are everything the game blends additively over the scene: their border must be
// black or the quad shows.
const struct {
  const char* name;
  int size;
  bool glow;
} kTextures[] = {
    {"teksti.png", 1024, false},     {"teksti_256.png", 256, false},  {"tottero1.png", 256, false},
    {"pati0.png", 64, true},         {"pati1.png", 128, true},        {"jalki.png", 64, true},
    {"alus5_2.png", 256, false},     {"sucker.png", 128, true},       {"pikku.png", 128, true},
    {"pati6.png", 128, true},        {"pati20.png", 128, true},       {"Ohjus.png", 128, true},
    {"pati8.png", 64, true},         {"muna.png", 128, true},         {"galax.png", 256, true},
    {"aukko.png", 128, true},        {"galax2.png", 256, true},       {"pati15.png", 128, true},
    {"alus20.png", 256, false},      {"epati18.png", 128, true},      {"meteor2.png", 256, false},
    {"electric.png", 256, false},    {"epati20.png", 128, true},      {"pati22.png", 64, true},
    {"tausta2.png", 1024, false},    {"tausta2_256.png", 256, false}, {"tausta3.png", 1024, false},
    {"tausta3_256.png", 256, false}, {"alkukuva.png", 1024, false},   {"alkukuva_256.png", 256, false},
};

TEST(Textures, EveryImageLoadsAsRgbOfItsSizeAndGlowsFadeToBlackBeforeTheirBorder) {
  for (const auto& e : kTextures) {
    SCOPED_TRACE(e.name);
    const Surface s = loadTexture(e.name);
    ASSERT_TRUE(s) << IMG_GetError();
    EXPECT_EQ(s->format->BytesPerPixel, 3);
    EXPECT_TRUE(s->w == e.size && s->h == e.size) << s->w << " x " << s->h;
    int border = 0;
    for (int i = 0; e.glow && i < s->w; ++i)
      border = std::max({border, brightest(s.get(), i, 0), brightest(s.get(), i, s->h - 1),
                         brightest(s.get(), 0, i), brightest(s.get(), s->w - 1, i)});
    EXPECT_LE(border, 2);
  }
  const Surface icon(SDL_LoadBMP((kData + "/icon.bmp").c_str()), SDL_FreeSurface);
  ASSERT_TRUE(icon) << SDL_GetError();
  EXPECT_TRUE(icon->w == 32 && icon->h == 32);
}

TEST(TextureGenerator, FailsVisiblyWhenTheFolderCannotBeMade) {
  // A folder cannot be made below an ordinary file.
  const testutil::RunResult run =
      testutil::runProgram({kData + "/../tools/texturegen", kData + "/icon.bmp/below"}, {}, 60000);
  EXPECT_TRUE(run.exited && run.status != 0);
  EXPECT_NE(run.output.find("cannot create the folder"), std::string::npos) << run.output;
}

}  // namespace
