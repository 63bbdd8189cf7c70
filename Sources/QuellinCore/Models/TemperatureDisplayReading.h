#pragma once

#include <string>
#include <tuple>

#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// One temperature as it is shown to the user.
struct TemperatureDisplayReading {
  std::string id;          ///< stable identifier: a fixed word such as "cpu_avg", or a sensor's key
  std::string label;       ///< text shown
  double temperature = 0;  ///< degrees Celsius

  static constexpr auto fields() {
    return std::tuple{Field{"id", &TemperatureDisplayReading::id},
                      Field{"label", &TemperatureDisplayReading::label},
                      Field{"temperature", &TemperatureDisplayReading::temperature}};
  }

  bool operator==(const TemperatureDisplayReading&) const = default;
};

}  // namespace quellin
