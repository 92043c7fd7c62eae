// Start-up data: the ship catalogue, stars, asteroids and the objective points.
#pragma once

void alota();
