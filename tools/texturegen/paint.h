// Drawing helpers shared by the assets: centred procedural rendering, glows, star fields.
#pragma once

#include <cmath>

#include "image.h"
#include "noise.h"

constexpr float kPi = 3.14159265f;

// Renders f(u, v) over a square image with u and v in [-1, 1] (v grows downwards),
// averaging samples x samples points per pixel so that sharp shapes come out smooth.
template <class F>
Image renderCentred(int size, int samples, F f) {
  Image img(size, size);
  const float step = 2.0f / (size * samples);
  const float norm = 1.0f / (samples * samples);
  img.fill([&](int x, int y) {
    Rgb sum;
    for (int j = 0; j < samples; ++j)
      for (int i = 0; i < samples; ++i)
        sum += f(-1 + (x * samples + i + 0.5f) * step, -1 + (y * samples + j + 0.5f) * step);
    return sum * norm;
  });
  return img;
}

inline float radius(float u, float v) { return std::sqrt(u * u + v * v); }

// Bell-shaped glow: 1 at the centre, about 0.37 at distance `radius`.
inline float glow(float distance, float radius) {
  const float t = distance / radius;
  return std::exp(-t * t);
}

// Brightness that reaches exactly zero at distance 1, so no quad border ever shows.
inline float edgeFade(float distance, float start = 0.75f) { return 1 - smoothstep(start, 1.0f, distance); }

// Scatters stars: tiny soft dots, colours from blue-white to orange, a few bright ones
// with a faint cross of diffraction spikes. `density` is stars per 10 000 pixels.
void addStars(Image& img, uint32_t seed, float density, float brightness);

// Gaussian blur with standard deviation sigma (pixels), edges clamped: soft glows around shapes.
Image blurred(const Image& img, float sigma);

// Deep-space clouds: two layers of domain-warped fBm in the two colours, darkened by dust
// lanes, added onto `img`. Coordinates are scaled by `scale` pixels per noise unit.
void addNebula(Image& img, uint32_t seed, Rgb first, Rgb second, Rgb dust, float scale);
