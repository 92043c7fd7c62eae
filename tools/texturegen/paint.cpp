#include "paint.h"

#include <algorithm>
#include <vector>

namespace {

// Temperature-like star tint, t in [0, 1] from hot blue to cool orange.
Rgb starColour(float t) {
  const Rgb blue{0.70f, 0.80f, 1.00f}, white{1.00f, 0.98f, 0.95f}, orange{1.00f, 0.78f, 0.55f};
  return t < 0.5f ? mix(blue, white, t * 2) : mix(white, orange, t * 2 - 1);
}

void addDot(Image& img, float cx, float cy, float radius, Rgb colour, float spikes) {
  const int reach = static_cast<int>(std::ceil(radius * (spikes > 0 ? 8 : 3)));
  const int x0 = std::max(0, static_cast<int>(cx) - reach),
            x1 = std::min(img.width() - 1, static_cast<int>(cx) + reach);
  const int y0 = std::max(0, static_cast<int>(cy) - reach),
            y1 = std::min(img.height() - 1, static_cast<int>(cy) + reach);
  for (int y = y0; y <= y1; ++y)
    for (int x = x0; x <= x1; ++x) {
      const float dx = x + 0.5f - cx, dy = y + 0.5f - cy;
      float v = glow(std::sqrt(dx * dx + dy * dy), radius);
      if (spikes > 0)  // thin horizontal and vertical streaks fading with distance
        v += spikes * (glow(dy, 0.6f) * glow(dx, radius * 6) + glow(dx, 0.6f) * glow(dy, radius * 6));
      img.at(x, y) += colour * v;
    }
}

}  // namespace

void addStars(Image& img, uint32_t seed, float density, float brightness) {
  Random rng(seed);
  const int count = static_cast<int>(img.width() * img.height() * density / 10000);
  for (int i = 0; i < count; ++i) {
    const float x = rng.range(0, img.width()), y = rng.range(0, img.height());
    // Most stars are faint; a power law gives the few bright ones.
    const float power = std::pow(rng.uniform(), 6.0f);
    const float radius = 0.45f + 1.1f * power;
    const Rgb colour = starColour(rng.uniform()) * (brightness * (0.25f + 1.6f * power));
    addDot(img, x, y, radius, colour, power > 0.7f ? 0.3f : 0.0f);
  }
}

namespace {

std::vector<float> gaussianKernel(float sigma) {
  const int reach = static_cast<int>(std::ceil(sigma * 3));
  std::vector<float> k(2 * reach + 1);
  float sum = 0;
  for (int i = -reach; i <= reach; ++i) sum += k[i + reach] = std::exp(-0.5f * i * i / (sigma * sigma));
  for (float& v : k) v /= sum;
  return k;
}

}  // namespace

Image blurred(const Image& img, float sigma) {
  const std::vector<float> k = gaussianKernel(sigma);
  const int reach = static_cast<int>(k.size() / 2);
  const int w = img.width(), h = img.height();
  Image across(w, h), out(w, h);
  across.fill([&](int x, int y) {
    Rgb sum;
    for (int i = -reach; i <= reach; ++i) sum += img.at(std::clamp(x + i, 0, w - 1), y) * k[i + reach];
    return sum;
  });
  out.fill([&](int x, int y) {
    Rgb sum;
    for (int i = -reach; i <= reach; ++i) sum += across.at(x, std::clamp(y + i, 0, h - 1)) * k[i + reach];
    return sum;
  });
  return out;
}

void addNebula(Image& img, uint32_t seed, Rgb first, Rgb second, Rgb dust, float scale) {
  const Noise warpNoise(seed), cloudNoise(seed + 1), dustNoise(seed + 2);
  img.apply([&](Rgb c, int px, int py) {
    const float x = px / scale, y = py / scale;
    // Broad envelopes decide where each gas glows; finer warped detail fills them in.
    const float envelopeA = smoothstep(-0.35f, 0.75f, cloudNoise.fbm(x * 0.45f, y * 0.45f, 7.5f, 3));
    const float envelopeB = smoothstep(-0.2f, 0.8f, cloudNoise.fbm(x * 0.4f + 13, y * 0.4f, 9.5f, 3));
    // Domain warp: offsetting the lookup by another noise bends the clouds into wisps.
    const float wx = x + 0.45f * warpNoise.fbm(x * 0.8f, y * 0.8f, 0.3f, 4);
    const float wy = y + 0.45f * warpNoise.fbm(x * 0.8f + 5.2f, y * 0.8f + 1.3f, 0.8f, 4);
    const float a = 0.5f + 0.5f * cloudNoise.fbm(wx * 1.2f, wy * 1.2f, 0.5f, 6);
    const float b = 0.5f + 0.5f * cloudNoise.fbm(wx * 1.6f + 11, wy * 1.6f, 2.5f, 6);
    const float dark = 1 - 0.6f * smoothstep(0.05f, 0.6f, dustNoise.fbm(wx * 0.9f, wy * 0.9f, 0.5f, 5));
    const float gasA = envelopeA * (0.15f + 0.85f * a * a), gasB = envelopeB * (0.1f + 0.9f * b * b * b);
    const float hot = std::pow(std::max(a, b), 6.0f) * std::max(envelopeA, envelopeB);  // bright knots
    return c + (first * (1.4f * gasA) + second * (1.5f * gasB) + dust * (0.8f * gasA * gasB) +
                Rgb{1, 1, 1} * (0.5f * hot)) *
                   dark;
  });
}
