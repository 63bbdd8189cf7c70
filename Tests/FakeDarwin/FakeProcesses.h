#pragma once

#include <cstdint>
#include <libproc.h>
#include <optional>
#include <string>
#include <vector>

namespace quellin::fake {

/// The processes of the system, in the kernel's order, and the clock that their times are counted in.
struct FakeProcesses {
  struct Process {
    std::int32_t pid = 0;
    std::string name;
    rusage_info_v6 usage{};
    int error = 0;  ///< the errno value with which name and usage are refused; 0 for none
  };

  /// The process of that id; null when there is none.
  [[nodiscard]] const Process* find(std::int32_t pid) const;

  std::vector<Process> list;
  std::optional<std::uint64_t> ticksPerSecond = 24'000'000;  ///< the sysctl; absent where the kernel has none
  std::size_t frequencySize = 8;                             ///< bytes of the sysctl's value
  std::uint32_t numerator = 125;
  std::uint32_t denominator = 3;
};

}  // namespace quellin::fake
