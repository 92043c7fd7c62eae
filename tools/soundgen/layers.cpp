#include "layers.h"

#include <algorithm>
#include <cmath>

using synth::Osc;
using synth::Samples;

namespace layers {
namespace {

// Runs `voice(t)` from the layer's start until its envelope has fallen below -60 dB
// (or the buffer ends) and adds the enveloped result into s.
template <class Voice>
void renderLayer(Samples& s, const Envelope& shape, Voice voice) {
  const int begin = synth::frames(shape.start);
  const int end = std::min(static_cast<int>(s.size()), begin + synth::frames(shape.attack + shape.decay));
  for (int i = begin; i < end; ++i) {
    double t = synth::seconds(i - begin);
    double env = synth::percussive(t, shape.attack, shape.decay);
    if (shape.tremoloDepth > 0.0)
      env *= 1.0 - shape.tremoloDepth * 0.5 * (1.0 - std::cos(synth::kTwoPi * shape.tremoloHz * t));
    s[i] += static_cast<float>(voice(t) * env * shape.gain);
  }
}

double lerp(double a, double b, double f) { return a + (b - a) * std::clamp(f, 0.0, 1.0); }

}  // namespace

Tone& Tone::sweep(double fromHz, double toHz, double secondsLong) {
  fromHz_ = fromHz;
  toHz_ = toHz;
  sweepSeconds_ = secondsLong;
  return *this;
}

Tone& Tone::fm(double ratio, double from, double to) {
  fmRatio_ = ratio;
  fmFrom_ = from;
  fmTo_ = to;
  return *this;
}

Tone& Tone::lowpass(double fromHz, double toHz, double q) {
  cutFrom_ = fromHz;
  cutTo_ = toHz;
  q_ = q;
  return *this;
}

void Tone::addTo(Samples& s) const {
  Osc carrier(shape_);
  Osc modulator(Osc::Sine);
  synth::Svf filter;
  const double life = env_.attack + env_.decay;
  renderLayer(s, env_, [&](double t) {
    double hz = synth::glide(fromHz_, toHz_, t, sweepSeconds_);
    if (fmRatio_ > 0.0) {
      double index = lerp(fmFrom_, fmTo_, t / life);
      hz += index * hz * fmRatio_ * modulator.next(hz * fmRatio_);
    }
    double v = carrier.next(hz);
    if (cutFrom_ > 0.0)
      v = filter.lowpass(static_cast<float>(v), synth::glide(cutFrom_, cutTo_, t, life), q_);
    return v;
  });
}

NoiseBurst& NoiseBurst::filter(Mode mode, double fromHz, double toHz, double sweepSeconds, double q) {
  mode_ = mode;
  fromHz_ = fromHz;
  toHz_ = toHz;
  sweepSeconds_ = sweepSeconds;
  q_ = q;
  return *this;
}

void NoiseBurst::addTo(Samples& s) const {
  synth::Noise noise(seed_);
  synth::Svf svf;
  renderLayer(s, env_, [&](double t) {
    auto out = svf.process(noise.next(), synth::glide(fromHz_, toHz_, t, sweepSeconds_), q_);
    switch (mode_) {
      case Band: return static_cast<double>(out.band);
      case High: return static_cast<double>(out.high);
      case Low: break;
    }
    return static_cast<double>(out.low);
  });
}

void addCrackle(Samples& s, uint32_t seed, double start, double duration, double clicksPerSecond,
                float gain) {
  synth::Noise noise(seed);
  const int begin = synth::frames(start);
  const int end = std::min(static_cast<int>(s.size()), begin + synth::frames(duration));
  const int clickLength = synth::frames(0.004);
  for (int i = begin; i < end; ++i) {
    double progress = static_cast<double>(i - begin) / (end - begin);
    double chance = clicksPerSecond / synth::kRate * (1.0 - progress) * (1.0 - progress);
    if (noise.uniform() >= chance) continue;
    // A click: a few hundred microseconds of bright noise with a fast decay.
    float amplitude = gain * static_cast<float>(0.3 + 0.7 * noise.uniform());
    for (int k = 0; k < clickLength && i + k < static_cast<int>(s.size()); ++k)
      s[i + k] += amplitude * noise.next() * std::exp(-static_cast<float>(k) / (clickLength * 0.15f));
  }
}

void saturate(Samples& s, float drive) {
  const float norm = std::tanh(drive);
  for (float& v : s) v = std::tanh(v * drive) / norm;
}

}  // namespace layers
