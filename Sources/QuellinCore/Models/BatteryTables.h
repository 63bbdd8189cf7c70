#pragma once

#include <optional>

#include "QuellinCore/Models/PropertyTable.h"

namespace quellin {

/// The two property tables that describe the internal battery. Either may be missing without the other.
struct BatteryTables {
  std::optional<PropertyTable>
      registry;  ///< the battery's own registry entry: mAh, mV, mA, hundredths of a degree
  std::optional<PropertyTable>
      powerSource;  ///< the first entry of the power-source list: percent, minutes, texts

  bool operator==(const BatteryTables&) const = default;
};

}  // namespace quellin
