#include <gmock/gmock.h>

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

std::string textWith(double averageWatts) {
  SessionReport report;
  report.summary.averageWatts = averageWatts;
  report.summary.minWatts = 12;
  report.summary.maxWatts = 14;
  return sessionText(report, Terminal{});
}

TEST(SessionTextTest, AnAverageBelowEveryReadingSaysWhatItIsOf) {
  EXPECT_THAT(textWith(11), testing::HasSubstr("11.00 W, over the whole time, also where no readings are\n"));
  EXPECT_THAT(textWith(13), testing::HasSubstr("13.00 W\n"));
}

}  // namespace
}  // namespace quellin::cli
