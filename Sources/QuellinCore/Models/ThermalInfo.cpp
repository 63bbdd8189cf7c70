#include "QuellinCore/Models/ThermalInfo.h"

#include <algorithm>
#include <utility>

#include "QuellinCore/Support/CheckedArithmetic.h"

namespace quellin {
namespace {

constexpr std::int64_t highestPressure = 4;

ThermalState stateForCode(std::int64_t code) {
  constexpr auto states = static_cast<std::int64_t>(rawValues<ThermalState>.size());
  return code >= 0 && code < states ? static_cast<ThermalState>(code) : ThermalState::nominal;
}

}  // namespace

ThermalInfo thermalInfo(const ThermalSignals& signals) {
  return {.state = stateForCode(signals.stateCode.value_or(0)),
          .pressure = std::min(checkedCast<std::int64_t>(signals.pressureState.value_or(0)), highestPressure),
          .isLowPowerMode = signals.isLowPowerMode.value_or(false)};
}

bool isWithinRange(const ThermalSignals& signals) {
  return std::in_range<std::int64_t>(signals.pressureState.value_or(0));
}

}  // namespace quellin
