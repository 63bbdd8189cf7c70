#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quellin {

/// `digits` times ten to the power of `exponent`; the last digit is not 0.
struct ShortestDigits {
  std::uint64_t digits = 0;  ///< 1 to 17 of them
  int exponent = 0;          ///< of ten
};

/// The fewest digits that read back as `value`, the closest ones where there are several. The value must be
/// finite and above 0.
[[nodiscard]] ShortestDigits shortestDigits(double value);

/// True when `ShortestDecimal` writes a finite value without an exponent.
[[nodiscard]] bool isSpelledPlain(double value);

/// The shortest decimal text that reads back as the same double.
///
/// Plain digits for 0 and from 1e-4 to 2^53 in magnitude ("12", "-0", "0.1"); otherwise with an exponent that
/// has a sign and at least two digits ("1e-05", "9.007199254740994e+15"). Locale plays no part. The value
/// must be finite.
///
/// Not std::to_chars: the C++ library of macOS 12 lacks it for floating point. A plain value: several threads
/// may read one, as long as none changes it.
class ShortestDecimal {
 public:
  explicit ShortestDecimal(double value);  ///< `value` must be finite

  /// The text; valid as long as this object.
  [[nodiscard]] std::string_view text() const { return {characters_.data(), size_}; }

 private:
  std::array<char, 32> characters_{};
  std::size_t size_ = 0;
};

}  // namespace quellin
