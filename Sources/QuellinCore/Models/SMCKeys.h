#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// The keys of the System Management Controller that readers ask for.
namespace quellin::SMCKeys {

/// One byte: the number of fans.
inline constexpr std::string_view fanCount = "FNum";

/// A controller that reports more fans than this is not believed.
inline constexpr std::size_t mostFans = 15;

inline constexpr std::string_view currentSpeed = "Ac";  ///< of `fanSpeed`
inline constexpr std::string_view minimumSpeed = "Mn";  ///< of `fanSpeed`
inline constexpr std::string_view maximumSpeed = "Mx";  ///< of `fanSpeed`

/// The key of one speed of the fan with number `index`: "F0Ac".
[[nodiscard]] std::string fanSpeed(std::size_t index, std::string_view speed);

/// The codes of the speeds of all fans, each once.
[[nodiscard]] std::set<std::uint32_t> fanSpeeds();

/// The codes of every key that a reader may ask for, each once: of the fans, and of the known temperature
/// sensors.
[[nodiscard]] std::vector<std::uint32_t> all();

}  // namespace quellin::SMCKeys
