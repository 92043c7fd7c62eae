// One function per generated image. Shots and glows are drawn on black because the game
// blends them additively: black is transparent, brightness is glow.
#pragma once

#include "font.h"
#include "image.h"

// Shots, flares and small effects (64 x 64 or 128 x 128).
Image makePlasmaBolt();    // pati0
Image makeEnergyBomb();    // pati1
Image makeExhaustPuff();   // jalki
Image makeSuckerVortex();  // sucker
Image makeLittleMan();     // pikku
Image makeSunFlare();      // pati6
Image makeCrackleOrb();    // pati20
Image makeMissile();       // Ohjus
Image makeSpark();         // pati8
Image makeGlowingEgg();    // muna
Image makeBlackHole();     // aukko
Image makeRingOrb();       // pati15
Image makeToxicBlob();     // epati18
Image makeFireball();      // epati20
Image makeStarShot();      // pati22

// Surfaces wrapped on models (256 x 256).
Image makeHullPlating(uint32_t seed, Rgb base, Rgb accent);  // tottero1, alus5_2, alus20
Image makeAsteroidSkin();                                    // meteor2
Image makeLightningSkin();                                   // electric

// Space scenery.
Image makeGalaxy(uint32_t seed, Rgb armColour, Rgb coreColour, float tilt);  // galax, galax2
Image makeNebulaBackground(uint32_t seed, Rgb first, Rgb second, Rgb dust);  // tausta2, tausta3
Image makeTitlePicture(const Typeface& font);                                // alkukuva
Image makeIcon();                                                            // icon.bmp
