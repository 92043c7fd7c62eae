// SCAFFOLD: replaced by the OpenGL work.
#include "glapi.h"
GLuint texture[tekstuureja];
GLuint tiimitexture;
GLuint list_int[listoja];
GLuint list_alus[24];
GLuint list_asteroid;
void setupOpengl(int, int) {}
void ReSizeGLScene(int, int) {}
int LoadGLTextures() { return 1; }
void LoadGLFont() {}
void setLists() {}
void generateTeamJuttu(GLuint*) {}
void generateLightFlare(GLuint*) {}
void generateLightNelio(GLuint*) {}
void valitseVari(int) {}
void drawCube() {}
void drawTri() {}
