#pragma once

#include <concepts>
#include <optional>
#include <string_view>
#include <tuple>

namespace quellin {

/// One field of a record: its name (also its JSON key) and the member that holds it.
template <class Owner, class Value>
struct Field {
  using ValueType = Value;  ///< `std::optional` where the field may be absent

  std::string_view name;  ///< also the JSON key
  Value Owner::* member;  ///< where a record holds it
};
/// So that a string literal and a member are enough to make one.
template <class Owner, class Value>
Field(const char*, Value Owner::*) -> Field<Owner, Value>;

/// A record describes itself once: a static `fields()` that returns a tuple of `Field`s in declaration order.
/// Encoder (declaration order or sorted), decoder and the documentation of formats are derived from it.
/// A `std::optional` member is a field that may be absent; every other member is required.
template <class T>
concept Record = requires {
  { T::fields() };
  { std::tuple_size<decltype(T::fields())>::value } -> std::convertible_to<std::size_t>;
};

namespace detail {

template <class T>
inline constexpr bool isOptional = false;
template <class T>
inline constexpr bool isOptional<std::optional<T>> = true;

}  // namespace detail

}  // namespace quellin
