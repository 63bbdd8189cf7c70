#include "QuellinCore/Support/Text.h"

#include <cstdint>

namespace quellin {
namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

struct Lead {
  std::size_t length;
  std::uint8_t secondLow;   // the range of the second byte excludes overlong forms, surrogates
  std::uint8_t secondHigh;  // and values above U+10FFFF
};

constexpr Lead leadOf(std::uint8_t byte) {
  if (byte < 0x80) return {1, 0, 0};
  if (byte < 0xC2) return {0, 0, 0};
  if (byte < 0xE0) return {2, 0x80, 0xBF};
  if (byte == 0xE0) return {3, 0xA0, 0xBF};
  if (byte == 0xED) return {3, 0x80, 0x9F};
  if (byte < 0xF0) return {3, 0x80, 0xBF};
  if (byte == 0xF0) return {4, 0x90, 0xBF};
  if (byte < 0xF4) return {4, 0x80, 0xBF};
  if (byte == 0xF4) return {4, 0x80, 0x8F};
  return {0, 0, 0};
}

constexpr UTF8Step illFormed(std::size_t length) { return {length, U'\uFFFD', false}; }

constexpr bool isContinuation(char byte) { return (static_cast<std::uint8_t>(byte) & 0xC0) == 0x80; }

constexpr bool isWhitespaceOrNewline(char32_t character) {
  switch (character) {
    case 0x20:
    case 0x85:
    case 0xA0:
    case 0x1680:
    case 0x2028:
    case 0x2029:
    case 0x202F:
    case 0x205F:
    case 0x3000:
      return true;
    default:
      return (character >= 0x09 && character <= 0x0D) || (character >= 0x2000 && character <= 0x200B);
  }
}

// The last character of `text`: at most three continuation bytes back.
std::string_view lastCharacter(std::string_view text) {
  std::size_t start = text.size() - 1;
  while (start > 0 && text.size() - start < 4 && isContinuation(text[start])) --start;
  return text.substr(start);
}

}  // namespace

UTF8Step firstUTF8Step(std::string_view text) {
  const auto byteAt = [text](std::size_t index) { return static_cast<std::uint8_t>(text[index]); };
  const std::uint8_t first = byteAt(0);
  const Lead lead = leadOf(first);
  if (lead.length == 0) return illFormed(1);
  if (lead.length == 1) return {1, first, true};
  if (text.size() < 2 || byteAt(1) < lead.secondLow || byteAt(1) > lead.secondHigh) return illFormed(1);
  auto codePoint = static_cast<char32_t>(first & (0x7F >> lead.length));
  codePoint = (codePoint << 6) | (byteAt(1) & 0x3F);
  for (std::size_t index = 2; index < lead.length; ++index) {
    if (index >= text.size() || !isContinuation(text[index])) return illFormed(index);
    codePoint = (codePoint << 6) | (byteAt(index) & 0x3F);
  }
  return {lead.length, codePoint, true};
}

bool isValidUTF8(std::string_view text) {
  while (!text.empty()) {
    const UTF8Step step = firstUTF8Step(text);
    if (!step.isValid) return false;
    text.remove_prefix(step.length);
  }
  return true;
}

std::string repairedUTF8(std::string_view text) {
  std::string repaired;
  repaired.reserve(text.size());
  while (!text.empty()) {
    const UTF8Step step = firstUTF8Step(text);
    repaired += step.isValid ? text.substr(0, step.length) : replacementCharacter;
    text.remove_prefix(step.length);
  }
  return repaired;
}

void appendUTF8(std::string& text, char32_t codePoint) {
  const auto continuation = [codePoint](int shift) {
    return static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
  };
  if (codePoint < 0x80) {
    text += static_cast<char>(codePoint);
  } else if (codePoint < 0x800) {
    text += static_cast<char>(0xC0 | (codePoint >> 6));
    text += continuation(0);
  } else if (codePoint < 0x10000) {
    text += static_cast<char>(0xE0 | (codePoint >> 12));
    text += continuation(6);
    text += continuation(0);
  } else {
    text += static_cast<char>(0xF0 | (codePoint >> 18));
    text += continuation(12);
    text += continuation(6);
    text += continuation(0);
  }
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty()) {
    const UTF8Step step = firstUTF8Step(text);
    if (!step.isValid || !isWhitespaceOrNewline(step.codePoint)) break;
    text.remove_prefix(step.length);
  }
  while (!text.empty()) {
    const std::string_view last = lastCharacter(text);
    const UTF8Step step = firstUTF8Step(last);
    if (!step.isValid || step.length != last.size() || !isWhitespaceOrNewline(step.codePoint)) break;
    text.remove_suffix(last.size());
  }
  return text;
}

std::optional<std::string> trimmedText(std::string_view bytes) {
  if (!isValidUTF8(bytes)) return std::nullopt;
  return std::string{trimmed(bytes)};
}

}  // namespace quellin
