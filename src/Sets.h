// The settings record and its forgiving "sets.txt" reader and writer.
#pragma once

#include <cstdio>

// The highest detail level; `detail` is kept within 0 and it.
const int suurinTarkkuus = 3;
// The explosion debris pool in use at a detail level.
constexpr int sirpaleitaTarkkuudella(int detail) { return detail * 500 + 1000; }
// Sizes `sirpaleita` for a detail level, and `alkusirpaleita` (the start shards of a
// ship, a 12.5th of the pool) with it.
void mitoitaSirpaleet(int detail);

class Sets {
 public:
  int width;
  int height;
  int fps;
  const char* filee;
  char nick[4][21];
  bool fileluettu;
  int ai;
  FILE* ini;
  int efects;
  int musics;
  int fullscreen;
  double credits;
  float musicvolume;
  float soundvolume;
  int playermaara;
  bool ihminen[16];
  bool aikohteet;
  int team[16];
  int cammode;
  int detail;
  int maxdetail;
  bool mode256;

  Sets();
  bool loadFile(const char* path);
  bool saveFile();

  // Reader helpers (public as the rest of the record).
  bool sisaltaa(const char* line, const char* key, int n);
  int arvo(const char* line);
  int arvo(const char* line, int start);
  void nimi(char* dest, const char* line);
};
