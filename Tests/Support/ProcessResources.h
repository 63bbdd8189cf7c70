#pragma once

#include <cstddef>
#include <cstdint>

namespace quellin::testing_support {

/// Bytes of the heap that are in use, not counting what the allocator keeps in reserve. On Linux only those
/// that this thread's arena, the main one, has given out: for tests that do everything on one thread.
[[nodiscard]] std::int64_t heapBytesInUse();

/// The most memory that this process has had resident so far, in bytes.
[[nodiscard]] std::int64_t peakResidentBytes();

/// How many file descriptors this process has open.
[[nodiscard]] std::size_t openDescriptors();

}  // namespace quellin::testing_support
