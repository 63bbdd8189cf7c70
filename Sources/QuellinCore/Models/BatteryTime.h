#pragma once

#include <cstdint>
#include <optional>

#include "QuellinCore/Models/BatteryInfo.h"
#include "QuellinCore/Models/BatteryTables.h"

namespace quellin {

/// A remaining time and what it counts towards: both are known or neither is.
struct BatteryTime {
  std::int64_t minutes = 0;                                              ///< 0 to 10080 (one week)
  BatteryTimeRemainingKind kind = BatteryTimeRemainingKind::untilEmpty;  ///< what the minutes lead to

  bool operator==(const BatteryTime&) const = default;
};

/// `value` as minutes if it is a number between 0 and 10080 (one week). Floating-point numbers are rounded,
/// halves away from zero; one that does not fit 64 bits ends the process. Null, and every other kind, is
/// invalid.
[[nodiscard]] std::optional<std::int64_t> validMinutes(const PropertyTable::Value* value);

/// Minutes until `currentCapacity` mAh are used up at `amperage` amperes. No value below 1 mAh, unless the
/// current is below -0.05 A, or when the minutes are not valid.
[[nodiscard]] std::optional<std::int64_t> estimatedMinutesToEmpty(std::int64_t currentCapacity,
                                                                  double amperage);

/// Minutes until the charge between both capacities (mAh) has flowed in at `amperage` amperes. No value when
/// less than 1 mAh is missing, unless the current is above 0.05 A, or when the minutes are not valid.
[[nodiscard]] std::optional<std::int64_t> estimatedMinutesToFull(std::int64_t currentCapacity,
                                                                 std::int64_t maxCapacity, double amperage);

/// The remaining time of a battery whose charge, flow and flags are already known: the host's own figure
/// where a valid one is published, else an estimate. No value when the battery is full or idle on external
/// power.
[[nodiscard]] std::optional<BatteryTime> batteryTime(const BatteryInfo& battery, const BatteryTables& tables);

/// False when a figure that the host gives for the remaining time would end the process; see `validMinutes`.
[[nodiscard]] bool areTimesWithinRange(const BatteryTables& tables);

}  // namespace quellin
