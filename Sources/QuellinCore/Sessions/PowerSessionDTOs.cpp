#include "QuellinCore/Sessions/PowerSessionDTOs.h"

#include "QuellinCore/Support/RawValue.h"

namespace quellin {

BatteryInfoDTO::BatteryInfoDTO(const BatteryInfo& info)
    : chargePercent(info.chargePercent),
      currentCapacity(info.currentCapacity),
      maxCapacity(info.maxCapacity),
      designCapacity(info.designCapacity),
      healthPercent(info.healthPercent),
      cycleCount(info.cycleCount),
      voltage(info.voltage),
      amperage(info.amperage),
      wattage(info.wattage),
      temperature(info.temperature),
      isCharging(info.isCharging),
      isFullyCharged(info.isFullyCharged),
      acConnected(info.acConnected),
      adapterWatts(info.adapterWatts),
      timeRemaining(info.timeRemaining),
      health(info.health),
      isPluggedInAndDraining(info.isPluggedInAndDraining()) {
  if (info.timeRemainingKind) timeRemainingKind = rawValue(*info.timeRemainingKind);
}

PowerMetricsDTO::PowerMetricsDTO(const PowerMetrics& metrics)
    : cpuPower(metrics.cpuPower),
      gpuPower(metrics.gpuPower),
      anePower(metrics.anePower),
      ramPower(metrics.ramPower),
      systemPower(metrics.systemPower),
      cpuUsagePercent(metrics.cpuUsagePercent),
      gpuUsagePercent(metrics.gpuUsagePercent) {}

ThermalInfoDTO::ThermalInfoDTO(const ThermalInfo& info)
    : state(rawValue(info.state)), pressure(info.pressure), isLowPowerMode(info.isLowPowerMode) {}

FanInfoDTO::FanInfoDTO(const FanInfo& fan)
    : id(fan.id), name(fan.name), currentRPM(fan.currentRPM), minRPM(fan.minRPM), maxRPM(fan.maxRPM) {}

ProcessActivityDTO::ProcessActivityDTO(const ProcessActivityInfo& activity)
    : pid(activity.pid),
      name(activity.name),
      cpuPercent(activity.cpuPercent),
      wakeupsPerSecond(activity.wakeupsPerSecond),
      diskBytesPerSecond(activity.diskBytesPerSecond),
      energyWattsEstimate(activity.energyWattsEstimate),
      impactScore(activity.impactScore),
      confidence("estimated") {}

SystemPowerStateDTO::SystemPowerStateDTO(const SystemPowerState& state)
    : battery(state.battery),
      power(state.power),
      thermal(state.thermal),
      fans(state.fans.begin(), state.fans.end()),
      sensors(state.sensors),
      timestamp(state.timestamp),
      displayAndOtherPower(state.displayAndOtherPower()),
      batteryTerminalWatts(state.batteryTerminalWatts()),
      batteryDischargeWatts(state.batteryDischargeWatts()),
      batteryChargeInputWatts(state.batteryChargeInputWatts()),
      batterySupplementWatts(state.batterySupplementWatts()),
      siliconWatts(state.siliconWatts()),
      totalWattsConfidence(unavailableReading) {
  const auto reading = state.primaryPowerReading();
  if (!reading) return;
  powerSourceKind = rawValue(reading->kind);
  powerSourceLabel = reading->label;
  powerSourceSummary = reading->summary;
  totalWatts = reading->watts;
  totalWattsConfidence = rawValue(reading->confidence);
}

PowerSource storedPowerSource(const SystemPowerStateDTO& snapshot) {
  PowerSource source = powerSource(snapshot.battery, snapshot.power.has_value());
  if (snapshot.powerSourceKind) source.kind = *snapshot.powerSourceKind;
  if (snapshot.powerSourceLabel) source.label = *snapshot.powerSourceLabel;
  return source;
}

}  // namespace quellin
