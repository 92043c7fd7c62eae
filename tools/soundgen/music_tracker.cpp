// The tracker song: synthesised instruments and patterns composed in the score notation,
// written as an extended module that the game's module player loops through.
#include <algorithm>

#include "music.h"
#include "render.h"
#include "score.h"
#include "writers.h"
#include "xm.h"

using score::Chord;
using synth::Osc;
using synth::Samples;

namespace music {
namespace {

enum Instrument { Kick = 1, Snare, Hat, Bass, Pad, Pluck, Lead, Crash };
enum Channel {
  KickCh,
  SnareCh,
  HatCh,
  CrashCh,
  BassCh,
  PadCh0,
  PadCh1,
  PadCh2,
  ArpCh,
  LeadCh,
  EchoCh,
  kChannels
};

constexpr int kRowsPerBar = 16;  // one row is a sixteenth note
constexpr int kBars = 4;         // one pattern is four bars, one chord per bar
constexpr int kEchoRows = 3;     // the lead's echo trails it by a dotted eighth

// Cycle lengths of the tonal samples at 44.1 kHz: 262.5 Hz (near C4) and two octaves
// lower for the bass, so that each plays close to the register it was made for.
constexpr int kCycle = 168;
constexpr int kBassCycle = 4 * kCycle;

std::vector<int16_t> toPcm(const Samples& s) {
  std::vector<int16_t> out(s.size());
  std::transform(s.begin(), s.end(), out.begin(), synth::toPcm16);
  return out;
}

// An instrument playing `s`, whose pitch is contentHz, normalised and tuned.
xm::Instrument instrument(const char* name, Samples s, double contentHz) {
  synth::normalise(s, -1.0);
  xm::Instrument ins;
  ins.name = name;
  ins.sample.data = toPcm(s);
  ins.sample.tune(contentHz, synth::kRate);
  return ins;
}

// Drums: note C-4 plays the sample as recorded.
xm::Instrument oneShot(const char* name, Samples s) {
  return instrument(name, std::move(s), synth::midiToHz(60));
}

// One oscillator of a looping tone: `extraCycles` more (or fewer) periods than the
// others over the loop detunes it by exactly that much.
struct LoopVoice {
  Osc::Shape shape;
  int extraCycles;
  float gain;
};

// A looping tone of `cycles` periods of `cycleFrames` samples each, through a low-pass.
// Detuned voices beat slowly, like an ensemble, and the beating repeats exactly at the
// loop point. Tuned so that notes play at their written pitch.
xm::Instrument looped(const char* name, int cycleFrames, int cycles, double cutoff,
                      std::vector<LoopVoice> voices) {
  const double base = static_cast<double>(synth::kRate) / cycleFrames;
  const int loop = cycles * cycleFrames;
  std::vector<Osc> oscs;
  for (const LoopVoice& v : voices) oscs.emplace_back(v.shape);
  synth::Svf filter;
  Samples s = synth::periodic(loop, [&]() {
    double v = 0.0;
    for (size_t i = 0; i < voices.size(); ++i)
      v += voices[i].gain * oscs[i].next(base * (cycles + voices[i].extraCycles) / cycles);
    return filter.lowpass(static_cast<float>(v), cutoff, 0.9);
  });
  xm::Instrument ins = instrument(name, std::move(s), base);
  ins.sample.loopLength = loop;
  return ins;
}

std::vector<xm::Instrument> instruments() {
  std::vector<xm::Instrument> all;
  all.push_back(oneShot("kick", render::kick()));
  all.push_back(oneShot("snare", render::snare()));
  all.push_back(oneShot("hat", render::hat(0.06)));

  xm::Instrument bass = looped("bass", kBassCycle, 1, 1100,
                               {{Osc::Saw, 0, 0.5f}, {Osc::Square, 0, 0.25f}, {Osc::Sine, 0, 0.7f}});
  bass.volumeEnvelope = {{0, 64}, {6, 50}, {24, 40}};
  bass.sustainPoint = 2;
  bass.fadeout = 4000;
  all.push_back(bass);

  xm::Instrument pad =
      looped("pad", kCycle, 100, 2400, {{Osc::Saw, 0, 0.4f}, {Osc::Saw, 1, 0.35f}, {Osc::Saw, -1, 0.35f}});
  pad.volumeEnvelope = {{0, 0}, {28, 64}, {48, 52}};
  pad.sustainPoint = 2;
  pad.fadeout = 1000;  // let go only at the song's end
  all.push_back(pad);

  xm::Instrument pluck = looped("pluck", kCycle, 1, 4500, {{Osc::Saw, 0, 0.5f}, {Osc::Square, 0, 0.4f}});
  pluck.volumeEnvelope = {{0, 64}, {5, 34}, {16, 12}, {36, 0}};
  all.push_back(pluck);

  xm::Instrument lead = looped("lead", kCycle, 100, 3400,
                               {{Osc::Saw, 0, 0.45f}, {Osc::Square, 0, 0.25f}, {Osc::Saw, 1, 0.35f}});
  lead.volumeEnvelope = {{0, 0}, {2, 64}, {14, 50}};
  lead.sustainPoint = 2;
  lead.fadeout = 2500;
  lead.vibratoDepth = 3;
  lead.vibratoRate = 10;
  lead.vibratoSweep = 40;
  all.push_back(lead);

  all.push_back(oneShot("crash", render::crash()));
  return all;
}

// Writes notes into one channel of a pattern; a note that ends before the next one
// starts gets a key-off so that the instrument's release begins there.
class PatternBuilder {
 public:
  explicit PatternBuilder(int bars) : pattern_(bars * kRowsPerBar, kChannels) {}

