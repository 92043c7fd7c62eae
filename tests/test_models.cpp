// Ship models and model lists, drawn into a real GL context and read back.
#include <GL/gl.h>
#include <GL/glu.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include <unistd.h>

#include "Player.h"
#include "aluspiirto.h"
#include "ctf.h"
#include "glapi.h"
#include "scene.h"
#include "testutil.h"

namespace {

const int koko = 256;  // the tests draw into this corner of the window

struct Kuva {
  std::vector<unsigned char> rgba = std::vector<unsigned char>(koko * koko * 4);
  bool peitetty(int x, int y) const {
    const unsigned char* p = &rgba[(y * koko + x) * 4];
    return p[0] > 20 || p[1] > 20 || p[2] > 20;
  }
  int peittoja() const {
    int n = 0;
    for (int i = 0; i < koko * koko; i++) n += peitetty(i % koko, i / koko);
    return n;
  }
  // Farthest covered pixel from the centre.
  double ulottuma() const {
    double r = 0;
    for (int i = 0; i < koko * koko; i++)
      if (peitetty(i % koko, i / koko))
        r = std::max(r, std::hypot(i % koko + 0.5 - koko / 2, i / koko + 0.5 - koko / 2));
    return r;
  }
};

// Pixels per world unit in the ship plane: the camera stands 15 units above it.
const double pikseleitaYksikolla = koko / 2 / (15 * std::tan(22.5 * M_PI / 180));

class Mallit : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    ASSERT_EQ(chdir(VORTA_DATA_DIR), 0);  // the game's textures
    ikkuna = &testutil::gameWindow(1200, 800);
    if (ikkuna->ok()) rakennaMallit();
  }

  void SetUp() override {
    ASSERT_TRUE(ikkuna->ok()) << ikkuna->error();
    glViewport(0, 0, koko, koko);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(45, 1, 1, 1024);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glTranslatef(0, 0, 20);
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    glEnable(GL_COLOR_MATERIAL);
    glClearColor(0, 0, 0, 1);
    gamemode = 0;
    valmisteleAlus(0, 3);
  }

  static Player& p() { return player[0]; }
  static testutil::GLWindow* ikkuna;

  static void valmisteleAlus(int n, double sade) {
    Player& q = p();
    q.alus.numero = n;
    q.alus.sade = sade;
    q.x = q.y = q.xvauhti = q.yvauhti = 0;
    q.kulma = q.asekulma = q.propelli = 0;
    q.alpha = 1;
    q.tiimi = 0;
    q.kaasu = q.pylos = q.suojapaalla = false;
  }

  static Kuva lue() {
    Kuva k;
    glReadPixels(0, 0, koko, koko, GL_RGBA, GL_UNSIGNED_BYTE, k.rgba.data());
    return k;
  }

  static Kuva piirra() {
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    p().piirra();
    return lue();
  }
};

testutil::GLWindow* Mallit::ikkuna = nullptr;

// As after a new video mode: the lists are built again without losing anyone else's.
TEST_F(Mallit, RebuildingReplacesItsOwnListsAndSparesOthers) {
  const std::vector<GLuint> vanhat(list_alus, list_alus + 24);
  rakennaMallit();
  for (GLuint nimi : vanhat)  // reused or released, never leaked
    EXPECT_TRUE(std::count(list_alus, list_alus + 24, nimi) || !glIsList(nimi)) << nimi;

  GLuint vieras = glGenLists(1);
  glNewList(vieras, GL_COMPILE);
  glEndList();
  rakennaMallit();
  EXPECT_TRUE(glIsList(vieras));

  // As after a new context: the block is gone and its first name reused by someone else.
  GLuint pohja = list_alus[0];
  glDeleteLists(pohja, list_asteroid - pohja + 2);
  GLuint uusi = glGenLists(1);
  glNewList(uusi, GL_COMPILE);
  glEndList();
  rakennaMallit();
  EXPECT_TRUE(glIsList(uusi));
  glDeleteLists(vieras, 1);
  glDeleteLists(uusi, 1);
  for (int n = 0; n < 24; n++) EXPECT_TRUE(glIsList(list_alus[n])) << n;
  for (GLuint lista : {list_int[19], list_int[22], list_int[23], list_asteroid}) EXPECT_TRUE(glIsList(lista));
  const GLuint nuoli = list_int[24];  // the menu arrow, with the rest of the game's lists
  setLists();
  EXPECT_TRUE(glIsList(list_int[24]));
  EXPECT_TRUE(nuoli == list_int[24] || !glIsList(nuoli));
}

// What a player sees of a ship is where it collides: the hull alone (the team glow
// under every ship is left out) covers its middle and reaches its radius; a rock drawn
// at scale 4, as the field draws a rock of size 4, reaches about 4.
TEST_F(Mallit, EveryModelReachesItsCollisionRadius) {
  const GLuint hehku = tiimitexture;
  tiimitexture = 0;
  for (int n = 0; n < 24; n++) {
    valmisteleAlus(n, 4);
    const Kuva kuva = piirra();
    EXPECT_TRUE(kuva.peitetty(koko / 2, koko / 2)) << "ship " << n;
    EXPECT_NEAR(kuva.ulottuma() / (4 * pikseleitaYksikolla), 1, 0.3) << "ship " << n;
  }
  tiimitexture = hehku;

  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glDisable(GL_TEXTURE_2D);
  glPushMatrix();
  glTranslatef(0, 0, -35);
  glScalef(4, 4, 4);
  glRotatef(30, 1, 1, 0);
  glCallList(list_asteroid);
  glPopMatrix();
  EXPECT_NEAR(lue().ulottuma() / (4 * pikseleitaYksikolla), 1, 0.4);
}

