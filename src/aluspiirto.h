// The 24 ship models and the other model display lists.
#pragma once

// Records the ship models into list_alus and the frame corners, flower,
// mushroom and asteroid into their lists; setLists calls it after every texture load.
void rakennaMallit();
