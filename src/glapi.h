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
