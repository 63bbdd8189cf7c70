#pragma once

#include <memory>

#include "QuellinCore/Models/SourceDiagnosis.h"
#include "QuellinCore/Models/ThermalSignals.h"

namespace quellin {

/// Supplies the three thermal signals.
///
/// What a host provides, each on its own, absent when it cannot be had:
/// - `stateCode`: the process's thermal state as the host's number, out-of-range numbers included.
/// - `pressureState`: the 64-bit state of "com.apple.system.thermalpressurelevel" as read, uncapped.
///   Absent when registering for it or reading it fails. A token is registered and given back within
///   every call.
/// - `isLowPowerMode`: whether the user has switched low-power mode on.
/// A host without such a signal leaves it absent rather than guess one from something else.
///
/// Threading: every operation may be called from any thread, also from several at once. Nothing throws.
class ThermalSource {
 public:
  virtual ~ThermalSource() = default;

  /// The three signals as they are now.
  [[nodiscard]] virtual ThermalSignals read() = 0;

  /// Why `read` gives what it gives on this machine.
  [[nodiscard]] virtual SourceDiagnosis diagnose() = 0;
};

/// The thermal source of the host that this library was built for. Never null.
[[nodiscard]] std::shared_ptr<ThermalSource> nativeThermalSource();

}  // namespace quellin
