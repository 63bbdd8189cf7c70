#pragma once

#include <chrono>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

#include "QuellinCore/Support/FileDescriptor.h"

namespace quellin::testing_support {

/// A program as a hostile caller may start it: every argument, the first included, and the state it inherits.
struct ProgramStart {
  std::string executable;
  std::vector<std::string> arguments;         ///< from the program name on; may be empty
  std::vector<std::string> environment = {};  ///< the whole environment
  std::function<void()> prepare = [] {};      ///< runs in the new process, last before the program
};

/// What a program left.
struct ProgramResult {
  std::string output = {};
  std::string error = {};
  int exitStatus = -1;  ///< -1 when a signal ended it
  int signal = 0;       ///< 0 when it exited

  bool operator==(const ProgramResult&) const = default;
};

/// Shows a result in the messages of failed tests.
std::ostream& operator<<(std::ostream& stream, const ProgramResult& result);

/// A started program, its standard input empty, its outputs on pipes. Its end kills the program if that still
/// runs.
class RunningProgram {
 public:
  explicit RunningProgram(const ProgramStart& program);
  ~RunningProgram();
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;
  RunningProgram(RunningProgram&&) = delete;
  RunningProgram& operator=(RunningProgram&&) = delete;

  [[nodiscard]] pid_t processID() const { return processID_; }
  void send(int signal) const;
  /// Waits until the program has written `text` to one of its outputs. False when it ended without, or took
  /// longer than a minute.
  [[nodiscard]] bool waitFor(std::string_view text);
  /// Reads the outputs to their end and waits for the program's; a program that takes longer than a minute is
  /// killed.
  [[nodiscard]] ProgramResult finish();

 private:
  using Deadline = std::chrono::steady_clock::time_point;
  struct Source {
    int descriptor;
    std::string* text;
  };

  RunningProgram(const ProgramStart& program, Pipe output, Pipe error);

  [[nodiscard]] bool readMore(Deadline deadline);
  void reap();

  pid_t processID_;
  bool isReaped_ = false;
  FileDescriptor output_;
  FileDescriptor error_;
  ProgramResult result_;
  std::vector<Source> sources_;
};

/// Starts the program and waits for its end.
[[nodiscard]] ProgramResult runProgram(const ProgramStart& program);

/// The numeric id of an ordinary user and of an ordinary group.
inline constexpr unsigned ordinaryUser = 65534;

/// Gives up root for the ordinary user for good; for `ProgramStart::prepare`.
void becomeOrdinaryUser();

/// Ends the new process when a step of its preparation failed, so that no test runs on wrong ground.
void require(bool succeeded, const char* step);

/// Puts a copy of `file` at `path` with exactly this owner, group 0 and this mode; throws when it cannot.
void installProgram(const std::string& file, const std::string& path, unsigned owner, unsigned mode);

}  // namespace quellin::testing_support
