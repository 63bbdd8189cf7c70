#pragma once

#include <functional>
#include <optional>
#include <string>

#include "quellin/Measuring/Loop.h"
#include "quellin/Measuring/MeasuredHost.h"

namespace quellin::cli {

/// Does something again and again over a machine: at an interval, or at each tick of a trace, until a length
/// of time has passed, the trace ends or the program is asked to end.
class Ticker {
 public:
  /// One round; it calls `done` once, inside its call or later.
  using Round = std::function<void(std::function<void()> done)>;

  /// All must outlive the ticker. Without `duration` it goes on until something else ends it.
  Ticker(Loop& loop, const MeasuredHost& host, Seconds interval, std::optional<Seconds> duration);

  /// Runs the loop until the end. Throws `Failure` when the trace turns out to be damaged, and whatever
  /// `round` throws.
  void run(Round round);

  /// Ends `run`: after the present round if there is one, else now. To be called on the loop's thread.
  void end();

  /// Whether `run` ended because the program was asked to end.
  [[nodiscard]] bool wasInterrupted() const { return wasInterrupted_; }

 private:
  void begin();
  void finished();
  void stopNow();
  [[nodiscard]] bool isOver() const;
  [[nodiscard]] bool isLastTick() const;

  Loop& loop_;
  const MeasuredHost& host_;
  Seconds interval_;
  std::optional<Seconds> duration_;
  Round round_;
  Seconds startedAt_{};
  Seconds nextAt_{};
  bool isEnding_ = false;
  bool wasInterrupted_ = false;
  bool isInRound_ = false;
  std::optional<std::string> damage_;
};

}  // namespace quellin::cli
