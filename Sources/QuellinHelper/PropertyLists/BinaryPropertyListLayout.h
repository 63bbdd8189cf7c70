#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <optional>
#include <string_view>

namespace quellin::detail {

/// Big-endian bytes as an unsigned integer; of more than eight the last eight count.
[[nodiscard]] constexpr std::uint64_t bigEndian(std::string_view bytes) {
  std::uint64_t value = 0;
  for (const char byte : bytes) value = value << 8 | static_cast<unsigned char>(byte);
  return value;
}

/// The types of objects; those that are not here are refused.
enum ObjectType : std::uint8_t {
  simple = 0x0,
  integer = 0x1,
  real = 0x2,
  date = 0x3,
  data = 0x4,  ///< the first whose length may follow
  asciiString = 0x5,
  utf16String = 0x6,
  identifier = 0x8,
  array = 0xA,
  dictionary = 0xD
};

/// What the first byte of an object says: its type, and its length or count where it has one.
struct BinaryObject {
  std::uint8_t type = 0;     ///< the upper four bits of the marker
  std::uint64_t length = 0;  ///< the lower four bits, or the integer that follows where they are 15
  std::size_t contents = 0;  ///< the offset behind marker and length
};

/// The frame of a binary property list: where its objects lie. All answers are bounded by the input.
class BinaryPropertyListLayout {
 public:
  static constexpr std::string_view magic = "bplist00";

  /// The layout that the trailer describes. The error is its reason.
  [[nodiscard]] static std::expected<BinaryPropertyListLayout, std::string_view> read(std::string_view bytes);

  [[nodiscard]] std::uint64_t topObject() const { return topObject_; }
  [[nodiscard]] std::size_t objectCount() const { return objectCount_; }
  [[nodiscard]] std::size_t referenceSize() const { return referenceSize_; }

  /// The object of that number; no value when it lies outside the part of the input that holds objects.
  [[nodiscard]] std::optional<BinaryObject> object(std::uint64_t number) const;

  /// `count` pieces of `size` bytes from `offset` on, if the part of the input that holds objects has them.
  [[nodiscard]] std::optional<std::string_view> slice(std::size_t offset, std::uint64_t count,
                                                      std::size_t size = 1) const;

 private:
  std::string_view objects_;  // the magic and the objects, up to the offset table
  std::string_view offsetTable_;
  std::size_t offsetSize_ = 0;
  std::size_t referenceSize_ = 0;
  std::size_t objectCount_ = 0;
  std::uint64_t topObject_ = 0;
};

}  // namespace quellin::detail
