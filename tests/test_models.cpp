// Ship models and model lists, drawn into a real GL context and read back.
#include <GL/gl.h>
#include <GL/glu.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
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
const int ikkunaLeveys = 1200, ikkunaKorkeus = 800;

struct Kuva {
  std::vector<unsigned char> rgba = std::vector<unsigned char>(koko * koko * 4);
  const unsigned char* at(int x, int y) const { return &rgba[(y * koko + x) * 4]; }
  bool peitetty(int x, int y) const {
    const unsigned char* p = at(x, y);
    return p[0] > 20 || p[1] > 20 || p[2] > 20;
  }
  int peittoja() const {
    int n = 0;
    for (int y = 0; y < koko; y++)
      for (int x = 0; x < koko; x++) n += peitetty(x, y);
    return n;
  }
  // Farthest covered pixel from the centre.
  double ulottuma() const {
    double r = 0;
    for (int y = 0; y < koko; y++)
      for (int x = 0; x < koko; x++)
        if (peitetty(x, y)) r = std::max(r, std::hypot(x + 0.5 - koko / 2, y + 0.5 - koko / 2));
    return r;
  }
};

// Pixels per world unit in the ship plane: the camera stands 15 units above it.
const double pikseleitaYksikolla = koko / 2 / (15 * std::tan(22.5 * M_PI / 180));

class Mallit : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    ASSERT_EQ(chdir(VORTA_DATA_DIR), 0);  // the game's textures
    ikkuna = &testutil::gameWindow(ikkunaLeveys, ikkunaKorkeus);
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
    const GLfloat ymparisto[4] = {0.35f, 0.35f, 0.35f, 1};
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, ymparisto);
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
    q.x = q.y = 0;
    q.kulma = q.asekulma = q.propelli = 0;
    q.xvauhti = q.yvauhti = 0;
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

  // Sum of a channel over the pixels where `mukaan` holds (over all of them by default).
  static bool kaikki(int, int) { return true; }
  template <class F = bool (*)(int, int)>
  static long summa(const Kuva& k, int kanava, F mukaan = kaikki) {
    long s = 0;
    for (int y = 0; y < koko; y++)
      for (int x = 0; x < koko; x++)
        if (mukaan(x, y)) s += k.at(x, y)[kanava];
    return s;
  }
};

testutil::GLWindow* Mallit::ikkuna = nullptr;

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

TEST_F(Mallit, RebuildingReplacesItsOwnListsAndSparesOthers) {
  auto listat = [] {
    std::vector<GLuint> l(list_alus, list_alus + 24);
    l.insert(l.end(), {list_int[19], list_int[22], list_int[23], list_asteroid});
    return l;
  };
  const std::vector<GLuint> vanhat = listat();
  rakennaMallit();
  const std::vector<GLuint> uudet = listat();
  for (GLuint nimi : vanhat)
    EXPECT_TRUE(std::find(uudet.begin(), uudet.end(), nimi) != uudet.end() || !glIsList(nimi)) << nimi;

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
  for (int n = 0; n < 24; n++) EXPECT_TRUE(glIsList(list_alus[n]));
}

// The hulls alone: the team glow under every ship would be common to all of them.
TEST_F(Mallit, EveryShipCoversTheCentreGrowsWithItsRadiusAndHasItsOwnSilhouette) {
  const GLuint hehku = tiimitexture;
  tiimitexture = 0;
  std::vector<Kuva> kuvat;
  for (int n = 0; n < 24; n++) {
    valmisteleAlus(n, 2);
    Kuva pieni = piirra();
    valmisteleAlus(n, 4);
    kuvat.push_back(piirra());
    const Kuva& iso = kuvat.back();
    int keskella = 0;
    for (int y = koko / 2 - 4; y < koko / 2 + 4; y++)
      for (int x = koko / 2 - 4; x < koko / 2 + 4; x++) keskella += iso.peitetty(x, y);
    EXPECT_GT(keskella, 32) << "ship " << n;
    EXPECT_GT(iso.peittoja(), pieni.peittoja() * 3) << "ship " << n;
    // The model's reach matches its collision radius.
    EXPECT_GT(iso.ulottuma(), 4 * pikseleitaYksikolla * 0.75) << "ship " << n;
    EXPECT_LT(iso.ulottuma(), 4 * pikseleitaYksikolla * 1.3) << "ship " << n;
  }
  tiimitexture = hehku;
  for (int a = 0; a < 24; a++)
    for (int b = a + 1; b < 24; b++) {
      int erot = 0, yhteensa = 0;
      for (int i = 0; i < koko * koko; i++) {
        bool pa = kuvat[a].peitetty(i % koko, i / koko), pb = kuvat[b].peitetty(i % koko, i / koko);
        erot += pa != pb;
        yhteensa += pa || pb;
      }
      EXPECT_GT(erot, yhteensa / 12) << "ships " << a << " and " << b;
    }
}

