#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

namespace quellin {

/// Memory for the nodes of one property list: handed out piece by piece, given back all at once, so that
/// freeing a tree costs the same whatever its shape. Addresses stay valid while the arena lives and when it
/// is moved.
class PropertyListArena {
 public:
  /// `count` value-initialised objects. Their destructors never run.
  template <class T>
  [[nodiscard]] std::span<T> allocate(std::size_t count) {
    static_assert(std::is_trivially_destructible_v<T> && alignof(T) <= alignment);
    if (count == 0) return {};
    void* memory = allocateBytes(count * sizeof(T));
    T* first = static_cast<T*>(memory);
    std::uninitialized_value_construct_n(first, count);
    return {std::launder(first), count};
  }

  /// A copy of `text` that lives as long as the arena.
  [[nodiscard]] std::string_view copy(std::string_view text);

  /// The bytes taken from the system so far.
  [[nodiscard]] std::size_t capacity() const { return capacity_; }

 private:
  static constexpr std::size_t alignment = alignof(std::uint64_t);
  static constexpr std::size_t firstBlock = 1024;
  static constexpr std::size_t largestBlock = std::size_t{16} * 1024;

  [[nodiscard]] std::byte* allocateBytes(std::size_t size);
  [[nodiscard]] std::byte* addBlock(std::size_t size);

  std::vector<std::vector<std::byte>> blocks_;
  std::span<std::byte> free_;
  std::size_t nextBlock_ = firstBlock;
  std::size_t capacity_ = 0;
};

}  // namespace quellin
