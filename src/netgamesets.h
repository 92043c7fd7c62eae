// The settings a player may change during a network match.
#pragma once

// The settings menu over the running match (which goes on underneath).
void netGameSets();