TEST_F(Mallit, TrimTakesTheTeamColour) {
  for (int n : {0, 7, 14, 23}) {
    valmisteleAlus(n, 4);
    Kuva punainen = piirra();
    p().tiimi = 1;
    Kuva sininen = piirra();
    auto trimmissa = [&](int x, int y) {
      const unsigned char *a = punainen.at(x, y), *b = sininen.at(x, y);
      return std::abs(a[0] - b[0]) + std::abs(a[2] - b[2]) > 40;
    };
    EXPECT_GT(summa(punainen, 0, trimmissa), 0) << "ship " << n << " has no trim";
    EXPECT_GT(summa(punainen, 0, trimmissa), summa(punainen, 2, trimmissa) * 1.3) << "ship " << n;
    EXPECT_GT(summa(sininen, 2, trimmissa), summa(sininen, 0, trimmissa) * 1.3) << "ship " << n;
  }
}

// The shield and the team glow each brighten a ring just outside the hull and cover
// none of it. The team glow is shown through the game's plain white square, whose
// whole quad lights up, where the real one fades out.
TEST_F(Mallit, ShieldAndTeamGlowLightARingAroundTheShip) {
  const GLuint hehku = tiimitexture;
  const double r = 3 * pikseleitaYksikolla;
  for (int kumpi = 0; kumpi < 2; kumpi++) {
    SCOPED_TRACE(kumpi ? "team glow" : "shield");
    valmisteleAlus(kumpi ? 2 : 5, 3);
    tiimitexture = 0;
    Kuva ilman = piirra();
    if (kumpi)
      tiimitexture = texture[15];
    else
      p().suojapaalla = true;
    Kuva kanssa = piirra();
    tiimitexture = hehku;
    const int kanava = kumpi ? 1 : 2;
    auto rengas = [&, ulko = kumpi ? 1.6 : 1.25](int x, int y) {
      double d = std::hypot(x + 0.5 - koko / 2, y + 0.5 - koko / 2);
      return d > r * 1.1 && d < r * ulko;
    };
    EXPECT_GT(summa(kanssa, kanava, rengas), summa(ilman, kanava, rengas) + (kumpi ? 10000 : 1000));
    int tummempia = 0;
    for (size_t i = 0; i < kanssa.rgba.size(); i++) tummempia += i % 4 != 3 && kanssa.rgba[i] + 2 < ilman.rgba[i];
    EXPECT_EQ(tummempia, 0) << "nothing of the hull is covered up";
    if (kumpi) {
      EXPECT_LT(summa(kanssa, 1) - summa(ilman, 1), summa(kanssa, 1, rengas) * 3) << "hull drawn over the glow";
    }
  }
}

TEST_F(Mallit, ThrustLightsAFlameBehindTheEngines) {
  auto takana = [](int x, int) { return x < koko / 2 - 30; };
  for (int n = 0; n < 24; n++) {
    if (n == 22 || n == 18) continue;  // 22 spins on the clock; 18 is never without thrust
    valmisteleAlus(n, 3);
    Kuva sammuksissa = piirra();
    p().pylos = true;
    Kuva palaa = piirra();
    long lisays = summa(palaa, 0, takana) - summa(sammuksissa, 0, takana);
    if (n == 16)
      EXPECT_EQ(lisays, 0) << "the rotor ship has no exhaust";
    else
      EXPECT_GT(lisays, 500) << "ship " << n;
  }
}

