// The waving-flag intro: a lit cloth on a pole over a star field, the credit
// line and the title fading in; about six seconds, or until a skip key.
#include "lippu.h"

#include <GL/gl.h>
#include <GL/glu.h>
#include <SDL/SDL.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "Main.h"
#include "Menu.h"
#include "Sets.h"
#include "Teksti.h"
#include "audio.h"
#include "glapi.h"

LippuPiste lippu[lippuRiveja][lippuSarakkeita];

namespace {

const float introFps = 150;
const int introKesto = 900;  // calculated frames at 150 a second: six seconds
// The music fades out with the picture's last 90 frames and on over the loading of the
// menu, whose music follows as soon as it has faded.
const int musiikkiHiipuuLopussa = 90;
const int musiikinHiipuminen = 1000;  // ms

// The cloth in world units, hoisted at its left edge. The pole stands where the
// cloth, turned towards the viewer, spans the middle of the picture.
const float leveys = 16, korkeus = 10;
const float salkoX = -7.8f, lippuY = 1.0f, lippuZ = -30;
const float salonPituus = korkeus + 3;  // ends above the title

int aaltoAika = 0;  // calculated frames waved so far

// A travelling wave from the pole outwards, with a slower gust on top; the
// amplitude grows from zero at the pole, so the hoisted edge stays put.
const float aallonMaksimi = 1.8f;
float poikkeama(float u, float v, float t) {
  const float puuska = 0.85f + 0.15f * std::sin(0.9f * t);
  const float aalto =
      std::sin(6.0f * u - 4.5f * t + 0.9f * v) + 0.4f * std::sin(13.0f * u - 7.5f * t + 2.1f * v);
  return aallonMaksimi * puuska * u * aalto;
}

void asetaPaikat(float t) {
  for (int i = 0; i < lippuRiveja; i++) {
    const float v = float(i) / (lippuRiveja - 1);
    for (int j = 0; j < lippuSarakkeita; j++) {
      const float u = float(j) / (lippuSarakkeita - 1);
      LippuPiste& p = lippu[i][j];
      const float z = poikkeama(u, v, t);
      // The waving pulls the free edge in a little, and the cloth sags away from the pole.
      p.x = u * leveys - 0.2f * std::fabs(z) * u;
      p.y = v * korkeus - 0.6f * u * u;
      p.z = z;
    }
  }
}

// Differences to the neighbours (one-sided at the edges).
void ero(const LippuPiste& a, const LippuPiste& b, float d[3]) {
  d[0] = b.x - a.x;
  d[1] = b.y - a.y;
  d[2] = b.z - a.z;
}

void asetaNormaalit() {
  for (int i = 0; i < lippuRiveja; i++) {
    for (int j = 0; j < lippuSarakkeita; j++) {
      float du[3], dv[3];
      ero(lippu[i][j > 0 ? j - 1 : j], lippu[i][j < lippuSarakkeita - 1 ? j + 1 : j], du);
      ero(lippu[i > 0 ? i - 1 : i][j], lippu[i < lippuRiveja - 1 ? i + 1 : i][j], dv);
      const float n[3] = {du[1] * dv[2] - du[2] * dv[1], du[2] * dv[0] - du[0] * dv[2],
                          du[0] * dv[1] - du[1] * dv[0]};
      const float pituus = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
      LippuPiste& p = lippu[i][j];
      p.nx = n[0] / pituus;
      p.ny = n[1] / pituus;
      p.nz = n[2] / pituus;
    }
  }
}

// --- Drawing ---------------------------------------------------------------

const int tahtia = 300;
struct IntroTahti {
  float x, y, kirkkaus, vaihe;
};
IntroTahti tahdet[tahtia];

// The intro keeps its own generator so that it does not shift the game's rand() sequence.
unsigned int tahtiSiemen = 12345;
float satunnainen() {
  tahtiSiemen = tahtiSiemen * 1103515245u + 12345u;
  return float((tahtiSiemen >> 8) & 0xffff) / 65535.0f;
}

void alustaTahdet() {
  for (IntroTahti& t : tahdet)
    t = {satunnainen() * 2 - 1, satunnainen() * 2 - 1, 0.3f + 0.7f * satunnainen(),
         satunnainen() * float(2 * piirronPii)};
}

// The flag's own picture: a deep blue field, a gold band edged in red and a white
// ring by the hoist. It is painted in cloth units, so that the ring stays round on
// the cloth, and each texel averages a grid of samples, so that its edges are smooth.
const int kuvaLeveys = 512, kuvaKorkeus = 256, naytteita = 4;

struct Vari {
  float r, g, b;
};

// The colour at (u, v) of the cloth, in world units from the top of the hoist.
Vari lipunVari(float u, float v) {
  const float ru = u - 4.3f, rv = v - korkeus / 2;
  const float r = std::sqrt(ru * ru + rv * rv);
  const float keskelta = std::fabs(v - korkeus / 2);
  if (r > 1.55f && r < 2.2f) return {240, 240, 235};
  if (keskelta < 0.95f) return {235, 185, 40};
  if (keskelta < 1.25f) return {190, 30, 30};
  return {20, 40, 120 - 32 * v / korkeus};
}

std::vector<unsigned char> maalaaLippu() {
  std::vector<unsigned char> kuva(kuvaLeveys * kuvaKorkeus * 3);
  const float du = leveys / kuvaLeveys, dv = korkeus / kuvaKorkeus;
  for (int y = 0; y < kuvaKorkeus; y++) {
    for (int x = 0; x < kuvaLeveys; x++) {
      Vari summa{0, 0, 0};
      for (int i = 0; i < naytteita; i++) {
        for (int j = 0; j < naytteita; j++) {
          const Vari c = lipunVari((x + (i + 0.5f) / naytteita) * du, (y + (j + 0.5f) / naytteita) * dv);
          summa = {summa.r + c.r, summa.g + c.g, summa.b + c.b};
        }
      }
      unsigned char* t = &kuva[(y * kuvaLeveys + x) * 3];
      const float n = naytteita * naytteita;
      t[0] = static_cast<unsigned char>(summa.r / n + 0.5f);
      t[1] = static_cast<unsigned char>(summa.g / n + 0.5f);
      t[2] = static_cast<unsigned char>(summa.b / n + 0.5f);
    }
  }
  return kuva;
}

GLuint lataaLippuKuva() {
  const std::vector<unsigned char> kuva = maalaaLippu();
  GLuint nimi = 0;
  glGenTextures(1, &nimi);
  glBindTexture(GL_TEXTURE_2D, nimi);
  // Mipmaps keep the ring smooth where the folds and the turn squeeze the cloth.
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGB, kuvaLeveys, kuvaKorkeus, GL_RGB, GL_UNSIGNED_BYTE, kuva.data());
  glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
  return nimi;
}

