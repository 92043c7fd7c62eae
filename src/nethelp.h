// Wire records of the in-game messages.
#pragma once

// A slime blob stuck on a ship, as sent to clients.
struct limajuttu {
  float x, y;
  short player;
  short kohta;
};
