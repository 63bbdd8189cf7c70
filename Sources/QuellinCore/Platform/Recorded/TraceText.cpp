#include "QuellinCore/Platform/Recorded/TraceText.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "QuellinCore/Models/SMCDecoding.h"

namespace quellin {
namespace {

constexpr std::string_view hexDigits = "0123456789abcdef";
constexpr std::string_view hexMark = "0x";
constexpr std::size_t codeLength = 4;
constexpr unsigned byteBits = 8;

std::optional<unsigned> valueOfHexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
  if (digit >= 'a' && digit <= 'f') return static_cast<unsigned>(digit - 'a') + 10;
  if (digit >= 'A' && digit <= 'F') return static_cast<unsigned>(digit - 'A') + 10;
  return std::nullopt;
}

bool isPrintable(std::uint8_t byte) { return byte >= 0x20 && byte < 0x7F; }

std::array<std::uint8_t, codeLength> bytesOfCode(std::uint32_t code) {
  std::array<std::uint8_t, codeLength> bytes{};
  for (std::size_t place = codeLength; place > 0; --place) {
    bytes[place - 1] = static_cast<std::uint8_t>(code & 0xFFU);
    code >>= byteBits;
  }
  return bytes;
}

}  // namespace

std::optional<NonFinite> nonFiniteKind(double value) {
  if (std::isfinite(value)) return std::nullopt;
  if (std::isnan(value)) return NonFinite::notANumber;
  return value > 0 ? NonFinite::infinity : NonFinite::negativeInfinity;
}

double nonFiniteValue(NonFinite kind) {
  using Limits = std::numeric_limits<double>;
  switch (kind) {
    case NonFinite::infinity:
      return Limits::infinity();
    case NonFinite::negativeInfinity:
      return -Limits::infinity();
    case NonFinite::notANumber:
      break;
  }
  return Limits::quiet_NaN();
}

std::string hexText(std::span<const std::uint8_t> bytes) {
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const std::uint8_t byte : bytes) {
    text += hexDigits[byte >> 4U];
    text += hexDigits[byte & 0x0FU];
  }
  return text;
}

std::optional<std::vector<std::uint8_t>> bytesOfHexText(std::string_view text) {
  if (text.size() % 2 != 0) return std::nullopt;
  std::vector<std::uint8_t> bytes;
  bytes.reserve(text.size() / 2);
  for (std::size_t place = 0; place < text.size(); place += 2) {
    const auto high = valueOfHexDigit(text[place]);
    const auto low = valueOfHexDigit(text[place + 1]);
    if (!high || !low) return std::nullopt;
    bytes.push_back(static_cast<std::uint8_t>((*high << 4U) | *low));
  }
  return bytes;
}

std::string codeText(std::uint32_t code) {
  const auto bytes = bytesOfCode(code);
  if (!std::ranges::all_of(bytes, isPrintable)) return std::string{hexMark} + hexText(bytes);
  return {bytes.begin(), bytes.end()};
}

std::optional<std::uint32_t> codeOfText(std::string_view text) {
  if (text.size() == codeLength) return SMCDecoding::fourCharCode(text);
  if (text.size() != hexMark.size() + (2 * codeLength) || !text.starts_with(hexMark)) return std::nullopt;
  const auto bytes = bytesOfHexText(text.substr(hexMark.size()));
  if (!bytes) return std::nullopt;
  return SMCDecoding::fourCharCode(std::string{bytes->begin(), bytes->end()});
}

}  // namespace quellin
