#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "QuellinCore/Models/FanInfo.h"
#include "QuellinCore/Models/ProcessActivityInfo.h"
#include "QuellinCore/Models/SystemPowerState.h"
#include "QuellinCore/Models/TemperatureSensor.h"
#include "QuellinCore/Sessions/PowerSource.h"
#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// A battery as sessions keep it: never with its serial number. Its fields mean what those of `BatteryInfo`
/// mean, in the same units.
struct BatteryInfoDTO {
  std::int64_t chargePercent = 0;                ///< at most 100
  std::int64_t currentCapacity = 0;              ///< mAh
  std::int64_t maxCapacity = 0;                  ///< full-charge capacity, mAh
  std::int64_t designCapacity = 0;               ///< mAh
  std::int64_t healthPercent = 0;                ///< of the design capacity, at most 100
  std::int64_t cycleCount = 0;                   ///< charge cycles
  double voltage = 0;                            ///< volts
  double amperage = 0;                           ///< amperes; negative while the battery discharges
  double wattage = 0;                            ///< negative while the battery discharges
  double temperature = 0;                        ///< degrees Celsius; 0 or less when not known
  bool isCharging = false;                       ///< by the host's flag
  bool isFullyCharged = false;                   ///< by the host's flag
  bool acConnected = false;                      ///< external power is present
  std::optional<std::int64_t> adapterWatts;      ///< rated power; absent without an adapter that says it
  std::optional<std::int64_t> timeRemaining;     ///< minutes; absent together with its kind
  std::optional<std::string> timeRemainingKind;  ///< "untilEmpty" or "untilFull"
  std::string health;                            ///< condition, in the host's words
  bool isPluggedInAndDraining = false;  ///< drains by more than 1 W although external power is present

  BatteryInfoDTO() = default;
  explicit BatteryInfoDTO(const BatteryInfo& info);  ///< leaves the serial number out

  static constexpr auto fields() {
    return std::tuple{Field{"chargePercent", &BatteryInfoDTO::chargePercent},
                      Field{"currentCapacity", &BatteryInfoDTO::currentCapacity},
                      Field{"maxCapacity", &BatteryInfoDTO::maxCapacity},
                      Field{"designCapacity", &BatteryInfoDTO::designCapacity},
                      Field{"healthPercent", &BatteryInfoDTO::healthPercent},
                      Field{"cycleCount", &BatteryInfoDTO::cycleCount},
                      Field{"voltage", &BatteryInfoDTO::voltage},
                      Field{"amperage", &BatteryInfoDTO::amperage},
                      Field{"wattage", &BatteryInfoDTO::wattage},
                      Field{"temperature", &BatteryInfoDTO::temperature},
                      Field{"isCharging", &BatteryInfoDTO::isCharging},
                      Field{"isFullyCharged", &BatteryInfoDTO::isFullyCharged},
                      Field{"acConnected", &BatteryInfoDTO::acConnected},
                      Field{"adapterWatts", &BatteryInfoDTO::adapterWatts},
                      Field{"timeRemaining", &BatteryInfoDTO::timeRemaining},
                      Field{"timeRemainingKind", &BatteryInfoDTO::timeRemainingKind},
                      Field{"health", &BatteryInfoDTO::health},
                      Field{"isPluggedInAndDraining", &BatteryInfoDTO::isPluggedInAndDraining}};
  }

  bool operator==(const BatteryInfoDTO&) const = default;
};

/// The energy model's figures as sessions keep them, in the units of `PowerMetrics`.
struct PowerMetricsDTO {
  double cpuPower = 0;                    ///< watts
  double gpuPower = 0;                    ///< watts
  double anePower = 0;                    ///< neural engine, watts
  double ramPower = 0;                    ///< memory, watts
  double systemPower = 0;                 ///< sum of the four, watts
  double cpuUsagePercent = 0;             ///< 0 where the source counts energy only
  std::optional<double> gpuUsagePercent;  ///< absent where the source counts energy only

