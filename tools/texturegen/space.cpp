// Space scenery: spiral galaxies, nebula backgrounds, the title picture and the icon.
#include <algorithm>
#include <cmath>

#include "assets.h"
#include "paint.h"

namespace {

// Brightness of a two-armed logarithmic spiral at polar (r, angle), 0..1.
float spiralArms(float r, float angle, float wobble) {
  const float winding = 2.6f;  // how tightly the arms wrap around the bulge
  const float phase = 2 * (angle - winding * std::log(r + 0.02f)) + wobble;
  return std::pow(0.5f + 0.5f * std::cos(phase), 3.0f);
}

}  // namespace

Image makeGalaxy(uint32_t seed, Rgb armColour, Rgb coreColour, float tilt) {
  const Noise noise(seed);
  const float turn = 0.5f + seed * 0.37f;
  const float cs = std::cos(turn), sn = std::sin(turn);
  Image img = renderCentred(256, 2, [&](float u, float v) {
    // Into the galaxy's own plane: rotate, then undo the inclination's squash.
    const float gx = (u * cs - v * sn) * 0.85f, gy = (u * sn + v * cs) * 0.85f / tilt;
    const float r = radius(gx, gy), angle = std::atan2(gy, gx);
    const float dust = noise.fbm(gx * 4, gy * 4, 0.5f, 5);
    const float arms = spiralArms(r, angle, 1.2f * dust);
    const float lanes = spiralArms(r, angle - 0.35f, dust);  // dark dust trails the bright arms
    const float disc = std::exp(-r / 0.4f);
    const float knots =
        smoothstep(0.55f, 0.8f, noise.at(gx * 22, gy * 22, 3.5f)) * arms;  // star-forming regions
    Rgb c = armColour * (disc * (0.2f + 2.0f * arms * (0.7f + 0.5f * dust))) *
            (1 - 0.5f * lanes * smoothstep(0.08f, 0.3f, r));
    c += Rgb{1.0f, 0.55f, 0.75f} * (0.5f * knots * disc);
    c += coreColour * (1.1f * glow(r, 0.09f)) + Rgb{1, 1, 1} * (0.6f * glow(r, 0.035f));
    return c * edgeFade(radius(u, v), 0.55f);
  });
  Image stars(img.width(), img.height());
  addStars(stars, seed + 100, 6, 0.7f);
  img.apply([&](Rgb c, int x, int y) {
    const float u = (x + 0.5f) / 128 - 1, v = (y + 0.5f) / 128 - 1;
    return c + stars.at(x, y) * edgeFade(radius(u, v), 0.5f);  // the quad's border stays black
  });
  return img;
}

Image makeNebulaBackground(uint32_t seed, Rgb first, Rgb second, Rgb dust) {
  Image img(1024, 1024);
  addNebula(img, seed * 7919, first, second, dust, 340);
  addStars(img, seed, 9, 1.0f);
  return img;
}

