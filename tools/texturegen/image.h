// A floating-point RGB image, the canvas every generated texture is painted on.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

struct Rgb {
  float r = 0, g = 0, b = 0;
};

inline Rgb operator+(Rgb a, Rgb b) { return {a.r + b.r, a.g + b.g, a.b + b.b}; }
inline Rgb operator-(Rgb a, Rgb b) { return {a.r - b.r, a.g - b.g, a.b - b.b}; }
inline Rgb operator*(Rgb a, float k) { return {a.r * k, a.g * k, a.b * k}; }
inline Rgb operator*(Rgb a, Rgb b) { return {a.r * b.r, a.g * b.g, a.b * b.b}; }
inline Rgb& operator+=(Rgb& a, Rgb b) { return a = a + b; }
inline Rgb mix(Rgb a, Rgb b, float t) { return a + (b - a) * t; }

class Image {
 public:
  Image(int width, int height);

  int width() const { return w; }
  int height() const { return h; }
  Rgb& at(int x, int y) { return px[static_cast<size_t>(y) * w + x]; }
  const Rgb& at(int x, int y) const { return px[static_cast<size_t>(y) * w + x]; }
  bool inside(int x, int y) const { return x >= 0 && y >= 0 && x < w && y < h; }
  // Bilinear sample at pixel-centre coordinates, clamped to the border.
  Rgb sample(float x, float y) const;

  // Calls f(x, y) for every pixel and stores what it returns. Rows are shared out among
  // the processor's cores, so f must only read shared state.
  template <class F>
  void fill(F f) {
    forEachRow([&](int y) {
      for (int x = 0; x < w; ++x) at(x, y) = f(x, y);
    });
  }
  template <class F>
  void apply(F f) {
    forEachRow([&](int y) {
      for (int x = 0; x < w; ++x) at(x, y) = f(at(x, y), x, y);
    });
  }

  // Box-filtered reduction by a whole factor (supersampled drawing, the _256 variants).
  Image shrunk(int factor) const;
  // Bilinear resampling to any size (the title's vertical stretch).
  Image resized(int width, int height) const;
  // 8-bit RGB rows, top row first, channels clamped to [0, 1].
  std::vector<unsigned char> bytes() const;

 private:
  void forEachRow(const std::function<void(int)>& row) const;

  int w, h;
  std::vector<Rgb> px;
};
