// texturegen <data folder>: draws every image the game reads into the folder.
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <system_error>
#include <vector>

#include "assets.h"
#include "imagefile.h"

namespace {

struct Asset {
  const char* name;  // file name under textures/, without ".png"
  std::function<Image()> make;
  bool withSmallVariant;  // also written as name_256.png, a quarter of the size
};

bool makeFolder(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error || !std::filesystem::is_directory(folder)) {
    printf("texturegen: cannot create the folder %s: %s\n", folder.c_str(), error.message().c_str());
    return false;
  }
  return true;
}

bool writeAsset(const std::filesystem::path& textures, const Asset& asset) {
  const Image image = asset.make();
  if (!writePng((textures / (std::string(asset.name) + ".png")).string(), image)) return false;
  if (!asset.withSmallVariant) return true;
  return writePng((textures / (std::string(asset.name) + "_256.png")).string(),
                  image.shrunk(image.width() / 256));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    printf("usage: texturegen <data folder>\n");
    return 2;
  }
  const std::filesystem::path data(argv[1]);
  const std::filesystem::path textures = data / "textures";
  if (!makeFolder(textures)) return 1;
  const Typeface font(VORTA_FONT_PATH);
  if (!font.ok()) return 1;

  const std::vector<Asset> assets = {
      {"teksti", [&] { return makeFontAtlas(font); }, true},
      {"tottero1",
       [] {
         return makeHullPlating(11, {0.46f, 0.48f, 0.52f}, {0.85f, 0.55f, 0.15f});
       },
       false},
      {"pati0", makePlasmaBolt, false},
      {"pati1", makeEnergyBomb, false},
      {"jalki", makeExhaustPuff, false},
      {"alus5_2",
       [] {
         return makeHullPlating(52, {0.55f, 0.50f, 0.42f}, {0.70f, 0.15f, 0.12f});
       },
       false},
      {"sucker", makeSuckerVortex, false},
      {"pikku", makeLittleMan, false},
      {"pati6", makeSunFlare, false},
      {"pati20", makeCrackleOrb, false},
      {"Ohjus", makeMissile, false},
      {"pati8", makeSpark, false},
      {"muna", makeGlowingEgg, false},
      {"galax",
       [] {
         return makeGalaxy(23, {0.55f, 0.70f, 1.00f}, {1.00f, 0.85f, 0.60f}, 0.55f);
       },
       false},
      {"aukko", makeBlackHole, false},
      {"galax2",
       [] {
         return makeGalaxy(26, {1.00f, 0.60f, 0.75f}, {1.00f, 0.95f, 0.80f}, 0.85f);
       },
       false},
      {"pati15", makeRingOrb, false},
      {"alus20",
       [] {
         return makeHullPlating(20, {0.36f, 0.42f, 0.50f}, {0.20f, 0.65f, 0.90f});
       },
       false},
      {"epati18", makeToxicBlob, false},
      {"meteor2", makeAsteroidSkin, false},
      {"electric", makeLightningSkin, false},
      {"epati20", makeFireball, false},
      {"pati22", makeStarShot, false},
      {"tausta2",
       [] {
         return makeNebulaBackground(2, {0.15f, 0.35f, 0.95f}, {0.55f, 0.20f, 0.80f}, {0.1f, 0.6f, 0.6f});
       },
       true},
      {"tausta3",
       [] {
         return makeNebulaBackground(3, {0.95f, 0.30f, 0.12f}, {1.00f, 0.62f, 0.20f}, {0.6f, 0.1f, 0.3f});
       },
       true},
      {"alkukuva", [&] { return makeTitlePicture(font); }, true},
  };
  for (const Asset& asset : assets)
    if (!writeAsset(textures, asset)) return 1;
  if (!writeBmp((data / "icon.bmp").string(), makeIcon())) return 1;
  printf("texturegen: %zu textures and the icon written to %s\n", assets.size(), data.c_str());
  return 0;
}
