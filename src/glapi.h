// OpenGL set-up, the texture table, team colours and the unit solids.
#pragma once

#include <GL/gl.h>

const int tekstuureja = 45;
extern GLuint texture[tekstuureja];
extern GLuint tiimitexture;

// Display lists rebuilt by setLists after every texture load.
const int listoja = 32;
extern GLuint list_int[listoja];  // 19-21 frame corners, 22 flower, 23 mushroom, 24 menu arrow
extern GLuint list_alus[24];      // the ship models
extern GLuint list_asteroid;

void setupOpengl(int width, int height);
void ReSizeGLScene(int width, int height);
int LoadGLTextures();
void LoadGLFont();
void setLists();
void generateTeamJuttu(GLuint* name);
void generateLightFlare(GLuint* name);
void generateLightNelio(GLuint* name);
void valitseVari(int colour);
void drawCube();
// A textured rectangle at depth z facing +z; with `kuvaAlasPain` the image's top row
// lies at y1 (images are stored top row first).
void kuvaNelio(float x1, float y1, float x2, float y2, float z, bool kuvaAlasPain = false);
void drawTri();

// Pieces of the frame drawing (scene.cpp) that the objective modes draw with.
// Models standing on the field (frame corners, flowers, mushrooms): the GL state
// they are drawn in, and one model of list_int at (x, y) at a scale.
void valmisteleMallit();
void piirraKenttaMalli(int lista, float x, float y, float koko);
// The team score panel of the objective modes, under the given title.
void piirraPistetaulu(const char* otsikko);
