#include "QuellinHelper/UTF16.h"

#include <cstddef>

#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

constexpr char32_t firstHighSurrogate = 0xD800;
constexpr char32_t firstLowSurrogate = 0xDC00;
constexpr char32_t behindSurrogates = 0xE000;
constexpr char32_t firstSupplementary = 0x10000;

bool isSurrogate(char32_t unit) { return unit >= firstHighSurrogate && unit < behindSurrogates; }

char32_t unitAt(std::string_view bytes, std::size_t index) {
  const char32_t upper = static_cast<unsigned char>(bytes[index]);
  const char32_t lower = static_cast<unsigned char>(bytes[index + 1]);
  return upper << 8 | lower;
}

}  // namespace

std::optional<std::string> utf8FromUTF16BigEndian(std::string_view bytes) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  std::string text;
  text.reserve(bytes.size());
  for (std::size_t index = 0; index < bytes.size(); index += 2) {
    char32_t scalar = unitAt(bytes, index);
    if (isSurrogate(scalar)) {
      index += 2;
      if (scalar >= firstLowSurrogate || index == bytes.size()) return std::nullopt;
      const char32_t low = unitAt(bytes, index);
      if (low < firstLowSurrogate || low >= behindSurrogates) return std::nullopt;
      scalar = firstSupplementary + ((scalar - firstHighSurrogate) << 10) + (low - firstLowSurrogate);
    }
    appendUTF8(text, scalar);
  }
  return text;
}

}  // namespace quellin
