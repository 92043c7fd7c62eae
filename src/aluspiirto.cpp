// Ship models, the field's corner pylons, the flower, the mushroom and the
// asteroid, recorded into display lists, and the drawing of a player's ship.
//
// Model space: nose along +x, the field plane x-y, z toward the camera. Ships are
// modelled at unit radius and drawn scaled by their `sade`, so that one list
// serves every size a ship record may carry. Each ship type records three lists:
//  - hull: its own colours and the ship textures of the catalogue;
//  - trim: bare geometry drawn in the caller's current colour, which is the
//    team colour (one list serves every player, so the colour cannot be baked);
//  - moving part: a turret, propeller or spinner ring, drawn turned at draw time.
// A model function describes all of its parts in one pass, switching between
// them with runko()/trimmi()/liikkuva(); the helpers emit only the part whose list
// is being recorded, so each function is simply run once per list.

#include "aluspiirto.h"

#include <GL/gl.h>
#include <GL/glu.h>
#include <SDL/SDL.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <utility>
#include <vector>

#include "Alus.h"
#include "Player.h"
#include "ctf.h"
#include "glapi.h"
#include "scene.h"

namespace {

using saannot::pii;

struct V3 {
  float x, y, z;
};

V3 operator+(V3 a, V3 b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
V3 operator-(V3 a, V3 b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
V3 operator*(V3 a, float k) { return {a.x * k, a.y * k, a.z * k}; }
float piste(V3 a, V3 b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
V3 risti(V3 a, V3 b) { return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x}; }
V3 yksikko(V3 a) {
  float p = std::sqrt(piste(a, a));
  return p > 0 ? a * (1 / p) : V3{0, 0, 1};
}
void normaali(V3 n) { glNormal3f(n.x, n.y, n.z); }
void kulmapiste(V3 p) { glVertex3f(p.x, p.y, p.z); }

// ---------------------------------------------------------------------------
// Recording: which part of a model is described and which one is recorded.

enum class Osa { runko, trimmi, liikkuva };
enum class Liike { ei, torni, potkuriX, potkuriZ, pyorija };

struct Suutin {
  V3 paikka;
  float sade;
};

struct Malli {
  GLuint runko = 0, trimmi = 0, liikkuva = 0;
  Suutin suutin[2] = {};
  int suuttimia = 0;
  Liike liike = Liike::ei;
  V3 nivel = {0, 0, 0};
};

Malli mallit[alustyyppeja];
GLuint kupla = 0;        // unit sphere of the shield
GLuint listaPohja = 0;   // first name of the block recorded by the last call
GLsizei listaMaara = 0;  // size of that block

Osa tallennettava = Osa::runko;
Osa kuvattava = Osa::runko;
Malli* nykyinen = nullptr;  // the ship model being recorded
GLUquadric* kvadri = nullptr;
const int viipaleet = 10;

bool tallennetaan() { return kuvattava == tallennettava; }

void runko() { kuvattava = Osa::runko; }
void trimmi() { kuvattava = Osa::trimmi; }

// Starts the moving part, modelled around its pivot at the origin.
void liikkuva(Liike liike, V3 nivel) {
  kuvattava = Osa::liikkuva;
  nykyinen->liike = liike;
  nykyinen->nivel = nivel;
}

// An engine exit: the flame is drawn from here along -x while thrusting.
void suutin(V3 paikka, float sade) {
  if (tallennettava != Osa::runko || nykyinen->suuttimia >= 2) return;
  nykyinen->suutin[nykyinen->suuttimia++] = {paikka, sade};
}

// Hull colours are kept below full strength so that the lit side of a ship
// under the scene's light and ambient together does not wash out to white.
const float savy = 0.85f;

bool aineena = false;  // set while omillaAineilla records

void vari(float r, float g, float b) {
  if (!tallennetaan()) return;
  if (aineena) {
    const GLfloat c[4] = {r * savy, g * savy, b * savy, 1};
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, c);
  } else {
    glColor3f(r * savy, g * savy, b * savy);
  }
}

// Self-lit parts (emitters, coils) drawn by `osat`: unlit, at the full strength of
// (r, g, b). Not by emission: a material change recorded in a list outlives the
// list's own attribute pop in Mesa, and would tint what the caller draws next.
template <class F>
void hehkuen(float r, float g, float b, F osat) {
  const bool mukana = tallennetaan();
  if (mukana) {
    glPushAttrib(GL_ENABLE_BIT);
    glDisable(GL_LIGHTING);
    glColor3f(r, g, b);
  }
  osat();
  if (mukana) glPopAttrib();
}

// A ship texture from the catalogue, or plain colour when the slot is empty.
void pinta(GLuint nimi, float r, float g, float b) {
  if (!tallennetaan()) return;
  if (nimi != 0) {
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, nimi);
    glColor3f(std::min(1.f, r + 0.4f) * savy, std::min(1.f, g + 0.4f) * savy, std::min(1.f, b + 0.4f) * savy);
  } else {
    vari(r, g, b);
  }
}

void pintaPois() {
  if (tallennetaan()) glDisable(GL_TEXTURE_2D);
}

// ---------------------------------------------------------------------------
// Solids.

// Six-sided solid from a bottom quad a[0..3] and the top quad b[0..3] above it.
// Face normals point away from the centre, so the corner order does not matter.
void kuusitahokas(const V3 a[4], const V3 b[4]) {
  if (!tallennetaan()) return;
  V3 keski = {0, 0, 0};
  for (int i = 0; i < 4; i++) keski = keski + a[i] + b[i];
  keski = keski * 0.125f;
  const V3 sivut[6][4] = {{a[0], a[1], a[2], a[3]}, {b[0], b[1], b[2], b[3]}, {a[0], a[1], b[1], b[0]},
                          {a[1], a[2], b[2], b[1]}, {a[2], a[3], b[3], b[2]}, {a[3], a[0], b[0], b[3]}};
  glBegin(GL_QUADS);
  for (const auto& s : sivut) {
    V3 n = yksikko(risti(s[2] - s[0], s[3] - s[1]));
    V3 kohta = (s[0] + s[1] + s[2] + s[3]) * 0.25f;
    if (piste(n, kohta - keski) < 0) n = n * -1;
    normaali(n);
    for (const V3& p : s) {
      glTexCoord2f(p.x * 0.5f + 0.5f, p.y * 0.5f + 0.5f);
      kulmapiste(p);
    }
  }
  glEnd();
}

// Tapered block along x from x0 (half width w0, half height h0) to x1 (w1, h1).
void lohko(float x0, float x1, float y, float z, float w0, float h0, float w1, float h1) {
  const V3 a[4] = {{x0, y - w0, z - h0}, {x0, y + w0, z - h0}, {x1, y + w1, z - h1}, {x1, y - w1, z - h1}};
  const V3 b[4] = {{x0, y - w0, z + h0}, {x0, y + w0, z + h0}, {x1, y + w1, z + h1}, {x1, y - w1, z + h1}};
  kuusitahokas(a, b);
}

// Flat plate (wing, fin) over the outline p[0..3] in the x-y plane at height z.
void levy(std::initializer_list<std::pair<float, float>> p, float z, float paksuus) {
  V3 a[4], b[4];
  int i = 0;
  for (const auto& q : p) {
    a[i] = {q.first, q.second, z - paksuus * 0.5f};
    b[i] = {q.first, q.second, z + paksuus * 0.5f};
    if (++i == 4) break;
  }
  kuusitahokas(a, b);
}

// Tube from `alku` to `loppu` with end radii r0 and r1, capped at both ends.
void putki(V3 alku, V3 loppu, float r0, float r1) {
  if (!tallennetaan()) return;
  V3 d = loppu - alku;
  float pituus = std::sqrt(piste(d, d));
  if (pituus <= 0) return;
  V3 akseli = risti({0, 0, 1}, d);
  float kulma = std::acos(std::max(-1.f, std::min(1.f, d.z / pituus))) * 180 / pii;
  glPushMatrix();
  glTranslatef(alku.x, alku.y, alku.z);
  if (piste(akseli, akseli) > 1e-12f)
    glRotatef(kulma, akseli.x, akseli.y, akseli.z);
  else if (d.z < 0)
    glRotatef(180, 1, 0, 0);
  const int viip = std::max(r0, r1) < 0.05f ? 6 : viipaleet;  // thin barrels need few sides
  gluCylinder(kvadri, r0, r1, pituus, viip, 1);
  gluQuadricOrientation(kvadri, GLU_INSIDE);
  gluDisk(kvadri, 0, r0, viip, 1);
  gluQuadricOrientation(kvadri, GLU_OUTSIDE);
  if (r1 > 0) {
    glTranslatef(0, 0, pituus);
    gluDisk(kvadri, 0, r1, viip, 1);
  }
  glPopMatrix();
}

// Tube along x, the commonest case (barrels, engines).
void putkiX(float x0, float x1, float y, float z, float r0, float r1) {
  putki({x0, y, z}, {x1, y, z}, r0, r1);
}

void pallo(V3 c, float rx, float ry, float rz, int viip = viipaleet) {
  if (!tallennetaan()) return;
  glPushMatrix();
  glTranslatef(c.x, c.y, c.z);
  glScalef(rx, ry, rz);
  gluSphere(kvadri, 1, viip, std::max(4, viip / 2));
  glPopMatrix();
}

// Upper half of an ellipsoid (canopies, domes, the mushroom cap).
void kupu(V3 c, float rx, float ry, float rz) {
  if (!tallennetaan()) return;
  const int kaistat = 4, sektorit = 12;
  for (int i = 0; i < kaistat; i++) {
    float a0 = i * pii / 2 / kaistat, a1 = (i + 1) * pii / 2 / kaistat;
    glBegin(GL_QUAD_STRIP);
    for (int j = 0; j <= sektorit; j++) {
      float b = j * 2 * pii / sektorit;
      for (float a : {a1, a0}) {
        V3 n = {std::cos(a) * std::cos(b), std::cos(a) * std::sin(b), std::sin(a)};
        normaali(yksikko({n.x / rx, n.y / ry, n.z / rz}));
        glTexCoord2f(b / (2 * pii), a * 2 / pii);
        kulmapiste({c.x + n.x * rx, c.y + n.y * ry, c.z + n.z * rz});
      }
    }
    glEnd();
  }
}

// Torus arc around the z axis (angles in degrees); tilted by the caller's matrix.
// Small rings get fewer segments: they cover a few pixels in play.
void kaari(float sade, float paksuus, float alku, float loppu) {
  if (!tallennetaan()) return;
  const int osia = static_cast<int>(std::ceil((sade < 0.2f   ? 8
                                               : sade < 0.5f ? 12
                                                             : 18) *
                                              (loppu - alku) / 360));
  const int kehat = paksuus < 0.05f ? 4 : 6;
  for (int i = 0; i < osia; i++) {
    glBegin(GL_QUAD_STRIP);
    for (int j = 0; j <= kehat; j++) {
      float b = j * 2 * pii / kehat;
      for (int k : {i, i + 1}) {
        float a = (alku + (loppu - alku) * k / osia) * pii / 180;
        V3 n = {std::cos(b) * std::cos(a), std::cos(b) * std::sin(a), std::sin(b)};
        normaali(n);
        kulmapiste({std::cos(a) * sade + n.x * paksuus, std::sin(a) * sade + n.y * paksuus, n.z * paksuus});
      }
    }
    glEnd();
  }
}

// Full ring at c, lying in the x-y plane, or standing across the x axis.
void rengas(V3 c, float sade, float paksuus, bool xAkselilla) {
  if (!tallennetaan()) return;
  glPushMatrix();
  glTranslatef(c.x, c.y, c.z);
  if (xAkselilla) glRotatef(90, 0, 1, 0);
  kaari(sade, paksuus, 0, 360);
  glPopMatrix();
}

// Propeller blades around the x axis (potkuriX) or z axis (potkuriZ) at the origin.
void lavat(int maara, float pituus, float leveys, bool xAkselilla) {
  if (!tallennetaan()) return;
  for (int i = 0; i < maara; i++) {
    glPushMatrix();
    if (xAkselilla) {
      glRotatef(360.f * i / maara, 1, 0, 0);
      glRotatef(-90, 0, 1, 0);  // blade plane across the x axis
    } else {
      glRotatef(360.f * i / maara, 0, 0, 1);
    }
    glRotatef(20, 1, 0, 0);  // pitch
    levy({{0.02f, -leveys * 0.5f}, {pituus, -leveys * 0.6f}, {pituus, leveys * 0.3f}, {0.02f, leveys * 0.5f}},
         0, 0.02f);
    glPopMatrix();
  }
}

template <class F>
void peilaten(F f) {
  f(1.f);
  f(-1.f);
}

// Shared pieces.
void ohjaamo(V3 c, float rx, float ry, float rz) {
  vari(0.12f, 0.16f, 0.28f);
  kupu(c, rx, ry, rz);
}

void moottori(float x0, float x1, float y, float z, float r) {
  vari(0.22f, 0.22f, 0.25f);
  putkiX(x0, x1, y, z, r, r * 1.15f);
  suutin({x0, y, z}, r * 0.9f);
}

// ---------------------------------------------------------------------------
// The 24 ships.

// Twin-gun fighter: delta wing with a gun pod under each wing.
void alus0() {
  runko();
  vari(0.55f, 0.6f, 0.68f);
  lohko(-0.8f, 0.95f, 0, 0, 0.2f, 0.15f, 0.04f, 0.05f);
  peilaten([](float s) {
    levy({{-0.6f, 0.12f * s}, {0.25f, 0.12f * s}, {-0.35f, 0.8f * s}, {-0.72f, 0.8f * s}}, -0.02f, 0.06f);
  });
  vari(0.3f, 0.32f, 0.36f);
  peilaten([](float s) {
    putkiX(-0.35f, 0.3f, 0.64f * s, 0, 0.09f, 0.08f);
    putkiX(0.3f, 0.78f, 0.64f * s, 0, 0.035f, 0.035f);
  });
  ohjaamo({0.3f, 0, 0.1f}, 0.25f, 0.09f, 0.1f);
  moottori(-0.9f, -0.7f, 0, 0, 0.13f);
  trimmi();
  peilaten([](float s) {
    levy({{-0.58f, 0.5f * s}, {-0.22f, 0.5f * s}, {-0.3f, 0.62f * s}, {-0.62f, 0.62f * s}}, 0.02f, 0.03f);
  });
  lohko(-0.75f, -0.35f, 0, 0.16f, 0.03f, 0.05f, 0.02f, 0.02f);
}

// Heavy recoil cannon: a squat armoured hull behind one long barrel.
void alus1() {
  runko();
  vari(0.45f, 0.5f, 0.3f);
  lohko(-0.85f, 0.15f, 0, 0, 0.42f, 0.2f, 0.32f, 0.18f);
  vari(0.33f, 0.37f, 0.22f);
  peilaten([](float s) { lohko(-0.7f, 0.05f, 0.47f * s, 0, 0.1f, 0.13f, 0.07f, 0.1f); });
  lohko(-0.25f, 0.2f, 0, 0.18f, 0.18f, 0.1f, 0.14f, 0.08f);
  vari(0.25f, 0.27f, 0.2f);
  putkiX(0.1f, 0.95f, 0, 0.08f, 0.13f, 0.11f);
  lohko(0.78f, 0.98f, 0, 0.08f, 0.18f, 0.12f, 0.17f, 0.12f);
  moottori(-1.0f, -0.8f, 0, 0, 0.17f);
  trimmi();
  lohko(-0.55f, -0.4f, 0, 0.2f, 0.43f, 0.02f, 0.42f, 0.02f);
  peilaten([](float s) { lohko(-0.6f, -0.1f, 0.47f * s, 0.13f, 0.06f, 0.02f, 0.05f, 0.02f); });
}

// Tiny needle interceptor with forward canards.
void alus2() {
  runko();
  vari(0.9f, 0.85f, 0.55f);
  lohko(-0.8f, 1.0f, 0, 0, 0.14f, 0.12f, 0.01f, 0.02f);
  peilaten([](float s) {
    levy({{-0.75f, 0.1f * s}, {-0.15f, 0.1f * s}, {-0.65f, 0.78f * s}, {-0.85f, 0.78f * s}}, 0, 0.05f);
    levy({{0.25f, 0.08f * s}, {0.5f, 0.08f * s}, {0.35f, 0.36f * s}, {0.27f, 0.36f * s}}, 0, 0.04f);
  });
  vari(0.3f, 0.3f, 0.3f);
  putkiX(0.5f, 0.97f, 0, -0.07f, 0.03f, 0.03f);
  vari(0.45f, 0.08f, 0.05f);
  kupu({0.12f, 0, 0.08f}, 0.22f, 0.07f, 0.08f);
  moottori(-0.95f, -0.75f, 0, 0, 0.1f);
  trimmi();
  peilaten([](float s) {
    levy({{-0.8f, 0.58f * s}, {-0.54f, 0.58f * s}, {-0.65f, 0.78f * s}, {-0.85f, 0.78f * s}}, 0.02f, 0.04f);
    levy({{0.27f, 0.24f * s}, {0.41f, 0.24f * s}, {0.35f, 0.36f * s}, {0.27f, 0.36f * s}}, 0.015f, 0.03f);
  });
}

// Alternating guns on two sponsons swung out at 55 degrees.
void alus3() {
  runko();
  vari(0.35f, 0.6f, 0.6f);
  lohko(-0.7f, 0.8f, 0, 0, 0.3f, 0.17f, 0.05f, 0.06f);
  peilaten([](float s) {
    levy({{-0.35f, 0.2f * s}, {0.1f, 0.2f * s}, {0.25f, 0.66f * s}, {-0.1f, 0.66f * s}}, 0, 0.08f);
  });
  vari(0.25f, 0.3f, 0.32f);
  peilaten([](float s) {
    putkiX(-0.2f, 0.42f, 0.66f * s, 0, 0.1f, 0.08f);
    putkiX(0.42f, 0.62f, 0.66f * s, 0, 0.04f, 0.04f);
  });
  ohjaamo({0.2f, 0, 0.12f}, 0.22f, 0.1f, 0.09f);
  moottori(-0.85f, -0.65f, 0, 0, 0.14f);
  trimmi();
  peilaten([](float s) { lohko(-0.05f, 0.35f, 0.66f * s, 0.085f, 0.05f, 0.02f, 0.04f, 0.02f); });
  levy({{-0.65f, -0.03f}, {-0.25f, -0.03f}, {-0.25f, 0.03f}, {-0.65f, 0.03f}}, 0.2f, 0.06f);
}

// Heavy bomber: straight wings, two engines at the wing roots' trailing edge
// and a propeller on the nose.
void alus4() {
  const GLuint siipi = alus[4].texture2;
  runko();
  vari(0.45f, 0.5f, 0.35f);
  lohko(-0.78f, 0.78f, 0, 0, 0.2f, 0.2f, 0.14f, 0.14f);
  pallo({0.78f, 0, 0}, 0.14f, 0.14f, 0.14f);
  peilaten([](float s) {
    levy({{-0.78f, 0.1f * s}, {-0.58f, 0.1f * s}, {-0.72f, 0.38f * s}, {-0.82f, 0.38f * s}}, 0.05f, 0.05f);
  });
  pinta(siipi, 0.42f, 0.47f, 0.32f);
  peilaten([](float s) {
    levy({{-0.22f, 0.15f * s}, {0.25f, 0.15f * s}, {0.1f, 0.98f * s}, {-0.15f, 0.98f * s}}, 0, 0.07f);
  });
  pintaPois();
  vari(0.3f, 0.32f, 0.26f);
  peilaten([](float s) { putkiX(-0.72f, 0.28f, 0.57f * s, 0, 0.12f, 0.09f); });
  vari(0.15f, 0.15f, 0.12f);
  lohko(-0.45f, 0.3f, 0, 0.2f, 0.08f, 0.02f, 0.08f, 0.02f);  // bomb-bay doors
  peilaten([](float s) {
    vari(0.22f, 0.22f, 0.25f);
    putkiX(-0.85f, -0.72f, 0.57f * s, 0, 0.11f, 0.12f);
    suutin({-0.85f, 0.57f * s, 0}, 0.1f);
  });
  ohjaamo({0.45f, 0, 0.15f}, 0.2f, 0.11f, 0.08f);
  liikkuva(Liike::potkuriX, {0.93f, 0, 0});
  vari(0.2f, 0.2f, 0.2f);
  pallo({0, 0, 0}, 0.08f, 0.07f, 0.07f, 8);
  vari(0.7f, 0.7f, 0.65f);
  lavat(3, 0.38f, 0.09f, true);
  trimmi();
  peilaten([](float s) {
    levy({{-0.12f, 0.82f * s}, {0.14f, 0.82f * s}, {0.1f, 0.98f * s}, {-0.15f, 0.98f * s}}, 0.02f, 0.08f);
  });
  lohko(-0.82f, -0.58f, 0, 0.22f, 0.05f, 0.03f, 0.03f, 0.02f);
}

// Dreadnought with one enormous cannon.
void alus5() {
  const GLuint kansi = alus[5].texture2;
  runko();
  vari(0.55f, 0.25f, 0.22f);
  lohko(-0.85f, 0.4f, 0, 0, 0.55f, 0.22f, 0.45f, 0.2f);
  vari(0.42f, 0.2f, 0.18f);
  peilaten([](float s) { lohko(-0.65f, 0.3f, 0.62f * s, 0, 0.12f, 0.15f, 0.1f, 0.12f); });
  vari(0.25f, 0.24f, 0.26f);
  putkiX(0.2f, 0.92f, 0, 0.08f, 0.3f, 0.26f);
  rengas({0.9f, 0, 0.08f}, 0.26f, 0.06f, true);
  vari(0.05f, 0.05f, 0.05f);
  putkiX(0.9f, 0.985f, 0, 0.08f, 0.17f, 0.17f);
  pinta(kansi, 0.5f, 0.45f, 0.4f);
  lohko(-0.55f, -0.1f, 0, 0.25f, 0.17f, 0.1f, 0.13f, 0.08f);
  pintaPois();
  moottori(-0.98f, -0.82f, 0, 0, 0.22f);
  trimmi();
  peilaten([](float s) { lohko(-0.5f, 0.15f, 0.62f * s, 0.16f, 0.07f, 0.02f, 0.06f, 0.02f); });
  rengas({0.35f, 0, 0.08f}, 0.305f, 0.03f, true);
}

// Zap saucer: a disc with a two-pronged emitter turret that aims at its target.
void alus6() {
  runko();
  vari(0.7f, 0.65f, 0.8f);
  pallo({0, 0, 0}, 0.8f, 0.8f, 0.14f, 12);
  vari(0.35f, 0.2f, 0.5f);
  kupu({-0.15f, 0, 0.08f}, 0.33f, 0.33f, 0.2f);
  vari(0.4f, 0.38f, 0.45f);
  lohko(-0.97f, -0.6f, 0, 0, 0.12f, 0.07f, 0.15f, 0.09f);
  suutin({-0.97f, 0, 0}, 0.09f);
  liikkuva(Liike::torni, {0.3f, 0, 0.13f});
  vari(0.35f, 0.33f, 0.4f);
  putki({0, 0, 0}, {0, 0, 0.1f}, 0.15f, 0.12f);
  peilaten([](float s) { putki({0, 0.07f * s, 0.06f}, {0.68f, 0.07f * s, 0.06f}, 0.035f, 0.02f); });
  hehkuen(0.5f, 0.9f, 1.0f, [] {
    peilaten([](float s) { pallo({0.68f, 0.07f * s, 0.06f}, 0.05f, 0.05f, 0.05f, 8); });
  });
  trimmi();
  rengas({0, 0, 0}, 0.8f, 0.05f, false);
}

// Torpedo carrier: twin pontoons with the torpedo slung between them.
void alus7() {
  runko();
  vari(0.25f, 0.3f, 0.5f);
  peilaten([](float s) { lohko(-0.9f, 0.7f, 0.36f * s, 0, 0.14f, 0.13f, 0.08f, 0.1f); });
  lohko(-0.9f, 0.1f, 0, 0.06f, 0.25f, 0.05f, 0.25f, 0.05f);
  lohko(-0.6f, -0.2f, 0, 0.16f, 0.12f, 0.08f, 0.1f, 0.06f);
  vari(0.75f, 0.75f, 0.7f);
  putkiX(-0.3f, 0.82f, 0, -0.02f, 0.09f, 0.09f);
  peilaten([](float s) {
    levy({{-0.3f, 0.02f * s}, {-0.15f, 0.02f * s}, {-0.3f, 0.17f * s}, {-0.36f, 0.17f * s}}, -0.02f, 0.02f);
  });
  vari(0.8f, 0.2f, 0.15f);
  pallo({0.82f, 0, -0.02f}, 0.14f, 0.09f, 0.09f, 10);
  moottori(-1.0f, -0.88f, 0, 0.06f, 0.1f);
  trimmi();
  peilaten([](float s) { lohko(0.42f, 0.72f, 0.36f * s, 0.1f, 0.1f, 0.03f, 0.07f, 0.02f); });
}

// Scatter gun: bulbous body, a flared funnel muzzle and an egg sac behind.
void alus8() {
  runko();
  vari(0.7f, 0.45f, 0.25f);
  pallo({-0.1f, 0, 0}, 0.55f, 0.42f, 0.24f);
  vari(0.55f, 0.35f, 0.2f);
  peilaten([](float s) { lohko(-0.45f, 0.3f, 0.4f * s, 0, 0.05f, 0.07f, 0.03f, 0.04f); });
  vari(0.35f, 0.3f, 0.28f);
  putkiX(0.35f, 0.97f, 0, 0, 0.11f, 0.3f);
  vari(0.9f, 0.85f, 0.7f);
  pallo({-0.62f, 0, 0.08f}, 0.3f, 0.27f, 0.2f);
  moottori(-0.97f, -0.8f, 0, -0.02f, 0.1f);
  trimmi();
  rengas({0.97f, 0, 0}, 0.3f, 0.035f, true);
  peilaten([](float s) { pallo({0.05f, 0.22f * s, 0.19f}, 0.08f, 0.08f, 0.05f, 8); });
}

// Laser ship: a long lens barrel with focusing rings and a green crystal.
void alus9() {
  runko();
  vari(0.85f, 0.88f, 0.9f);
  lohko(-0.85f, 0.5f, 0, 0, 0.22f, 0.14f, 0.12f, 0.1f);
  peilaten([](float s) {
    levy({{-0.72f, 0.2f * s}, {-0.2f, 0.2f * s}, {-0.38f, 0.72f * s}, {-0.62f, 0.72f * s}}, 0, 0.04f);
  });
  vari(0.5f, 0.52f, 0.55f);
  putkiX(0.3f, 1.0f, 0, 0.05f, 0.07f, 0.07f);
  for (float x : {0.5f, 0.7f, 0.9f}) rengas({x, 0, 0.05f}, 0.09f, 0.025f, true);
  hehkuen(0.3f, 1.0f, 0.4f, [] {
    pallo({1.03f, 0, 0.05f}, 0.07f, 0.06f, 0.06f, 8);
    peilaten([](float s) { putkiX(-0.7f, -0.1f, 0.27f * s, 0, 0.06f, 0.06f); });
  });
  ohjaamo({0.05f, 0, 0.1f}, 0.2f, 0.08f, 0.08f);
  moottori(-0.97f, -0.8f, 0, 0, 0.11f);
  trimmi();
  peilaten([](float s) {
    levy({{-0.62f, 0.6f * s}, {-0.46f, 0.6f * s}, {-0.38f, 0.72f * s}, {-0.62f, 0.72f * s}}, 0.02f, 0.03f);
  });
}

// Pulse ship: an orb core between two forward prongs.
void alus10() {
  runko();
  vari(0.5f, 0.35f, 0.65f);
  pallo({-0.15f, 0, 0}, 0.35f, 0.35f, 0.24f);
  peilaten([](float s) {
    lohko(-0.15f, 0.92f, 0.3f * s, 0, 0.11f, 0.1f, 0.03f, 0.04f);
    levy({{-0.8f, 0.1f * s}, {-0.4f, 0.1f * s}, {-0.72f, 0.58f * s}, {-0.92f, 0.58f * s}}, 0, 0.05f);
  });
  hehkuen(1.0f, 0.4f, 1.0f, [] { pallo({0.55f, 0, 0}, 0.1f, 0.1f, 0.1f, 8); });
  vari(0.3f, 0.2f, 0.4f);
  lohko(0.1f, 0.5f, 0, 0, 0.05f, 0.04f, 0.03f, 0.03f);
  moottori(-0.95f, -0.5f, 0, 0, 0.12f);
  trimmi();
  peilaten([](float s) { lohko(0.55f, 0.9f, 0.3f * s, 0.07f, 0.06f, 0.02f, 0.03f, 0.02f); });
  rengas({-0.15f, 0, 0}, 0.35f, 0.04f, false);
}

// Twin prongs that throw the ±15 degree shots, a beam emitter between them.
void alus11() {
  runko();
  vari(0.4f, 0.45f, 0.6f);
  lohko(-0.85f, 0.3f, 0, 0, 0.3f, 0.17f, 0.2f, 0.12f);
  peilaten([](float s) {
    lohko(-0.1f, 1.1f, 0.22f * s, 0, 0.08f, 0.08f, 0.04f, 0.05f);
    levy({{-0.62f, 0.3f * s}, {-0.12f, 0.3f * s}, {-0.52f, 0.75f * s}, {-0.76f, 0.75f * s}}, 0, 0.05f);
  });
  vari(0.3f, 0.32f, 0.4f);
  putkiX(0.3f, 0.7f, 0, 0, 0.08f, 0.05f);
  hehkuen(0.4f, 0.5f, 1.0f, [] { pallo({0.72f, 0, 0}, 0.06f, 0.06f, 0.06f, 8); });
  ohjaamo({-0.1f, 0, 0.14f}, 0.22f, 0.1f, 0.08f);
  moottori(-0.97f, -0.8f, 0, 0, 0.13f);
  trimmi();
  peilaten([](float s) { lohko(0.3f, 0.95f, 0.22f * s, 0.075f, 0.04f, 0.015f, 0.03f, 0.015f); });
}

// Broadside frigate: one gun ahead and one to each side.
void alus12() {
  runko();
  vari(0.75f, 0.6f, 0.35f);
  lohko(-0.8f, 0.7f, 0, 0, 0.35f, 0.15f, 0.25f, 0.12f);
  lohko(0.7f, 0.95f, 0, 0, 0.25f, 0.12f, 0.05f, 0.05f);
  lohko(-0.6f, -0.25f, 0, 0.17f, 0.16f, 0.06f, 0.13f, 0.05f);
  vari(0.3f, 0.28f, 0.25f);
  putki({0.4f, 0, 0.1f}, {0.4f, 0, 0.22f}, 0.12f, 0.1f);
  putkiX(0.45f, 0.9f, 0, 0.18f, 0.035f, 0.035f);
  peilaten([](float s) { putki({-0.1f, 0.3f * s, 0.08f}, {-0.1f, 0.82f * s, 0.08f}, 0.045f, 0.04f); });
  moottori(-0.97f, -0.8f, 0, 0, 0.14f);
  trimmi();
  peilaten([](float s) { pallo({-0.1f, 0.38f * s, 0.08f}, 0.13f, 0.13f, 0.1f, 10); });
}

// Charge cannon: a glowing coil ring at the bow where the ball grows.
void alus13() {
  runko();
  vari(0.4f, 0.42f, 0.45f);
  lohko(-0.85f, 0.2f, 0, 0, 0.35f, 0.18f, 0.28f, 0.16f);
  peilaten([](float s) { lohko(0.1f, 0.58f, 0.3f * s, 0, 0.07f, 0.06f, 0.05f, 0.05f); });
  vari(0.3f, 0.3f, 0.32f);
  putkiX(0.15f, 0.55f, 0, 0, 0.05f, 0.02f);
  hehkuen(0.3f, 0.9f, 0.3f, [] {
    rengas({0.55f, 0, 0}, 0.32f, 0.07f, false);
    peilaten([](float s) { putkiX(-0.7f, 0.0f, 0.22f * s, 0.12f, 0.07f, 0.07f); });
  });
  moottori(-0.97f, -0.8f, 0, 0, 0.15f);
  trimmi();
  peilaten([](float s) { lohko(-0.8f, -0.05f, 0.36f * s, 0, 0.02f, 0.12f, 0.02f, 0.1f); });
}

// Ram: a spiked steel prow on an armoured body.
void alus14() {
  runko();
  vari(0.6f, 0.35f, 0.2f);
  lohko(-0.85f, 0.35f, 0, 0, 0.4f, 0.2f, 0.35f, 0.18f);
  vari(0.35f, 0.35f, 0.38f);
  lohko(0.35f, 1.05f, 0, 0, 0.38f, 0.15f, 0.02f, 0.04f);
  peilaten([](float s) { putkiX(0.45f, 0.92f, 0.22f * s, 0, 0.06f, 0); });
  vari(0.3f, 0.2f, 0.15f);
  peilaten([](float s) { putkiX(-0.4f, 0.25f, 0.45f * s, 0, 0.08f, 0.07f); });
  moottori(-1.0f, -0.8f, 0, 0, 0.18f);
  trimmi();
  lohko(0.05f, 0.2f, 0, 0.19f, 0.37f, 0.02f, 0.36f, 0.02f);
  lohko(-0.6f, -0.45f, 0, 0.2f, 0.39f, 0.02f, 0.38f, 0.02f);
}

// Mine-layer ram: a hazard-striped hull, a forked ram plate and a mine rack.
void alus15() {
  runko();
  pinta(alus[15].texture, 0.85f, 0.75f, 0.2f);
  lohko(-0.75f, 0.4f, 0, 0, 0.3f, 0.16f, 0.25f, 0.14f);
  pintaPois();
  vari(0.12f, 0.12f, 0.12f);
  lohko(0.4f, 0.55f, 0, 0, 0.4f, 0.12f, 0.34f, 0.1f);
  peilaten([](float s) { lohko(0.5f, 1.0f, 0.25f * s, 0, 0.08f, 0.08f, 0.02f, 0.02f); });
  lohko(-0.92f, -0.55f, 0, 0.14f, 0.3f, 0.03f, 0.3f, 0.03f);
  vari(0.8f, 0.15f, 0.1f);
  for (float y : {-0.2f, 0.0f, 0.2f}) pallo({-0.75f, y, 0.24f}, 0.09f, 0.09f, 0.09f, 8);
  moottori(-0.95f, -0.75f, 0, 0, 0.12f);
  trimmi();
  peilaten([](float s) { lohko(-0.5f, 0.3f, 0.29f * s, 0.1f, 0.03f, 0.06f, 0.03f, 0.05f); });
}

// Rotor ship: a great envelope under a spinning rotor, guns swung forward.
void alus16() {
  runko();
  vari(0.6f, 0.5f, 0.35f);
  pallo({-0.05f, 0, 0}, 0.75f, 0.45f, 0.28f, 16);
  vari(0.35f, 0.3f, 0.25f);
  lohko(0.05f, 0.45f, 0, 0.27f, 0.1f, 0.05f, 0.07f, 0.04f);
  peilaten([](float s) {
    putkiX(0.0f, 0.55f, 0.5f * s, 0, 0.1f, 0.08f);
    putkiX(0.55f, 0.95f, 0.5f * s, 0, 0.035f, 0.035f);
  });
  vari(0.5f, 0.42f, 0.3f);
  peilaten([](float s) {
    levy({{-0.85f, 0.1f * s}, {-0.55f, 0.1f * s}, {-0.85f, 0.56f * s}, {-1.0f, 0.56f * s}}, 0, 0.05f);
  });
  liikkuva(Liike::potkuriZ, {-0.1f, 0, 0.34f});
  vari(0.2f, 0.2f, 0.22f);
  putki({0, 0, -0.06f}, {0, 0, 0.03f}, 0.06f, 0.05f);
  vari(0.75f, 0.72f, 0.65f);
  lavat(2, 0.85f, 0.12f, false);
  trimmi();
  peilaten([](float s) {
    levy({{-0.92f, 0.4f * s}, {-0.82f, 0.4f * s}, {-0.85f, 0.56f * s}, {-1.0f, 0.56f * s}}, 0.02f, 0.06f);
  });
  rengas({-0.05f, 0, 0}, 0.6f, 0.04f, true);
}

// Light skirmisher with forward-swept wings and twin tail booms.
void alus17() {
  runko();
  vari(0.7f, 0.85f, 0.55f);
  lohko(-0.7f, 0.85f, 0, 0, 0.15f, 0.13f, 0.04f, 0.05f);
  peilaten([](float s) {
    levy({{-0.4f, 0.1f * s}, {0.0f, 0.1f * s}, {0.3f, 0.85f * s}, {0.15f, 0.85f * s}}, 0, 0.05f);
    putkiX(-0.92f, -0.25f, 0.28f * s, 0, 0.05f, 0.05f);
  });
  levy({{-0.92f, -0.32f}, {-0.8f, -0.32f}, {-0.8f, 0.32f}, {-0.92f, 0.32f}}, 0, 0.03f);
  vari(0.3f, 0.3f, 0.3f);
  putkiX(0.6f, 0.97f, 0, -0.06f, 0.03f, 0.03f);
  ohjaamo({0.25f, 0, 0.09f}, 0.2f, 0.08f, 0.08f);
  moottori(-0.9f, -0.7f, 0, 0, 0.11f);
  trimmi();
  peilaten([](float s) {
    levy({{0.13f, 0.65f * s}, {0.24f, 0.65f * s}, {0.3f, 0.85f * s}, {0.15f, 0.85f * s}}, 0.02f, 0.04f);
  });
}

// Electric zapper: tesla coils and a shrouded pusher propeller.
void alus18() {
  const GLuint kela = alus[18].texture2;
  runko();
  vari(0.3f, 0.35f, 0.5f);
  pallo({0, 0, 0}, 0.5f, 0.34f, 0.22f);
  vari(0.25f, 0.25f, 0.3f);
  putkiX(0.3f, 0.82f, 0, 0.05f, 0.08f, 0.04f);
  lohko(-0.75f, -0.35f, 0, 0, 0.08f, 0.06f, 0.12f, 0.08f);
  pinta(kela, 0.4f, 0.5f, 0.7f);
  peilaten([](float s) { putki({0, 0.38f * s, 0}, {0, 0.38f * s, 0.26f}, 0.09f, 0.07f); });
  pintaPois();
  hehkuen(0.6f, 0.9f, 1.0f, [] {
    pallo({0.86f, 0, 0.05f}, 0.09f, 0.09f, 0.09f, 6);
    peilaten([](float s) { pallo({0, 0.38f * s, 0.3f}, 0.08f, 0.08f, 0.08f, 6); });
  });
  vari(0.35f, 0.35f, 0.4f);
  rengas({-0.72f, 0, 0}, 0.36f, 0.04f, true);
  peilaten([](float s) { lohko(-0.75f, -0.65f, 0.2f * s, 0, 0.02f, 0.02f, 0.02f, 0.02f); });
  suutin({-0.8f, 0, 0}, 0.07f);
  liikkuva(Liike::potkuriX, {-0.72f, 0, 0});
  vari(0.2f, 0.2f, 0.2f);
  pallo({0, 0, 0}, 0.07f, 0.06f, 0.06f, 6);
  vari(0.75f, 0.75f, 0.8f);
  lavat(3, 0.32f, 0.09f, true);
  trimmi();
  kupu({0, 0, 0.05f}, 0.3f, 0.22f, 0.19f);
}

// Twin gatlings that overheat: barrel clusters and radiator fins.
void alus19() {
  runko();
  vari(0.42f, 0.44f, 0.46f);
  lohko(-0.8f, 0.45f, 0, 0, 0.3f, 0.16f, 0.2f, 0.12f);
  peilaten([](float s) {
    levy({{-0.35f, 0.2f * s}, {0.2f, 0.2f * s}, {0.3f, 0.55f * s}, {-0.15f, 0.55f * s}}, 0, 0.07f);
    putkiX(-0.2f, 0.45f, 0.58f * s, 0, 0.11f, 0.1f);
  });
  vari(0.22f, 0.22f, 0.24f);
  peilaten([](float s) {
    for (int k = 0; k < 3; k++) {
      float a = k * 2 * pii / 3;
      putkiX(0.4f, 1.08f, 0.58f * s + 0.045f * std::cos(a), 0.045f * std::sin(a), 0.025f, 0.025f);
    }
    rengas({0.85f, 0.58f * s, 0}, 0.07f, 0.02f, true);
  });
  hehkuen(0.6f, 0.18f, 0.1f, [] {
    for (int i = 0; i < 4; i++) {
      float x = -0.7f + 0.13f * i;
      lohko(x, x + 0.05f, 0, 0.18f, 0.26f, 0.03f, 0.26f, 0.03f);
    }
  });
  moottori(-0.95f, -0.78f, 0, 0, 0.13f);
  trimmi();
  peilaten([](float s) { rengas({0.3f, 0.58f * s, 0}, 0.11f, 0.03f, true); });
}

// Cruiser: a long textured hull, a bridge tower and a spinal gun.
void alus20() {
  runko();
  pinta(alus[20].texture, 0.6f, 0.62f, 0.65f);
  lohko(-0.9f, 0.75f, 0, 0, 0.3f, 0.18f, 0.16f, 0.1f);
  lohko(0.75f, 1.0f, 0, 0, 0.16f, 0.1f, 0.03f, 0.04f);
  peilaten([](float s) { lohko(-0.7f, 0.1f, 0.4f * s, 0, 0.1f, 0.1f, 0.08f, 0.08f); });
  pintaPois();
  vari(0.45f, 0.47f, 0.5f);
  lohko(-0.55f, 0.0f, 0, 0.2f, 0.16f, 0.1f, 0.12f, 0.08f);
  lohko(-0.45f, -0.25f, 0, 0.32f, 0.07f, 0.06f, 0.05f, 0.05f);
  vari(0.25f, 0.25f, 0.28f);
  putkiX(0.15f, 1.05f, 0, 0.16f, 0.05f, 0.045f);
  moottori(-1.0f, -0.85f, 0, 0, 0.17f);
  trimmi();
  peilaten([](float s) { lohko(-0.6f, 0.0f, 0.4f * s, 0.09f, 0.07f, 0.02f, 0.06f, 0.02f); });
}

// Fan emitter: an arc of emitter nodes ahead of the hull, spanning 120 degrees.
void alus21() {
  runko();
  vari(0.6f, 0.8f, 0.85f);
  lohko(-0.85f, 0.25f, 0, 0, 0.25f, 0.15f, 0.2f, 0.12f);
  peilaten([](float s) {
    levy({{0.05f, 0.1f * s}, {0.2f, 0.1f * s}, {0.42f, 0.62f * s}, {0.3f, 0.62f * s}}, 0, 0.06f);
  });
  vari(0.35f, 0.45f, 0.5f);
  if (tallennetaan()) {
    glPushMatrix();
    glTranslatef(-0.1f, 0, 0);
    kaari(0.82f, 0.06f, -62, 62);
    glPopMatrix();
  }
  hehkuen(0.5f, 1.0f, 1.0f, [] {
    for (int k = -2; k <= 2; k++) {
      float a = k * 30 * pii / 180;
      pallo({-0.1f + 0.82f * std::cos(a), 0.82f * std::sin(a), 0}, 0.07f, 0.07f, 0.07f, 8);
    }
  });
  ohjaamo({-0.2f, 0, 0.12f}, 0.22f, 0.1f, 0.08f);
  moottori(-0.97f, -0.8f, 0, 0, 0.13f);
  trimmi();
  peilaten([](float s) {
    levy({{-0.8f, 0.2f * s}, {-0.45f, 0.2f * s}, {-0.6f, 0.45f * s}, {-0.85f, 0.45f * s}}, 0, 0.05f);
  });
}

// Spinner: a domed core inside a bladed ring that never stops turning.
void alus22() {
  runko();
  vari(0.6f, 0.55f, 0.65f);
  pallo({0, 0, 0}, 0.36f, 0.36f, 0.22f);
  vari(0.2f, 0.35f, 0.35f);
  kupu({0, 0, 0.12f}, 0.2f, 0.2f, 0.15f);
  vari(0.3f, 0.3f, 0.32f);
  putkiX(0.3f, 0.7f, 0, 0.1f, 0.05f, 0.04f);
  liikkuva(Liike::pyorija, {0, 0, 0});
  vari(0.45f, 0.42f, 0.5f);
  rengas({0, 0, 0}, 0.82f, 0.08f, false);
  if (tallennetaan()) {
    for (int k = 0; k < 6; k++) {
      glPushMatrix();
      glRotatef(60.f * k, 0, 0, 1);
      levy({{0.3f, -0.04f}, {0.8f, -0.12f}, {0.8f, 0.05f}, {0.3f, 0.04f}}, 0, 0.04f);
      glPopMatrix();
    }
  }
  trimmi();
  rengas({0, 0, 0}, 0.37f, 0.05f, false);
}

// Twin-engine gunship: two nacelles, a rapid nose cannon and two heavy torpedoes.
void alus23() {
  runko();
  vari(0.25f, 0.3f, 0.45f);
  lohko(-0.6f, 0.72f, 0, 0, 0.22f, 0.16f, 0.12f, 0.1f);
  peilaten([](float s) {
    levy({{-0.5f, 0.1f * s}, {0.0f, 0.1f * s}, {-0.1f, 0.42f * s}, {-0.5f, 0.42f * s}}, 0, 0.06f);
    putkiX(-0.82f, 0.1f, 0.42f * s, 0, 0.13f, 0.11f);
  });
  vari(0.25f, 0.25f, 0.27f);
  putkiX(0.5f, 1.05f, 0, 0.05f, 0.06f, 0.05f);
  vari(0.8f, 0.45f, 0.15f);
  peilaten([](float s) {
    putkiX(-0.35f, 0.35f, 0.62f * s, 0, 0.055f, 0.055f);
    pallo({0.35f, 0.62f * s, 0}, 0.08f, 0.055f, 0.055f, 8);
  });
  ohjaamo({0.3f, 0, 0.11f}, 0.22f, 0.09f, 0.08f);
  peilaten([](float s) {
    vari(0.22f, 0.22f, 0.25f);
    putkiX(-0.93f, -0.8f, 0.42f * s, 0, 0.12f, 0.135f);
    suutin({-0.93f, 0.42f * s, 0}, 0.11f);
  });
  trimmi();
  peilaten([](float s) { putkiX(0.0f, 0.14f, 0.42f * s, 0, 0.125f, 0.12f); });
}

void (*const alusMallit[alustyyppeja])() = {alus0,  alus1,  alus2,  alus3,  alus4,  alus5,  alus6,  alus7,
                                            alus8,  alus9,  alus10, alus11, alus12, alus13, alus14, alus15,
                                            alus16, alus17, alus18, alus19, alus20, alus21, alus22, alus23};

// ---------------------------------------------------------------------------
// The other models, y up: they are drawn turned 90 degrees about x, so that
// they stand up from the field toward the camera.

// Corner pylon of the field frame, glowing in the colour of the frame there.
// The one-off lists are called by other parts of the game in their own colour and
// lighting. Their parts set the material directly, with colour material off: a colour
// recorded in a list leaves Mesa's tracked material behind even after the list pops
// its attributes, and would tint whatever the caller draws next.
template <class F>
void omillaAineilla(F osat) {
  glPushAttrib(GL_CURRENT_BIT | GL_LIGHTING_BIT | GL_ENABLE_BIT);
  glDisable(GL_COLOR_MATERIAL);
  glDisable(GL_CULL_FACE);  // the solids are not all wound alike
  aineena = true;
  osat();
  aineena = false;
  glPopAttrib();
}

// Corner pylon of the field frame, glowing in the colour of the frame there.
void kulmapylvas(float r, float g, float b) {
  omillaAineilla([=] {
    vari(0.25f, 0.26f, 0.3f);
    putki({0, 0, 0}, {0, 0.15f, 0}, 0.6f, 0.55f);
    putki({0, 0.15f, 0}, {0, 1.45f, 0}, 0.22f, 0.12f);
    for (int k = 0; k < 3; k++) {
      glPushMatrix();
      glRotatef(120.f * k, 0, 1, 0);
      lohko(0.1f, 0.45f, 0.6f, 0, 0.45f, 0.03f, 0.05f, 0.03f);
      glPopMatrix();
    }
    hehkuen(r, g, b, [] {
      for (float y : {0.55f, 0.95f, 1.35f}) {
        glPushMatrix();
        glTranslatef(0, y, 0);
        glRotatef(90, 1, 0, 0);
        kaari(0.24f - y * 0.05f, 0.04f, 0, 360);
        glPopMatrix();
      }
      pallo({0, 1.65f, 0}, 0.24f, 0.24f, 0.24f);
    });
  });
}

// Flower: petals in the caller's colour (team or white), green stem and leaves.
void kukka() {
  for (int k = 0; k < 6; k++) {
    glPushMatrix();
    glTranslatef(0, 1.0f, 0);
    glRotatef(60.f * k, 0, 1, 0);
    glRotatef(15, 0, 0, 1);
    pallo({0.24f, 0, 0}, 0.22f, 0.04f, 0.11f, 8);
    glPopMatrix();
  }
  omillaAineilla([] {
    vari(1.0f, 0.85f, 0.2f);
    pallo({0, 1.02f, 0}, 0.11f, 0.07f, 0.11f, 8);
    vari(0.2f, 0.6f, 0.2f);
    putki({0, 0, 0}, {0, 0.98f, 0}, 0.04f, 0.03f);
    for (float s : {1.f, -1.f}) {
      glPushMatrix();
      glTranslatef(0, 0.35f + (s > 0 ? 0 : 0.2f), 0);
      glRotatef(s > 0 ? 0 : 180, 0, 1, 0);
      glRotatef(30, 0, 0, 1);
      pallo({0.16f, 0, 0}, 0.17f, 0.03f, 0.07f, 8);
      glPopMatrix();
    }
  });
}

// Mushroom: a spotted red cap on a pale stem.
void sieni() {
  omillaAineilla([] {
    vari(0.92f, 0.88f, 0.78f);
    putki({0, 0, 0}, {0, 0.52f, 0}, 0.13f, 0.1f);
    glPushMatrix();
    glTranslatef(0, 0.5f, 0);
    glRotatef(-90, 1, 0, 0);  // the dome helpers build up +z
    vari(0.85f, 0.8f, 0.7f);
    putki({0, 0, 0}, {0, 0, 0.02f}, 0.45f, 0.45f);
    vari(0.8f, 0.12f, 0.08f);
    kupu({0, 0, 0.02f}, 0.46f, 0.46f, 0.32f);
    vari(1, 1, 1);
    const float pilkut[7][2] = {{0.6f, 0.3f}, {0.6f, 1.5f}, {0.6f, 2.8f}, {0.6f, 4.2f},
                                {0.6f, 5.4f}, {1.2f, 1.0f}, {1.2f, 3.6f}};
    for (const auto& p : pilkut) {
      float a = p[0], b = p[1];
      V3 kohta = {0.46f * std::cos(a) * std::cos(b), 0.46f * std::cos(a) * std::sin(b),
                  0.02f + 0.32f * std::sin(a)};
      pallo(kohta, 0.07f, 0.07f, 0.05f, 6);
    }
    glPopMatrix();
  });
}

// Deterministic value noise for the asteroid's lumps.
float hajautus(int x, int y, int z) {
  std::uint32_t h = static_cast<std::uint32_t>(x) * 374761393u + static_cast<std::uint32_t>(y) * 668265263u +
                    static_cast<std::uint32_t>(z) * 2246822519u;
  h = (h ^ (h >> 13)) * 1274126177u;
  return static_cast<float>((h ^ (h >> 16)) & 0xffffff) / 16777215.f;
}

float arvokohina(V3 p) {
  int ix = static_cast<int>(std::floor(p.x)), iy = static_cast<int>(std::floor(p.y)),
      iz = static_cast<int>(std::floor(p.z));
  auto pehmea = [](float t) { return t * t * (3 - 2 * t); };
  float fx = pehmea(p.x - ix), fy = pehmea(p.y - iy), fz = pehmea(p.z - iz);
  float tulos = 0;
  for (int k = 0; k < 8; k++) {
    int dx = k & 1, dy = (k >> 1) & 1, dz = (k >> 2) & 1;
    float w = (dx ? fx : 1 - fx) * (dy ? fy : 1 - fy) * (dz ? fz : 1 - fz);
    tulos += w * hajautus(ix + dx, iy + dy, iz + dz);
  }
  return tulos;
}

// Unit-size lumpy rock: a twice subdivided icosahedron pushed in and out by noise.
void lohkare() {
  const float t = (1 + std::sqrt(5.f)) / 2;
  std::vector<V3> p = {{-1, t, 0},  {1, t, 0},  {-1, -t, 0}, {1, -t, 0}, {0, -1, t},  {0, 1, t},
                       {0, -1, -t}, {0, 1, -t}, {t, 0, -1},  {t, 0, 1},  {-t, 0, -1}, {-t, 0, 1}};
  std::vector<std::array<int, 3>> kolmiot = {{0, 11, 5}, {0, 5, 1},  {0, 1, 7},   {0, 7, 10}, {0, 10, 11},
                                             {1, 5, 9},  {5, 11, 4}, {11, 10, 2}, {10, 7, 6}, {7, 1, 8},
                                             {3, 9, 4},  {3, 4, 2},  {3, 2, 6},   {3, 6, 8},  {3, 8, 9},
                                             {4, 9, 5},  {2, 4, 11}, {6, 2, 10},  {8, 6, 7},  {9, 8, 1}};
  for (auto& q : p) q = yksikko(q);
  for (int kierros = 0; kierros < 2; kierros++) {
    std::map<std::pair<int, int>, int> puolivalit;
    auto puolivali = [&](int a, int b) {
      auto avain = std::minmax(a, b);
      auto loytyi = puolivalit.find(avain);
      if (loytyi != puolivalit.end()) return loytyi->second;
      p.push_back(yksikko((p[a] + p[b]) * 0.5f));
      return puolivalit[avain] = static_cast<int>(p.size()) - 1;
    };
    std::vector<std::array<int, 3>> uudet;
    for (const auto& k : kolmiot) {
      int ab = puolivali(k[0], k[1]), bc = puolivali(k[1], k[2]), ca = puolivali(k[2], k[0]);
      uudet.push_back({k[0], ab, ca});
      uudet.push_back({k[1], bc, ab});
      uudet.push_back({k[2], ca, bc});
      uudet.push_back({ab, bc, ca});
    }
    kolmiot = uudet;
  }
  std::vector<V3> suunta = p;
  for (auto& q : p) {
    float r = 0.8f + 0.45f * arvokohina(q * 1.6f + V3{3.1f, 7.3f, 1.7f}) +
              0.15f * arvokohina(q * 4.1f + V3{9, 2, 5});
    q = q * r;
  }
  std::vector<V3> n(p.size(), V3{0, 0, 0});
  for (auto& k : kolmiot) {
    if (piste(risti(p[k[1]] - p[k[0]], p[k[2]] - p[k[0]]), p[k[0]] + p[k[1]] + p[k[2]]) < 0)
      std::swap(k[1], k[2]);  // counter-clockwise seen from outside, for face culling
  }
  for (const auto& k : kolmiot) {
    V3 f = risti(p[k[1]] - p[k[0]], p[k[2]] - p[k[0]]);
    for (int i : k) n[i] = n[i] + f;
  }
  glBegin(GL_TRIANGLES);
  for (const auto& k : kolmiot) {
    float u[3], v[3];
    for (int i = 0; i < 3; i++) {
      const V3& d = suunta[k[i]];
      u[i] = 0.5f + std::atan2(d.y, d.x) / (2 * pii);
      v[i] = 0.5f + std::asin(std::max(-1.f, std::min(1.f, d.z))) / pii;
    }
    float umax = std::max({u[0], u[1], u[2]});
    for (int i = 0; i < 3; i++) {
      if (umax - u[i] > 0.5f) u[i] += 1;  // a triangle across the seam keeps its texels together
      normaali(yksikko(n[k[i]]));
      glTexCoord2f(u[i] * 2, v[i]);
      kulmapiste(p[k[i]]);
    }
  }
  glEnd();
}

// ---------------------------------------------------------------------------
// List bookkeeping.

const int laivaListoja = 3 * alustyyppeja;
const int muitaListoja = 7;  // corners (3), flower, mushroom, asteroid, shield

// Deletes the block of the previous call. When the window is re-created the old
// context takes its lists with it, and the same names may already have been given
// to lists made since; the block is ours only if every one of its names is a list.
void poistaVanhatListat() {
  bool omat = listaPohja != 0;
  for (GLsizei i = 0; omat && i < listaMaara; i++) omat = glIsList(listaPohja + i);
  if (omat) glDeleteLists(listaPohja, listaMaara);
  listaPohja = 0;
}

void tallennaAlus(int n, GLuint nimi, Osa osa) {
  tallennettava = osa;
  nykyinen = &mallit[n];
  glNewList(nimi, GL_COMPILE);
  alusMallit[n]();
  glEndList();
  kuvattava = Osa::runko;
}

// Records a one-off model into the next free name of the block.
template <class F>
GLuint tallenna(GLuint& seuraava, F piirto) {
  GLuint nimi = seuraava++;
  glNewList(nimi, GL_COMPILE);
  piirto();
  glEndList();
  return nimi;
}

}  // namespace

