#include "quellin/Measuring/CommandProcess.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "QuellinCore/Support/FileDescriptor.h"
#include "QuellinCore/Support/OwnEnvironment.h"

namespace quellin::cli {
namespace {

// This program ignores SIGPIPE; the command must not. Everything else the command finds as this program did.
class Attributes {
 public:
  Attributes() {
    sigset_t pipe{};
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE);
    posix_spawnattr_init(&attributes_);
    posix_spawnattr_setsigdefault(&attributes_, &pipe);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF);
  }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;
  Attributes(Attributes&&) = delete;
  Attributes& operator=(Attributes&&) = delete;
  ~Attributes() { posix_spawnattr_destroy(&attributes_); }

  [[nodiscard]] const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_{};
};

std::expected<pid_t, SystemError> spawn(std::vector<std::string> words) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const Attributes attributes;
  pid_t processID = -1;
  const int error = posix_spawnp(&processID, arguments.front(), nullptr, attributes.get(), arguments.data(),
                                 ownEnvironment());
  if (error != 0) return std::unexpected(SystemError{error});
  return processID;
}

CommandEnd endOf(const siginfo_t& info) {
  if (info.si_code == CLD_EXITED) return {.exitStatus = info.si_status, .signal = std::nullopt};
  return {.exitStatus = std::nullopt, .signal = info.si_status};
}

}  // namespace

std::expected<std::unique_ptr<CommandProcess>, SystemError> CommandProcess::start(
    const std::vector<std::string>& words, std::function<void(const CommandEnd&)> ended) {
  // Where it is ignored, nobody learns how a child ended.
  std::signal(SIGCHLD, SIG_DFL);
  const auto processID = spawn(words);
  if (!processID) return std::unexpected(processID.error());
  return std::make_unique<CommandProcess>(Key(), *processID, std::move(ended));
}

CommandProcess::CommandProcess(Key, pid_t processID, std::function<void(const CommandEnd&)> ended)
    : processID_(processID), ended_(std::move(ended)), waiter_([this] { awaitEnd(); }) {}

CommandProcess::~CommandProcess() { waiter_.join(); }

void CommandProcess::send(int signal) {
  const std::lock_guard lock(mutex_);
  if (!isReaped_) kill(processID_, signal);
}

void CommandProcess::awaitEnd() {
  siginfo_t info{};
  while (waitid(P_PID, static_cast<id_t>(processID_), &info, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
  }
  ended_(endOf(info));
  const std::lock_guard lock(mutex_);
  while (waitpid(processID_, nullptr, 0) < 0 && errno == EINTR) {
  }
  isReaped_ = true;
}

bool ownsTerminal() {
  const FileDescriptor terminal{::open("/dev/tty", O_RDONLY | O_NOCTTY | O_CLOEXEC)};
  return terminal && tcgetpgrp(terminal.get()) == getpgrp();
}

}  // namespace quellin::cli
