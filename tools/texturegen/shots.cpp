// Shots, flares and small effects: soft radial glows around bright cores, each with its
// own colour and shape. u and v run over [-1, 1]; every image fades out before its edge.
#include <algorithm>
#include <cmath>

#include "assets.h"
#include "paint.h"

namespace {

const Rgb kWhite{1, 1, 1};

// Distance from p to the segment a-b.
float segmentDistance(float px, float py, float ax, float ay, float bx, float by) {
  const float dx = bx - ax, dy = by - ay;
  const float t = std::clamp(((px - ax) * dx + (py - ay) * dy) / (dx * dx + dy * dy), 0.0f, 1.0f);
  return radius(px - ax - t * dx, py - ay - t * dy);
}

// White-hot core inside a coloured halo, the common recipe of energy shots.
Rgb hotGlow(float r, float coreRadius, Rgb inner, float innerRadius, Rgb halo, float haloRadius) {
  return kWhite * glow(r, coreRadius) + inner * glow(r, innerRadius) + halo * (0.6f * glow(r, haloRadius));
}

// Noise that depends on the angle alone and closes on itself after a full turn.
float aroundCircle(const Noise& noise, float angle, float frequency, float z) {
  return noise.at(std::cos(angle) * frequency, std::sin(angle) * frequency, z);
}

}  // namespace

Image makePlasmaBolt() {
  return renderCentred(64, 3, [](float u, float v) {
    const float r = radius(u, v);
    return hotGlow(r, 0.14f, {1.0f, 0.85f, 0.3f}, 0.3f, {1.0f, 0.4f, 0.08f}, 0.55f) * edgeFade(r);
  });
}

Image makeEnergyBomb() {
  const Noise noise(101);
  return renderCentred(128, 2, [&](float u, float v) {
    const float r = radius(u, v);
    const float plasma = 0.5f + 0.5f * noise.fbm(u * 3, v * 3, 0.5f, 4);
    const float shell = glow(r - 0.55f, 0.08f);  // bright skin of the energy ball
    const float inside = r < 0.58f ? plasma * 0.7f : 0.0f;
    const Rgb violet{0.55f, 0.3f, 1.0f}, blue{0.3f, 0.55f, 1.0f};
    const Rgb c = kWhite * (0.9f * glow(r, 0.15f)) +
                  mix(blue, violet, plasma) * (inside * smoothstep(0.6f, 0.3f, r) + shell) +
                  violet * (0.45f * glow(r, 0.7f));
    return c * edgeFade(r);
  });
}

Image makeExhaustPuff() {
  const Noise noise(102);
  return renderCentred(64, 2, [&](float u, float v) {
    const float r = radius(u, v);
    const float wisps = 0.75f + 0.25f * noise.fbm(u * 2.5f, v * 2.5f, 1.5f, 3);
    const float density = glow(r, 0.5f) * wisps;
    return mix(Rgb{0.35f, 0.45f, 0.7f}, Rgb{0.85f, 0.85f, 0.9f}, glow(r, 0.3f)) *
           (0.75f * density * edgeFade(r));
  });
}

Image makeSuckerVortex() {
  return renderCentred(128, 3, [](float u, float v) {
    const float r = radius(u, v) + 1e-4f;
    const float angle = std::atan2(v, u);
    // Three logarithmic spiral arms winding into the eye.
    const float arms = std::pow(0.5f + 0.5f * std::cos(3 * angle + 5.5f * std::log(r)), 3.0f);
    const float band = smoothstep(0.05f, 0.3f, r) * edgeFade(r, 0.55f);
    const Rgb rim{0.6f, 0.25f, 1.0f}, eye{0.3f, 1.0f, 0.6f};
    const Rgb colour = mix(eye, rim, smoothstep(0.1f, 0.8f, r));
    return colour * (band * (0.25f + 0.95f * arms)) + eye * (0.5f * glow(r - 0.12f, 0.06f)) * edgeFade(r);
  });
}

Image makeLittleMan() {
  return renderCentred(128, 4, [](float imageU, float imageV) {
    // The game turns this quad a quarter turn clockwise, so the figure is drawn lying
    // with its head to the left of the image to stand upright on screen.
    const float u = -imageV, v = imageU;
    // Distance to a stick figure waving both arms.
    const float head = radius(u, v + 0.5f) - 0.15f;
    float limbs = segmentDistance(u, v, 0, -0.32f, 0, 0.18f) - 0.09f;                    // body
    limbs = std::min(limbs, segmentDistance(u, v, 0, -0.22f, -0.38f, -0.42f) - 0.055f);  // left arm up
    limbs = std::min(limbs, segmentDistance(u, v, 0, -0.22f, 0.38f, -0.42f) - 0.055f);   // right arm up
    limbs = std::min(limbs, segmentDistance(u, v, 0, 0.15f, -0.24f, 0.62f) - 0.065f);    // legs
    limbs = std::min(limbs, segmentDistance(u, v, 0, 0.15f, 0.24f, 0.62f) - 0.065f);
    const float d = std::min(head, limbs);
    const float body = 1 - smoothstep(-0.015f, 0.015f, d);
    const Rgb skin{0.85f, 1.0f, 0.65f}, aura{0.3f, 1.0f, 0.35f};
    return skin * body + aura * (0.55f * glow(std::max(d, 0.0f), 0.12f)) * edgeFade(radius(u, v));
  });
}

