#include "QuellinCore/Support/JSON/JSONNumber.h"

namespace quellin {
namespace {

constexpr std::int64_t exponentLimit = 100'000'000'000'000'000;

std::string_view takeDigits(std::string_view& text) {
  std::size_t count = 0;
  while (count < text.size() && text[count] >= '0' && text[count] <= '9') ++count;
  const std::string_view digits = text.substr(0, count);
  text.remove_prefix(count);
  return digits;
}

bool take(std::string_view& text, char character) {
  if (!text.starts_with(character)) return false;
  text.remove_prefix(1);
  return true;
}

std::int64_t exponentValue(std::string_view digits) {
  std::int64_t value = 0;
  for (const char digit : digits) {
    if (value < exponentLimit) value = value * 10 + (digit - '0');
  }
  return value;
}

bool takeExponent(std::string_view& text, std::int64_t& exponent) {
  if (!take(text, 'e') && !take(text, 'E')) return true;
  const bool isNegative = take(text, '-');
  if (!isNegative) take(text, '+');
  const std::string_view digits = takeDigits(text);
  exponent = isNegative ? -exponentValue(digits) : exponentValue(digits);
  return !digits.empty();
}

bool areZeros(std::string_view digits) { return digits.find_first_not_of('0') == std::string_view::npos; }

}  // namespace

std::optional<JSONNumber> parseJSONNumber(std::string_view text) {
  JSONNumber number;
  number.isNegative = take(text, '-');
  number.wholeDigits = takeDigits(text);
  if (number.wholeDigits.empty()) return std::nullopt;
  if (number.wholeDigits.size() > 1 && number.wholeDigits.front() == '0') return std::nullopt;
  if (take(text, '.')) {
    number.fractionDigits = takeDigits(text);
    if (number.fractionDigits.empty()) return std::nullopt;
  }
  if (!takeExponent(text, number.exponent) || !text.empty()) return std::nullopt;
  return number;
}

bool JSONNumber::isZero() const { return areZeros(wholeDigits) && areZeros(fractionDigits); }

std::optional<std::uint64_t> JSONNumber::integralMagnitude() const {
  if (isZero()) return 0;
  const auto wholeCount = static_cast<std::int64_t>(wholeDigits.size());
  const auto digitCount = wholeCount + static_cast<std::int64_t>(fractionDigits.size());
  const auto digitAt = [&](std::int64_t index) {
    if (index >= digitCount) return '0';
    return index < wholeCount ? wholeDigits[static_cast<std::size_t>(index)]
                              : fractionDigits[static_cast<std::size_t>(index - wholeCount)];
  };
  const std::int64_t pointAt = wholeCount + exponent;
  std::uint64_t magnitude = 0;
  // A number of more than 20 digits overflows at once, however far the point is to the right.
  for (std::int64_t index = 0; index < pointAt; ++index) {
    const auto digit = static_cast<std::uint64_t>(digitAt(index) - '0');
    if (__builtin_mul_overflow(magnitude, std::uint64_t{10}, &magnitude)) return std::nullopt;
    if (__builtin_add_overflow(magnitude, digit, &magnitude)) return std::nullopt;
  }
  for (std::int64_t index = pointAt > 0 ? pointAt : 0; index < digitCount; ++index) {
    if (digitAt(index) != '0') return std::nullopt;
  }
  return magnitude;
}

}  // namespace quellin
