#pragma once

#include <cstdint>

namespace quellin::testing_support {

/// What this process asks of `operator new` while the span lives, on all threads. One span at a time: a span
/// that is begun resets what the one before it would still have been told. What a C library allocates by
/// itself is not seen.
class AllocationSpan {
 public:
  AllocationSpan();

  /// How many times memory was asked for.
  [[nodiscard]] std::int64_t requests() const;
  /// The most bytes in use at any moment, beyond those at the beginning.
  [[nodiscard]] std::int64_t mostHeld() const;

 private:
  std::int64_t requestsBefore_;
  std::int64_t heldBefore_;
};

}  // namespace quellin::testing_support