// Centre pixel of a lit square drawn in whatever colour and material are current.
std::vector<int> valaistuNelio() {
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glPushAttrib(GL_ENABLE_BIT);
  glEnable(GL_LIGHTING);
  glDisable(GL_TEXTURE_2D);
  glDisable(GL_BLEND);
  glBegin(GL_QUADS);
  glNormal3f(0, 0, 1);
  glVertex3f(-5, -5, -35);
  glVertex3f(5, -5, -35);
  glVertex3f(5, 5, -35);
  glVertex3f(-5, 5, -35);
  glEnd();
  glPopAttrib();
  unsigned char p[4];
  glReadPixels(koko / 2, koko / 2, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);
  return {p[0], p[1], p[2]};
}

// A flower shows with the ship that carries it, not with another. A model that leaves
// a switch, a matrix or the material behind spoils whatever the frame draws after it.
TEST_F(Mallit, ACarriedFlowerRidesAlongAndDrawingLeavesTheGlStateAsItFoundIt) {
  std::vector<CPiste> kukka(1, CPiste{0, 0, kukkaKotona, 0, true});
  CPiste* vanha = cpiste;
  const int vanhaMaara = cpisteita;
  cpiste = kukka.data();
  cpisteita = 1;
  gamemode = 3;
  valmisteleAlus(0, 2);
  const Kuva ilman = piirra();
  kukka[0].player = 5;
  EXPECT_EQ(piirra().rgba, ilman.rgba);
  kukka[0].player = 0;
  EXPECT_GT(piirra().peittoja(), ilman.peittoja());

  GLuint tekstuuri;
  glGenTextures(1, &tekstuuri);
  glBindTexture(GL_TEXTURE_2D, tekstuuri);
  const GLenum paalle[] = {GL_TEXTURE_2D, GL_CULL_FACE, GL_BLEND};
  for (GLenum e : paalle) glEnable(e);
  for (GLenum e : {GL_LIGHTING, GL_DEPTH_TEST}) glDisable(e);
  glBlendFunc(GL_SRC_COLOR, GL_ONE_MINUS_SRC_ALPHA);
  glDepthMask(GL_FALSE);
  glColor4f(0.1f, 0.2f, 0.3f, 0.4f);
  glPushMatrix();

  auto tila = [] {
    std::vector<float> t;
    GLfloat f[16];
    for (GLenum e :
         {GL_TEXTURE_2D, GL_LIGHTING, GL_LIGHT0, GL_DEPTH_TEST, GL_CULL_FACE, GL_BLEND, GL_NORMALIZE,
          GL_COLOR_MATERIAL, GL_BLEND_SRC, GL_BLEND_DST, GL_MODELVIEW_STACK_DEPTH, GL_TEXTURE_BINDING_2D,
          GL_MATRIX_MODE, GL_DEPTH_WRITEMASK, GL_CURRENT_COLOR, GL_MODELVIEW_MATRIX}) {
      glGetFloatv(e, f);
      t.insert(t.end(), f, f + (e == GL_MODELVIEW_MATRIX ? 16 : e == GL_CURRENT_COLOR ? 4 : 1));
    }
    glGetLightfv(GL_LIGHT0, GL_POSITION, f);
    t.insert(t.end(), f, f + 4);
    return t;
  };

  auto ennen = tila();
  const auto neliona = valaistuNelio();
  for (int n : {4, 6, 13, 16, 22}) {
    valmisteleAlus(n, 3);
    p().suojapaalla = p().pylos = true;
    p().alpha = 0.5f;
    p().piirra();
    EXPECT_EQ(tila(), ennen) << "ship " << n;
    EXPECT_EQ(valaistuNelio(), neliona) << "ship " << n;
    p().piirra(2, 1, -10, 90, 30);
    EXPECT_EQ(tila(), ennen) << "ship " << n << " in a menu";
    EXPECT_EQ(valaistuNelio(), neliona) << "ship " << n << " in a menu";
  }
  // The shot and flower models set their own colours but leave the colour material alone.
  for (GLuint lista : {list_int[21], list_int[22], list_int[23]}) {
    glColor4f(0.1f, 0.2f, 0.3f, 0.4f);
    glCallList(lista);
    EXPECT_EQ(valaistuNelio(), neliona) << "list " << lista;
  }
  EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
  cpiste = vanha;
  cpisteita = vanhaMaara;
  glPopMatrix();
  glDeleteTextures(1, &tekstuuri);
  for (GLenum e : paalle) glDisable(e);
  glDepthMask(GL_TRUE);
}

}  // namespace
