// Building simulation scenes in tests, benchmarks and tools: a known world, catalogue
// ships in chosen slots, and shots placed by hand. Header-only; every function resets
// what it touches.
#pragma once

#include <cmath>
#include <cstdlib>

#include "Alus.h"
#include "Alustuksia.h"
#include "Main.h"
#include "Player.h"
#include "Sets.h"
#include "net.h"
#include "scene.h"

namespace simscene {

// Fills the catalogue once, without sounds (dedicated mode), and gives every slot its
// arrays as start-up does.
inline void kataloogi() {
  static bool valmis = false;
  if (valmis) return;
  const bool oli = dserver;
  dserver = true;
  alota();
  dserver = oli;
  for (Player& p : player) p.asetaAlus(alus[1]);
  valmis = true;
}

// A local match of `pelaajia` players under way (the credit start behind it), in the
// mode the caller left set, at detail `tarkkuus`, effects off, nothing left of an
// earlier match and rand seeded with `siemen`. The ships are the caller's (see laita).
inline void maailma(int pelaajia, int tarkkuus = 0, unsigned siemen = 1) {
  kataloogi();
  srand(siemen);
  joinpeli = hostpeli = false;
  efektitpaalla = false;
  sets.detail = tarkkuus;
  players = pelaajia;
  nollaaOttelu(gamemode, false, false, 0);
  ekapisteframe = false;
}

// Gives slot i a fresh copy of catalogue ship n at (x, y) heading `kulma` degrees:
// at rest, full energy and fuel, buttons up, no cool-downs, alive, on team i.
inline Player& laita(int i, int n, float x, float y, float kulma = 0) {
  Player& p = player[i];
  p.asetaAlus(alus[n]);
  p.x = x;
  p.y = y;
  p.kulma = p.asekulma = kulma;
  p.xvauhti = p.yvauhti = 0;
  p.pylos = p.palas = p.pleft = p.pright = p.pfire = p.pease = false;
  p.kaasu = p.joinease = p.joinase = p.joinleft = p.joinright = false;
  p.ampumisviive = 0;
  p.easeviive = p.easekesto = 0;
  p.kuolema = 0;
  p.tiimi = i;
  p.pisteet = 0;
  p.numero = i;
  p.kaasujalkiaika = 0;
  return p;
}

// A battle about to begin: sixteen ships on a ring around the planet in four teams,
// all flown by computer pilots; slot i flies ship (i * 7 + ensimmainen) mod 24. The
// asteroids are placed afresh and no little men are about.
inline void rengas(int ensimmainen) {
  for (int i = 0; i < maxPlayers; ++i) {
    const float a = i * 0.3927f;
    laita(i, (i * 7 + ensimmainen) % alustyyppeja, std::cos(a) * 100, std::sin(a) * 80, i * 22.5f);
    player[i].tiimi = i % 4;
    player[i].ihmispelaaja = false;
  }
  alustaAsteroidit();
  for (Pati& m : pikkumies) m.aika = 0;
}

// Makes slot k of player i's primary shots live at (x, y) with the given velocity,
// the ship's shot energy and a long life.
inline Pati& ammus(int i, int k, float x, float y, float xv = 0, float yv = 0) {
  Pati& s = player[i].pati[k];
  s = Pati{};
  s.x = x;
  s.y = y;
  s.xv = xv;
  s.yv = yv;
  s.energia = (float)player[i].alus.patienergia;
  s.aika = 1000;
  return s;
}

}  // namespace simscene
