// The game's music: the intro fanfare and the songs of the background playlist.
// Each writer prints a message and returns false when its file cannot be written.
#pragma once

#include <string>

namespace music {

// The intro music: a brass fanfare over timpani and pads that fades out (MP3).
bool writeStartMusic(const std::string& path);
// A tracker song with synthesised instruments, written as an extended module (.xm).
bool writeTrackerSong(const std::string& path);
// A rendered synthesiser song, encoded as Ogg Vorbis; it loops without a seam.
bool writeRenderedSong(const std::string& path);

}  // namespace music
