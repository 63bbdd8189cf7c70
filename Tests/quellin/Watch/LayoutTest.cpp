#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quellin/Watch/Layout.h"
#include "quellin/Watch/WatchedTrace.h"

namespace quellin::cli {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing_support::WatchedTrace;

std::string drawn(const WatchModel& model, ViewSize size, CharacterSet characters = CharacterSet::unicode) {
  return drawWatch(model, size, characters).text();
}

TEST(LayoutTest, KeepsTheKeysInSightAtEverySize) {
  const WatchedTrace trace{20};
  for (int rows = 0; rows <= 30; ++rows) {
    for (int columns = 0; columns <= 90; columns += 3) {
      const Canvas canvas =
          drawWatch(trace.model(), {.rows = rows, .columns = columns}, CharacterSet::unicode);
      ASSERT_EQ(canvas.size(), (ViewSize{.rows = rows, .columns = columns}));
      if (rows == 0 || columns < 6) continue;
      std::string last;
      for (const Canvas::Run& run : canvas.runs(rows - 1)) last += run.text;
      EXPECT_TRUE(last.starts_with("q quit")) << rows << " rows of " << columns << ": " << last;
    }
  }
}

TEST(LayoutTest, ShowsTheReadingWithItsConfidenceAndSummary) {
  const WatchedTrace trace{1};
  const std::string text = drawn(trace.model(), {});
  EXPECT_THAT(text, HasSubstr("Battery draw  12.49 W"));
  EXPECT_THAT(text, HasSubstr("confidence: batteryTerminal\n"));
  EXPECT_THAT(text, HasSubstr("\nSmartBattery whole-system draw while unplugged\n"));
}

TEST(LayoutTest, ShowsThatTheFirstReadingIsBeingTaken) {
  EXPECT_THAT(drawn({.source = "this machine"}, {}), HasSubstr("Taking the first reading"));
}

TEST(LayoutTest, ShowsProcessesOnlyWhereTheyAreWanted) {
  const WatchedTrace trace{1};
  WatchModel model = trace.model();
  EXPECT_THAT(drawn(model, {}), HasSubstr("PID  Process"));
  EXPECT_THAT(drawn(model, {}), HasSubstr("hide processes"));
  model.showsProcesses = false;
  EXPECT_THAT(drawn(model, {}), Not(HasSubstr("PID")));
  EXPECT_THAT(drawn(model, {}), HasSubstr("show processes"));
}

TEST(LayoutTest, TellsProcessesThatAreNotMeasuredYetFromNone) {
  const WatchedTrace trace{1};
  WatchModel model = trace.model();
  model.processes.reset();
  EXPECT_THAT(drawn(model, {}), HasSubstr("being measured"));
  model.processes.emplace();
  EXPECT_THAT(drawn(model, {}), HasSubstr("Processes\nunknown"));
}

TEST(LayoutTest, ShowsTheSessionAndWhatTheKeyDoesToIt) {
  const WatchedTrace trace{1};
  WatchModel model = trace.model();
  EXPECT_THAT(drawn(model, {}), HasSubstr("\nNo session is being recorded\n"));
  EXPECT_THAT(drawn(model, {}), HasSubstr("s start session"));
  model.isRecording = true;
  EXPECT_THAT(drawn(model, {}), HasSubstr("s stop session"));
  model.failure = "The disk is full";
  EXPECT_THAT(drawn(model, {}), HasSubstr("\nThe disk is full\n"));
}

TEST(LayoutTest, ShowsTheIntervalOrTheEndOfTheTrace) {
  const WatchedTrace trace{1};
  WatchModel model = trace.model();
  model.interval = Seconds{0.25};
  EXPECT_THAT(drawn(model, {}), HasSubstr("every 0.25 s  2025-03-04T09:40:00Z\n"));
  model.isOver = true;
  EXPECT_THAT(drawn(model, {}), HasSubstr("end of the trace  2025-03-04T09:40:00Z\n"));
}

}  // namespace
}  // namespace quellin::cli
