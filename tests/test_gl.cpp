// GL set-up, textures, team colours, unit solids and text, in a real GL context.
#include <GL/gl.h>
#include <gtest/gtest.h>
#include <png.h>
#include <SDL/SDL.h>
#include <sys/stat.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "testutil.h"
#include "Alus.h"
#include "Main.h"
#include "Sets.h"
#include "Teksti.h"
#include "glapi.h"

namespace {

const int W = 256, H = 256;

class GlEnv : public ::testing::Environment {
 public:
  // Its own plain window rather than the shared one: with the shared window the leak
  // checker's thread tracer crashes at exit when the program runs without a terminal.
  // No SDL_Quit: unloading the GL driver would hide its allocations from the suppressions.
  void SetUp() override {
    ASSERT_EQ(SDL_Init(SDL_INIT_VIDEO), 0) << SDL_GetError();
    ASSERT_NE(SDL_SetVideoMode(W, H, 0, SDL_OPENGL), nullptr) << SDL_GetError();
  }
};
const auto* const glEnv = ::testing::AddGlobalTestEnvironment(new GlEnv);

using Bytes = std::vector<unsigned char>;

// An 8-bit PNG of the given colour type; `pixels` holds the rows top first,
// `palette` the RGB triples of a palette image.
void writePng(const std::string& path, int w, int h, int colourType, const Bytes& pixels, const Bytes& palette = {}) {
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

// Runs each test in a fresh folder with an empty "textures" directory.
class InTempDir : public ::testing::Test {
 protected:
  void SetUp() override {
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

std::vector<float> lumTexels(GLuint name, int size) {
  std::vector<float> t(size * size);
  glBindTexture(GL_TEXTURE_2D, name);
  glGetTexImage(GL_TEXTURE_2D, 0, GL_LUMINANCE, GL_FLOAT, t.data());
  return t;
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
  writePng("textures/pikku.png", 3, 1, PNG_COLOR_TYPE_PALETTE, {0, 1, 2}, {10, 20, 30, 40, 50, 60, 70, 80, 90});
  writePng("textures/muna.png", 1, 2, PNG_COLOR_TYPE_GRAY, {200, 7});
  writePng("textures/Ohjus.png", 1, 1, PNG_COLOR_TYPE_RGBA, {9, 99, 199, 0});  // fully transparent, colour kept
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
  EXPECT_NE(out.find("loading 1024*1024 font"), std::string::npos);
  EXPECT_EQ(out.substr(out.size() - 5), "moi!\n");

  for (int slot : {15, 18, 42}) EXPECT_TRUE(glIsTexture(texture[slot])) << slot;
  EXPECT_EQ(tiimitexture, texture[42]);
  EXPECT_EQ(alus[5].texture2, texture[16]);
  EXPECT_EQ(alus[15].patitexture, 0u);  // slot 36 is never filled

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

TEST(GeneratedTextures, TexelValues) {
  const float tol = 1.5f / 255;
  GLuint flare = 0, square = 0, team = 0;
  generateLightFlare(&flare);
  generateLightNelio(&square);
  generateTeamJuttu(&team);

  const auto f = lumTexels(flare, 64);
  EXPECT_NEAR(f[32 * 64 + 32], 0.99f, tol);
  EXPECT_NEAR(f[32 * 64 + 42], std::exp(-0.5) - 0.01, tol);
  EXPECT_NEAR(f[22 * 64 + 32], std::exp(-0.5) - 0.01, tol);
  EXPECT_NEAR(f[0], 0.0f, tol);  // negative, clamped

  for (float t : lumTexels(square, 16)) EXPECT_EQ(t, 1.0f);

  const auto t = lumTexels(team, 64);
  EXPECT_NEAR(t[32 * 64 + 32], 0.0f, tol);                                    // dark core
  EXPECT_NEAR(t[32 * 64 + 47], (std::exp(-1.125) - 0.01) * 1.5 - 0.3125, tol);  // r = 15, hollowed
  EXPECT_NEAR(t[32 * 64 + 48], (std::exp(-1.28) - 0.01) * 1.5, tol);           // r = 16, untouched
  EXPECT_NEAR(t[52 * 64 + 32], (std::exp(-2.0) - 0.01) * 1.5, tol);
  glDeleteTextures(1, &flare);
  glDeleteTextures(1, &square);
  glDeleteTextures(1, &team);
}

TEST(TeamColours, TableAndFallback) {
  auto colourOf = [](int c) {
    valitseVari(c);
    std::vector<float> v(4);
    glGetFloatv(GL_CURRENT_COLOR, v.data());
    v[3] = std::min(v[3], 1.0f);  // the first three ask for alpha 2, which the GL may keep or clamp
    return v;
  };
  EXPECT_EQ(colourOf(1), (std::vector<float>{0.25f, 0.25f, 1, 1}));  // both ends of the table
  EXPECT_EQ(colourOf(15), (std::vector<float>{0, 0, 1, 1}));
  for (int other : {-1, 16, 1000}) EXPECT_EQ(colourOf(other), (std::vector<float>{1, 0, 0, 1})) << other;
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
  EXPECT_NEAR(m[5], 1 / std::tan(22.5 * M_PI / 180), 1e-4);
  printed([] { ReSizeGLScene(W, H); });
}

// --- Drawing checks: pixels read back from the back buffer.

float brightnessAt(int x, int y) {
  const Bytes p = testutil::readRgb(x, y, 1, 1);
  return (p[0] + p[1] + p[2]) / (3 * 255.0f);
}

using testutil::projectToWindow;

class Drawing : public InTempDir {
 protected:
  void SetUp() override {
    InTempDir::SetUp();
    writeBlockFont("textures/teksti.png");
    printed([] { setupOpengl(W, H); });
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glLoadIdentity();
  }
  // A white light straight from the viewer and no ambient: a face is bright only if its normal faces us.
  void headLight() {
    const GLfloat dir[] = {0, 0, 1, 0}, none[] = {0, 0, 0, 1};
    glLightfv(GL_LIGHT0, GL_POSITION, dir);
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, none);
    glLightModeli(GL_LIGHT_MODEL_LOCAL_VIEWER, GL_FALSE);
    glEnable(GL_CULL_FACE);
    glEnable(GL_DEPTH_TEST);
    glDisable(GL_TEXTURE_2D);
    glColor3f(1, 1, 1);
  }
  void flatText() {
    glDisable(GL_LIGHTING);
    glDisable(GL_BLEND);
    glEnable(GL_TEXTURE_2D);
    glColor3f(1, 1, 1);
  }
};

// Draws a solid turned by `angle` degrees about an axis and returns the brightness at the window's centre.
float centreOf(void (*solid)(), float angle, float ax, float ay, float az, float distance = 8) {
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glLoadIdentity();
  glTranslatef(0, 0, -distance);
  glRotatef(angle, ax, ay, az);
  solid();
  return brightnessAt(W / 2, H / 2);
}

TEST_F(Drawing, UnitSolidsFaceOutwardsWithOutwardNormals) {
  headLight();
  // Each turn brings a different face of the cube to the viewer.
  const float turns[][4] = {{0, 0, 1, 0}, {180, 0, 1, 0}, {90, 1, 0, 0}, {-90, 1, 0, 0}, {90, 0, 1, 0}, {-90, 0, 1, 0}};
  for (const auto& t : turns) {
    EXPECT_GT(centreOf(drawCube, t[0], t[1], t[2], t[3]), 0.9f) << t[0] << " " << t[1];
    EXPECT_LT(brightnessAt(5, 5), 0.05f);
  }
  EXPECT_GT(centreOf(drawTri, 0, 0, 1, 0), 0.9f);
  EXPECT_GT(centreOf(drawTri, 180, 0, 1, 0), 0.9f);
  EXPECT_GT(centreOf(drawTri, -90, 1, 0, 0), 0.9f);  // the bottom, seen from below
}

TEST_F(Drawing, MenuArrowIsSolidFromEveryTurnAndListsAreRebuilt) {
  ASSERT_TRUE(glIsList(list_int[24]));
  headLight();
  glDisable(GL_CULL_FACE);  // the menu draws it as it is, lit
  auto arrow = [] { glCallList(list_int[24]); };
  for (float spin = -180; spin < 180; spin += 30) {
    EXPECT_GT(centreOf(arrow, spin, 1, 0, 0, 6), 0.2f) << spin;  // the shaft
    EXPECT_LT(brightnessAt(W / 2, H - 10), 0.05f);
  }
  const GLuint old = list_int[24];
  setLists();
  EXPECT_TRUE(glIsList(list_int[24]));
  EXPECT_TRUE(old == list_int[24] || !glIsList(old));
}

TEST_F(Drawing, TextLightsPixelsAtItsPointOnly) {
  flatText();
  glTranslatef(0, 0, -10);
  gl_println(0, 0, 0, "AB");
  int ax, ay, bx, by, belowx, belowy, farx, fary;
  projectToWindow(0, 0.4f, 0, ax, ay);
  projectToWindow(2 * letterwidth['A'], 0.4f, 0, bx, by);
  projectToWindow(0, -0.6f, 0, belowx, belowy);  // the glyph's dark lower half: the image is the right way up
  projectToWindow(3.5f, 0.4f, 0, farx, fary);    // past the end of "AB"
  EXPECT_GT(brightnessAt(ax, ay), 0.8f);
  EXPECT_GT(brightnessAt(bx, by), 0.8f);
  EXPECT_LT(brightnessAt(belowx, belowy), 0.05f);
  EXPECT_LT(brightnessAt(farx, fary), 0.05f);
  for (int y = 0; y < H; y += 16) EXPECT_LT(brightnessAt(W - 1, y), 0.05f);
  for (int x = 0; x < W; x += 16) EXPECT_LT(brightnessAt(x, H - 1), 0.05f);
}

TEST_F(Drawing, HighBytesDrawNothingAndAdvanceOneWidth) {
  flatText();
  glTranslatef(0, 0, -10);
  const char text[] = {char(0xC8), 'A', char(0xFF), 0};
  gl_println(0, 0, 0, text, 0.5f);
  int hx, hy, ax, ay;
  projectToWindow(0, 0.2f, 0, hx, hy);
  projectToWindow(1.0f, 0.2f, 0, ax, ay);  // 2 x size x width 1
  EXPECT_LT(brightnessAt(hx, hy), 0.05f);
  EXPECT_GT(brightnessAt(ax, ay), 0.8f);
}

TEST(TextWidth, SumsTheWidthTableUpToTheLimit) {
  EXPECT_DOUBLE_EQ(gl_pituus(""), 0);
  EXPECT_DOUBLE_EQ(gl_pituus(nullptr), 0);
  EXPECT_NEAR(gl_pituus("Quit"), 0.9 + 0.55 + 0.2 + 0.55, 1e-6);
  EXPECT_NEAR(gl_pituus("\xC8z"), 1 + 0.6, 1e-6);
  std::vector<char> unterminated(1500, 'a');
  EXPECT_NEAR(gl_pituus(unterminated.data()), 1000 * 0.6, 1e-3);
}

}  // namespace
