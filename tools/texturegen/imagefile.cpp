#include "imagefile.h"

#include <png.h>

#include <cerrno>
#include <csetjmp>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

struct FileCloser {
  void operator()(FILE* f) const { fclose(f); }
};
using File = std::unique_ptr<FILE, FileCloser>;

File openForWriting(const std::string& path) {
  File f(fopen(path.c_str(), "wb"));
  if (!f) printf("texturegen: cannot write %s: %s\n", path.c_str(), strerror(errno));
  return f;
}

bool finish(File f, const std::string& path) {
  const bool ok = !ferror(f.get()) && fclose(f.release()) == 0;
  if (!ok) printf("texturegen: error while writing %s\n", path.c_str());
  return ok;
}

void putLe(std::vector<unsigned char>& out, uint32_t v, int bytes) {
  for (int i = 0; i < bytes; ++i) out.push_back(static_cast<unsigned char>(v >> (8 * i)));
}

}  // namespace

bool writePng(const std::string& path, const Image& image) {
  File f = openForWriting(path);
  if (!f) return false;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  if (!info) {
    png_destroy_write_struct(&png, nullptr);
    printf("texturegen: out of memory writing %s\n", path.c_str());
    return false;
  }
  // Kept outside the setjmp scope so that a libpng error cannot skip its destructor.
  const std::vector<unsigned char> rgb = image.bytes();
  if (setjmp(png_jmpbuf(png))) {
    png_destroy_write_struct(&png, &info);
    printf("texturegen: libpng failed writing %s\n", path.c_str());
    return false;
  }
  png_init_io(png, f.get());
  png_set_IHDR(png, info, image.width(), image.height(), 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  const size_t stride = static_cast<size_t>(image.width()) * 3;
  for (int y = 0; y < image.height(); ++y) png_write_row(png, rgb.data() + y * stride);
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  return finish(std::move(f), path);
}

bool writeBmp(const std::string& path, const Image& image) {
  const uint32_t stride = (static_cast<uint32_t>(image.width()) * 3 + 3) & ~3u;
  const uint32_t pixelBytes = stride * image.height();
  const uint32_t headerBytes = 14 + 40;
  std::vector<unsigned char> out;
  out.reserve(headerBytes + pixelBytes);
  out.push_back('B');
  out.push_back('M');
  putLe(out, headerBytes + pixelBytes, 4);
  putLe(out, 0, 4);
  putLe(out, headerBytes, 4);
  putLe(out, 40, 4);  // BITMAPINFOHEADER
  putLe(out, image.width(), 4);
  putLe(out, image.height(), 4);  // positive: rows stored bottom-up
  putLe(out, 1, 2);
  putLe(out, 24, 2);
  putLe(out, 0, 4);  // no compression
  putLe(out, pixelBytes, 4);
  putLe(out, 2835, 4);  // 72 dpi
  putLe(out, 2835, 4);
  putLe(out, 0, 4);
  putLe(out, 0, 4);
  const std::vector<unsigned char> rgb = image.bytes();
  for (int y = image.height() - 1; y >= 0; --y) {
    const unsigned char* row = rgb.data() + static_cast<size_t>(y) * image.width() * 3;
    for (int x = 0; x < image.width(); ++x) {
      out.push_back(row[x * 3 + 2]);
      out.push_back(row[x * 3 + 1]);
      out.push_back(row[x * 3]);
    }
    for (uint32_t pad = image.width() * 3; pad < stride; ++pad) out.push_back(0);
  }
  File f = openForWriting(path);
  if (!f) return false;
  fwrite(out.data(), 1, out.size(), f.get());
  return finish(std::move(f), path);
}
