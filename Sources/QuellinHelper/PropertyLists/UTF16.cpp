#include "QuellinHelper/PropertyLists/UTF16.h"

#include <cstddef>

#include "QuellinCore/Support/Surrogates.h"
#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

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
    if (isLowSurrogate(scalar)) return std::nullopt;
    if (isHighSurrogate(scalar)) {
      index += 2;
      if (index == bytes.size()) return std::nullopt;
      const char32_t low = unitAt(bytes, index);
      if (!isLowSurrogate(low)) return std::nullopt;
      scalar = characterOfSurrogates(scalar, low);
    }
    appendUTF8(text, scalar);
  }
  return text;
}

}  // namespace quellin
