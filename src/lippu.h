// The waving-flag intro.
#pragma once

void AlotaLippu();
