// The generated images: present, loadable as RGB at their sizes, and drawn so that the
// game's additive blending, text layout and model wrapping come out right.
#include <SDL/SDL.h>
#include <SDL/SDL_image.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>

#include "Teksti.h"
#include "testutil.h"

namespace {

using Surface = std::unique_ptr<SDL_Surface, decltype(&SDL_FreeSurface)>;

const std::string kData = VORTA_DATA_DIR;

Surface loadTexture(const std::string& name) {
    return Surface(IMG_Load((kData + "/textures/" + name).c_str()), SDL_FreeSurface);
}

struct Pixel {
    int r, g, b;
    int brightest() const { return std::max({r, g, b}); }
    double luminance() const { return 0.299 * r + 0.587 * g + 0.114 * b; }
};

Pixel pixel(const SDL_Surface* s, int x, int y) {
    const Uint8* p = static_cast<const Uint8*>(s->pixels) + y * s->pitch + x * s->format->BytesPerPixel;
    Uint32 value = 0;
    for (int i = 0; i < s->format->BytesPerPixel; ++i) value |= static_cast<Uint32>(p[i]) << (8 * i);
    Uint8 r, g, b;
    SDL_GetRGB(value, s->format, &r, &g, &b);
    return {r, g, b};
}

int brightestOnBorder(const SDL_Surface* s) {
    int most = 0;
    for (int i = 0; i < s->w; ++i)
        most = std::max({most, pixel(s, i, 0).brightest(), pixel(s, i, s->h - 1).brightest(), pixel(s, 0, i).brightest(),
                         pixel(s, s->w - 1, i).brightest()});
    return most;
}

// Mean absolute colour difference between two columns (or rows), to judge seams.
double lineDifference(const SDL_Surface* s, int a, int b, bool columns) {
    double sum = 0;
    const int n = columns ? s->h : s->w;
    for (int i = 0; i < n; ++i) {
        const Pixel p = columns ? pixel(s, a, i) : pixel(s, i, a), q = columns ? pixel(s, b, i) : pixel(s, i, b);
        sum += std::abs(p.r - q.r) + std::abs(p.g - q.g) + std::abs(p.b - q.b);
    }
    return sum / n;
}

// Glows are everything the game blends additively over the scene: their border must be
// black or the quad shows.
const struct {
    const char* name;
    int size;
    bool glow;
} kTextures[] = {
    {"teksti.png", 1024, false}, {"teksti_256.png", 256, false}, {"tottero1.png", 256, false},
    {"pati0.png", 64, true}, {"pati1.png", 128, true}, {"jalki.png", 64, true}, {"alus5_2.png", 256, false},
    {"sucker.png", 128, true}, {"pikku.png", 128, true}, {"pati6.png", 128, true}, {"pati20.png", 128, true},
    {"Ohjus.png", 128, true}, {"pati8.png", 64, true}, {"muna.png", 128, true}, {"galax.png", 256, true},
    {"aukko.png", 128, true}, {"galax2.png", 256, true}, {"pati15.png", 128, true}, {"alus20.png", 256, false},
    {"epati18.png", 128, true}, {"meteor2.png", 256, false}, {"electric.png", 256, false}, {"epati20.png", 128, true},
    {"pati22.png", 64, true}, {"tausta2.png", 1024, false}, {"tausta2_256.png", 256, false},
    {"tausta3.png", 1024, false}, {"tausta3_256.png", 256, false}, {"alkukuva.png", 1024, false},
    {"alkukuva_256.png", 256, false},
};

TEST(Textures, EveryImageLoadsAsRgbOfItsSizeAndGlowsFadeToBlackBeforeTheirBorder) {
    for (const auto& e : kTextures) {
        SCOPED_TRACE(e.name);
        const Surface s = loadTexture(e.name);
        ASSERT_TRUE(s) << IMG_GetError();
        EXPECT_EQ(s->format->BytesPerPixel, 3);
        EXPECT_TRUE(s->w == e.size && s->h == e.size) << s->w << " x " << s->h;
        if (!e.glow) continue;
        EXPECT_LE(brightestOnBorder(s.get()), 2);
        int brightest = 0;
        for (int y = 0; y < s->h; ++y)
            for (int x = 0; x < s->w; ++x) brightest = std::max(brightest, pixel(s.get(), x, y).brightest());
        EXPECT_GT(brightest, 120) << "something glows";
    }
}

TEST(Textures, IconIsA32PixelBmpWithAColouredEmblem) {
    const Surface icon(SDL_LoadBMP((kData + "/icon.bmp").c_str()), SDL_FreeSurface);
    ASSERT_TRUE(icon) << SDL_GetError();
    EXPECT_TRUE(icon->w == 32 && icon->h == 32 && icon->format->BitsPerPixel == 24);
    const Pixel centre = pixel(icon.get(), 14, 12);
    EXPECT_GT(centre.brightest(), 100);
    EXPECT_GT(centre.r, centre.b) << "the planet is warm orange, so the channels are in RGB order";
    EXPECT_LT(pixel(icon.get(), 0, 0).brightest(), 10);
}

TEST(Textures, WrappedSkinsHaveNoSeam) {
    // A seam is a jump between the last and first column much larger than between neighbours.
    const struct {
        const char* name;
        bool vertical;
    } skins[] = {{"meteor2.png", false}, {"tottero1.png", true}, {"alus5_2.png", true}, {"alus20.png", true}, {"electric.png", true}};
    for (const auto& skin : skins) {
        SCOPED_TRACE(skin.name);
        const Surface s = loadTexture(skin.name);
        ASSERT_TRUE(s);
        const double typical = lineDifference(s.get(), s->w / 2, s->w / 2 + 1, true) + 1;
        EXPECT_LT(lineDifference(s.get(), s->w - 1, 0, true), 2.5 * typical);
        if (skin.vertical) {
            EXPECT_LT(lineDifference(s.get(), s->h - 1, 0, false), 2.5 * typical);
        }
    }
}

TEST(Textures, SmallVariantsMatchTheLargeImages) {
    for (const char* base : {"tausta2", "tausta3", "alkukuva", "teksti"}) {
        SCOPED_TRACE(base);
        const Surface big = loadTexture(std::string(base) + ".png"), small = loadTexture(std::string(base) + "_256.png");
        ASSERT_TRUE(big && small);
        double bigSum = 0, smallSum = 0;
        for (int y = 0; y < 256; ++y)
            for (int x = 0; x < 256; ++x) {
                smallSum += pixel(small.get(), x, y).luminance();
                bigSum += pixel(big.get(), x * 4 + 1, y * 4 + 2).luminance();
            }
        EXPECT_NEAR(smallSum / 65536, bigSum / 65536, 3.0);
    }
}

// The menu panel covers the left half; the glowing title lettering must be clear of it.
TEST(Textures, TitleLetteringIsInTheRightHalf) {
    const Surface s = loadTexture("alkukuva.png");
    ASSERT_TRUE(s);
    int brightLeft = 0, brightRight = 0;
    for (int y = 0; y < s->h; ++y)
        for (int x = 0; x < s->w; ++x)
            if (pixel(s.get(), x, y).luminance() > 200) ++(x < s->w / 2 ? brightLeft : brightRight);
    EXPECT_GT(brightRight, 20000);
    EXPECT_GT(brightRight, 5 * brightLeft);
}

// Ink extents of one 64-pixel cell of the 1024 atlas, within the part the game samples.
struct Ink {
    int left = 64, right = -1, top = 64, bottom = -1;
    bool any() const { return right >= 0; }
};

Ink inkOf(const SDL_Surface* atlas, int code) {
    Ink ink;
    const int cx = (code & 15) * 64, cy = (code >> 4) * 64;
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
            if (pixel(atlas, cx + x, cy + y).brightest() > 40) {
                ink.left = std::min(ink.left, x);
                ink.right = std::max(ink.right, x);
                ink.top = std::min(ink.top, y);
                ink.bottom = std::max(ink.bottom, y);
            }
    return ink;
}

class FontAtlas : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        const Surface atlas = loadTexture("teksti.png");
        ASSERT_TRUE(atlas);
        for (int c = 0; c < 256; ++c) ink[c] = inkOf(atlas.get(), c);
    }
    static Ink ink[256];
};
Ink FontAtlas::ink[256];

