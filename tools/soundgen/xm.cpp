#include "xm.h"

#include <algorithm>
#include <cmath>

namespace xm {
namespace {

constexpr int kEnvelopePoints = 12;
constexpr uint32_t kInstrumentHeaderSize = 263;
constexpr uint32_t kSampleHeaderSize = 40;
constexpr double kC4Rate = 8363.0;  // playback rate of C-4 with no tuning
constexpr double kC4Hz = 261.6255653;

class Bytes {
 public:
  void u8(int v) { out_.push_back(static_cast<char>(v & 0xff)); }
  void u16(int v) {
    u8(v);
    u8(v >> 8);
  }
  void u32(uint32_t v) {
    u16(static_cast<int>(v & 0xffff));
    u16(static_cast<int>(v >> 16));
  }
  // Fixed-width text field, zero padded (and cut when too long).
  void text(const std::string& s, size_t width) {
    for (size_t i = 0; i < width; ++i) u8(i < s.size() ? s[i] : 0);
  }
  void zeros(size_t n) { out_.append(n, '\0'); }
  void raw(const std::string& s) { out_ += s; }
  std::string& str() { return out_; }

 private:
  std::string out_;
};

void header(Bytes& b, const Module& m) {
  b.raw("Extended Module: ");
  b.text(m.name, 20);
  b.u8(0x1a);
  b.text("soundgen", 20);
  b.u16(0x0104);
  b.u32(276);  // header size counted from this field: 20 bytes of fields + 256 of order table
  b.u16(static_cast<int>(m.order.size()));
  b.u16(m.restart);
  b.u16(m.channels);
  b.u16(static_cast<int>(m.patterns.size()));
  b.u16(static_cast<int>(m.instruments.size()));
  b.u16(1);  // linear frequency table
  b.u16(m.speed);
  b.u16(m.bpm);
  for (size_t i = 0; i < 256; ++i) b.u8(i < m.order.size() ? m.order[i] : 0);
}

// One cell in the packed form: a flag byte names the fields that follow.
void packCell(Bytes& b, const Cell& c) {
  int flags = 0x80;
  if (c.note) flags |= 0x01;
  if (c.instrument) flags |= 0x02;
  if (c.volume) flags |= 0x04;
  if (c.effect) flags |= 0x08;
  if (c.param) flags |= 0x10;
  b.u8(flags);
  if (c.note) b.u8(c.note);
  if (c.instrument) b.u8(c.instrument);
  if (c.volume) b.u8(c.volume);
  if (c.effect) b.u8(c.effect);
  if (c.param) b.u8(c.param);
}

void pattern(Bytes& b, const Pattern& p) {
  Bytes packed;
  for (int row = 0; row < p.rows(); ++row)
    for (int channel = 0; channel < p.channels(); ++channel) packCell(packed, p.at(row, channel));
  b.u32(9);  // pattern header length
  b.u8(0);   // packing type
  b.u16(p.rows());
  b.u16(static_cast<int>(packed.str().size()));
  b.raw(packed.str());
}

void envelopePoints(Bytes& b, const std::vector<std::pair<int, int>>& points) {
  for (int i = 0; i < kEnvelopePoints; ++i) {
    bool used = i < static_cast<int>(points.size());
    b.u16(used ? points[i].first : 0);
    b.u16(used ? points[i].second : 0);
  }
}

void instrument(Bytes& b, const Instrument& ins) {
  const Sample& s = ins.sample;
  const int points = std::min(static_cast<int>(ins.volumeEnvelope.size()), kEnvelopePoints);
  b.u32(kInstrumentHeaderSize);
  b.text(ins.name, 22);
  b.u8(0);   // type
  b.u16(1);  // one sample
  b.u32(kSampleHeaderSize);
  b.zeros(96);  // every note plays sample 0
  envelopePoints(b, ins.volumeEnvelope);
  envelopePoints(b, {});
  b.u8(points);
  b.u8(0);
  b.u8(std::max(ins.sustainPoint, 0));
  b.u8(0);  // volume loop start and end
  b.u8(0);
  b.u8(0);  // panning sustain, loop start and end
  b.u8(0);
  b.u8(0);
  b.u8((points > 0 ? 1 : 0) | (ins.sustainPoint >= 0 ? 2 : 0));
  b.u8(0);  // panning envelope off
  b.u8(0);  // vibrato: sine
  b.u8(ins.vibratoSweep);
  b.u8(ins.vibratoDepth);
  b.u8(ins.vibratoRate);
  b.u16(ins.fadeout);
  b.zeros(22);

  const bool loops = s.loopLength > 0;
  b.u32(static_cast<uint32_t>(s.data.size() * 2));
  b.u32(static_cast<uint32_t>(loops ? s.loopStart * 2 : 0));
  b.u32(static_cast<uint32_t>(loops ? s.loopLength * 2 : 0));
  b.u8(s.volume);
  b.u8(s.finetune);
  b.u8((loops ? 1 : 0) | 0x10);  // forward loop, 16-bit data
  b.u8(128);                     // centre panning
  b.u8(s.relativeNote);
  b.u8(0);  // delta-coded data
  b.text(ins.name, 22);
  int16_t previous = 0;
  for (int16_t v : s.data) {
    b.u16(static_cast<uint16_t>(v - previous));
    previous = v;
  }
}

}  // namespace

uint8_t noteFromMidi(int midi) { return static_cast<uint8_t>(std::clamp(midi - 11, 1, 96)); }

void Sample::tune(double contentHz, double sampleRate) {
  double c4Rate = kC4Hz / contentHz * sampleRate;
  double semitones = 12.0 * std::log2(c4Rate / kC4Rate);
  relativeNote = static_cast<int>(std::lround(semitones));
  finetune = static_cast<int>(std::lround((semitones - relativeNote) * 128.0));
}

std::string encode(const Module& module) {
  Bytes b;
  header(b, module);
  for (const Pattern& p : module.patterns) pattern(b, p);
  for (const Instrument& ins : module.instruments) instrument(b, ins);
  return std::move(b.str());
}

}  // namespace xm
