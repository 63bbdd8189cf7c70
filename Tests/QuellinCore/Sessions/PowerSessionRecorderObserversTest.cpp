#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/PowerSessionRecorderFixture.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing_support::telemetry;
using PowerSessionRecorderObserversTest = testing_support::PowerSessionRecorderFixture;

TEST_F(PowerSessionRecorderObserversTest, ObserversHearOfChanges) {
  std::vector<std::string> heard;
  const auto session = recorder->observeActiveSession(
      [&](const auto& value) { heard.emplace_back(value ? "session" : "no session"); });
  const auto summary = recorder->observeActiveSummary(
      [&](const auto& value) { heard.push_back("summary " + std::to_string(value.sampleCount)); });
  const auto error = recorder->observeLastError(
      [&](const auto& value) { heard.emplace_back(value ? "error" : "no error"); });
  start();
  EXPECT_THAT(heard, ElementsAre("session", "summary 0", "no error"));
  heard.clear();
  record(1000);
  EXPECT_THAT(heard, ElementsAre("summary 1"));
  heard.clear();
  recorder->record(stateThatCannotBeStored(1002), std::nullopt);
  record(1004);
  EXPECT_THAT(heard, ElementsAre("error", "summary 2", "no error"));
  heard.clear();
  recorder->stop(instantAt(1010));
  EXPECT_THAT(heard, ElementsAre("no session", "summary 0", "no error"));
}

TEST_F(PowerSessionRecorderObserversTest, ObserversOfTheInstantsHearOfDifferencesOnly) {
  std::vector<std::optional<Instant>> processes;
  std::vector<std::optional<Instant>> telemetries;
  const auto one = recorder->observeLastProcessSampleAt([&](const auto& at) { processes.push_back(at); });
  const auto two =
      recorder->observeLastProTelemetrySampledAt([&](const auto& at) { telemetries.push_back(at); });
  start();
  recorder->refreshActiveSession();
  record(1000);
  record(1000, telemetry(999, {}));
  recorder->refreshSummary();
  recorder->stop(instantAt(1001));
  recorder->stop(instantAt(1001));
  EXPECT_THAT(processes, ElementsAre(instantAt(1000), std::nullopt));
  EXPECT_THAT(telemetries, ElementsAre(instantAt(999), std::nullopt));
}

TEST_F(PowerSessionRecorderObserversTest, AnObserverMayStopTheRecorder) {
  const auto session = start();
  const auto subscription = recorder->observeActiveSummary([&](const auto& summary) {
    if (summary.sampleCount == 1) recorder->stop(instantAt(1001));
  });
  record(1000);
  EXPECT_THAT(recorder->activeSession(), IsNull());
  EXPECT_EQ(recorder->activeSummary(), PowerSessionSummary::empty());
  EXPECT_THAT(secondsOf(session), ElementsAre(1000));
}

TEST_F(PowerSessionRecorderObserversTest, AnObserverOfTheSessionMayStopTheRecorder) {
  const auto session = start();
  bool isStopping = false;
  const auto subscription = session->onChange([&] {
    if (!std::exchange(isStopping, true)) recorder->stop(instantAt(1001));
  });
  record(1000, telemetry(999, {}));
  EXPECT_THAT(recorder->activeSession(), IsNull());
  EXPECT_EQ(recorder->activeSummary(), PowerSessionSummary::empty());
}

TEST_F(PowerSessionRecorderObserversTest, AnObserverOfTheSessionMayUseTheRecorderWhileItEndsIt) {
  for (const auto ending : {&PowerSessionRecorder::stop, &PowerSessionRecorder::interrupt}) {
    for (const auto& use : std::vector<std::function<void()>>{
             [&] { recorder->refreshActiveSession(); }, [&] { recorder->stop(instantAt(1001)); },
             [&] { recorder->interrupt(instantAt(1001)); }}) {
      const auto session = start();
      bool isUsed = false;
      const auto subscription = session->onChange([&] {
        if (!std::exchange(isUsed, true)) use();
      });
      (*recorder.*ending)(instantAt(1010));
      EXPECT_TRUE(isUsed);
      EXPECT_EQ(session->endedAt(), instantAt(1010));
      EXPECT_THAT(recorder->activeSession(), IsNull());
      EXPECT_EQ(recorder->lastError(), std::nullopt);
    }
  }
}

TEST_F(PowerSessionRecorderObserversTest, TheRecordersOwnPointerMayBeGivenToTheStore) {
  const auto session = start();
  const auto subscription = session->onChange([&] { recorder->refreshActiveSession(); });
  recorder->store()->stop(recorder->activeSession(), instantAt(1010));
  EXPECT_THAT(recorder->activeSession(), IsNull());
  EXPECT_EQ(session->endedAt(), instantAt(1010));
}

TEST_F(PowerSessionRecorderObserversTest, AnObserverOfTheSessionMayBeginTheNextWhileItEnds) {
  const auto session = start();
  std::shared_ptr<PowerSession> next;
  bool isUsed = false;
  const auto subscription = session->onChange([&] {
    if (std::exchange(isUsed, true)) return;
    recorder->stop(instantAt(1001));
    next = start();
  });
  recorder->stop(instantAt(1010));
  ASSERT_NE(next, nullptr);
  EXPECT_NE(next, session);
  EXPECT_EQ(recorder->activeSession(), next);
}

TEST_F(PowerSessionRecorderObserversTest, AnObserverOfTheSessionMayHaveItSummedUpWhileASampleComes) {
  for (const auto sumUp :
       {&PowerSessionRecorder::refreshSummary, &PowerSessionRecorder::refreshActiveSession}) {
    const auto session = start();
    const auto subscription = session->onChange([&] { ((*recorder).*sumUp)(); });
    record(1000, telemetry(999, {}));
    record(1002, telemetry(1001, {}));
    EXPECT_EQ(recorder->activeSummary().sampleCount, 2);
    EXPECT_EQ(recorder->activeSummary(), recorder->summary(session));
    EXPECT_EQ(recorder->lastProTelemetrySampledAt(), instantAt(1001));
    recorder->stop(instantAt(1010));
  }
}

TEST_F(PowerSessionRecorderObserversTest, AnObserverMayDestroyTheRecorder) {
  const auto session = start();
  const auto subscription = recorder->observeActiveSummary([&](const auto&) { recorder.reset(); });
  offer(1000, telemetry(999, {}));
  EXPECT_EQ(recorder, nullptr);
  EXPECT_THAT(completed, IsEmpty());
  EXPECT_THAT(secondsOf(session), ElementsAre(1000));
}

}  // namespace
}  // namespace quellin
