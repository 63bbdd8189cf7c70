#pragma once

#include <concepts>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace quellin::testing_support {

/// `text` as part of the name of a test, which knows letters, digits and underscores alone: signs of numbers
/// and points become words, blanks and the like underscores, all else the digits of its bytes.
[[nodiscard]] std::string caseName(std::string_view text);

/// The same for the shortest spelling of a number, which must be finite.
[[nodiscard]] std::string caseName(double number);

/// Names the cases of a suite for INSTANTIATE_TEST_SUITE_P, after the `part` of each that tells it from the
/// others: a text or number among its fields, or a function of the case.
template <class Part>
[[nodiscard]] auto namedBy(Part part) {
  return [part = std::move(part)](const auto& given) {
    const auto& value = std::invoke(part, given.param);
    if constexpr (std::convertible_to<decltype(value), std::string_view>)
      return caseName(std::string_view{value});
    else
      return caseName(static_cast<double>(value));
  };
}

}  // namespace quellin::testing_support
