#include "synth.h"

#include <algorithm>
#include <cmath>

namespace synth {

int frames(double secondsLong) { return static_cast<int>(std::lround(secondsLong * kRate)); }

double seconds(int frameIndex) { return static_cast<double>(frameIndex) / kRate; }

double midiToHz(double note) { return 440.0 * std::pow(2.0, (note - 69.0) / 12.0); }

float Noise::next() { return static_cast<float>(uniform() * 2.0 - 1.0); }

double Noise::uniform() {
  // xorshift32: tiny, fast and good enough for audio noise.
  state_ ^= state_ << 13;
  state_ ^= state_ >> 17;
  state_ ^= state_ << 5;
  return state_ / 4294967296.0;
}

namespace {

// Polynomial correction around a waveform step; t is the phase in [0, 1), dt the
// phase increment per sample.
double polyBlep(double t, double dt) {
  if (t < dt) {
    t /= dt;
    return t + t - t * t - 1.0;
  }
  if (t > 1.0 - dt) {
    t = (t - 1.0) / dt;
    return t * t + t + t + 1.0;
  }
  return 0.0;
}

}  // namespace

float Osc::next(double hz) {
  double dt = std::min(std::fabs(hz) / kRate, 0.5);
  double value = 0.0;
  switch (shape_) {
    case Sine: value = std::sin(kTwoPi * phase_); break;
    case Saw: value = 2.0 * phase_ - 1.0 - polyBlep(phase_, dt); break;
    case Square: {
      value = phase_ < width_ ? 1.0 : -1.0;
      value += polyBlep(phase_, dt);
      value -= polyBlep(std::fmod(phase_ + 1.0 - width_, 1.0), dt);
      break;
    }
    case Triangle: value = 1.0 - 4.0 * std::fabs(phase_ - 0.5); break;
  }
  phase_ += hz / kRate;
  phase_ -= std::floor(phase_);
  return static_cast<float>(value);
}

void Svf::tune(double cutoffHz, double q) {
  cutoff_ = cutoffHz;
  q_ = q;
  double g = std::tan(kPi * std::clamp(cutoffHz, 10.0, kRate * 0.45) / kRate);
  k_ = 1.0 / std::max(q, 0.05);
  a1_ = 1.0 / (1.0 + g * (g + k_));
  a2_ = g * a1_;
  a3_ = g * a2_;
}

Svf::Out Svf::process(float in, double cutoffHz, double q) {
  // A 0.2 % step in cutoff (3 cents) is far below what the ear follows in a sweep.
  if (q != q_ || std::fabs(cutoffHz - cutoff_) > cutoff_ * 0.002) tune(cutoffHz, q);
  double v3 = in - ic2_;
  double v1 = a1_ * ic1_ + a2_ * v3;
  double v2 = ic2_ + a2_ * ic1_ + a3_ * v3;
  ic1_ = 2.0 * v1 - ic1_;
  ic2_ = 2.0 * v2 - ic2_;
  double low = v2;
  double band = v1;
  double high = in - k_ * band - low;
  return {static_cast<float>(low), static_cast<float>(band), static_cast<float>(high)};
}

double glide(double a, double b, double t, double duration) {
  if (t >= duration) return b;
  if (t <= 0.0) return a;
  return a * std::pow(b / a, t / duration);
}

double percussive(double t, double attack, double decay) {
  if (t < 0.0) return 0.0;
  if (t < attack) return t / attack;
  // exp(-6.9) is -60 dB.
  return std::exp(-6.9 * (t - attack) / decay);
}

double Adsr::at(double t, double hold) const {
  auto held = [this](double u) {
    if (u < attack) return u / attack;
    u -= attack;
    if (u < decay) return 1.0 - (1.0 - sustain) * (u / decay);
    return sustain;
  };
  if (t < 0.0) return 0.0;
  if (t < hold) return held(t);
  double released = t - hold;
  if (released >= release) return 0.0;
  return held(hold) * (1.0 - released / release);
}

void fadeEnds(Samples& s, double fadeInSeconds, double fadeOutSeconds) {
  int n = static_cast<int>(s.size());
  int in = std::min(frames(fadeInSeconds), n);
  int out = std::min(frames(fadeOutSeconds), n);
  for (int i = 0; i < in; ++i) s[i] *= static_cast<float>(i) / in;
  for (int i = 0; i < out; ++i) s[n - 1 - i] *= static_cast<float>(i) / out;
}

float peak(const Samples& s) {
  float p = 0.0f;
  for (float v : s) p = std::max(p, std::fabs(v));
  return p;
}

namespace {

float gainForPeak(float currentPeak, double dbfs) {
  return currentPeak > 0.0f ? static_cast<float>(std::pow(10.0, dbfs / 20.0) / currentPeak) : 1.0f;
}

}  // namespace

void normalise(Samples& s, double dbfs) {
  const float gain = gainForPeak(peak(s), dbfs);
  for (float& v : s) v *= gain;
}

void normaliseStereo(Stereo& s, double dbfs) {
  const float gain = gainForPeak(std::max(peak(s.left), peak(s.right)), dbfs);
  for (Samples* channel : {&s.left, &s.right})
    for (float& v : *channel) v *= gain;
}

void startAtZeroCrossing(Samples& loop) {
  const size_t n = loop.size();
  size_t best = 0;
  float bestLevel = 2.0f;
  for (size_t i = 0; i < n; ++i) {
    float previous = loop[(i + n - 1) % n];
    bool rising = previous <= 0.0f && loop[i] >= 0.0f;
    if (rising && std::fabs(loop[i]) < bestLevel) {
      best = i;
      bestLevel = std::fabs(loop[i]);
    }
  }
  std::rotate(loop.begin(), loop.begin() + best, loop.end());
}

int16_t toPcm16(float v) {
  long scaled = std::lround(static_cast<double>(v) * 32767.0);
  return static_cast<int16_t>(std::clamp(scaled, -32768L, 32767L));
}

}  // namespace synth