void rakennaMallit() {
  poistaVanhatListat();
  listaMaara = laivaListoja + muitaListoja;
  listaPohja = glGenLists(listaMaara);
  if (listaPohja == 0) return;
  kvadri = gluNewQuadric();
  gluQuadricNormals(kvadri, GLU_SMOOTH);
  gluQuadricTexture(kvadri, GL_TRUE);

  GLuint seuraava = listaPohja;
  for (int n = 0; n < alustyyppeja; n++) {
    mallit[n] = Malli{};
    mallit[n].runko = seuraava++;
    mallit[n].trimmi = seuraava++;
    mallit[n].liikkuva = seuraava++;
    tallennaAlus(n, mallit[n].runko, Osa::runko);
    tallennaAlus(n, mallit[n].trimmi, Osa::trimmi);
    tallennaAlus(n, mallit[n].liikkuva, Osa::liikkuva);
    list_alus[n] = mallit[n].runko;
  }
  tallennettava = kuvattava = Osa::runko;  // one-off models emit everything
  list_int[19] = tallenna(seuraava, [] { kulmapylvas(1.0f, 0.2f, 0.2f); });
  list_int[20] = tallenna(seuraava, [] { kulmapylvas(0.25f, 0.35f, 1.0f); });
  list_int[21] = tallenna(seuraava, [] { kulmapylvas(0.2f, 1.0f, 0.3f); });
  list_int[22] = tallenna(seuraava, kukka);
  list_int[23] = tallenna(seuraava, sieni);
  list_asteroid = tallenna(seuraava, lohkare);
  kupla = tallenna(seuraava, [] { pallo({0, 0, 0}, 1, 1, 1, 16); });

  gluDeleteQuadric(kvadri);
  kvadri = nullptr;
  nykyinen = nullptr;
}

