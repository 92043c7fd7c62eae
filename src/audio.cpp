#include "audio.h"

#include <SDL/SDL.h>
#include <strings.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iterator>

soundlist* allsounds = nullptr;
bool working = false;

namespace {

const int mixerRate = 44100;
const int mixerChannels = 64;
const int outputChannels = 2;
const int mixBufferFrames = 1024;

// Every effect and the music enter the mixer at a fifth of their level, so that many
// loud sounds at once still add up below full scale (the mixer clips each sum it
// makes); the limiter after the mix gives the level back and holds a big fight's peaks
// under full scale. A lone shot comes out as loud as it was made.
constexpr float headroom = 0.2f;

// The headroom in force: 1 (none) unless the limiter runs, which needs 16-bit stereo.
float mixHeadroom = 1;

// When a fade-out is due to end, in SDL ticks; 0 when none runs. Its last step is
// inaudible, so the song counts as ended from there and the next one follows at once;
// the mixer alone would add two silent buffers before the game learns of the end.
Uint32 fadeEnd = 0;
const Uint32 lastFadeStep = 25;  // ms, about one mixing buffer

// The Sound whose music the mixer is playing: the end-of-music hook marks it.
// Written on the main thread under the audio lock, read by the hook, which the
// mixer runs with that lock held.
Sound* playingMusic = nullptr;

// Mixer thread: touch nothing but the finished flag.
void musicEnded() {
  if (playingMusic) playingMusic->setFinished();
}

class AudioLock {
 public:
  AudioLock() { SDL_LockAudio(); }
  ~AudioLock() { SDL_UnlockAudio(); }
  AudioLock(const AudioLock&) = delete;
  AudioLock& operator=(const AudioLock&) = delete;
};

// Volumes are factors, 1.0 being full; the mixer counts 0..MIX_MAX_VOLUME.
int mixerVolume(float factor) {
  return std::clamp(static_cast<int>(factor * MIX_MAX_VOLUME), 0, MIX_MAX_VOLUME);
}

// The music's level in the mixer: its volume within the mix's headroom.
int musicMixerVolume(float factor) {
  return static_cast<int>(std::lround(mixerVolume(factor) * mixHeadroom));
}

// A sample's share of the headroom, taken once when it is loaded (in the mixer's format).
void leaveHeadroom(Mix_Chunk* chunk) {
  if (mixHeadroom == 1) return;
  Sint16* samples = reinterpret_cast<Sint16*>(chunk->abuf);
  for (Uint32 i = 0; i < chunk->alen / 2; ++i)
    samples[i] = static_cast<Sint16>(std::lround(samples[i] * mixHeadroom));
}

// A look-ahead peak limiter over the interleaved 16-bit stereo mix, with the headroom's
// make-up gain. The signal is delayed by `lookahead` frames; the gain needed by each
// incoming frame is held as a minimum over that window and averaged over it, so the gain
// glides down in time to meet a peak and never lets one through above `ceiling`. It then
// recovers over `recovery` seconds.
class Limiter {
 public:
  void reset(int rate) {
    *this = Limiter();
    std::fill(std::begin(held), std::end(held), 1.0f);
    recoveryStep = 1.0f - std::exp(-1.0f / (recovery * rate));
  }

  void process(Sint16* samples, int frames) {
    averaged = 0;  // summed afresh each buffer, so rounding cannot creep
    for (float h : held) averaged += h;
    for (int f = 0; f < frames; ++f, samples += 2) {
      const float left = samples[0] * makeup, right = samples[1] * makeup;
      clippedInput += (std::abs(samples[0]) >= 32767) + (std::abs(samples[1]) >= 32767);
      const float loudest = std::max(std::fabs(left), std::fabs(right));
      const float needed = loudest > ceiling ? ceiling / loudest : 1.0f;
      const float required = windowMinimum(needed);
      averaged += required - held[position];
      held[position] = required;
      gain = std::min(gain + (1.0f - gain) * recoveryStep, static_cast<float>(averaged / lookahead));
      samples[0] = static_cast<Sint16>(std::lround(delayed[position][0] * gain));
      samples[1] = static_cast<Sint16>(std::lround(delayed[position][1] * gain));
      delayed[position][0] = left;
      delayed[position][1] = right;
      position = (position + 1) % lookahead;
      ++now;
    }
  }

  long clippedInput = 0;

 private:
  static constexpr int lookahead = 64;  // 1.5 ms
  static constexpr float makeup = 1.0f / headroom;
  static constexpr float ceiling = 0.9f * 32767;
  static constexpr float recovery = 0.2f;

  // The smallest of the last lookahead + 1 needs, from a queue whose needs rise from
  // front to back (a need behind a smaller one can never be the smallest).
  float windowMinimum(float need) {
    if (queued > 0 && queue[front].frame <= now - window) {
      front = (front + 1) % window;
      --queued;
    }
    while (queued > 0 && queue[(front + queued - 1) % window].need >= need) --queued;
    queue[(front + queued++) % window] = {now, need};
    return queue[front].need;
  }

