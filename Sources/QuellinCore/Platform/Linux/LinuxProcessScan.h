#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>

#include "QuellinCore/Platform/Linux/FileTree.h"
#include "QuellinCore/Platform/Linux/ProcessClock.h"
#include "QuellinCore/Platform/ProcessSource.h"

namespace quellin {

/// One measurement over /proc; see `LinuxProcessSource`.
class LinuxProcessScan final : public ProcessScan {
 public:
  LinuxProcessScan(std::shared_ptr<const FileTree> proc, ProcessClock clock, std::uint64_t ticksPerSecond);

  [[nodiscard]] std::int64_t listProcessIDs(std::span<std::int32_t> ids) override;
  [[nodiscard]] std::optional<ProcessUsage> usage(std::int32_t pid) override;
  [[nodiscard]] std::optional<std::string> name(std::int32_t pid) override;

 private:
  struct Sighting {
    ProcessUsage usage;
    std::string name;
    std::optional<std::uint64_t> clock;  // nanoseconds; without one the files are all there is to go by
  };

  [[nodiscard]] std::optional<std::uint64_t> readClock(std::int32_t pid) const;
  [[nodiscard]] std::optional<Sighting> readFiles(std::int32_t pid, std::optional<std::uint64_t> clock) const;
  void setTimes(ProcessUsage& usage, std::uint64_t userTicks, std::uint64_t systemTicks,
                std::optional<std::uint64_t> clock) const;

  std::shared_ptr<const FileTree> proc_;
  ProcessClock clock_;
  std::uint64_t nanosecondsPerTick_;
  std::unordered_map<std::int32_t, Sighting> lastSeen_;
};

}  // namespace quellin
