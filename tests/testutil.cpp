#include "testutil.h"

#include <SDL/SDL.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace fs = std::filesystem;

#define VORTA_LSAN_OPTIONS "suppressions=" VORTA_LSAN_SUPPRESSIONS ":print_suppressions=0"

// Leaks inside the X and GL libraries are not ours: every test program loads
// the project's suppressions, whatever its environment says.
extern "C" const char* __lsan_default_options() { return VORTA_LSAN_OPTIONS; }

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

void mirrorDataFolder(const std::string& from, const std::string& dir) {
  const std::uintmax_t copyLimit = 64 * 1024;
  for (const auto& entry : fs::directory_iterator(from)) {
    const fs::path target = fs::path(dir) / entry.path().filename();
    if (entry.is_regular_file() && entry.file_size() < copyLimit)
      fs::copy_file(entry.path(), target);
    else
      fs::create_symlink(entry.path(), target);
  }
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

RunResult runProgram(const std::vector<std::string>& argv, const ChildProcess::Options& options, int timeoutMs) {
  ChildProcess child(argv, options);
  const bool exited = child.waitExit(timeoutMs);
  return {exited, child.exitStatus(), child.output()};
}

std::string leakCheckEnvironment() { return "LSAN_OPTIONS=" VORTA_LSAN_OPTIONS; }

int shell(const std::string& command) {
  const int status = std::system((command + " >/dev/null 2>&1").c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

GLWindow::GLWindow(int width, int height) {
  if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) return;
  SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
  SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 16);
  ok_ = SDL_SetVideoMode(width, height, 0, SDL_OPENGL) != nullptr;
}

GLWindow::~GLWindow() { SDL_QuitSubSystem(SDL_INIT_VIDEO); }

namespace {

void put16(std::string& out, unsigned value) {
  out.push_back(static_cast<char>(value & 0xff));
  out.push_back(static_cast<char>((value >> 8) & 0xff));
}

void put32(std::string& out, unsigned value) {
  put16(out, value & 0xffff);
  put16(out, value >> 16);
}

}  // namespace

void writeToneWav(const std::string& path, double seconds, double frequency, int rate) {
  const unsigned samples = static_cast<unsigned>(seconds * rate);
  const unsigned dataBytes = samples * 2;
  std::string wav = "RIFF";
  put32(wav, 36 + dataBytes);
  wav += "WAVEfmt ";
  put32(wav, 16);
  put16(wav, 1);  // PCM
  put16(wav, 1);  // mono
  put32(wav, static_cast<unsigned>(rate));
  put32(wav, static_cast<unsigned>(rate) * 2);
  put16(wav, 2);
  put16(wav, 16);
  wav += "data";
  put32(wav, dataBytes);
  for (unsigned i = 0; i < samples; i++) {
    const double v = std::sin(2 * M_PI * frequency * i / rate) * 20000;
    put16(wav, static_cast<unsigned>(static_cast<int16_t>(std::lround(v))) & 0xffff);
  }
  writeFile(path, wav);
}

}  // namespace testutil
