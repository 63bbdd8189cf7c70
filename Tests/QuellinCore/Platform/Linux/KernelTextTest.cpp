#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "QuellinCore/Platform/Linux/KernelText.h"

namespace quellin {
namespace {

TEST(KernelTextTest, SpaceAtTheEndsIsDroppedAndSpaceWithinIsKept) {
  EXPECT_EQ(withoutSpaceAtEnds(" Not charging\n"), "Not charging");
  EXPECT_EQ(withoutSpaceAtEnds("\t\n  "), "");
  EXPECT_EQ(withoutSpaceAtEnds(""), "");
}

TEST(KernelTextTest, NumbersAreFoundBetweenPrefixAndSuffix) {
  EXPECT_EQ(numberWithin("temp12_input", "temp", "_input"), 12);
  EXPECT_EQ(numberWithin("cooling_device0", "cooling_device", ""), 0);
  EXPECT_EQ(numberWithin("temp_input", "temp", "_input"), std::nullopt);
  EXPECT_EQ(numberWithin("temp1_label", "temp", "_input"), std::nullopt);
  EXPECT_EQ(numberWithin("temp-1_input", "temp", "_input"), std::nullopt);
  EXPECT_EQ(numberWithin("temp99999999999_input", "temp", "_input"), std::nullopt);
  EXPECT_EQ(numberWithin("abab", "aba", "bab"), std::nullopt) << "prefix and suffix may not overlap";
}

TEST(KernelTextTest, RunsOfDigitsSortAsNumbers) {
  std::vector<std::string> names = {"hwmon10", "BAT1", "hwmon2", "hwmon", "BAT0", "hwmon02x", "hwmon9"};
  std::ranges::sort(names, naturallyLess);
  EXPECT_EQ(names,
            (std::vector<std::string>{"BAT0", "BAT1", "hwmon", "hwmon2", "hwmon02x", "hwmon9", "hwmon10"}));
  EXPECT_FALSE(naturallyLess("temp1", "temp1"));
}

}  // namespace
}  // namespace quellin
