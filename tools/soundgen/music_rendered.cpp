// The two pieces rendered sample by sample: the intro fanfare and the synthesiser song.
#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>

#include "music.h"
#include "render.h"
#include "score.h"
#include "writers.h"

using render::Mix;
using render::Voice;
using score::Chord;
using synth::Osc;
using synth::Samples;

namespace music {
namespace {

// Patches: oscillators (shape, detune in cents, gain), amplitude ADSR, cutoff and its
// envelope amount, filter ADSR, resonance, vibrato (rate, cents, delay).
const Voice kBrass = {{{Osc::Saw, 0, 0.4f}, {Osc::Saw, -8, 0.35f}, {Osc::Saw, 7, 0.35f}},
                      {0.05, 0.3, 0.8, 0.45}, 450, 3800, {0.09, 0.6, 0.45, 0.45}, 1.1, 5.0, 9, 0.4};
const Voice kPad = {{{Osc::Saw, 0, 0.3f}, {Osc::Saw, 11, 0.3f}, {Osc::Saw, -13, 0.3f}, {Osc::Triangle, -1200, 0.4f}},
                    {0.7, 0.6, 0.8, 1.6}, 700, 900, {1.2, 1.0, 0.5, 1.6}, 0.8, 0, 0, 0};
const Voice kBass = {{{Osc::Saw, 0, 0.6f}, {Osc::Square, -1200, 0.45f}},
                     {0.004, 0.25, 0.7, 0.08}, 160, 1500, {0.002, 0.2, 0.15, 0.1}, 2.2, 0, 0, 0};
const Voice kPluck = {{{Osc::Square, 0, 0.5f}, {Osc::Saw, 6, 0.3f}},
                      {0.002, 0.3, 0.0, 0.15}, 500, 4200, {0.001, 0.16, 0.0, 0.1}, 1.6, 0, 0, 0};
const Voice kLead = {{{Osc::Saw, 0, 0.45f}, {Osc::Square, 5, 0.3f}, {Osc::Saw, -6, 0.3f}},
                     {0.012, 0.25, 0.75, 0.3}, 1100, 2600, {0.02, 0.5, 0.45, 0.3}, 1.4, 5.5, 20, 0.25};

// Rendered notes by patch, pitch, length and velocity: the songs repeat their chords and
// figures section after section, and a note sounds the same every time it is played.
class NoteCache {
public:
  const Samples& play(const Voice& voice, int pitch, double hold, float velocity) {
    const Key key{&voice, pitch, synth::frames(hold), static_cast<int>(std::lround(velocity * 1000))};
    auto found = notes_.find(key);
    if (found == notes_.end())
      found = notes_.emplace(key, render::play(voice, synth::midiToHz(pitch), hold, velocity)).first;
    return found->second;
  }

private:
  using Key = std::tuple<const Voice*, int, int, int>;
  std::map<Key, Samples> notes_;
};

// Where the notes of a part go in the mix.
struct Placement {
  float gain, pan, reverb;
};

void addNotes(Mix& mix, NoteCache& cache, const std::vector<score::Note>& notes, double start, double step,
              const Voice& voice, Placement at, float velocity = 0.85f) {
  for (const score::Note& n : notes) {
    // Tones are held slightly shorter than their steps so repeated notes re-articulate.
    const Samples& tone = cache.play(voice, n.pitch, n.length * step * 0.92, velocity);
    mix.add(tone, start + n.step * step, at.gain, at.pan, at.reverb);
  }
}

void addHits(Mix& mix, const std::string& pattern, double start, double step, const Samples& hit, Placement at) {
  for (int s : score::hits(pattern)) mix.add(hit, start + s * step, at.gain, at.pan, at.reverb);
}

// Held chords, one per bar, spread across the stereo field.
void addChords(Mix& mix, NoteCache& cache, const std::vector<Chord>& chords, double start, double bar,
               const Voice& voice, Placement at) {
  for (size_t i = 0; i < chords.size(); ++i) {
    const std::vector<int>& tones = chords[i].tones;
    const float spread = static_cast<float>(std::max<size_t>(tones.size() - 1, 1));
    for (size_t t = 0; t < tones.size(); ++t) {
      float pan = at.pan + 0.5f * (static_cast<float>(t) / spread - 0.5f);
      mix.add(cache.play(voice, tones[t], bar * 0.97, 0.8f), start + i * bar, at.gain, pan, at.reverb);
    }
  }
}

// Cuts the track at `length` frames with a quadratic fade to silence from frame `from`.
Samples fadeOut(Samples s, int from, int length) {
  s.resize(length, 0.0f);
  const int n = length;
  for (int i = from; i < n; ++i) {
    double f = static_cast<double>(i - from) / (n - from);
    s[i] *= static_cast<float>(std::pow(1.0 - f, 2.0));
  }
  return s;
}

}  // namespace

// The fanfare: C, A-flat, B-flat, C, a heroic rising line in the brass, timpani on every
// chord change and a roll into the final chord, which rings out and fades.
bool writeStartMusic(const std::string& path) {
  const double beat = 60.0 / 96.0;
  const double bar = 4 * beat;
  const double eighth = beat / 2;
  const std::vector<Chord> progression = score::chords("C Ab Bb C");
  Mix mix(4 * bar);
  NoteCache cache;

  addChords(mix, cache, progression, 0.0, bar, kPad, {0.22f, 0.0f, 0.5f});
  for (size_t i = 0; i < progression.size(); ++i) {
    const Chord& c = progression[i];
    double at = i * bar;
    mix.add(render::timpani(synth::midiToHz(c.bass - 12)), at, 0.8f, -0.2f, 0.4f);
    // Brass chord stabs on beats one and three, the root doubled an octave down.
    for (double offset : {0.0, 2 * beat}) {
      for (int tone : c.tones) mix.add(cache.play(kBrass, tone, beat * 1.2, 0.75f), at + offset, 0.16f, 0.3f, 0.35f);
      mix.add(cache.play(kBrass, c.bass + 12, beat * 1.2, 0.75f), at + offset, 0.2f, -0.1f, 0.3f);
    }
  }
  // The final chord is held long instead of stabbed.
  for (int tone : progression.back().tones)
    mix.add(cache.play(kBrass, tone, 2.5 * beat, 0.8f), 3 * bar + 2 * beat, 0.16f, 0.3f, 0.4f);
  for (int roll = 0; roll < 8; ++roll)
    mix.add(render::timpani(synth::midiToHz(36)), 2 * bar + 2 * beat + roll * beat / 4, 0.25f + 0.06f * roll, -0.2f, 0.4f);
  mix.add(render::crash(), 3 * bar, 0.5f, 0.4f, 0.5f);

  const std::string melody =
      "G4 . C5 - - - E5 D5 "
      "Eb5 - - - C5 - Ab4 - "
      "D5 - - - F5 - D5 Bb4 "
      "G5 - - - - - - - ";
  addNotes(mix, cache, score::parse(melody), 0.0, eighth, kBrass, {0.42f, -0.15f, 0.45f}, 0.95f);

  synth::Stereo music = mix.finish(0.35f, false);
  const int fadeFrom = synth::frames(3 * bar);
  const int length = synth::frames(11.0);
  music.left = fadeOut(std::move(music.left), fadeFrom, length);
  music.right = fadeOut(std::move(music.right), fadeFrom, length);
  synth::normaliseStereo(music, -1.0);
  return audiofile::writeMp3(path, music, 160);
}

bool writeRenderedSong(const std::string& path) {
  const double beat = 60.0 / 100.0;
  const double bar = 4 * beat;
  const double sixteenth = beat / 4;
  const double eighth = beat / 2;
  const int sections = 4;
  const int barsPerSection = 8;
  const std::vector<Chord> progression = score::chords("Dm Bb F C Dm Bb Gm A");
  const std::string melodyA =
      "D5 - - - A4 - D5 E5 F5 - - - D5 - - . C5 - - - F5 - A5 - G5 - - - E5 - C5 . "
      "D5 - - - A4 - D5 E5 F5 - - - G5 - F5 - D5 - - - Bb4 - D5 - C#5 - - - - - . . ";
  const std::string melodyB =
      "A5 - - - G5 - F5 - F5 - - - D5 - - . A5 - - - C6 - A5 - G5 - - - - - . . "
      "F5 - E5 - D5 - E5 - F5 - - - D5 - Bb4 - G5 - - - A5 - Bb5 - A5 - - - E5 - C#5 - ";
  const Samples kick = render::kick(), snare = render::snare(), hat = render::hat(0.05);
  Mix mix(sections * barsPerSection * bar);
  NoteCache cache;

  for (int section = 0; section < sections; ++section) {
    const double start = section * barsPerSection * bar;
    const bool full = section > 0;
    addChords(mix, cache, progression, start, bar, kPad, {full ? 0.12f : 0.16f, 0.0f, 0.6f});
    for (int b = 0; b < barsPerSection; ++b) {
      const Chord& c = progression[b];
      const double at = start + b * bar;
      addNotes(mix, cache, score::figure("0123 2103 1230 3210", c), at, sixteenth, kPluck, {0.1f, 0.45f, 0.5f}, 0.7f);
      addHits(mix, "x.x. x.x. x.x. x.xx", at, sixteenth, hat, {full ? 0.16f : 0.1f, -0.35f, 0.2f});
      if (full || b >= 4) addNotes(mix, cache, score::figure("R..R -R.O -OR. R.O.", c), at, sixteenth, kBass, {0.32f, 0.0f, 0.1f});
      if (!full) continue;
      const bool lastBar = section == sections - 1 && b == barsPerSection - 1;
      addHits(mix, "x... ..x. x... ....", at, sixteenth, kick, {0.55f, 0.0f, 0.1f});
      addHits(mix, lastBar ? "..x. x.xx .xxx xxxx" : ".... x... .... x...", at, sixteenth, snare, {0.3f, 0.1f, 0.35f});
    }
    if (full) {
      mix.add(render::crash(), start, 0.3f, 0.5f, 0.4f);
      addNotes(mix, cache, score::parse(section == 2 ? melodyB : melodyA), start, eighth, kLead, {0.2f, -0.1f, 0.45f});
    }
  }
  synth::Stereo music = mix.finish(0.3f, true);
  synth::normaliseStereo(music, -1.0);
  return audiofile::writeOgg(path, music, 0.4f);
}

}  // namespace music
