#include <gtest/gtest.h>

#include "QuellinCore/Sessions/PowerSessionCoders.h"
#include "QuellinCore/Sessions/PowerSessionSummary.h"

namespace quellin {
namespace {

TEST(PowerSessionSummaryTest, TheEmptyOneHasZerosAndNothingElse) {
  EXPECT_EQ(PowerSessionCoders::encoder.encode(PowerSessionSummary::empty()),
            R"({"durationSeconds":0,"maxThermalPressure":0,"powerSegments":[],"sampleCount":0,)"
            R"("topContributors":[],"wattSampleCount":0})");
}

TEST(PowerSessionSummaryTest, IsReadBackFromWhatIsWritten) {
  PowerSessionSummary summary;
  summary.durationSeconds = 120;
  summary.sampleCount = 3;
  summary.averageWattsNote = PowerSessionSummary::mixedSourcesNote;
  summary.batteryPercentDelta = -2;
  summary.powerSegments = {{.index = 0,
                            .sourceKind = "batteryDischarge",
                            .sourceLabel = "Battery draw",
                            .acConnected = false,
                            .startedAt = instantAt(1741081260),
                            .endedAt = instantAt(1741081380),
                            .durationSeconds = 120,
                            .sampleCount = 3,
                            .wattSampleCount = 3,
                            .averageWatts = 12.5,
                            .minWatts = 10,
                            .maxWatts = 20,
                            .totalWattHours = 0.4,
                            .batteryPercentStart = 80,
                            .batteryPercentEnd = 78,
                            .batteryPercentDelta = -2}};
  summary.topContributors = {{"clang", "powermetrics", 7, "derived"}};
  const auto text = PowerSessionCoders::encoder.encode(summary);
  ASSERT_TRUE(text.has_value());
  const auto read = PowerSessionCoders::decoder.decode<PowerSessionSummary>(*text);
  ASSERT_TRUE(read.has_value());
  EXPECT_EQ(*read, summary);
}

TEST(PowerSessionSummaryTest, CannotBeReadWithoutARequiredField) {
  const std::string whole = PowerSessionCoders::encoder.encode(PowerSessionSummary::empty()).value();
  for (const std::string name : {"durationSeconds", "sampleCount", "wattSampleCount", "maxThermalPressure",
                                 "powerSegments", "topContributors"}) {
    std::string text = whole;
    text.replace(text.find("\"" + name + "\""), name.size() + 2, "\"other\"");
    const auto read = PowerSessionCoders::decoder.decode<PowerSessionSummary>(text);
    ASSERT_FALSE(read.has_value()) << name;
    EXPECT_EQ(read.error().kind(), DecodingError::Kind::keyNotFound) << name;
  }
}

}  // namespace
}  // namespace quellin
