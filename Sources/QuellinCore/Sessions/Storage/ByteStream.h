#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quellin {

/// Signed numbers as unsigned ones that are small when the magnitude is: 0, -1, 1, -2, ...
[[nodiscard]] constexpr std::uint64_t zigzag(std::int64_t value) {
  return (static_cast<std::uint64_t>(value) << 1) ^ static_cast<std::uint64_t>(value >> 63);
}

/// The inverse of `zigzag`.
[[nodiscard]] constexpr std::int64_t unzigzag(std::uint64_t value) {
  return static_cast<std::int64_t>((value >> 1) ^ (~(value & 1) + 1));
}

/// Appends `value` in groups of seven bits, lowest first, the top bit of a byte saying that more follow.
inline void appendVarint(std::string& bytes, std::uint64_t value) {
  for (; value >= 0x80; value >>= 7) bytes.push_back(static_cast<char>((value & 0x7F) | 0x80));
  bytes.push_back(static_cast<char>(value));
}

/// Reads forward through bytes that may be cut short or nonsense.
class ByteReader {
 public:
  explicit ByteReader(std::string_view bytes) : bytes_(bytes) {}  ///< not copied; must outlive the reader

  [[nodiscard]] std::string_view rest() const { return bytes_; }  ///< what has not been read yet

  /// The next byte; no value at the end.
  [[nodiscard]] std::optional<std::uint8_t> byte() {
    if (bytes_.empty()) return std::nullopt;
    const auto value = static_cast<std::uint8_t>(bytes_.front());
    bytes_.remove_prefix(1);
    return value;
  }

  /// The next `count` bytes; no value when there are fewer.
  [[nodiscard]] std::optional<std::string_view> bytes(std::uint64_t count) {
    if (count > bytes_.size()) return std::nullopt;
    const std::string_view taken = bytes_.substr(0, static_cast<std::size_t>(count));
    bytes_.remove_prefix(taken.size());
    return taken;
  }

  /// The next number that `appendVarint` wrote; no value when it is cut short or exceeds 64 bits.
  [[nodiscard]] std::optional<std::uint64_t> varint() {
    std::uint64_t value = 0;
    for (unsigned shift = 0; shift < 64; shift += 7) {
      const auto next = byte();
      if (!next) return std::nullopt;
      const std::uint64_t group = *next & 0x7FU;
      if (shift == 63 && group > 1) return std::nullopt;
      value |= group << shift;
      if ((*next & 0x80U) == 0) return value;
    }
    return std::nullopt;
  }

 private:
  std::string_view bytes_;
};

}  // namespace quellin
