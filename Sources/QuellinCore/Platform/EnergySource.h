#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "QuellinCore/Models/EnergyChannel.h"
#include "QuellinCore/Models/SourceDiagnosis.h"
#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// Between the two samples of a measurement of the energy counters.
inline constexpr Seconds energyMeasurementInterval{0.1};

/// One measurement in progress: the first sample has been taken, the second has not.
///
/// It keeps alive whatever the host needs between the two (subscription, first sample, open files) and
/// releases it when destroyed, finished or not. It belongs to one thread at a time and may outlive the source
/// that began it.
class EnergyMeasurement {
 public:
  virtual ~EnergyMeasurement() = default;

  /// Takes the second sample and returns what each counter gained since the first, in the order of the host.
  /// Called at most once. No value when the second sample or the difference cannot be had; an empty list when
  /// there are no channels.
  [[nodiscard]] virtual std::optional<std::vector<EnergyChannel>> finish() = 0;
};

/// Supplies pairs of samples of the machine's energy counters.
///
/// What a host provides: named channels. "CPU Energy", "GPU Energy", "ANE0" and "DRAM0" are totals of
/// processor, graphics, neural engine and memory and win over every other channel of their component; further
/// channels are recognised by the words cpu, gpu, ane, dram or ram in their names and added up. A host
/// therefore never publishes two channels of one component where one contains the other, unless it also
/// publishes the total under its exact name. Channels without a name are left out; unknown names are passed
/// on, they do no harm. A total that the host cannot know is left out.
///
/// Units: nanojoules, converted from the channel's own unit before it leaves the source, with arithmetic that
/// ends the process on overflow. A counter that wraps is unwrapped here.
///
/// The wait between the samples is the caller's: neither `begin` nor `finish` sleeps.
///
/// Threading: every operation of the source may be called from any thread, also from several at once. Nothing
/// throws.
class EnergySource {
 public:
  virtual ~EnergySource() = default;

  /// Takes the first sample. Null when there are no counters, no permission or no sample.
  [[nodiscard]] virtual std::unique_ptr<EnergyMeasurement> begin() = 0;

  /// Why `begin` gives what it gives on this machine.
  [[nodiscard]] virtual SourceDiagnosis diagnose() = 0;
};

/// The energy source of the host that this library was built for. Never null.
[[nodiscard]] std::shared_ptr<EnergySource> nativeEnergySource();

}  // namespace quellin
