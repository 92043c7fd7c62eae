// OpenGL set-up, the texture table, team colours and the unit solids.
#include "glapi.h"

#include <GL/glu.h>
#include <SDL/SDL.h>
#include <SDL/SDL_image.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "Alus.h"
#include "Main.h"
#include "Sets.h"
#include "aluspiirto.h"

GLuint texture[tekstuureja];
GLuint tiimitexture;
GLuint list_int[listoja];
GLuint list_alus[24];
GLuint list_asteroid;

namespace {

// Every image becomes tightly described 24-bit RGB in memory byte order R, G, B,
// whatever the file held (palette, grey, RGBA, colour key).
SDL_Surface* rgbKopio(SDL_Surface* kuva) {
#if SDL_BYTEORDER == SDL_LIL_ENDIAN
  const Uint32 r = 0x0000ff, g = 0x00ff00, b = 0xff0000;
#else
  const Uint32 r = 0xff0000, g = 0x00ff00, b = 0x0000ff;
#endif
  SDL_Surface* malli = SDL_CreateRGBSurface(SDL_SWSURFACE, 1, 1, 24, r, g, b, 0);
  if (!malli) return nullptr;
  SDL_Surface* rgb = SDL_ConvertSurface(kuva, malli->format, SDL_SWSURFACE);
  SDL_FreeSurface(malli);
  return rgb;
}

void linearFiltterit() {
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
}

// Loads one image into a new texture name; a missing or unreadable file is
// reported and gives name 0, so whatever uses the slot draws untextured.
GLuint lataaKuva(const char* tiedosto) {
  SDL_Surface* kuva = IMG_Load(tiedosto);
  if (!kuva) {
    printf("Could not load texture \"%s\": %s\n", tiedosto, IMG_GetError());
    return 0;
  }
  SDL_Surface* rgb = rgbKopio(kuva);
  SDL_FreeSurface(kuva);
  if (!rgb || rgb->w <= 0 || rgb->h <= 0) {
    printf("Could not convert texture \"%s\" to RGB: %s\n", tiedosto, SDL_GetError());
    if (rgb) SDL_FreeSurface(rgb);
    return 0;
  }
  GLuint nimi = 0;
  glGenTextures(1, &nimi);
  glBindTexture(GL_TEXTURE_2D, nimi);
  linearFiltterit();
  // SDL pads every row to four bytes; the first row in memory is the top of
  // the picture, so texture coordinate t = 0 is its top edge.
  glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
  glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, rgb->w, rgb->h, 0, GL_RGB, GL_UNSIGNED_BYTE, rgb->pixels);
  SDL_FreeSurface(rgb);
  return nimi;
}

// Reloads never leak: the slot's previous name is released first.
void asetaSlotti(int slotti, GLuint nimi) {
  if (texture[slotti] != 0) glDeleteTextures(1, &texture[slotti]);
  texture[slotti] = nimi;
}

// Each image slot's file, indexed by slot; the font and the backgrounds also come in a
// small version for `mode256`.
struct Kuvatiedosto {
  const char* iso;
  const char* pieni = nullptr;
};
constexpr std::array<Kuvatiedosto, tekstuureja> kuvatiedostot = [] {
  std::array<Kuvatiedosto, tekstuureja> t{};
  t[tx::font] = {"textures/teksti.png", "textures/teksti_256.png"};
  t[tx::greyPlating] = {"textures/tottero1.png"};
  t[tx::plasmaBolt] = {"textures/pati0.png"};
  t[tx::energyBomb] = {"textures/pati1.png"};
  t[tx::exhaustPuff] = {"textures/jalki.png"};
  t[tx::rustPlating] = {"textures/alus5_2.png"};
  t[tx::suckerVortex] = {"textures/sucker.png"};
  t[tx::littleMan] = {"textures/pikku.png"};
  t[tx::sunFlare] = {"textures/pati6.png"};
  t[tx::crackleOrb] = {"textures/pati20.png"};
  t[tx::missile] = {"textures/Ohjus.png"};
  t[tx::spark] = {"textures/pati8.png"};
  t[tx::glowingEgg] = {"textures/muna.png"};
  t[tx::blueGalaxy] = {"textures/galax.png"};
  t[tx::blackHole] = {"textures/aukko.png"};
  t[tx::pinkGalaxy] = {"textures/galax2.png"};
  t[tx::ringOrb] = {"textures/pati15.png"};
  t[tx::bluePlating] = {"textures/alus20.png"};
  t[tx::toxicBlob] = {"textures/epati18.png"};
  t[tx::asteroidSkin] = {"textures/meteor2.png"};
  t[tx::lightningSkin] = {"textures/electric.png"};
  t[tx::fireball] = {"textures/epati20.png"};
  t[tx::starShot] = {"textures/pati22.png"};
  t[tx::blueNebula] = {"textures/tausta2.png", "textures/tausta2_256.png"};
  t[tx::redNebula] = {"textures/tausta3.png", "textures/tausta3_256.png"};
  t[tx::titlePicture] = {"textures/alkukuva.png", "textures/alkukuva_256.png"};
  return t;
}();

