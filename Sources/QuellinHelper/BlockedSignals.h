#pragma once

#include <csignal>
#include <optional>

namespace quellin {

/// Holds back the signals that would end the process, for the calling thread, while something is there that
/// must be cleared up first. They are not lost: whoever waits looks at `isPending`. The signals of program
/// faults, and those that the process ignores, are not held back. At the end of its life the mask is as it
/// was, and what is then still pending takes effect.
class BlockedSignals {
 public:
  BlockedSignals();
  BlockedSignals(const BlockedSignals&) = delete;
  BlockedSignals& operator=(const BlockedSignals&) = delete;
  BlockedSignals(BlockedSignals&&) = delete;
  BlockedSignals& operator=(BlockedSignals&&) = delete;
  ~BlockedSignals();

  /// Whether a held-back signal has arrived.
  [[nodiscard]] bool isPending() const;

  /// Takes one of the signals that have arrived, so that it no longer takes effect by itself.
  [[nodiscard]] std::optional<int> take();

 private:
  [[nodiscard]] std::optional<int> firstPending() const;

  sigset_t blocked_{};
  sigset_t before_{};
};

}  // namespace quellin
