#pragma once

#include <memory>
#include <vector>

#include "QuellinCore/Models/SourceDiagnosis.h"
#include "QuellinCore/Platform/BatterySource.h"
#include "QuellinCore/Platform/EnergySource.h"
#include "QuellinCore/Platform/HIDSensorSource.h"
#include "QuellinCore/Platform/ProcessSource.h"
#include "QuellinCore/Platform/SMCSource.h"
#include "QuellinCore/Platform/ThermalSource.h"

namespace quellin {

/// One source of every kind: all that a machine, or a trace of one, can be asked. None is null.
struct PlatformSources {
  std::shared_ptr<SMCSource> smc;            ///< fans, and temperatures behind four-character keys
  std::shared_ptr<HIDSensorSource> hid;      ///< temperature services
  std::shared_ptr<BatterySource> battery;    ///< registry and power-source list
  std::shared_ptr<EnergySource> energy;      ///< counters of processor, graphics, neural engine, memory
  std::shared_ptr<ThermalSource> thermal;    ///< thermal state, pressure, low-power mode
  std::shared_ptr<ProcessSource> processes;  ///< counters of every process

  /// The sources of the host that this library was built for.
  [[nodiscard]] static PlatformSources native();

  /// What each source says about itself, in the order of the fields.
  [[nodiscard]] std::vector<SourceDiagnosis> diagnose() const;
};

}  // namespace quellin
