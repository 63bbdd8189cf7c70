#pragma once

#include <optional>
#include <span>
#include <vector>

#include "QuellinCore/Models/BatteryInfo.h"
#include "QuellinCore/Models/TemperatureDisplayReading.h"
#include "QuellinCore/Models/TemperatureSensor.h"

namespace quellin {

/// Chooses, out of dozens of sensors with cryptic names, the few temperatures worth showing. Pure functions,
/// callable from any thread. Temperatures are used as given: the hottest of several is the first that no
/// later one exceeds, so that NaN never takes a place, and makes a mean NaN.
struct TemperatureInsights {
  TemperatureInsights() = delete;

  using Reading = TemperatureDisplayReading;  ///< one row of a display

  /// The one temperature for a headline: the processor's where it is known, else the battery's, else the
  /// hottest of the sensors with a meaningful name. No value when there is none of them.
  [[nodiscard]] static std::optional<Reading> representativeReading(
      std::span<const TemperatureSensor> sensors, const std::optional<BatteryInfo>& battery);

  /// At most 3 rows for a menu, no two with the same label whatever its case.
  [[nodiscard]] static std::vector<Reading> menuHighlights(std::span<const TemperatureSensor> sensors,
                                                           const std::optional<BatteryInfo>& battery);

  /// At most 12 rows for a dashboard, no two with the same label whatever its case.
  [[nodiscard]] static std::vector<Reading> dashboardReadings(std::span<const TemperatureSensor> sensors,
                                                              const std::optional<BatteryInfo>& battery);
};

}  // namespace quellin