TEST_F(Mallit, AlphaFadesTheShip) {
  valmisteleAlus(3, 3);
  Kuva taysi = piirra();
  p().alpha = 0.5f;
  Kuva puoli = piirra();
  double suhde = static_cast<double>(summa(puoli, 1)) / summa(taysi, 1);
  EXPECT_GT(suhde, 0.35);
  EXPECT_LT(suhde, 0.65);
  p().alpha = 0;
  EXPECT_EQ(piirra().peittoja(), 0);
}

TEST_F(Mallit, CarriedFlowerRidesWithItsCarrier) {
  std::vector<CPiste> kukat(2);
  for (int i = 0; i < 2; i++) kukat[i] = {0, 0, kukkaKotona, static_cast<signed char>(i), true};
  CPiste* vanha = cpiste;
  int vanhaMaara = cpisteita;
  cpiste = kukat.data();
  cpisteita = 2;
  gamemode = 3;
  valmisteleAlus(0, 2);
  Kuva ilman = piirra();
  kukat[1].player = 5;  // carried by another slot
  EXPECT_EQ(piirra().rgba, ilman.rgba);
  kukat[1].player = 0;
  Kuva kanssa = piirra();
  EXPECT_NE(kanssa.rgba, ilman.rgba);
  EXPECT_GT(kanssa.peittoja(), ilman.peittoja());
  cpiste = vanha;
  cpisteita = vanhaMaara;
}

TEST_F(Mallit, DrawingLeavesTheGlStateAsItFoundIt) {
  GLuint tekstuuri;
  glGenTextures(1, &tekstuuri);
  glBindTexture(GL_TEXTURE_2D, tekstuuri);
  glEnable(GL_TEXTURE_2D);
  glDisable(GL_LIGHTING);
  glDisable(GL_DEPTH_TEST);
  glEnable(GL_CULL_FACE);
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_COLOR, GL_ONE_MINUS_SRC_ALPHA);
  glDepthMask(GL_FALSE);
  glColor4f(0.1f, 0.2f, 0.3f, 0.4f);
  glPushMatrix();

  auto tila = [] {
    std::vector<float> t;
    for (GLenum e : {GL_TEXTURE_2D, GL_LIGHTING, GL_LIGHT0, GL_DEPTH_TEST, GL_CULL_FACE, GL_BLEND, GL_NORMALIZE,
                     GL_COLOR_MATERIAL})
      t.push_back(glIsEnabled(e));
    GLint i[5];
    glGetIntegerv(GL_BLEND_SRC, &i[0]);
    glGetIntegerv(GL_BLEND_DST, &i[1]);
    glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &i[2]);
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &i[3]);
    glGetIntegerv(GL_MATRIX_MODE, &i[4]);
    t.insert(t.end(), i, i + 5);
    GLboolean maski;
    glGetBooleanv(GL_DEPTH_WRITEMASK, &maski);
    t.push_back(maski);
    GLfloat f[16];
    glGetFloatv(GL_CURRENT_COLOR, f);
    t.insert(t.end(), f, f + 4);
    glGetLightfv(GL_LIGHT0, GL_POSITION, f);
    t.insert(t.end(), f, f + 4);
    glGetFloatv(GL_MODELVIEW_MATRIX, f);
    t.insert(t.end(), f, f + 16);
    return t;
  };

  std::vector<CPiste> kukka(1, CPiste{0, 0, 0, 0, true});
  CPiste* vanha = cpiste;
  int vanhaMaara = cpisteita;
  cpiste = kukka.data();
  cpisteita = 1;
  gamemode = 3;
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
  glDisable(GL_TEXTURE_2D);
  glDisable(GL_CULL_FACE);
  glDisable(GL_BLEND);
  glDepthMask(GL_TRUE);
}