// Start-up runs the intro before the game's own GL set-up, so it sets everything it draws with.
void asetaIntronTila() {
  const int korkeusPx = screenheight > 0 ? screenheight : 1;
  glViewport(0, 0, screenwidth, korkeusPx);
  glMatrixMode(GL_PROJECTION);
  glLoadIdentity();
  gluPerspective(45.0, double(screenwidth) / korkeusPx, 1.0, 1024.0);
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
  glClearColor(0, 0, 0, 1);
  glDisable(GL_CULL_FACE);
  glEnable(GL_NORMALIZE);
  glEnable(GL_COLOR_MATERIAL);
  glEnable(GL_LIGHT0);
  glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);  // the cloth shows both faces as it folds
  const GLfloat ambient[] = {0.2f, 0.2f, 0.2f, 1};
  const GLfloat valkoinen[] = {1, 1, 1, 1};
  glLightModelfv(GL_LIGHT_MODEL_AMBIENT, ambient);
  glLightfv(GL_LIGHT0, GL_DIFFUSE, valkoinen);
  glLightfv(GL_LIGHT0, GL_SPECULAR, valkoinen);
}

void piirraTahdet(int kulunut) {
  glDisable(GL_LIGHTING);
  glDisable(GL_TEXTURE_2D);
  glDisable(GL_DEPTH_TEST);
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE);
  glPointSize(2);
  glBegin(GL_POINTS);
  for (const IntroTahti& t : tahdet) {
    const float tuike = 0.75f + 0.25f * std::sin(t.vaihe + kulunut * 0.03f);
    glColor4f(0.8f, 0.85f, 1.0f, t.kirkkaus * tuike);
    glVertex3f(t.x * 31, t.y * 23, -55);
  }
  glEnd();
  glPointSize(1);
}

void piirraKangas() {
  for (int i = 0; i + 1 < lippuRiveja; i++) {
    glBegin(GL_QUAD_STRIP);
    for (int j = 0; j < lippuSarakkeita; j++) {
      for (int k = 1; k >= 0; k--) {
        const LippuPiste& p = lippu[i + k][j];
        glTexCoord2f(float(j) / (lippuSarakkeita - 1), 1.0f - float(i + k) / (lippuRiveja - 1));
        glNormal3f(p.nx, p.ny, p.nz);
        glVertex3f(p.x, p.y, p.z);
      }
    }
    glEnd();
  }
}

void piirraSalko(GLUquadric* q) {
  glDisable(GL_TEXTURE_2D);
  glColor4f(0.7f, 0.7f, 0.75f, 1);
  glPushMatrix();
  glTranslatef(-0.25f, korkeus + 0.5f, 0);
  glRotatef(90, 1, 0, 0);
  gluCylinder(q, 0.22, 0.22, salonPituus, 16, 1);
  glTranslatef(0, 0, salonPituus);
  gluDisk(q, 0, 0.22, 16, 1);
  glPopMatrix();
  glColor4f(0.95f, 0.75f, 0.2f, 1);
  glPushMatrix();
  glTranslatef(-0.25f, korkeus + 0.8f, 0);
  gluSphere(q, 0.45, 16, 12);
  glPopMatrix();
}

