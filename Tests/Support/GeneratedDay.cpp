#include "Support/GeneratedDay.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string>

namespace quellin::testing_support {
namespace {

constexpr double start = 1741046400;  // 2025-03-04T00:00:00Z
constexpr std::size_t sensorCount = 40;
constexpr double fullCharge = 5000;

const std::vector<std::string>& processNames() {
  static const std::vector<std::string> names{"kernel_task",
                                              "WindowServer",
                                              "com.apple.WebKit.WebContent",
                                              "clang",
                                              "ninja",
                                              "Xcode",
                                              "Safari",
                                              "mds_stores",
                                              "Terminal",
                                              "coreaudiod",
                                              "backupd",
                                              "photoanalysisd",
                                              "Slack Helper (Renderer)",
                                              "node",
                                              "python3.12",
                                              "ld",
                                              "Spotlight",
                                              "bluetoothd",
                                              "Music",
                                              "airportd",
                                              "fseventsd",
                                              "launchd",
                                              "logd",
                                              "Mail",
                                              "com.docker.backend"};
  return names;
}

std::string sensorName(std::size_t index) {
  static const std::array<const char*, 4> groups{"CPU Performance Core ", "CPU Efficiency Core ",
                                                 "GPU Cluster ", "Airflow and Enclosure "};
  return groups[index / 10] + std::to_string(index % 10 + 1);
}

std::string sensorKey(std::size_t index) {
  static const std::array<const char*, 4> groups{"Tp0", "Te0", "Tg0", "Ta0"};
  return groups[index / 10] + std::string(1, static_cast<char>('A' + index % 10));
}

double thousandths(double value) { return std::round(value * 1000) / 1000; }

}  // namespace

GeneratedDay::GeneratedDay(std::uint64_t seed) : random_(seed), drifts_(sensorCount) {}

double GeneratedDay::noise(double deviation) {
  return std::normal_distribution<double>(0, deviation)(random_);
}

// Eight hours on battery, four charging, the rest idle on external power.
BatteryInfo GeneratedDay::battery() {
  constexpr std::int64_t unplugged = 8 * 3600;
  constexpr std::int64_t charged = 12 * 3600;
  BatteryInfo info;
  info.acConnected = second_ >= unplugged;
  info.isCharging = info.acConnected && second_ < charged;
  info.isFullyCharged = info.acConnected && !info.isCharging;
  info.voltage = thousandths(12.1 + charge_ / fullCharge + noise(0.01));
  const double flow = info.isCharging ? 2.1 : -(load_ + 3.5) / info.voltage;
  info.amperage = info.isFullyCharged ? 0 : thousandths(flow + noise(0.02));
  info.wattage = info.voltage * info.amperage;
  charge_ = std::clamp(charge_ + info.amperage * 1000 / 3600, 300.0, fullCharge);
  info.chargePercent = static_cast<std::int64_t>(charge_ / fullCharge * 100);
  info.currentCapacity = static_cast<std::int64_t>(charge_);
  info.maxCapacity = 5000;
  info.designCapacity = 6075;
  info.healthPercent = 82;
  info.cycleCount = 217;
  info.temperature = std::round((30.2 + noise(0.05)) * 100) / 100;
  info.health = "Good";
  if (info.acConnected) info.adapterWatts = 96;
  if (!info.isFullyCharged) {
    info.timeRemaining = static_cast<std::int64_t>(charge_ / fullCharge * 600);
    info.timeRemainingKind =
        info.isCharging ? BatteryTimeRemainingKind::untilFull : BatteryTimeRemainingKind::untilEmpty;
  }
  return info;
}

PowerMetrics GeneratedDay::power() {
  // Counted in nanojoules over a tenth of a second.
  const auto component = [&](double watts) {
    return std::round(std::max(0.0, watts) * 1e8) * (1 / (0.1 * 1e9));
  };
  PowerMetrics metrics;
  metrics.cpuPower = component(load_ * 0.6 + noise(0.3));
  metrics.gpuPower = component(load_ * 0.25 + noise(0.1));
  metrics.anePower = component(noise(0.02));
  metrics.ramPower = component(load_ * 0.1 + noise(0.05));
  metrics.systemPower = metrics.cpuPower + metrics.gpuPower + metrics.anePower + metrics.ramPower;
  return metrics;
}

std::vector<TemperatureSensor> GeneratedDay::sensors(double load) {
  std::vector<TemperatureSensor> list;
  list.reserve(sensorCount);
  for (std::size_t index = 0; index < sensorCount; ++index) {
    double& drift = drifts_[index];
    drift += noise(0.08) - drift * 0.001;
    const double degrees =
        34 + static_cast<double>(index % 10) * 0.7 + load * (index < 30 ? 1.8 : 0.3) + drift + noise(0.15);
    list.push_back({sensorKey(index), sensorName(index), static_cast<double>(static_cast<float>(degrees))});
  }
  return list;
}

std::vector<ProcessActivityInfo> GeneratedDay::activities() {
  std::vector<ProcessActivityInfo> list;
  for (std::size_t rank = 0; rank < 5; ++rank) {
    const std::size_t pick = random_() % 8 + rank * 4;
    ProcessActivityInfo info;
    info.pid = static_cast<std::int32_t>(400 + pick * 37);
    info.id = info.pid;
    info.name = processNames()[std::min(pick, processNames().size() - 1)];
    info.cpuPercent = std::abs(noise(60)) / (static_cast<double>(rank) + 1);
    info.wakeupsPerSecond = std::abs(noise(200));
    info.diskBytesPerSecond = rank % 2 == 0 ? 0 : std::abs(noise(1e6));
    info.energyWattsEstimate = std::abs(noise(1.5));
    info.impactScore = info.cpuPercent + info.wakeupsPerSecond * 0.2 + *info.energyWattsEstimate * 10;
    list.push_back(info);
  }
  return list;
}

ProTelemetrySnapshot GeneratedDay::telemetry(Instant now) {
  const auto hundredths = [](double value) { return std::round(value * 100) / 100; };
  ProTelemetrySnapshot snapshot;
  snapshot.isAvailable = true;
  snapshot.source = "powermetrics --show-process-energy";
  snapshot.sampledAt = now;
  snapshot.sampleIntervalMilliseconds = 1000;
  for (std::size_t row = 0; row < 12; ++row) {
    const std::size_t pick = (random_() % 2 + row * 2) % processNames().size();
    snapshot.processes.push_back(
        {.pid = static_cast<std::int32_t>(400 + pick * 37),
         .name = processNames()[pick],
         .energyImpact = hundredths(std::abs(noise(300)) / (static_cast<double>(row) + 1)),
         .cpuTimePercent = hundredths(std::abs(noise(40))),
         .wakeupsPerSecond = hundredths(std::abs(noise(90))),
         .diskBytesPerSecond = hundredths(std::abs(noise(5000)))});
  }
  snapshot.cpuPowerWatts = thousandths(load_ * 0.6);
  snapshot.gpuPowerWatts = thousandths(load_ * 0.25);
  snapshot.anePowerWatts = 0;
  snapshot.rawSampleSummary =
      "Parsed 1 plist sample(s), 412 process energy row(s); power keys: processor.cpu_power, "
      "processor.gpu_power";
  return snapshot;
}

GeneratedDay::Moment GeneratedDay::next() {
  constexpr std::int64_t activityInterval = 10;
  constexpr std::int64_t telemetryInterval = 15;
  load_ = std::clamp(load_ + noise(0.4) + (6 - load_) * 0.01, 1.5, 30.0);
  Moment moment;
  SystemPowerState& state = moment.state;
  state.timestamp = instantAt(start + static_cast<double>(second_) + std::abs(noise(0.01)));
  state.battery = battery();
  state.power = power();
  state.thermal = {.state = load_ > 20 ? ThermalState::fair : ThermalState::nominal,
                   .pressure = load_ > 20 ? 1 : 0,
                   .isLowPowerMode = false};
  for (std::int64_t fan = 0; fan < 2; ++fan) {
    const auto speed = static_cast<std::int64_t>(1200 + load_ * 90 + noise(8));
    state.fans.push_back({.id = fan,
                          .name = "Fan " + std::to_string(fan),
                          .currentRPM = speed,
                          .minRPM = 1200,
                          .maxRPM = 5777});
  }
  state.sensors = sensors(load_);
  if (second_ % activityInterval == 0) moment.activities = activities();
  if (second_ % telemetryInterval == 0) moment.telemetry = telemetry(state.timestamp);
  ++second_;
  return moment;
}

}  // namespace quellin::testing_support
