#pragma once

#include <charconv>
#include <concepts>
#include <optional>
#include <string_view>

namespace quellin {

/// The number that is the whole of `text`, in digits of `base` without a prefix; no value for anything else,
/// or when it does not fit. Only a signed number may have a sign, and only a minus.
template <std::integral Integer>
[[nodiscard]] std::optional<Integer> parseNumber(std::string_view text, int base = 10) {
  Integer value{};
  const char* const begin = text.data();
  const char* const end = begin + text.size();
  const auto [rest, error] = std::from_chars(begin, end, value, base);
  if (error != std::errc{} || rest != end) return std::nullopt;
  return value;
}

}  // namespace quellin
