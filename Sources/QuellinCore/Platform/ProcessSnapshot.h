#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "QuellinCore/Models/ProcessUsage.h"
#include "QuellinCore/Platform/ProcessSource.h"

namespace quellin {

/// One process in one snapshot.
struct ProcessAnswer {
  std::int32_t pid = 0;               ///< process identifier
  std::optional<ProcessUsage> usage;  ///< absent when it may not be read
  std::optional<std::string> name;    ///< bytes of any encoding; absent without counters, too

  bool operator==(const ProcessAnswer&) const = default;
};

/// Whether a snapshot reads names. Only the later one of a measurement does: no other name is ever shown.
enum class ProcessNames { leftOut, read };

/// The ids of all processes: what `scan` lists into a buffer that fits, which has room for 4096 ids, doubled
/// up to 65536 as long as a result fills it. Empty when the list cannot be had or when the largest buffer is
/// filled as well.
[[nodiscard]] std::vector<std::int32_t> processIDs(ProcessScan& scan);

/// What `scan` answers about every process that it lists, in the order of the host. A process with an id
/// below 1, the kernel itself on some hosts, is not asked.
[[nodiscard]] std::vector<ProcessAnswer> processSnapshot(ProcessScan& scan, ProcessNames names);

}  // namespace quellin