void lataaSlottiin(tx::Slotti slotti) {
  const Kuvatiedosto& k = kuvatiedostot[slotti];
  asetaSlotti(slotti, lataaKuva(sets.mode256 && k.pieni ? k.pieni : k.iso));
}

// The images in loading order; the font comes first and the generated ones
// sit between them (see LoadGLTextures).
const tx::Slotti ekatKuvat[] = {tx::greyPlating, tx::plasmaBolt,   tx::energyBomb, tx::exhaustPuff,
                                tx::rustPlating, tx::suckerVortex, tx::littleMan,  tx::sunFlare};
const tx::Slotti tokatKuvat[] = {
    tx::crackleOrb, tx::missile,  tx::spark,       tx::glowingEgg, tx::blueGalaxy,   tx::blackHole,
    tx::pinkGalaxy, tx::ringOrb,  tx::bluePlating, tx::toxicBlob,  tx::asteroidSkin, tx::lightningSkin,
    tx::fireball,   tx::starShot, tx::blueNebula,  tx::redNebula,  tx::titlePicture,
};

template <size_t N>
void lataaKuvat(const tx::Slotti (&slotit)[N]) {
  for (tx::Slotti s : slotit) lataaSlottiin(s);
}

// Generated images are one-channel float luminance, clamped to [0, 1] by the GL.
const int hehkuKoko = 64;
const int nelioKoko = 16;
float generoitu[hehkuKoko * hehkuKoko];

// A name of 0 gets a new texture name; any other is refilled in place.
void lataaLuminanssi(GLuint* nimi, int koko, const float* texelit) {
  if (*nimi == 0) glGenTextures(1, nimi);
  glBindTexture(GL_TEXTURE_2D, *nimi);
  linearFiltterit();
  glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
  glTexImage2D(GL_TEXTURE_2D, 0, GL_LUMINANCE, koko, koko, 0, GL_LUMINANCE, GL_FLOAT, texelit);
}

double etaisyys2(int i, int j) { return double((i - 32) * (i - 32) + (j - 32) * (j - 32)); }

