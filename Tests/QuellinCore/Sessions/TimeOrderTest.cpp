#include <algorithm>
#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Sessions/TimeOrder.h"

namespace quellin {
namespace {

TEST(TimeOrderTest, OrdersByTimeAndPutsWhatIsNoTimeLast) {
  const Instant none = instantAt(std::numeric_limits<double>::quiet_NaN());
  std::vector<Instant> instants{instantAt(3), none, instantAt(-1), none, instantAt(2)};
  std::ranges::sort(instants, IsEarlier{});
  EXPECT_EQ(instants[0], instantAt(-1));
  EXPECT_EQ(instants[1], instantAt(2));
  EXPECT_EQ(instants[2], instantAt(3));
  EXPECT_TRUE(std::isnan(instants[3].time_since_epoch().count()));
}

TEST(TimeOrderTest, EqualTimesAreInNoOrder) {
  EXPECT_TRUE(IsEarlier{}(instantAt(1), instantAt(2)));
  EXPECT_FALSE(IsEarlier{}(instantAt(2), instantAt(2)));
}

}  // namespace
}  // namespace quellin
