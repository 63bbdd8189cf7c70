#pragma once

#include <cstdint>
#include <optional>
#include <random>
#include <vector>

#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Models/ProcessActivityInfo.h"
#include "QuellinCore/Models/SystemPowerState.h"

namespace quellin::testing_support {

/// A made-up day of a laptop, one moment a second, the same one every time: 40 temperature sensors with drift
/// and noise (32-bit floats, as the hardware gives them), 2 fans, a battery that is drained, charged and left
/// alone in turn, and the silicon's power. Process activity comes every 10 seconds, pro telemetry every 15.
class GeneratedDay {
 public:
  static constexpr std::int64_t length = 86'400;

  struct Moment {
    SystemPowerState state;
    std::vector<ProcessActivityInfo> activities;    ///< empty between two measurements
    std::optional<ProTelemetrySnapshot> telemetry;  ///< absent between two measurements
  };

  explicit GeneratedDay(std::uint64_t seed = 1);

  /// The next second.
  [[nodiscard]] Moment next();

 private:
  [[nodiscard]] double noise(double deviation);
  [[nodiscard]] BatteryInfo battery();
  [[nodiscard]] PowerMetrics power();
  [[nodiscard]] std::vector<TemperatureSensor> sensors(double load);
  [[nodiscard]] std::vector<ProcessActivityInfo> activities();
  [[nodiscard]] ProTelemetrySnapshot telemetry(Instant now);

  std::mt19937_64 random_;
  std::int64_t second_ = 0;
  double load_ = 5;             // watts of the silicon
  double charge_ = 4200;        // mAh
  std::vector<double> drifts_;  // degrees, one per sensor
};

}  // namespace quellin::testing_support
