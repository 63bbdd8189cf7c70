#pragma once

#include <cmath>
#include <concepts>
#include <cstdint>
#include <type_traits>
#include <utility>

namespace quellin {

/// Ends the process at once, without unwinding and without running exit handlers: a counter that has
/// overflowed must never become a plausible figure.
[[noreturn]] inline void endOnOverflow() { __builtin_trap(); }

/// `left + right`; ends the process when the sum does not fit.
template <std::integral Integer>
[[nodiscard]] constexpr Integer checkedAdd(Integer left, std::type_identity_t<Integer> right) {
  Integer result{};
  if (__builtin_add_overflow(left, right, &result)) endOnOverflow();
  return result;
}

/// `left - right`; ends the process when the difference does not fit.
template <std::integral Integer>
[[nodiscard]] constexpr Integer checkedSub(Integer left, std::type_identity_t<Integer> right) {
  Integer result{};
  if (__builtin_sub_overflow(left, right, &result)) endOnOverflow();
  return result;
}

/// `left * right`; ends the process when the product does not fit.
template <std::integral Integer>
[[nodiscard]] constexpr Integer checkedMul(Integer left, std::type_identity_t<Integer> right) {
  Integer result{};
  if (__builtin_mul_overflow(left, right, &result)) endOnOverflow();
  return result;
}

/// `from` as a `To`; ends the process when `To` cannot hold that value.
template <std::integral To, std::integral From>
[[nodiscard]] constexpr To checkedCast(From from) {
  if (!std::in_range<To>(from)) endOnOverflow();
  return static_cast<To>(from);
}

/// Whether `value`, rounded to the nearest integer, lies in the signed 64-bit range; false for NaN.
[[nodiscard]] inline bool roundsToInt64(double value) {
  const double rounded = std::round(value);
  // -2^63 and 2^63 are exact doubles.
  return rounded >= -0x1p63 && rounded < 0x1p63;
}

/// `value` rounded to the nearest integer, halves away from zero; ends the process unless
/// `roundsToInt64(value)`.
[[nodiscard]] inline std::int64_t roundedToInt64(double value) {
  if (!roundsToInt64(value)) endOnOverflow();
  return static_cast<std::int64_t>(std::round(value));
}

}  // namespace quellin