Image makeSunFlare() {
  const Noise noise(106);
  return renderCentred(128, 3, [&](float u, float v) {
    const float r = radius(u, v);
    const float angle = std::atan2(v, u);
    const float n = 0.5f + 0.5f * aroundCircle(noise, angle, 4, 0.5f);  // rays of uneven length
    const float reach = 0.15f + 0.75f * n * n;
    const float rays = std::pow(std::fabs(std::cos(angle * 6)), 18.0f) * glow(r, reach);
    const float ring = 0.25f * glow(r - 0.62f, 0.035f);
    const Rgb c = hotGlow(r, 0.18f, {1.0f, 0.8f, 0.3f}, 0.34f, {1.0f, 0.5f, 0.1f}, 0.6f) +
                  Rgb{1.0f, 0.75f, 0.35f} * (0.8f * rays + ring);
    return c * edgeFade(r);
  });
}

Image makeCrackleOrb() {
  const Noise noise(107);
  return renderCentred(128, 3, [&](float u, float v) {
    const float r = radius(u, v);
    // Ridged noise gives thin bright filaments, brightest near the orb.
    const float filaments = std::pow(noise.ridged(u * 2.2f, v * 2.2f, 0.3f, 4), 6.0f) * glow(r, 0.55f);
    const Rgb c = hotGlow(r, 0.13f, {0.4f, 1.0f, 0.8f}, 0.26f, {0.1f, 0.8f, 0.6f}, 0.5f) +
                  Rgb{0.6f, 1.0f, 0.9f} * (1.6f * filaments);
    return c * edgeFade(r);
  });
}

Image makeMissile() {
  return renderCentred(128, 4, [](float u, float v) {
    // The body runs along +x; the shading across v gives it a rounded, lit look.
    const float bodyHalf = 0.085f;
    const float nose = u > 0.42f ? bodyHalf * (1 - (u - 0.42f) / 0.2f) : bodyHalf;
    const bool inBody = u > -0.5f && u < 0.62f && std::fabs(v) < nose;
    const float finReach = 0.24f - (u + 0.5f) * 1.1f;  // swept fins at the tail
    const bool inFin = u > -0.52f && u < -0.3f && std::fabs(v) < std::max(finReach, 0.0f) + bodyHalf &&
                       std::fabs(v) > bodyHalf * 0.5f;
    Rgb c;
    if (inBody) {
      const float across = v / bodyHalf;
      const float light = 0.55f + 0.45f * std::sqrt(std::max(0.0f, 1 - across * across)) - 0.2f * across;
      const bool noseCone = u > 0.42f, band = u > 0.12f && u < 0.18f;
      c = (noseCone || band ? Rgb{0.95f, 0.25f, 0.15f} : Rgb{0.78f, 0.8f, 0.85f}) * light;
    } else if (inFin) {
      c = Rgb{0.5f, 0.52f, 0.58f};
    }
    // Exhaust flame behind the tail, elongated along -x.
    const float fx = (u + 0.52f) / 0.35f, fy = v / 0.07f;
    const float flame = u < -0.5f ? std::exp(-(fx * fx + fy * fy)) : 0.0f;
    c += Rgb{1.0f, 0.85f, 0.4f} * flame +
         Rgb{1.0f, 0.4f, 0.1f} * (0.5f * glow(radius(fx * 0.6f, fy * 0.5f), 1.0f));
    return c * edgeFade(radius(u, v));
  });
}

Image makeSpark() {
  return renderCentred(64, 3, [](float u, float v) {
    const float r = radius(u, v);
    const float cross = glow(u, 0.04f) * glow(v, 0.5f) + glow(v, 0.04f) * glow(u, 0.5f);
    return (hotGlow(r, 0.1f, {1.0f, 0.95f, 0.5f}, 0.22f, {1.0f, 0.75f, 0.2f}, 0.42f) +
            Rgb{1.0f, 0.9f, 0.6f} * (0.5f * cross)) *
           edgeFade(r);
  });
}

