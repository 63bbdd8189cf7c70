#pragma once

#include <memory>
#include <vector>

#include "QuellinCore/Models/ProcessActivityInfo.h"
#include "QuellinCore/Platform/ProcessSource.h"
#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// Finds the processes that cost the most power right now. Holds no state of its own; may be called from any
/// thread that need not stay responsive.
class ProcessActivityService {
 public:
  /// The shortest time between the two snapshots.
  static constexpr Seconds shortestInterval{0.1};

  /// `source` must not be null; `clock` must outlive the service.
  explicit ProcessActivityService(std::shared_ptr<ProcessSource> source = nativeProcessSource(),
                                  MonotonicClock& clock = systemMonotonicClock());

  /// The at most `limit` processes with the highest impact, highest first. Takes two snapshots of all
  /// processes and blocks the calling thread for `interval` seconds between them, for 0.1 s if that is
  /// longer. Empty when either snapshot is, and for a `limit` below 1. Processes that may not be read are
  /// left out.
  [[nodiscard]] std::vector<ProcessActivityInfo> sampleTopProcesses(int limit, Seconds interval) const;

 private:
  std::shared_ptr<ProcessSource> source_;
  MonotonicClock* clock_;
};

}  // namespace quellin
