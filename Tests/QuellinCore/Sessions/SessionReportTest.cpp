#include <cstdint>
#include <memory>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "QuellinCore/Sessions/SessionReport.h"
#include "Support/BracketDateText.h"
#include "Support/SampleStates.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing_support::stateOnBattery;

class SessionReportTest : public testing::Test {
 protected:
  [[nodiscard]] std::unique_ptr<PowerSessionStore> open() const {
    return std::make_unique<PowerSessionStore>("0.9.4", folder.path() / "a.store", false,
                                               PowerSessionStoreSurroundings{.dateText = dateText});
  }
  static void append(PowerSessionStore& store, const std::shared_ptr<PowerSession>& session, double second) {
    store.addCost(session, {.cpuSeconds = 1, .bytesWritten = 4096});
    store.appendSample(session, stateOnBattery(instantAt(second)), {}, std::nullopt);
  }

  const testing_support::TemporaryFolder folder;
  const testing_support::BracketDateText dateText;
  const std::unique_ptr<PowerSessionStore> store = open();
  const std::shared_ptr<PowerSession> session =
      store->start("Report", PowerSessionSource::app, 2, instantAt(1000));
};

TEST_F(SessionReportTest, ItsPartsAreWhatTheStoreSays) {
  for (const double second : {1000, 1002, 1030}) append(*store, session, second);
  const SessionReport report = store->report(session);
  EXPECT_EQ(report.session, PowerSessionMetadataDTO(*session));
  EXPECT_EQ(report.summary.sampleCount, 3);
  EXPECT_EQ(report.summary, store->summary(session));
  EXPECT_EQ(report.coverage, (SessionCoverage{30, 2, 1, 28}));
  EXPECT_EQ(report.coverage, store->coverage(session));
  EXPECT_EQ(report.recorderCost, (RecorderCost{.cpuSeconds = 3, .bytesWritten = 3 * 4096}));
}

TEST_F(SessionReportTest, ItsPartsAreOfOneMomentWhateverIsRecordedMeanwhile) {
  append(*store, session, 1000);
  append(*store, session, 1002);
  const auto recorder = open();
  const auto theirs = recorder->activeSession();
  double next = 1020;
  const SessionVisitor recording{
      .sample = [&](const StoredSample&, const PowerSamplePoint&) { append(*recorder, theirs, next++); }};
  const SessionReport report = store->report(session, recording);
  EXPECT_EQ(report.summary.sampleCount, 2);
  EXPECT_EQ(report.summary.durationSeconds, 2);
  EXPECT_EQ(report.coverage, (SessionCoverage{2, 2, 0, {}}));
  EXPECT_EQ(report.recorderCost, (RecorderCost{.cpuSeconds = 2, .bytesWritten = 2 * 4096}));
  EXPECT_EQ(store->report(session).summary.sampleCount, 4) << "what was recorded meanwhile is not lost";
}

TEST_F(SessionReportTest, AVisitorSeesEverySampleAndEveryGap) {
  for (const double second : {1001, 1003, 1030}) append(*store, session, second);
  store->stop(session, instantAt(1100));
  std::vector<double> seconds;
  std::vector<ReadingGap> gaps;
  const SessionVisitor visitor{.sample =
                                   [&](const StoredSample& sample, const PowerSamplePoint& point) {
                                     EXPECT_EQ(point.timestamp, sample.columns.timestamp);
                                     seconds.push_back((point.timestamp - session->startedAt()).count());
                                   },
                               .gap = [&](const ReadingGap& gap) { gaps.push_back(gap); }};
  EXPECT_EQ(store->report(session, visitor), store->report(session));
  EXPECT_THAT(seconds, ElementsAre(1, 3, 30));
  EXPECT_THAT(gaps, ElementsAre(ReadingGap{3, 30}, ReadingGap{30, 100}));
}

}  // namespace
}  // namespace quellin
