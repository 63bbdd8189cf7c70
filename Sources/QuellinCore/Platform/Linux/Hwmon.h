#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "QuellinCore/Platform/Linux/FileTree.h"

namespace quellin {

/// One monitoring chip of /sys/class/hwmon. The number in its directory's name changes from boot to boot.
struct HwmonChip {
  std::string directory;            ///< below /sys
  std::optional<std::string> name;  ///< the driver's name for the chip
  std::vector<std::string> files;   ///< the names in the directory, in natural order
};

/// One attribute family of a chip, such as all files that begin with "fan2_".
struct HwmonInput {
  std::string stem;                                ///< path below /sys up to and including the underscore
  std::expected<std::int64_t, SystemError> value;  ///< what its "input" file gives, in the kernel's unit
};

/// Where the kernel lists monitoring chips, below /sys.
inline constexpr const char* hwmonDirectory = "class/hwmon";

/// Every monitoring chip, in natural order.
[[nodiscard]] std::expected<std::vector<HwmonChip>, SystemError> readHwmonChips(const FileTree& sys);

/// Reads the inputs of one kind ("temp", "fan") that the chip has, in the order of their numbers.
[[nodiscard]] std::vector<HwmonInput> readHwmonInputs(const FileTree& sys, const HwmonChip& chip,
                                                      std::string_view kind);

}  // namespace quellin
