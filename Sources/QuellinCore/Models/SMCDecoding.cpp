#include "QuellinCore/Models/SMCDecoding.h"

#include <bit>
#include <cstddef>

#include "QuellinCore/Support/CheckedArithmetic.h"
#include "QuellinCore/Support/MacRoman.h"

namespace quellin::SMCDecoding {
namespace {

constexpr std::size_t codeLength = 4;
constexpr unsigned byteBits = 8;

// Some types fill their four characters with blanks or NULs ("flt "), and compare without them.
std::string typeText(std::uint32_t dataType) {
  using namespace std::string_view_literals;
  constexpr std::string_view padding = "\0 "sv;
  const std::string text = dataTypeString(dataType);
  const std::size_t first = text.find_first_not_of(padding);
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(padding) - first + 1);
}

std::optional<float> littleEndianFloat(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < sizeof(float)) return std::nullopt;
  std::uint32_t bits = 0;
  for (std::size_t i = sizeof(float); i > 0; --i) bits = (bits << byteBits) | bytes[i - 1];
  return std::bit_cast<float>(bits);
}

std::optional<std::uint16_t> bigEndian16(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < sizeof(std::uint16_t)) return std::nullopt;
  return static_cast<std::uint16_t>((unsigned{bytes[0]} << byteBits) | bytes[1]);
}

}  // namespace

std::uint32_t fourCharCode(std::string_view text) {
  std::uint32_t code = 0;
  for (std::size_t i = 0; i < codeLength; ++i) {
    code = (code << byteBits) | (i < text.size() ? static_cast<std::uint8_t>(text[i]) : 0U);
  }
  return code;
}

std::array<std::uint8_t, 4> fourCharBytes(std::uint32_t code) {
  std::array<std::uint8_t, codeLength> bytes{};
  for (std::size_t i = codeLength; i > 0; --i) {
    bytes[i - 1] = static_cast<std::uint8_t>(code & 0xFFU);
    code >>= byteBits;
  }
  return bytes;
}

std::string dataTypeString(std::uint32_t code) { return decodeMacRoman(fourCharBytes(code)); }

std::optional<double> decodeTemperature(std::uint32_t dataType, std::span<const std::uint8_t> bytes) {
  constexpr double fractionScale = 256;
  const std::string type = typeText(dataType);
  if (type == "flt") {
    if (const auto value = littleEndianFloat(bytes)) return static_cast<double>(*value);
  } else if (type.starts_with("sp")) {
    if (const auto value = bigEndian16(bytes)) return std::bit_cast<std::int16_t>(*value) / fractionScale;
  }
  return std::nullopt;
}

std::optional<std::int64_t> decodeFanRPM(std::uint32_t dataType, std::span<const std::uint8_t> bytes) {
  constexpr unsigned fractionBits = 2;
  const std::string type = typeText(dataType);
  if (type == "flt") {
    if (const auto value = littleEndianFloat(bytes)) return roundedToInt64(static_cast<double>(*value));
  } else if (type == "fpe2") {
    if (const auto value = bigEndian16(bytes)) return *value >> fractionBits;
  }
  return std::nullopt;
}

bool canDecodeFanRPM(std::uint32_t dataType, std::span<const std::uint8_t> bytes) {
  if (typeText(dataType) != "flt") return true;
  return roundsToInt64(static_cast<double>(littleEndianFloat(bytes).value_or(0)));
}

}  // namespace quellin::SMCDecoding
