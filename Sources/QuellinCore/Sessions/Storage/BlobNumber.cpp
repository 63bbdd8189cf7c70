#include "QuellinCore/Sessions/Storage/BlobNumber.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <initializer_list>
#include <limits>

#include "QuellinCore/Support/ISO8601.h"
#include "QuellinCore/Support/JSON/ShortestDecimal.h"

namespace quellin {
namespace {

using Form = BlobNumber::Form;

// The powers of ten that a double holds exactly.
constexpr std::array<double, 23> powersOfTen{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                             1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                             1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// A spelling without an exponent: digits and decimals.
struct Plain {
  bool isNegative = false;
  std::uint64_t digits = 0;
  std::uint8_t decimals = 0;
};

// No value for exponents, more than 18 digits that count, superfluous zeros in front, and minus zero.
std::optional<Plain> parsePlain(std::string_view token) {
  constexpr std::uint64_t digitLimit = 1'000'000'000'000'000'000;
  Plain plain;
  plain.isNegative = token.starts_with('-');
  if (plain.isNegative) token.remove_prefix(1);
  const std::size_t point = token.find('.');
  const std::size_t decimals = point == std::string_view::npos ? 0 : token.size() - point - 1;
  const bool hasEmptyPart = point == 0 || token.empty() || (point != std::string_view::npos && decimals == 0);
  const bool hasSpareZero = token.size() > 1 && token.front() == '0' && point != 1;
  if (hasEmptyPart || hasSpareZero || decimals >= powersOfTen.size()) return std::nullopt;
  for (std::size_t index = 0; index < token.size(); ++index) {
    if (index == point) continue;
    const auto digit = static_cast<std::uint64_t>(static_cast<unsigned char>(token[index])) - '0';
    if (digit > 9) return std::nullopt;
    plain.digits = plain.digits * 10 + digit;
    if (plain.digits >= digitLimit) return std::nullopt;
  }
  if (plain.isNegative && plain.digits == 0) return std::nullopt;
  plain.decimals = static_cast<std::uint8_t>(decimals);
  return plain;
}

// Floats sort like their bits once the bits of negative ones are turned round.
template <class Signed, class Float>
std::int64_t orderedBits(Float value) {
  const auto bits = std::bit_cast<Signed>(value);
  return bits < 0 ? std::numeric_limits<Signed>::min() - bits : bits;
}

template <class Float, class Signed>
Float fromOrderedBits(std::int64_t payload) {
  const auto bits = static_cast<Signed>(payload);
  return std::bit_cast<Float>(bits < 0 ? static_cast<Signed>(std::numeric_limits<Signed>::min() - bits)
                                       : bits);
}

// Whether `value` would be spelled exactly as `plain` was. Its sign is that of the spelling.
bool spells(double value, const Plain& plain) {
  const double magnitude = std::abs(value);
  if (!(magnitude > 0) || !std::isfinite(magnitude) || !isSpelledPlain(value)) return false;
  const ShortestDigits shortest = shortestDigits(magnitude);
  return shortest.digits == plain.digits && shortest.exponent == -int{plain.decimals};
}

std::optional<BlobNumber> asSingle(double nearby, const Plain& plain) {
  const auto value = static_cast<float>(nearby);
  if (!spells(static_cast<double>(value), plain)) return std::nullopt;
  return BlobNumber{.form = Form::single, .payload = orderedBits<std::int32_t>(value)};
}

// `nearby` is at most one step away from the double that the spelling means.
std::optional<BlobNumber> asReal(double nearby, const Plain& plain) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  for (const double value : {nearby, std::nextafter(nearby, -infinity), std::nextafter(nearby, infinity)}) {
    if (spells(value, plain))
      return BlobNumber{.form = Form::real, .payload = orderedBits<std::int64_t>(value)};
  }
  return std::nullopt;
}

BlobNumber asDecimal(const Plain& plain) {
  const auto magnitude = static_cast<std::int64_t>(plain.digits);
  return {.form = Form::decimal,
          .decimals = plain.decimals,
          .payload = plain.isNegative ? -magnitude : magnitude};
}

void appendDecimal(std::string& text, const BlobNumber& number) {
  const bool isNegative = number.payload < 0;
  const auto magnitude = isNegative ? ~static_cast<std::uint64_t>(number.payload) + 1
                                    : static_cast<std::uint64_t>(number.payload);
  std::array<char, 20> digits{};
  const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), magnitude).ptr;
  const auto count = static_cast<std::size_t>(end - digits.data());
  const std::size_t decimals = number.decimals;
  if (isNegative) text.push_back('-');
  if (decimals == 0) {
    text.append(digits.data(), count);
    return;
  }
  const std::size_t whole = count > decimals ? count - decimals : 0;
  if (whole == 0) {
    text.append("0.").append(decimals - count, '0').append(digits.data(), count);
  } else {
    text.append(digits.data(), whole).append(1, '.').append(digits.data() + whole, decimals);
  }
}

void appendReal(std::string& text, double value) {
  if (std::isfinite(value)) text.append(ShortestDecimal(value).text());
}

}  // namespace

BlobNumber blobNumber(std::string_view token, Form wish) {
  constexpr std::uint64_t shortDigits = 1'000'000'000;
  const BlobNumber asText{.form = Form::text, .text = token};
  const auto plain = parsePlain(token);
  if (!plain) return asText;
  const double magnitude = static_cast<double>(plain->digits) / powersOfTen[plain->decimals];
  const double nearby = plain->isNegative ? -magnitude : magnitude;
  if (wish == Form::single) {
    if (const auto single = asSingle(nearby, *plain)) return *single;
  }
  if (plain->digits < shortDigits) return asDecimal(*plain);
  if (const auto single = asSingle(nearby, *plain)) return *single;
  if (const auto real = asReal(nearby, *plain)) return *real;
  return asDecimal(*plain);
}

std::optional<BlobNumber> blobDate(std::string_view token) {
  const auto instant = parseISO8601(token);
  if (!instant || iso8601Text(*instant).view() != token) return std::nullopt;
  return BlobNumber{.form = Form::date,
                    .payload = static_cast<std::int64_t>(instant->time_since_epoch().count())};
}

void appendSpelling(std::string& text, const BlobNumber& number) {
  switch (number.form) {
    case Form::decimal:
      return appendDecimal(text, number);
    case Form::single:
      return appendReal(text, static_cast<double>(fromOrderedBits<float, std::int32_t>(number.payload)));
    case Form::real:
      return appendReal(text, fromOrderedBits<double, std::int64_t>(number.payload));
    case Form::date:
      text.append(iso8601Text(instantAt(static_cast<double>(number.payload))).view());
      return;
    case Form::text:
      text.append(number.text);
      return;
  }
}

}  // namespace quellin
