#include <cstdint>
#include <limits>
#include <tuple>

#include <gtest/gtest.h>

#include "QuellinCore/Sessions/SessionFigures.h"
#include "Support/Deaths.h"

namespace quellin {
namespace {

using testing_support::endedByTrap;

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();

PowerSessionSummary summaryOf(const std::vector<SampleMaxima>& samples) {
  SessionFigures figures;
  for (const SampleMaxima& sample : samples) figures.ingest(sample);
  PowerSessionSummary summary;
  figures.update(summary, 0);
  return summary;
}

TEST(SessionFiguresTest, WhatWasNeverMeasuredHasNoMaximum) {
  const auto summary = summaryOf({{0, {}, {}}, {0, {}, {}}});
  EXPECT_EQ(summary.maxThermalPressure, 0);
  EXPECT_EQ(summary.maxFanRPM, std::nullopt);
  EXPECT_EQ(summary.maxTemperature, std::nullopt);
}

TEST(SessionFiguresTest, AMaximumMayBeZeroOrBelow) {
  const auto summary = summaryOf({{0, {}, {}}, {0, 0, -12.5}, {0, 0, -20}});
  EXPECT_EQ(summary.maxFanRPM, 0) << "a fan that stands still was measured";
  EXPECT_EQ(summary.maxTemperature, -12.5);
}

TEST(SessionFiguresTest, EachMaximumIsOfAllSamples) {
  const auto summary = summaryOf({{1, 3000, 40}, {4, 1200, 71.5}, {2, {}, {}}, {0, 1300, 39}});
  EXPECT_EQ(summary.maxThermalPressure, 4);
  EXPECT_EQ(summary.maxFanRPM, 3000);
  EXPECT_EQ(summary.maxTemperature, 71.5);
}

TEST(SessionFiguresTest, AReadingOfZeroIsAReading) {
  SessionFigures figures;
  figures.ingest(PowerSamplePoint{instantAt(0), 0, "ioReportSiliconPower", "IOReport silicon power", {}, {}});
  figures.ingest(
      PowerSamplePoint{instantAt(3600), 10, "ioReportSiliconPower", "IOReport silicon power", {}, {}});
  figures.ingest(
      PowerSamplePoint{instantAt(7200), {}, "ioReportSiliconPower", "IOReport silicon power", {}, {}});
  PowerSessionSummary summary;
  figures.update(summary, 7200);
  EXPECT_EQ(summary.sampleCount, 3);
  EXPECT_EQ(summary.wattSampleCount, 2);
  EXPECT_EQ(summary.minWatts, 0);
  EXPECT_EQ(summary.totalWattHours, 5);
  EXPECT_EQ(summary.averageWatts, 2.5);
}

TEST(SessionFiguresDeathTest, EndsTheProcessWhenTheCountOverflows) {
  SessionFigures figures;
  figures.sampleCount = most;
  EXPECT_EXIT(figures.ingest(PowerSamplePoint{}), endedByTrap, "");
}

TEST(SessionFiguresDeathTest, EndsTheProcessWhenADifferenceOverflows) {
  SessionFigures figures;
  figures.battery.ingest(-1);
  EXPECT_EQ(figures.battery.delta(), 0);
  figures.battery.ingest(most - 1);
  EXPECT_EQ(figures.battery.delta(), most);
  figures.battery.ingest(most);
  EXPECT_EXIT(std::ignore = figures.battery.delta(), endedByTrap, "");
}

}  // namespace
}  // namespace quellin
