// Prints what this machine can be asked, what it cannot and why, and then which processes cost the most right
// now.
#include <cstdio>
#include <exception>
#include <string>

#include "QuellinCore/Platform/PlatformSources.h"
#include "QuellinCore/Services/BatteryService.h"
#include "QuellinCore/Services/HIDSensorService.h"
#include "QuellinCore/Services/PowerService.h"
#include "QuellinCore/Services/ProcessActivityService.h"
#include "QuellinCore/Services/SMCService.h"
#include "QuellinCore/Services/ThermalService.h"

namespace {

using namespace quellin;

void print(const SourceDiagnosis& diagnosis) {
  const std::string verdict{rawValue(diagnosis.availability)};
  std::printf("%-20s %-13s %s", diagnosis.source.c_str(), verdict.c_str(), diagnosis.reason.c_str());
  if (diagnosis.path) std::printf(" [%s]", diagnosis.path->c_str());
  if (diagnosis.remedy) std::printf(" %s", diagnosis.remedy->c_str());
  std::printf("\n");
}

void printSources() {
  for (const SourceDiagnosis& diagnosis : PlatformSources::native().diagnose()) print(diagnosis);
}

void printReadings() {
  if (const auto battery = BatteryService{}.read()) {
    std::printf("battery  %lld %%, %.2f W\n", static_cast<long long>(battery->chargePercent),
                battery->wattage);
  }
  if (const auto power = PowerService{}.read()) {
    std::printf("silicon  CPU %.2f W, GPU %.2f W, memory %.2f W\n", power->cpuPower, power->gpuPower,
                power->ramPower);
  }
  const ThermalInfo thermal = ThermalService{}.read();
  const std::string state{rawValue(thermal.state)};
  std::printf("thermal  %s%s\n", state.c_str(), thermal.isLowPowerMode ? ", low-power mode" : "");
  for (const FanInfo& fan : SMCService{}.readFans()) {
    std::printf("fan      %s %lld rpm\n", fan.name.c_str(), static_cast<long long>(fan.currentRPM));
  }
  for (const TemperatureSensor& sensor : HIDSensorService{}.readTemperatures()) {
    std::printf("sensor   %s %.1f C\n", sensor.name.c_str(), sensor.temperature);
  }
}

void printProcesses() {
  constexpr int limit = 10;
  std::printf("%8s  %-16s %7s %10s %12s %8s\n", "PID", "NAME", "CPU %", "WAKEUPS/s", "DISK B/s", "IMPACT");
  for (const ProcessActivityInfo& process :
       ProcessActivityService{}.sampleTopProcesses(limit, processMeasurementInterval)) {
    std::printf("%8d  %-16s %7.1f %10.1f %12.0f %8.1f\n", process.pid, process.name.c_str(),
                process.cpuPercent, process.wakeupsPerSecond, process.diskBytesPerSecond,
                process.impactScore);
  }
}

}  // namespace

int main() {
  try {
    printSources();
    std::printf("\n");
    printReadings();
    std::printf("\n");
    printProcesses();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "readings: %s\n", error.what());
    return 1;
  }
  return 0;
}
