// The game's music: the intro fanfare and the songs of the background playlist.
// Each writer prints a message and returns false when its file cannot be written.
#pragma once

#include <string>
#include <vector>

#include "arrange.h"

namespace music {

// The intro music: a brass fanfare over timpani and pads that fades out (MP3).
bool writeStartMusic(const std::string& path);
// A tracker song with synthesised instruments, written as an extended module (.xm).
bool writeTrackerSong(const std::string& path);

// A playlist song rendered sample by sample, to be encoded as Ogg Vorbis.
struct RenderedSong {
  const char* file;  // in the music folder
  arrange::Song (*arrangement)();
  synth::Stereo render() const;
};
const std::vector<RenderedSong>& renderedSongs();

}  // namespace music
