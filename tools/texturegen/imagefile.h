// Writing images to disk: 8-bit RGB PNG for the textures, 24-bit BMP for the window icon.
#pragma once

#include <string>

#include "image.h"

// Both print a message naming the file and return false when it cannot be written.
bool writePng(const std::string& path, const Image& image);
bool writeBmp(const std::string& path, const Image& image);
