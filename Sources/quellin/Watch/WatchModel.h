#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "QuellinCore/Models/ProcessActivityInfo.h"
#include "QuellinCore/Models/SystemPowerState.h"
#include "QuellinCore/Support/Clock.h"

namespace quellin::cli {

/// Everything that the live view shows.
struct WatchModel {
  std::string source = {};                                         ///< what is measured
  std::optional<SystemPowerState> state = {};                      ///< absent before the first reading
  std::span<const SystemPowerState> history = {};                  ///< oldest first, `state` at the end
  std::optional<std::vector<ProcessActivityInfo>> processes = {};  ///< absent before they were measured
  bool isThermalKnown = true;                                      ///< whether the thermal state has a source
  Seconds interval{1};
  bool isRecording = false;                 ///< whether this view records a session
  std::string session = {};                 ///< how the session stands
  std::optional<std::string> failure = {};  ///< what went wrong with it
  bool isOver = false;                      ///< the trace has come to its end
  bool showsProcesses = true;
  bool showsHelp = false;
};

}  // namespace quellin::cli
