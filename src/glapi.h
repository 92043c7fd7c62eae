// OpenGL set-up, the texture table, team colours and the unit solids.
#pragma once

#include <GL/gl.h>

const int tekstuureja = 45;
extern GLuint texture[tekstuureja];

// The slots of `texture`, named by their pictures; slots without a name stay 0.
namespace tx {
enum Slotti {
  starShot = 2,
  plasmaBolt = 4,
  energyBomb = 5,
  exhaustPuff = 6,
  greyPlating = 8,
  rustPlating = 13,
  suckerVortex = 14,
  whiteSquare = 15,  // generated
  littleMan = 16,
  sunFlare = 17,
  lightFlare = 18,  // generated; the shared glow of particles, flares and markers
  crackleOrb = 19,
  missile = 20,
  spark = 21,
  glowingEgg = 22,
  blueGalaxy = 23,
  blackHole = 25,
  pinkGalaxy = 26,
  font = 28,
  blueNebula = 29,  // the local game menu's background
  redNebula = 30,   // the ship choice's background
  titlePicture = 31,
  ringOrb = 33,
  bluePlating = 34,
  toxicBlob = 38,
  asteroidSkin = 39,
  lightningSkin = 40,
  fireball = 41,
  teamGlow = 42,  // generated
};
}  // namespace tx
extern GLuint tiimitexture;

// Display lists rebuilt by setLists after every texture load.
const int listoja = 32;
extern GLuint list_int[listoja];  // 19-21 frame corners, 22 flower, 23 mushroom, 24 menu arrow
extern GLuint list_alus[24];      // the ship models
extern GLuint list_asteroid;

// The plane the field is drawn in: world z of every ship, shot and marker.
const float kentanZ = -35.0f;
// The drawing's pi. The frame drawing works out its model and marker angles in double
// precision, so it keeps the double pi; the simulation's angles use saannot::pii and the
// camera its own rounded one.
const double piirronPii = 3.14159265358979323846;

void setupOpengl(int width, int height);
void ReSizeGLScene(int width, int height);
int LoadGLTextures();
void LoadGLFont();
void setLists();
void generateTeamJuttu(GLuint* name);
void generateLightFlare(GLuint* name);
void generateLightNelio(GLuint* name);
void valitseVari(int colour);
// Unit solids for display lists: the cube from -1 to 1 on each axis, and the
// prism on the triangle (-1, -1), (1, -1), (0, 1) from z = -1 to 1.
void drawCube();
void drawTri();
// A textured rectangle at depth z facing +z; with `kuvaAlasPain` the image's top row
// lies at y1 (images are stored top row first).
void kuvaNelio(float x1, float y1, float x2, float y2, float z, bool kuvaAlasPain = false);

// Models standing on the field (frame corners, flowers, mushrooms): the GL state
// they are drawn in, and one model of list_int at (x, y) at a scale.
void valmisteleMallit();
void piirraKenttaMalli(int lista, float x, float y, float koko);

// Full-screen overlays shared by the screens: a background picture from the texture
// table, and a black veil of the given opacity over what is drawn.
void piirraTaustakuva(unsigned int tekstuuri);
void tummennaRuutu(float peitto);
// Sets an identity view in which text at depth -40 from x = vasen to x = oikea
// fits the window width (narrow windows shrink the layout, wide ones keep it).
void valikonNakyma(float vasen, float oikea);
