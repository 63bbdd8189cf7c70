#pragma once

#include <cstdint>
#include <expected>
#include <string>

namespace quellin::darwin {

/// The name of the system's thermal-pressure notification.
inline constexpr const char* thermalPressureName = "com.apple.system.thermalpressurelevel";

/// The state of that notification as it is now, or which call failed and how. The
/// token that it takes to read the state is given back before this returns.
[[nodiscard]] std::expected<std::uint64_t, std::string> readThermalPressure();

}  // namespace quellin::darwin
