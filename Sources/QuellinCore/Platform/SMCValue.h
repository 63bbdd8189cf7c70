#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "QuellinCore/Platform/SMCSource.h"

namespace quellin {

/// The value of one key of the SMC.
struct SMCValue {
  std::uint32_t dataType = 0;       ///< four-character code
  std::vector<std::uint8_t> bytes;  ///< 1 to 32 of them when they were read

  bool operator==(const SMCValue&) const = default;
};

/// Asks for size and type of the key with the four-character code `key`, then for its value. No value when
/// either call fails, or when the size is not from 1 to 32.
[[nodiscard]] std::optional<SMCValue> readSMCValue(SMCConnection& connection, std::uint32_t key);

}  // namespace quellin
