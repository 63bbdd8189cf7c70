#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/FileDescriptor.h"
#include "QuellinCore/Support/SystemError.h"

namespace quellin {

/// Where a standard stream of a child leads.
enum class ChildStream {
  inherit,  ///< to the same place as the stream of this process
  pipe,     ///< to this process, through a pipe; for output streams only
  null      ///< to /dev/null
};

/// Under which user a child runs.
enum class ChildIdentity {
  inherit,  ///< the ids of this process
  realRoot  ///< user 0, group 0 and no other group, as real, effective and saved ids; needs effective user 0
};

/// "NAME=value" entries.
using Environment = std::vector<std::string>;

/// What to start and how. No shell is ever involved.
struct ChildProcessPlan {
  std::string executable = {};              ///< absolute path
  std::vector<std::string> arguments = {};  ///< those after the program name, which is `executable`
  std::optional<Environment> environment = std::nullopt;  ///< absent: that of this process
  ChildStream standardInput = ChildStream::inherit;       ///< inherit or null
  ChildStream standardOutput = ChildStream::inherit;      ///< any of the three
  ChildStream standardError = ChildStream::inherit;       ///< any of the three
  ChildIdentity identity = ChildIdentity::inherit;        ///< whose rights it has
};

/// A child process. It starts with its three standard streams and no other descriptor, with every signal at
/// its default disposition and none blocked. Not thread-safe: one thread at a time uses one object.
///
/// The object answers for its child: one that still runs when the object goes is killed (SIGKILL) and waited
/// for, so neither a running process nor a zombie stays behind.
///
/// The exit status can be had only while SIGCHLD is not ignored in this process; a program that may have been
/// started with it ignored sets it to SIG_DFL first. Where it is ignored, waiting works and the status is
/// `unknownStatus`.
class ChildProcess {
 public:
  /// The status of a child whose end somebody else collected.
  static constexpr std::int32_t unknownStatus = -1;
  /// The pause between two looks at a running child.
  static constexpr Seconds pollInterval{0.05};

  /// Starts the child and returns once it executes the new program. The error is that of the step that
  /// failed, in this process or in the child before the program ran; nothing is left behind then.
  [[nodiscard]] static std::expected<ChildProcess, SystemError> start(ChildProcessPlan plan);

  ChildProcess(ChildProcess&& other) noexcept;
  ChildProcess& operator=(ChildProcess&& other) noexcept;
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  [[nodiscard]] pid_t processID() const { return processID_; }  ///< valid until its end is collected

  /// Whether the child has not ended yet. Never blocks.
  [[nodiscard]] bool isRunning();

  /// Asks the child to end (SIGTERM); does nothing when it has ended.
  void terminate();

  /// Ends the child without asking (SIGKILL); does nothing when it has ended.
  void kill();

  /// Blocks until the child has ended. Returns its exit status, or the number of the signal that ended it.
  std::int32_t wait();

  /// Waits, looking every `pollInterval`, until the child has ended, `clock` has reached `deadline`, or
  /// `isInterrupted` (asked before each pause) returns true. Returns whether the child has ended.
  bool waitUntil(Seconds deadline, MonotonicClock& clock, const std::function<bool()>& isInterrupted = {});

  /// Everything the child writes from now on until all holders of the stream have closed it; at most `limit`
  /// bytes are kept, the rest is dropped. Empty when the stream is not a pipe, and on a second call of any of
  /// the readers of this stream.
  [[nodiscard]] std::string readStandardOutput(std::size_t limit = std::numeric_limits<std::size_t>::max());
  /// The same for standard error.
  [[nodiscard]] std::string readStandardError(std::size_t limit = std::numeric_limits<std::size_t>::max());

  /// The same, but a process that the child has left behind with the stream in its hands is waited for only
  /// as `waitUntil` waits for the child: until `clock` has reached `deadline` or `isInterrupted` returns
  /// true. What has been written by then is read in any case.
  [[nodiscard]] std::string readStandardOutputUntil(Seconds deadline, MonotonicClock& clock,
                                                    std::size_t limit,
                                                    const std::function<bool()>& isInterrupted = {});
  /// The same for standard error.
  [[nodiscard]] std::string readStandardErrorUntil(Seconds deadline, MonotonicClock& clock, std::size_t limit,
                                                   const std::function<bool()>& isInterrupted = {});

 private:
  ChildProcess(pid_t processID, FileDescriptor standardOutput, FileDescriptor standardError);

  bool collect(int options);
  void signal(int number);

  pid_t processID_ = -1;
  std::optional<std::int32_t> terminationStatus_;
  FileDescriptor standardOutput_;
  FileDescriptor standardError_;
};

}  // namespace quellin
