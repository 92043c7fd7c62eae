// SCAFFOLD: replaced by the simulation and rendering work.
#include "scene.h"
Sirpale sirpale[maxSirpaleita];
Star star[tahtia];
Pati asteroidi[asteroideja];
Pati pikkumies[pikkumiehia];
float alfa, beta, alfa2, beta2;
int gamemode = 0;
bool playerrajahtaa[maxPlayers];
float prajahdys[maxPlayers][2];
signed char playeruudestaan[maxPlayers];
bool asteroidiuudestaan[asteroideja];
bool asteroidirajahtaa;
float arajahdys[2];
pikkumiessiirto siirrot[10];
void alustaTahdet() {}
void alustaAsteroidit() {}
void calculateFrame(int) {}
void laskeAsteroidit() {}
void laskePikkumiehet() {}
void drawFrame(int) {}
void piirraMaailma() {}
void drawPlanet() {}
void piirraAsteroidit() {}
void piirraPikkumiehet() {}
void valitseAlus(int) {}
void drawAlusValinta(int, int) {}
void Player::piirraPadit() {}
void Player::piirraePadit() {}
void Player::piirraLimat() {}
void Player::piirraKaasujaljet() {}
void Player::piirraViivat() {}
void Player::piirraAlkuSirpaleet() {}
void Player::piirraGraffat() {}
