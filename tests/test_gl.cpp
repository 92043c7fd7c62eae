// GL set-up, textures, team colours and text, in a real GL context.
#include <GL/gl.h>
#include <SDL/SDL.h>
#include <gtest/gtest.h>
#include <png.h>
#include <sys/stat.h>

#include <cstdio>
#include <string>
#include <vector>

#include "Alus.h"
#include "Main.h"
#include "Sets.h"
#include "Teksti.h"
#include "glapi.h"
#include "testutil.h"

namespace {

const int W = 256, H = 256;

using Bytes = std::vector<unsigned char>;

// An 8-bit PNG of the given colour type; `pixels` holds the rows top first,
// `palette` the RGB triples of a palette image.
void writePng(const std::string& path, int w, int h, int colourType, const Bytes& pixels,
              const Bytes& palette = {}) {
  const int channels = colourType == PNG_COLOR_TYPE_RGB ? 3 : colourType == PNG_COLOR_TYPE_RGBA ? 4 : 1;
  FILE* f = fopen(path.c_str(), "wb");
  ASSERT_NE(f, nullptr);
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_init_io(png, f);
  png_set_IHDR(png, info, w, h, 8, colourType, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  if (colourType == PNG_COLOR_TYPE_PALETTE)
    png_set_PLTE(png, info, reinterpret_cast<png_const_colorp>(palette.data()), int(palette.size() / 3));
  png_write_info(png, info);
  for (int y = 0; y < h; y++) png_write_row(png, pixels.data() + y * w * channels);
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  fclose(f);
}

// A font image whose every glyph is a white block in the upper half of a black cell,
// so that a glyph drawn upside down shows.
void writeBlockFont(const std::string& path) {
  const int size = 128, cell = 8;
  Bytes px(size * size * 3, 0);
  for (int y = 0; y < size; y++)
    for (int x = 0; x < size; x++)
      if (x % cell >= 2 && x % cell < 6 && y % cell >= 1 && y % cell < 5)
        for (int c = 0; c < 3; c++) px[(y * size + x) * 3 + c] = 255;
  writePng(path, size, size, PNG_COLOR_TYPE_RGB, px);
}

// Runs each test in a fresh folder with an empty "textures" directory. The window is
// bare, not the game window: these tests run the GL set-up themselves, and the game
// window's set-up before them made the leak checker's thread tracer crash at exit when
// the program ran without a terminal.
class InTempDir : public ::testing::Test {
 protected:
  void SetUp() override {
    const testutil::GLWindow& window = testutil::programWindow(W, H);
    ASSERT_TRUE(window.ok()) << window.error();
    ASSERT_EQ(mkdir("textures", 0755), 0);
    sets.mode256 = false;
  }
  testutil::TempWorkDir dir;
};

// Runs a loader with standard output captured, and returns what it printed.
template <class F>
std::string printed(F load) {
  testing::internal::CaptureStdout();
  load();
  return testing::internal::GetCapturedStdout();
}

Bytes rgbTexels(GLuint name, int w, int h) {
  Bytes t(w * h * 3);
  glBindTexture(GL_TEXTURE_2D, name);
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glGetTexImage(GL_TEXTURE_2D, 0, GL_RGB, GL_UNSIGNED_BYTE, t.data());
  return t;
}

TEST_F(InTempDir, TexturesLoadInAnyPngFormatAndBadFilesLeaveEmptySlots) {
  // Rows top first: red, green / blue, white.
  writePng("textures/pati0.png", 2, 2, PNG_COLOR_TYPE_RGB, {255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255});
  writePng("textures/pikku.png", 3, 1, PNG_COLOR_TYPE_PALETTE, {0, 1, 2},
           {10, 20, 30, 40, 50, 60, 70, 80, 90});
  writePng("textures/muna.png", 1, 2, PNG_COLOR_TYPE_GRAY, {200, 7});
  writePng("textures/Ohjus.png", 1, 1, PNG_COLOR_TYPE_RGBA,
           {9, 99, 199, 0});  // fully transparent, colour kept
  FILE* junk = fopen("textures/galax.png", "wb");
  fputs("\x89PNG not really", junk);
  fclose(junk);

  const std::string out = printed([] { EXPECT_EQ(LoadGLTextures(), 1); });

  EXPECT_EQ(rgbTexels(texture[4], 2, 2), Bytes({255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255}));
  EXPECT_EQ(rgbTexels(texture[16], 3, 1), Bytes({10, 20, 30, 40, 50, 60, 70, 80, 90}));
  EXPECT_EQ(rgbTexels(texture[22], 1, 2), Bytes({200, 200, 200, 7, 7, 7}));
  EXPECT_EQ(rgbTexels(texture[20], 1, 1), Bytes({9, 99, 199}));
  EXPECT_EQ(texture[23], 0u);  // unreadable
  EXPECT_EQ(texture[8], 0u);   // missing
  EXPECT_NE(out.find("textures/galax.png"), std::string::npos);
  EXPECT_NE(out.find("textures/tottero1.png"), std::string::npos);

  // A reload replaces every name and releases the old ones.
  const GLuint oldFlare = texture[18], oldShot = texture[4];
  printed(LoadGLTextures);
  for (GLuint old : {oldFlare, oldShot}) {
    bool reused = false;
    for (GLuint t : texture) reused = reused || t == old;
    EXPECT_TRUE(reused || !glIsTexture(old));
  }
  EXPECT_EQ(alus[0].patitexture, texture[4]);
}

TEST_F(InTempDir, SmallModeSwitchesOnlyTheBigImages) {
  sets.mode256 = true;
  writePng("textures/teksti_256.png", 1, 1, PNG_COLOR_TYPE_GRAY, {255});
  const std::string out = printed(LoadGLTextures);
  EXPECT_NE(texture[28], 0u);
  for (const char* name : {"loading 256*256 font", "tausta2_256.png", "tausta3_256.png", "alkukuva_256.png",
                           "textures/pati0.png"})
    EXPECT_NE(out.find(name), std::string::npos) << name;
}

TEST_F(InTempDir, ZeroHeightViewportCountsAsOnePixel) {
  printed([] { ReSizeGLScene(640, 0); });
  GLint vp[4];
  glGetIntegerv(GL_VIEWPORT, vp);
  EXPECT_EQ(vp[3], 1);
  EXPECT_EQ(vp[2], 640);
  GLfloat m[16];
  glGetFloatv(GL_PROJECTION_MATRIX, m);
  EXPECT_NEAR(m[0] * 640, m[5], 1e-3);  // aspect 640 / 1
  printed([] { ReSizeGLScene(W, H); });
}

float brightnessAt(int x, int y) {
  const Bytes p = testutil::readRgb(x, y, 1, 1);
  return (p[0] + p[1] + p[2]) / (3 * 255.0f);
}

// Lit where a glyph's upper half is, dark below it (the image is the right way up), past
// the end and at the window's far edges; a high byte draws nothing but takes one width.
TEST_F(InTempDir, TextLightsPixelsAtItsPointOnly) {
  writeBlockFont("textures/teksti.png");
  printed([] { setupOpengl(W, H); });
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glLoadIdentity();
  glDisable(GL_LIGHTING);
  glDisable(GL_BLEND);
  glEnable(GL_TEXTURE_2D);
  glColor3f(1, 1, 1);
  glTranslatef(0, 0, -10);
  gl_println(0, 0, 0, "AB");
  const char high[] = {char(0xC8), 'A', char(0xFF), 0};
  gl_println(0, -4, 0, high, 0.5f);
  const struct {
    float x, y;
    bool lit;
  } points[] = {{0, 0.4f, true},   {2 * letterwidth['A'], 0.4f, true},
                {0, -0.6f, false}, {3.5f, 0.4f, false},
                {0, -3.8f, false}, {1.0f, -3.8f, true}};  // 2 x size x width 1
  for (const auto& p : points) {
    int x, y;
    testutil::projectToWindow(p.x, p.y, 0, x, y);
    EXPECT_EQ(brightnessAt(x, y) > 0.8f, p.lit) << p.x << ", " << p.y;
    EXPECT_TRUE(p.lit || brightnessAt(x, y) < 0.05f) << p.x << ", " << p.y;
  }
  for (int i = 0; i < W; i += 16) EXPECT_LT(brightnessAt(W - 1, i) + brightnessAt(i, H - 1), 0.05f);
}

TEST_F(InTempDir, TextWidthOfHighBytesAndTheLengthLimit) {
  EXPECT_DOUBLE_EQ(gl_pituus(""), 0);
  EXPECT_DOUBLE_EQ(gl_pituus(nullptr), 0);
  EXPECT_NEAR(gl_pituus("\xC8z"), 1 + 0.6, 1e-6);
  std::vector<char> unterminated(1500, 'a');
  EXPECT_NEAR(gl_pituus(unterminated.data()), 1000 * 0.6, 1e-3);
}

}  // namespace
