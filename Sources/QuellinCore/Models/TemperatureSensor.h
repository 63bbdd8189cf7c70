#pragma once

#include <functional>
#include <map>
#include <string>
#include <tuple>

#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// One temperature reading.
struct TemperatureSensor {
  std::string key;         ///< identifier at the source; for SMC sensors the four-character key
  std::string name;        ///< human-readable label
  double temperature = 0;  ///< degrees Celsius

  /// The SMC keys (case-sensitive) that are read as temperatures, each with its label, in byte order of the
  /// keys. Built once, on first use, and never changed; may be called from any thread.
  [[nodiscard]] static const std::map<std::string, std::string, std::less<>>& knownSensors();

  static constexpr auto fields() {
    return std::tuple{Field{"key", &TemperatureSensor::key}, Field{"name", &TemperatureSensor::name},
                      Field{"temperature", &TemperatureSensor::temperature}};
  }

  bool operator==(const TemperatureSensor&) const = default;
};

/// Whether a reading can be one of a machine that runs: above 0 and below 150 degrees Celsius. Sensors that
/// are not connected give others.
[[nodiscard]] constexpr bool isPlausibleTemperature(double degreesCelsius) {
  return degreesCelsius > 0 && degreesCelsius < 150;
}

}  // namespace quellin
