#pragma once

#include <string>
#include <tuple>

#include "QuellinCore/Support/Record.h"

namespace quellin {

/// One temperature reading.
struct TemperatureSensor {
  std::string key;         ///< identifier at the source; for SMC sensors the four-character key
  std::string name;        ///< human-readable label
  double temperature = 0;  ///< degrees Celsius

  static constexpr auto fields() {
    return std::tuple{Field{"key", &TemperatureSensor::key}, Field{"name", &TemperatureSensor::name},
                      Field{"temperature", &TemperatureSensor::temperature}};
  }

  bool operator==(const TemperatureSensor&) const = default;
};

}  // namespace quellin
