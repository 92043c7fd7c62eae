// Recording the sound of a headless battle through SDL's disk audio driver. The world
// step runs inside the mixer's own callback, once for every 10 ms of sound mixed, so
// every effect starts in the mixing buffer where the game would start it, and the
// recording runs as fast as the machine can. Used by the mix test and the recording
// tool; the working directory must be the data folder (the samples load from it).
// Header-only, like the scene helpers it builds on.
#pragma once

#include <SDL/SDL_mixer.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "ai.h"
#include "audio.h"
#include "simscene.h"

namespace taisteluaani {

const int naytetaajuus = 44100;

struct Nauhoitus {
  std::vector<int16_t> naytteet;  // interleaved stereo, 16-bit
  long mikserissa = 0;            // samples the mixer clipped before its limiter meanwhile
};

// Samples at the top or bottom of the 16-bit range within [alku, loppu).
inline long taysia(const std::vector<int16_t>& s, size_t alku, size_t loppu) {
  long n = 0;
  for (size_t i = alku; i < loppu && i < s.size(); ++i) n += s[i] == 32767 || s[i] == -32768;
  return n;
}

namespace sisainen {

inline std::atomic<bool> valmis{false};
inline size_t merkinNaytteet = 0;  // 0 until the battle's first buffer
inline long mikseroity = 0;        // sample frames of the battle mixed so far
inline long ennenAlkua = 0;        // samples clipped in the mixer before the battle
inline long tavoite = 0;           // sample frames to record
inline int seuraavaFreimi = 1;
inline Sound* musiikki = nullptr;
inline Nauhoitus tulos;
const int16_t merkki = 257;

// A post-mix effect on the mixer thread. The driver writes silence until the battle
// starts, so the battle's first buffer carries a marker instead of sound and the
// recording starts right after it. The sound just mixed reaches the file next: the
// frames whose time it covered run now, and their sounds start in the next buffer.
inline void askel(int, void* puskuri, int tavuja, void*) {
  if (valmis) return;
  if (merkinNaytteet == 0) {
    merkinNaytteet = static_cast<size_t>(tavuja / 2);
    std::fill_n(static_cast<int16_t*>(puskuri), merkinNaytteet, merkki);
    if (musiikki) musiikki->play();
    ennenAlkua = clippedInMixer();
    return;
  }
  mikseroity += tavuja / 4;
  while (seuraavaFreimi * static_cast<long>(naytetaajuus) / 100 < mikseroity)
    calculateFrame(seuraavaFreimi++);
  // One buffer more than asked for: the mixer's limiter holds back a little of the end.
  if (mikseroity < tavoite + tavuja / 4) return;
  tulos.mikserissa = clippedInMixer() - ennenAlkua;
  valmis = true;
}

// Sixteen computer pilots of the top level on sixteen ship types, all against all.
inline void asetaTaistelu(unsigned siemen) {
  simscene::maailma(maxPlayers, 1, siemen);
  alota();  // again, with the samples now that the mixer is open
  efektitpaalla = true;
  gamemode = 0;
  sets.aikohteet = true;
  sets.ai = aiTasoja - 1;
  aiAlusta();
  for (int i = 0; i < maxPlayers; ++i) {
    const float kulma = i * 22.5f * saannot::pii / 180;
    simscene::laita(i, (i * 5) % alustyyppeja, std::cos(kulma) * 110, std::sin(kulma) * 90, i * 22.5f + 180)
        .ihmispelaaja = false;
  }
  alustaAsteroidit();
}

// The battle's part of what the driver wrote: after the silence and the marker.
inline std::vector<int16_t> leikkaa(const char* tiedosto) {
  std::vector<int16_t> kaikki;
  if (FILE* f = std::fopen(tiedosto, "rb")) {
    int16_t lohko[4096];
    for (size_t n; (n = std::fread(lohko, 2, 4096, f)) > 0;) kaikki.insert(kaikki.end(), lohko, lohko + n);
    std::fclose(f);
  }
  const auto ensimmainen = std::find_if(kaikki.begin(), kaikki.end(), [](int16_t v) { return v != 0; });
  const size_t alku =
      std::min(static_cast<size_t>(ensimmainen - kaikki.begin()) + merkinNaytteet, kaikki.size());
  const size_t loppu = std::min(kaikki.size(), alku + 2 * tavoite);
  return std::vector<int16_t>(kaikki.begin() + alku, kaikki.begin() + loppu);
}

}  // namespace sisainen

// Records `sekunnit` of the battle, effects and music at the settings' default volumes,
// with the music file `kappale` looping from the first sample (none when null). Play's
// progress lines go to standard output as in the game. False when the mixer cannot be
// opened or the recording comes out short.
inline bool nauhoita(double sekunnit, const char* kappale, unsigned siemen, Nauhoitus& nauhoitus) {
  using namespace sisainen;
  char tiedosto[] = "/tmp/taisteluaani-XXXXXX";
  const int fd = mkstemp(tiedosto);
  if (fd < 0) return false;
  close(fd);
  setenv("SDL_AUDIODRIVER", "disk", 1);
  setenv("SDL_DISKAUDIOFILE", tiedosto, 1);
  setenv("SDL_DISKAUDIODELAY", "1", 1);  // milliseconds a buffer: fast, yet a slow start writes little
  initAudio();
  if (!working) {
    std::remove(tiedosto);
    return false;
  }
  sets.soundvolume = sets.musicvolume = 100;
  asetaTaistelu(siemen);
  musiikki = kappale ? new Sound(kappale, true) : nullptr;
  valmis = false;
  merkinNaytteet = 0;
  mikseroity = 0;
  seuraavaFreimi = 1;
  tavoite = static_cast<long>(sekunnit * naytetaajuus);
  Mix_RegisterEffect(MIX_CHANNEL_POST, askel, nullptr, nullptr);
  // Far faster than real time; a mixer that stalls is given up on after the real time.
  for (int odotettu = 0; !valmis && odotettu < 10000 + sekunnit * 1000; odotettu += 5) SDL_Delay(5);
  SDL_LockAudio();
  valmis = true;  // the battle stops here, whether done or not
  SDL_UnlockAudio();
  Mix_UnregisterEffect(MIX_CHANNEL_POST, askel);
  delete musiikki;
  musiikki = nullptr;
  uninitAudio();
  tulos.naytteet = leikkaa(tiedosto);
  std::remove(tiedosto);
  nauhoitus = tulos;
  return nauhoitus.naytteet.size() == static_cast<size_t>(2 * tavoite);
}

}  // namespace taisteluaani
