#pragma once

#include <memory>
#include <optional>

#include "QuellinCore/Models/PowerMetrics.h"
#include "QuellinCore/Platform/EnergySource.h"
#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// Measures what the silicon draws. Holds no state of its own and may be called from any thread.
class PowerService {
 public:
  /// How long `read` counts energy.
  static constexpr Seconds samplingInterval = energyMeasurementInterval;

  /// `source` must not be null; `clock` must outlive the service.
  explicit PowerService(std::shared_ptr<EnergySource> source = nativeEnergySource(),
                        MonotonicClock& clock = systemMonotonicClock());

  /// Takes two samples of the energy counters and blocks the calling thread for 0.1 s between them. No value
  /// when the counters cannot be read or none of them is recognised. Counters that a machine publishes in
  /// batches read as 0 over most such intervals and as a burst over some.
  [[nodiscard]] std::optional<PowerMetrics> read() const;

 private:
  std::shared_ptr<EnergySource> source_;
  MonotonicClock* clock_;
};

}  // namespace quellin
