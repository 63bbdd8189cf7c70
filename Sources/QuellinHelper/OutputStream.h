#pragma once

#include <string_view>

namespace quellin {

/// Writes all of `bytes` to `descriptor`, continuing after interruptions and partial writes. Returns whether
/// the system took every byte. The process must ignore SIGPIPE, or a pipe without a reader ends it.
[[nodiscard]] bool writeAll(int descriptor, std::string_view bytes);

}  // namespace quellin
