#pragma once

#include <optional>
#include <string_view>

#include "QuellinCore/Models/PowerReadingRules.h"

namespace quellin {

/// What sessions say in the place of a kind, and of a confidence, where there is no reading.
inline constexpr std::string_view unavailableReading = "unavailable";

/// A power source as sessions name it. The texts live as long as the program, or as long as what they are
/// taken from, where the function that takes them says so.
struct PowerSource {
  std::string_view kind;   ///< raw value of a `PowerReadingKind`, or `unavailableReading`
  std::string_view label;  ///< what people are told

  bool operator==(const PowerSource&) const = default;
};

/// The source whose reading is the primary one; `onExternalPower` tells an idle battery from no reading.
[[nodiscard]] inline PowerSource powerSource(std::optional<PowerReadingKind> primary, bool onExternalPower) {
  if (primary) return {rawValue(*primary), powerReadingTexts(*primary).label};
  return {unavailableReading, onExternalPower ? "On AC, battery idle" : "Unavailable"};
}

/// The source that a machine with this battery record, of any form, and with or without the silicon model's
/// figure runs on.
template <class Battery>
[[nodiscard]] PowerSource powerSource(const std::optional<Battery>& battery, bool hasSiliconPower) {
  return powerSource(primaryReadingKind(battery, hasSiliconPower), battery && battery->acConnected);
}

}  // namespace quellin
