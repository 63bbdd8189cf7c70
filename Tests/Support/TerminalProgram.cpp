#include "Support/TerminalProgram.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <ostream>
#include <poll.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#ifdef __APPLE__
#include <util.h>
#else
#include <pty.h>
#include <utmp.h>
#endif

namespace quellin::testing_support {
namespace {

constexpr double patience = 60;  // seconds; only a test that fails waits as long
constexpr int executionFailed = 126;

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void require(bool succeeded, const char* step) {
  if (!succeeded) throw std::system_error(errno, std::generic_category(), step);
}

winsize sizeOf(int rows, int columns) {
  winsize size{};
  size.ws_row = static_cast<unsigned short>(rows);
  size.ws_col = static_cast<unsigned short>(columns);
  return size;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  result.reserve(texts.size() + 1);
  for (std::string& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

[[noreturn]] void becomeProgram(TerminalStart start, int slave) {
  if (login_tty(slave) == 0) {
    start.arguments.insert(start.arguments.begin(), start.executable);
    execve(start.executable.c_str(), pointers(start.arguments).data(), pointers(start.environment).data());
  }
  _exit(executionFailed);
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const TerminalEnd& end) {
  return stream << "exit status " << end.exitStatus << ", signal " << end.signal << ", terminal "
                << (end.isAsBefore ? "as before" : "changed");
}

TerminalProgram::TerminalProgram(const TerminalStart& start) : screen_(start.rows, start.columns) {
  int master = -1;
  int slave = -1;
  winsize size = sizeOf(start.rows, start.columns);
  require(openpty(&master, &slave, nullptr, nullptr, &size) == 0, "openpty");
  master_ = FileDescriptor{master};
  const FileDescriptor program{slave};
  require(tcgetattr(slave, &settings_) == 0, "tcgetattr");
  processID_ = fork();
  require(processID_ >= 0, "fork");
  if (processID_ == 0) {
    ::close(master);
    becomeProgram(start, slave);
  }
}

TerminalProgram::~TerminalProgram() {
  if (processID_ < 0) return;
  ::kill(processID_, SIGKILL);
  waitpid(processID_, nullptr, 0);
}

bool TerminalProgram::waitUntil(const std::function<bool(const TerminalEmulator&)>& condition) {
  const double deadline = now() + patience;
  while (!condition(screen_)) {
    if (!readMore(deadline)) return false;
  }
  return true;
}

bool TerminalProgram::waitFor(std::string_view text) {
  return waitUntil([text](const TerminalEmulator& screen) { return screen.text().contains(text); });
}

void TerminalProgram::type(std::string_view keys) const {
  require(::write(master_.get(), keys.data(), keys.size()) == static_cast<ssize_t>(keys.size()), "write");
}

void TerminalProgram::resize(int rows, int columns) {
  screen_.resize(rows, columns);
  const winsize size = sizeOf(rows, columns);
  require(ioctl(master_.get(), TIOCSWINSZ, &size) == 0, "TIOCSWINSZ");
}

void TerminalProgram::sendSignal(int signal) const { require(::kill(processID_, signal) == 0, "kill"); }

TerminalEnd TerminalProgram::finish() {
  const double deadline = now() + patience;
  while (readMore(deadline)) {
  }
  if (now() >= deadline) throw std::runtime_error("the program does not end; it shows:\n" + screen_.text());
  TerminalEnd end{.isAsBefore = hasSameSettings()};
  int status = 0;
  require(waitpid(processID_, &status, 0) == processID_, "waitpid");
  processID_ = -1;
  if (WIFEXITED(status)) end.exitStatus = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) end.signal = WTERMSIG(status);
  return end;
}

// False at the deadline, and when nobody has the terminal open any more.
bool TerminalProgram::readMore(double deadline) {
  pollfd ready{.fd = master_.get(), .events = POLLIN, .revents = 0};
  const int left = static_cast<int>((deadline - now()) * 1000);
  if (left <= 0 || poll(&ready, 1, left) != 1) return false;
  std::string bytes;
  if (readOnce(master_.get(), bytes) != ReadStep::bytes) return false;
  bytes_ += bytes;
  screen_.feed(bytes);
  return true;
}

bool TerminalProgram::hasSameSettings() const {
  termios present{};
  require(tcgetattr(master_.get(), &present) == 0, "tcgetattr");
  return present.c_iflag == settings_.c_iflag && present.c_oflag == settings_.c_oflag &&
         present.c_cflag == settings_.c_cflag && present.c_lflag == settings_.c_lflag &&
         std::memcmp(present.c_cc, settings_.c_cc, sizeof present.c_cc) == 0;
}

}  // namespace quellin::testing_support
