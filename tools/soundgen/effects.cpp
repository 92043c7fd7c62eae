#include "effects.h"

#include <cmath>

#include "layers.h"

using layers::NoiseBurst;
using layers::Tone;
using synth::Osc;
using synth::Samples;

namespace effects {
namespace {

constexpr NoiseBurst::Mode kLow = NoiseBurst::Low;
constexpr NoiseBurst::Mode kBand = NoiseBurst::Band;
constexpr NoiseBurst::Mode kHigh = NoiseBurst::High;

Samples lasting(double secondsLong) { return Samples(synth::frames(secondsLong), 0.0f); }

// The recipe of the heavy impacts: a falling sine boom under a noise burst whose
// low-pass cutoff falls with it, optional debris crackle, soft-clipped for weight.
struct Blast {
  double seconds;
  double boomFromHz, boomToHz;
  double noiseFromHz, noiseToHz;
  uint32_t seed;
  double cracklePerSecond;  // 0 for none
  float drive;
};

Samples blast(const Blast& b) {
  Samples s = lasting(b.seconds);
  const double decay = b.seconds * 0.93;
  Tone(Osc::Sine).sweep(b.boomFromHz, b.boomToHz, b.seconds * 0.65).envelope(0.001, decay).addTo(s);
  NoiseBurst(b.seed)
      .filter(kLow, b.noiseFromHz, b.noiseToHz, b.seconds * 0.8, 1.0)
      .envelope(0.001, decay * 0.95)
      .gain(0.9f)
      .addTo(s);
  if (b.cracklePerSecond > 0.0)
    layers::addCrackle(s, b.seed + 1, 0.03, b.seconds * 0.75, b.cracklePerSecond, 0.28f);
  layers::saturate(s, b.drive);
  return s;
}

// Ship 0's light blaster; it also serves the rapid-fire guns of ships 2, 6 and 8, so it
// has to stay short and unobtrusive.
Samples a0Shot() {
  Samples s = lasting(0.075);
  Tone(Osc::Square).sweep(2200, 520, 0.06).envelope(0.001, 0.07).lowpass(7000, 2500, 0.9).gain(0.6).addTo(s);
  NoiseBurst(1).filter(kHigh, 3000, 3000, 0, 0.7).envelope(0.0005, 0.018).gain(0.35).addTo(s);
  return s;
}

// Ship 0's special: a rising power-up shimmer.
Samples a0Special() {
  Samples s = lasting(0.5);
  Tone(Osc::Saw)
      .sweep(180, 720, 0.4)
      .envelope(0.06, 0.44)
      .lowpass(600, 4000, 3.0)
      .tremolo(18, 0.5)
      .gain(0.6)
      .addTo(s);
  Tone(Osc::Sine).sweep(360, 1440, 0.4).envelope(0.05, 0.42).fm(2.0, 1.5, 0.2).gain(0.35).addTo(s);
  NoiseBurst(2).filter(kBand, 800, 5000, 0.45, 2.0).envelope(0.12, 0.35).gain(0.5).addTo(s);
  return s;
}

// Ship 1's heavy plasma ball.
Samples a1Shot() {
  Samples s = lasting(0.23);
  Tone(Osc::Saw).sweep(320, 70, 0.2).envelope(0.002, 0.22).lowpass(3000, 300, 4.0).gain(0.8).addTo(s);
  Tone(Osc::Sine).sweep(140, 45, 0.12).envelope(0.002, 0.18).gain(0.9).addTo(s);
  NoiseBurst(3).filter(kBand, 1800, 400, 0.15, 1.5).envelope(0.001, 0.1).gain(0.5).addTo(s);
  return s;
}

Samples a1Hit() { return blast({0.28, 130, 38, 5000, 250, 4, 120, 1.5f}); }

// The big one: ship 2's self-destruct and every ship's explosion.
Samples a2Explosion() {
  Samples s = lasting(1.35);
  Tone(Osc::Sine).sweep(95, 30, 0.7).envelope(0.003, 1.25).gain(1.1).addTo(s);
  NoiseBurst(21).filter(kLow, 5000, 160, 1.0, 0.9).envelope(0.002, 1.3).gain(0.9).addTo(s);
  NoiseBurst(22).filter(kBand, 2600, 1100, 0.08, 1.2).envelope(0.0005, 0.09).gain(0.8).addTo(s);
  NoiseBurst(23).filter(kLow, 220, 90, 1.1, 1.4).envelope(0.04, 1.3).gain(2.2).addTo(s);
  layers::addCrackle(s, 24, 0.1, 1.1, 160, 0.3f);
  layers::saturate(s, 2.0f);
  return s;
}

// Ship 3's twin blaster.
Samples a3Shot() {
  Samples s = lasting(0.14);
  Tone(Osc::Saw).sweep(1250, 300, 0.12).envelope(0.001, 0.13).lowpass(5000, 1200, 1.5).gain(0.5).addTo(s);
  Tone(Osc::Saw).sweep(1310, 315, 0.12).envelope(0.001, 0.13).lowpass(5000, 1200, 1.5).gain(0.5).addTo(s);
  NoiseBurst(31).filter(kBand, 3000, 1500, 0.05, 1.0).envelope(0.0005, 0.04).gain(0.4).addTo(s);
  return s;
}

Samples a3SpecialHit() {
  Samples s = lasting(0.26);
  Tone(Osc::Sine).sweep(900, 500, 0.2).envelope(0.001, 0.24).fm(1.41, 6.0, 0.5).gain(0.6).addTo(s);
  NoiseBurst(32).filter(kBand, 4000, 900, 0.2, 1.8).envelope(0.001, 0.2).gain(0.7).addTo(s);
  return s;
}

// Ship 4's long-range rail shot: a sharp crack with a metallic ring.
Samples a4Shot() {
  Samples s = lasting(0.2);
  NoiseBurst(41).filter(kHigh, 2500, 2500, 0, 0.8).envelope(0.0003, 0.035).gain(0.9).addTo(s);
  Tone(Osc::Sine).sweep(3200, 1500, 0.15).envelope(0.001, 0.19).fm(2.76, 2.0, 0.1).gain(0.45).addTo(s);
  Tone(Osc::Sine).sweep(180, 90, 0.06).envelope(0.001, 0.08).gain(0.6).addTo(s);
  return s;
}

// Ship 4's slow mine: a launch thunk and two arming blips.
Samples a4Special() {
  Samples s = lasting(0.42);
  Tone(Osc::Sine).sweep(170, 60, 0.1).envelope(0.001, 0.15).gain(1.0).addTo(s);
  NoiseBurst(42).filter(kLow, 2500, 400, 0.08, 1.0).envelope(0.001, 0.08).gain(0.6).addTo(s);
  Tone(Osc::Square).pitch(1320).envelope(0.002, 0.07).lowpass(3000, 3000, 0.7).at(0.17).gain(0.25).addTo(s);
  Tone(Osc::Square).pitch(1760).envelope(0.002, 0.09).lowpass(3500, 3500, 0.7).at(0.29).gain(0.25).addTo(s);
  return s;
}

Samples a4SpecialHit() { return blast({0.55, 110, 40, 4500, 300, 43, 140, 1.6f}); }

// Ship 5's huge blob cannon: a deep whoomp.
Samples a5Shot() {
  Samples s = lasting(0.25);
  Tone(Osc::Sine).sweep(210, 48, 0.2).envelope(0.004, 0.24).gain(1.0).addTo(s);
  Tone(Osc::Triangle).sweep(420, 96, 0.2).envelope(0.004, 0.2).gain(0.4).addTo(s);
  NoiseBurst(51).filter(kLow, 1200, 200, 0.2, 2.5).envelope(0.01, 0.22).gain(0.7).addTo(s);
  return s;
}

Samples a5Hit() {
  Samples s = lasting(0.3);
  NoiseBurst(52).filter(kLow, 3000, 150, 0.25, 5.0).envelope(0.002, 0.28).gain(1.0).addTo(s);
  Tone(Osc::Sine).sweep(90, 35, 0.2).envelope(0.002, 0.27).gain(0.9).addTo(s);
  layers::saturate(s, 1.4f);
  return s;
}

// Ship 6's special: a warp whoosh.
Samples a6Special() {
  Samples s = lasting(0.45);
  Tone(Osc::Sine).sweep(200, 2200, 0.4).envelope(0.22, 0.22).fm(0.5, 3.0, 0.5).gain(0.9).addTo(s);
  Tone(Osc::Triangle).sweep(300, 3300, 0.4).envelope(0.22, 0.2).tremolo(24, 0.5).gain(0.4).addTo(s);
  NoiseBurst(61).filter(kBand, 500, 6000, 0.42, 3.0).envelope(0.2, 0.24).gain(0.5).addTo(s);
  return s;
}

// Ship 7's mine drop: a soft bloop.
Samples a7Shot() {
  Samples s = lasting(0.2);
  Tone(Osc::Sine).sweep(420, 140, 0.15).envelope(0.003, 0.19).gain(1.0).addTo(s);
  Tone(Osc::Triangle).sweep(840, 280, 0.15).envelope(0.003, 0.1).gain(0.3).addTo(s);
  NoiseBurst(71).filter(kBand, 1500, 1500, 0, 2.0).envelope(0.0005, 0.012).gain(0.4).addTo(s);
  return s;
}

// Ship 9's laser, which loops for as long as the beam burns. Every component repeats a
// whole number of times in the 0.5 s loop: all frequencies sit on a 2 Hz grid.
Samples a9LaserHum() {
  Osc body(Osc::Saw), beat(Osc::Saw), buzz(Osc::Sine), buzzMod(Osc::Sine);
  synth::Svf filter;
  int i = 0;
  return synth::periodic(synth::frames(0.5), [&]() {
    double t = synth::seconds(i++);
    double wobble = 0.5 + 0.5 * std::sin(synth::kTwoPi * 6.0 * t);
    double hum = 0.55 * body.next(112.0) + 0.45 * beat.next(114.0);
    hum = filter.lowpass(static_cast<float>(hum), 900.0 + 600.0 * wobble, 2.0);
    double sizzle = buzz.next(1344.0 + 2.0 * 224.0 * buzzMod.next(224.0));
    return static_cast<float>(hum + 0.12 * sizzle * (0.6 + 0.4 * wobble));
  });
}

// Ship 10's plasma shot.
Samples a10Shot() {
  Samples s = lasting(0.18);
  Tone(Osc::Square).sweep(900, 200, 0.16).envelope(0.002, 0.17).lowpass(4000, 800, 2.5).gain(0.7).addTo(s);
  NoiseBurst(101).filter(kBand, 2000, 600, 0.15, 1.2).envelope(0.002, 0.12).gain(0.5).addTo(s);
  return s;
}

// Ship 10's energy field coming up.
Samples a10Special() {
  Samples s = lasting(0.6);
  for (double ratio : {1.0, 1.26, 1.5}) {
    Tone(Osc::Triangle)
        .sweep(220 * ratio, 330 * ratio, 0.5)
        .envelope(0.12, 0.47)
        .tremolo(11, 0.4)
        .gain(0.35)
        .addTo(s);
  }
  NoiseBurst(102).filter(kBand, 1000, 3000, 0.5, 4.0).envelope(0.15, 0.44).gain(0.5).addTo(s);
  return s;
}

// Ship 11's dual-tone laser.
Samples a11Shot() {
  Samples s = lasting(0.17);
  Tone(Osc::Sine).sweep(1500, 850, 0.15).envelope(0.001, 0.16).gain(0.6).addTo(s);
  Tone(Osc::Sine).sweep(2250, 1275, 0.15).envelope(0.001, 0.12).fm(1.0, 1.0, 0.0).gain(0.4).addTo(s);
  return s;
}

// Ship 11's shockwave landing.
Samples a11SpecialHit() {
  Samples s = lasting(0.5);
  Tone(Osc::Sine).sweep(100, 40, 0.3).envelope(0.002, 0.45).gain(1.0).addTo(s);
  NoiseBurst(111).filter(kBand, 3000, 300, 0.45, 1.5).envelope(0.01, 0.48).gain(0.9).addTo(s);
  return s;
}

// Ship 13's heavy cannon.
Samples a13Shot() {
  Samples s = lasting(0.25);
  NoiseBurst(131).filter(kBand, 3500, 900, 0.05, 0.9).envelope(0.0005, 0.06).gain(0.9).addTo(s);
  Tone(Osc::Sine).sweep(110, 40, 0.15).envelope(0.002, 0.24).gain(1.0).addTo(s);
  NoiseBurst(132).filter(kLow, 2000, 200, 0.2, 1.0).envelope(0.002, 0.22).gain(0.6).addTo(s);
  layers::saturate(s, 2.2f);
  return s;
}

// Ship 13's missiles: ignition and a rising hiss.
Samples a13Special() {
  Samples s = lasting(0.5);
  Tone(Osc::Sine).sweep(150, 60, 0.08).envelope(0.002, 0.1).gain(0.8).addTo(s);
  NoiseBurst(133).filter(kBand, 700, 4500, 0.45, 2.5).envelope(0.03, 0.46).gain(1.0).addTo(s);
  NoiseBurst(134).filter(kLow, 500, 500, 0, 0.7).envelope(0.02, 0.4).gain(0.6).addTo(s);
  return s;
}

Samples a13Hit() { return blast({0.3, 120, 45, 6000, 350, 135, 150, 1.8f}); }

// Ship 14's bomb launcher: a mechanical chunk.
Samples a14Shot() {
  Samples s = lasting(0.22);
  NoiseBurst(141).filter(kBand, 1200, 1200, 0, 3.0).envelope(0.0005, 0.03).gain(0.8).addTo(s);
  Tone(Osc::Square).sweep(95, 70, 0.1).envelope(0.002, 0.15).lowpass(900, 300, 1.0).gain(0.7).addTo(s);
  Tone(Osc::Sine).pitch(730).envelope(0.001, 0.2).fm(1.41, 2.0, 0.0).at(0.02).gain(0.25).addTo(s);
  return s;
}

// Ship 14's electric discharge.
Samples a14Special() {
  Samples s = lasting(0.5);
  Tone(Osc::Saw)
      .sweep(60, 90, 0.45)
      .envelope(0.01, 0.48)
      .fm(7.3, 9.0, 2.0)
      .lowpass(7000, 2000, 1.2)
      .tremolo(23, 0.6)
      .gain(0.6)
      .addTo(s);
  NoiseBurst(142)
      .filter(kHigh, 4000, 2000, 0.4, 1.0)
      .envelope(0.005, 0.45)
      .tremolo(31, 0.8)
      .gain(0.5)
      .addTo(s);
  return s;
}

Samples a14Hit() { return blast({0.3, 140, 50, 4000, 400, 143, 0, 1.7f}); }

// Ship 15's drifting mines leave every few frames: only a light tick.
Samples a15Shot() {
  Samples s = lasting(0.06);
  Tone(Osc::Sine).sweep(1300, 800, 0.04).envelope(0.001, 0.055).gain(0.8).addTo(s);
  NoiseBurst(151).filter(kHigh, 5000, 5000, 0, 0.7).envelope(0.0003, 0.008).gain(0.3).addTo(s);
  return s;
}

// Ship 15's repulsor beam, used continuously.
Samples a15Special() {
  Samples s = lasting(0.4);
  Tone(Osc::Saw)
      .pitch(82)
      .envelope(0.03, 0.37)
      .fm(0.5, 1.5, 0.5)
      .lowpass(2500, 800, 3.0)
      .tremolo(14, 0.5)
      .gain(0.8)
      .addTo(s);
  Tone(Osc::Sine).pitch(164).envelope(0.03, 0.3).gain(0.4).addTo(s);
  return s;
}

// Ship 16's flak cannon.
Samples a16Shot() {
  Samples s = lasting(0.15);
  Tone(Osc::Sine).sweep(200, 65, 0.1).envelope(0.001, 0.14).gain(1.0).addTo(s);
  NoiseBurst(161).filter(kBand, 2500, 700, 0.1, 1.0).envelope(0.0005, 0.09).gain(0.8).addTo(s);
  layers::saturate(s, 1.8f);
  return s;
}

// Ship 16's swarm of pellets: a fast, chattering burst.
Samples a16Special() {
  Samples s = lasting(0.45);
  NoiseBurst(162)
      .filter(kBand, 2500, 1000, 0.4, 1.5)
      .envelope(0.002, 0.44)
      .tremolo(28, 0.95)
      .gain(0.9)
      .addTo(s);
  Tone(Osc::Square)
      .sweep(160, 110, 0.4)
      .envelope(0.002, 0.42)
      .lowpass(1500, 500, 1.0)
      .tremolo(28, 0.95)
      .gain(0.5)
      .addTo(s);
  return s;
}

// A metallic clank.
Samples a16Hit() {
  Samples s = lasting(0.2);
  Tone(Osc::Sine).pitch(520).envelope(0.0005, 0.19).fm(1.41, 5.0, 0.3).gain(0.6).addTo(s);
  Tone(Osc::Sine).pitch(1370).envelope(0.0005, 0.1).fm(2.13, 3.0, 0.0).gain(0.3).addTo(s);
  NoiseBurst(163).filter(kHigh, 2000, 2000, 0, 0.7).envelope(0.0005, 0.03).gain(0.5).addTo(s);
  return s;
}

// Ship 17, the light fighter: a thin, bright laser.
Samples a17Shot() {
  Samples s = lasting(0.12);
  Tone(Osc::Sine).sweep(3400, 700, 0.1).envelope(0.001, 0.11).fm(0.5, 1.2, 0.2).gain(0.8).addTo(s);
  return s;
}

// Ship 17's torpedo.
Samples a17Special() {
  Samples s = lasting(0.4);
  Tone(Osc::Saw).sweep(90, 260, 0.3).envelope(0.005, 0.38).lowpass(400, 3000, 5.0).gain(0.7).addTo(s);
  Tone(Osc::Sine).sweep(120, 50, 0.1).envelope(0.002, 0.12).gain(0.8).addTo(s);
  NoiseBurst(171).filter(kBand, 600, 2500, 0.35, 2.0).envelope(0.02, 0.36).gain(0.5).addTo(s);
  return s;
}

Samples a17Hit() {
  Samples s = lasting(0.12);
  NoiseBurst(172).filter(kHigh, 3000, 1500, 0.08, 0.9).envelope(0.0003, 0.09).gain(0.9).addTo(s);
  Tone(Osc::Sine).sweep(2400, 1800, 0.1).envelope(0.0005, 0.11).gain(0.3).addTo(s);
  return s;
}

Samples a17SpecialHit() {
  Samples s = lasting(0.4);
  Tone(Osc::Sine).sweep(160, 55, 0.25).envelope(0.001, 0.38).gain(0.9).addTo(s);
  NoiseBurst(173).filter(kBand, 3500, 500, 0.3, 1.3).envelope(0.001, 0.37).gain(1.0).addTo(s);
  Tone(Osc::Sine).pitch(880).envelope(0.001, 0.3).fm(3.5, 3.0, 0.0).gain(0.2).addTo(s);
  layers::saturate(s, 1.5f);
  return s;
}

// Ship 18's flame burst.
Samples a18Shot() {
  Samples s = lasting(0.22);
  NoiseBurst(181).filter(kLow, 900, 3500, 0.08, 0.8).envelope(0.04, 0.18).gain(1.0).addTo(s);
  layers::addCrackle(s, 182, 0.0, 0.22, 220, 0.35f);
  Tone(Osc::Sine).sweep(70, 55, 0.2).envelope(0.03, 0.18).gain(0.6).addTo(s);
  return s;
}

// Ship 18's special: a falling, resonant sweep.
Samples a18Special() {
  Samples s = lasting(0.45);
  Tone(Osc::Saw).sweep(520, 110, 0.4).envelope(0.005, 0.44).lowpass(5000, 300, 8.0).gain(0.7).addTo(s);
  Tone(Osc::Saw).sweep(526, 111, 0.4).envelope(0.005, 0.44).lowpass(5000, 300, 8.0).gain(0.5).addTo(s);
  return s;
}

// Ship 20's twin autocannon: two quick reports.
Samples a20Shot() {
  Samples s = lasting(0.17);
  for (double start : {0.0, 0.065}) {
    NoiseBurst(static_cast<uint32_t>(201 + start * 1000))
        .filter(kBand, 3000, 1000, 0.04, 1.0)
        .envelope(0.0005, 0.05)
        .at(start)
        .gain(0.8)
        .addTo(s);
    Tone(Osc::Sine).sweep(160, 70, 0.06).envelope(0.001, 0.09).at(start).gain(0.9).addTo(s);
  }
  layers::saturate(s, 1.6f);
  return s;
}

}  // namespace

const std::vector<Effect>& all() {
  static const std::vector<Effect> table = {
      {"sounds\\a_0_ampumis.wav", a0Shot, false},         {"sounds\\a_0_eampumis.wav", a0Special, false},
      {"sounds\\a_1_ampumis.wav", a1Shot, false},         {"sounds\\a_1_osumis.wav", a1Hit, false},
      {"sounds\\a_2_eampumis.wav", a2Explosion, false},   {"sounds\\a_3_ampumis.wav", a3Shot, false},
      {"sounds\\a_3_eosumis.wav", a3SpecialHit, false},   {"sounds\\a_4_eosumis.wav", a4SpecialHit, false},
      {"sounds\\a_4_ampumis.wav", a4Shot, false},         {"sounds\\a_4_eampumis.wav", a4Special, false},
      {"sounds\\a_5_ampumis.wav", a5Shot, false},         {"sounds\\a_5_osumis.wav", a5Hit, false},
      {"sounds\\a_6_eampumis.wav", a6Special, false},     {"sounds\\a_7_ampumis.wav", a7Shot, false},
      {"sounds\\a_9_ampumis.wav", a9LaserHum, true},      {"sounds\\a_10_ampumis.wav", a10Shot, false},
      {"sounds\\a_10_eampumis.wav", a10Special, false},   {"sounds\\a_11_ampumis.wav", a11Shot, false},
      {"sounds\\a_11_eosumis.wav", a11SpecialHit, false}, {"sounds\\a_13_ampumis.wav", a13Shot, false},
      {"sounds\\a_13_eampumis.wav", a13Special, false},   {"sounds\\a_13_osumis.wav", a13Hit, false},
      {"sounds\\a_14_ampumis.wav", a14Shot, false},       {"sounds\\a_14_eampumis.wav", a14Special, false},
      {"sounds\\a_14_osumis.wav", a14Hit, false},         {"sounds\\a_15_ampumis.wav", a15Shot, false},
      {"sounds\\a_15_eampumis.wav", a15Special, false},   {"sounds\\a_16_ampumis.wav", a16Shot, false},
      {"sounds\\a_16_eampumis.wav", a16Special, false},   {"sounds\\a_16_osumis.wav", a16Hit, false},
      {"sounds\\a_17_ampumis.wav", a17Shot, false},       {"sounds\\a_17_eampumis.wav", a17Special, false},
      {"sounds\\a_17_osumis.wav", a17Hit, false},         {"sounds\\a_17_eosumis.wav", a17SpecialHit, false},
      {"sounds\\a_18_ampumis.wav", a18Shot, false},       {"sounds\\a_18_eampumis.wav", a18Special, false},
      {"sounds\\a_20_ampumis.wav", a20Shot, false},
  };
  return table;
}

Samples finish(const Effect& effect) {
  Samples s = effect.make();
  if (effect.loops)
    synth::startAtZeroCrossing(s);
  else
    synth::fadeEnds(s, 0.0015, 0.008);
  synth::normalise(s, -1.0);
  return s;
}

}  // namespace effects