// ---------------------------------------------------------------------------
// Drawing.

namespace {

float kello() { return SDL_GetTicks() * 0.001f; }  // seconds, for flicker and shimmer

int paikkaTaulukossa(const Player* p) {
  for (int i = 0; i < maxPlayers; i++)
    if (&player[i] == p) return i;
  return -1;
}

void liikkuvaOsa(const Malli& m, float kulma, float asekulma, float propelli) {
  if (m.liike == Liike::ei) return;
  glPushMatrix();
  glTranslatef(m.nivel.x, m.nivel.y, m.nivel.z);
  if (m.liike == Liike::torni) glRotatef(asekulma - kulma, 0, 0, 1);
  if (m.liike == Liike::potkuriX) glRotatef(propelli, 1, 0, 0);
  if (m.liike == Liike::potkuriZ) glRotatef(propelli, 0, 0, 1);
  if (m.liike == Liike::pyorija) glRotatef(std::fmod(kello() * 240, 360.f), 0, 0, 1);
  glCallList(m.liikkuva);
  glPopMatrix();
}

// The state of a lit, solid ship; lopetaPiirto gives the caller's state back.
void aloitaPiirto() {
  glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT | GL_LIGHTING_BIT | GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT |
               GL_TEXTURE_BIT | GL_POLYGON_BIT | GL_TRANSFORM_BIT);
  glMatrixMode(GL_MODELVIEW);
  glPushMatrix();
  glEnable(GL_LIGHTING);
  glEnable(GL_LIGHT0);
  glEnable(GL_DEPTH_TEST);
  glEnable(GL_NORMALIZE);  // the models are drawn scaled
  glDepthMask(GL_TRUE);
  glDisable(GL_CULL_FACE);
  glDisable(GL_BLEND);
  glDisable(GL_TEXTURE_2D);
  glEnable(GL_COLOR_MATERIAL);
  glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
  const GLfloat kiilto[4] = {0.15f, 0.15f, 0.15f, 1};
  const GLfloat musta[4] = {0, 0, 0, 1};
  glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, kiilto);
  glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, musta);
  glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 40);
  glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
  glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
}

