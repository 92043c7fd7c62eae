#include "noise.h"

#include <cmath>
#include <numeric>

uint32_t Random::next() {
  // SplitMix64: small, fast and well mixed.
  uint64_t z = (state += 0x9e3779b97f4a7c15ull);
  z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ull;
  z = (z ^ (z >> 27)) * 0x94d049bb133111ebull;
  return static_cast<uint32_t>((z ^ (z >> 31)) >> 32);
}

Noise::Noise(uint32_t seed) {
  std::array<uint8_t, 256> p;
  std::iota(p.begin(), p.end(), 0);
  Random rng(seed);
  for (int i = 255; i > 0; --i) std::swap(p[i], p[rng.next() % (i + 1)]);
  for (int i = 0; i < 512; ++i) perm[i] = p[i & 255];
}

namespace {

float fade(float t) { return t * t * t * (t * (t * 6 - 15) + 10); }
float lerp(float a, float b, float t) { return a + (b - a) * t; }

float grad(int hash, float x, float y, float z) {
  const int h = hash & 15;
  const float u = h < 8 ? x : y;
  const float v = h < 4 ? y : (h == 12 || h == 14 ? x : z);
  return ((h & 1) ? -u : u) + ((h & 2) ? -v : v);
}

int wrap(int i, int period) {
  if (period <= 0) return i & 255;
  const int m = i % period;
  return (m < 0 ? m + period : m) & 255;
}

}  // namespace

float Noise::at(float x, float y, float z, int periodX, int periodY) const {
  const float fx = std::floor(x), fy = std::floor(y), fz = std::floor(z);
  const int ix = static_cast<int>(fx), iy = static_cast<int>(fy), iz = static_cast<int>(fz);
  x -= fx;
  y -= fy;
  z -= fz;
  const int x0 = wrap(ix, periodX), x1 = wrap(ix + 1, periodX);
  const int y0 = wrap(iy, periodY), y1 = wrap(iy + 1, periodY);
  const int z0 = iz & 255, z1 = (iz + 1) & 255;
  auto corner = [&](int cx, int cy, int cz, float dx, float dy, float dz) {
    return grad(perm[perm[perm[cx] + cy] + cz], dx, dy, dz);
  };
  const float u = fade(x), v = fade(y), w = fade(z);
  const float a = lerp(lerp(corner(x0, y0, z0, x, y, z), corner(x1, y0, z0, x - 1, y, z), u),
                       lerp(corner(x0, y1, z0, x, y - 1, z), corner(x1, y1, z0, x - 1, y - 1, z), u), v);
  const float b =
      lerp(lerp(corner(x0, y0, z1, x, y, z - 1), corner(x1, y0, z1, x - 1, y, z - 1), u),
           lerp(corner(x0, y1, z1, x, y - 1, z - 1), corner(x1, y1, z1, x - 1, y - 1, z - 1), u), v);
  return lerp(a, b, w);
}

float Noise::fbm(float x, float y, float z, int octaves, int periodX, int periodY) const {
  float sum = 0, amplitude = 1, norm = 0;
  for (int o = 0; o < octaves; ++o) {
    sum += amplitude * at(x, y, z, periodX, periodY);
    norm += amplitude;
    amplitude *= 0.5f;
    x *= 2;
    y *= 2;
    z *= 2;
    periodX *= 2;
    periodY *= 2;
  }
  return sum / norm * 1.6f;  // Perlin octaves rarely reach +-1; stretch back to about that range
}

float Noise::ridged(float x, float y, float z, int octaves) const {
  float sum = 0, amplitude = 1, norm = 0;
  for (int o = 0; o < octaves; ++o) {
    const float r = 1 - std::fabs(at(x, y, z));
    sum += amplitude * r * r;
    norm += amplitude;
    amplitude *= 0.5f;
    x *= 2.03f;
    y *= 2.03f;
    z *= 2.03f;
  }
  return sum / norm;
}
