#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace quellin {

/// A JSON number taken apart. The digits point into the text it was read from.
struct JSONNumber {
  bool isNegative = false;          ///< a minus sign stands before it
  std::string_view wholeDigits;     ///< at least one
  std::string_view fractionDigits;  ///< may be empty
  std::int64_t exponent = 0;        ///< a power of ten, cut at about 10^17 in either direction

  /// True when every digit is zero.
  [[nodiscard]] bool isZero() const;

  /// The absolute value, computed exactly; no value when it has a fraction or exceeds 64 bits.
  [[nodiscard]] std::optional<std::uint64_t> integralMagnitude() const;
};

/// The number that makes up the whole of `text`, by the grammar of JSON; no value for any other text.
[[nodiscard]] std::optional<JSONNumber> parseJSONNumber(std::string_view text);

}  // namespace quellin
