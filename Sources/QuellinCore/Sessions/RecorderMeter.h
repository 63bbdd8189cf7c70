#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "QuellinCore/Support/CPUClock.h"

namespace quellin {

/// Measures what recording costs this process, and hands it on piece by piece: each piece is counted once.
/// Used where the recorder is, on the main executor: by one thread at a time.
class RecorderMeter {
 public:
  /// Measures from now on. `clock` must outlive the meter.
  RecorderMeter(const CPUClock& clock, std::shared_ptr<const PowerSessionStore> store);

  /// Measures from now on, and forgets what was not taken.
  void restart();

  /// Whether the cost should be noted with a snapshot of this moment: with the first one, and then once a
  /// minute. A clock set back counts as a minute.
  [[nodiscard]] bool isDue(Instant moment) const;

  /// Whether a cost was to be noted with a snapshot since `restart`: before, nothing was recorded here.
  [[nodiscard]] bool hasRecorded() const { return takenAt_.has_value(); }

  /// The cost since the last `take` or `restart`, which is to be noted at `moment`.
  [[nodiscard]] RecorderCost take(std::optional<Instant> moment = std::nullopt);

 private:
  const CPUClock* clock_;
  std::shared_ptr<const PowerSessionStore> store_;
  Seconds cpu_{};
  std::int64_t bytes_ = 0;
  std::optional<Instant> takenAt_;
};

}  // namespace quellin
