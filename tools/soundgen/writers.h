// File writers for the generated audio. Each returns false after printing a message
// that names the file and the reason when the file cannot be written.
#pragma once

#include <string>

#include "synth.h"

namespace audiofile {

// 16-bit PCM mono WAV at synth::kRate.
bool writeWav(const std::string& path, const synth::Samples& mono);
// MPEG-1 Layer III, 44.1 kHz joint stereo, constant bit rate (LAME).
bool writeMp3(const std::string& path, const synth::Stereo& music, int kbps);
// Ogg Vorbis, 44.1 kHz stereo, variable bit rate at `quality` (-0.1 to 1).
bool writeOgg(const std::string& path, const synth::Stereo& music, float quality);
// Raw bytes (the tracker module writer builds its image in memory).
bool writeBytes(const std::string& path, const std::string& bytes);

}  // namespace audiofile
