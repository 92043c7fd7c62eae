// Building blocks of the sound effects: each layer renders itself into a buffer
// (added to what is there), starting at its own offset and lasting until its envelope
// has died away or the buffer ends. The chained setters keep each effect readable.
#pragma once

#include <cstdint>

#include "synth.h"

namespace layers {

// Timing and level shared by every layer: where it starts, its percussive envelope
// (linear attack, exponential decay to -60 dB), an optional tremolo and its gain.
struct Envelope {
  double start = 0.0;
  double attack = 0.001, decay = 0.2;
  double tremoloHz = 0.0, tremoloDepth = 0.0;  // depth 0..1
  float gain = 1.0f;
};

// The chained setters every layer has; Self is the layer type they return.
template <class Self>
class Layer {
 public:
  Self& envelope(double attack, double decay) {
    env_.attack = attack;
    env_.decay = decay;
    return self();
  }
  Self& tremolo(double hz, double depth) {
    env_.tremoloHz = hz;
    env_.tremoloDepth = depth;
    return self();
  }
  Self& at(double startSeconds) {
    env_.start = startSeconds;
    return self();
  }
  Self& gain(float g) {
    env_.gain = g;
    return self();
  }

 protected:
  Envelope env_;

 private:
  Self& self() { return static_cast<Self&>(*this); }
};

// A pitched voice: oscillator with an exponential pitch sweep, optional sine FM,
// optional resonant low-pass with its own sweep, percussive envelope.
class Tone : public Layer<Tone> {
 public:
  explicit Tone(synth::Osc::Shape shape) : shape_(shape) {}
  Tone& pitch(double hz) { return sweep(hz, hz, 0.0); }
  Tone& sweep(double fromHz, double toHz, double seconds);
  // Modulator at carrier * ratio; the index glides from `from` to `to` over the decay.
  Tone& fm(double ratio, double from, double to);
  Tone& lowpass(double fromHz, double toHz, double q);
  void addTo(synth::Samples& s) const;

 private:
  synth::Osc::Shape shape_;
  double fromHz_ = 440.0, toHz_ = 440.0, sweepSeconds_ = 0.0;
  double fmRatio_ = 0.0, fmFrom_ = 0.0, fmTo_ = 0.0;
  double cutFrom_ = 0.0, cutTo_ = 0.0, q_ = 0.707;
};

// Filtered white noise with a swept filter and a percussive envelope.
class NoiseBurst : public Layer<NoiseBurst> {
 public:
  enum Mode { Low, Band, High };
  explicit NoiseBurst(uint32_t seed) : seed_(seed) {}
  NoiseBurst& filter(Mode mode, double fromHz, double toHz, double sweepSeconds, double q);
  void addTo(synth::Samples& s) const;

 private:
  uint32_t seed_;
  Mode mode_ = Low;
  double fromHz_ = 8000.0, toHz_ = 8000.0, sweepSeconds_ = 0.0, q_ = 0.707;
};

// Sparse sharp clicks whose rate thins out over `duration`: the crackle of burning debris.
void addCrackle(synth::Samples& s, uint32_t seed, double start, double duration, double clicksPerSecond,
                float gain);
// Soft clipping: thickens booms and blasts without hard edges.
void saturate(synth::Samples& s, float drive);

}  // namespace layers
