// The intro fanfare, rendered sample by sample.
#include "music.h"
#include "patches.h"
#include "writers.h"

using arrange::addChord;
using arrange::addNotes;
using render::Mix;
using score::Chord;

namespace music {

// The fanfare: C, A-flat, B-flat, C, a heroic rising line in the brass, timpani on every
// chord change and a roll into the final chord, which rings out and fades.
bool writeStartMusic(const std::string& path) {
  const double beat = 60.0 / 96.0;
  const double bar = 4 * beat;
  const double eighth = beat / 2;
  const std::vector<Chord> progression = score::chords("C Ab Bb C");
  Mix mix(4 * bar);
  arrange::NoteCache cache;

  for (size_t i = 0; i < progression.size(); ++i) {
    const Chord& c = progression[i];
    double at = i * bar;
    addChord(mix, cache, c, at, bar, patches::kPad, {0.22f, 0.0f, 0.5f});
    mix.add(render::timpani(synth::midiToHz(c.bass - 12)), at, 0.8f, -0.2f, 0.4f);
    // Brass chord stabs on beats one and three, the root doubled an octave down.
    for (double offset : {0.0, 2 * beat}) {
      for (int tone : c.tones) mix.add(cache.play(patches::kBrass, tone, beat * 1.2, 0.75f), at + offset, 0.16f, 0.3f, 0.35f);
      mix.add(cache.play(patches::kBrass, c.bass + 12, beat * 1.2, 0.75f), at + offset, 0.2f, -0.1f, 0.3f);
    }
  }
  // The final chord is held long instead of stabbed.
  for (int tone : progression.back().tones)
    mix.add(cache.play(patches::kBrass, tone, 2.5 * beat, 0.8f), 3 * bar + 2 * beat, 0.16f, 0.3f, 0.4f);
  for (int roll = 0; roll < 8; ++roll)
    mix.add(render::timpani(synth::midiToHz(36)), 2 * bar + 2 * beat + roll * beat / 4, 0.25f + 0.06f * roll, -0.2f, 0.4f);
  mix.add(render::crash(), 3 * bar, 0.5f, 0.4f, 0.5f);

  const std::string melody =
      "G4 . C5 - - - E5 D5 "
      "Eb5 - - - C5 - Ab4 - "
      "D5 - - - F5 - D5 Bb4 "
      "G5 - - - - - - - ";
  addNotes(mix, cache, score::parse(melody), 0.0, eighth, patches::kBrass, {0.42f, -0.15f, 0.45f}, 0.95f);

  synth::Stereo music = mix.finish(0.35f);
  const int fadeFrom = synth::frames(3 * bar);
  const int length = synth::frames(11.0);
  arrange::fadeTail(music.left, fadeFrom, length);
  arrange::fadeTail(music.right, fadeFrom, length);
  synth::normaliseStereo(music, -1.0);
  return audiofile::writeMp3(path, music, 160);
}

}  // namespace music
