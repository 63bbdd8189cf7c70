#pragma once

#include <memory>
#include <optional>
#include <string>

#include "QuellinCore/Services/MetricsEngine.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/Measuring/Loop.h"
#include "quellin/Measuring/MeasuredHost.h"
#include "quellin/Terminal/InputWatch.h"
#include "quellin/Watch/Keys.h"
#include "quellin/Watch/Screen.h"
#include "quellin/Watch/WatchModel.h"
#include "quellin/Watch/WatchSession.h"

namespace quellin::cli {

/// The live view of a machine on a terminal, until the user has seen enough.
///
/// A trace moves on after each reading: by one tick at maximum speed, so that the interval sets its pace,
/// else by the ticks that are due.
class Watch {
 public:
  /// Both must outlive it.
  Watch(const Invocation& invocation, const MeasuredHost& host);

  /// Takes the terminal, shows the machine, and gives the terminal back. Throws `Failure` when the terminal
  /// cannot be used and when the trace turns out to be damaged.
  void run();

 private:
  void listen();
  void readKeys();
  void perform(WatchAction action);
  void changeInterval(Seconds interval);
  void adaptToSize();
  void draw();

  void onState(const SystemPowerState& state);
  void measureProcesses(const std::function<void()>& done);
  void moveOn();
  void quit() { loop_.stop(); }

  const Invocation& invocation_;
  const MeasuredHost& host_;
  CharacterSet characters_;
  Loop loop_;
  MetricsEngine engine_;
  std::unique_ptr<Background> processBackground_ = makeBackground();
  WatchSession session_;
  bool isPaced_;  // the ticks of a trace are due at times of their own
  WatchModel model_;
  Subscription states_;
  std::optional<Instant> shownAt_;              // timestamp of the state that was shown last
  std::optional<Instant> processesMeasuredAt_;  // by the same clock
  bool isMeasuringProcesses_ = false;
  std::optional<std::string> damage_;
  // Last, so that the terminal is given back before anything else is waited for.
  std::optional<Screen> screen_;
  std::optional<InputWatch> input_;
};

}  // namespace quellin::cli
