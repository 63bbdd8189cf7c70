#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "QuellinCore/Models/ProcessUsage.h"
#include "QuellinCore/Models/SourceDiagnosis.h"
#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// Between the two snapshots of a measurement, where nobody asks for another time: long enough for the
/// counters to move, short enough to be waited for.
inline constexpr Seconds processMeasurementInterval{0.35};

/// The three process calls, for the length of one measurement (two snapshots of every process).
///
/// A scan may keep what it opened for a process until it is destroyed, so that the second snapshot is cheaper
/// than the first; a process whose id was taken over in between is then reported as gone, or with another
/// `startToken`. A counter that cannot be read is absent, never 0: one that becomes readable between the
/// snapshots must not look like activity.
///
/// A scan belongs to one thread at a time and may outlive the source that began it. Nothing throws.
class ProcessScan {
 public:
  virtual ~ProcessScan() = default;

  /// Fills `ids` from its start with the ids of all processes, in the order of the host; ids that do not fit
  /// are dropped. Returns the number of bytes written (4 per id). A result that reaches the size of the
  /// buffer in bytes says that the buffer may have been too small; a result below 1 that the list cannot be
  /// had.
  [[nodiscard]] virtual std::int64_t listProcessIDs(std::span<std::int32_t> ids) = 0;

  /// The counters of one process as they are now. No value when it has gone or may not be read.
  [[nodiscard]] virtual std::optional<ProcessUsage> usage(std::int32_t pid) = 0;

  /// The bytes of the process's name, at most 1024, of any encoding; what follows a NUL is ignored. No value
  /// on failure.
  [[nodiscard]] virtual std::optional<std::string> name(std::int32_t pid) = 0;
};

/// Supplies scans of the machine's processes.
///
/// Threading: every operation may be called from any thread, also from several at once. Nothing throws.
class ProcessSource {
 public:
  virtual ~ProcessSource() = default;

  /// Begins a measurement; opens nothing yet. Never null: a host without processes lists none.
  [[nodiscard]] virtual std::unique_ptr<ProcessScan> beginScan() = 0;

  /// Which processes and which counters this process may read on this machine, and why not more.
  [[nodiscard]] virtual SourceDiagnosis diagnose() = 0;
};

/// The process source of the host that this library was built for. Never null.
[[nodiscard]] std::shared_ptr<ProcessSource> nativeProcessSource();

}  // namespace quellin
