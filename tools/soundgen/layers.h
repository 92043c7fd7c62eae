// Building blocks of the sound effects: each layer renders itself into a buffer
// (added to what is there), starting at its own offset and lasting until its envelope
// has died away or the buffer ends. The chained setters keep each effect readable.
#pragma once

#include <cstdint>

#include "synth.h"

namespace layers {

// A pitched voice: oscillator with an exponential pitch sweep, optional sine FM,
// optional resonant low-pass with its own sweep, percussive envelope.
class Tone {
public:
  explicit Tone(synth::Osc::Shape shape) : shape_(shape) {}
  Tone& pitch(double hz) { return sweep(hz, hz, 0.0); }
  Tone& sweep(double fromHz, double toHz, double seconds);
  Tone& envelope(double attack, double decay);
  // Modulator at carrier * ratio; the index glides from `from` to `to` over the decay.
  Tone& fm(double ratio, double from, double to);
  Tone& lowpass(double fromHz, double toHz, double q);
  // Amplitude wobble, depth 0..1.
  Tone& tremolo(double hz, double depth);
  Tone& at(double startSeconds);
  Tone& gain(float g);
  void addTo(synth::Samples& s) const;

private:
  synth::Osc::Shape shape_;
  double fromHz_ = 440.0, toHz_ = 440.0, sweepSeconds_ = 0.0;
  double attack_ = 0.001, decay_ = 0.2;
  double fmRatio_ = 0.0, fmFrom_ = 0.0, fmTo_ = 0.0;
  double cutFrom_ = 0.0, cutTo_ = 0.0, q_ = 0.707;
  double tremoloHz_ = 0.0, tremoloDepth_ = 0.0;
  double start_ = 0.0;
  float gain_ = 1.0f;
};

// Filtered white noise with a swept filter and a percussive envelope.
class NoiseBurst {
public:
  enum Mode { Low, Band, High };
  explicit NoiseBurst(uint32_t seed) : seed_(seed) {}
  NoiseBurst& filter(Mode mode, double fromHz, double toHz, double sweepSeconds, double q);
  NoiseBurst& envelope(double attack, double decay);
  NoiseBurst& tremolo(double hz, double depth);
  NoiseBurst& at(double startSeconds);
  NoiseBurst& gain(float g);
  void addTo(synth::Samples& s) const;

private:
  uint32_t seed_;
  Mode mode_ = Low;
  double fromHz_ = 8000.0, toHz_ = 8000.0, sweepSeconds_ = 0.0, q_ = 0.707;
  double attack_ = 0.001, decay_ = 0.2;
  double tremoloHz_ = 0.0, tremoloDepth_ = 0.0;
  double start_ = 0.0;
  float gain_ = 1.0f;
};

// Sparse sharp clicks whose rate thins out over `duration`: the crackle of burning debris.
void addCrackle(synth::Samples& s, uint32_t seed, double start, double duration, double clicksPerSecond,
                float gain);
// Soft clipping: thickens booms and blasts without hard edges.
void saturate(synth::Samples& s, float drive);

}  // namespace layers
