#pragma once

#include <functional>
#include <memory>

#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/MainExecutor.h"
#include "quellin/Outcome/ExitStatus.h"

namespace quellin::cli {

/// The event loop of a command that takes its time. Used on the thread that made it. Signals that this
/// program was started to ignore stay ignored, and so they do for the programs that it starts.
class Loop {
 public:
  /// Asked twice to end, the process ends at once with `statusOfSuddenEnd`.
  explicit Loop(ExitStatus statusOfSuddenEnd = ExitStatus::failed);
  ~Loop();
  Loop(const Loop&) = delete;
  Loop& operator=(const Loop&) = delete;
  Loop(Loop&&) = delete;
  Loop& operator=(Loop&&) = delete;

  /// The main executor that runs in this loop.
  [[nodiscard]] std::shared_ptr<MainExecutor> executor() const;

  /// Calls `action` once, when one of the ending signals asks the program to end. Asked a second time other
  /// than by a hang-up, the process ends at once.
  void onInterrupt(std::function<void()> action);

  /// Calls `action` right before the process ends at once, on another thread than the loop's, which may be
  /// anywhere then.
  void onSuddenEnd(std::function<void()> action);

  /// From now on the process goes on however often it is asked to end, and nobody is told of it. Returns once
  /// the thread that hears of it knows, and tells whether it was asked before.
  bool beImperturbable();

  /// Whether one of the ending signals has asked the program to end since this was made, also while it cannot
  /// be perturbed. One that came just now may be told of the next time only.
  [[nodiscard]] bool wasAskedToEnd() const;

  /// Calls `action` whenever the process gets the signal, which then has no other effect.
  void onSignal(int signal, std::function<void()> action);

  /// Calls `action` once, `delay` from now; delays of more than thirty years are cut to that.
  void after(Seconds delay, std::function<void()> action);

  /// Runs until `stop` is called; an exception of an action reaches the caller.
  void run();
  /// Runs once more after `stop`, which counts only when it is called inside.
  void runAgain();
  void stop();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quellin::cli
