// A compact text notation for melodies, chords and rhythms, shared by the tracker song
// and the rendered music. A melody line is a list of steps separated by spaces: a note
// name with octave ("A4", "C#5", "Bb3") starts a note, "-" holds the previous one and
// "." rests.
#pragma once

#include <string>
#include <vector>

namespace score {

struct Note {
  int step;    // first step of the note
  int length;  // in steps
  int pitch;   // MIDI note number
};

// MIDI note number of a name such as "C4" (= 60), "F#2" or "Bb3"; -1 when not a note.
int pitchOf(const std::string& name);
std::vector<Note> parse(const std::string& line);

struct Chord {
  int bass;                // MIDI note of the root in the bass register
  std::vector<int> tones;  // voiced chord tones in the middle register, low to high
};

// "Am", "F", "C#m", "Bb", "Asus", "G7": a triad (or seventh chord) voiced close between
// G3 and F#4, so that successive chords move by small steps.
Chord chord(const std::string& name);
std::vector<Chord> chords(const std::string& names);

// A rhythmic figure over a chord, one character per step: a digit is a chord tone
// (indices past the last tone continue an octave up), 'R' the bass root, 'O' the root an
// octave up, '.' holds, '-' rests; spaces only group the steps for the eye.
std::vector<Note> figure(const std::string& pattern, const Chord& chord);
// Steps of a drum line where 'x' strikes ('.' is silent, spaces group).
std::vector<int> hits(const std::string& pattern);

}  // namespace score