Image makeGlowingEgg() {
  const Noise noise(109);
  return renderCentred(128, 3, [&](float u, float v) {
    // An egg: narrower at the top (negative v) than at the bottom.
    const float widthAt = 0.36f * (1 + 0.18f * v / 0.5f);
    const float e = radius(u / widthAt, v / 0.5f);
    const float shell = 1 - smoothstep(0.96f, 1.04f, e);
    const float speckles = smoothstep(0.55f, 0.75f, noise.at(u * 9, v * 9, 0.5f) * 0.5f + 0.5f);
    const Rgb pale{0.85f, 1.0f, 0.75f}, spot{0.35f, 0.7f, 0.3f}, halo{0.4f, 1.0f, 0.45f};
    const float lit = 0.65f + 0.35f * std::sqrt(std::max(0.0f, 1 - e * e));
    const Rgb c =
        mix(pale, spot, speckles * 0.6f) * (shell * lit) + halo * (0.5f * glow(std::max(e - 1, 0.0f), 0.3f));
    return c * edgeFade(radius(u, v));
  });
}

Image makeBlackHole() {
  const Noise noise(110);
  return renderCentred(128, 3, [&](float u, float v) {
    const float r = radius(u, v);
    const float angle = std::atan2(v, u);
    // Streaks drawn out along the orbit: slow change with angle, fast with radius.
    const float streaks = 0.55f + 0.45f * aroundCircle(noise, angle, 1.5f, r * 14);
    const float disc = smoothstep(0.3f, 0.38f, r) * edgeFade(r, 0.45f);
    const float beaming = 0.65f + 0.35f * std::cos(angle + 0.6f);  // the approaching side is brighter
    const float photonRing = glow(r - 0.31f, 0.018f);
    const Rgb hot{1.0f, 0.9f, 0.7f}, warm{1.0f, 0.5f, 0.15f};
    const Rgb c = mix(hot, warm, smoothstep(0.32f, 0.75f, r)) * (1.4f * disc * streaks * beaming) +
                  hot * (1.5f * photonRing);
    return r < 0.28f ? Rgb{} : c * edgeFade(r);
  });
}

Image makeRingOrb() {
  return renderCentred(128, 3, [](float u, float v) {
    const float r = radius(u, v);
    const float ring = glow(r - 0.52f, 0.05f) + 0.4f * glow(r - 0.72f, 0.025f);
    const Rgb magenta{1.0f, 0.3f, 0.85f};
    return (hotGlow(r, 0.14f, {1.0f, 0.5f, 0.95f}, 0.26f, magenta, 0.5f) + magenta * ring) * edgeFade(r);
  });
}

Image makeToxicBlob() {
  const Noise noise(111);
  return renderCentred(128, 3, [&](float u, float v) {
    const float r = radius(u, v);
    const float angle = std::atan2(v, u);
    const float wobble = 0.45f + 0.1f * aroundCircle(noise, angle, 1.8f, 2.5f);
    const float blob = 1 - smoothstep(wobble - 0.06f, wobble + 0.02f, r);
    const float bubbles = 0.5f + 0.5f * noise.fbm(u * 4, v * 4, 3.5f, 3);
    const Rgb slime{0.55f, 1.0f, 0.15f}, bright{0.95f, 1.0f, 0.6f};
    const Rgb c =
        mix(slime * 0.6f, bright, bubbles * glow(r, 0.4f)) * blob + slime * (0.45f * glow(r, 0.65f));
    return c * edgeFade(r);
  });
}

Image makeFireball() {
  const Noise noise(112);
  return renderCentred(128, 2, [&](float u, float v) {
    const float r = radius(u, v);
    const float turbulence = noise.fbm(u * 3.5f, v * 3.5f, 4.5f, 5);
    const float heat = std::clamp(glow(r, 0.5f) * (1.1f + 0.6f * turbulence), 0.0f, 1.5f);
    // Black body ramp: dark red, orange, yellow, white.
    Rgb c = mix(Rgb{0.5f, 0.05f, 0.0f}, Rgb{1.0f, 0.45f, 0.05f}, smoothstep(0.1f, 0.6f, heat));
    c = mix(c, Rgb{1.0f, 0.9f, 0.45f}, smoothstep(0.6f, 1.1f, heat));
    c = mix(c, kWhite, smoothstep(1.1f, 1.5f, heat));
    return c * (smoothstep(0.05f, 0.35f, heat) * edgeFade(r));
  });
}

Image makeStarShot() {
  return renderCentred(64, 4, [](float u, float v) {
    const float r = radius(u, v);
    const float du = u * 0.7071f + v * 0.7071f, dv = u * 0.7071f - v * 0.7071f;
    const float mainRays = glow(u, 0.05f) * glow(v, 0.75f) + glow(v, 0.05f) * glow(u, 0.75f);
    const float sideRays = glow(du, 0.04f) * glow(dv, 0.4f) + glow(dv, 0.04f) * glow(du, 0.4f);
    const Rgb lime{0.75f, 1.0f, 0.25f};
    return (hotGlow(r, 0.12f, {0.9f, 1.0f, 0.5f}, 0.22f, lime, 0.4f) + lime * (mainRays + 0.6f * sideRays)) *
           edgeFade(r);
  });
}
