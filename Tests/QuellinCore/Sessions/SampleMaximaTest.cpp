#include <gtest/gtest.h>

#include "QuellinCore/Sessions/SampleMaxima.h"
#include "Support/SampleStates.h"

namespace quellin {
namespace {

TEST(SampleMaximaTest, TakesTheHottestSensorAndTheFastestFan) {
  EXPECT_EQ(maxima(testing_support::stateOnBattery(instantAt(0))), (SampleMaxima{2, 1300, 51.25}));
}

TEST(SampleMaximaTest, WithoutFansAndSensorsThereIsNeither) {
  EXPECT_EQ(maxima(testing_support::emptyState(instantAt(0))), (SampleMaxima{0, std::nullopt, std::nullopt}));
}

TEST(SampleMaximaTest, OfAStoredSampleTheColumnsCount) {
  SampleColumns columns;
  columns.thermalPressure = 3;
  columns.maxTemperature = -4;
  EXPECT_EQ(maxima(columns), (SampleMaxima{3, std::nullopt, -4}));
}

}  // namespace
}  // namespace quellin
