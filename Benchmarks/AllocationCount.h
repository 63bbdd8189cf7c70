#pragma once

#include <cstddef>

namespace quellin::benchmarks {

/// How many times this process has asked for memory so far, on all threads.
[[nodiscard]] std::size_t allocationCount();

}  // namespace quellin::benchmarks
