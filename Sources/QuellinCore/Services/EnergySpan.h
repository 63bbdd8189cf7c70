#pragma once

#include <memory>
#include <mutex>
#include <optional>

#include "QuellinCore/Models/SiliconEnergy.h"
#include "QuellinCore/Platform/EnergySource.h"

namespace quellin {

/// Counts the energy between two moments, however far apart. Counters wrap: one that wraps twice between two
/// looks at it would be read too low, so that `renew` must be called at least once a minute, in which even a
/// counter of 65 kJ takes a kilowatt to wrap. Every operation may be called from any thread.
class EnergySpan {
 public:
  /// Begins now.
  explicit EnergySpan(std::shared_ptr<EnergySource> source);

  /// Looks at the counters, so that they may wrap once more.
  void renew();

  /// Ends now. Returns the energy since the beginning; no value where there are no counters, when any look at
  /// them failed, and on a second call.
  [[nodiscard]] std::optional<SiliconEnergy> finish();

 private:
  void add();

  std::shared_ptr<EnergySource> source_;
  std::mutex mutex_;                                // guards all below
  std::unique_ptr<EnergyMeasurement> measurement_;  // null when the energy is not known
  SiliconEnergy sum_;
};

}  // namespace quellin
