#pragma once

#include <array>
#include <csignal>

namespace quellin {

/// By which the user or the system asks a program to end.
inline constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP};

/// Whether this process ignores the signal, as it may have been started to do; false for no signal's number.
[[nodiscard]] bool isIgnored(int signal);

/// Holds every signal back from this thread while it lives: around a fork, so that the copy runs no handler
/// of this process and passes on no signal that was meant for this one.
class AllSignalsBlocked {
 public:
  AllSignalsBlocked();
  AllSignalsBlocked(const AllSignalsBlocked&) = delete;
  AllSignalsBlocked& operator=(const AllSignalsBlocked&) = delete;
  AllSignalsBlocked(AllSignalsBlocked&&) = delete;
  AllSignalsBlocked& operator=(AllSignalsBlocked&&) = delete;
  /// The thread has the mask of before again.
  ~AllSignalsBlocked();

 private:
  sigset_t before_{};
};

}  // namespace quellin
