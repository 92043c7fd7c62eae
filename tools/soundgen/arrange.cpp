#include "arrange.h"

#include <algorithm>
#include <cmath>

#include "layers.h"

using render::Mix;
using render::Voice;
using synth::Samples;

namespace arrange {

const Samples& NoteCache::play(const Voice& voice, int pitch, double hold, float velocity) {
  const Key key{&voice, pitch, synth::frames(hold), static_cast<int>(std::lround(velocity * 1000))};
  auto found = notes_.find(key);
  if (found == notes_.end())
    found = notes_.emplace(key, render::play(voice, synth::midiToHz(pitch), hold, velocity)).first;
  return found->second;
}

void addNotes(Mix& mix, NoteCache& cache, const std::vector<score::Note>& notes, double start, double step,
              const Voice& voice, Placement at, float velocity) {
  for (const score::Note& n : notes) {
    // Held slightly shorter than their steps so that repeated notes re-articulate; the
    // notes on the beat a little stronger, for a pulse.
    const float accent = n.step % 4 == 0 ? 1.0f : 0.85f;
    const Samples& tone = cache.play(voice, n.pitch, n.length * step * 0.92, velocity * accent);
    mix.add(tone, start + n.step * step, at.gain, at.pan, at.reverb);
  }
}

void addChord(Mix& mix, NoteCache& cache, const score::Chord& chord, double start, double seconds,
              const Voice& voice, Placement at) {
  const std::vector<int>& tones = chord.tones;
  const float spread = static_cast<float>(std::max<size_t>(tones.size() - 1, 1));
  for (size_t t = 0; t < tones.size(); ++t) {
    const float pan = at.pan + 0.6f * (static_cast<float>(t) / spread - 0.5f);
    mix.add(cache.play(voice, tones[t], seconds * 0.97, 0.8f), start, at.gain, pan, at.reverb);
  }
}

void addHits(Mix& mix, const std::string& line, double start, double step, const Samples& hit, Placement at) {
  for (int s : score::hits(line)) mix.add(hit, start + s * step, at.gain, at.pan, at.reverb);
}

void fadeTail(Samples& s, int from, int end) {
  s.resize(end, 0.0f);
  for (int i = from; i < end; ++i)
    s[i] *= static_cast<float>(std::pow(1.0 - double(i - from) / (end - from), 2.0));
}

namespace {

// A band of noise swelling up over `seconds` as its filter opens.
Samples riser(double seconds) {
  Samples s(synth::frames(seconds + 0.1), 0.0f);
  layers::NoiseBurst(77)
      .filter(layers::NoiseBurst::Band, 300, 9000, seconds, 1.2)
      .envelope(seconds, 0.1)
      .gain(0.7f)
      .addTo(s);
  return s;
}

// Everything a song plays, placed bar by bar.
class Renderer {
 public:
  explicit Renderer(const Song& song)
      : song_(song), bar_(4 * 60.0 / song.bpm), sixteenth_(bar_ / 16), eighth_(bar_ / 8), mix_(length()) {}

  synth::Stereo run() {
    double at = 0;
    for (const Section& s : song_.sections) {
      section(s, at);
      at += s.bars * bar_;
    }
    ending(at);
    synth::Stereo out = mix_.finish(song_.reverb);
    const int end = synth::frames(at + 2 * bar_ + 1.5);
    for (Samples* channel : {&out.left, &out.right}) fadeTail(*channel, synth::frames(at + bar_), end);
    return out;
  }

 private:
  double length() const {
    double bars = 2;
    for (const Section& s : song_.sections) bars += s.bars;
    return bars * bar_;
  }

  void section(const Section& s, double start) {
    const std::vector<score::Chord> chords = score::chords(s.chords);
    const auto chordOf = [&](int b) -> const score::Chord& { return chords[b % chords.size()]; };
    const auto same = [&](int a, int b) { return chordOf(a).tones == chordOf(b).tones; };
    for (int b = 0; b < s.bars; ++b) {
      const score::Chord& chord = chordOf(b);
      const double at = start + b * bar_;
      // A pad holds through bars of the same chord instead of striking it again.
      if (s.padOn && (b == 0 || !same(b, b - 1))) {
        int run = 1;
        while (b + run < s.bars && same(b + run, b)) ++run;
        addChord(mix_, cache_, chord, at, run * bar_, song_.pad.voice, song_.pad.at);
      }
      figure(s.bassLine, chord, at, song_.bass);
      figure(s.arpLine, chord, at, song_.arp);
      drums(s, b, at);
      for (int hit : score::hits(s.timpaniLine))
        mix_.add(timpani(chord.bass), at + hit * sixteenth_, song_.timpani, -0.2f, 0.4f);
    }
    line(s.melodyLine, start, song_.lead);
    if (song_.leadEcho > 0 && *s.melodyLine) {
      const Placement echo{song_.lead.at.gain * song_.leadEcho, song_.lead.at.pan > 0 ? -0.5f : 0.5f, 0.6f};
      addNotes(mix_, cache_, score::parse(s.melodyLine), start + 3 * sixteenth_, eighth_, song_.lead.voice,
               echo, song_.lead.velocity);
    }
    line(s.counterLine, start, song_.counter);
    if (s.crashAtStart) mix_.add(crash_, start, song_.crash, 0.4f, 0.4f);
    if (s.riseAtEnd) mix_.add(riser_, start + (s.bars - 1) * bar_, 0.12f, 0.0f, 0.5f);
  }