  static constexpr int window = lookahead + 1;
  struct Need {
    long frame;
    float need;
  };
  Need queue[window]{};
  int front = 0, queued = 0;
  long now = 0;
  float held[lookahead]{};
  double averaged = 0;
  float delayed[lookahead][2]{};
  int position = 0;
  float gain = 1;
  float recoveryStep = 0;
};

Limiter limiter;

void limitMix(void*, Uint8* stream, int bytes) {
  limiter.process(reinterpret_cast<Sint16*>(stream), bytes / (2 * outputChannels));
}

bool isMusicType(int type) { return type == 1 || type == 2; }

int typeByEnding(const char* file) {
  static const struct {
    const char* ending;
    int type;
  } endings[] = {{"mp3", 2}, {"mp2", 2}, {"ogg", 2}, {"wav", 3}, {"raw", 3}, {"s3m", 1},
                 {"xm", 1},  {"it", 1},  {"mid", 1}, {"rmi", 1}, {"sgr", 1}, {"mod", 1}};
  const char* dot = strrchr(file, '.');
  if (!dot) return 0;
  for (const auto& e : endings)
    if (strcasecmp(dot + 1, e.ending) == 0) return e.type;
  return 0;
}

bool mixerOpen() {
  int rate, channels;
  Uint16 format;
  return Mix_QuerySpec(&rate, &format, &channels) != 0;
}

Mix_Music* music(const Sound* s) { return s->type == 1 ? s->module : s->stream; }

bool sameData(const Sound* a, const Sound* b) {
  if (a->type != b->type) return false;
  return a->type == 3 ? a->sample == b->sample : music(a) == music(b);
}

bool sharedByAnother(const Sound* s) {
  for (soundlist* node = allsounds; node; node = node->next)
    if (node->sound != s && sameData(node->sound, s)) return true;
  return false;
}

void addToList(Sound* s) { allsounds = new soundlist{s, allsounds}; }

void removeFromList(const Sound* s) {
  for (soundlist** link = &allsounds; *link; link = &(*link)->next) {
    if ((*link)->sound == s) {
      soundlist* gone = *link;
      *link = gone->next;
      delete gone;
      return;
    }
  }
}

// A sample's channel may since have been taken by another sound.
bool channelStillPlays(const Sound* s) {
  return s->channel >= 0 && Mix_Playing(s->channel) && Mix_GetChunk(s->channel) == s->sample;
}

bool isPlayingMusic(const Sound* s) {
  AudioLock lock;
  return playingMusic == s;
}

bool fadingOut() { return Mix_FadingMusic() == MIX_FADING_OUT; }

void startMusic(Sound& s) {
  AudioLock lock;
  // Claimed before starting, under the lock, so that the end of the previous
  // song cannot be taken for the end of this one.
  playingMusic = &s;
  // The mixer would wait for a fade to end, and it cannot end while we hold the lock.
  if (fadingOut()) Mix_HaltMusic();
  fadeEnd = 0;
  if (Mix_PlayMusic(music(&s), s.loops ? -1 : 1) != 0) {
    printf("Could not play music: %s\n", Mix_GetError());
    playingMusic = nullptr;
  }
  Mix_VolumeMusic(musicMixerVolume(s.volume));
}

// The fading song ends when its fade is all but done (see fadeEnd).
void endDueFade() {
  if (fadeEnd == 0 || SDL_GetTicks() + lastFadeStep < fadeEnd) return;
  AudioLock lock;
  fadeEnd = 0;
  if (playingMusic && fadingOut()) {
    Mix_HaltMusic();
    playingMusic->setFinished();
  }
}

// The mixer thread may be marking this very song as ended.
void clearFinished(Sound& s) {
  if (!working) {
    s.finished = false;
    return;
  }
  AudioLock lock;
  s.finished = false;
}

void startSample(Sound& s) {
  s.channel = Mix_PlayChannel(-1, s.sample, s.loops ? -1 : 0);
  if (s.channel >= 0) Mix_Volume(s.channel, mixerVolume(s.volume));
}

void reportLoadFailure(const char* file) {
  printf("Could not load sound \"%s\": %s\n", file, Mix_GetError());
}

}  // namespace

Sound::Sound(const char* file) : Sound(file, 0, false) {}
Sound::Sound(const char* file, int type) : Sound(file, type, false) {}
Sound::Sound(const char* file, bool loops) : Sound(file, 0, loops) {}
Sound::Sound(const char* file, int type, bool loops) { load(file, type, loops); }

Sound::Sound(Sound* other) : Sound(*other) { addToList(this); }

