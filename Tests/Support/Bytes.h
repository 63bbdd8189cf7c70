#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace quellin::testing_support {

/// The bytes that pairs of hexadecimal digits spell.
[[nodiscard]] inline std::string bytesOfHex(std::string_view digits) {
  std::string bytes;
  for (std::size_t place = 0; place + 1 < digits.size(); place += 2) {
    bytes.push_back(static_cast<char>(std::stoi(std::string{digits.substr(place, 2)}, nullptr, 16)));
  }
  return bytes;
}

/// `bytes` as pairs of hexadecimal digits.
[[nodiscard]] inline std::string hexOfBytes(std::string_view bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const char byte : bytes) {
    text += digits[static_cast<unsigned char>(byte) >> 4U];
    text += digits[static_cast<unsigned char>(byte) & 0xFU];
  }
  return text;
}

/// The four bytes of `value`, the lowest first.
[[nodiscard]] inline std::vector<std::uint8_t> littleEndian(float value) {
  const auto bits = std::bit_cast<std::uint32_t>(value);
  std::vector<std::uint8_t> bytes;
  for (unsigned shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<std::uint8_t>(bits >> shift));
  return bytes;
}

/// `bytes` with one bit changed; bit 0 is the lowest of the first byte.
[[nodiscard]] inline std::string withFlippedBit(std::string bytes, std::size_t bit) {
  char& byte = bytes.at(bit / 8);
  byte = static_cast<char>(static_cast<unsigned char>(byte) ^ (1U << (bit % 8)));
  return bytes;
}

/// `text` so many times.
[[nodiscard]] inline std::string repeated(std::string_view text, std::size_t times) {
  std::string all;
  for (; times > 0; --times) all += text;
  return all;
}

/// `text` with the first `piece` in it replaced; throws when there is none.
[[nodiscard]] inline std::string withPiece(std::string text, std::string_view piece,
                                           std::string_view replacement) {
  const std::size_t place = text.find(piece);
  if (place == std::string::npos) throw std::invalid_argument("not in the text: " + std::string{piece});
  return text.replace(place, piece.size(), replacement);
}

}  // namespace quellin::testing_support
