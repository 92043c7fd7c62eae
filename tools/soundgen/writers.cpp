#include "writers.h"

#include <lame/lame.h>
#include <vorbis/vorbisenc.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

namespace audiofile {
namespace {

constexpr int kChunkFrames = 8192;

// A file opened for writing that remembers the first error and reports it once.
class OutFile {
 public:
  explicit OutFile(const std::string& path) : path_(path), file_(std::fopen(path.c_str(), "w+b")) {
    if (!file_) fail();
  }
  ~OutFile() {
    if (file_) std::fclose(file_);
  }
  OutFile(const OutFile&) = delete;
  OutFile& operator=(const OutFile&) = delete;

  void write(const void* data, size_t size) {
    if (file_ && size > 0 && std::fwrite(data, 1, size, file_) != size) fail();
  }
  FILE* handle() { return file_; }
  bool close() {
    if (file_ && std::fclose(file_) != 0) {
      file_ = nullptr;
      fail();
    }
    file_ = nullptr;
    return ok_;
  }

 private:
  void fail() {
    if (ok_) std::fprintf(stderr, "soundgen: cannot write %s: %s\n", path_.c_str(), std::strerror(errno));
    ok_ = false;
  }

  std::string path_;
  FILE* file_;
  bool ok_ = true;
};

void putLe(std::string& out, uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) out.push_back(static_cast<char>((value >> (8 * i)) & 0xff));
}

bool encoderFailed(const std::string& path, const char* what) {
  std::fprintf(stderr, "soundgen: cannot encode %s: %s\n", path.c_str(), what);
  return false;
}

}  // namespace

bool writeBytes(const std::string& path, const std::string& bytes) {
  OutFile out(path);
  out.write(bytes.data(), bytes.size());
  return out.close();
}

bool writeWav(const std::string& path, const synth::Samples& mono) {
  const uint32_t dataBytes = static_cast<uint32_t>(mono.size() * 2);
  std::string wav;
  wav.reserve(44 + dataBytes);
  wav += "RIFF";
  putLe(wav, 36 + dataBytes, 4);
  wav += "WAVEfmt ";
  putLe(wav, 16, 4);                // fmt chunk size
  putLe(wav, 1, 2);                 // PCM
  putLe(wav, 1, 2);                 // mono
  putLe(wav, synth::kRate, 4);      // sample rate
  putLe(wav, synth::kRate * 2, 4);  // byte rate
  putLe(wav, 2, 2);                 // block align
  putLe(wav, 16, 2);                // bits per sample
  wav += "data";
  putLe(wav, dataBytes, 4);
  for (float v : mono) putLe(wav, static_cast<uint16_t>(synth::toPcm16(v)), 2);
  return writeBytes(path, wav);
}

bool writeMp3(const std::string& path, const synth::Stereo& music, int kbps) {
  std::unique_ptr<lame_global_flags, int (*)(lame_global_flags*)> lame(lame_init(), lame_close);
  if (!lame) return encoderFailed(path, "LAME did not initialise");
  lame_set_in_samplerate(lame.get(), synth::kRate);
  lame_set_out_samplerate(lame.get(), synth::kRate);
  lame_set_num_channels(lame.get(), 2);
  lame_set_mode(lame.get(), JOINT_STEREO);
  lame_set_brate(lame.get(), kbps);
  lame_set_quality(lame.get(), 2);
  if (lame_init_params(lame.get()) < 0) return encoderFailed(path, "LAME rejected the parameters");

  OutFile out(path);
  std::vector<unsigned char> mp3(kChunkFrames * 5 / 4 + 7200);
  const int total = static_cast<int>(std::min(music.left.size(), music.right.size()));
  for (int start = 0; start < total; start += kChunkFrames) {
    int n = std::min(kChunkFrames, total - start);
    int bytes = lame_encode_buffer_ieee_float(lame.get(), &music.left[start], &music.right[start], n,
                                              mp3.data(), static_cast<int>(mp3.size()));
    if (bytes < 0) return encoderFailed(path, "LAME failed to encode");
    out.write(mp3.data(), bytes);
  }
  int bytes = lame_encode_flush(lame.get(), mp3.data(), static_cast<int>(mp3.size()));
  if (bytes < 0) return encoderFailed(path, "LAME failed to flush");
  out.write(mp3.data(), bytes);
  // Rewrites the leading Info frame with the real length, so that players know the
  // duration (this reads the file back, hence the read-write mode of OutFile).
  if (out.handle()) lame_mp3_tags_fid(lame.get(), out.handle());
  return out.close();
}