void piirraLippu(GLuint kuva, GLUquadric* q) {
  glEnable(GL_LIGHTING);
  glEnable(GL_DEPTH_TEST);
  glDisable(GL_BLEND);
  const GLfloat valo[] = {-0.9f, 0.35f, 0.45f, 0};  // grazing, so that the folds show
  glLightfv(GL_LIGHT0, GL_POSITION, valo);
  glPushMatrix();
  glTranslatef(salkoX, lippuY - korkeus / 2, lippuZ);
  glRotatef(-28, 0, 1, 0);
  piirraSalko(q);
  glEnable(GL_TEXTURE_2D);
  glBindTexture(GL_TEXTURE_2D, kuva);
  glColor4f(1, 1, 1, 1);
  const GLfloat kiilto[] = {0.35f, 0.35f, 0.35f, 1}, ei[] = {0, 0, 0, 1};
  glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, kiilto);
  glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 24);
  piirraKangas();
  glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, ei);
  glPopMatrix();
}

// 0 before `alku`, rising to 1 over `kesto` frames, and fading out with the intro's last 90 frames.
float haivytys(int kulunut, int alku, int kesto) {
  float a = float(kulunut - alku) / kesto;
  a = a < 0 ? 0 : (a > 1 ? 1 : a);
  const float loppu = float(introKesto - kulunut) / 90;
  return loppu < a ? (loppu < 0 ? 0 : loppu) : a;
}

void keskitettyRivi(const char* teksti, float y, float koko) {
  gl_println(keskitettyX(teksti, koko), y, lippuZ + 4, teksti, koko);
}

void piirraTekstit(int kulunut) {
  glDisable(GL_LIGHTING);
  glDisable(GL_DEPTH_TEST);
  glEnable(GL_TEXTURE_2D);
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE);
  glColor4f(0.9f, 0.9f, 1.0f, haivytys(kulunut, 45, 150));
  keskitettyRivi("Morune", 9.5f, 0.9f);
  glColor4f(0.8f, 0.8f, 0.9f, haivytys(kulunut, 120, 150));
  keskitettyRivi("/ KVL Presents", 7.6f, 0.6f);
  glColor4f(1.0f, 0.7f, 0.15f, haivytys(kulunut, 330, 180));
  keskitettyRivi("Vorta", -8.3f, 2.0f);
}

void piirraIntro(int kulunut, GLuint kuva, GLUquadric* q) {
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glLoadIdentity();
  piirraTahdet(kulunut);
  piirraLippu(kuva, q);
  piirraTekstit(kulunut);
  naytaKuva();
}

void palautaTila() {
  glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_FALSE);
  glEnable(GL_LIGHTING);
  glEnable(GL_DEPTH_TEST);
  glEnable(GL_TEXTURE_2D);
  glDisable(GL_BLEND);
  glColor4f(1, 1, 1, 1);
}

}  // namespace

void alustaLippu() {
  aaltoAika = 0;
  for (int i = 0; i < lippuRiveja; i++)
    for (int j = 0; j < lippuSarakkeita; j++)
      lippu[i][j] = {
          float(j) / (lippuSarakkeita - 1) * leveys, float(i) / (lippuRiveja - 1) * korkeus, 0, 0, 0, 1};
}

void lippuAskel(int) {
  aaltoAika++;
  asetaPaikat(aaltoAika / introFps);
  asetaNormaalit();
}

bool introJatkuu(int kulunut) {
  if (entterpressed || spacepressed || escpressed) {
    entterpressed = spacepressed = escpressed = false;
    return false;
  }
  return kulunut < introKesto;
}

void AlotaLippu() {
  calculatefps = introFps;
  alustaLippu();
  alustaTahdet();
  asetaIntronTila();
  const GLuint kuva = lataaLippuKuva();
  GLUquadric* q = gluNewQuadric();
  gluQuadricNormals(q, GLU_SMOOTH);
  int alku = -1;
  int kulunut = 0;
  do {
    processEvents();
    paceAndCalculate(CatchUp::DropBacklog, 5, lippuAskel);
    if (alku < 0) alku = framecounter;
    kulunut = framecounter - alku;
    piirraIntro(kulunut, kuva, q);
    if (kulunut >= introKesto - musiikkiHiipuuLopussa) fadeOutMusic(musiikinHiipuminen);
    updateAudio();
  } while (introJatkuu(kulunut));
  fadeOutMusic(musiikinHiipuminen);  // after a skip too
  gluDeleteQuadric(q);
  glDeleteTextures(1, &kuva);
  palautaTila();
  calculatefps = float(sets.fps);
}