void lopetaPiirto() {
  glMatrixMode(GL_MODELVIEW);
  glPopMatrix();
  glPopAttrib();
}

// Additive glow on top of what is drawn, not hiding anything behind it.
void lisaavaHehku(bool valaistu) {
  glDisable(GL_TEXTURE_2D);
  if (valaistu)
    glEnable(GL_LIGHTING);
  else
    glDisable(GL_LIGHTING);
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE);
  glDepthMask(GL_FALSE);
}

// The team colour of valitseVari with the given opacity.
void tiiminVari(int tiimi, float alpha) {
  valitseVari(tiimi);
  GLfloat c[4];
  glGetFloatv(GL_CURRENT_COLOR, c);
  glColor4f(c[0], c[1], c[2], alpha);
}

// A ring of team-coloured light under the ship, so that teams read at a glance.
void tiimiHehku(const Player& p, float nakyvyys) {
  if (tiimitexture == 0) return;
  lisaavaHehku(false);
  glEnable(GL_TEXTURE_2D);
  glBindTexture(GL_TEXTURE_2D, tiimitexture);
  tiiminVari(p.tiimi, 0.8f * nakyvyys);
  const float r = static_cast<float>(p.alus.sade) * 1.7f, z = static_cast<float>(p.alus.sade) * -0.3f;
  kuvaNelio(-r, -r, r, r, z);
}

