#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>

namespace quellin {

/// The raw strings of a closed vocabulary, in the order of its enumerators, which count from 0. Specialise as
/// `template <> inline constexpr std::array rawValues<ThermalState>{"nominal"sv, "fair"sv};`
template <class Enum>
inline constexpr std::array<std::string_view, 0> rawValues{};

/// An enumeration that is stored and encoded as its raw string.
template <class T>
concept RawEnum = std::is_enum_v<T> && (rawValues<T>.size() > 0);

/// The raw string of an enumerator.
template <RawEnum Enum>
[[nodiscard]] constexpr std::string_view rawValue(Enum value) {
  return rawValues<Enum>.at(static_cast<std::size_t>(value));
}

/// The enumerator whose raw string equals `text` exactly (case-sensitive); no value for any other text.
template <RawEnum Enum>
[[nodiscard]] constexpr std::optional<Enum> fromRawValue(std::string_view text) {
  for (std::size_t index = 0; index < rawValues<Enum>.size(); ++index) {
    if (rawValues<Enum>[index] == text) return static_cast<Enum>(index);
  }
  return std::nullopt;
}

}  // namespace quellin
