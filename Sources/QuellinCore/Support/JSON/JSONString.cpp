#include "QuellinCore/Support/JSON/JSONString.h"

#include <cstdint>

#include "QuellinCore/Support/Number.h"
#include "QuellinCore/Support/Surrogates.h"
#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

// The character that a single letter after the backslash stands for.
constexpr char escapedCharacter(char letter) {
  switch (letter) {
    case '"':
    case '\\':
    case '/':
      return letter;
    case 'b':
      return '\b';
    case 'f':
      return '\f';
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case 't':
      return '\t';
    default:
      return '\0';
  }
}

// Takes "u" and four hexadecimal digits off the front.
std::optional<char32_t> takeCodeUnit(std::string_view& rest) {
  if (rest.size() < 5 || rest.front() != 'u') return std::nullopt;
  const auto unit = parseNumber<std::uint16_t>(rest.substr(1, 4), 16);
  if (!unit) return std::nullopt;
  rest.remove_prefix(5);
  return unit;
}

bool takeUnicodeEscape(std::string_view& rest, std::string& text) {
  const std::optional<char32_t> unit = takeCodeUnit(rest);
  if (!unit || isLowSurrogate(*unit)) return false;
  if (!isHighSurrogate(*unit)) {
    appendUTF8(text, *unit);
    return true;
  }
  if (!rest.starts_with('\\')) return false;
  rest.remove_prefix(1);
  const std::optional<char32_t> low = takeCodeUnit(rest);
  if (!low || !isLowSurrogate(*low)) return false;
  appendUTF8(text, characterOfSurrogates(*unit, *low));
  return true;
}

bool takeEscape(std::string_view& rest, std::string& text) {
  if (rest.starts_with('u')) return takeUnicodeEscape(rest, text);
  const char character = rest.empty() ? '\0' : escapedCharacter(rest.front());
  if (character == '\0') return false;
  text += character;
  rest.remove_prefix(1);
  return true;
}

}  // namespace

std::optional<std::string_view> unescapedJSON(std::string_view raw, std::string& buffer) {
  std::size_t backslash = raw.find('\\');
  if (backslash == std::string_view::npos) return raw;
  buffer.clear();
  while (backslash != std::string_view::npos) {
    buffer += raw.substr(0, backslash);
    raw.remove_prefix(backslash + 1);
    if (!takeEscape(raw, buffer)) return std::nullopt;
    backslash = raw.find('\\');
  }
  buffer += raw;
  return buffer;
}

}  // namespace quellin
