#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quellin {

/// What /proc/PID/stat says of a process and all its threads, those that have ended included.
struct ProcessStat {
  std::string name;               ///< bytes of any kind: 15 at most, more for the kernel's own workers
  std::uint64_t userTicks = 0;    ///< clock ticks
  std::uint64_t systemTicks = 0;  ///< clock ticks
  std::uint64_t startTicks = 0;   ///< clock ticks from the boot to the start of the process

  bool operator==(const ProcessStat&) const = default;
};

/// Reads a line of /proc/PID/stat. The name stands in parentheses and may itself hold parentheses, spaces and
/// line breaks. No value for a line that is cut or malformed.
[[nodiscard]] std::optional<ProcessStat> parseProcessStat(std::string_view line);

/// The number in the line "NAME: NUMBER" of a text made of such lines, as /proc/PID/io and /proc/PID/status
/// are.
[[nodiscard]] std::optional<std::uint64_t> parseNamedNumber(std::string_view text, std::string_view name);

}  // namespace quellin
