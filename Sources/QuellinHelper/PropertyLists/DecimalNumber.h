#pragma once

#include <optional>
#include <string_view>

namespace quellin {

/// The value of a decimal number that takes up the whole of `text`: an optional sign, digits with at most one
/// point and at least one digit, and an optional exponent ("e" or "E", an optional sign, digits). No white
/// space, no hexadecimal form, no words such as "inf". The nearest double is returned; too large a number
/// gives an infinity. Independent of the locale as long as the program does not change the C library's
/// numeric locale.
[[nodiscard]] std::optional<double> parseDecimal(std::string_view text);

}  // namespace quellin
