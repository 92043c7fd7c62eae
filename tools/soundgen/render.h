// Offline music rendering: subtractive voices, drum hits, a stereo mix bus with
// constant-power panning and a small plate-like reverb.
#pragma once

#include <vector>

#include "synth.h"

namespace render {

struct Partial {
  synth::Osc::Shape shape;
  double detuneCents;
  float gain;
};

// A subtractive synthesiser patch: oscillators into a resonant low-pass whose cutoff
// follows its own envelope.
struct Voice {
  std::vector<Partial> partials;
  synth::Adsr amp;
  double cutoffHz;
  double cutoffEnvelopeHz;  // added at the filter envelope's peak
  synth::Adsr filter;
  double q;
  double vibratoHz, vibratoCents, vibratoDelay;
};

// One note held for `hold` seconds, including its release tail.
synth::Samples play(const Voice& voice, double hz, double hold, float velocity);

// Drum and percussion hits, shared by the rendered songs and the tracker instruments.
synth::Samples kick();
synth::Samples snare();
synth::Samples hat(double decaySeconds);
synth::Samples crash();
synth::Samples timpani(double hz);

class Mix {
 public:
  explicit Mix(double seconds);
  void add(const synth::Samples& mono, double at, float gain, float pan, float reverbSend);
  // The mixed stereo track: `seconds` long and whatever rings on past that (reverb, long
  // notes). It is made of the mix's own buffers, so the mix is spent.
  synth::Stereo finish(float reverbLevel);

 private:
  synth::Stereo dry_, send_;
};

}  // namespace render
