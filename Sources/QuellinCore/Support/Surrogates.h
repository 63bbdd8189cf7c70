#pragma once

namespace quellin {

/// Whether a UTF-16 code unit is the first half of a pair that stands for one character.
[[nodiscard]] constexpr bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }

/// Whether a UTF-16 code unit is the second half of such a pair.
[[nodiscard]] constexpr bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

/// The character of a pair; `high` and `low` must be such halves.
[[nodiscard]] constexpr char32_t characterOfSurrogates(char32_t high, char32_t low) {
  return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}

}  // namespace quellin
