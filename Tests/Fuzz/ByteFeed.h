#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>

namespace quellin::fuzzing {

/// Hands out an input piece by piece. One that has run out gives zeros and empty pieces.
class ByteFeed {
 public:
  ByteFeed(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

  [[nodiscard]] bool isEmpty() const { return rest_.empty(); }

  /// The next `sizeof(T)` bytes as a number.
  template <class T>
    requires std::is_arithmetic_v<T>
  [[nodiscard]] T take() {
    const auto bytes = takeBytes(sizeof(T));
    T value{};
    if (!bytes.empty()) std::memcpy(&value, bytes.data(), bytes.size());
    return value;
  }

  /// A number below `count`, of one byte.
  [[nodiscard]] std::size_t takeIndex(std::size_t count) { return take<std::uint8_t>() % count; }

  /// One of the given values, by one byte.
  template <class T, std::size_t count>
  [[nodiscard]] const T& takeOneOf(const T (&values)[count]) {
    return values[takeIndex(count)];
  }

  /// The next `count` bytes, fewer where the input ends.
  [[nodiscard]] std::span<const std::uint8_t> takeBytes(std::size_t count) {
    const auto bytes = rest_.first(std::min(count, rest_.size()));
    rest_ = rest_.subspan(bytes.size());
    return bytes;
  }

  /// The bytes up to the next NUL, which is dropped.
  [[nodiscard]] std::string_view takeLine() {
    const auto end = std::ranges::find(rest_, std::uint8_t{0});
    const auto bytes = takeBytes(static_cast<std::size_t>(end - rest_.begin()));
    static_cast<void>(takeBytes(1));
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
  }

 private:
  std::span<const std::uint8_t> rest_;
};

}  // namespace quellin::fuzzing