  void note(int row, int channel, int midi, Instrument instrument, int volume) {
    if (row < 0 || row >= pattern_.rows()) return;
    xm::Cell& c = pattern_.at(row, channel);
    c.note = xm::noteFromMidi(midi);
    c.instrument = static_cast<uint8_t>(instrument);
    c.volume = static_cast<uint8_t>(0x10 + std::clamp(volume, 0, 64));
  }
  void keyOff(int row, int channel) {
    if (row >= 0 && row < pattern_.rows() && pattern_.at(row, channel).note == 0)
      pattern_.at(row, channel).note = xm::kKeyOff;
  }
  void notes(const std::vector<score::Note>& notes, int row0, int rowsPerStep, int channel, Instrument ins,
             int volume) {
    for (const score::Note& n : notes) note(row0 + n.step * rowsPerStep, channel, n.pitch, ins, volume);
    for (const score::Note& n : notes) keyOff(row0 + (n.step + n.length) * rowsPerStep, channel);
  }
  void hits(const std::string& line, int row0, int channel, Instrument ins, int volume) {
    for (int step : score::hits(line)) note(row0 + step, channel, 60, ins, volume);
  }
  // Panning (effect 8xx) on the first row, so every pattern sets up its own stereo image.
  void pan(int channel, int position) {
    pattern_.at(0, channel).effect = 0x08;
    pattern_.at(0, channel).param = static_cast<uint8_t>(position);
  }
  xm::Pattern take() { return std::move(pattern_); }