  PowerMetricsDTO() = default;
  explicit PowerMetricsDTO(const PowerMetrics& metrics);  ///< a copy, field by field

  static constexpr auto fields() {
    return std::tuple{Field{"cpuPower", &PowerMetricsDTO::cpuPower},
                      Field{"gpuPower", &PowerMetricsDTO::gpuPower},
                      Field{"anePower", &PowerMetricsDTO::anePower},
                      Field{"ramPower", &PowerMetricsDTO::ramPower},
                      Field{"systemPower", &PowerMetricsDTO::systemPower},
                      Field{"cpuUsagePercent", &PowerMetricsDTO::cpuUsagePercent},
                      Field{"gpuUsagePercent", &PowerMetricsDTO::gpuUsagePercent}};
  }

  bool operator==(const PowerMetricsDTO&) const = default;
};

/// The thermal condition as sessions keep it; `pressure` is that of `ThermalInfo`.
struct ThermalInfoDTO {
  std::string state;            ///< "nominal", "fair", "serious" or "critical"
  std::int64_t pressure = 0;    ///< 0 (none) to 4
  bool isLowPowerMode = false;  ///< low-power mode is switched on

  ThermalInfoDTO() = default;
  explicit ThermalInfoDTO(const ThermalInfo& info);  ///< spells the state as its raw value

  static constexpr auto fields() {
    return std::tuple{Field{"state", &ThermalInfoDTO::state}, Field{"pressure", &ThermalInfoDTO::pressure},
                      Field{"isLowPowerMode", &ThermalInfoDTO::isLowPowerMode}};
  }

  bool operator==(const ThermalInfoDTO&) const = default;
};

/// A fan as sessions keep it, in the units of `FanInfo`.
struct FanInfoDTO {
  std::int64_t id = 0;          ///< index, counting from 0
  std::string name;             ///< "Fan " and the index
  std::int64_t currentRPM = 0;  ///< 0 when unreadable
  std::int64_t minRPM = 0;      ///< 0 when unreadable
  std::int64_t maxRPM = 0;      ///< 0 when unreadable

  FanInfoDTO() = default;
  explicit FanInfoDTO(const FanInfo& fan);  ///< a copy, field by field

  static constexpr auto fields() {
    return std::tuple{Field{"id", &FanInfoDTO::id}, Field{"name", &FanInfoDTO::name},
                      Field{"currentRPM", &FanInfoDTO::currentRPM}, Field{"minRPM", &FanInfoDTO::minRPM},
                      Field{"maxRPM", &FanInfoDTO::maxRPM}};
  }

  bool operator==(const FanInfoDTO&) const = default;
};

/// A process's activity as sessions keep it, in the units of `ProcessActivityInfo`; the process identifier is
/// its identity.
struct ProcessActivityDTO {
  std::int32_t pid = 0;                       ///< process identifier
  std::string name;                           ///< as the host gives it, else "PID " and the number
  double cpuPercent = 0;                      ///< of one core; above 100 when several are used
  double wakeupsPerSecond = 0;                ///< 0 where the host does not count them
  double diskBytesPerSecond = 0;              ///< read and written; 0 where the host does not count it
  std::optional<double> energyWattsEstimate;  ///< absent when the energy counter did not move
  double impactScore = 0;                     ///< ranking score without a unit
  std::string confidence;                     ///< "estimated": every process figure recorded here is one

  ProcessActivityDTO() = default;
  explicit ProcessActivityDTO(const ProcessActivityInfo& activity);  ///< adds the confidence

  static constexpr auto fields() {
    return std::tuple{Field{"pid", &ProcessActivityDTO::pid},
                      Field{"name", &ProcessActivityDTO::name},
                      Field{"cpuPercent", &ProcessActivityDTO::cpuPercent},
                      Field{"wakeupsPerSecond", &ProcessActivityDTO::wakeupsPerSecond},
                      Field{"diskBytesPerSecond", &ProcessActivityDTO::diskBytesPerSecond},
                      Field{"energyWattsEstimate", &ProcessActivityDTO::energyWattsEstimate},
                      Field{"impactScore", &ProcessActivityDTO::impactScore},
                      Field{"confidence", &ProcessActivityDTO::confidence}};
  }

