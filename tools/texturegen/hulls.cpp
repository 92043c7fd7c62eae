// Surfaces wrapped on models: hull plating for ship skins, the asteroid rock and the
// lightning skin. All tile horizontally because they wrap around their models.
#include <algorithm>
#include <cmath>
#include <vector>

#include "assets.h"
#include "paint.h"

namespace {

constexpr int kSkin = 256;

struct Panel {
    int start, width;
    float tone;    // brightness of this plate, so neighbours differ a little
    bool painted;  // carries the accent colour
};

// Rows of plates of mixed widths, staggered like brickwork; each row closes on itself.
std::vector<std::vector<Panel>> layPanels(Random& rng, int rowHeight) {
    static const int widths[] = {32, 48, 64, 64, 96};
    std::vector<std::vector<Panel>> rows(kSkin / rowHeight);
    for (auto& row : rows) {
        int x = static_cast<int>(rng.next() % 8) * 8;
        const int end = x + kSkin;
        while (x < end) {
            const int w = std::min(widths[rng.next() % 5], end - x);
            row.push_back({x, w, rng.range(0.85f, 1.1f), rng.uniform() < 0.18f});
            x += w;
        }
    }
    return rows;
}

const Panel& panelAt(const std::vector<Panel>& row, int x) {
    for (const Panel& p : row)
        if ((x - p.start + kSkin) % kSkin < p.width) return p;
    return row.front();
}

// Distance in pixels to the nearest rivet, which sit every 8 pixels just inside each seam.
float rivetDistance(int along, int across) {
    const float inset = 3.5f;
    const float a = std::fmod(static_cast<float>(along) + 0.5f - 4, 8.0f) - 4;
    return std::sqrt(a * a + (across + 0.5f - inset) * (across + 0.5f - inset));
}

}  // namespace

Image makeHullPlating(uint32_t seed, Rgb base, Rgb accent) {
    Random rng(seed);
    const int rowHeight = 32;
    const auto rows = layPanels(rng, rowHeight);
    const Noise noise(seed);
    Image img(kSkin, kSkin);
    img.fill([&](int x, int y) {
        const auto& row = rows[y / rowHeight];
        const Panel& p = panelAt(row, x);
        const int inX = (x - p.start + kSkin) % kSkin, inY = y % rowHeight;
        const int fromLeft = inX, fromRight = p.width - 1 - inX, fromTop = inY, fromBottom = rowHeight - 1 - inY;
        const int edge = std::min({fromLeft, fromRight, fromTop, fromBottom});

        const float fx = x * 8.0f / kSkin, fy = y * 8.0f / kSkin;
        const float wear = noise.fbm(fx, fy, 0.5f, 5, 8, 8);
        const float brushed = noise.at(x * 64.0f / kSkin, y * 2.0f, 3.5f, 64, 0);  // fine streaks along x
        const bool paintWorn = wear > 0.25f;
        Rgb c = (p.painted && !paintWorn ? accent : base) * p.tone;
        c = c * (0.92f + 0.06f * brushed + 0.08f * wear);
        c = c * (1 - 0.25f * smoothstep(0.2f, 0.8f, noise.fbm(fx * 0.5f + 7, fy * 0.5f, 2.5f, 4, 4, 4)));  // grime

        // Seams: a dark groove with a lit bevel on its upper-left side.
        if (edge == 0) c = c * 0.35f;
        else if (edge == 1) c = c * ((fromTop == 1 || fromLeft == 1) ? 1.25f : 0.7f);

        // Rivets: small domes with a highlight towards the upper left.
        const float dTop = rivetDistance(inX, fromTop), dBottom = rivetDistance(inX, fromBottom);
        const float dLeft = rivetDistance(inY, fromLeft), dRight = rivetDistance(inY, fromRight);
        const float rivet = std::min({dTop, dBottom, p.width >= 48 ? std::min(dLeft, dRight) : 99.0f});
        if (rivet < 1.4f) c = base * (1.25f - 0.35f * rivet);
        else if (rivet < 2.0f) c = c * 0.6f;
        return c;
    });
    return img;
}

Image makeAsteroidSkin() {
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
        Rgb c = mix(Rgb{0.30f, 0.26f, 0.22f}, Rgb{0.58f, 0.55f, 0.50f}, smoothstep(-0.6f, 0.6f, rock));
        c = mix(c, Rgb{0.55f, 0.42f, 0.30f}, smoothstep(0.0f, 0.6f, mineral) * 0.6f);
        float shade = 1 + 0.12f * noise.fbm(x * 12, y * 12, z * 12, 3);
        for (const Crater& k : craters) {
            const float cosAngle = std::clamp(x * k.x + y * k.y + z * k.z, -1.0f, 1.0f);
            const float t = std::acos(cosAngle) / k.size;
            if (t > 1.6f) continue;
            shade *= 1 - 0.4f * (1 - smoothstep(0.5f, 0.95f, t));  // dark floor
            shade *= 1 + 0.45f * glow(t - 1.0f, 0.15f);           // bright raised rim
            shade *= 1 - 0.12f * glow(t - 1.35f, 0.15f);          // ejecta shadow outside the rim
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
        return deep * (0.6f + 0.8f * haze) + blue * (0.9f * arc + 0.5f * fine) + white * (std::pow(arc, 3.0f) + 0.6f * std::pow(fine, 3.0f));
    });
    return img;
}
