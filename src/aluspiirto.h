// The 24 ship models and the other model display lists.
#pragma once

// Records the ship models into list_alus (plus the trim and moving-part lists of
// this file), the frame corners into list_int 19-21, the flower into 22, the
// mushroom into 23 and the asteroid into list_asteroid. setLists calls it after
// every texture load; the lists of the previous call are deleted first.
void rakennaMallit();