void asetaAlustenTekstuurit() {
  alus[0].patitexture = texture[tx::plasmaBolt];
  alus[1].patitexture = texture[tx::energyBomb];
  alus[1].epatitexture = texture[tx::plasmaBolt];
  alus[2].patitexture = texture[tx::plasmaBolt];
  alus[3].patitexture = texture[tx::plasmaBolt];
  alus[3].epatitexture = texture[tx::plasmaBolt];
  alus[4].patitexture = texture[tx::plasmaBolt];
  alus[4].epatitexture = texture[tx::suckerVortex];
  alus[4].texture2 = texture[tx::rustPlating];
  alus[5].patitexture = texture[tx::sunFlare];
  alus[5].epatitexture = texture[tx::littleMan];
  alus[5].texture2 = texture[tx::littleMan];
  alus[7].patitexture = texture[tx::missile];
  alus[8].patitexture = texture[tx::spark];
  alus[8].epatitexture = texture[tx::glowingEgg];
  alus[9].epatitexture = texture[tx::blackHole];
  alus[10].patitexture = texture[tx::exhaustPuff];
  alus[11].patitexture = texture[tx::ringOrb];
  alus[12].patitexture = texture[tx::lightFlare];
  alus[13].patitexture = texture[tx::lightFlare];
  alus[13].epatitexture = texture[tx::lightFlare];
  alus[14].patitexture = texture[tx::ringOrb];
  alus[15].texture = texture[tx::greyPlating];
  alus[15].patitexture = 0;  // this shot draws untextured
  alus[16].patitexture = texture[tx::lightFlare];
  alus[16].epatitexture = texture[tx::lightFlare];
  alus[17].patitexture = texture[tx::energyBomb];
  alus[17].epatitexture = texture[tx::toxicBlob];
  alus[18].texture2 = texture[tx::lightningSkin];
  alus[19].patitexture = texture[tx::lightFlare];
  alus[20].patitexture = texture[tx::crackleOrb];
  alus[20].epatitexture = texture[tx::fireball];
  alus[20].texture = texture[tx::bluePlating];
  alus[21].patitexture = texture[tx::lightFlare];
  alus[21].epatitexture = texture[tx::lightFlare];
  alus[22].patitexture = texture[tx::starShot];
  alus[22].epatitexture = texture[tx::lightFlare];
  alus[23].patitexture = texture[tx::plasmaBolt];
  alus[23].epatitexture = texture[tx::starShot];
}

void asetaNakyma(int width, int height) {
  if (height == 0) height = 1;
  glViewport(0, 0, width, height);
  glMatrixMode(GL_PROJECTION);
  glLoadIdentity();
  gluPerspective(45.0, double(width) / double(height), 1.0, 1024.0);
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
}

// One face of an extruded outline: the normal and four corners.
void quad(float nx, float ny, float nz, const float (&v)[4][3]) {
  glNormal3f(nx, ny, nz);
  for (const auto& p : v) glVertex3f(p[0], p[1], p[2]);
}

// The menu cursor: a flat arrow pointing along +x, thin in z so that it shows
// its edge and its faces as it spins about x. The shaft is the unit box and the
// head the unit prism turned to point along +x. Its tip lies right of the
// origin and its tail left of it, so that the menu's placement keeps it clear of
// the labels on a 4:3 screen.
void piirraNuoli() {
  const float paksuus = 0.2f;
  glPushMatrix();
  glTranslatef(-0.125f, 0, 0);  // shaft from x = -0.5 to 0.25
  glScalef(0.375f, 0.22f, paksuus);
  drawCube();
  glPopMatrix();
  glPushMatrix();
  glTranslatef(0.575f, 0, 0);  // head from x = 0.25 to the tip at 0.9
  glRotatef(-90, 0, 0, 1);
  glScalef(0.55f, 0.325f, paksuus);
  drawTri();
  glPopMatrix();
}

void poistaLista(GLuint& lista) {
  if (lista != 0) glDeleteLists(lista, 1);
  lista = 0;
}

}  // namespace

void setupOpengl(int width, int height) {
  glCullFace(GL_BACK);
  glFrontFace(GL_CCW);
  glEnable(GL_NORMALIZE);
  glEnable(GL_LINE_SMOOTH);
  glEnable(GL_TEXTURE_2D);
  glDepthFunc(GL_LEQUAL);
  glEnable(GL_LIGHTING);
  glEnable(GL_COLOR_MATERIAL);
  const GLfloat ambient[] = {0.35f, 0.35f, 0.35f, 1.0f};
  glLightModeli(GL_LIGHT_MODEL_LOCAL_VIEWER, GL_TRUE);
  glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_FALSE);
  glLightModelfv(GL_LIGHT_MODEL_AMBIENT, ambient);
  glClearColor(0, 0, 0, 1);
  const GLfloat valkoinen[] = {1, 1, 1, 1};
  glEnable(GL_LIGHT0);
  glLightfv(GL_LIGHT0, GL_DIFFUSE, valkoinen);
  glLightfv(GL_LIGHT0, GL_SPECULAR, valkoinen);
  asetaNakyma(width, height);
  LoadGLTextures();
  setLists();
}

void ReSizeGLScene(int width, int height) {
  asetaNakyma(width, height);
  LoadGLTextures();
  setLists();
}

