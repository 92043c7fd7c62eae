// Surfaces wrapped on models: hull plating for ship skins, the asteroid rock and the
// lightning skin. All tile horizontally because they wrap around their models.
#include <algorithm>
#include <cmath>
#include <vector>

#include "assets.h"
#include "paint.h"

namespace {

constexpr int kSkin = 256;

enum class Detail { plain, painted, vent, hatch };

struct Panel {
  int start, width;
  float tone;  // brightness of this plate, so neighbours differ a little
  Detail detail;
};

struct PanelRow {
  int top, height;
  std::vector<Panel> panels;
};

Detail pickDetail(Random& rng, int width, int height) {
  const float roll = rng.uniform();
  if (roll < 0.2f) return Detail::painted;
  if (roll < 0.3f && width >= 48) return Detail::vent;
  if (roll < 0.42f && width >= 48 && height >= 32) return Detail::hatch;
  return Detail::plain;
}

// Rows of plates of mixed heights and widths, staggered like brickwork; each row closes on itself.
std::vector<PanelRow> layPanels(Random& rng) {
  static const int heights[] = {24, 32, 32, 40, 48, 32, 24, 24};  // sums to the skin's height
  static const int widths[] = {32, 48, 64, 64, 96};
  std::vector<PanelRow> rows;
  int top = 0;
  for (int height : heights) {
    PanelRow row{top, height, {}};
    int x = static_cast<int>(rng.next() % 8) * 8;
    const int end = x + kSkin;
    while (x < end) {
      const int w = std::min(widths[rng.next() % 5], end - x);
      row.panels.push_back({x, w, rng.range(0.85f, 1.1f), pickDetail(rng, w, height)});
      x += w;
    }
    rows.push_back(std::move(row));
    top += height;
  }
  return rows;
}

const PanelRow& rowAt(const std::vector<PanelRow>& rows, int y) {
  for (const PanelRow& r : rows)
    if (y < r.top + r.height) return r;
  return rows.back();
}

const Panel& panelAt(const PanelRow& row, int x) {
  for (const Panel& p : row.panels)
    if ((x - p.start + kSkin) % kSkin < p.width) return p;
  return row.panels.front();
}

// Distance in pixels to the nearest rivet, which sit every 8 pixels just inside each seam.
float rivetDistance(int along, int across) {
  const float inset = 3.5f;
  const float a = std::fmod(static_cast<float>(along) + 0.5f - 4, 8.0f) - 4;
  return std::sqrt(a * a + (across + 0.5f - inset) * (across + 0.5f - inset));
}

// Brightness factor of a groove one pixel wide: dark in the cut, lit on its lower-right lip.
float groove(int distance, bool litSide) {
  if (distance == 0) return 0.35f;
  if (distance == 1) return litSide ? 1.25f : 0.7f;
  return 1.0f;
}

// Panel details inside the rivet line: louvred vents and inset hatches.
float detailShade(Detail detail, int inX, int inY, int width, int height) {
  if (detail == Detail::vent) {
    const int x0 = 10, x1 = width - 10, y0 = height / 2 - 7, y1 = height / 2 + 7;
    if (inX < x0 || inX >= x1 || inY < y0 || inY >= y1) return 1.0f;
    const int slot = (inY - y0) % 4;
    return slot == 0 ? 1.2f : (slot == 3 ? 0.8f : 0.3f);
  }
  if (detail == Detail::hatch) {
    const int inset = 9;
    const int d = std::min({inX - inset, width - 1 - inset - inX, inY - inset, height - 1 - inset - inY});
    if (d < 0) return 1.0f;
    return groove(d, inX - inset == d || inY - inset == d) * (d > 1 ? 0.92f : 1.0f);
  }
  return 1.0f;
}

}  // namespace

Image makeHullPlating(uint32_t seed, Rgb base, Rgb accent) {
  Random rng(seed);
  const auto rows = layPanels(rng);
  const Noise noise(seed);
  Image img(kSkin, kSkin);
  img.fill([&](int x, int y) {
    const PanelRow& row = rowAt(rows, y);
    const Panel& p = panelAt(row, x);
    const int inX = (x - p.start + kSkin) % kSkin, inY = y - row.top;
    const int fromLeft = inX, fromRight = p.width - 1 - inX, fromTop = inY, fromBottom = row.height - 1 - inY;
    const int edge = std::min({fromLeft, fromRight, fromTop, fromBottom});

    const float fx = x * 8.0f / kSkin, fy = y * 8.0f / kSkin;
    const float wear = noise.fbm(fx, fy, 0.5f, 5, 8, 8);
    const float brushed = noise.at(x * 64.0f / kSkin, y * 2.0f, 3.5f, 64, 0);  // fine streaks along x
    // Paint chips away first along the seams, where crews and debris scrape it.
    const bool paintWorn = wear + 0.25f * (edge < 4) > 0.3f;
    Rgb c = (p.detail == Detail::painted && !paintWorn ? accent : base) * p.tone;
    c = c * (0.92f + 0.06f * brushed + 0.08f * wear) *
        (1.06f - 0.12f * inY / row.height);  // sheen from above
    c = c *
        (1 - 0.25f * smoothstep(0.2f, 0.8f, noise.fbm(fx * 0.5f + 7, fy * 0.5f, 2.5f, 4, 4, 4)));  // grime
    c = c * groove(edge, edge == fromTop || edge == fromLeft) *
        detailShade(p.detail, inX, inY, p.width, row.height);

    // Rivets: small domes just inside the seams.
    const float dTop = rivetDistance(inX, fromTop), dBottom = rivetDistance(inX, fromBottom);
    const float dLeft = rivetDistance(inY, fromLeft), dRight = rivetDistance(inY, fromRight);
    const float rivet = std::min({dTop, dBottom, p.width >= 48 ? std::min(dLeft, dRight) : 99.0f});
    if (rivet < 1.4f)
      c = base * (1.25f - 0.35f * rivet);
    else if (rivet < 2.0f)
      c = c * 0.6f;
    return c;
  });
  return img;
}

