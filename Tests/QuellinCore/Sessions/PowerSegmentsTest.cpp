#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Sessions/PowerSegments.h"

namespace quellin {
namespace {

using PowerSessionMetrics::powerSegments;
using PowerSessionMetrics::wattHours;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

PowerSamplePoint onBattery(double time, std::optional<double> watts,
                           std::optional<std::int64_t> percent = {}) {
  return {instantAt(time), watts, "batteryDischarge", "Battery draw", false, percent};
}

PowerSamplePoint charging(double time, std::optional<double> watts,
                          std::optional<std::int64_t> percent = {}) {
  return {instantAt(time), watts, "batteryChargeInput", "Battery charge input", true, percent};
}

TEST(PowerSegmentsTest, CutsWhereTheSourceChanges) {
  const auto segments = powerSegments(
      {onBattery(0, 10, 80), onBattery(60, 10, 79), onBattery(120, 20, 78), charging(180, 30, 78)});
  ASSERT_THAT(segments, SizeIs(2));
  const double energy = segments[0].totalWattHours.value();
  EXPECT_DOUBLE_EQ(energy, 25.0 / 60);
  EXPECT_DOUBLE_EQ(segments[0].averageWatts.value(), 12.5);
  EXPECT_EQ(segments[0], (PowerSessionPowerSegment{.index = 0,
                                                   .sourceKind = "batteryDischarge",
                                                   .sourceLabel = "Battery draw",
                                                   .acConnected = false,
                                                   .startedAt = instantAt(0),
                                                   .endedAt = instantAt(120),
                                                   .durationSeconds = 120,
                                                   .sampleCount = 3,
                                                   .wattSampleCount = 3,
                                                   .averageWatts = energy * 3600 / 120,
                                                   .minWatts = 10,
                                                   .maxWatts = 20,
                                                   .totalWattHours = energy,
                                                   .batteryPercentStart = 80,
                                                   .batteryPercentEnd = 78,
                                                   .batteryPercentDelta = -2}));
  EXPECT_EQ(segments[1].index, 1);
  EXPECT_EQ(segments[1].sourceKind, "batteryChargeInput");
  EXPECT_EQ(segments[1].startedAt, instantAt(180));
}

TEST(PowerSegmentsTest, NoPointsMakeNoSegment) { EXPECT_THAT(powerSegments({}), IsEmpty()); }

TEST(PowerSegmentsTest, OneReadingIsTheAverageAndNoEnergy) {
  const auto segments = powerSegments({onBattery(0, {}), onBattery(60, 7.5), onBattery(120, {})});
  ASSERT_THAT(segments, SizeIs(1));
  EXPECT_EQ(segments[0].averageWatts, 7.5);
  EXPECT_EQ(segments[0].totalWattHours, std::nullopt);
  EXPECT_EQ(segments[0].sampleCount, 3);
  EXPECT_EQ(segments[0].wattSampleCount, 1);
}

TEST(PowerSegmentsTest, WithoutReadingsThereAreNoFigures) {
  const auto segments = powerSegments({onBattery(0, {}), onBattery(60, {})});
  ASSERT_THAT(segments, SizeIs(1));
  EXPECT_EQ(segments[0].averageWatts, std::nullopt);
  EXPECT_EQ(segments[0].minWatts, std::nullopt);
  EXPECT_EQ(segments[0].maxWatts, std::nullopt);
  EXPECT_EQ(segments[0].totalWattHours, std::nullopt);
  EXPECT_EQ(segments[0].batteryPercentDelta, std::nullopt);
  EXPECT_EQ(segments[0].durationSeconds, 60);
}

TEST(PowerSegmentsTest, ReadingsOfOneInstantCountAlike) {
  const auto segments = powerSegments({onBattery(5, 10), onBattery(5, 20)});
  ASSERT_THAT(segments, SizeIs(1));
  EXPECT_EQ(segments[0].durationSeconds, 0);
  EXPECT_EQ(segments[0].averageWatts, 15);
  EXPECT_EQ(segments[0].totalWattHours, 0);
}

TEST(PowerSegmentsTest, APauseIsBridgedAndAMissingReadingBreaksNothing) {
  const auto segments = powerSegments({onBattery(0, 10), onBattery(60, {}), onBattery(7200, 20)});
  ASSERT_THAT(segments, SizeIs(1));
  EXPECT_EQ(segments[0].totalWattHours, 30);
}

TEST(PowerSegmentsTest, AClockSetBackGivesNoNegativeTime) {
  const auto segments = powerSegments({onBattery(3600, 10), onBattery(0, 20)});
  ASSERT_THAT(segments, SizeIs(1));
  EXPECT_EQ(segments[0].durationSeconds, 0);
  EXPECT_EQ(segments[0].totalWattHours, 0);
  EXPECT_EQ(segments[0].averageWatts, 15);
  EXPECT_EQ(segments[0].endedAt, instantAt(0));
}

TEST(PowerSegmentsTest, ALabelAloneOpensNoSegment) {
  auto renamed = onBattery(60, 10);
  renamed.sourceLabel = "Another name";
  const auto segments = powerSegments({onBattery(0, 10), renamed});
  ASSERT_THAT(segments, SizeIs(1));
  EXPECT_EQ(segments[0].sourceLabel, "Battery draw") << "the first point's";
}

TEST(PowerSegmentsTest, AnUnknownAdapterStateIsAStateOfItsOwn) {
  PowerSamplePoint unknown{instantAt(0), 4.0, "ioReportSiliconPower", "IOReport silicon power", {}, {}};
  PowerSamplePoint unplugged = unknown;
  unplugged.acConnected = false;
  EXPECT_THAT(powerSegments({unknown, unknown}), SizeIs(1)) << "two absent states are equal";
  EXPECT_THAT(powerSegments({unknown, unplugged}), SizeIs(2));
  EXPECT_THAT(powerSegments({unplugged, unknown, unplugged}), SizeIs(3));
}

TEST(PowerSegmentsTest, TheBatterySpanIgnoresPointsWithoutAPercentage) {
  const auto segments = powerSegments(
      {onBattery(0, 1), onBattery(1, 1, 50), onBattery(2, 1), onBattery(3, 1, 47), onBattery(4, 1)});
  ASSERT_THAT(segments, SizeIs(1));
  EXPECT_EQ(segments[0].batteryPercentStart, 50);
  EXPECT_EQ(segments[0].batteryPercentEnd, 47);
  EXPECT_EQ(segments[0].batteryPercentDelta, -3);
}

TEST(PowerSegmentsTest, ThePercentageOfAPointWithoutWattsCounts) {
  const auto segments = powerSegments({onBattery(0, {}, 50), onBattery(1, 1), onBattery(2, {}, 48)});
  ASSERT_THAT(segments, SizeIs(1));
  EXPECT_EQ(segments[0].batteryPercentStart, 50);
  EXPECT_EQ(segments[0].batteryPercentEnd, 48);
}

TEST(PowerSegmentsTest, AMaximumThatIsNoNumberGivesWay) {
  EXPECT_TRUE(std::isnan(powerSegments({onBattery(0, 5), onBattery(1, nan)})[0].maxWatts.value()));
  const auto segments = powerSegments({onBattery(0, 5), onBattery(1, nan), onBattery(2, 4)});
  EXPECT_EQ(segments[0].maxWatts, 4);
  EXPECT_EQ(segments[0].minWatts, 4);
}

TEST(PowerSegmentsTest, ACopyCanBeFinishedWhileTheOriginalStaysOpen) {
  PowerSegmentAccumulator accumulator;
  accumulator.ingest(onBattery(0, 10));
  PowerSegmentAccumulator copy = accumulator;
  EXPECT_THAT(copy.materialize(), SizeIs(1));
  EXPECT_THAT(copy.materialize(), SizeIs(1)) << "there is nothing left to finish";
  EXPECT_FALSE(copy.current().has_value());
  accumulator.ingest(onBattery(60, 10));
  EXPECT_THAT(accumulator.segments(), IsEmpty());
  ASSERT_TRUE(accumulator.current().has_value());
  EXPECT_EQ(accumulator.current()->materialize().sampleCount, 2);
}

TEST(PowerSegmentsTest, TellsMixedSourcesFromSegmentsOfOneKind) {
  EXPECT_FALSE(hasMixedSources({}));
  PowerSamplePoint plugged = onBattery(60, 10);
  plugged.acConnected = true;
  EXPECT_FALSE(hasMixedSources(powerSegments({onBattery(0, 10), plugged}))) << "one kind, two segments";
  plugged.sourceLabel = "Another name";
  EXPECT_FALSE(hasMixedSources(powerSegments({onBattery(0, 10), plugged}))) << "labels are no kinds";
  EXPECT_TRUE(hasMixedSources(powerSegments({onBattery(0, 10), plugged, charging(120, 30)})));
}

TEST(PowerSegmentsTest, WattHoursSortsItsReadings) {
  EXPECT_EQ(wattHours({}), std::nullopt);
  EXPECT_EQ(wattHours({{instantAt(0), 10}}), std::nullopt);
  EXPECT_EQ(wattHours({{instantAt(60), 20}, {instantAt(0), 10}}), 0.25);
  EXPECT_EQ(
      wattHours({{instantAt(0), 0}, {instantAt(3600), 0}, {instantAt(3600), 40}, {instantAt(10800), 40}}), 80)
      << "readings of one instant stay in order";
  EXPECT_EQ(wattHours({{instantAt(7200), 20}, {instantAt(0), 20}, {instantAt(3600), 0}}), 20);
}

}  // namespace
}  // namespace quellin
