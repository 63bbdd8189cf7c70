#pragma once

#include <memory>
#include <optional>

#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Services/ProTelemetryService.h"
#include "QuellinCore/Support/Background.h"
#include "quellin/Measuring/Loop.h"

namespace quellin::cli {

/// Asks the installed tool for telemetry again and again, beside everything else. Used on the loop's thread.
class TelemetryFeed {
 public:
  /// Begins asking `tool` unless `isWanted` is false. `loop` must outlive the feed and not run after it has
  /// gone.
  TelemetryFeed(bool isWanted, Loop& loop, ProTelemetryService tool);

  /// The last answer; absent before the first.
  [[nodiscard]] const std::optional<ProTelemetrySnapshot>& latest() const { return latest_; }

 private:
  static constexpr Seconds pause{10};

  void ask();

  Loop& loop_;
  ProTelemetryService tool_;
  std::optional<ProTelemetrySnapshot> latest_;
  std::unique_ptr<Background> background_;
};

}  // namespace quellin::cli
