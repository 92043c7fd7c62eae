// SCAFFOLD: replaced by the shell work.
#include "audio.h"
soundlist* allsounds = nullptr;
bool working = false;
Sound::Sound(const char*) {}
Sound::Sound(const char*, int) {}
Sound::Sound(const char*, bool) {}
Sound::Sound(const char*, int, bool) {}
Sound::Sound(Sound*) {}
Sound::~Sound() {}
void Sound::load(const char*, int, bool) {}
void Sound::play() {}
void Sound::stop() {}
void Sound::setVolume(float) {}
void Sound::setStopCallback(SoundCallback) {}
void Sound::setFinished() {}
bool Sound::isFinished() { return false; }
void initAudio() {}
void uninitAudio() {}
void updateAudio() {}
