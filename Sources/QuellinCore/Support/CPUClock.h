#pragma once

#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// Source of the CPU time that a process has used, for what measuring itself costs.
class CPUClock {
 public:
  virtual ~CPUClock() = default;
  /// CPU time of all threads, in user and in system mode, since the process began; never runs backwards.
  [[nodiscard]] virtual Seconds now() const = 0;
};

/// The CPU time of this process, without that of its children (CLOCK_PROCESS_CPUTIME_ID). Thread-safe.
[[nodiscard]] CPUClock& systemCPUClock();

}  // namespace quellin
