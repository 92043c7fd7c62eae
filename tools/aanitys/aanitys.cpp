// Records the sound of a sixteen-ship battle of computer pilots, as the game mixes it,
// through SDL's disk audio driver, and counts the samples at full scale: the measure
// of a mix that clips.
//
//   aanitys <data folder> [--seconds S] [--music FILE] [--seed N] [--raw FILE]
//
// FILE is relative to the data folder. Prints the full-scale samples of every second
// that has any, then the total; --raw keeps the recording (16-bit stereo at 44.1 kHz).
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "taisteluaani.h"

namespace {

struct Asetukset {
  const char* kansio = nullptr;
  double sekunteja = 60;
  const char* kappale = nullptr;
  unsigned siemen = 1;
  const char* raaka = nullptr;
};

bool lueAsetukset(int argc, char** argv, Asetukset& a) {
  for (int k = 1; k < argc; ++k) {
    const bool arvollinen = k + 1 < argc;
    if (arvollinen && std::strcmp(argv[k], "--seconds") == 0) {
      a.sekunteja = std::atof(argv[++k]);
    } else if (arvollinen && std::strcmp(argv[k], "--music") == 0) {
      a.kappale = argv[++k];
    } else if (arvollinen && std::strcmp(argv[k], "--seed") == 0) {
      a.siemen = static_cast<unsigned>(std::atoi(argv[++k]));
    } else if (arvollinen && std::strcmp(argv[k], "--raw") == 0) {
      a.raaka = argv[++k];
    } else if (argv[k][0] != '-' && !a.kansio) {
      a.kansio = argv[k];
    } else {
      return false;
    }
  }
  return a.kansio && a.sekunteja > 0;
}

// Play prints its progress lines for every sound; they would bury the figures.
template <class F>
void hiljaa(F tee) {
  std::fflush(stdout);
  const int vanha = dup(STDOUT_FILENO);
  if (!std::freopen("/dev/null", "w", stdout)) return;
  tee();
  std::fflush(stdout);
  dup2(vanha, STDOUT_FILENO);
  close(vanha);
}

void tallenna(const char* polku, const taisteluaani::Nauhoitus& n) {
  FILE* f = std::fopen(polku, "wb");
  if (!f || std::fwrite(n.naytteet.data(), 2, n.naytteet.size(), f) != n.naytteet.size())
    std::fprintf(stderr, "aanitys: cannot write %s\n", polku);
  if (f) std::fclose(f);
}

}  // namespace

int main(int argc, char** argv) {
  Asetukset a;
  if (!lueAsetukset(argc, argv, a)) {
    std::fprintf(stderr,
                 "usage: aanitys <data folder> [--seconds S] [--music FILE] [--seed N] [--raw FILE]\n");
    return 2;
  }
  if (chdir(a.kansio) != 0) {
    std::perror(a.kansio);
    return 1;
  }
  taisteluaani::Nauhoitus n;
  bool onnistui = false;
  hiljaa([&] { onnistui = taisteluaani::nauhoita(a.sekunteja, a.kappale, a.siemen, n); });
  if (!onnistui) {
    std::fprintf(stderr, "aanitys: the recording failed\n");
    return 1;
  }
  if (a.raaka) tallenna(a.raaka, n);
  const size_t sekunti = 2 * taisteluaani::naytetaajuus;
  long kaikki = 0, pahin = 0, leikkaavia = 0;
  const std::vector<int16_t>& s = n.naytteet;
  for (size_t alku = 0; alku < s.size(); alku += sekunti) {
    const long taysia = taisteluaani::taysia(s, alku, alku + sekunti);
    if (taysia > 0) std::printf("second %zu: %ld\n", alku / sekunti + 1, taysia);
    kaikki += taysia;
    pahin = std::max(pahin, taysia);
    leikkaavia += taysia > 0;
  }
  std::printf("%zu samples, %ld at full scale (%.4f %%) in %ld of %zu seconds, at most %ld in one second\n",
              s.size(), kaikki, 100.0 * kaikki / s.size(), leikkaavia, s.size() / sekunti, pahin);
  std::printf("clipped inside the mixer before its limiter: %ld (%.4f %%)\n", n.mikserissa,
              100.0 * n.mikserissa / s.size());
  return 0;
}
