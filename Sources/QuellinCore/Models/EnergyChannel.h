#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// The energy that one counter gained between two samples.
struct EnergyChannel {
  std::string name;             ///< the host's name of the counter, such as "GPU Energy"
  std::int64_t nanojoules = 0;  ///< later sample minus earlier one; may be negative when a counter was reset

  static constexpr auto fields() {
    return std::tuple{Field{"name", &EnergyChannel::name}, Field{"nanojoules", &EnergyChannel::nanojoules}};
  }

  bool operator==(const EnergyChannel&) const = default;
};

}  // namespace quellin
