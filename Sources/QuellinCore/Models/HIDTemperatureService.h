#pragma once

#include <optional>
#include <string>

namespace quellin {

/// What one temperature service of the sensor hub answered.
struct HIDTemperatureService {
  std::optional<std::string> product;  ///< its "Product" property; absent when missing or not a string
  std::optional<double>
      temperature;  ///< degrees Celsius as reported, implausible or not; absent without an event

  bool operator==(const HIDTemperatureService&) const = default;
};

}  // namespace quellin
