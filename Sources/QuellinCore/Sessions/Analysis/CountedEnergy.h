#pragma once

#include <optional>
#include <string>
#include <tuple>

#include "QuellinCore/Models/PowerReading.h"
#include "QuellinCore/Models/SiliconEnergy.h"
#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// The kind of reading that is of the same quantity as what the counters count.
inline constexpr PowerReadingKind countedReadingKind = PowerReadingKind::ioReportSiliconPower;

/// Energy by the machine's own counters, from the first moment of a stretch of time to its last.
struct CountedEnergy {
  std::string sourceKind;              ///< the quantity: that of the silicon's power reading
  std::string confidence;              ///< that of the same reading
  double joules = 0;                   ///< of all components
  double wattHours = 0;                ///< the same energy
  std::optional<double> averageWatts;  ///< absent when no time has passed
  SiliconEnergy components;            ///< one by one

  static constexpr auto fields() {
    return std::tuple{Field{"sourceKind", &CountedEnergy::sourceKind},
                      Field{"confidence", &CountedEnergy::confidence},
                      Field{"joules", &CountedEnergy::joules},
                      Field{"wattHours", &CountedEnergy::wattHours},
                      Field{"averageWatts", &CountedEnergy::averageWatts},
                      Field{"components", &CountedEnergy::components}};
  }

  bool operator==(const CountedEnergy&) const = default;
};

/// What the counters gained in `seconds`, summed up.
[[nodiscard]] CountedEnergy countedEnergy(const SiliconEnergy& gained, double seconds);

}  // namespace quellin
