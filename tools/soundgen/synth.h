// A small synthesis toolkit: oscillators, noise, envelopes and filters that the
// sound effects, the tracker instruments and the rendered music are built from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace synth {

constexpr int kRate = 44100;  // every generated signal runs at this rate
constexpr double kPi = 3.14159265358979323846;
constexpr double kTwoPi = 2.0 * kPi;

using Samples = std::vector<float>;

struct Stereo {
  Samples left, right;
};

int frames(double seconds);
double seconds(int frameIndex);
double midiToHz(double note);

// Deterministic white noise in [-1, 1]: every sound owns a seed, so the files come out
// identical from build to build.
class Noise {
 public:
  explicit Noise(uint32_t seed) : state_(seed ? seed : 0x9e3779b9u) {}
  float next();
  double uniform();  // [0, 1)

 private:
  uint32_t state_;
};

// Phase accumulator oscillator: the frequency may change every sample (sweeps, FM,
// vibrato). Saw and square are band-limited with polyBLEP so high notes stay clean.
class Osc {
 public:
  enum Shape { Sine, Saw, Square, Triangle };
  explicit Osc(Shape shape, double phase = 0.0) : shape_(shape), phase_(phase) {}
  float next(double hz);
  void setPulseWidth(double width) { width_ = width; }

 private:
  Shape shape_;
  double phase_;
  double width_ = 0.5;
};

// Zavalishin's trapezoidal state-variable filter: stable under fast cutoff sweeps.
class Svf {
 public:
  struct Out {
    float low, band, high;
  };
  Out process(float in, double cutoffHz, double q);
  float lowpass(float in, double cutoffHz, double q = 0.707) { return process(in, cutoffHz, q).low; }
  float bandpass(float in, double cutoffHz, double q) { return process(in, cutoffHz, q).band; }
  float highpass(float in, double cutoffHz, double q = 0.707) { return process(in, cutoffHz, q).high; }

 private:
  void tune(double cutoffHz, double q);

  double ic1_ = 0.0, ic2_ = 0.0;
  // Coefficients for the last cutoff and resonance; sweeps recompute them only when the
  // cutoff has moved by an audible amount, which saves most of the tangents.
  double cutoff_ = -1.0, q_ = -1.0;
  double k_ = 0.0, a1_ = 0.0, a2_ = 0.0, a3_ = 0.0;
};

// Exponential glide from a to b over duration seconds, holding b afterwards: pitch and
// cutoff sweeps sound even to the ear only when they move in ratios.
double glide(double a, double b, double t, double duration);

// Percussive envelope: linear attack, then exponential decay to -60 dB at `decay`.
double percussive(double t, double attack, double decay);

// Attack / decay / sustain / release envelope for a note held for `hold` seconds.
struct Adsr {
  double attack, decay, sustain, release;
  double at(double t, double hold) const;
};

// Short linear fades at both ends so that a sound never starts or stops with a click.
void fadeEnds(Samples& s, double fadeInSeconds, double fadeOutSeconds);
float peak(const Samples& s);
// Scales the whole signal so that its peak sits at `dbfs` (e.g. -1).
void normalise(Samples& s, double dbfs);
// Scales both channels by one factor so that the louder peak sits at `dbfs`.
void normaliseStereo(Stereo& s, double dbfs);
// Float sample in [-1, 1] to 16-bit PCM, rounded and clamped.
int16_t toPcm16(float v);

// Rotates a loop so that it begins at the rising zero crossing closest to silence: the
// loop still joins seamlessly, and starting it no longer clicks.
void startAtZeroCrossing(Samples& loop);

// One loop of a periodic signal, `loopFrames` long, from a generator whose components
// all complete whole cycles in that time. The generator runs through one loop first so
// that filters inside it have settled: the last sample leads into the first like any
// other pair.
template <class Next>
Samples periodic(int loopFrames, Next next) {
  Samples s(2 * static_cast<size_t>(loopFrames));
  for (float& v : s) v = next();
  return Samples(s.begin() + loopFrames, s.end());
}

}  // namespace synth
