#include "Sets.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <vector>

#include "Main.h"

namespace {

// Lines are collected into a buffer of this size; anything beyond is dropped.
const int rivinPituus = 40;
const int numeroita = 10;  // digit buffer of arvo, zero included
const int nimenPituus = 21;

std::vector<char> readWholeFile(FILE* f) {
  std::vector<char> data;
  char chunk[4096];
  size_t got;
  while ((got = fread(chunk, 1, sizeof chunk, f)) > 0) data.insert(data.end(), chunk, chunk + got);
  return data;
}

int rajaa(int value, int low, int high) { return std::max(low, std::min(value, high)); }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Every number goes through a 10-character field: the reader (arvo) keeps at most nine
// digits, so a longer number would not read back as written.
void kirjotaLuku(FILE* f, const char* key, int value) {
  char field[10];
  snprintf(field, sizeof field, "%i", value);
  fprintf(f, "%s%s;\r\n", key, field);
}

}  // namespace

void mitoitaSirpaleet(int detail) {
  sirpaleita = sirpaleitaTarkkuudella(detail);
  alkusirpaleita = static_cast<int>(sirpaleita / 12.5);
}

Sets::Sets()
    : width(640),
      height(480),
      fps(100),
      filee(nullptr),
      nick{"Player 1", "Player 2", "Player 3", "Player 4"},
      fileluettu(false),
      ai(0),
      ini(nullptr),
      efects(0),
      musics(0),
      fullscreen(0),
      credits(200),
      musicvolume(100),
      soundvolume(100),
      playermaara(2),
      ihminen{true, true, true, true},
      aikohteet(false),
      team{},
      cammode(0),
      detail(suurinTarkkuus),
      maxdetail(suurinTarkkuus),
      mode256(false) {}

bool Sets::sisaltaa(const char* line, const char* key, int n) {
  int matched = 0;
  for (int i = 0; i < rivinPituus && line[i] != '\0'; i++) {
    matched = (line[i] == key[matched]) ? matched + 1 : 0;
    if (matched >= n) return true;
  }
  return false;
}

int Sets::arvo(const char* line) { return arvo(line, 0); }

// The first run of digits from `start` wins; a later run only overwrites it
// from position 0 when the earlier run has been abandoned (count back at 0).
int Sets::arvo(const char* line, int start) {
  char digits[numeroita] = {};
  int held = 0;
  const int length = static_cast<int>(strnlen(line, rivinPituus));
  for (int i = std::max(start, 0); i < length && held <= 8; i++) {
    if (!isDigit(line[i])) continue;
    if (held == 0) {
      digits[0] = line[i];
      held = 1;
    } else if (i > 0 && isDigit(line[i - 1])) {
      digits[held++] = line[i];
    } else {
      held = 0;
    }
  }
  return atoi(digits);
}

// The value starts at character 7: the line begins with the line feed of the
// previous line's ";\r\n", then "nickN=".
void Sets::nimi(char* dest, const char* line) {
  memset(dest, 0, nimenPituus);
  const int length = static_cast<int>(strnlen(line, rivinPituus));
  for (int i = 7; i < length && i - 7 < nimenPituus - 1; i++)
    dest[i - 7] = static_cast<char>(tolower(static_cast<unsigned char>(line[i])));
}