  void figure(const char* pattern, const score::Chord& chord, double at, const Part& part) {
    if (*pattern)
      addNotes(mix_, cache_, score::figure(pattern, chord), at, sixteenth_, part.voice, part.at,
               part.velocity);
  }

  void line(const char* melody, double at, const Part& part) {
    if (*melody)
      addNotes(mix_, cache_, score::parse(melody), at, eighth_, part.voice, part.at, part.velocity);
  }

  void drums(const Section& s, int b, double at) {
    const bool fill = *s.fillLine && b == s.bars - 1;
    addHits(mix_, s.kickLine, at, sixteenth_, kick_, {song_.kick, 0.0f, 0.08f});
    addHits(mix_, fill ? s.fillLine : s.snareLine, at, sixteenth_, snare_, {song_.snare, 0.05f, 0.3f});
    addHits(mix_, s.hatLine, at, sixteenth_, hat_, {song_.hats, -0.3f, 0.15f});
  }

  // The final chord: the pad and the bass hold it, a crash and a last kick strike it.
  void ending(double at) {
    const score::Chord chord = score::chord(song_.ending);
    addChord(mix_, cache_, chord, at, 2 * bar_, song_.pad.voice, song_.pad.at);
    mix_.add(cache_.play(song_.bass.voice, chord.bass, 1.5 * bar_, song_.bass.velocity), at,
             song_.bass.at.gain, 0, 0.2f);
    mix_.add(crash_, at, song_.crash, 0.4f, 0.5f);
    mix_.add(kick_, at, song_.kick, 0.0f, 0.1f);
    if (song_.timpani > 0) mix_.add(timpani(chord.bass), at, song_.timpani, -0.2f, 0.4f);
  }

  const Samples& timpani(int pitch) {
    auto found = timpani_.find(pitch);
    if (found == timpani_.end())
      found = timpani_.emplace(pitch, render::timpani(synth::midiToHz(pitch))).first;
    return found->second;
  }

  const Song& song_;
  const double bar_, sixteenth_, eighth_;
  Mix mix_;
  NoteCache cache_;
  const Samples kick_ = render::kick(), snare_ = render::snare(), hat_ = render::hat(0.05),
                crash_ = render::crash();
  const Samples riser_ = riser(bar_);
  std::map<int, Samples> timpani_;
};

// A first-order high shelf: what a one-pole low-pass at 3 kHz takes away, added back
// `db` louder.
void lift(synth::Stereo& s, float db) {
  const float extra = static_cast<float>(std::pow(10.0, db / 20.0) - 1.0);
  const float pole = static_cast<float>(std::exp(-synth::kTwoPi * 3000.0 / synth::kRate));
  for (Samples* channel : {&s.left, &s.right}) {
    float low = 0;
    for (float& v : *channel) {
      low = v + pole * (low - v);
      v += extra * (v - low);
    }
  }
}

// Every song at about the same loudness: its RMS at -17 dBFS, unless that would lift its
// peaks past -1 dBFS.
void level(synth::Stereo& s) {
  double sum = 0;
  for (const Samples* channel : {&s.left, &s.right})
    for (float v : *channel) sum += static_cast<double>(v) * v;
  const double rms = std::sqrt(sum / (s.left.size() + s.right.size()));
  const float peak = std::max(synth::peak(s.left), synth::peak(s.right));
  if (rms <= 0 || peak <= 0) return;
  const float gain =
      static_cast<float>(std::min(std::pow(10.0, -17 / 20.0) / rms, std::pow(10.0, -1 / 20.0) / peak));
  for (Samples* channel : {&s.left, &s.right})
    for (float& v : *channel) v *= gain;
}

}  // namespace

synth::Stereo render(const Song& song) {
  synth::Stereo out = Renderer(song).run();
  lift(out, song.air);
  level(out);
  return out;
}

}  // namespace arrange