Image makeAsteroidSkin() {
  const float kSunX = 0.48f, kSunY = 0.6f, kSunZ = 0.64f;
  const Noise noise(39);
  Random rng(39);
  struct Crater {
    float x, y, z, size;
  };
  std::vector<Crater> craters(46);
  for (Crater& k : craters) {
    // Uniform directions on the sphere; sizes mostly small with a few large basins.
    const float z = rng.range(-1, 1), angle = rng.range(0, 2 * kPi), ring = std::sqrt(1 - z * z);
    k = {ring * std::cos(angle), ring * std::sin(angle), z, 0.06f + 0.3f * std::pow(rng.uniform(), 3.0f)};
  }
  Image img(kSkin, kSkin);
  img.fill([&](int px, int py) {
    // Sample the noise on the sphere the texture wraps, so it is seamless and unstretched.
    const float lon = (px + 0.5f) * 2 * kPi / kSkin, lat = (py + 0.5f) * kPi / kSkin;
    const float x = std::cos(lon) * std::sin(lat), y = std::sin(lon) * std::sin(lat), z = std::cos(lat);
    const float rock = noise.fbm(x * 2.2f, y * 2.2f, z * 2.2f, 6);
    const float mineral = noise.fbm(x * 1.3f + 9, y * 1.3f, z * 1.3f, 3);
    Rgb c = mix(Rgb{0.30f, 0.26f, 0.22f}, Rgb{0.58f, 0.55f, 0.50f}, smoothstep(-0.45f, 0.45f, rock));
    c = mix(c, Rgb{0.55f, 0.42f, 0.30f}, smoothstep(0.0f, 0.6f, mineral) * 0.6f);
    float shade = 1 + 0.15f * noise.fbm(x * 12, y * 12, z * 12, 3) -
                  0.3f * std::pow(noise.ridged(x * 3 + 5, y * 3, z * 3, 4), 8.0f);
    for (const Crater& k : craters) {
      const float cosAngle = std::clamp(x * k.x + y * k.y + z * k.z, -1.0f, 1.0f);
      const float t = std::acos(cosAngle) / k.size;
      if (t > 1.6f) continue;
      // Which way this point lies from the crater centre, against a fixed sun, so that
      // one inner wall is lit and the other in shadow.
      const float ox = x - k.x * cosAngle, oy = y - k.y * cosAngle, oz = z - k.z * cosAngle;
      const float facing =
          (ox * kSunX + oy * kSunY + oz * kSunZ) / std::max(1e-4f, std::sqrt(ox * ox + oy * oy + oz * oz));
      const float depth = std::min(1.0f, k.size * 6);               // small craters are shallow
      shade *= 1 - 0.3f * depth * (1 - smoothstep(0.2f, 0.9f, t));  // dark floor
      shade *= 1 + 0.45f * depth * facing * glow(t - 0.7f, 0.25f);  // lit and shaded walls
      shade *= 1 - 0.25f * depth * facing * glow(t - 1.1f, 0.15f);  // the rim throws the opposite way
    }
    return c * shade;
  });
  return img;
}

Image makeLightningSkin() {
  const Noise bolts(40), branches(41);
  Image img(kSkin, kSkin);
  img.fill([&](int x, int y) {
    const float fx = x * 4.0f / kSkin, fy = y * 4.0f / kSkin;
    // Where smooth noise crosses zero a thin bright line runs: the arcs of the discharge.
    const float arc = std::pow(1 - std::fabs(bolts.fbm(fx, fy, 0.5f, 5, 4, 4)), 22.0f);
    const float fine = std::pow(1 - std::fabs(branches.fbm(fx * 2, fy * 2, 1.5f, 4, 8, 8)), 30.0f);
    const float haze = 0.5f + 0.5f * bolts.fbm(fx * 0.5f, fy * 0.5f, 4.5f, 3, 2, 2);
    const Rgb deep{0.02f, 0.05f, 0.2f}, blue{0.3f, 0.55f, 1.0f}, white{0.9f, 0.95f, 1.0f};
    return deep * (0.6f + 0.8f * haze) + blue * (0.9f * arc + 0.5f * fine) +
           white * (std::pow(arc, 3.0f) + 0.6f * std::pow(fine, 3.0f));
  });
  return img;
}
