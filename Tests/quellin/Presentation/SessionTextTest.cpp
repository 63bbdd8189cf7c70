#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/PowerSource.h"
#include "Support/CaseNames.h"
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

TEST(SessionTextTest, WhatRecordingCostIsUnknownUntilSomethingWasWritten) {
  EXPECT_EQ(recorderCostText(std::nullopt), "unknown");
  EXPECT_EQ(recorderCostText(RecorderCost{.cpuSeconds = 0.01, .bytesWritten = 0}), "unknown");
  EXPECT_EQ(recorderCostText(RecorderCost{.cpuSeconds = 0.01, .bytesWritten = 4096}),
            "0.01 s of CPU time, 4.1 kB written to the log");
}

struct CoverageCase {
  const char* name;
  SessionCoverage coverage;
  const char* text;
};

class CoverageTextTest : public testing::TestWithParam<CoverageCase> {};

TEST_P(CoverageTextTest, SaysHowMuchOfTheTimeHasReadingsOfPower) {
  EXPECT_EQ(coverageText(GetParam().coverage), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Coverages, CoverageTextTest,
    testing::Values(
        CoverageCase{"NoTime", {}, "unknown"},
        CoverageCase{"All", {60, 60, 0, std::nullopt}, "100.0 % of the time has readings of power"},
        CoverageCase{"WithGaps",
                     {60, 30, 2, 20.0},
                     "50.0 % of the time has readings of power, gaps: 2, the longest 20 s"},
        CoverageCase{"NothingAndNoListOfGaps", {5, 0, 1, 5.0}, "0.0 % of the time has readings of power"}),
    testing_support::namedBy(&CoverageCase::name));

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
  EXPECT_THAT(textWith(12 - 1e-12), testing::HasSubstr("12.00 W\n")) << "a difference of rounding";
}

// The line of extremes of a session with segments of these kinds, where one has readings unless it is
// "unavailable".
std::string extremesWith(const std::vector<std::string>& kinds) {
  SessionReport report;
  report.summary.averageWattsNote = PowerSessionSummary::mixedSourcesNote;
  report.summary.minWatts = 12;
  report.summary.maxWatts = 14;
  for (const std::string& kind : kinds) {
    PowerSessionPowerSegment segment;
    segment.sourceKind = kind;
    segment.sampleCount = 2;
    if (kind != unavailableReading) segment.wattSampleCount = 2;
    report.summary.powerSegments.push_back(segment);
  }
  const std::string text = sessionText(report, Terminal{});
  const std::size_t start = text.find("Lowest, highest");
  return text.substr(start, text.find('\n', start) - start);
}

TEST(SessionTextTest, OnlyExtremesOfDifferentQuantitiesAreNone) {
  const std::string draw{"batteryDischarge"};
  const std::string none{unavailableReading};
  EXPECT_EQ(extremesWith({draw, "ioReportSiliconPower"}), "Lowest, highest   unknown");
  EXPECT_EQ(extremesWith({draw, none, draw}), "Lowest, highest   12.00 W, 14.00 W");
  EXPECT_EQ(extremesWith({none, draw, none, "batteryChargeInput"}), "Lowest, highest   unknown");
}

}  // namespace
}  // namespace quellin::cli
