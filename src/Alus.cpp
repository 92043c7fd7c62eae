// The ship type record and the global catalogue it fills.
#include "Alus.h"

Alus alus[alustyyppeja];

// The catalogue overwrites what it uses; everything else starts at zero so that
// no field is ever read uninitialised.
Alus::Alus()
    : patienergia(0), epatienergia(0), ampumisaani(nullptr), osumisaani(nullptr),
      eampumisaani(nullptr), eosumisaani(nullptr), texture(0), patitexture(0), texture2(0),
      epatitexture(0), patihajottaa(false), epatihajottaa(false), epatiVoiHajota(false),
      patiVoiHajota(false), nopeus(0), paino(0), kaantonopeus(0), epatisade(0),
      ampumisnopeus(10), patiaika(100), maxpadit(5), maxepadit(0), patinopeus(0.6),
      patisade(0.2), edamage(0), epatipotkasu(0), sade(0), patipotkasu(0), easefuel(0),
      easekesto(0), easenopeus(0), easevauhti(0), damage(0), energia(0), jalkikoko(0), fuel(0),
      tankkaus(0), patifuel(0), aselaji(0), easelaji(0), pistemaara(0), numero(0), nimi{} {}