// Triangles a list emits, counted with the GL's feedback mode.
int kolmioita(GLuint lista) {
  std::vector<GLfloat> puskuri(1 << 20);
  glFeedbackBuffer(static_cast<GLsizei>(puskuri.size()), GL_3D, puskuri.data());
  glRenderMode(GL_FEEDBACK);
  glPushMatrix();
  glLoadIdentity();
  glTranslatef(0, 0, -4);
  glCallList(lista);
  glPopMatrix();
  int arvoja = glRenderMode(GL_RENDER);
  int kolmiot = 0;
  for (int i = 0; i < arvoja;) {
    auto merkki = static_cast<GLenum>(puskuri[i++]);
    if (merkki == GL_POLYGON_TOKEN) {
      int kulmia = static_cast<int>(puskuri[i++]);
      kolmiot += kulmia - 2;
      i += kulmia * 3;
    } else if (merkki == GL_PASS_THROUGH_TOKEN) {
      i += 1;
    } else {
      i += (merkki == GL_LINE_TOKEN || merkki == GL_LINE_RESET_TOKEN) ? 6 : 3;
    }
  }
  return kolmiot;
}

TEST_F(Mallit, ModelsStayWithinTheTriangleBudget) {
  glDisable(GL_CULL_FACE);
  // The hull, its trim and its moving part follow list_alus in one block.
  for (int n = 0; n < 24; n++) {
    int yhteensa = kolmioita(list_alus[n]) + kolmioita(list_alus[n] + 1) + kolmioita(list_alus[n] + 2);
    EXPECT_GT(yhteensa, 50) << "ship " << n;
    EXPECT_LE(yhteensa, 700) << "ship " << n;
  }
  for (GLuint lista : {list_int[19], list_int[22], list_int[23], list_asteroid}) {
    const int n = kolmioita(lista);
    EXPECT_GT(n, 0) << lista;  // a list that was never built draws nothing
    EXPECT_LE(n, 600) << lista;
  }
}

TEST_F(Mallit, AsteroidIsALumpyRockOfUnitSize) {
  auto kivi = [](bool karsinta) {
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (karsinta) glEnable(GL_CULL_FACE);
    glEnable(GL_DEPTH_TEST);
    glDisable(GL_TEXTURE_2D);  // the shape alone; the rock skin is the field drawing's
    glPushMatrix();
    glTranslatef(0, 0, -35);
    glScalef(4, 4, 4);
    glRotatef(30, 1, 1, 0);
    glColor3f(1, 1, 1);
    glCallList(list_asteroid);
    glPopMatrix();
    glDisable(GL_CULL_FACE);
    glDisable(GL_DEPTH_TEST);
    return lue();
  };
  Kuva k = kivi(false);
  // Wound outward: back-face culling, as the field may have it on, takes nothing
  // visible away (a pixel may differ where a front and a back face meet at the rim).
  Kuva karsittu = kivi(true);
  long erot = 0, kaikkiaan = 0;
  for (size_t i = 0; i < k.rgba.size(); i++) {
    erot += std::abs(karsittu.rgba[i] - k.rgba[i]);
    kaikkiaan += k.rgba[i];
  }
  EXPECT_LT(erot, kaikkiaan / 100);
  // Radius along each of 64 directions from the centre.
  std::vector<double> sateet;
  for (int s = 0; s < 64; s++) {
    double a = s * 2 * M_PI / 64, r = 0;
    for (double d = 0; d < koko / 2 - 1; d += 0.5) {
      int x = static_cast<int>(koko / 2 + std::cos(a) * d), y = static_cast<int>(koko / 2 + std::sin(a) * d);
      if (k.peitetty(x, y)) r = d;
    }
    sateet.push_back(r / (4 * pikseleitaYksikolla));
  }
  auto [pienin, suurin] = std::minmax_element(sateet.begin(), sateet.end());
  EXPECT_GT(*pienin, 0.6);
  EXPECT_LT(*suurin, 1.4);
  EXPECT_GT(*suurin - *pienin, 0.12) << "a rock, not a ball";
}

}  // namespace
