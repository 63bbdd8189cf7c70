#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quellin {

/// One step through text that should be UTF-8.
struct UTF8Step {
  std::size_t length = 0;  ///< bytes to move on by, at least 1
  char32_t codePoint = 0;  ///< the scalar value, U+FFFD when `isValid` is false
  bool isValid = false;  ///< false when the bytes are the longest beginning of a character that is cut short
};

/// The character, or the maximal ill-formed part, at the start of `text`, which must not be empty.
[[nodiscard]] UTF8Step firstUTF8Step(std::string_view text);

/// True when `text` is well-formed UTF-8.
[[nodiscard]] bool isValidUTF8(std::string_view text);

/// `text` with every maximal ill-formed part replaced by U+FFFD; valid text comes back unchanged.
[[nodiscard]] std::string repairedUTF8(std::string_view text);

/// Appends the UTF-8 form of a Unicode scalar value to `text`.
void appendUTF8(std::string& text, char32_t codePoint);

/// `text` without the white space and line breaks at both ends: Unicode separators, tab, line feed to
/// carriage return, U+0085 and the zero-width space, as the platform's set of white space and newlines has
/// them. The result points into `text`.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// `bytes` as text, trimmed as by `trimmed`; absent when they are not valid UTF-8.
[[nodiscard]] std::optional<std::string> trimmedText(std::string_view bytes);

}  // namespace quellin