  bool operator==(const ProcessActivityDTO&) const = default;
};

/// One live snapshot as sessions keep it. The derived figures, in watts, are those of the moment of recording
/// and are not worked out again. The power-source fields and `totalWatts` are present or absent together.
struct SystemPowerStateDTO {
  std::optional<BatteryInfoDTO> battery;        ///< absent without a battery
  std::optional<PowerMetricsDTO> power;         ///< absent without energy counters
  ThermalInfoDTO thermal;                       ///< nominal where the host said nothing
  std::vector<FanInfoDTO> fans;                 ///< empty without fans
  std::vector<TemperatureSensor> sensors;       ///< empty without any; °C
  Instant timestamp;                            ///< when the snapshot was taken
  std::optional<double> displayAndOtherPower;   ///< drawn beyond the silicon model's figure, on battery only
  std::optional<double> batteryTerminalWatts;   ///< negative while the battery delivers; absent without one
  std::optional<double> batteryDischargeWatts;  ///< magnitude; absent on external power
  std::optional<double> batteryChargeInputWatts;  ///< absent unless the battery charges
  std::optional<double> batterySupplementWatts;   ///< magnitude; absent without external power
  std::optional<double> siliconWatts;             ///< absent without energy counters
  std::optional<std::string> powerSourceKind;     ///< raw value of a `PowerReadingKind`
  std::optional<std::string> powerSourceLabel;    ///< short name for people
  std::optional<std::string> powerSourceSummary;  ///< one line on what it does and does not include
  std::optional<double> totalWatts;               ///< the figure that stands for the machine
  std::string totalWattsConfidence;  ///< raw value of a `PowerReadingConfidence`, or "unavailable"

  SystemPowerStateDTO() = default;
  explicit SystemPowerStateDTO(const SystemPowerState& state);  ///< works the derived figures out

  static constexpr auto fields() {
    return std::tuple{Field{"battery", &SystemPowerStateDTO::battery},
                      Field{"power", &SystemPowerStateDTO::power},
                      Field{"thermal", &SystemPowerStateDTO::thermal},
                      Field{"fans", &SystemPowerStateDTO::fans},
                      Field{"sensors", &SystemPowerStateDTO::sensors},
                      Field{"timestamp", &SystemPowerStateDTO::timestamp},
                      Field{"displayAndOtherPower", &SystemPowerStateDTO::displayAndOtherPower},
                      Field{"batteryTerminalWatts", &SystemPowerStateDTO::batteryTerminalWatts},
                      Field{"batteryDischargeWatts", &SystemPowerStateDTO::batteryDischargeWatts},
                      Field{"batteryChargeInputWatts", &SystemPowerStateDTO::batteryChargeInputWatts},
                      Field{"batterySupplementWatts", &SystemPowerStateDTO::batterySupplementWatts},
                      Field{"siliconWatts", &SystemPowerStateDTO::siliconWatts},
                      Field{"powerSourceKind", &SystemPowerStateDTO::powerSourceKind},
                      Field{"powerSourceLabel", &SystemPowerStateDTO::powerSourceLabel},
                      Field{"powerSourceSummary", &SystemPowerStateDTO::powerSourceSummary},
                      Field{"totalWatts", &SystemPowerStateDTO::totalWatts},
                      Field{"totalWattsConfidence", &SystemPowerStateDTO::totalWattsConfidence}};
  }

  bool operator==(const SystemPowerStateDTO&) const = default;
};

/// The power source that a stored snapshot names; what it does not name is inferred from the rest of it. The
/// texts live no longer than `snapshot`.
[[nodiscard]] PowerSource storedPowerSource(const SystemPowerStateDTO& snapshot);

}  // namespace quellin
