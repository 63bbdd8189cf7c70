#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Sessions/Analysis/SessionSeries.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

PowerSamplePoint point(double second, std::optional<double> watts, const std::string& kind,
                       const std::string& label) {
  return {.timestamp = instantAt(second),
          .watts = watts,
          .sourceKind = kind,
          .sourceLabel = label,
          .acConnected = {},
          .batteryPercent = {}};
}

TEST(SessionSeriesTest, EverySampleHasItsPlaceInEveryColumn) {
  SeriesBuilder builder(instantAt(1000.25));
  PowerSamplePoint first = point(1000.5, 12.5, "batteryDischarge", "Battery draw");
  first.batteryPercent = 80;
  SampleColumns columns;
  columns.thermalPressure = 2;
  columns.maxFanRPM = 1300;
  columns.maxTemperature = 51.25;
  builder.ingest(first, columns);
  builder.ingest(point(1002, {}, "unavailable", "Unavailable"), {});
  const SessionSeries& series = builder.series();
  EXPECT_EQ(series.startedAt, 1000.25);
  EXPECT_THAT(series.seconds, ElementsAre(0.25, 1.75));
  EXPECT_THAT(series.source, ElementsAre(0, 1));
  EXPECT_EQ(series.watts, (SeriesColumn<double>{{12.5}, {{1, 1}}}));
  EXPECT_EQ(series.batteryPercent, (SeriesColumn<std::int64_t>{{80}, {{1, 1}}}));
  EXPECT_EQ(series.maxTemperature, (SeriesColumn<double>{{51.25}, {{1, 1}}}));
  EXPECT_EQ(series.maxFanRPM, (SeriesColumn<std::int64_t>{{1300}, {{1, 1}}}));
  EXPECT_THAT(series.thermalPressure, ElementsAre(2, 0));
}

TEST(SessionSeriesTest, ASourceIsNamedOnceAndSaysWhatItIs) {
  SeriesBuilder builder(instantAt(0));
  for (const char* const kind : {"ioReportSiliconPower", "batteryDischarge", "ioReportSiliconPower"}) {
    builder.ingest(point(0, 1, kind, kind), {});
  }
  EXPECT_THAT(builder.series().source, ElementsAre(0, 1, 0));
  EXPECT_THAT(builder.series().sources,
              ElementsAre(SeriesSource{"ioReportSiliconPower", "ioReportSiliconPower",
                                       "CPU/GPU/ANE/DRAM energy model", "ioReport"},
                          SeriesSource{"batteryDischarge", "batteryDischarge",
                                       "SmartBattery whole-system draw while unplugged", "batteryTerminal"}));
}

TEST(SessionSeriesTest, NoReadingHasTwoLabelsAndNobodyStandsBehindThem) {
  SeriesBuilder builder(instantAt(0));
  builder.ingest(point(0, {}, "unavailable", "Unavailable"), {});
  builder.ingest(point(1, {}, "unavailable", "On AC, battery idle"), {});
  ASSERT_THAT(builder.series().sources, SizeIs(2));
  EXPECT_EQ(builder.series().sources.back(), (SeriesSource{"unavailable", "On AC, battery idle", {}, {}}));
}

TEST(SessionSeriesTest, TimeBeforeTheStartIsNone) {
  SeriesBuilder builder(instantAt(100));
  builder.ingest(point(90, 1, "batteryDischarge", "Battery draw"), {});
  builder.ingest(point(101, 1, "batteryDischarge", "Battery draw"), {});
  EXPECT_THAT(builder.series().seconds, ElementsAre(0, 1));
}

}  // namespace
}  // namespace quellin
