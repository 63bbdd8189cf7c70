#pragma once

#include <cstdint>
#include <optional>

#include "QuellinCore/Support/CheckedArithmetic.h"

namespace quellin {

/// The first and the last battery charge of a stream of moments, in percent.
struct BatterySpan {
  std::optional<std::int64_t> batteryPercentStart;  ///< absent until a charge is known
  std::optional<std::int64_t> batteryPercentEnd;    ///< absent until a charge is known

  /// Takes the charge of the next moment, where it is known.
  void ingest(const std::optional<std::int64_t>& percent) {
    if (!percent) return;
    if (!batteryPercentStart) batteryPercentStart = percent;
    batteryPercentEnd = percent;
  }

  /// By how much the charge rose; negative when it fell.
  [[nodiscard]] std::optional<std::int64_t> delta() const {
    if (!batteryPercentStart || !batteryPercentEnd) return std::nullopt;
    return checkedSub(*batteryPercentEnd, *batteryPercentStart);
  }
};

}  // namespace quellin
