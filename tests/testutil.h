// Helpers shared by the tests: temporary folders, files, child processes, a fake
// frame clock and an OpenGL window for render tests.
#pragma once

#include <SDL/SDL_stdinc.h>
#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace testutil {

// What owns a folder, a process, a window or the clock is never copied.
struct NoCopy {
  NoCopy() = default;
  NoCopy(const NoCopy&) = delete;
  NoCopy& operator=(const NoCopy&) = delete;
};

// A fresh folder under /tmp, removed with everything in it at scope exit.
class TempDir : NoCopy {
 public:
  TempDir();
  ~TempDir();
  const std::string& path() const { return path_; }
  std::string file(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

// Makes `dir` the working directory until scope exit.
class ScopedChdir : NoCopy {
 public:
  explicit ScopedChdir(const std::string& dir);
  ~ScopedChdir();

 private:
  std::string previous_;
};

// A temporary folder that is also the working directory (for code that
// reads and writes relative paths such as "sets.txt").
class TempWorkDir {
 public:
  TempWorkDir() : chdir_(dir_.path()) {}
  const std::string& path() const { return dir_.path(); }
  std::string file(const std::string& name) const { return dir_.file(name); }

 private:
  TempDir dir_;
  ScopedChdir chdir_;
};

void writeFile(const std::string& path, const std::string& content);
std::string readFile(const std::string& path);

// A program started in the background; its standard output and error go to one file.
class ChildProcess : NoCopy {
 public:
  struct Options {
    std::string workdir = ".";
    std::vector<std::string> setEnv;    // "NAME=value"
    std::vector<std::string> unsetEnv;  // names
  };
  ChildProcess(const std::vector<std::string>& argv, const Options& options);
  ~ChildProcess();  // kills the child if it is still running

  // Waits up to timeoutMs; true when the child has exited.
  bool waitExit(int timeoutMs);
  bool running();
  // Exit status (0-255) after a normal exit, -1 if killed by a signal or still running.
  int exitStatus() const { return exitStatus_; }
  std::string output() const;

 private:
  pid_t pid_ = -1;
  int exitStatus_ = -1;
  bool exited_ = false;
  TempDir logDir_;
};

struct RunResult {
  bool exited;
  int status;
  std::string output;
};
// Runs a program to its end or for at most timeoutMs (then kills it).
RunResult runProgram(const std::vector<std::string>& argv, const ChildProcess::Options& options,
                     int timeoutMs);

// Runs a shell command line, returning its exit status; output is discarded.
int shell(const std::string& command);

// An SDL OpenGL window for tests that draw; closes the video subsystem at scope exit.
class GLWindow : NoCopy {
 public:
  GLWindow(int width = 640, int height = 480);
  ~GLWindow();
  bool ok() const { return ok_; }
  const std::string& error() const { return error_; }  // SDL's reason when not ok

 private:
  bool ok_ = false;
  std::string error_;
};

// The test program's one GL window. It stays open until the process ends: closing it
// unloads the GL driver, whose own allocations would then show up as leaks of unknown
// origin. A busy shared X server now and then refuses a window, so it asks again a few
// times; assert ok() on the result, so that a test without a window fails.
GLWindow& programWindow(int width, int height);
// The same window with the game's GL set-up run in it.
GLWindow& gameWindow(int width, int height);

// The game window at w x h for drawing a menu screen, with the game's screen size set
// and texture slot `backdrop` a plain dark blue (0, 0, 90) in place of the menu
// picture, so that text drawn over it is easy to tell apart. False without a window.
bool menuScreen(int w, int h, int backdrop);

// RGB bytes of a block of the back buffer, rows bottom first. The software GL swaps
// by copying, so a finished frame is still there (its front buffer reads back black).
std::vector<unsigned char> readRgb(int x, int y, int width, int height);

// The window pixel where a point of the current model-view space is drawn.
void projectToWindow(double x, double y, double z, int& px, int& py);

// The game's frame clock replaced, until scope exit, by one that moves only when the
// game sleeps; `onSleep` runs after every sleep (a key script, a watchdog).
class FakeClock : NoCopy {
 public:
  FakeClock();
  ~FakeClock();
  static Uint32 now;
  static int sleeps;
  static std::function<void()> onSleep;

 private:
  Uint32 (*ticks_)();
  void (*delay_)(Uint32);
};

}  // namespace testutil
