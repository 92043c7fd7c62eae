#include "render.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "layers.h"

using layers::NoiseBurst;
using layers::Tone;
using synth::Osc;
using synth::Samples;

namespace render {

Samples play(const Voice& voice, double hz, double hold, float velocity) {
  const int n = synth::frames(hold + voice.amp.release);
  Samples out(n, 0.0f);
  std::vector<Osc> oscs;
  std::vector<double> ratios;
  for (size_t i = 0; i < voice.partials.size(); ++i) {
    // Spread start phases so that detuned oscillators do not all start with one click.
    oscs.emplace_back(voice.partials[i].shape, 0.31 * static_cast<double>(i));
    ratios.push_back(std::pow(2.0, voice.partials[i].detuneCents / 1200.0));
  }
  synth::Svf filter;
  for (int i = 0; i < n; ++i) {
    double t = synth::seconds(i);
    double bend = 1.0;
    if (voice.vibratoCents > 0.0 && t > voice.vibratoDelay) {
      double depth = std::min(1.0, (t - voice.vibratoDelay) / 0.3) * voice.vibratoCents;
      bend = std::exp2(depth * std::sin(synth::kTwoPi * voice.vibratoHz * t) / 1200.0);
    }
    double v = 0.0;
    for (size_t p = 0; p < oscs.size(); ++p)
      v += voice.partials[p].gain * oscs[p].next(hz * ratios[p] * bend);
    double cutoff =
        voice.cutoffHz + voice.cutoffEnvelopeHz * voice.filter.at(t, hold) * (0.5 + 0.5 * velocity);
    v = filter.lowpass(static_cast<float>(v), cutoff, voice.q);
    out[i] = static_cast<float>(v * voice.amp.at(t, hold) * velocity);
  }
  return out;
}

Samples kick() {
  Samples s(synth::frames(0.35), 0.0f);
  Tone(Osc::Sine).sweep(160, 45, 0.09).envelope(0.001, 0.32).gain(1.0f).addTo(s);
  NoiseBurst(901).filter(NoiseBurst::Band, 3000, 3000, 0, 1.0).envelope(0.0003, 0.01).gain(0.4f).addTo(s);
  layers::saturate(s, 1.5f);
  return s;
}

Samples snare() {
  Samples s(synth::frames(0.25), 0.0f);
  Tone(Osc::Triangle).sweep(240, 170, 0.05).envelope(0.001, 0.1).gain(0.6f).addTo(s);
  NoiseBurst(902).filter(NoiseBurst::Band, 4500, 2500, 0.1, 0.8).envelope(0.001, 0.22).gain(0.9f).addTo(s);
  return s;
}

Samples hat(double decaySeconds) {
  Samples s(synth::frames(decaySeconds + 0.01), 0.0f);
  NoiseBurst(903)
      .filter(NoiseBurst::High, 8000, 8000, 0, 0.9)
      .envelope(0.0005, decaySeconds)
      .gain(0.7f)
      .addTo(s);
  // Two inharmonic square partials give the metallic ring of a real hi-hat.
  Tone(Osc::Square).pitch(6200).envelope(0.0005, decaySeconds * 0.6).gain(0.08f).addTo(s);
  Tone(Osc::Square).pitch(8730).envelope(0.0005, decaySeconds * 0.5).gain(0.06f).addTo(s);
  return s;
}

Samples crash() {
  Samples s(synth::frames(2.2), 0.0f);
  NoiseBurst(904).filter(NoiseBurst::High, 6000, 3500, 1.5, 0.7).envelope(0.002, 2.1).gain(0.8f).addTo(s);
  Tone(Osc::Square).pitch(4410).envelope(0.002, 1.2).fm(1.37, 3.0, 1.0).gain(0.05f).addTo(s);
  return s;
}

Samples timpani(double hz) {
  Samples s(synth::frames(1.6), 0.0f);
  Tone(Osc::Sine).sweep(hz * 1.06, hz, 0.08).envelope(0.002, 1.5).gain(1.0f).addTo(s);
  Tone(Osc::Sine).pitch(hz * 1.5).envelope(0.002, 0.7).gain(0.35f).addTo(s);
  NoiseBurst(905).filter(NoiseBurst::Low, 900, 300, 0.1, 1.0).envelope(0.001, 0.12).gain(0.8f).addTo(s);
  return s;
}

namespace {

// Freeverb-style reverb: parallel damped combs into series all-passes, with slightly
// different delays per channel for width.
class Reverb {
 public:
  explicit Reverb(int spread) {
    static const std::array<int, 6> kCombs = {1116, 1188, 1277, 1356, 1422, 1491};
    static const std::array<int, 3> kAllpasses = {556, 441, 341};
    for (int d : kCombs) combs_.push_back({Samples(d + spread, 0.0f), 0, 0.0f});
    for (int d : kAllpasses) allpasses_.push_back({Samples(d + spread, 0.0f), 0, 0.0f});
  }
  float process(float in) {
    float out = 0.0f;
    for (Line& c : combs_) {
      float delayed = c.buffer[c.index];
      c.store = delayed * (1.0f - kDamp) + c.store * kDamp;
      c.buffer[c.index] = in + c.store * kFeedback;
      c.advance();
      out += delayed;
    }
    for (Line& a : allpasses_) {
      float delayed = a.buffer[a.index];
      a.buffer[a.index] = out + delayed * 0.5f;
      a.advance();
      out = delayed - out;
    }
    return out;
  }

