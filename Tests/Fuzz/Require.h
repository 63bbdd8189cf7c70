#pragma once

namespace quellin::fuzzing {

/// Ends the process, so that the input is kept, unless what must hold for any input does.
inline void require(bool holds) {
  if (!holds) __builtin_trap();
}

}  // namespace quellin::fuzzing
