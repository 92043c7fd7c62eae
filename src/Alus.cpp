// SCAFFOLD: replaced by the simulation work.
#include "Alus.h"
Alus alus[alustyyppeja];
Alus::Alus() {}
