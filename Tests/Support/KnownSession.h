#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Models/ProcessActivityInfo.h"
#include "QuellinCore/Models/SystemPowerState.h"
#include "QuellinCore/Sessions/PowerSessionSummary.h"

namespace quellin::testing_support {

/// A made-up recording of any length whose every figure follows from the number of its samples, without
/// adding anything up: a triangle wave of 8 to 16 W by the energy model, on battery and on external power in
/// turn, 40 temperature sensors, 2 fans, process activity and pro telemetry. All watts, durations and scores
/// are whole multiples of a power of two, so that sums of them are exact.
class KnownSession {
 public:
  static constexpr std::int64_t segmentLength = 3600;  ///< samples between two changes of the supply

  /// With a sample every `interval`, whole seconds, from a fixed start on.
  explicit KnownSession(Seconds interval = Seconds{1});

  [[nodiscard]] Seconds interval() const { return interval_; }  ///< from one sample to the next
  /// How often the recorder is to measure processes.
  [[nodiscard]] Seconds processInterval() const { return 10 * interval_; }
  /// When a sample is taken; the session begins with the first.
  [[nodiscard]] Instant instantOf(std::int64_t sample) const;

  /// What the machine shows for a sample, counted from 0.
  [[nodiscard]] SystemPowerState state(std::int64_t sample) const;
  /// What comes with it from the privileged tool, if anything.
  [[nodiscard]] std::optional<ProTelemetrySnapshot> telemetry(std::int64_t sample) const;
  /// What every measurement of processes finds.
  [[nodiscard]] static std::vector<ProcessActivityInfo> activities();

  /// What the first `samples` samples come to, live and stored; ended with the last of them or not yet.
  [[nodiscard]] PowerSessionSummary summary(std::int64_t samples) const;

  /// Where `found` is not `summary(found.sampleCount)`, in words; empty where it is. Counts and extremes must
  /// be equal. Energy is a sum of as many terms as there are samples, each of them exact but for a division:
  /// its relative error is at most one half-unit in the last place per addition and operation.
  [[nodiscard]] std::string difference(PowerSessionSummary found) const;

 private:
  [[nodiscard]] PowerSessionPowerSegment segment(std::int64_t index, std::int64_t samples) const;
  [[nodiscard]] double wattHours(std::int64_t from, std::int64_t to) const;

  Seconds interval_;
  SystemPowerState model_;
};

}  // namespace quellin::testing_support
