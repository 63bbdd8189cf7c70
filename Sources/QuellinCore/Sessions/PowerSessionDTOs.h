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
#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/Record.h"

namespace quellin {

/// A battery as sessions keep it: never with its serial number. Its fields mean what those of `BatteryInfo`
/// mean, in the same units.
struct BatteryInfoDTO {
  std::int64_t chargePercent = 0;
  std::int64_t currentCapacity = 0;
  std::int64_t maxCapacity = 0;
  std::int64_t designCapacity = 0;
  std::int64_t healthPercent = 0;
  std::int64_t cycleCount = 0;
  double voltage = 0;
  double amperage = 0;
  double wattage = 0;  ///< negative while the battery discharges
  double temperature = 0;
  bool isCharging = false;
  bool isFullyCharged = false;
  bool acConnected = false;
  std::optional<std::int64_t> adapterWatts;
  std::optional<std::int64_t> timeRemaining;
  std::optional<std::string> timeRemainingKind;  ///< "untilEmpty" or "untilFull"
  std::string health;
  bool isPluggedInAndDraining = false;  ///< drains by more than 1 W although external power is present

  BatteryInfoDTO() = default;
  explicit BatteryInfoDTO(const BatteryInfo& info);

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
  double cpuPower = 0;
  double gpuPower = 0;
  double anePower = 0;
  double ramPower = 0;
  double systemPower = 0;
  double cpuUsagePercent = 0;
  std::optional<double> gpuUsagePercent;

  PowerMetricsDTO() = default;
  explicit PowerMetricsDTO(const PowerMetrics& metrics);

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
  std::string state;  ///< "nominal", "fair", "serious" or "critical"
  std::int64_t pressure = 0;
  bool isLowPowerMode = false;

  ThermalInfoDTO() = default;
  explicit ThermalInfoDTO(const ThermalInfo& info);

  static constexpr auto fields() {
    return std::tuple{Field{"state", &ThermalInfoDTO::state}, Field{"pressure", &ThermalInfoDTO::pressure},
                      Field{"isLowPowerMode", &ThermalInfoDTO::isLowPowerMode}};
  }

  bool operator==(const ThermalInfoDTO&) const = default;
};

/// A fan as sessions keep it, in the units of `FanInfo`.
struct FanInfoDTO {
  std::int64_t id = 0;
  std::string name;
  std::int64_t currentRPM = 0;
  std::int64_t minRPM = 0;
  std::int64_t maxRPM = 0;

  FanInfoDTO() = default;
  explicit FanInfoDTO(const FanInfo& fan);

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
  std::int32_t pid = 0;
  std::string name;
  double cpuPercent = 0;
  double wakeupsPerSecond = 0;
  double diskBytesPerSecond = 0;
  std::optional<double> energyWattsEstimate;
  double impactScore = 0;
  std::string confidence;  ///< "estimated": every process figure recorded here is one

  ProcessActivityDTO() = default;
  explicit ProcessActivityDTO(const ProcessActivityInfo& activity);

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
  std::optional<BatteryInfoDTO> battery;
  std::optional<PowerMetricsDTO> power;
  ThermalInfoDTO thermal;
  std::vector<FanInfoDTO> fans;
  std::vector<TemperatureSensor> sensors;
  Instant timestamp;
  std::optional<double> displayAndOtherPower;
  std::optional<double> batteryTerminalWatts;
  std::optional<double> batteryDischargeWatts;
  std::optional<double> batteryChargeInputWatts;
  std::optional<double> batterySupplementWatts;
  std::optional<double> siliconWatts;
  std::optional<std::string> powerSourceKind;  ///< raw value of a `PowerReadingKind`
  std::optional<std::string> powerSourceLabel;
  std::optional<std::string> powerSourceSummary;
  std::optional<double> totalWatts;
  std::string totalWattsConfidence;  ///< raw value of a `PowerReadingConfidence`, or "unavailable"

  SystemPowerStateDTO() = default;
  explicit SystemPowerStateDTO(const SystemPowerState& state);

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

}  // namespace quellin