TEST_F(FontAtlas, PrintableCharactersHaveInkAndOthersNone) {
    for (int c = 0; c < 256; ++c) {
        const Ink& i = ink[c];
        EXPECT_EQ(i.any(), c > 32 && c < 127) << "code " << c;
        // Inside the texels the game samples (2 to 62), so no neighbour bleeds in.
        EXPECT_TRUE(!i.any() || (i.left >= 2 && i.right <= 62 && i.top >= 2 && i.bottom <= 62)) << "code " << c;
    }
}

TEST_F(FontAtlas, GlyphsAreCentredInTheirAdvanceSoNeighboursNeverTouch) {
    // The game steps the pen by letterWidth x 64 texels from the cell's left edge.
    for (int c = 33; c < 127; ++c) {
        const double advance = kirjainleveys[c] * 64;
        EXPECT_NEAR((ink[c].left + ink[c].right + 1) / 2.0, advance / 2, 2.5) << "code " << c;
    }
    for (int a = 33; a < 127; ++a)
        for (int b = 33; b < 127; ++b) {
            const double gap = kirjainleveys[a] * 64 + ink[b].left - ink[a].right - 1;
            ASSERT_GE(gap, 2) << "'" << char(a) << "' then '" << char(b) << "'";
        }
}

TEST_F(FontAtlas, TextSitsOnOneBaselineCentredInTheCell) {
    const int baseline = ink[int('H')].bottom;
    for (char c : std::string("ABEHMNXZabcdemnorsuvwxz0123456789"))
        EXPECT_NEAR(ink[int(c)].bottom, baseline, 1) << c;
    EXPECT_NEAR(ink[int('x')].top, ink[int('o')].top, 2);
    // The tallest ascender and the deepest descender are equally far from the cell edges.
    int top = 64, bottom = 0;
    for (int c = 33; c < 127; ++c) {
        top = std::min(top, ink[c].top);
        bottom = std::max(bottom, ink[c].bottom);
    }
    EXPECT_NEAR(top, 63 - bottom, 2);
}

