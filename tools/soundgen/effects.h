// The ship sound effects: one synthesis function per sample file of the ship catalogue.
#pragma once

#include <vector>

#include "synth.h"

namespace effects {

struct Effect {
  const char* file;  // the name the game loads, backslash included
  synth::Samples (*make)();
  bool loops;  // played in a loop: made of whole periods, no end fades
};

const std::vector<Effect>& all();

// The finished sample: the raw synthesis with click-free ends (unless it loops) and
// its peak at -1 dBFS.
synth::Samples finish(const Effect& effect);

}  // namespace effects
