#include "QuellinCore/Support/JSON/ShortestDecimal.h"

#include <charconv>
#include <cmath>
#include <cstring>

#include <fmt/format.h>

namespace quellin {
namespace {

constexpr double largestPlain = 9007199254740992.0;  // 2^53
constexpr double smallestPlain = 1e-4;

/// Appends to characters that have room for all that a double needs.
struct Pen {
  char* place;

  void character(char value) { *place++ = value; }
  void digits(const char* values, std::size_t count) {
    std::memcpy(place, values, count);
    place += count;
  }
  void zeros(std::size_t count) {
    std::memset(place, '0', count);
    place += count;
  }
};

// `point` is the number of digits in front of the decimal point; below 1 when zeros follow the point.
void writePlain(Pen& pen, const char* digits, std::size_t count, int point) {
  if (point <= 0) {
    pen.digits("0.", 2);
    pen.zeros(static_cast<std::size_t>(-point));
    return pen.digits(digits, count);
  }
  const auto whole = static_cast<std::size_t>(point);
  if (whole >= count) {
    pen.digits(digits, count);
    return pen.zeros(whole - count);
  }
  pen.digits(digits, whole);
  pen.character('.');
  pen.digits(digits + whole, count - whole);
}

void writeWithExponent(Pen& pen, const char* digits, std::size_t count, int exponent) {
  pen.character(digits[0]);
  if (count > 1) pen.character('.');
  pen.digits(digits + 1, count - 1);
  pen.character('e');
  pen.character(exponent < 0 ? '-' : '+');
  const int magnitude = std::abs(exponent);
  if (magnitude < 10) pen.character('0');
  pen.place = std::to_chars(pen.place, pen.place + 3, magnitude).ptr;
}

}  // namespace

ShortestDigits shortestDigits(double value) {
  // The formatting library's own step before any formatting, which would cost three times as much.
  const auto decimal = fmt::detail::dragonbox::to_decimal(value);
  return {decimal.significand, decimal.exponent};
}

bool isSpelledPlain(double value) {
  const double magnitude = std::abs(value);
  return value == 0 || (magnitude >= smallestPlain && magnitude <= largestPlain);
}

ShortestDecimal::ShortestDecimal(double value) {
  Pen pen{characters_.data()};
  if (std::signbit(value)) pen.character('-');
  if (value == 0) {
    pen.character('0');
  } else {
    const ShortestDigits shortest = shortestDigits(std::abs(value));
    std::array<char, 20> digits{};
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), shortest.digits).ptr;
    const auto count = static_cast<std::size_t>(end - digits.data());
    const int point = static_cast<int>(count) + shortest.exponent;
    if (isSpelledPlain(value)) {
      writePlain(pen, digits.data(), count, point);
    } else {
      writeWithExponent(pen, digits.data(), count, point - 1);
    }
  }
  size_ = static_cast<std::size_t>(pen.place - characters_.data());
}

}  // namespace quellin
