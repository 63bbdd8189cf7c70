#pragma once

#include <functional>
#include <iosfwd>
#include <string>
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

/// A started program, its standard input empty, its outputs on pipes.
class RunningProgram {
 public:
  explicit RunningProgram(const ProgramStart& start);

  [[nodiscard]] pid_t processID() const { return processID_; }
  /// Reads both outputs to their end and waits for the program's.
  [[nodiscard]] ProgramResult finish();

 private:
  RunningProgram(const ProgramStart& start, Pipe output, Pipe error);

  pid_t processID_;
  FileDescriptor output_;
  FileDescriptor error_;
};

/// Starts the program and waits for its end. The outputs together must fit a pipe each.
[[nodiscard]] ProgramResult runProgram(const ProgramStart& start);

/// The numeric id of an ordinary user and of an ordinary group.
inline constexpr unsigned ordinaryUser = 65534;

/// Gives up root for the ordinary user for good; for `ProgramStart::prepare`.
void becomeOrdinaryUser();

/// Ends the new process when a step of its preparation failed, so that no test runs on wrong ground.
void require(bool succeeded, const char* step);

/// Puts a copy of `file` at `path` with exactly this owner, group 0 and this mode; throws when it cannot.
void installProgram(const std::string& file, const std::string& path, unsigned owner, unsigned mode);

}  // namespace quellin::testing_support
