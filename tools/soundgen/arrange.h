// Songs arranged in sections and rendered to a stereo track: each section names its
// chords (one a bar) and the parts that play over them, written in the score notation;
// the song gives the patches, the levels and the tempo, and ends on a chord that rings
// out.
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "render.h"
#include "score.h"

namespace arrange {

// Where the notes of a part go in the mix.
struct Placement {
  float gain, pan, reverb;
};

// Rendered notes by patch, pitch, length and velocity: songs repeat their chords and
// figures section after section, and a note sounds the same every time it is played.
class NoteCache {
 public:
  const synth::Samples& play(const render::Voice& voice, int pitch, double hold, float velocity);

 private:
  using Key = std::tuple<const render::Voice*, int, int, int>;
  std::map<Key, synth::Samples> notes_;
};

// A melody or figure: notes of `step` seconds from `start`.
void addNotes(render::Mix& mix, NoteCache& cache, const std::vector<score::Note>& notes, double start,
              double step, const render::Voice& voice, Placement at, float velocity);
// A held chord of `seconds` at `start`, its tones spread across the stereo field.
void addChord(render::Mix& mix, NoteCache& cache, const score::Chord& chord, double start, double seconds,
              const render::Voice& voice, Placement at);
// A drum line of sixteenths ('x' strikes) from `start`.
void addHits(render::Mix& mix, const std::string& line, double start, double step, const synth::Samples& hit,
             Placement at);

// Cuts the track at frame `end` after a quadratic fade to silence from frame `from`.
void fadeTail(synth::Samples& s, int from, int end);

// One run of bars. Bass, arpeggio, drum and timpani lines are one bar of sixteenths that
// repeats every bar (figures over the bar's chord, see score::figure); melody and counter
// run through the whole section in eighths. Empty lines play nothing.
struct Section {
  explicit Section(int barCount, const char* chordNames) : bars(barCount), chords(chordNames) {}
  Section& pad() { return set(padOn, true); }
  Section& bass(const char* line) { return set(bassLine, line); }
  Section& arp(const char* line) { return set(arpLine, line); }
  Section& drums(const char* kick, const char* snare, const char* hats) {
    kickLine = kick;
    snareLine = snare;
    return set(hatLine, hats);
  }
  Section& timpani(const char* line) { return set(timpaniLine, line); }
  Section& fill(const char* snare) { return set(fillLine, snare); }  // the last bar's snare
  Section& melody(const char* line) { return set(melodyLine, line); }
  Section& counter(const char* line) { return set(counterLine, line); }
  Section& crash() { return set(crashAtStart, true); }
  Section& riser() { return set(riseAtEnd, true); }  // a noise swell into the next section

  int bars;
  const char* chords;
  bool padOn = false, crashAtStart = false, riseAtEnd = false;
  const char *bassLine = "", *arpLine = "", *kickLine = "", *snareLine = "", *hatLine = "";
  const char *timpaniLine = "", *fillLine = "", *melodyLine = "", *counterLine = "";

 private:
  template <class T>
  Section& set(T& field, T value) {
    field = value;
    return *this;
  }
};

// A patch and where it sits in the mix.
struct Part {
  render::Voice voice;
  Placement at;
  float velocity;
};

struct Song {
  double bpm;
  Part pad, bass, arp, lead, counter;
  // Drum levels; the drums sit where a kit does, kick and snare in the middle.
  float kick, snare, hats, crash, timpani;
  float leadEcho;  // a dotted-eighth echo of the lead, mirrored across the field
  float reverb;
  float air;  // dB of lift above a few kHz: the synthesised parts alone sound dull
  std::vector<Section> sections;
  const char* ending;  // the final chord, rung out over two bars
};

// The song mixed, with a quiet start, its ending faded to silence, and levelled so that
// every song plays about as loud as the others with its peaks at -1 dBFS at most.
synth::Stereo render(const Song& song);

}  // namespace arrange
