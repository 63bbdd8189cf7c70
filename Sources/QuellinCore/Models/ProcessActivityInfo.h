#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// What one process did per second between two snapshots. Identified by `id`.
struct ProcessActivityInfo {
  std::int32_t id = 0;                        ///< equal to `pid`
  std::int32_t pid = 0;                       ///< process identifier
  std::string name;                           ///< as the host gives it, else "PID " and the number
  double cpuPercent = 0;                      ///< percent of one core; above 100 when several are used
  double wakeupsPerSecond = 0;                ///< 0 where the host does not count them
  double diskBytesPerSecond = 0;              ///< read and written; 0 where the host does not count it
  std::optional<double> energyWattsEstimate;  ///< absent when the energy counter did not move
  double impactScore = 0;                     ///< ranking score without a unit; higher costs more

  static constexpr auto fields() {
    return std::tuple{Field{"id", &ProcessActivityInfo::id},
                      Field{"pid", &ProcessActivityInfo::pid},
                      Field{"name", &ProcessActivityInfo::name},
                      Field{"cpuPercent", &ProcessActivityInfo::cpuPercent},
                      Field{"wakeupsPerSecond", &ProcessActivityInfo::wakeupsPerSecond},
                      Field{"diskBytesPerSecond", &ProcessActivityInfo::diskBytesPerSecond},
                      Field{"energyWattsEstimate", &ProcessActivityInfo::energyWattsEstimate},
                      Field{"impactScore", &ProcessActivityInfo::impactScore}};
  }

  bool operator==(const ProcessActivityInfo&) const = default;
};

}  // namespace quellin
