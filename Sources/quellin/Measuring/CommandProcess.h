#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <sys/types.h>
#include <thread>
#include <vector>

#include "QuellinCore/Support/SystemError.h"

namespace quellin::cli {

/// How a command ended: by itself, or by a signal.
struct CommandEnd {
  std::optional<int> exitStatus;  ///< absent when a signal ended it
  std::optional<int> signal;      ///< absent when it exited

  /// The exit status by which a shell tells of it: 128 more than the number of a signal.
  [[nodiscard]] int shellStatus() const { return exitStatus ? *exitStatus : 128 + signal.value_or(0); }

  /// Whether the command did all that it was to do. One that fails, or that a signal ends, did a part of it:
  /// half a run is no repeat.
  [[nodiscard]] bool isWholeRun() const { return shellStatus() == 0; }
};

/// A command that has this process's standard streams, terminal and process group for its own: it reads the
/// keyboard, is stopped and goes on with the job, and gets the keyboard's signals itself.
class CommandProcess {
  struct Key {};

 public:
  /// Starts `words`, of which the first is looked up in PATH unless it holds a slash. `ended` is called once,
  /// on a thread of its own, right when the command has ended.
  [[nodiscard]] static std::expected<std::unique_ptr<CommandProcess>, SystemError> start(
      const std::vector<std::string>& words, std::function<void(const CommandEnd&)> ended);

  CommandProcess(Key, pid_t processID, std::function<void(const CommandEnd&)> ended);  ///< for `start`
  CommandProcess(const CommandProcess&) = delete;
  CommandProcess& operator=(const CommandProcess&) = delete;
  CommandProcess(CommandProcess&&) = delete;
  CommandProcess& operator=(CommandProcess&&) = delete;
  /// Waits for the end of the command.
  ~CommandProcess();

  /// Sends the signal to the command; nothing happens when it has ended.
  void send(int signal);

 private:
  void awaitEnd();

  const pid_t processID_;
  const std::function<void(const CommandEnd&)> ended_;
  std::mutex mutex_;  // guards `isReaped_`: the number may be another process's afterwards
  bool isReaped_ = false;
  std::thread waiter_;
};

/// Whether the terminal sends what is typed on it, Ctrl-C for example, to this process and its command.
[[nodiscard]] bool ownsTerminal();

}  // namespace quellin::cli