TEST(Textures, SmallFontAtlasKeepsTheGrid) {
    const Surface s = loadTexture("teksti_256.png");
    ASSERT_TRUE(s);
    auto inkIn = [&](int code) {
        int most = 0;
        for (int y = 0; y < 16; ++y)
            for (int x = 0; x < 16; ++x) most = std::max(most, pixel(s.get(), (code & 15) * 16 + x, (code >> 4) * 16 + y).brightest());
        return most;
    };
    EXPECT_GT(inkIn('W'), 150);
    EXPECT_GT(inkIn('7'), 150);
    EXPECT_EQ(inkIn(7), 0);
    EXPECT_EQ(inkIn(200), 0);
}

const std::string kGenerator = kData + "/../tools/texturegen";

TEST(TextureGenerator, IsRepeatableIntoAFreshFolder) {
    testutil::TempDir again;
    const testutil::RunResult run = testutil::runProgram({kGenerator, again.file("data")}, {}, 120000);
    ASSERT_TRUE(run.exited && run.status == 0) << run.output;
    for (const char* name : {"textures/meteor2.png", "textures/teksti.png", "textures/alkukuva_256.png", "icon.bmp"})
        EXPECT_TRUE(testutil::readFile(again.file("data/") + name) == testutil::readFile(kData + "/" + name)) << name;
}

TEST(TextureGenerator, FailsVisiblyWhenTheFolderCannotBeMade) {
    // A folder cannot be made below an ordinary file.
    const testutil::RunResult run = testutil::runProgram({kGenerator, kData + "/icon.bmp/below"}, {}, 60000);
    EXPECT_TRUE(run.exited && run.status != 0);
    EXPECT_NE(run.output.find("cannot create the folder"), std::string::npos) << run.output;
}

}  // namespace
