// A writer for FastTracker 2 extended modules (.xm): 16-bit samples, one sample per
// instrument, volume envelopes, linear frequency table.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace xm {

constexpr uint8_t kKeyOff = 97;

// MIDI note number to the module's note numbering (1 = C-0).
uint8_t noteFromMidi(int midi);

struct Sample {
  std::vector<int16_t> data;
  int loopStart = 0, loopLength = 0;  // in samples; no loop when loopLength is 0
  int volume = 64;                    // 0-64
  int finetune = 0;                   // -128..127, 1/128 semitone
  int relativeNote = 0;               // semitones
  // Tunes the sample so that a note plays at its true pitch: the data holds a tone of
  // contentHz recorded at sampleRate (for one-shots, contentHz = the C-4 pitch).
  void tune(double contentHz, double sampleRate);
};

struct Instrument {
  std::string name;
  Sample sample;
  std::vector<std::pair<int, int>> volumeEnvelope;  // (tick, 0-64); empty = none
  int sustainPoint = -1;                            // envelope point held until key off
  int fadeout = 0;                                  // volume fade per tick after key off
  int vibratoDepth = 0, vibratoRate = 0, vibratoSweep = 0;
};

struct Cell {
  uint8_t note = 0, instrument = 0, volume = 0, effect = 0, param = 0;
};

class Pattern {
 public:
  Pattern(int rows, int channels) : rows_(rows), channels_(channels), cells_(rows * channels) {}
  int rows() const { return rows_; }
  int channels() const { return channels_; }
  Cell& at(int row, int channel) { return cells_[row * channels_ + channel]; }
  const Cell& at(int row, int channel) const { return cells_[row * channels_ + channel]; }

 private:
  int rows_, channels_;
  std::vector<Cell> cells_;
};

struct Module {
  std::string name;
  int channels = 8;
  int speed = 6;  // ticks per row
  int bpm = 125;
  int restart = 0;
  std::vector<uint8_t> order;  // pattern numbers in play order
  std::vector<Pattern> patterns;
  std::vector<Instrument> instruments;  // instrument 1 is instruments[0]
};

// The module as file bytes.
std::string encode(const Module& module);

}  // namespace xm
