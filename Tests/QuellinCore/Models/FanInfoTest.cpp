#include <gtest/gtest.h>

#include "QuellinCore/Models/FanInfo.h"

namespace quellin {
namespace {

TEST(FanInfoTest, ComparesEveryField) {
  const FanInfo fan{.id = 1, .name = "Fan 1", .currentRPM = 2000, .minRPM = 1200, .maxRPM = 6000};
  const auto differs = [&](auto FanInfo::* member, auto value) {
    FanInfo other = fan;
    other.*member = value;
    return other != fan;
  };
  EXPECT_EQ(fan, FanInfo{fan});
  EXPECT_TRUE(differs(&FanInfo::id, 2));
  EXPECT_TRUE(differs(&FanInfo::name, "Fan 2"));
  EXPECT_TRUE(differs(&FanInfo::currentRPM, 2001));
  EXPECT_TRUE(differs(&FanInfo::minRPM, 1201));
  EXPECT_TRUE(differs(&FanInfo::maxRPM, 6001));
}

}  // namespace
}  // namespace quellin
