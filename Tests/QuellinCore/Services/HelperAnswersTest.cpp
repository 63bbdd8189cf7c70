#include <gmock/gmock.h>

#include "QuellinCore/Services/HelperAnswers.h"

namespace quellin {
namespace {

constexpr Instant now = instantAt(1741081260);

TEST(HelperAnswersTest, AListCountsOnlyFromARunThatSucceeded) {
  const std::string list = R"([{"key":"TC0P","name":"CPU","temperature":51.5}])";
  EXPECT_EQ(temperaturesOfHelper(0, list), (std::vector<TemperatureSensor>{{"TC0P", "CPU", 51.5}}));
  EXPECT_THAT(temperaturesOfHelper(1, list), testing::IsEmpty());
  EXPECT_THAT(temperaturesOfHelper(0, "{}"), testing::IsEmpty());
}

TEST(HelperAnswersTest, AFailureIsToldByTheFirstTextThereIs) {
  const auto errorOf = [](const ProcessRunResult& run) { return withHelperAnswer({}, run).error; };
  EXPECT_EQ(errorOf(processRunResult(3, "output\n", " error\n")), "error");
  EXPECT_EQ(errorOf(processRunResult(3, "output\n", "\xFF")), "output");
  EXPECT_EQ(errorOf(processRunResult(3, "\xFF", "\xFF")), "Helper exited with status 3");
  EXPECT_EQ(firstTextOf(processRunResult(3, "\xFF", "\xFF"), "otherwise"), "otherwise");
}

TEST(HelperAnswersTest, TheStatusTakesFromTheToolWhatOnlyTheToolKnows) {
  HelperStatus status;
  status.path = "/here";
  const HelperStatus found = withHelperAnswer(
      status,
      processRunResult(
          0,
          R"({"isInstalled":true,"isExecutable":true,"isSetuidRoot":true,"ownerUserID":0,"groupID":0,)"
          R"("installedVersion":"1.2","supportsProTelemetry":true,"path":"/there"})",
          ""));
  EXPECT_EQ(found.installedVersion, "1.2");
  EXPECT_TRUE(found.supportsProTelemetry);
  EXPECT_EQ(found.path, "/here");
  EXPECT_FALSE(found.isInstalled);
  EXPECT_EQ(found.error, std::nullopt);
}

TEST(HelperAnswersTest, WhatIsNoSnapshotMakesOneThatIsNotAvailable) {
  const ProTelemetrySnapshot snapshot = snapshotOfHelper(processRunResult(0, "word", ""), now);
  EXPECT_FALSE(snapshot.isAvailable);
  EXPECT_EQ(snapshot.sampledAt, now);
  EXPECT_EQ(snapshot.rawSampleSummary, "word");
  EXPECT_THAT(snapshot.error.value_or(""), testing::StartsWith("Failed to decode helper telemetry: "));
  EXPECT_EQ(snapshotOfHelper(processRunResult(0, "\xFF", ""), now).rawSampleSummary, std::nullopt);
  EXPECT_EQ(snapshotOfHelper(processRunResult(9, "word", "no"), now).error, "no");
}

}  // namespace
}  // namespace quellin
