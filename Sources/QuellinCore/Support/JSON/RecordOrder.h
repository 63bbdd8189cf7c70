#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <tuple>
#include <utility>

#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// The number of fields of a record.
template <Record T>
inline constexpr std::size_t fieldCount = std::tuple_size_v<decltype(T::fields())>;

/// The field names of a record in declaration order.
template <Record T>
inline constexpr std::array<std::string_view, fieldCount<T>> fieldNames = std::apply(
    [](const auto&... field) { return std::array<std::string_view, fieldCount<T>>{field.name...}; },
    T::fields());

/// The positions (in declaration order) of a record's fields, ordered by the bytes of their names.
template <Record T>
inline constexpr std::array<std::size_t, fieldCount<T>> fieldsByName = [] {
  std::array<std::size_t, fieldCount<T>> order{};
  for (std::size_t index = 0; index < order.size(); ++index) order[index] = index;
  std::ranges::sort(
      order, [](std::size_t left, std::size_t right) { return fieldNames<T>[left] < fieldNames<T>[right]; });
  return order;
}();

}  // namespace quellin
