#include "e2e/support/Display.h"

#include <X11/Xlib.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <thread>
#include <vector>

namespace qv::e2e {
namespace {

constexpr int kStartMilliseconds = 20000;

std::filesystem::path MakeFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "quorvane-e2e.XXXXXX").string();
  if (!mkdtemp(name.data())) return {};
  return name;
}

bool ManagerRuns(::Display* display) {
  const Atom check = XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", False);
  Atom type = None;
  int format = 0;
  unsigned long count = 0, rest = 0;
  unsigned char* value = nullptr;
  XGetWindowProperty(display, DefaultRootWindow(display), check, 0, 1, False, AnyPropertyType,
                     &type, &format, &count, &rest, &value);
  if (value) XFree(value);
  return count == 1;
}

// Starts a program that is killed when this process ends, however it ends. `keptDescriptor` stays
// open in it.
pid_t StartHelper(const std::vector<std::string>& command, int keptDescriptor = -1) {
  const pid_t parent = getpid();
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const pid_t child = fork();
  if (child != 0) return child;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(126);
  if (keptDescriptor >= 0) fcntl(keptDescriptor, F_SETFD, 0);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

}  // namespace

// The programs that make the screen.
struct Display::Native {
  ~Native();
  bool StartServer();
  bool StartWindowManager();

  std::vector<pid_t> helpers;
};

Display::Display() : folder_(MakeFolder()), native_(std::make_unique<Native>()) {
  if (folder_.empty()) {
    failure_ = "no folder for temporary files";
    return;
  }
  for (const char* name : {"HOME", "XDG_RUNTIME_DIR"}) {
    const std::filesystem::path path = folder_ / name;
    std::filesystem::create_directory(path);
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    setenv(name, path.c_str(), 1);
  }
  for (const char* name : {"WAYLAND_DISPLAY", "XAUTHORITY", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"}) {
    unsetenv(name);
  }
  setenv("GDK_BACKEND", "x11", 1);
  setenv("NO_AT_BRIDGE", "1", 1);
  setenv("GSETTINGS_BACKEND", "memory", 1);
  setenv("QUORVANE_LOG", "info", 1);
  unsetenv("QUORVANE_LANGUAGE");
  SetLanguage("en");
  if (!native_->StartServer()) {
    failure_ = "Xvfb does not start";
  } else if (!native_->StartWindowManager()) {
    failure_ = "openbox does not start";
  }
}

Display::~Display() {
  native_.reset();
  std::error_code ignored;
  if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
}

Display::Native::~Native() {
  for (auto helper = helpers.rbegin(); helper != helpers.rend(); ++helper) {
    kill(*helper, SIGTERM);
    waitpid(*helper, nullptr, 0);
  }
}

void Display::SetLanguage(const std::string& language) {
  setenv("LANGUAGE", language.c_str(), 1);
}

bool Display::Native::StartServer() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return false;
  const std::string size = std::to_string(kWidth) + "x" + std::to_string(kHeight) + "x24";
  helpers.push_back(StartHelper(
      {"Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0", size, "-nolisten", "tcp"},
      ends[1]));
  close(ends[1]);
  std::string number;
  pollfd ready{ends[0], POLLIN, 0};
  char letter = 0;
  while (poll(&ready, 1, kStartMilliseconds) > 0 && read(ends[0], &letter, 1) == 1 &&
         letter != '\n') {
    number += letter;
  }
  close(ends[0]);
  if (letter != '\n') return false;
  setenv("DISPLAY", (":" + number).c_str(), 1);
  return true;
}

bool Display::Native::StartWindowManager() {
  ::Display* display = XOpenDisplay(nullptr);
  if (!display) return false;
  helpers.push_back(StartHelper({"openbox", "--sm-disable"}));
  bool runs = false;
  for (int waited = 0; !runs && waited < kStartMilliseconds; waited += 20) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    runs = ManagerRuns(display);
  }
  XCloseDisplay(display);
  return runs;
}

}  // namespace qv::e2e
