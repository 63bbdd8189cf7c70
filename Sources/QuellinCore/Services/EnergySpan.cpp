#include "QuellinCore/Services/EnergySpan.h"

#include <utility>

namespace quellin {

EnergySpan::EnergySpan(std::shared_ptr<EnergySource> source)
    : source_(std::move(source)), measurement_(source_->begin()) {}

void EnergySpan::renew() {
  const std::lock_guard lock(mutex_);
  add();
  if (measurement_) measurement_ = source_->begin();
}

std::optional<SiliconEnergy> EnergySpan::finish() {
  const std::lock_guard lock(mutex_);
  add();
  if (!std::exchange(measurement_, nullptr)) return std::nullopt;
  return sum_;
}

// A part that cannot be counted takes the sum with it: it would be too small.
void EnergySpan::add() {
  if (!measurement_) return;
  const auto channels = measurement_->finish();
  const auto energy = channels ? siliconEnergy(*channels) : std::nullopt;
  if (energy) {
    sum_ += *energy;
  } else {
    measurement_.reset();
  }
}

}  // namespace quellin
