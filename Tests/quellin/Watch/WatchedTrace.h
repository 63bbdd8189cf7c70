#pragma once

#include <string>
#include <vector>

#include "quellin/Watch/WatchModel.h"

namespace quellin::testing_support {

/// What the live view has gathered after so many readings of the trace among the examples.
class WatchedTrace {
 public:
  explicit WatchedTrace(int readings);

  /// The view's model; must not outlive this.
  [[nodiscard]] cli::WatchModel model() const;

  /// How far a session has come that has recorded all of it.
  [[nodiscard]] std::string progress() const;

 private:
  std::vector<SystemPowerState> states_;
  std::vector<ProcessActivityInfo> processes_;
};

}  // namespace quellin::testing_support
