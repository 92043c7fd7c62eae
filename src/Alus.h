// One ship type of the catalogue.
#pragma once

class Sound;

class Alus {
 public:
  double patienergia;   // energy of one primary projectile
  double epatienergia;  // energy of one special projectile
  Sound* ampumisaani;   // primary fire
  Sound* osumisaani;    // primary hit
  Sound* eampumisaani;  // special fire
  Sound* eosumisaani;   // special hit
  unsigned int texture;
  unsigned int patitexture;
  unsigned int texture2;
  unsigned int epatitexture;
  bool patihajottaa;
  bool epatihajottaa;
  bool epatiVoiHajota;
  bool patiVoiHajota;
  double nopeus;
  double paino;
  double kaantonopeus;
  double epatisade;
  double ampumisnopeus;
  double patiaika;
  double maxpadit;
  double maxepadit;
  double patinopeus;
  double patisade;
  double edamage;
  double epatipotkasu;
  double sade;
  double patipotkasu;
  double easefuel;
  double easekesto;
  double easenopeus;
  double easevauhti;
  double damage;
  double energia;
  double jalkikoko;
  double fuel;
  double tankkaus;
  double patifuel;
  int aselaji;
  int easelaji;
  double pistemaara;
  int numero;
  char nimi[15];

  Alus();

  // Draws this type's model at the current origin: nose turned kulma degrees about z,
  // gun to asekulma, propeller to propelli, trim in the colour of team tiimi.
  void piirra(float kulma, float asekulma, int tiimi, float propelli) const;
};

const int alustyyppeja = 24;
extern Alus alus[alustyyppeja];
