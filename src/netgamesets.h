// The settings a player may change while a network match goes on.
#pragma once

// Music and effects, their volumes, the camera and the detail over the running match,
// each change applied at once and saved on leaving (Escape or "Back to the Match").
void netGameSets();
