#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "QuellinCore/Support/JSON/Record.h"
#include "QuellinCore/Support/RawValue.h"

namespace quellin {

/// What a battery's remaining time counts towards.
enum class BatteryTimeRemainingKind { untilEmpty, untilFull };

template <>
inline constexpr std::array rawValues<BatteryTimeRemainingKind>{std::string_view{"untilEmpty"},
                                                                std::string_view{"untilFull"}};

/// The internal battery and its charger at one instant. A capacity, the health, the cycle count, a voltage or
/// a current of 0 may also be one that the host does not publish.
struct BatteryInfo {
  std::int64_t chargePercent = 0;             ///< state of charge, at most 100
  std::int64_t currentCapacity = 0;           ///< present charge, mAh
  std::int64_t maxCapacity = 0;               ///< full-charge capacity, mAh
  std::int64_t designCapacity = 0;            ///< mAh
  std::int64_t healthPercent = 0;             ///< full-charge capacity relative to design, at most 100
  std::int64_t cycleCount = 0;                ///< charge cycles
  double voltage = 0;                         ///< volts
  double amperage = 0;                        ///< amperes; negative while the battery discharges
  double wattage = 0;                         ///< volts times amperes; negative while the battery discharges
  double temperature = 0;                     ///< degrees Celsius; 0 or less when not known
  bool isCharging = false;                    ///< the host says so; false when it does not
  bool isFullyCharged = false;                ///< likewise
  bool acConnected = false;                   ///< external power is present
  std::optional<std::int64_t> adapterWatts;   ///< rated power of the connected adapter
  std::optional<std::int64_t> timeRemaining;  ///< minutes
  std::optional<BatteryTimeRemainingKind> timeRemainingKind;  ///< what `timeRemaining` counts towards
  std::string health = "Unknown";                             ///< condition, in the host's words
  std::optional<std::string> serialNumber;  ///< absent when the host does not give it; never in a session

  /// Minutes until the battery is empty; no value when the remaining time counts towards something else.
  [[nodiscard]] std::optional<std::int64_t> timeToEmpty() const {
    return timeRemainingKind == BatteryTimeRemainingKind::untilEmpty ? timeRemaining : std::nullopt;
  }

  /// Minutes until the battery is full; no value when the remaining time counts towards something else.
  [[nodiscard]] std::optional<std::int64_t> timeToFullCharge() const {
    return timeRemainingKind == BatteryTimeRemainingKind::untilFull ? timeRemaining : std::nullopt;
  }

  /// Whether the battery drains by more than 1 W although external power is present.
  [[nodiscard]] bool isPluggedInAndDraining() const {
    return acConnected && wattage < -1.0 && !isFullyCharged;
  }

  /// The same test, by the name of its usual cause.
  [[nodiscard]] bool isInsufficientCharger() const { return isPluggedInAndDraining(); }

  static constexpr auto fields() {
    return std::tuple{Field{"chargePercent", &BatteryInfo::chargePercent},
                      Field{"currentCapacity", &BatteryInfo::currentCapacity},
                      Field{"maxCapacity", &BatteryInfo::maxCapacity},
                      Field{"designCapacity", &BatteryInfo::designCapacity},
                      Field{"healthPercent", &BatteryInfo::healthPercent},
                      Field{"cycleCount", &BatteryInfo::cycleCount},
                      Field{"voltage", &BatteryInfo::voltage},
                      Field{"amperage", &BatteryInfo::amperage},
                      Field{"wattage", &BatteryInfo::wattage},
                      Field{"temperature", &BatteryInfo::temperature},
                      Field{"isCharging", &BatteryInfo::isCharging},
                      Field{"isFullyCharged", &BatteryInfo::isFullyCharged},
                      Field{"acConnected", &BatteryInfo::acConnected},
                      Field{"adapterWatts", &BatteryInfo::adapterWatts},
                      Field{"timeRemaining", &BatteryInfo::timeRemaining},
                      Field{"timeRemainingKind", &BatteryInfo::timeRemainingKind},
                      Field{"health", &BatteryInfo::health},
                      Field{"serialNumber", &BatteryInfo::serialNumber}};
  }

  bool operator==(const BatteryInfo&) const = default;
};

}  // namespace quellin
