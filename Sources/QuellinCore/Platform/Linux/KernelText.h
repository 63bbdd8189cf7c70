#pragma once

#include <charconv>
#include <concepts>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quellin {

/// `text` without the ASCII white space and line breaks at its ends, the only ones that the kernel writes.
[[nodiscard]] std::string_view withoutSpaceAtEnds(std::string_view text);

/// The decimal number that is the whole of `text`; no value for anything else, or when it does not fit.
template <std::integral Integer>
[[nodiscard]] std::optional<Integer> parseNumber(std::string_view text) {
  Integer value{};
  const char* const begin = text.data();
  const char* const end = begin + text.size();
  const auto [rest, error] = std::from_chars(begin, end, value);
  if (error != std::errc{} || rest != end) return std::nullopt;
  return value;
}

/// The signed decimal integer that is the whole of `text`.
[[nodiscard]] std::optional<std::int64_t> parseInteger(std::string_view text);

/// The number between `prefix` and `suffix` when `name` is made of just these three: "temp12_input" holds 12.
[[nodiscard]] std::optional<int> numberWithin(std::string_view name, std::string_view prefix,
                                              std::string_view suffix);

/// Whether `left` comes first when runs of digits count as numbers: "hwmon2" before "hwmon10".
[[nodiscard]] bool naturallyLess(std::string_view left, std::string_view right);

}  // namespace quellin
