#include "QuellinCore/Services/PowerService.h"

#include <utility>

#include "QuellinCore/Models/EnergyDelta.h"

namespace quellin {

PowerService::PowerService(std::shared_ptr<EnergySource> source, MonotonicClock& clock)
    : source_(std::move(source)), clock_(&clock) {}

std::optional<PowerMetrics> PowerService::read() const {
  const auto measurement = source_->begin();
  if (!measurement) return std::nullopt;
  clock_->sleep(samplingInterval);
  const auto channels = measurement->finish();
  if (!channels) return std::nullopt;
  return parseEnergyDelta(*channels, samplingInterval);
}

}  // namespace quellin
