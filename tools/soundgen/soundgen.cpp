// soundgen <data folder>: synthesises every ship sound effect and all the music the game
// plays into the data folder. Deterministic: the same build gives the same files.
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "effects.h"
#include "music.h"
#include "writers.h"

namespace {

bool makeFolder(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error)
    std::fprintf(stderr, "soundgen: cannot create folder %s: %s\n", folder.c_str(), error.message().c_str());
  return !error;
}

bool writeEffects(const std::filesystem::path& data) {
  bool ok = true;
  for (const effects::Effect& effect : effects::all())
    ok = audiofile::writeWav((data / effect.file).string(), effects::finish(effect)) && ok;
  return ok;
}

// The music callback that runs while the intro is still playing asks for the start music
// by a backslash path; on this system that is one file name in the data folder itself.
bool copyStartMusicForBackslashPath(const std::filesystem::path& data,
                                    const std::filesystem::path& startMusic) {
  std::error_code error;
  const std::filesystem::path copy = data / "musics\\StartMusic\\start.mp3";
  std::filesystem::copy_file(startMusic, copy, std::filesystem::copy_options::overwrite_existing, error);
  if (error) std::fprintf(stderr, "soundgen: cannot write %s: %s\n", copy.c_str(), error.message().c_str());
  return !error;
}

// Runs the jobs on as many threads as the machine has cores; true when all succeed.
bool runAll(const std::vector<std::function<bool()>>& jobs) {
  std::atomic<size_t> next{0};
  std::atomic<bool> ok{true};
  auto work = [&] {
    for (size_t j; (j = next++) < jobs.size();)
      if (!jobs[j]()) ok = false;
  };
  std::vector<std::thread> threads(std::max(1u, std::thread::hardware_concurrency()) - 1);
  for (std::thread& t : threads) t = std::thread(work);
  work();
  for (std::thread& t : threads) t.join();
  return ok;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: soundgen <data folder>\n");
    return 2;
  }
  const std::filesystem::path data = argv[1];
  const std::filesystem::path musics = data / "musics";
  if (!makeFolder(data) || !makeFolder(musics / "StartMusic")) return 1;

  // The long songs first, so that the short jobs fill in around them.
  std::vector<std::function<bool()>> jobs;
  for (const music::RenderedSong& song : music::renderedSongs())
    jobs.push_back(
        [&song, musics] { return audiofile::writeOgg((musics / song.file).string(), song.render(), 0.4f); });
  jobs.push_back([data] { return writeEffects(data); });
  jobs.push_back([data, musics] {
    const std::filesystem::path startMusic = musics / "StartMusic" / "start.mp3";
    return music::writeStartMusic(startMusic.string()) && copyStartMusicForBackslashPath(data, startMusic);
  });
  jobs.push_back([musics] { return music::writeTrackerSong((musics / "orbit.xm").string()); });
  return runAll(jobs) ? 0 : 1;
}
