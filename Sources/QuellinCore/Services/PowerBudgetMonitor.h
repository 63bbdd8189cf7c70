#pragma once

#include <optional>
#include <string>
#include <vector>

#include "QuellinCore/Models/PowerMetrics.h"

namespace quellin {

/// Compares silicon power with the user's limits. A plain value; it keeps no history.
struct PowerBudgetMonitor {
  /// One limit that was exceeded.
  struct Alert {
    std::string component;      ///< "CPU", "GPU", "ANE" or "System"
    double currentWatts = 0;    ///< the measured power
    double thresholdWatts = 0;  ///< the limit
    std::string message;        ///< human-readable, with one decimal

    bool operator==(const Alert&) const = default;
  };

  // An absent limit switches its check off. All in watts.
  std::optional<double> cpuThreshold = std::nullopt;     ///< against `cpuPower`
  std::optional<double> gpuThreshold = std::nullopt;     ///< against `gpuPower`
  std::optional<double> aneThreshold = std::nullopt;     ///< against `anePower`
  std::optional<double> systemThreshold = std::nullopt;  ///< against `systemPower`

  /// An alert for every limit that `metrics` exceeds (equal is not exceeded), in the order CPU, GPU, ANE,
  /// System.
  [[nodiscard]] std::vector<Alert> check(const PowerMetrics& metrics) const;

  bool operator==(const PowerBudgetMonitor&) const = default;
};

}  // namespace quellin
