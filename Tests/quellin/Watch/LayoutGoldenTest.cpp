#include <algorithm>

#include <gtest/gtest.h>

#include "quellin/Support/Golden.h"
#include "quellin/Watch/Layout.h"
#include "quellin/Watch/WatchedTrace.h"

namespace quellin::cli {
namespace {

using testing_support::expectGolden;
using testing_support::WatchedTrace;

constexpr int hotSpell = 150;  // reading of the trace: hot, at a charger too weak

std::string drawn(const WatchModel& model, ViewSize size, CharacterSet characters = CharacterSet::unicode) {
  return drawWatch(model, size, characters).text();
}

std::string goldenOf(const std::string& name) {
  return std::string{QUELLIN_GOLDENS} + "/watch/" + name + ".txt";
}

WatchModel nothingKnown() {
  return {.source = "this machine", .state = SystemPowerState{}, .isThermalKnown = false};
}

TEST(LayoutGoldenTest, FillsAnOrdinaryTerminalAsTheReadmeShows) {
  const WatchedTrace trace{hotSpell};
  WatchModel model = trace.model();
  model.isRecording = true;
  model.session = "Recording 3F2A1B09: " + trace.progress();
  expectGolden(QUELLIN_PROJECT "/docs/watch.txt", drawn(model, {.rows = 24, .columns = 80}));
}

TEST(LayoutGoldenTest, UsesTheRoomOfALargeTerminal) {
  const WatchedTrace trace{hotSpell};
  expectGolden(goldenOf("large"), drawn(trace.model(), {.rows = 50, .columns = 140}));
}

TEST(LayoutGoldenTest, LeavesOutWhatASmallTerminalHasNoRoomFor) {
  const WatchedTrace trace{hotSpell};
  expectGolden(goldenOf("medium"), drawn(trace.model(), {.rows = 20, .columns = 60}));
  expectGolden(goldenOf("narrow"), drawn(trace.model(), {.rows = 40, .columns = 40}));
  expectGolden(goldenOf("low"), drawn(trace.model(), {.rows = 10, .columns = 80}));
}

TEST(LayoutGoldenTest, DrawsWithoutUTF8) {
  const WatchedTrace trace{hotSpell};
  const std::string text = drawn(trace.model(), {.rows = 24, .columns = 80}, CharacterSet::ascii);
  expectGolden(goldenOf("ascii"), text);
  EXPECT_TRUE(std::ranges::all_of(text, [](char byte) { return static_cast<unsigned char>(byte) < 0x80; }));
}

TEST(LayoutGoldenTest, SaysUnknownWhereNothingIsKnown) {
  expectGolden(goldenOf("unknown"), drawn(nothingKnown(), {.rows = 24, .columns = 80}));
}

TEST(LayoutGoldenTest, ExplainsTheKeys) {
  const WatchedTrace trace{1};
  WatchModel model = trace.model();
  model.showsHelp = true;
  expectGolden(goldenOf("help"), drawn(model, {.rows = 24, .columns = 80}));
}

}  // namespace
}  // namespace quellin::cli
