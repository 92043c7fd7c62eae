// Sound effects and music over SDL_mixer: samples play on mixer channels,
// streams and tracker modules play as mixer music.
#pragma once

#include <SDL/SDL_mixer.h>

class Sound;
typedef void (*SoundCallback)(Sound*);

class Sound {
 public:
  int type;           // 1 module, 2 stream, 3 sample, 0 nothing loaded
  Mix_Music* module;  // type 1
  Mix_Music* stream;  // type 2
  Mix_Chunk* sample;  // type 3
  int channel;        // channel of the last play (types 2 and 3)
  bool loops;
  bool finished;  // a stream or module has reached its end
  bool running;   // playing and watched by updateAudio
  float volume;
  SoundCallback stopcallback;

  Sound(const char* file);
  Sound(const char* file, int type);
  Sound(const char* file, bool loops);
  Sound(const char* file, int type, bool loops);
  Sound(Sound* other);  // shares the other's loaded data, own channel state
  ~Sound();             // leaves allsounds; frees the data only if no other Sound shares it

  void load(const char* file, int type, bool loops);
  void play();
  void stop();
  void setVolume(float v);
  void setStopCallback(SoundCallback f);
  void setFinished();
  bool isFinished();
};

struct soundlist {
  Sound* sound;
  soundlist* next;
};

extern soundlist* allsounds;
extern bool working;  // the sound library is initialised

void initAudio();
void uninitAudio();
void updateAudio();
// Fades out the music that is playing over `ms`: it ends when it has faded, and stopping
// it meanwhile lets the fade finish. Its stop callback then runs as after any end.
void fadeOutMusic(int ms);
// Samples that reached full scale inside the mixer, before its limiter, since the audio
// started: a sum of sounds the mixer had to clip. None in a clean mix.
long clippedInMixer();
void setSoundVolumes();
