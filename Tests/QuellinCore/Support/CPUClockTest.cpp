#include <gtest/gtest.h>

#include "QuellinCore/Support/CPUClock.h"

namespace quellin {
namespace {

TEST(SystemCPUClockTest, MovesOnWhileTheProcessWorks) {
  const CPUClock& clock = systemCPUClock();
  const Seconds first = clock.now();
  EXPECT_GT(first, Seconds{0});
  while (clock.now() == first) continue;
  EXPECT_GT(clock.now(), first);
}

}  // namespace
}  // namespace quellin
