// Seeded gradient noise and the fractal sums built on it, plus a small repeatable
// random source: every texture comes out the same on every build.
#pragma once

#include <array>
#include <cstdint>

class Random {
 public:
  explicit Random(uint32_t seed) : state(seed * 2654435761u + 0x9e3779b9u) {}
  uint32_t next();
  float uniform() { return (next() >> 8) * (1.0f / 16777216.0f); }  // [0, 1)
  float range(float lo, float hi) { return lo + (hi - lo) * uniform(); }

 private:
  uint64_t state;
};

// Perlin gradient noise in three dimensions, values roughly in [-1, 1]. A period
// in x or y (in lattice cells, 0 = none) makes the noise tile in that direction.
class Noise {
 public:
  explicit Noise(uint32_t seed);
  float at(float x, float y, float z, int periodX = 0, int periodY = 0) const;

  // Fractal Brownian motion: octaves of doubling frequency and halving amplitude,
  // normalised to about [-1, 1]. Periods double with each octave so tiling holds.
  float fbm(float x, float y, float z, int octaves, int periodX = 0, int periodY = 0) const;
  // Sum of folded octaves (1 - |n|)^2: sharp ridges for veins, cracks and dust lanes.
  float ridged(float x, float y, float z, int octaves) const;

 private:
  std::array<uint8_t, 512> perm;
};

inline float smoothstep(float edge0, float edge1, float x) {
  float t = (x - edge0) / (edge1 - edge0);
  t = t < 0 ? 0 : (t > 1 ? 1 : t);
  return t * t * (3 - 2 * t);
}
