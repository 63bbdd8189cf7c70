#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace quellin {

/// The lower-case form of an ASCII letter; every other byte unchanged.
[[nodiscard]] constexpr char lowercased(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// `text` with its ASCII letters in lower case. Letters outside ASCII keep their case, whatever the locale.
[[nodiscard]] inline std::string lowercased(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), [](char letter) { return lowercased(letter); });
  return result;
}

/// Whether two texts differ in nothing but the case of ASCII letters.
[[nodiscard]] constexpr bool equalIgnoringCase(std::string_view left, std::string_view right) {
  return std::ranges::equal(left, right, [](char a, char b) { return lowercased(a) == lowercased(b); });
}

}  // namespace quellin