bool tyontaa(const Player& p) {
  return saannot::napit(p).kaasu || (p.alus.numero == 15 && p.suojapaalla) || p.alus.numero == 18;
}

// A cone of light from the nozzle backwards along -x, fading to nothing at its tip.
void liekki(float pituus, float sade, const GLfloat tyvi[4], const GLfloat karki[4]) {
  const int osia = 10;
  glBegin(GL_TRIANGLE_FAN);
  glColor4fv(karki);
  glVertex3f(-pituus, 0, 0);
  glColor4fv(tyvi);
  for (int k = 0; k <= osia; k++) {
    float a = k * 2 * pii / osia;
    glVertex3f(0, std::cos(a) * sade, std::sin(a) * sade);
  }
  glEnd();
}

void moottorinLiekit(const Player& p, float nakyvyys) {
  const Malli& m = mallit[p.alus.numero];
  if (m.suuttimia == 0) return;
  const float rad = p.kulma * pii / 180;
  const float eteen = std::cos(rad) * p.xvauhti + std::sin(rad) * p.yvauhti;
  const float tehostus = (p.alus.numero == 15 && p.suojapaalla) ? 1.6f : 1.0f;
  const float t = kello() + paikkaTaulukossa(&p) * 1.3f;
  const float sade = static_cast<float>(p.alus.sade);
  lisaavaHehku(false);
  glPushMatrix();
  glRotatef(p.kulma, 0, 0, 1);
  glScalef(sade, sade, sade);
  for (int i = 0; i < m.suuttimia; i++) {
    const Suutin& s = m.suutin[i];
    float lepatus = 0.85f + 0.15f * std::sin(t * 37 + i * 2.1f) * std::sin(t * 23 + i);
    float pituus = (0.35f + 0.45f * std::min(1.f, std::fabs(eteen) * 2)) * tehostus * lepatus;
    const GLfloat ulkoTyvi[4] = {1, 0.45f, 0.1f, 0.85f * nakyvyys}, ulkoKarki[4] = {1, 0.1f, 0, 0};
    const GLfloat sisaTyvi[4] = {1, 0.95f, 0.7f, nakyvyys}, sisaKarki[4] = {1, 0.5f, 0.1f, 0};
    glPushMatrix();
    glTranslatef(s.paikka.x, s.paikka.y, s.paikka.z);
    liekki(pituus, s.sade, ulkoTyvi, ulkoKarki);
    liekki(pituus * 0.55f, s.sade * 0.55f, sisaTyvi, sisaKarki);
    glPopMatrix();
  }
  glPopMatrix();
}

