// The special weapons: what each kind does lives in ease.cpp.
#pragma once

// How the computer pilot should use a ship's special weapon.
enum class ErikoisKaytto {
  Suoja,    // defensive: trigger when enemy shots come close
  Lahella,  // offensive at close range (rams, blades, blasts around the ship)
  Kaukaa,   // offensive at range: launch toward the target
  Pako,     // escape: trigger when in trouble (low energy, surrounded)
  Takaa,    // lay behind while being chased (mines, traps)
  Ei        // nothing to trigger
};
ErikoisKaytto erikoisenKaytto(int easelaji);
// Reach in world units within which a Lahella or Kaukaa special is worth triggering.
double erikoisenKantama(int easelaji);
