#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Sessions/Analysis/SeriesColumn.h"

namespace quellin {
namespace {

template <class Value>
SeriesColumn<Value> columnOf(const std::vector<std::optional<Value>>& values) {
  SeriesColumn<Value> column;
  for (std::size_t index = 0; index < values.size(); ++index) {
    column.add(static_cast<std::int64_t>(index), values[index]);
  }
  return column;
}

TEST(SeriesColumnTest, AColumnWithoutSamplesIsEmpty) {
  EXPECT_EQ(columnOf<double>({}), (SeriesColumn<double>{}));
}

TEST(SeriesColumnTest, ValuesStandInOrderAndZeroIsOne) {
  EXPECT_EQ(columnOf<std::int64_t>({3, 0, -1}), (SeriesColumn<std::int64_t>{{3, 0, -1}, {}}));
}

TEST(SeriesColumnTest, AbsentOnesInARowAreOneRun) {
  EXPECT_EQ(columnOf<double>({{}, 1, {}, {}, 2, {}}),
            (SeriesColumn<double>{{1, 2}, {{0, 1}, {2, 2}, {5, 1}}}));
  EXPECT_EQ(columnOf<double>({{}, {}, {}}), (SeriesColumn<double>{{}, {{0, 3}}}));
}

TEST(SeriesColumnTest, WhatIsNotFiniteIsAbsent) {
  using Limits = std::numeric_limits<double>;
  EXPECT_EQ(columnOf<double>({1, Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), 2}),
            (SeriesColumn<double>{{1, 2}, {{1, 3}}}));
}

}  // namespace
}  // namespace quellin
