#pragma once

#include <optional>

#include "QuellinCore/Models/BatteryInfo.h"
#include "QuellinCore/Models/BatteryTables.h"

namespace quellin {

/// One record out of the two tables, each field by its fixed order of preference. A key that is missing, or
/// whose value is of an unexpected kind, falls back; no value when both tables are missing. Integer overflow
/// ends the process.
[[nodiscard]] std::optional<BatteryInfo> batteryInfo(const BatteryTables& tables);

/// Whether no capacity is beyond 2^53 mAh or percent and every remaining time can be rounded, so that
/// `batteryInfo`, and what is reckoned from its record, cannot end the process.
[[nodiscard]] bool isWithinRange(const BatteryTables& tables);

}  // namespace quellin