 private:
  static constexpr float kDamp = 0.3f;
  static constexpr float kFeedback = 0.83f;
  struct Line {
    Samples buffer;
    size_t index;
    float store;
    void advance() {
      if (++index == buffer.size()) index = 0;
    }
  };
  std::vector<Line> combs_, allpasses_;
};

}  // namespace

Mix::Mix(double secondsLong) {
  for (Samples* s : {&dry_.left, &dry_.right, &send_.left, &send_.right})
    s->assign(synth::frames(secondsLong), 0.0f);
}

void Mix::add(const Samples& mono, double at, float gain, float pan, float reverbSend) {
  const double angle = (std::clamp(pan, -1.0f, 1.0f) + 1.0) * synth::kPi / 4.0;
  const float left = static_cast<float>(std::cos(angle)) * gain;
  const float right = static_cast<float>(std::sin(angle)) * gain;
  const int offset = synth::frames(at);
  if (offset < 0) return;
  const size_t end = static_cast<size_t>(offset) + mono.size();
  for (Samples* s : {&dry_.left, &dry_.right, &send_.left, &send_.right})
    if (s->size() < end) s->resize(end, 0.0f);
  // One pass for all four buses: songs add thousands of notes.
  float* dl = &dry_.left[offset];
  float* dr = &dry_.right[offset];
  float* sl = &send_.left[offset];
  float* sr = &send_.right[offset];
  const float sendLeft = left * reverbSend, sendRight = right * reverbSend;
  for (size_t i = 0; i < mono.size(); ++i) {
    const float v = mono[i];
    dl[i] += v * left;
    dr[i] += v * right;
    sl[i] += v * sendLeft;
    sr[i] += v * sendRight;
  }
}

synth::Stereo Mix::finish(float reverbLevel) {
  const int tail = synth::frames(2.5);
  const std::array<std::pair<Samples*, Samples*>, 2> channels = {
      {{&dry_.left, &send_.left}, {&dry_.right, &send_.right}}};
  for (int c = 0; c < 2; ++c) {
    Samples& dry = *channels[c].first;
    Samples& send = *channels[c].second;
    const size_t total = std::max(dry.size(), send.size()) + tail;
    dry.resize(total, 0.0f);
    send.resize(total, 0.0f);
    Reverb reverb(c * 23);
    for (size_t i = 0; i < total; ++i) dry[i] += reverbLevel * reverb.process(send[i]);
  }
  return std::move(dry_);
}

}  // namespace render