Sound::~Sound() {
  removeFromList(this);
  if (working) {
    AudioLock lock;
    if (playingMusic == this) playingMusic = nullptr;
  }
  if (sharedByAnother(this)) return;
  if (sample) Mix_FreeChunk(sample);
  // Music can only be released while the mixer that decodes it is open.
  if (working && music(this)) Mix_FreeMusic(music(this));
}

void Sound::load(const char* file, int type, bool loops) {
  this->type = type != 0 ? type : typeByEnding(file);
  this->loops = loops;
  module = stream = nullptr;
  sample = nullptr;
  channel = -1;
  finished = running = false;
  if (working) {
    if (!mixerOpen()) {
      printf("Could not load sound \"%s\": the mixer is not open\n", file);
    } else if (this->type == 0) {
      printf("Could not load sound \"%s\": unknown file type\n", file);
    } else if (this->type == 3) {
      sample = Mix_LoadWAV(file);
      if (sample)
        leaveHeadroom(sample);
      else
        reportLoadFailure(file);
    } else {
      Mix_Music*& slot = this->type == 1 ? module : stream;
      slot = Mix_LoadMUS(file);
      if (!slot) reportLoadFailure(file);
      if (this->type == 1) this->loops = false;
    }
  }
  stopcallback = nullptr;
  addToList(this);
  volume = 1.0f;
}

// The numbered progress lines on standard output are part of the game's trace.
void Sound::play() {
  printf("1\n");
  running = true;
  printf("2\n");
  clearFinished(*this);
  printf("3\n");
  const bool live = working && (sample || music(this));
  printf("4\n");
  if (live && isMusicType(type)) startMusic(*this);
  printf("5\n");
  if (live && type == 3) startSample(*this);
  printf("6\n");
  // Effects are never watched by updateAudio.
  if (working && type == 3 && !loops) running = false;
  printf("7\n");
  printf("8\n");
}

void Sound::stop() {
  if (!working) return;
  if (isMusicType(type)) {
    AudioLock lock;
    // Stopping the watched music counts as its end, so the playlist moves on. A song
    // fading out is on its way already: it ends when it has faded.
    if (playingMusic == this && !fadingOut()) {
      Mix_HaltMusic();
      playingMusic = nullptr;
      finished = true;
    }
  } else if (type == 3 && channelStillPlays(this)) {
    Mix_HaltChannel(channel);
  }
}

void Sound::setVolume(float v) {
  if (working) {
    if (isMusicType(type)) {
      if (isPlayingMusic(this)) Mix_VolumeMusic(musicMixerVolume(v));
    } else if (type == 3 && channelStillPlays(this)) {
      Mix_Volume(channel, mixerVolume(v));
    }
  }
  volume = v;
}

void Sound::setStopCallback(SoundCallback f) { stopcallback = f; }

void Sound::setFinished() { finished = true; }

bool Sound::isFinished() {
  if (!working || !isMusicType(type)) return false;
  AudioLock lock;
  return finished;
}

void initAudio() {
  working = SDL_InitSubSystem(SDL_INIT_AUDIO) == 0 &&
            Mix_OpenAudio(mixerRate, MIX_DEFAULT_FORMAT, outputChannels, mixBufferFrames) == 0;
  if (!working) {
    printf("Audio system not initialized\r\n");
    SDL_QuitSubSystem(SDL_INIT_AUDIO);  // so that another start begins afresh
    return;
  }
  Mix_AllocateChannels(mixerChannels);
  Mix_HookMusicFinished(musicEnded);
  int rate = 0, channels = 0;
  Uint16 format = 0;
  Mix_QuerySpec(&rate, &format, &channels);
  mixHeadroom = 1;
  if (format == AUDIO_S16SYS && channels == outputChannels) {
    AudioLock lock;
    limiter.reset(rate);
    mixHeadroom = headroom;
    Mix_SetPostMix(limitMix, nullptr);
  }
}

void uninitAudio() {
  if (!working) return;
  Mix_HookMusicFinished(nullptr);
  Mix_SetPostMix(nullptr, nullptr);
  Mix_HaltMusic();
  playingMusic = nullptr;
  fadeEnd = 0;
  Mix_CloseAudio();
  SDL_QuitSubSystem(SDL_INIT_AUDIO);
  working = false;
}

void fadeOutMusic(int ms) {
  if (!working) return;
  AudioLock lock;
  if (playingMusic && !fadingOut() && Mix_FadeOutMusic(ms)) fadeEnd = std::max(SDL_GetTicks() + ms, 1u);
}

long clippedInMixer() {
  if (!working) return 0;
  AudioLock lock;
  return limiter.clippedInput;
}

// Stop callbacks run here, on the main thread; a callback may add sounds
// (they go to the front of the list, past this walk).
void updateAudio() {
  endDueFade();
  for (soundlist* node = allsounds; node;) {
    soundlist* next = node->next;
    Sound* s = node->sound;
    if (s->running && s->isFinished()) {
      s->running = false;
      if (s->stopcallback) s->stopcallback(s);
    }
    node = next;
  }
}
