#pragma once

#include <vector>

#include "QuellinCore/Models/SystemPowerState.h"
#include "QuellinCore/Models/TemperatureSensor.h"
#include "QuellinCore/Platform/PlatformSources.h"
#include "QuellinCore/Services/BatteryService.h"
#include "QuellinCore/Services/HIDSensorService.h"
#include "QuellinCore/Services/PowerService.h"
#include "QuellinCore/Services/PrivilegedSMCHelperService.h"
#include "QuellinCore/Services/SMCService.h"
#include "QuellinCore/Services/ThermalService.h"
#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// All the readers that make up one snapshot of the machine; by default those of this host. The wall clock
/// must outlive it.
struct SystemReader {
  BatteryService batteryService = BatteryService{};  ///< battery, charger
  ThermalService thermalService = ThermalService{};  ///< thermal state, low-power mode
  PowerService powerService = PowerService{};        ///< energy counters; waits 0.1 s
  SMCService smcService = SMCService{};              ///< fans, and temperatures: asked first
  PrivilegedSMCHelperService privilegedSMCHelperService = PrivilegedSMCHelperService{};  ///< asked second
  HIDSensorService hidSensorService = HIDSensorService{};  ///< temperatures: asked last
  const WallClock* wallClock = &systemWallClock();         ///< stamps snapshots; never null

  /// One full read. Blocks the calling thread: 0.1 s for the energy counters, and as long as the privileged
  /// tool takes when it is asked. Never fails: a source that is missing leaves its item out.
  [[nodiscard]] SystemPowerState readAll() const;

  /// The readers over `sources`, which wait on `monotonicClock`; both clocks must outlive them. `helper` is
  /// the tool to ask for temperatures; one that is not installed, such as that of an empty path, has none.
  [[nodiscard]] static SystemReader over(const PlatformSources& sources, PrivilegedSMCHelperService helper,
                                         MonotonicClock& monotonicClock = systemMonotonicClock(),
                                         const WallClock& wallClock = systemWallClock());

 private:
  [[nodiscard]] std::vector<TemperatureSensor> readTemperatures() const;
};

}  // namespace quellin