// A lit translucent shell with a shimmering rim.
void suojakupla(const Player& p, float nakyvyys) {
  const float t = kello() + paikkaTaulukossa(&p) * 0.7f;
  const float r = static_cast<float>(p.alus.sade) * 1.3f;
  lisaavaHehku(true);
  glColor4f(0.25f, 0.5f, 1.0f, (0.2f + 0.06f * std::sin(t * 9)) * nakyvyys);
  glPushMatrix();
  glRotatef(std::fmod(t * 40, 360.f), 0.3f, 0.5f, 1);
  glScalef(r, r, r);
  glCallList(kupla);
  glPopMatrix();
  glDisable(GL_LIGHTING);
  const int osia = 32;
  glBegin(GL_TRIANGLE_STRIP);
  for (int k = 0; k <= osia; k++) {
    float a = k * 2 * pii / osia;
    float valo = 0.6f + 0.4f * std::sin(a * 5 + t * 6);
    glColor4f(0.3f, 0.6f, 1, 0);
    glVertex3f(std::cos(a) * r * 0.8f, std::sin(a) * r * 0.8f, 0);
    glColor4f(0.5f, 0.8f, 1, 0.7f * valo * nakyvyys);
    glVertex3f(std::cos(a) * r, std::sin(a) * r, 0);
  }
  glEnd();
}

