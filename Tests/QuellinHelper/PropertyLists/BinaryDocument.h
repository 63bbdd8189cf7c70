#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quellin::testing_support {

/// The lowest `size` bytes of `value`, the highest first.
inline std::string bigEndianBytes(std::uint64_t value, int size) {
  std::string bytes;
  for (; size > 0; --size, value >>= 8) bytes.insert(bytes.begin(), static_cast<char>(value & 0xFF));
  return bytes;
}

/// A binary property list put together by hand; every field of the trailer can be made wrong.
struct BinaryDocument {
  std::vector<std::string> objects;
  int offsetSize = 2;
  int referenceSize = 1;
  std::uint64_t topObject = 0;
  std::optional<std::uint64_t> objectCount = std::nullopt;
  std::optional<std::uint64_t> tableOffset = std::nullopt;
  std::string magic = "bplist00";

  [[nodiscard]] std::string bytes() const {
    std::string result = magic;
    std::string table;
    for (const std::string& object : objects) {
      table += bigEndianBytes(result.size(), offsetSize);
      result += object;
    }
    const std::uint64_t offset = result.size();
    return result + table + std::string(6, '\0') + bigEndianBytes(static_cast<std::uint64_t>(offsetSize), 1) +
           bigEndianBytes(static_cast<std::uint64_t>(referenceSize), 1) +
           bigEndianBytes(objectCount.value_or(objects.size()), 8) + bigEndianBytes(topObject, 8) +
           bigEndianBytes(tableOffset.value_or(offset), 8);
  }
};

}  // namespace quellin::testing_support
