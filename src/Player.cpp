// SCAFFOLD: replaced by the simulation work.
#include "Player.h"
Player player[maxPlayers];
Player::Player() {}
Player::~Player() {}
void Player::asetaAlus(Alus) {}
void Player::uudestaan(Alus) {}
void Player::liiku() {}
void Player::ammu() {}
void Player::ease() {}
void Player::ailiiku() {}
bool Player::tormaa(double, double, double, int) { return false; }
bool Player::tormaa(Pati, Alus) { return false; }
void Player::liikutaPadit() {}
void Player::liikutaePadit() {}
void Player::tarkistaHajosikoPadit() {}
void Player::laitaAlkuSirpaleet() {}
void Player::laskeAlkuSirpaleet() {}
void Player::lisaalima() {}
void Player::laskeKaasujaljet() {}
void Player::laskeViivat() {}
