#include <gtest/gtest.h>

#include "quellin/Presentation/SessionText.h"

namespace quellin::cli {
namespace {

std::string textOf(std::int64_t samples, std::int64_t pressure) {
  PowerSessionSummary summary;
  summary.sampleCount = samples;
  summary.maxThermalPressure = pressure;
  return thermalPressureText(summary);
}

TEST(SessionTextTest, AThermalPressureAboveNothingIsOneThatTheSystemTold) {
  EXPECT_EQ(textOf(216, 2), "at most 2 of 4");
}

TEST(SessionTextTest, NoThermalPressureMayBeOneThatNobodyTold) {
  EXPECT_EQ(textOf(216, 0), "0 of 4, or not told by the system");
}

TEST(SessionTextTest, WithoutSamplesTheThermalPressureIsUnknown) { EXPECT_EQ(textOf(0, 0), "unknown"); }

}  // namespace
}  // namespace quellin::cli
