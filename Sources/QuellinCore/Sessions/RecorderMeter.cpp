#include "QuellinCore/Sessions/RecorderMeter.h"

#include <utility>

namespace quellin {

RecorderMeter::RecorderMeter(const CPUClock& clock, std::shared_ptr<const PowerSessionStore> store)
    : clock_(&clock), store_(std::move(store)) {
  restart();
}

void RecorderMeter::restart() {
  cpu_ = clock_->now();
  bytes_ = store_->bytesWritten();
  takenAt_.reset();
}

bool RecorderMeter::isDue(Instant moment) const {
  constexpr Seconds pause{60};
  return !takenAt_ || moment < *takenAt_ || moment - *takenAt_ >= pause;
}

RecorderCost RecorderMeter::take(std::optional<Instant> moment) {
  if (moment) takenAt_ = moment;
  const Seconds cpu = clock_->now();
  const std::int64_t bytes = store_->bytesWritten();
  return {.cpuSeconds = (cpu - std::exchange(cpu_, cpu)).count(),
          .bytesWritten = bytes - std::exchange(bytes_, bytes)};
}

}  // namespace quellin
