#include <limits>

#include "FakeDarwin/DarwinTest.h"
#include "QuellinCore/Platform/Darwin/AbsoluteTime.h"
#include "Support/Deaths.h"

namespace quellin::darwin {
namespace {

using testing_support::endedByTrap;

class AbsoluteTimeTest : public fake::DarwinTest {};

TEST_F(AbsoluteTimeTest, TurnsTicksIntoNanosecondsExactly) {
  const AbsoluteTimeScale scale{125, 3};
  EXPECT_EQ(scale.nanoseconds(0), 0U);
  EXPECT_EQ(scale.nanoseconds(1), 41U);
  EXPECT_EQ(scale.nanoseconds(3), 125U);
  EXPECT_EQ(scale.nanoseconds(24'000'000), 1'000'000'000U);
  // A year of ticks: the product passes 64 bits by far when the scale is 10^9 / 24·10^6.
  const AbsoluteTimeScale byFrequency{1'000'000'000, 24'000'000};
  constexpr std::uint64_t year = 365ULL * 86'400;
  EXPECT_EQ(byFrequency.nanoseconds(year * 24'000'000), year * 1'000'000'000);
  EXPECT_EQ(byFrequency.nanoseconds(3), 125U);
}

TEST_F(AbsoluteTimeTest, EndsTheProcessWhenTheResultDoesNotFit) {
  constexpr auto highest = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ((AbsoluteTimeScale{1, 1}.nanoseconds(highest)), highest);
  EXPECT_EXIT((void)(AbsoluteTimeScale{125, 3}.nanoseconds(highest)), endedByTrap, "");
}

struct Case {
  const char* what;
  std::optional<std::uint64_t> frequency;
  std::uint32_t numerator;
  std::uint32_t denominator;
  std::optional<std::uint64_t> nanosecondsOf3Ticks;
};

TEST_F(AbsoluteTimeTest, TakesTheFrequencyBeforeTheTimeBase) {
  const Case cases[] = {
      {"native", 24'000'000, 125, 3, 125},
      {"translated: the time base is a fiction", 24'000'000, 1, 1, 125},
      {"no frequency", std::nullopt, 125, 3, 125},
      {"a frequency of nothing", 0, 1, 1, 3},
      {"neither, without numerator", std::nullopt, 0, 3, std::nullopt},
      {"neither, without denominator", std::nullopt, 125, 0, std::nullopt},
  };
  for (const Case& each : cases) {
    system.processes.ticksPerSecond = each.frequency;
    system.processes.numerator = each.numerator;
    system.processes.denominator = each.denominator;
    const auto scale = AbsoluteTimeScale::ofThisMachine();
    ASSERT_EQ(scale.has_value(), each.nanosecondsOf3Ticks.has_value()) << each.what;
    if (scale) {
      EXPECT_EQ(scale->nanoseconds(3), *each.nanosecondsOf3Ticks) << each.what;
    }
  }
}

TEST_F(AbsoluteTimeTest, TakesNoFrequencyOfAnotherSize) {
  system.processes.frequencySize = 4;
  system.processes.numerator = 1;
  system.processes.denominator = 1;
  EXPECT_EQ(AbsoluteTimeScale::ofThisMachine()->nanoseconds(3), 3U);
}

TEST_F(AbsoluteTimeTest, FallsBackWhenACallFails) {
  system.calls.fail("sysctlbyname");
  EXPECT_EQ(AbsoluteTimeScale::ofThisMachine()->nanoseconds(3), 125U);
  system.calls.fail("mach_timebase_info");
  EXPECT_FALSE(AbsoluteTimeScale::ofThisMachine());
}

}  // namespace
}  // namespace quellin::darwin
