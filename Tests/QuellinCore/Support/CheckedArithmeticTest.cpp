#include <limits>

#include <gtest/gtest.h>

#include "QuellinCore/Support/CheckedArithmetic.h"
#include "Support/Deaths.h"

namespace quellin {
namespace {

using testing_support::endedByTrap;

constexpr auto largest = std::numeric_limits<std::int64_t>::max();
constexpr auto smallest = std::numeric_limits<std::int64_t>::min();
constexpr auto largestUnsigned = std::numeric_limits<std::uint64_t>::max();

TEST(CheckedArithmeticTest, CalculatesUpToTheLimits) {
  EXPECT_EQ(checkedAdd(largest - 1, 1), largest);
  EXPECT_EQ(checkedSub(smallest + 1, 1), smallest);
  EXPECT_EQ(checkedMul(std::int64_t{1} << 31, std::int64_t{1} << 31), std::int64_t{1} << 62);
  EXPECT_EQ(checkedAdd<std::uint64_t>(largestUnsigned, 0), largestUnsigned);
  EXPECT_EQ(checkedCast<std::uint64_t>(largest), 0x7FFF'FFFF'FFFF'FFFFU);
  EXPECT_EQ(checkedCast<std::int32_t>(std::int64_t{-2147483648}), std::numeric_limits<std::int32_t>::min());
}

TEST(CheckedArithmeticDeathTest, EndsTheProcessOnOverflow) {
  EXPECT_EXIT(static_cast<void>(checkedAdd(largest, 1)), endedByTrap, "");
  EXPECT_EXIT(static_cast<void>(checkedAdd<std::uint64_t>(largestUnsigned, 1)), endedByTrap, "");
  EXPECT_EXIT(static_cast<void>(checkedSub(smallest, 1)), endedByTrap, "");
  EXPECT_EXIT(static_cast<void>(checkedSub<std::uint64_t>(1, 2)), endedByTrap, "");
  EXPECT_EXIT(static_cast<void>(checkedMul(largest, 2)), endedByTrap, "");
  EXPECT_EXIT(static_cast<void>(checkedMul(smallest, -1)), endedByTrap, "");
}

TEST(CheckedArithmeticDeathTest, EndsTheProcessWhereACastWouldChangeTheValue) {
  EXPECT_EXIT(static_cast<void>(checkedCast<std::int64_t>(largestUnsigned)), endedByTrap, "");
  EXPECT_EXIT(static_cast<void>(checkedCast<std::uint64_t>(std::int64_t{-1})), endedByTrap, "");
  EXPECT_EXIT(static_cast<void>(checkedCast<std::int32_t>(std::int64_t{2147483648})), endedByTrap, "");
}

TEST(CheckedArithmeticTest, RoundsHalvesAwayFromZero) {
  EXPECT_EQ(roundedToInt64(0.5), 1);
  EXPECT_EQ(roundedToInt64(-0.5), -1);
  EXPECT_EQ(roundedToInt64(2.5), 3);
  EXPECT_EQ(roundedToInt64(-2.5), -3);
  EXPECT_EQ(roundedToInt64(0.49999999999999994), 0);
  EXPECT_EQ(roundedToInt64(-0x1p63), smallest);
  EXPECT_EQ(roundedToInt64(0x1p63 - 1024), largest - 1023);
}

TEST(CheckedArithmeticTest, KnowsWhatRoundsToAnInteger) {
  for (const double value : {0.0, -0x1p63, -0x1p63 - 0.4, 0x1p63 - 1024}) EXPECT_TRUE(roundsToInt64(value));
  for (const double value : {0x1p63, -0x1p63 - 2048, std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_FALSE(roundsToInt64(value)) << value;
  }
}

TEST(CheckedArithmeticDeathTest, EndsTheProcessWhereRoundingHasNoResult) {
  EXPECT_EXIT(static_cast<void>(roundedToInt64(0x1p63)), endedByTrap, "");
  EXPECT_EXIT(static_cast<void>(roundedToInt64(-0x1p63 - 2048)), endedByTrap, "");
  EXPECT_EXIT(static_cast<void>(roundedToInt64(std::numeric_limits<double>::infinity())), endedByTrap, "");
  EXPECT_EXIT(static_cast<void>(roundedToInt64(std::numeric_limits<double>::quiet_NaN())), endedByTrap, "");
}

}  // namespace
}  // namespace quellin
