#include "testutil.h"

#include "Main.h"
#include "glapi.h"

#include <GL/gl.h>
#include <GL/glu.h>
#include <SDL/SDL.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace fs = std::filesystem;

// Leaks inside the X and GL libraries are not ours: every test program loads
// the project's suppressions, whatever its environment says.
extern "C" const char* __lsan_default_options() {
  return "suppressions=" VORTA_LSAN_SUPPRESSIONS ":print_suppressions=0";
}

namespace testutil {

TempDir::TempDir() {
  char pattern[] = "/tmp/vorta-test-XXXXXX";
  if (!mkdtemp(pattern)) throw std::runtime_error("mkdtemp failed");
  path_ = pattern;
}

TempDir::~TempDir() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

ScopedChdir::ScopedChdir(const std::string& dir) : previous_(fs::current_path().string()) {
  fs::current_path(dir);
}

ScopedChdir::~ScopedChdir() {
  std::error_code ignored;
  fs::current_path(previous_, ignored);
}

void writeFile(const std::string& path, const std::string& content) {
  std::ofstream out(path, std::ios::binary);
  out << content;
}

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

ChildProcess::ChildProcess(const std::vector<std::string>& argv, const Options& options) {
  const std::string log = logDir_.file("output.txt");
  pid_ = fork();
  if (pid_ < 0) throw std::runtime_error("fork failed");
  if (pid_ > 0) return;
  // Child: only async-signal-safe-ish work until exec.
  if (chdir(options.workdir.c_str()) != 0) _exit(126);
  for (const auto& name : options.unsetEnv) unsetenv(name.c_str());
  for (const auto& pair : options.setEnv) putenv(const_cast<char*>(pair.c_str()));
  const int fd = open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  if (fd < 0) _exit(126);
  dup2(fd, STDOUT_FILENO);
  dup2(fd, STDERR_FILENO);
  std::vector<char*> args;
  for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
  args.push_back(nullptr);
  execvp(args[0], args.data());
  _exit(127);
}

ChildProcess::~ChildProcess() {
  if (running()) {
    kill(pid_, SIGKILL);
    waitExit(5000);
  }
}

bool ChildProcess::running() {
  if (exited_) return false;
  int status = 0;
  if (waitpid(pid_, &status, WNOHANG) != pid_) return true;
  exited_ = true;
  exitStatus_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return false;
}

bool ChildProcess::waitExit(int timeoutMs) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  while (running()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}

std::string ChildProcess::output() const { return readFile(logDir_.file("output.txt")); }

RunResult runProgram(const std::vector<std::string>& argv, const ChildProcess::Options& options,
                     int timeoutMs) {
  ChildProcess child(argv, options);
  const bool exited = child.waitExit(timeoutMs);
  return {exited, child.exitStatus(), child.output()};
}

int shell(const std::string& command) {
  const int status = std::system((command + " >/dev/null 2>&1").c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Mesa unloads its driver when the window closes; leaks inside it would then be
// reported from an unknown module that no suppression can name. Pinning the
// software driver keeps it loaded and its frames readable.
void pinSoftwareGLDriver() {
  static void* const pinned =
      dlopen("/usr/lib/x86_64-linux-gnu/dri/swrast_dri.so", RTLD_LAZY | RTLD_NODELETE);
  (void)pinned;
}

GLWindow::GLWindow(int width, int height) {
  pinSoftwareGLDriver();
  // Test programs running side by side sometimes find the X server refusing a
  // connection for a while on a loaded machine; tries over ten seconds ride that out.
  for (int attempt = 0; attempt < 40 && !ok_; attempt++) {
    if (attempt > 0) std::this_thread::sleep_for(std::chrono::milliseconds(250));
    if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) {
      error_ = SDL_GetError();
      continue;
    }
    SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 16);
    ok_ = SDL_SetVideoMode(width, height, 0, SDL_OPENGL) != nullptr;
    if (!ok_) {
      error_ = SDL_GetError();
      SDL_QuitSubSystem(SDL_INIT_VIDEO);
    }
  }
}

GLWindow::~GLWindow() { SDL_QuitSubSystem(SDL_INIT_VIDEO); }

GLWindow& programWindow(int width, int height) {
  static GLWindow* window = nullptr;
  for (int attempt = 0; attempt < 2 && !(window && window->ok()); ++attempt) {
    delete window;
    window = new GLWindow(width, height);
  }
  return *window;
}

GLWindow& gameWindow(int width, int height) {
  GLWindow& window = programWindow(width, height);
  if (window.ok()) setupOpengl(width, height);
  return window;
}

bool menuScreen(int w, int h, int backdrop) {
  if (!gameWindow(w, h).ok()) return false;
  screenwidth = w;
  screenheight = h;
  const GLubyte texel[3] = {0, 0, 90};
  glGenTextures(1, &texture[backdrop]);
  glBindTexture(GL_TEXTURE_2D, texture[backdrop]);
  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 1, 1, 0, GL_RGB, GL_UNSIGNED_BYTE, texel);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
  return true;
}

std::vector<unsigned char> readRgb(int x, int y, int width, int height) {
  std::vector<unsigned char> rgb(size_t(width) * height * 3);
  glReadBuffer(GL_BACK);
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glReadPixels(x, y, width, height, GL_RGB, GL_UNSIGNED_BYTE, rgb.data());
  return rgb;
}

void projectToWindow(double x, double y, double z, int& px, int& py) {
  GLdouble mv[16], pr[16], wx, wy, wz;
  GLint vp[4];
  glGetDoublev(GL_MODELVIEW_MATRIX, mv);
  glGetDoublev(GL_PROJECTION_MATRIX, pr);
  glGetIntegerv(GL_VIEWPORT, vp);
  gluProject(x, y, z, mv, pr, vp, &wx, &wy, &wz);
  px = int(wx);
  py = int(wy);
}

Uint32 FakeClock::now = 0;
int FakeClock::sleeps = 0;
std::function<void()> FakeClock::onSleep;

FakeClock::FakeClock() : ticks_(pacingTicks), delay_(pacingDelay) {
  now = 0;
  sleeps = 0;
  onSleep = nullptr;
  pacingTicks = [] { return now; };
  pacingDelay = [](Uint32 ms) {
    now += ms;
    ++sleeps;
    if (onSleep) onSleep();
  };
}

FakeClock::~FakeClock() {
  pacingTicks = ticks_;
  pacingDelay = delay_;
  onSleep = nullptr;
}

}  // namespace testutil
