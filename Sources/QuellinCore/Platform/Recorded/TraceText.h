#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "QuellinCore/Support/RawValue.h"

// How a trace spells what JSON has no form for.
namespace quellin {

/// A floating-point value that is no number.
enum class NonFinite { notANumber, infinity, negativeInfinity };

template <>
inline constexpr std::array rawValues<NonFinite>{std::string_view{"nan"}, std::string_view{"infinity"},
                                                 std::string_view{"-infinity"}};

/// What kind of no number `value` is; no value for a finite one.
[[nodiscard]] std::optional<NonFinite> nonFiniteKind(double value);
[[nodiscard]] double nonFiniteValue(NonFinite kind);  ///< the inverse; a NaN is the quiet one

/// Two lower-case hexadecimal digits for each byte.
[[nodiscard]] std::string hexText(std::span<const std::uint8_t> bytes);

/// The bytes that `text` spells, in either case; no value for anything but pairs of hexadecimal digits.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> bytesOfHexText(std::string_view text);

/// A four-character code as its characters where all are printable ASCII, else as "0x" and eight digits.
[[nodiscard]] std::string codeText(std::uint32_t code);

/// The code that `codeText` spelled so; no value for any other text.
[[nodiscard]] std::optional<std::uint32_t> codeOfText(std::string_view text);

}  // namespace quellin
