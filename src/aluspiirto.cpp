// SCAFFOLD: replaced by the ship model work.
#include "aluspiirto.h"
#include "Player.h"
void rakennaMallit() {}
void Player::piirra() {}
void Player::piirra(int, int, int, int, int) {}
void Player::piirraPadit() {}
void Player::piirraePadit() {}
void Player::piirraLimat() {}
void Player::piirraKaasujaljet() {}
void Player::piirraViivat() {}
void Player::piirraAlkuSirpaleet() {}
void Player::piirraGraffat() {}
