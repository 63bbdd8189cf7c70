#pragma once

#include <optional>
#include <string>

#include "QuellinCore/Support/Clock.h"
#include "quellin/CommandLine/Command.h"

namespace quellin::cli {

/// Tells how a command that takes its time gets on: one line that changes where standard error is a terminal
/// that can do that, else a line of its own every ten seconds.
class LiveLine {
 public:
  /// All must outlive it.
  explicit LiveLine(const Invocation& invocation, const MonotonicClock& clock = systemMonotonicClock())
      : talk_(invocation.talk), terminal_(invocation.talkTerminal), clock_(clock) {}

  LiveLine(const LiveLine&) = delete;
  LiveLine& operator=(const LiveLine&) = delete;
  LiveLine(LiveLine&&) = delete;
  LiveLine& operator=(LiveLine&&) = delete;
  ~LiveLine() { end(); }

  /// Shows `text` instead of what was shown before.
  void show(const std::string& text);

  /// Leaves the line; what follows begins on the next one.
  void end();

 private:
  static constexpr Seconds pause{10};

  const Talk& talk_;
  const Terminal& terminal_;
  const MonotonicClock& clock_;
  bool isShowing_ = false;
  std::optional<Seconds> lastAt_;
};

}  // namespace quellin::cli
