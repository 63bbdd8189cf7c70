#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "QuellinCore/Models/BatteryTables.h"
#include "QuellinCore/Models/EnergyChannel.h"
#include "QuellinCore/Models/HIDTemperatureService.h"
#include "QuellinCore/Models/ThermalSignals.h"
#include "QuellinCore/Platform/ProcessSnapshot.h"
#include "QuellinCore/Platform/SMCValue.h"
#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// One key of the SMC.
struct SMCAnswer {
  std::uint32_t key = 0;  ///< four-character code
  SMCValue value;         ///< as the SMC answered it, undecoded

  bool operator==(const SMCAnswer&) const = default;
};

/// What a measurement of the energy counters gave.
struct EnergyAnswer {
  Seconds interval{};                                  ///< asked for between the two samples
  std::optional<std::vector<EnergyChannel>> channels;  ///< absent when the second sample could not be had

  bool operator==(const EnergyAnswer&) const = default;
};

/// The two snapshots of a scan, each in the order of the host.
struct ProcessAnswers {
  Seconds interval{};                 ///< asked for between the snapshots
  std::vector<ProcessAnswer> first;   ///< at the start of the interval; without names
  std::vector<ProcessAnswer> second;  ///< at its end

  bool operator==(const ProcessAnswers&) const = default;
};

/// All that a host's sources answered at one tick, as it was before any rule saw it.
struct HostAnswers {
  Instant wall{};                                   ///< when all but the processes had been read
  Seconds monotonic{};                              ///< the same moment on the monotonic clock
  std::optional<std::vector<SMCAnswer>> smc;        ///< the keys that have a value; absent without an SMC
  std::vector<HIDTemperatureService> hid;           ///< every service, unfiltered; empty without any
  BatteryTables battery;                            ///< both empty without a battery
  std::optional<EnergyAnswer> energy;               ///< absent when no measurement could be begun
  ThermalSignals thermal;                           ///< each absent where the host has none
  std::shared_ptr<const ProcessAnswers> processes;  ///< null when they were not asked at this tick
};

}  // namespace quellin