// In capture the flower the carried flower rides above its carrier.
void kannettuKukka(const Player& p) {
  if (gamemode != 3 || cpiste == nullptr) return;
  const int paikka = paikkaTaulukossa(&p);
  for (int i = 0; i < cpisteita; i++) {
    if (paikka < 0 || cpiste[i].player != paikka) continue;
    glPushMatrix();
    glTranslatef(0, 0, static_cast<float>(p.alus.sade) * 0.8f);
    glRotatef(90, 1, 0, 0);
    glScalef(3, 3, 3);
    valitseVari(cpiste[i].numero);
    glCallList(list_int[22]);
    glPopMatrix();
  }
}

// Menus have no scene light of their own: a fixed light from above and in front.
void valikonValo() {
  glPushMatrix();
  glLoadIdentity();
  const GLfloat suunta[4] = {0.3f, 0.6f, 1.0f, 0};
  const GLfloat valo[4] = {0.85f, 0.85f, 0.85f, 1};
  const GLfloat musta[4] = {0, 0, 0, 1};
  glLightfv(GL_LIGHT0, GL_POSITION, suunta);
  glLightfv(GL_LIGHT0, GL_DIFFUSE, valo);
  glLightfv(GL_LIGHT0, GL_SPECULAR, valo);
  glLightfv(GL_LIGHT0, GL_AMBIENT, musta);
  glPopMatrix();
}

