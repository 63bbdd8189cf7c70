#pragma once

#include <optional>
#include <tuple>

#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// What the energy counters say the silicon draws. A model of the chip alone, not of the whole machine.
struct PowerMetrics {
  double cpuPower = 0;                    ///< watts
  double gpuPower = 0;                    ///< watts
  double anePower = 0;                    ///< neural engine, watts
  double ramPower = 0;                    ///< memory, watts
  double systemPower = 0;                 ///< sum of the four, watts
  double cpuUsagePercent = 0;             ///< 0 where the source counts energy only
  std::optional<double> gpuUsagePercent;  ///< absent where the source counts energy only

  static constexpr auto fields() {
    return std::tuple{Field{"cpuPower", &PowerMetrics::cpuPower},
                      Field{"gpuPower", &PowerMetrics::gpuPower},
                      Field{"anePower", &PowerMetrics::anePower},
                      Field{"ramPower", &PowerMetrics::ramPower},
                      Field{"systemPower", &PowerMetrics::systemPower},
                      Field{"cpuUsagePercent", &PowerMetrics::cpuUsagePercent},
                      Field{"gpuUsagePercent", &PowerMetrics::gpuUsagePercent}};
  }

  bool operator==(const PowerMetrics&) const = default;
};

}  // namespace quellin