 private:
  xm::Pattern pattern_;
};

// What plays in one four-bar phrase.
struct Phrase {
  const char* chords;
  const char* melody;  // eighth notes; empty for none
  const char* bass;    // one bar, repeated
  const char* kick;
  const char* snare;
  const char* hats;
  bool arp;
  const char* lastBarSnare;  // a fill in the last bar instead of the snare line; null for none
  bool crash;
  bool last = false;  // the song's end: a bar more, in which the last chord fades out
};

xm::Pattern compose(const Phrase& s) {
  PatternBuilder p(s.last ? kBars + 1 : kBars);
  for (auto [channel, position] : std::initializer_list<std::pair<int, int>>{{HatCh, 176},
                                                                             {CrashCh, 150},
                                                                             {PadCh0, 88},
                                                                             {PadCh2, 168},
                                                                             {ArpCh, 72},
                                                                             {LeadCh, 136},
                                                                             {EchoCh, 96}})
    p.pan(channel, position);
  const std::vector<Chord> chords = score::chords(s.chords);
  for (int bar = 0; bar < kBars; ++bar) {
    const Chord& c = chords[bar];
    const int row = bar * kRowsPerBar;
    for (size_t t = 0; t < c.tones.size() && t < 3; ++t)
      p.note(row, PadCh0 + static_cast<int>(t), c.tones[t], Pad, 44);
    if (*s.bass) p.notes(score::figure(s.bass, c), row, 1, BassCh, Bass, 62);
    if (s.arp) p.notes(score::figure("0123 2101 2321 0121", c), row, 1, ArpCh, Pluck, 36);
    p.hits(s.kick, row, KickCh, Kick, 64);
    p.hits(s.hats, row, HatCh, Hat, 34);
    const bool fill = s.lastBarSnare && bar == kBars - 1;
    p.hits(fill ? s.lastBarSnare : s.snare, row, SnareCh, Snare, 56);
  }
  if (s.crash) p.note(0, CrashCh, 60, Crash, 48);
  if (s.last)
    for (int pad = PadCh0; pad <= PadCh2; ++pad) p.keyOff(kBars * kRowsPerBar, pad);
  const std::vector<score::Note> melody = score::parse(s.melody);
  p.notes(melody, 0, 2, LeadCh, Lead, 54);
  p.notes(melody, kEchoRows, 2, EchoCh, Lead, 20);
  return p.take();
}

}  // namespace

// A-minor, 125 BPM, two minutes: intro, groove, two themes, a bridge, a turnaround, a
// breakdown, a second pair of themes, the first themes again and an ending that lets
// every note die away before the song stops.
bool writeTrackerSong(const std::string& path) {
  const char* four = "x... x... x... x...";
  const char* backbeat = ".... x... .... x...";
  const char* offbeats = "..x. ..x. ..x. ..xx";
  const char* none = "";
  const char* bassline = "R..R -R.. R.O. R..-";
  const std::vector<Phrase> sections = {
      {"Am F C G", none, none, none, none, "..x. ..x. ..x. ..x.", true, nullptr, false},
      {"Am F C G", none, bassline, four, backbeat, offbeats, true, nullptr, true},
      {"Am F C G", "E5 - - - A4 - C5 - F5 - - - E5 - C5 - E5 - - - G5 - E5 - D5 - - - - - . .", bassline,
       four, backbeat, offbeats, true, nullptr, true},
      {"Am F C G", "E5 - - - A5 - G5 - F5 - - - C5 - F5 - G5 - E5 - C5 - E5 - D5 - B4 - G4 - . .", bassline,
       four, backbeat, offbeats, true, nullptr, false},
      {"F G Em Am", "A4 - C5 - F5 - - - G5 - - - D5 - B4 - B4 - E5 - G5 - - - A5 - - - - - . .",
       "R... R.O. R... R.O.", "x... .... x.x. ....", backbeat, "x.x. x.x. x.x. x.x.", true, nullptr, true},
      {"Dm F G E", "F5 - - - D5 - A4 - C5 - - - F5 - A5 - G5 - - - D5 - B4 - G#4 - - - B4 - E5 -", bassline,
       four, backbeat, offbeats, true, "x.x. x.xx .xxx xxxx", false},
      {"Am F C G", "A5 - - - - - - - F5 - - - - - - - G5 - - - - - - - B4 - - - - - - -",
       "R... .... .... ....", "x... .... .... ....", none, "..x. ..x. ..x. ..x.", true, nullptr, true},
      {"Dm G C Am", "D5 - - - F5 - A5 - G5 - - - D5 - B4 - C5 - - - E5 - G5 - A5 - - - - - . .", bassline,
       four, backbeat, offbeats, true, nullptr, true},
      {"Dm G E E", "F5 - - - E5 - D5 - B4 - - - D5 - G5 - G#5 - - - E5 - B4 - G#4 - - - B4 - E5 -", bassline,
       four, backbeat, offbeats, true, "x.x. x.xx .xxx xxxx", false},
      {"Am F Dm Am", "A5 - - - - - - - F5 - - - - - - - D5 - - - E5 - - - A4 - - - . . . .",
       "R... .... .... ....", "x... .... .... ....", none, none, false, nullptr, true, true},
  };
  xm::Module module;
  module.name = "Orbit";
  module.channels = kChannels;
  module.speed = 6;
  module.bpm = 125;
  module.instruments = instruments();
  for (const Phrase& s : sections) module.patterns.push_back(compose(s));
  module.order = {0, 1, 2, 3, 4, 5, 6, 1, 7, 8, 2, 3, 4, 5, 3, 9};
  return audiofile::writeBytes(path, xm::encode(module));
}

}  // namespace music
