#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// How the System Management Controller names its keys and encodes their values. Pure functions, safe from
/// any thread; every one accepts any input, and bytes beyond those a type needs are ignored.
namespace quellin::SMCDecoding {

/// The first four bytes of `text` as one number, the first in the most significant place. A shorter text
/// leaves the low bytes zero.
[[nodiscard]] std::uint32_t fourCharCode(std::string_view text);

/// The four bytes of a four-character code, most significant first.
[[nodiscard]] std::array<std::uint8_t, 4> fourCharBytes(std::uint32_t code);

/// The text of a four-character code, most significant byte first, read as Mac OS Roman and returned as
/// UTF-8.
[[nodiscard]] std::string dataTypeString(std::uint32_t code);

/// Degrees Celsius of a value of type "flt" (four bytes, little-endian single precision) or of any type that
/// begins "sp" (two bytes, big-endian and signed, with 8 fraction bits whatever the type's name says).
/// Nothing for any other type or for too few bytes.
[[nodiscard]] std::optional<double> decodeTemperature(std::uint32_t dataType,
                                                      std::span<const std::uint8_t> bytes);

/// Revolutions per minute of a value of type "flt" (rounded, halves away from zero) or "fpe2" (two bytes,
/// big-endian, the 2 fraction bits dropped). Nothing for any other type or for too few bytes. A "flt" that is
/// not finite or does not fit ends the process.
[[nodiscard]] std::optional<std::int64_t> decodeFanRPM(std::uint32_t dataType,
                                                       std::span<const std::uint8_t> bytes);

/// False for the values on which `decodeFanRPM` ends the process.
[[nodiscard]] bool canDecodeFanRPM(std::uint32_t dataType, std::span<const std::uint8_t> bytes);

}  // namespace quellin::SMCDecoding
