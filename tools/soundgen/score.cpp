#include "score.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace score {
namespace {

constexpr int kNotALetter = -100;

// Semitones above C of a letter with an optional sharp or flat (Cb gives -1, B# 12);
// `used` gets the number of characters read.
int semitonesAboveC(const std::string& name, size_t& used) {
  static const int kLetters[7] = {9, 11, 0, 2, 4, 5, 7};  // A B C D E F G
  if (name.empty() || name[0] < 'A' || name[0] > 'G') return kNotALetter;
  int pc = kLetters[name[0] - 'A'];
  used = 1;
  if (name.size() > 1 && (name[1] == '#' || name[1] == 'b')) {
    pc += name[1] == '#' ? 1 : -1;
    used = 2;
  }
  return pc;
}

std::vector<std::string> words(const std::string& line) {
  std::istringstream in(line);
  std::vector<std::string> out;
  for (std::string w; in >> w;) out.push_back(w);
  return out;
}

}  // namespace

int pitchOf(const std::string& name) {
  size_t used = 0;
  int semitones = semitonesAboveC(name, used);
  if (semitones == kNotALetter || used + 1 != name.size() ||
      !std::isdigit(static_cast<unsigned char>(name[used])))
    return -1;
  return 12 * (name[used] - '0' + 1) + semitones;
}

namespace {

constexpr int kRest = -1;
constexpr int kHold = -2;

// Notes from one code per step: a MIDI pitch starts a note, kHold extends the sounding
// note, kRest (or anything else) silences it.
std::vector<Note> notesFromSteps(const std::vector<int>& steps) {
  std::vector<Note> notes;
  bool sounding = false;
  for (int step = 0; step < static_cast<int>(steps.size()); ++step) {
    int code = steps[step];
    if (code == kHold && sounding) {
      ++notes.back().length;
    } else if (code >= 0) {
      notes.push_back({step, 1, code});
      sounding = true;
    } else {
      sounding = false;
    }
  }
  return notes;
}

}  // namespace

std::vector<Note> parse(const std::string& line) {
  std::vector<int> steps;
  for (const std::string& w : words(line)) steps.push_back(w == "-" ? kHold : w == "." ? kRest : pitchOf(w));
  return notesFromSteps(steps);
}

std::vector<Note> figure(const std::string& pattern, const Chord& chord) {
  const int tones = static_cast<int>(chord.tones.size());
  std::vector<int> steps;
  for (char c : pattern) {
    if (c >= '0' && c <= '9') {
      int index = c - '0';
      steps.push_back(chord.tones[index % tones] + 12 * (index / tones));
    } else if (c == 'R' || c == 'O') {
      steps.push_back(chord.bass + (c == 'O' ? 12 : 0));
    } else if (c == '.' || c == '-') {
      steps.push_back(c == '.' ? kHold : kRest);
    }
  }
  return notesFromSteps(steps);
}

std::vector<int> hits(const std::string& pattern) {
  std::vector<int> steps;
  int step = 0;
  for (char c : pattern) {
    if (c == ' ') continue;
    if (c == 'x') steps.push_back(step);
    ++step;
  }
  return steps;
}

Chord chord(const std::string& name) {
  size_t used = 0;
  int root = (std::max(semitonesAboveC(name, used), 0) + 12) % 12;
  std::string quality = name.substr(used);
  std::vector<int> intervals = {0, 4, 7};
  if (quality.rfind("m", 0) == 0) intervals[1] = 3;
  if (quality.find("sus") != std::string::npos) intervals[1] = 5;
  if (quality.find('7') != std::string::npos) intervals.push_back(10);

  Chord c{36 + root, {}};
  for (int interval : intervals) {
    int tone = 60 + (root + interval) % 12;
    if (tone >= 67) tone -= 12;  // keep every voice between G3 and F#4: smooth changes
    c.tones.push_back(tone);
  }
  std::sort(c.tones.begin(), c.tones.end());
  return c;
}

std::vector<Chord> chords(const std::string& names) {
  std::vector<Chord> out;
  for (const std::string& w : words(names)) out.push_back(chord(w));
  return out;
}

}  // namespace score
