#include "Support/TerminalProgram.h"

#include <chrono>
#include <csignal>
#include <cstring>
#include <ostream>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

#include "Support/ProgramRun.h"
#include "Support/SystemCalls.h"

namespace quellin::testing_support {
namespace {

constexpr double patience = 60;  // seconds; only a test that fails waits as long

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

[[noreturn]] void startOn(const PseudoTerminal& terminal, TerminalStart start) {
  require(terminal.takeOver(), "terminal");
  start.prepare();
  start.arguments.insert(start.arguments.begin(), start.executable);
  becomeProgram(start.executable, start.arguments, start.environment);
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const TerminalEnd& end) {
  return stream << "exit status " << end.exitStatus << ", signal " << end.signal << ", terminal "
                << (end.isAsBefore ? "as before" : "changed");
}

TerminalProgram::TerminalProgram(const TerminalStart& start)
    : terminal_(start.rows, start.columns), screen_(start.rows, start.columns) {
  throwUnless(tcgetattr(terminal_.slave(), &settings_) == 0, "tcgetattr");
  processID_ = fork();
  throwUnless(processID_ >= 0, "fork");
  if (processID_ == 0) startOn(terminal_, start);
  terminal_.release();
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
  throwUnless(::write(terminal_.master(), keys.data(), keys.size()) == static_cast<ssize_t>(keys.size()),
              "write");
}

void TerminalProgram::resize(int rows, int columns) {
  screen_.resize(rows, columns);
  terminal_.resize(rows, columns);
}

void TerminalProgram::sendSignal(int signal) const { throwUnless(::kill(processID_, signal) == 0, "kill"); }

TerminalEnd TerminalProgram::finish() {
  const double deadline = now() + patience;
  while (readMore(deadline)) {
  }
  if (now() >= deadline) throw std::runtime_error("the program does not end; it shows:\n" + screen_.text());
  TerminalEnd end{.isAsBefore = hasSameSettings()};
  int status = 0;
  throwUnless(waitpid(processID_, &status, 0) == processID_, "waitpid");
  processID_ = -1;
  if (WIFEXITED(status)) end.exitStatus = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) end.signal = WTERMSIG(status);
  return end;
}

// False at the deadline, and when nobody has the terminal open any more.
bool TerminalProgram::readMore(double deadline) {
  pollfd ready{.fd = terminal_.master(), .events = POLLIN, .revents = 0};
  const int left = static_cast<int>((deadline - now()) * 1000);
  if (left <= 0 || poll(&ready, 1, left) != 1) return false;
  std::string bytes;
  if (readOnce(terminal_.master(), bytes) != ReadStep::bytes) return false;
  bytes_ += bytes;
  screen_.feed(bytes);
  return true;
}

bool TerminalProgram::hasSameSettings() const {
  termios present{};
  throwUnless(tcgetattr(terminal_.master(), &present) == 0, "tcgetattr");
  return present.c_iflag == settings_.c_iflag && present.c_oflag == settings_.c_oflag &&
         present.c_cflag == settings_.c_cflag && present.c_lflag == settings_.c_lflag &&
         std::memcmp(present.c_cc, settings_.c_cc, sizeof present.c_cc) == 0;
}

}  // namespace quellin::testing_support
