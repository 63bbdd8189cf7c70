#include <cstdint>
#include <ctime>
#include <optional>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

#include "QuellinCore/Platform/Linux/ProcessClock.h"

namespace quellin {
namespace {

constexpr std::int32_t beyondEveryPID = 4194304 + 1;

std::uint64_t ownProcessTime() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000'000 + static_cast<std::uint64_t>(time.tv_nsec);
}

TEST(ProcessClockTest, TheClockCountsThreadsThatHaveEnded) {
  constexpr std::uint64_t work = 5'000'000;
  const auto before = systemProcessClock(getpid());
  const std::uint64_t start = ownProcessTime();
  std::thread{[&] {
    while (ownProcessTime() - start < work) continue;
  }}.join();
  const auto after = systemProcessClock(getpid());
  ASSERT_TRUE(before && after);
  EXPECT_GE(*after - *before, work);
  EXPECT_LE(*after, ownProcessTime());
}

TEST(ProcessClockTest, AProcessThatDoesNotExistHasNoClock) {
  EXPECT_EQ(systemProcessClock(beyondEveryPID), std::nullopt);
}

TEST(ProcessClockTest, TheKernelCountsTicks) { EXPECT_GE(systemTicksPerSecond(), 1); }

}  // namespace
}  // namespace quellin
