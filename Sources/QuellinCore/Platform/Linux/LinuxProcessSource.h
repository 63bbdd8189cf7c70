#pragma once

#include <cstdint>
#include <memory>

#include "QuellinCore/Platform/Linux/FileTree.h"
#include "QuellinCore/Platform/Linux/ProcessClock.h"
#include "QuellinCore/Platform/ProcessSource.h"

namespace quellin {

/// The machine's processes as /proc and the kernel's CPU clocks give them.
///
/// CPU time is that of the whole process, to the nanosecond; how it divides into user and system time is
/// known in clock ticks only. Wakeups are the voluntary context switches of the main thread, which is the
/// nearest that Linux counts. Disk traffic is what passed the block layer, where this process may know. There
/// is no energy per process. Names are the kernel's own: 15 bytes at most, more for its own workers.
///
/// A process whose CPU clock stands still between the two snapshots of a scan has done nothing, so its files
/// are not opened again. No descriptor is kept between the snapshots; the start time tells a taken-over id
/// apart.
class LinuxProcessSource final : public ProcessSource {
 public:
  /// `proc` is the tree of /proc. `clock` must know the ids in `proc`; without one, CPU time comes in clock
  /// ticks.
  explicit LinuxProcessSource(std::shared_ptr<const FileTree> proc = directoryTree("/proc"),
                              ProcessClock clock = systemProcessClock,
                              std::uint64_t ticksPerSecond = systemTicksPerSecond());

  [[nodiscard]] std::unique_ptr<ProcessScan> beginScan() override;
  [[nodiscard]] SourceDiagnosis diagnose() override;

 private:
  std::shared_ptr<const FileTree> proc_;
  ProcessClock clock_;
  std::uint64_t ticksPerSecond_;
};

}  // namespace quellin