// Ships in play are a few dozen pixels on a dark field: a brighter ambient and
// light than the scene's, and a faint glow of their own, keep every hull standing
// out against space, nebulae and the planet alike.
void kirkasHylky() {
  const GLfloat ymparisto[4] = {0.7f, 0.7f, 0.7f, 1};
  const GLfloat valo[4] = {1.5f, 1.5f, 1.5f, 1};  // above 1 brightens the hull's colours, keeping their hue
  const GLfloat hehku[4] = {0.06f, 0.06f, 0.07f, 1};
  glLightModelfv(GL_LIGHT_MODEL_AMBIENT, ymparisto);
  glLightfv(GL_LIGHT0, GL_DIFFUSE, valo);
  glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, hehku);
}

bool onMalli(int n) { return n >= 0 && n < alustyyppeja && mallit[n].runko != 0; }

}  // namespace

void Alus::piirra(float kulma, float asekulma, int tiimi, float propelli) const {
  if (!onMalli(numero)) return;
  const Malli& m = mallit[numero];
  glPushAttrib(GL_CURRENT_BIT | GL_ENABLE_BIT | GL_TEXTURE_BIT | GL_LIGHTING_BIT);
  glPushMatrix();
  glRotatef(kulma, 0, 0, 1);
  const float s = static_cast<float>(sade);
  glScalef(s, s, s);
  glEnable(GL_NORMALIZE);
  glDisable(GL_TEXTURE_2D);
  glCallList(m.runko);
  liikkuvaOsa(m, kulma, asekulma, propelli);
  glDisable(GL_TEXTURE_2D);
  valitseVari(tiimi);
  glCallList(m.trimmi);
  glPopMatrix();
  glPopAttrib();
}

void Player::piirra() {
  if (!onMalli(alus.numero)) return;
  const float nakyvyys = std::max(0.f, std::min(1.f, alpha));
  if (nakyvyys <= 0) return;
  aloitaPiirto();
  kirkasHylky();
  glTranslatef(x, y, -35);
  tiimiHehku(*this, nakyvyys);
  glDisable(GL_TEXTURE_2D);  // the hull lists bind their own skins where they have one
  glDisable(GL_BLEND);
  glDepthMask(GL_TRUE);
  glEnable(GL_LIGHTING);
  kannettuKukka(*this);
  if (nakyvyys < 1) {
    // The hull lists carry their own colours, so the fade goes through the blend.
    glEnable(GL_BLEND);
    glBlendColor(0, 0, 0, nakyvyys);
    glBlendFunc(GL_CONSTANT_ALPHA, GL_ONE_MINUS_CONSTANT_ALPHA);
  }
  alus.piirra(kulma, asekulma, tiimi, propelli);
  if (tyontaa(*this)) moottorinLiekit(*this, nakyvyys);
  if (suojapaalla) suojakupla(*this, nakyvyys);
  lopetaPiirto();
}

void Player::piirra(int px, int py, int pz, int angle, int weaponAngle) {
  if (!onMalli(alus.numero)) return;
  aloitaPiirto();
  valikonValo();
  glTranslatef(static_cast<float>(px), static_cast<float>(py), static_cast<float>(pz));
  alus.piirra(static_cast<float>(angle), static_cast<float>(weaponAngle), tiimi, propelli);
  lopetaPiirto();
}
