// Ship choice over the network. The host asks whoever must choose (a computer pilot
// chooses at once, a person on its own machine), checks what comes back and falls
// back to a random affordable ship when the time is up or the owner has gone; the
// owner's machine shows the choice screen while the match goes on underneath.
#pragma once

const int valinnanAika = 15;  // seconds a person has to choose

// Host.
void aloitaValinnat();  // a new match: nothing pending
// Match player `pelaaja` must choose a ship (a dead ship's timer held at its respawn, or a
// credit match starting): a computer pilot chooses at once by its own rule, a person is
// given valinnanAika seconds (a remote one is asked through the next FRAME). A player
// already choosing keeps its deadline.
void pyydaValinta(int pelaaja);
bool odottaaValintaa(int pelaaja);
int valinnanAikaaMs(int pelaaja);  // time left to choose, 0 when not choosing
// A choice from connection `yhteys` (0: the host's own players): taken when that
// connection owns the player, the player is choosing, the ship exists and is affordable.
// Otherwise refused (false) and the player still chooses.
bool tarjoaValinta(int yhteys, int pelaaja, int alusnumero);
// Every pass: a player whose time is up or whose owner has gone gets a random affordable
// ship, or is out of the match when it cannot afford any.
void valintaAjat();
// A random ship (affordable in a credit game), or out of the match when none is.
void annaArvottuAlus(int pelaaja);
// Gives the ship (uudestaan), charges its price in a credit game, places the start
// shards and lets a timer held at its respawn run on, so that the ship comes back.
void annaVerkkoAlus(int pelaaja, int alusnumero);

// The owner's machine: the choice screen for match player `pelaaja`, the look and the keys
// of the local one, with the seconds left. Returns the chosen ship (the random entry is
// drawn here), or -1 when the time ran out, the match ended or (on the host) the ship
// has already been given.
int netValitseAlus(int pelaaja, int takarajaMs);

// What the screens over a match run every pass (verkkoTausta) and how the choice screen
// is drawn (drawAlusValinta); tests replace them.
extern void (*otteluJatkuu)();
extern void (*alusvalinnanPiirto)(int pelaaja, int kursori, int sekunteja);
