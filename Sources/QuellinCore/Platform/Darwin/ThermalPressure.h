#pragma once

#include <cstdint>
#include <expected>
#include <string>

namespace quellin::darwin {

/// The state of the system's thermal-pressure notification as it is now, or which call failed and how. The
/// token that it takes to read the state is given back before this returns.
[[nodiscard]] std::expected<std::uint64_t, std::string> readThermalPressure();

}  // namespace quellin::darwin