namespace {

// The libvorbis state of one encoding, released in reverse order of creation.
struct VorbisEncoder {
  vorbis_info info;
  vorbis_comment comment;
  vorbis_dsp_state dsp;
  vorbis_block block;
  ogg_stream_state stream;
  bool ready = false;

  VorbisEncoder(float quality, int serial) {
    vorbis_info_init(&info);
    if (vorbis_encode_init_vbr(&info, 2, synth::kRate, quality) != 0) return;
    vorbis_comment_init(&comment);
    vorbis_comment_add_tag(&comment, "ENCODER", "soundgen");
    vorbis_analysis_init(&dsp, &info);
    vorbis_block_init(&dsp, &block);
    ogg_stream_init(&stream, serial);
    ready = true;
  }
  ~VorbisEncoder() {
    if (ready) {
      ogg_stream_clear(&stream);
      vorbis_block_clear(&block);
      vorbis_dsp_clear(&dsp);
      vorbis_comment_clear(&comment);
    }
    vorbis_info_clear(&info);
  }
  VorbisEncoder(const VorbisEncoder&) = delete;
  VorbisEncoder& operator=(const VorbisEncoder&) = delete;

  void writeHeaders(OutFile& out) {
    ogg_packet header, commentHeader, codeHeader;
    vorbis_analysis_headerout(&dsp, &comment, &header, &commentHeader, &codeHeader);
    ogg_stream_packetin(&stream, &header);
    ogg_stream_packetin(&stream, &commentHeader);
    ogg_stream_packetin(&stream, &codeHeader);
    ogg_page page;
    while (ogg_stream_flush(&stream, &page) != 0) writePage(out, page);
  }
  // Encodes whatever the analysis buffer holds and writes every finished page; at the
  // end of the stream also the last, partly filled page.
  void drain(OutFile& out, bool endOfStream) {
    ogg_packet packet;
    ogg_page page;
    while (vorbis_analysis_blockout(&dsp, &block) == 1) {
      vorbis_analysis(&block, nullptr);
      vorbis_bitrate_addblock(&block);
      while (vorbis_bitrate_flushpacket(&dsp, &packet) == 1) {
        ogg_stream_packetin(&stream, &packet);
        while (ogg_stream_pageout(&stream, &page) != 0) writePage(out, page);
      }
    }
    while (endOfStream && ogg_stream_flush(&stream, &page) != 0) writePage(out, page);
  }
  static void writePage(OutFile& out, const ogg_page& page) {
    out.write(page.header, page.header_len);
    out.write(page.body, page.body_len);
  }
};

}  // namespace

bool writeOgg(const std::string& path, const synth::Stereo& music, float quality) {
  VorbisEncoder encoder(quality, 0x566f7274);
  if (!encoder.ready) return encoderFailed(path, "libvorbisenc rejected the parameters");
  OutFile out(path);
  encoder.writeHeaders(out);
  const int total = static_cast<int>(std::min(music.left.size(), music.right.size()));
  for (int start = 0; start < total; start += kChunkFrames) {
    int n = std::min(kChunkFrames, total - start);
    float** buffer = vorbis_analysis_buffer(&encoder.dsp, n);
    std::copy_n(&music.left[start], n, buffer[0]);
    std::copy_n(&music.right[start], n, buffer[1]);
    vorbis_analysis_wrote(&encoder.dsp, n);
    encoder.drain(out, false);
  }
  vorbis_analysis_wrote(&encoder.dsp, 0);
  encoder.drain(out, true);
  return out.close();
}

}  // namespace audiofile
