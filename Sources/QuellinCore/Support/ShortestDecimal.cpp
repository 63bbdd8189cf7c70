#include "QuellinCore/Support/ShortestDecimal.h"

#include <cmath>
#include <string>

#include <fmt/format.h>

namespace quellin {
namespace {

constexpr double largestPlain = 9007199254740992.0;  // 2^53
constexpr double smallestExponent = 1e16;  // from here on the formatting library changes form by itself

/// Sixteen plain digits in exponent form: one digit, the others without trailing zeros, e+15.
std::string withExponent(std::string_view sixteenDigits) {
  const std::size_t last = sixteenDigits.find_last_not_of('0');
  std::string text(sixteenDigits.substr(0, 1));
  if (last > 0) text.append(".").append(sixteenDigits.substr(1, last));
  return text.append("e+15");
}

}  // namespace

ShortestDecimal::ShortestDecimal(double value) {
  const auto written = fmt::format_to_n(characters_.data(), characters_.size(), FMT_STRING("{}"), value);
  size_ = written.size;
  if (std::abs(value) <= largestPlain || std::abs(value) >= smallestExponent) return;
  const std::size_t sign = value < 0 ? 1 : 0;
  const std::string text = withExponent(this->text().substr(sign));
  size_ = sign + text.copy(characters_.data() + sign, characters_.size() - sign);
}

}  // namespace quellin
