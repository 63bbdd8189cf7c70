#pragma once

#include <functional>

#include "quellin/Measuring/Loop.h"

namespace quellin::testing_support {

/// Runs the loop until what `begin` begins is over; `begin` is given what is to be called then.
inline void runToItsEnd(cli::Loop& loop, const std::function<void(std::function<void()> done)>& begin) {
  begin([&loop] { loop.executor()->post([&loop] { loop.stop(); }); });
  loop.runAgain();
}

}  // namespace quellin::testing_support
