#include "image.h"

#include <algorithm>
#include <cmath>
#include <thread>

Image::Image(int width, int height) : w(width), h(height), px(static_cast<size_t>(width) * height) {}

void Image::forEachRow(const std::function<void(int)>& row) const {
  const int workers = static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1u, 16u));
  std::vector<std::thread> threads;
  // Interleaved rows keep the load even when one part of the image costs more than another.
  for (int t = 1; t < workers; ++t)
    threads.emplace_back([&, t] {
      for (int y = t; y < h; y += workers) row(y);
    });
  for (int y = 0; y < h; y += workers) row(y);
  for (std::thread& thread : threads) thread.join();
}

Rgb Image::sample(float x, float y) const {
  x = std::clamp(x, 0.0f, static_cast<float>(w - 1));
  y = std::clamp(y, 0.0f, static_cast<float>(h - 1));
  const int x0 = static_cast<int>(x), y0 = static_cast<int>(y);
  const int x1 = std::min(x0 + 1, w - 1), y1 = std::min(y0 + 1, h - 1);
  const float fx = x - x0, fy = y - y0;
  return mix(mix(at(x0, y0), at(x1, y0), fx), mix(at(x0, y1), at(x1, y1), fx), fy);
}

Image Image::shrunk(int factor) const {
  Image out(w / factor, h / factor);
  const float norm = 1.0f / (factor * factor);
  out.fill([&](int x, int y) {
    Rgb sum;
    for (int j = 0; j < factor; ++j)
      for (int i = 0; i < factor; ++i) sum += at(x * factor + i, y * factor + j);
    return sum * norm;
  });
  return out;
}

Image Image::resized(int width, int height) const {
  Image out(width, height);
  const float sx = static_cast<float>(w) / width, sy = static_cast<float>(h) / height;
  out.fill([&](int x, int y) { return sample((x + 0.5f) * sx - 0.5f, (y + 0.5f) * sy - 0.5f); });
  return out;
}

std::vector<unsigned char> Image::bytes() const {
  std::vector<unsigned char> out;
  out.reserve(px.size() * 3);
  auto to8 = [](float v) {
    return static_cast<unsigned char>(std::lround(std::clamp(v, 0.0f, 1.0f) * 255.0f));
  };
  for (const Rgb& c : px) {
    out.push_back(to8(c.r));
    out.push_back(to8(c.g));
    out.push_back(to8(c.b));
  }
  return out;
}
