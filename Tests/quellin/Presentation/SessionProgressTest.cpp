#include <gmock/gmock.h>

#include "quellin/Presentation/SessionProgress.h"

namespace quellin::cli {
namespace {

using testing::EndsWith;

PowerSessionSummary summaryOf(std::optional<std::int64_t> batteryChange) {
  PowerSessionSummary summary = PowerSessionSummary::empty();
  summary.durationSeconds = 65;
  summary.sampleCount = 66;
  summary.totalWattHours = 0.25;
  summary.batteryPercentDelta = batteryChange;
  return summary;
}

TEST(SessionProgressTest, NamesTimeSamplesReadingEnergyAndTheBatterysChange) {
  const PowerReading reading{.watts = 12.487,
                             .kind = PowerReadingKind::batteryDischarge,
                             .label = "Battery draw",
                             .summary = "",
                             .confidence = PowerReadingConfidence::batteryTerminal};
  EXPECT_EQ(sessionProgress(summaryOf(-2), reading),
            "1 min 5 s, 66 samples, Battery draw 12.49 W, 0.250 Wh, battery -2 %");
  EXPECT_EQ(sessionProgress(summaryOf(std::nullopt)), "1 min 5 s, 66 samples, 0.250 Wh");
}

TEST(SessionProgressTest, AChangeOfTheBatteryDoesNotReadAsItsCharge) {
  EXPECT_THAT(sessionProgress(summaryOf(3)), EndsWith(", battery +3 %"));
  EXPECT_THAT(sessionProgress(summaryOf(-3)), EndsWith(", battery -3 %"));
  EXPECT_THAT(sessionProgress(summaryOf(0)), EndsWith(", battery unchanged"));
}

}  // namespace
}  // namespace quellin::cli
