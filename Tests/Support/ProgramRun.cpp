#include "Support/ProgramRun.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <grp.h>
#include <ostream>
#include <poll.h>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Support/SystemCalls.h"

namespace quellin::testing_support {
namespace {

constexpr int preparationFailed = 125;
constexpr std::chrono::minutes patience{1};

Pipe openPipe() {
  auto pipe = Pipe::open();
  if (!pipe) throw std::runtime_error(pipe.error().description());
  return std::move(*pipe);
}

[[noreturn]] void start(const ProgramStart& program, int output, int error) {
  const auto null = openDescriptor("/dev/null", O_RDONLY);
  require(null && dup2(null->get(), STDIN_FILENO) >= 0 && dup2(error, STDERR_FILENO) >= 0 &&
              dup2(output, STDOUT_FILENO) >= 0,
          "streams");
  program.prepare();
  becomeProgram(program.executable, program.arguments, program.environment);
}

}  // namespace

RunningProgram::RunningProgram(const ProgramStart& program)
    : RunningProgram(program, openPipe(), openPipe()) {}

RunningProgram::RunningProgram(const ProgramStart& program, Pipe output, Pipe error)
    : processID_(fork()),
      output_(std::move(output.readEnd)),
      error_(std::move(error.readEnd)),
      sources_{{output_.get(), &result_.output}, {error_.get(), &result_.error}} {
  if (processID_ == 0) start(program, output.writeEnd.get(), error.writeEnd.get());
}

RunningProgram::~RunningProgram() {
  if (isReaped_) return;
  send(SIGKILL);
  reap();
}

void RunningProgram::send(int signal) const { kill(processID_, signal); }

bool RunningProgram::waitFor(std::string_view text) {
  const Deadline deadline = std::chrono::steady_clock::now() + patience;
  const auto isThere = [&] { return result_.output.contains(text) || result_.error.contains(text); };
  while (!isThere()) {
    if (!readMore(deadline)) return false;
  }
  return true;
}

ProgramResult RunningProgram::finish() {
  const Deadline deadline = std::chrono::steady_clock::now() + patience;
  while (readMore(deadline)) {
  }
  if (!sources_.empty()) send(SIGKILL);
  reap();
  return result_;
}

// Reads what the outputs hold, waiting for it until the deadline. False when that passed, or nothing can come
// any more.
bool RunningProgram::readMore(Deadline deadline) {
  std::vector<pollfd> polled;
  for (const Source& source : sources_) polled.push_back({source.descriptor, POLLIN, 0});
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
  if (polled.empty() || left.count() <= 0) return false;
  if (poll(polled.data(), polled.size(), static_cast<int>(left.count())) <= 0) return false;
  std::erase_if(sources_, [&](const Source& source) {
    const bool isReady = std::ranges::find(polled, source.descriptor, &pollfd::fd)->revents != 0;
    return isReady && readOnce(source.descriptor, *source.text) == ReadStep::end;
  });
  return true;
}

void RunningProgram::reap() {
  int status = 0;
  waitpid(processID_, &status, 0);
  isReaped_ = true;
  if (WIFEXITED(status)) result_.exitStatus = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) result_.signal = WTERMSIG(status);
}

std::ostream& operator<<(std::ostream& stream, const ProgramResult& result) {
  return stream << "exit status " << result.exitStatus << ", signal " << result.signal << ", output \""
                << result.output << "\", error \"" << result.error << "\"";
}

ProgramResult runProgram(const ProgramStart& program) { return RunningProgram{program}.finish(); }

void becomeOrdinaryUser() {
  const gid_t group = ordinaryUser;
  require(setgroups(1, &group) == 0 && setgid(group) == 0 && setuid(ordinaryUser) == 0, "ordinary user");
}

void require(bool succeeded, const char* step) {
  if (succeeded) return;
  perror(step);
  _exit(preparationFailed);
}

void installProgram(const std::string& file, const std::string& path, unsigned owner, unsigned mode) {
  std::filesystem::copy_file(file, path);
  // The owner first: changing it takes the set-user-ID bit away.
  if (chown(path.c_str(), owner, 0) != 0 || chmod(path.c_str(), mode) != 0) {
    throw std::runtime_error("cannot install " + path);
  }
}

}  // namespace quellin::testing_support
