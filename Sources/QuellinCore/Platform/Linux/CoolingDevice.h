#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "QuellinCore/Platform/Linux/FileTree.h"
#include "QuellinCore/Platform/Linux/SourceReport.h"

namespace quellin {

/// One entry of /sys/class/thermal that takes away heat or the making of it.
struct CoolingDevice {
  std::string type;
  std::optional<std::int64_t>
      current;  ///< 0 = not at work; a driver that is switched off may give a negative number
  std::optional<std::int64_t> maximum;

  bool operator==(const CoolingDevice&) const = default;
};

/// The cooling devices, and the first file of them that is there and could not be read.
struct CoolingDevices {
  std::vector<CoolingDevice> devices;
  std::optional<ReadFault> firstFault;
};

/// Where the kernel lists cooling devices, below /sys.
inline constexpr const char* thermalDirectory = "class/thermal";

/// Every cooling device, in natural order.
[[nodiscard]] std::expected<CoolingDevices, SystemError> readCoolingDevices(const FileTree& sys);

/// Whether the device cools by making processor or graphics slower. Fans, screens and radios are no sign of
/// throttling.
[[nodiscard]] bool throttles(const CoolingDevice& device);

/// The thermal state, by the device that throttles hardest: 0 (nominal) when none is at work, 1 (fair) below
/// half of its range, 2 (serious) from half on, 3 (critical) at its end. No value when no device that
/// throttles can be read.
[[nodiscard]] std::optional<std::int64_t> thermalStateCode(std::span<const CoolingDevice> devices);

}  // namespace quellin