void LoadGLFont() {
  printf(sets.mode256 ? "loading 256*256 font\n" : "loading 1024*1024 font\n");
  lataaSlottiin(tx::font);
}

int LoadGLTextures() {
  LoadGLFont();
  lataaKuvat(ekatKuvat);
  generateLightFlare(&texture[tx::lightFlare]);
  generateLightNelio(&texture[tx::whiteSquare]);
  lataaKuvat(tokatKuvat);
  generateTeamJuttu(&texture[tx::teamGlow]);
  tiimitexture = texture[tx::teamGlow];
  asetaAlustenTekstuurit();
  printf("moi!\n");
  return 1;
}

void generateLightFlare(GLuint* name) {
  for (int i = 0; i < hehkuKoko; i++)
    for (int j = 0; j < hehkuKoko; j++)
      generoitu[i * hehkuKoko + j] = float(std::exp(-etaisyys2(i, j) * 0.005) - 0.01);
  lataaLuminanssi(name, hehkuKoko, generoitu);
}

void generateLightNelio(GLuint* name) {
  for (int i = 0; i < nelioKoko * nelioKoko; i++) generoitu[i] = 1.0f;
  lataaLuminanssi(name, nelioKoko, generoitu);
}

// A glow with a dark core: the flare, brighter, hollowed out inside radius 16.
void generateTeamJuttu(GLuint* name) {
  for (int i = 0; i < hehkuKoko; i++) {
    for (int j = 0; j < hehkuKoko; j++) {
      const double r2 = etaisyys2(i, j);
      double arvo = (std::exp(-r2 * 0.005) - 0.01) * 1.5;
      const double r = std::sqrt(r2);
      if (r < 16) {
        const double s = r * 0.0625;
        arvo -= std::sqrt(1 - s) + 1 - s;
        if (arvo <= 0) arvo = 0;
      }
      generoitu[i * hehkuKoko + j] = float(arvo);
    }
  }
  lataaLuminanssi(name, hehkuKoko, generoitu);
}

void setLists() {
  // The arrow is this file's list; the models delete and rebuild their own block.
  poistaLista(list_int[24]);
  list_int[24] = glGenLists(1);
  glNewList(list_int[24], GL_COMPILE);
  piirraNuoli();
  glEndList();
  rakennaMallit();
}

void valmisteleMallit() {
  glEnable(GL_DEPTH_TEST);
  glEnable(GL_LIGHTING);
  glDisable(GL_BLEND);
  glDisable(GL_TEXTURE_2D);
}

void piirraKenttaMalli(int lista, float x, float y, float koko) {
  glPushMatrix();
  glTranslatef(x, y, kentanZ);
  glScalef(koko, koko, koko);
  glRotatef(90, 1, 0, 0);  // the models stand up along their y axis
  glCallList(list_int[lista]);
  glPopMatrix();
}

void valitseVari(int colour) {
  // Alpha 2.0 in the first three is clamped by the GL.
  static const GLfloat varit[16][4] = {{1, 0.25f, 0.25f, 2.0f},
                                       {0.25f, 0.25f, 1, 2.0f},
                                       {0.25f, 1, 0.25f, 2.0f},
                                       {0, 1, 1, 1},
                                       {1, 1, 1, 1},
                                       {1, 0, 1, 1},
                                       {1, 1, 0, 1},
                                       {1, 0.6f, 0.6f, 1},
                                       {0.6f, 1, 0.6f, 1},
                                       {0.6f, 0.6f, 1, 1},
                                       {1, 0.6f, 1, 1},
                                       {1, 1, 0.6f, 1},
                                       {0.6f, 1, 1, 1},
                                       {1, 0, 0, 1},
                                       {0, 1, 0, 1},
                                       {0, 0, 1, 1}};
  if (colour < 0 || colour >= 16)
    glColor4f(1, 0, 0, 1);
  else
    glColor4fv(varit[colour]);
}

