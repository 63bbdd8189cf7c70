#pragma once

#include <memory>
#include <string>

namespace quellin::cli {

/// Removes a file when a signal ends the process: SIGINT, SIGTERM or SIGHUP, as far as they are not ignored.
/// The process then ends of that signal, as it would have without. One at a time.
class RemovalOnSignal {
 public:
  /// From now on the signals wait for `watch`. Throws boost::system::system_error when the system has no
  /// thread or pipe to spare.
  RemovalOnSignal();
  /// The signals have their own effect again.
  ~RemovalOnSignal();
  RemovalOnSignal(const RemovalOnSignal&) = delete;
  RemovalOnSignal& operator=(const RemovalOnSignal&) = delete;
  RemovalOnSignal(RemovalOnSignal&&) = delete;
  RemovalOnSignal& operator=(RemovalOnSignal&&) = delete;

  /// Begins to listen: a signal removes the file at `path`, also one that has come before.
  void watch(std::string path);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quellin::cli
