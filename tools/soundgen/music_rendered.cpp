// The intro fanfare, rendered sample by sample.
#include "music.h"
#include "patches.h"
#include "writers.h"

using render::Mix;

namespace music {

// The fanfare: C, then A-flat and B-flat a half bar each, and C again, where the six
// seconds of the intro's picture leave it room to ring: a heroic rising line in the
// brass over stabs, pads and a timpani stroke on every chord change, a roll into the
// last chord, which rings out and fades.
bool writeStartMusic(const std::string& path) {
  const double beat = 60.0 / 112.0;
  const struct {
    const char* chord;
    double from, beats;  // in beats
  } changes[] = {{"C", 0, 4}, {"Ab", 4, 2}, {"Bb", 6, 2}, {"C", 8, 6}};
  const double last = changes[3].from * beat;
  Mix mix(last + 6 * beat);
  arrange::NoteCache cache;

  for (const auto& change : changes) {
    const score::Chord c = score::chord(change.chord);
    const double at = change.from * beat;
    const bool final = at == last;
    arrange::addChord(mix, cache, c, at, change.beats * beat, patches::kPad, {0.22f, 0.0f, 0.5f});
    mix.add(render::timpani(synth::midiToHz(c.bass)), at, 0.8f, -0.2f, 0.4f);
    // Brass stabs every two beats, the root doubled an octave down; the last chord is
    // held instead.
    const double hold = final ? 3 * beat : 1.2 * beat;
    for (double offset = 0; offset < (final ? 1 : change.beats); offset += 2) {
      for (int tone : c.tones)
        mix.add(cache.play(patches::kBrass, tone, hold, 0.75f), at + offset * beat, 0.16f, 0.3f, 0.35f);
      mix.add(cache.play(patches::kBrass, c.bass + 12, hold, 0.75f), at + offset * beat, 0.2f, -0.1f, 0.3f);
    }
  }
  for (int roll = 0; roll < 8; ++roll)
    mix.add(render::timpani(synth::midiToHz(43)), last - 2 * beat + roll * beat / 4, 0.25f + 0.06f * roll,
            -0.2f, 0.4f);
  mix.add(render::crash(), last, 0.5f, 0.4f, 0.5f);

  const std::string melody =
      "G4 . C5 - - - E5 D5 "
      "Eb5 - - C5 D5 - F5 - "
      "G5 - - - - - - - ";
  arrange::addNotes(mix, cache, score::parse(melody), 0.0, beat / 2, patches::kBrass, {0.42f, -0.15f, 0.45f},
                    0.95f);

  synth::Stereo music = mix.finish(0.35f);
  const int fadeFrom = synth::frames(last + 2 * beat);
  const int length = synth::frames(last + 8 * beat);
  arrange::fadeTail(music.left, fadeFrom, length);
  arrange::fadeTail(music.right, fadeFrom, length);
  synth::normaliseStereo(music, -1.0);
  return audiofile::writeMp3(path, music, 160);
}

}  // namespace music