void drawCube() {
  glBegin(GL_QUADS);
  quad(0, 0, 1, {{-1, -1, 1}, {1, -1, 1}, {1, 1, 1}, {-1, 1, 1}});
  quad(0, 0, -1, {{-1, -1, -1}, {-1, 1, -1}, {1, 1, -1}, {1, -1, -1}});
  quad(0, 1, 0, {{-1, 1, -1}, {-1, 1, 1}, {1, 1, 1}, {1, 1, -1}});
  quad(0, -1, 0, {{-1, -1, -1}, {1, -1, -1}, {1, -1, 1}, {-1, -1, 1}});
  quad(1, 0, 0, {{1, -1, -1}, {1, 1, -1}, {1, 1, 1}, {1, -1, 1}});
  quad(-1, 0, 0, {{-1, -1, -1}, {-1, -1, 1}, {-1, 1, 1}, {-1, 1, -1}});
  glEnd();
}

void kuvaNelio(float x1, float y1, float x2, float y2, float z, bool kuvaAlasPain) {
  const float v1 = kuvaAlasPain ? 1.0f : 0.0f, v2 = 1.0f - v1;
  glBegin(GL_QUADS);
  glNormal3f(0, 0, 1);
  glTexCoord2f(0, v1);
  glVertex3f(x1, y1, z);
  glTexCoord2f(1, v1);
  glVertex3f(x2, y1, z);
  glTexCoord2f(1, v2);
  glVertex3f(x2, y2, z);
  glTexCoord2f(0, v2);
  glVertex3f(x1, y2, z);
  glEnd();
}

void drawTri() {
  glBegin(GL_TRIANGLES);
  glNormal3f(0, 0, 1);
  glVertex3f(-1, -1, 1);
  glVertex3f(1, -1, 1);
  glVertex3f(0, 1, 1);
  glNormal3f(0, 0, -1);
  glVertex3f(-1, -1, -1);
  glVertex3f(0, 1, -1);
  glVertex3f(1, -1, -1);
  glEnd();
  glBegin(GL_QUADS);
  quad(-1, 1, 0, {{-1, -1, -1}, {-1, -1, 1}, {0, 1, 1}, {0, 1, -1}});
  quad(0, -1, 0, {{-1, -1, -1}, {1, -1, -1}, {1, -1, 1}, {-1, -1, 1}});
  quad(1, 1, 0, {{1, -1, -1}, {0, 1, -1}, {0, 1, 1}, {1, -1, 1}});
  glEnd();
}

// ---- Full-screen overlays shared by the screens ----------------------------------

namespace {

// The tangent of the set-up's 22.5-degree half view angle.
float puolikulmanTan() { return std::tan(22.5f * static_cast<float>(piirronPii) / 180.0f); }

// The visible half-width at depth 40 of the set-up's 45-degree perspective.
float puoliLeveys40() {
  const float aspect = screenheight > 0 ? float(screenwidth) / float(screenheight) : 1.0f;
  return 40.0f * puolikulmanTan() * aspect;
}

// A quad over the whole view, just in front of the near plane.
void kokoRuutu() {
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
  const float z = -1.5f;
  const float h = 1.5f * puolikulmanTan() * 1.01f;
  const float w = h * puoliLeveys40() / (40.0f * puolikulmanTan());
  kuvaNelio(-w, -h, w, h, z, true);
}

void tasainenPiirto() {
  glDisable(GL_LIGHTING);
  glDisable(GL_DEPTH_TEST);
  glDisable(GL_CULL_FACE);
}

}  // namespace

void piirraTaustakuva(unsigned int tekstuuri) {
  tasainenPiirto();
  glDisable(GL_BLEND);
  glEnable(GL_TEXTURE_2D);
  glBindTexture(GL_TEXTURE_2D, tekstuuri);
  glColor4f(1, 1, 1, 1);
  kokoRuutu();
}

void tummennaRuutu(float peitto) {
  tasainenPiirto();
  glDisable(GL_TEXTURE_2D);
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  glColor4f(0, 0, 0, peitto);
  kokoRuutu();
}

void valikonNakyma(float vasen, float oikea) {
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
  const float tarve = std::max(std::fabs(vasen), std::fabs(oikea));
  const float k = std::min(1.0f, (puoliLeveys40() - 0.5f) / tarve);
  glScalef(k, k, 1);
}