namespace {

// Applies every key that the line contains; one line may feed several fields.
void lueRivi(Sets& s, const char* line) {
  char key[24];
  for (int k = 0; k < 4; k++) {
    snprintf(key, sizeof key, "nick%i=", k + 1);
    if (s.sisaltaa(line, key, 5)) s.nimi(s.nick[k], line);
  }
  if (s.sisaltaa(line, "screenwidth", 10)) s.width = s.arvo(line);
  if (s.sisaltaa(line, "cammode", 6)) s.cammode = s.arvo(line);
  if (s.sisaltaa(line, "screenheight", 10)) s.height = s.arvo(line);
  if (s.sisaltaa(line, "soundeffects", 7)) s.efects = s.arvo(line);
  if (s.sisaltaa(line, "musics", 6)) s.musics = s.arvo(line);
  if (s.sisaltaa(line, "detail", 6)) {
    s.detail = rajaa(s.arvo(line), 0, s.maxdetail);
    mitoitaSirpaleet(s.detail);
  }
  if (s.sisaltaa(line, "mode256", 7)) {
    const int value = s.arvo(line, 8);
    s.mode256 = value >= 1;
    printf("juttu:%i\n", value);
  }
  if (s.sisaltaa(line, "ai vs ai", 6)) s.aikohteet = s.arvo(line) >= 1;
  for (int slot = 1; slot <= 10; slot++) {
    snprintf(key, sizeof key, "player%iteam", slot);
    if (s.sisaltaa(line, key, 9)) s.team[slot - 1] = rajaa(s.arvo(line, 9) - 1, 0, 15);
  }
  if (s.sisaltaa(line, "player1ihmis", 10)) s.ihminen[0] = s.arvo(line, 10) >= 1;
  for (int slot = 2; slot <= 4; slot++) {
    snprintf(key, sizeof key, "player%iihmis", slot);
    if (s.sisaltaa(line, key, 9)) s.ihminen[slot - 1] = s.arvo(line, 9) >= 1;
  }
  if (s.sisaltaa(line, "sound volume", 7)) s.soundvolume = static_cast<float>(rajaa(s.arvo(line), 0, 100));
  if (s.sisaltaa(line, "music volume", 10)) s.musicvolume = static_cast<float>(rajaa(s.arvo(line), 0, 100));
  if (s.sisaltaa(line, "credits", 6)) s.credits = rajaa(s.arvo(line), 20, 1000);
  if (s.sisaltaa(line, "fullscreen", 8)) s.fullscreen = s.arvo(line);
  if (s.sisaltaa(line, "test", 4)) s.ai = s.arvo(line);
  if (s.sisaltaa(line, "fps", 3)) s.fps = rajaa(s.arvo(line), 50, 200);
  if (s.sisaltaa(line, "players", 7)) s.playermaara = rajaa(s.arvo(line), 2, 16);
}

}  // namespace

bool Sets::loadFile(const char* path) {
  if (fileluettu) return true;
  filee = path;
  ini = fopen(path, "rb");
  if (!ini) return false;
  const std::vector<char> data = readWholeFile(ini);
  fclose(ini);
  ini = nullptr;

  const size_t size = data.size();
  size_t pos = 0;
  bool ended = false;
  while (pos < size && !ended) {
    char line[rivinPituus] = {};
    int length = 0;
    char previous = '\0';  // within this line: its leading line feed ends nothing
    for (; pos < size; previous = data[pos], pos++) {
      const char c = data[pos];
      if (c == ']') {
        ended = true;
        break;
      }
      if (c == ';') {
        pos += 2;  // the next line keeps the line feed of ";\r\n"
        break;
      }
      if (c == '\n' && previous == '\r') {
        pos++;
        break;
      }
      if (length < rivinPituus - 1) line[length++] = c;
    }
    lueRivi(*this, line);
  }
  fileluettu = true;
  return true;
}

bool Sets::saveFile() {
  printf("pl:%i", playermaara);
  ini = fopen("sets.txt", "wb");
  if (!ini) return false;
  kirjotaLuku(ini, "screenwidth=", width);
  kirjotaLuku(ini, "screenheight=", height);
  kirjotaLuku(ini, "soundeffects=", efects);
  kirjotaLuku(ini, "musics=", musics);
  kirjotaLuku(ini, "fullscreen=", fullscreen);
  kirjotaLuku(ini, "credits=", static_cast<int>(credits));
  kirjotaLuku(ini, "testopponent=", ai);
  kirjotaLuku(ini, "fps=", fps);
  kirjotaLuku(ini, "music volume=", static_cast<int>(musicvolume));
  kirjotaLuku(ini, "sound volume=", static_cast<int>(soundvolume));
  kirjotaLuku(ini, "players=", playermaara);
  kirjotaLuku(ini, "ai vs ai=", aikohteet ? 1 : 0);
  for (int k = 0; k < 4; k++) fprintf(ini, "nick%i=%.20s;\r\n", k + 1, nick[k]);
  kirjotaLuku(ini, "cammode=", cammode);
  kirjotaLuku(ini, "detail=", detail);
  kirjotaLuku(ini, "mode256=", mode256 ? 1 : 0);
  for (int slot = 0; slot < 16; slot++)
    fprintf(ini, "player%iihmispelaaja=%i;\r\n", slot + 1, ihminen[slot] ? 1 : 0);
  for (int slot = 0; slot < 16; slot++) fprintf(ini, "player%iteam=%i;\r\n", slot + 1, team[slot] + 1);
  fprintf(ini, "[]\r\n");
  const bool written = !ferror(ini);
  const bool closed = fclose(ini) == 0;
  ini = nullptr;
  return written && closed;
}
