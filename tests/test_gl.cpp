// GL set-up, textures, team colours, unit solids and text, in a real GL context.
#include <GL/gl.h>
#include <GL/glu.h>
#include <SDL/SDL.h>
#include <gtest/gtest.h>
#include <unistd.h>

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
  void SetUp() override {
    ASSERT_EQ(SDL_Init(SDL_INIT_VIDEO), 0) << SDL_GetError();
    ASSERT_NE(SDL_SetVideoMode(W, H, 0, SDL_OPENGL), nullptr) << SDL_GetError();
  }
  // No SDL_Quit: unloading the GL driver would hide its allocations from the leak suppressions.
};
const auto* const glEnv = ::testing::AddGlobalTestEnvironment(new GlEnv);

// --- A minimal PNG writer: stored (uncompressed) deflate blocks, so the tests need no codec.
using Bytes = std::vector<unsigned char>;

uint32_t crc32(const unsigned char* p, size_t n) {
  uint32_t c = 0xffffffffu;
  for (size_t i = 0; i < n; i++) {
    c ^= p[i];
    for (int k = 0; k < 8; k++) c = (c >> 1) ^ (0xedb88320u & (0u - (c & 1)));
  }
  return ~c;
}

void be32(Bytes& b, uint32_t v) {
  for (int s = 24; s >= 0; s -= 8) b.push_back(static_cast<unsigned char>(v >> s));
}

void chunk(Bytes& png, const char* type, const Bytes& data) {
  be32(png, uint32_t(data.size()));
  Bytes body(type, type + 4);
  body.insert(body.end(), data.begin(), data.end());
  png.insert(png.end(), body.begin(), body.end());
  be32(png, crc32(body.data(), body.size()));
}

Bytes zlibStored(const Bytes& raw) {
  Bytes z = {0x78, 0x01};
  size_t pos = 0;
  do {
    const size_t n = std::min<size_t>(raw.size() - pos, 65535);
    z.push_back(pos + n == raw.size() ? 1 : 0);
    z.push_back(n & 0xff);
    z.push_back(n >> 8);
    z.push_back(~n & 0xff);
    z.push_back((~n >> 8) & 0xff);
    z.insert(z.end(), raw.begin() + pos, raw.begin() + pos + n);
    pos += n;
  } while (pos < raw.size());
  uint32_t a = 1, b = 0;
  for (unsigned char c : raw) {
    a = (a + c) % 65521;
    b = (b + a) % 65521;
  }
  be32(z, (b << 16) | a);
  return z;
}

// colourType 0 grey, 2 RGB, 3 palette, 6 RGBA; `pixels` holds the rows top first, unfiltered.
void writePng(const std::string& path, int w, int h, int colourType, const Bytes& pixels,
              const Bytes& palette = {}) {
  const int channels = colourType == 2 ? 3 : colourType == 6 ? 4 : 1;
  Bytes png = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
  Bytes ihdr;
  be32(ihdr, w);
  be32(ihdr, h);
  ihdr.insert(ihdr.end(), {8, static_cast<unsigned char>(colourType), 0, 0, 0});
  chunk(png, "IHDR", ihdr);
  if (colourType == 3) chunk(png, "PLTE", palette);
  Bytes raw;
  for (int y = 0; y < h; y++) {
    raw.push_back(0);
    raw.insert(raw.end(), pixels.begin() + y * w * channels, pixels.begin() + (y + 1) * w * channels);
  }
  chunk(png, "IDAT", zlibStored(raw));
  chunk(png, "IEND", {});
  FILE* f = fopen(path.c_str(), "wb");
  ASSERT_NE(f, nullptr);
  fwrite(png.data(), 1, png.size(), f);
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
  writePng(path, size, size, 2, px);
}

// Runs each test in a fresh folder with an empty "textures" directory.
class InTempDir : public ::testing::Test {
 protected:
  void SetUp() override {
    char pattern[] = "/tmp/vorta_gl_XXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
    dir = pattern;
    ASSERT_NE(getcwd(oldDir, sizeof oldDir), nullptr);
    ASSERT_EQ(chdir(dir.c_str()), 0);
    ASSERT_EQ(system("mkdir textures"), 0);
    sets.mode256 = false;
  }
  void TearDown() override {
    ASSERT_EQ(chdir(oldDir), 0);
    ASSERT_EQ(system(("rm -rf " + dir).c_str()), 0);
  }
  std::string dir;
  char oldDir[4096];
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
  writePng("textures/pati0.png", 2, 2, 2, {255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255});
  writePng("textures/pikku.png", 3, 1, 3, {0, 1, 2}, {10, 20, 30, 40, 50, 60, 70, 80, 90});
  writePng("textures/muna.png", 1, 2, 0, {200, 7});
  writePng("textures/Ohjus.png", 1, 1, 6, {9, 99, 199, 0});  // fully transparent, colour kept
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
  writePng("textures/teksti_256.png", 1, 1, 0, {255});
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
  EXPECT_EQ(colourOf(1), (std::vector<float>{0.25f, 0.25f, 1, 1}));
  EXPECT_EQ(colourOf(7), (std::vector<float>{1, 0.6f, 0.6f, 1}));
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
  GLubyte p[3];
  glReadPixels(x, y, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, p);
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
  EXPECT_NEAR(gl_pituus("Wi 4,"), 1 + 0.2 + 0.5 + 0.65 + 0.2, 1e-6);
  EXPECT_NEAR(gl_pituus("\xC8z"), 1 + 0.6, 1e-6);
  std::vector<char> unterminated(1500, 'a');
  EXPECT_NEAR(gl_pituus(unterminated.data()), 1000 * 0.6, 1e-3);
}

}  // namespace
