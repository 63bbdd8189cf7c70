#include "QuellinCore/Platform/Recorded/TraceText.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "QuellinCore/Models/SMCDecoding.h"
#include "QuellinCore/Support/HexDigits.h"

namespace quellin {
namespace {

constexpr std::string_view hexMark = "0x";
constexpr std::size_t codeLength = 4;

bool isPrintable(std::uint8_t byte) { return byte >= 0x20 && byte < 0x7F; }

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
    text += lowerCaseHexDigits[byte >> 4U];
    text += lowerCaseHexDigits[byte & 0x0FU];
  }
  return text;
}

std::optional<std::vector<std::uint8_t>> bytesOfHexText(std::string_view text) {
  if (text.size() % 2 != 0) return std::nullopt;
  std::vector<std::uint8_t> bytes;
  bytes.reserve(text.size() / 2);
  for (std::size_t place = 0; place < text.size(); place += 2) {
    const auto high = hexDigitValue(text[place]);
    const auto low = hexDigitValue(text[place + 1]);
    if (!high || !low) return std::nullopt;
    bytes.push_back(static_cast<std::uint8_t>((*high << 4U) | *low));
  }
  return bytes;
}

std::string codeText(std::uint32_t code) {
  const auto bytes = SMCDecoding::fourCharBytes(code);
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
