// The rendered songs of the playlist, each two minutes and more, in keys and tempos of
// their own: a calm synthesiser piece, a fast battle track, a slow ambient drift and a
// heroic march. Melodies and counter-lines in eighths, figures and drums in sixteenths.
// Each song gives, in order: its tempo; its pad, bass, arpeggio, lead and counter parts
// (patch, mix placement as gain, pan and reverb send, velocity); the levels of kick,
// snare, hats, crash and timpani; the lead's echo, the reverb, the lift of the highs in
// dB; then its sections, and the chord it ends on.
#include "music.h"

#include "arrange.h"
#include "patches.h"

using arrange::Section;
using arrange::Song;
using namespace patches;

namespace music {
namespace {

// The scores are laid out by hand: a song's voices and its sections, one per line.
// clang-format off

// D minor, 100 BPM: a pulsing arpeggio under a singing lead; the themes return with a
// string line after a breakdown.
Song nebula() {
  const char* chords = "Dm Bb F C Dm Bb Gm A";
  const char* arp = "0123 2103 1230 3210";
  const char* bass = "R..R -R.O -OR. R.O.";
  const char* kick = "x... ..x. x... ....";
  const char* snare = ".... x... .... x...";
  const char* hats = "x.x. x.x. x.x. x.xx";
  const char* themeA =
      "D5 - - - A4 - D5 E5 F5 - - - D5 - - . C5 - - - F5 - A5 - G5 - - - E5 - C5 . "
      "D5 - - - A4 - D5 E5 F5 - - - G5 - F5 - D5 - - - Bb4 - D5 - C#5 - - - - - . . ";
  const char* themeB =
      "A5 - - - G5 - F5 - F5 - - - D5 - - . A5 - - - C6 - A5 - G5 - - - - - . . "
      "F5 - E5 - D5 - E5 - F5 - - - D5 - Bb4 - G5 - - - A5 - Bb5 - A5 - - - E5 - C#5 - ";
  const char* strings =
      "A4 - - - - - - - F4 - - - - - - - A4 - - - - - - - G4 - - - - - - - "
      "A4 - - - - - - - F4 - - - - - - - G4 - - - - - - - E4 - - - - - - - ";
  const char* breakLine =
      "D5 - - - - - - - C5 - - - - - - - E5 - - - - - - - F5 - - - - - - - "
      "D5 - - - - - - - C5 - - - A4 - - - Bb4 - - - - - - - C#5 - - - E5 - - - ";
  Song s{100,
         {kPad, {0.13f, 0.0f, 0.6f}, 0.8f},
         {kBass, {0.3f, 0.0f, 0.1f}, 0.85f},
         {kPluck, {0.09f, 0.45f, 0.5f}, 0.7f},
         {kLead, {0.19f, -0.1f, 0.45f}, 0.85f},
         {kStrings, {0.1f, 0.35f, 0.6f}, 0.7f},
         0.5f, 0.28f, 0.18f, 0.28f, 0.0f, 0.25f, 0.3f, 3, {}, "Dm"};
  s.sections = {
      Section(4, "Dm Bb F C").pad().arp(arp),
      Section(4, "Dm Bb Gm A").pad().arp(arp).bass(bass).drums("", "", "..x. ..x. ..x. ..x.").riser(),
      Section(8, chords).pad().arp(arp).bass(bass).drums(kick, snare, hats).melody(themeA).crash(),
      Section(8, chords).pad().arp(arp).bass(bass).drums(kick, snare, hats).melody(themeB).crash(),
      Section(8, "Bb F C Dm Bb F Gm A").pad().arp(arp).bass("R... .... R... ....")
          .drums("", "", "..x. ..x. ..x. ..x.").counter(breakLine).riser(),
      Section(8, chords).pad().arp(arp).bass(bass).drums(kick, snare, hats).melody(themeA).counter(strings)
          .crash(),
      Section(8, chords).pad().arp(arp).bass(bass).drums(kick, snare, hats).melody(themeB).counter(strings)
          .fill("..x. x.xx .xxx xxxx"),
      Section(4, "Dm Bb Gm A").pad().arp(arp).bass("R... .... .... ...."),
  };
  return s;
}

// E minor, 150 BPM: a driving bass, a lead in dotted rhythms and a soaring chorus.
Song ionStorm() {
  const char* verse = "Em Em C D Em Em C B";
  const char* chorus = "C D Em Em C D B B";
  const char* arp = "0121 2321 0121 2321";
  const char* verseBass = "R.R.R.O.R.R.R.O.";
  const char* chorusBass = "R.RRR.RRR.RRO.RO";
  const char* verseKick = "x..x ..x. x..x ..x.";
  const char* fourFloor = "x... x... x... x...";
  const char* snare = ".... x... .... x...";
  const char* eighthHats = "x.x. x.x. x.x. x.x.";
  const char* sixteenthHats = "xxxx xxxx xxxx xxxx";
  const char* verseLead =
      "E5 - - B4 - - E5 - G5 - - F#5 - - E5 - G5 - - E5 - - C5 - D5 - - - F#5 - A5 - "
      "B5 - - G5 - - E5 - G5 - - A5 - - B5 - C6 - - B5 - - G5 - F#5 - - - D#5 - - - ";
  const char* verseLead2 =
      "E5 - - B4 - - E5 - G5 - - F#5 - - E5 - G5 - - E5 - - C5 - D5 - - - F#5 - A5 - "
      "B5 - - G5 - - E5 - G5 - - A5 - - B5 - C6 - - B5 - - A5 - B5 - - - - - . . ";
  const char* chorusLead =
      "G5 - - - - - E5 - F#5 - - - - - A5 - B5 - - - - - - - B5 - A5 - G5 - F#5 - "
      "E5 - - - - - G5 - A5 - - - - - F#5 - D#5 - - - F#5 - - - B5 - - - - - . . ";
  const char* chorusStrings =
      "E4 - - - - - - - D4 - - - - - - - E4 - - - - - - - G4 - - - - - - - "
      "E4 - - - - - - - F#4 - - - - - - - F#4 - - - - - - - D#4 - - - - - - - ";
  const char* breakStrings =
      "C5 - - - - - - - E5 - - - - - - - B4 - - - - - - - G4 - - - - - - - "
      "C5 - - - - - - - E5 - - - - - - - D#5 - - - - - - - F#5 - - - - - - - ";
  Song s{150,
         {kPad, {0.09f, 0.0f, 0.5f}, 0.8f},
         {kDriveBass, {0.32f, 0.0f, 0.05f}, 0.9f},
         {kPluck, {0.08f, -0.4f, 0.4f}, 0.75f},
         {kSynthLead, {0.17f, 0.05f, 0.35f}, 0.9f},
         {kStrings, {0.08f, 0.4f, 0.5f}, 0.75f},
         0.6f, 0.32f, 0.14f, 0.3f, 0.0f, 0.22f, 0.25f, 4, {}, "Em"};
  const Section chorusSection = Section(8, chorus).pad().arp(arp).bass(chorusBass)
      .drums(fourFloor, snare, sixteenthHats).melody(chorusLead).counter(chorusStrings);
  s.sections = {
      Section(4, "Em Em C D").arp(arp),
      Section(4, "Em Em C B").arp(arp).pad().drums(fourFloor, "", "..x. ..x. ..x. ..x.").riser(),
      Section(8, verse).arp(arp).bass(verseBass).drums(verseKick, snare, eighthHats).melody(verseLead)
          .crash(),
      Section(8, verse).arp(arp).bass(verseBass).drums(verseKick, snare, eighthHats).melody(verseLead2)
          .riser(),
      Section(chorusSection).crash(),
      chorusSection,
      Section(8, "Am Am Em Em C C B B").pad().bass("R... .... R... ....")
          .drums("x... .... .... ....", ".... .... x... ....", "").counter(breakStrings).riser(),
      Section(8, verse).arp(arp).bass(verseBass).drums(verseKick, snare, eighthHats).melody(verseLead)
          .crash(),
      Section(chorusSection).crash(),
      Section(chorusSection).fill("..x. x.xx .xxx xxxx"),
      Section(4, "Em Em C B").pad().arp(arp).drums(fourFloor, "", ""),
  };
  return s;
}

// C-sharp minor, 72 BPM: slow chords under bells, a breathy lead and a soft half-time
// beat in the middle.
Song deepField() {
  const char* chords = "C#m A E B C#m A F#m G#m";
  const char* slowBells = "0... 2... 1... 3...";
  const char* bells = "0.2.1.2.3.2.1.2.";
  const char* bass = "R... .... ..R. ....";
  const char* kick = "x... .... ..x. ....";
  const char* snare = ".... .... x... ....";
  const char* hats = "..x. ..x. ..x. ..x.";
  const char* themeA =
      "G#4 - - - - - E4 - C#5 - - - - - B4 - B4 - - - G#4 - - - F#4 - - - - - - - "
      "E5 - - - - - D#5 - C#5 - - - - - E5 - F#5 - - - E5 - C#5 - D#5 - - - - - - - ";
  const char* themeB =
      "E5 - - - C#5 - - - D#5 - - - F#5 - - - G#5 - - - - - F#5 - E5 - - - - - - - "
      "C#5 - - - A4 - C#5 - E5 - - - - - C#5 - D#5 - - - - - B4 - F#5 - - - - - - - ";
  const char* stringsA =
      "E4 - - - - - - - E4 - - - - - - - E4 - - - - - - - D#4 - - - - - - - "
      "G#4 - - - - - - - A4 - - - - - - - A4 - - - - - - - G#4 - - - - - - - ";
  const char* stringsB =
      "C#4 - - - - - - - D#4 - - - - - - - D#4 - - - - - - - E4 - - - - - - - "
      "F#4 - - - - - - - E4 - - - - - - - F#4 - - - - - - - D#4 - - - - - - - ";
  const char* farewell =
      "G#4 - - - - - - - . . . . . . . . B4 - - - - - - - . . . . . . . . "
      "E5 - - - - - - - C#5 - - - - - - - . . . . . . . . D#5 - - - - - - - ";
  Song s{72,
         {kWarmPad, {0.16f, 0.0f, 0.7f}, 0.8f},
         {kSubBass, {0.34f, 0.0f, 0.1f}, 0.8f},
         {kBell, {0.1f, 0.35f, 0.7f}, 0.7f},
         {kFlute, {0.2f, -0.05f, 0.6f}, 0.8f},
         {kStrings, {0.09f, 0.3f, 0.7f}, 0.7f},
         0.4f, 0.18f, 0.09f, 0.2f, 0.0f, 0.3f, 0.45f, 6, {}, "C#m"};
  s.sections = {
      Section(8, chords).pad().arp(slowBells),
      Section(8, chords).pad().arp(bells).bass(bass).melody(themeA),
      Section(8, "A B G#m C#m F#m A B B").pad().arp(bells).bass(bass).drums(kick, snare, hats).melody(themeB)
          .counter(stringsB).crash(),
      Section(8, chords).pad().arp(bells).bass(bass).drums(kick, snare, hats).melody(themeA).counter(stringsA)
          .crash(),
      Section(8, chords).pad().arp(slowBells).melody(farewell),
  };
  return s;
}

// B-flat major, 112 BPM: brass over strings, timpani and a marching snare.
Song flagship() {
  const char* verse = "Bb F Gm Eb Bb F Eb F";
  const char* chorus = "Gm Eb Bb F Cm F Bb Bb";
  const char* arp = "0.1.2.1.0.1.2.1.";
  const char* bass = "R.R. ..R. R.R. O.R.";
  const char* kick = "x... .... x... ....";
  const char* march = ".... x..x .... x.xx";
  const char* hats = "x.x. x.x. x.x. x.x.";
  const char* themeA =
      "Bb4 - - F4 Bb4 - D5 - C5 - - - A4 - F4 - D5 - - Bb4 D5 - G5 - G5 - - - F5 - Eb5 - "
      "D5 - - Bb4 D5 - F5 - F5 - - - Eb5 - C5 - Eb5 - - - G5 - Bb5 - A5 - - - - - . . ";
  const char* themeA2 =
      "Bb4 - - F4 Bb4 - D5 - C5 - - - A4 - F4 - D5 - - Bb4 D5 - G5 - G5 - - - F5 - Eb5 - "
      "D5 - - Bb4 D5 - F5 - F5 - - - Eb5 - C5 - Bb5 - - - G5 - Eb5 - F5 - - - - - . . ";
  const char* themeB =
      "Bb5 - - - A5 - G5 - G5 - - - - - Eb5 - F5 - - - D5 - F5 - C5 - - - - - - - "
      "Eb5 - - - D5 - C5 - A4 - - - C5 - F5 - F5 - - - D5 - Bb4 - Bb4 - - - - - . . ";
  const char* hornsA =
      "D4 - - - F4 - - - C4 - - - - - - - D4 - - - - - - - Eb4 - - - G4 - - - "
      "F4 - - - - - - - A4 - - - - - - - G4 - - - - - - - F4 - - - C4 - - - ";
  const char* hornsB =
      "D4 - - - - - - - Eb4 - - - - - - - D4 - - - - - - - C4 - - - - - - - "
      "Eb4 - - - - - - - F4 - - - - - - - F4 - - - - - - - D4 - - - - - - - ";
  const char* hornsBridge =
      "G4 - - - - - - - Bb4 - - - - - - - G4 - - - - - - - Bb4 - - - - - - - "
      "C5 - - - - - - - Eb5 - - - - - - - C5 - - - - - - - A4 - - - - - - - ";
  Song s{112,
         {kStrings, {0.12f, 0.0f, 0.55f}, 0.8f},
         {kBass, {0.28f, 0.0f, 0.1f}, 0.8f},
         {kPluck, {0.07f, 0.4f, 0.45f}, 0.7f},
         {kBrass, {0.26f, -0.1f, 0.45f}, 0.9f},
         {kHorn, {0.13f, 0.35f, 0.5f}, 0.8f},
         0.45f, 0.22f, 0.1f, 0.3f, 0.35f, 0.0f, 0.35f, 3, {}, "Bb"};
  s.sections = {
      Section(4, "Bb Eb Bb F").pad().timpani("x... .... .... x.x.").counter(
          "F4 - - - - - - - G4 - - - - - - - F4 - - - D4 - - - C4 - - - - - - - "),
      Section(4, "Gm Eb Cm F").pad().arp(arp).timpani("x... .... .... ....").riser().counter(
          "D4 - - - - - - - Eb4 - - - - - - - Eb4 - - - - - - - F4 - - - - - - - "),
      Section(8, verse).pad().arp(arp).bass(bass).drums(kick, march, hats).timpani("x... .... .... ....")
          .melody(themeA).crash(),
      Section(8, verse).pad().arp(arp).bass(bass).drums(kick, march, hats).timpani("x... .... .... ....")
          .melody(themeA2).counter(hornsA),
      Section(8, chorus).pad().arp(arp).bass(bass).drums(kick, march, hats).melody(themeB).counter(hornsB)
          .crash(),
      Section(8, "Gm Gm Eb Eb Cm Cm F F").pad().bass("R... .... .... ....").timpani("x... .... .... ....")
          .counter(hornsBridge).riser(),
      Section(8, verse).pad().arp(arp).bass(bass).drums(kick, march, hats).timpani("x... .... x... ....")
          .melody(themeA).counter(hornsA).crash(),
      Section(8, chorus).pad().arp(arp).bass(bass).drums(kick, march, hats).timpani("x... .... .... ....")
          .melody(themeB).counter(hornsB).fill("..x. x.xx .xxx xxxx"),
      Section(4, "Eb F Eb F").pad().timpani("x... .... x.x. x.x."),
  };
  return s;
}

// clang-format on
}  // namespace

const std::vector<RenderedSong>& renderedSongs() {
  static const std::vector<RenderedSong> songs = {
      {"nebula.ogg", nebula},
      {"ionstorm.ogg", ionStorm},
      {"deepfield.ogg", deepField},
      {"flagship.ogg", flagship},
  };
  return songs;
}

synth::Stereo RenderedSong::render() const { return arrange::render(arrangement()); }

}  // namespace music