namespace {

constexpr int kTitleWidth = 1024, kTitleHeight = 768;  // the 4:3 shape the menu shows it in

struct Sphere {
  float cx, cy, radius;
};

// A world lit from the upper left: oceans, continents and clouds on an orthographic
// sphere, a dark night side and a blue atmosphere that glows past the limb.
void paintPlanet(Image& img, const Sphere& s) {
  const Noise land(700), clouds(701);
  const float lx = -0.62f, ly = -0.52f, lz = 0.58f;  // unit light direction
  img.apply([&](Rgb c, int px, int py) {
    const float x = (px + 0.5f - s.cx) / s.radius, y = (py + 0.5f - s.cy) / s.radius;
    const float d = radius(x, y);
    const float lit = std::clamp((x * lx + y * ly) / std::max(d, 1e-4f), -1.0f, 1.0f);
    const Rgb sky{0.35f, 0.6f, 1.0f};
    const float halo = glow(std::max(d - 1, 0.0f), 0.05f) + 0.35f * glow(std::max(d - 1, 0.0f), 0.16f);
    const Rgb air = sky * (halo * smoothstep(-0.7f, 0.5f, lit));
    if (d >= 1) return c + air;
    const float z = std::sqrt(1 - d * d);
    const float diffuse = std::max(0.0f, x * lx + y * ly + z * lz);
    const float h = land.fbm(x * 2.2f, y * 2.2f, z * 2.2f + 4, 6);
    Rgb surface = h > 0.08f
                      ? mix(Rgb{0.25f, 0.38f, 0.16f}, Rgb{0.55f, 0.45f, 0.3f}, smoothstep(0.08f, 0.6f, h))
                      : mix(Rgb{0.02f, 0.08f, 0.25f}, Rgb{0.05f, 0.22f, 0.45f}, smoothstep(-0.6f, 0.08f, h));
    const float cloud = smoothstep(0.0f, 0.6f, clouds.fbm(x * 3 + 1, y * 5, z * 3, 5));
    surface = mix(surface, Rgb{0.95f, 0.97f, 1.0f}, cloud * 0.85f);
    const float rim = std::pow(1 - z, 3.0f);  // thicker air towards the limb
    const Rgb day = mix(surface, sky, 0.55f * rim) * (0.08f + 1.1f * smoothstep(0.0f, 0.6f, diffuse));
    const Rgb cityLights =
        Rgb{1.0f, 0.7f, 0.3f} * (h > 0.25f ? 0.12f * (1 - smoothstep(-0.05f, 0.1f, diffuse)) : 0.0f);
    const float coverage = 1 - smoothstep(1 - 1.5f / s.radius, 1.0f, d);  // one soft pixel at the limb
    return mix(c + air, day + cityLights + sky * (0.5f * rim * smoothstep(-0.3f, 0.4f, lit)), coverage);
  });
}

// A small wedge-shaped ship flying up and to the right, lit on its upper edge, engines burning.
void paintShip(Image& img, float cx, float cy, float size) {
  const float heading = -0.45f, ch = std::cos(heading), sh = std::sin(heading);
  img.apply([&](Rgb c, int px, int py) {
    const float dx = (px + 0.5f - cx) / size, dy = (py + 0.5f - cy) / size;
    const float along = dx * ch + dy * sh, across = -dx * sh + dy * ch;
    const float halfWidth = 0.35f * (1 - along) / 2;  // tapers from the tail (-1) to the nose (1)
    const bool hull = along > -1 && along < 1 && std::fabs(across) < halfWidth;
    const float flameX = (along + 1.15f) / 0.3f, flameY = across / 0.12f;
    const float flame = along < -0.95f ? std::exp(-(flameX * flameX + flameY * flameY)) : 0.0f;
    c += Rgb{0.5f, 0.8f, 1.0f} * (1.3f * flame) +
         Rgb{0.3f, 0.5f, 1.0f} * (0.4f * glow(radius(flameX * 0.3f, flameY * 0.5f), 1.0f));
    if (!hull) return c;
    const float edgeLight = across < 0 ? smoothstep(halfWidth * 0.5f, halfWidth, -across) : 0.0f;
    return Rgb{0.03f, 0.03f, 0.05f} + Rgb{0.7f, 0.75f, 0.9f} * (0.8f * edgeLight);
  });
}

// "Vorta" in large glowing letters centred on (cx, baseline).
void paintName(Image& img, const Typeface& font, float cx, float baseline) {
  const int size = 136;
  const std::string name = "Vorta";
  const float tracking = 6;
  Image mask(img.width(), img.height());
  font.drawLine(mask, name, cx - font.lineWidth(name, size, tracking) / 2, baseline, size, tracking);
  // The wide glow is smooth, so it is blurred at a quarter of the size and scaled back up.
  const Image wideGlow = blurred(mask.shrunk(4), 6.5f).resized(mask.width(), mask.height());
  const Image tightGlow = blurred(mask, 6);
  const float top = baseline - size * 0.75f;
  img.apply([&](Rgb c, int x, int y) {
    const float cover = std::min(mask.at(x, y).r, 1.0f);
    // Letters fade from white at the top to warm gold at the baseline.
    const Rgb fill =
        mix(Rgb{1.0f, 1.0f, 1.0f}, Rgb{1.0f, 0.72f, 0.35f}, smoothstep(top, baseline, static_cast<float>(y)));
    const Rgb halo = Rgb{0.25f, 0.55f, 1.0f} * (1.4f * wideGlow.at(x, y).r) +
                     Rgb{0.7f, 0.85f, 1.0f} * (0.9f * tightGlow.at(x, y).r);
    return mix(c + halo, fill, cover);
  });
}

}  // namespace

Image makeTitlePicture(const Typeface& font) {
  Image img(kTitleWidth, kTitleHeight);
  addNebula(img, 31, {0.35f, 0.15f, 0.7f}, {0.1f, 0.45f, 0.8f}, {0.7f, 0.25f, 0.35f}, 300);
  img.apply([](Rgb c, int, int) { return c * 0.8f; });  // the menu text must stay readable over it
  addStars(img, 31, 8, 1.0f);
  paintPlanet(img, {830, 1010, 520});
  paintShip(img, 930, 420, 42);
  paintName(img, font, 752, 270);
  // Laid out at 4:3, stored square: the menu stretches it back to 4:3 with circles round.
  return img.resized(1024, 1024);
}

Image makeIcon() {
  return renderCentred(32, 8, [](float u, float v) {
    // A banded planet with a tilted ring passing in front of its lower half.
    const float r = radius(u, v);
    const float ringU = u * 0.94f + v * 0.34f, ringV = (-u * 0.34f + v * 0.94f) / 0.3f;
    const float ringR = radius(ringU, ringV);
    const bool onRing = ringR > 0.72f && ringR < 0.98f && ringR < 1.0f;
    const bool ringInFront = ringV > 0;
    Rgb c;
    if (r < 0.58f) {
      const float z = std::sqrt(1 - (r / 0.58f) * (r / 0.58f));
      const float light = 0.25f + 0.75f * std::max(0.0f, (-u * 0.6f - v * 0.5f) / 0.58f + z * 0.6f);
      const float bands = 0.5f + 0.5f * std::sin((v * 0.94f - u * 0.34f) * 16);
      c = mix(Rgb{0.9f, 0.5f, 0.2f}, Rgb{1.0f, 0.85f, 0.55f}, bands) * light;
    }
    if (onRing && (ringInFront || r >= 0.58f))
      c = mix(Rgb{0.75f, 0.85f, 1.0f}, Rgb{0.45f, 0.55f, 0.8f}, (ringR - 0.72f) / 0.26f);
    return c;
  });
}
