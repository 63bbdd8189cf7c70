#pragma once

#include <optional>
#include <string_view>

namespace quellin {

inline constexpr std::string_view lowerCaseHexDigits = "0123456789abcdef";  ///< by their value
inline constexpr std::string_view upperCaseHexDigits = "0123456789ABCDEF";  ///< by their value

/// The value of a hexadecimal digit in either case; no value for any other character.
[[nodiscard]] constexpr std::optional<unsigned> hexDigitValue(char digit) {
  if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
  if (digit >= 'a' && digit <= 'f') return static_cast<unsigned>(digit - 'a') + 10;
  if (digit >= 'A' && digit <= 'F') return static_cast<unsigned>(digit - 'A') + 10;
  return std::nullopt;
}

}  // namespace quellin
