#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Analysis/ComparedSessions.h"
#include "QuellinCore/Sessions/Analysis/ComparisonNotes.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::comparedSession;
using testing_support::comparedSource;
using testing_support::sessionDrawing;

using Sessions = std::vector<ComparedSession>;

std::vector<std::string> notesOf(const Sessions& a, const Sessions& b) {
  const auto comparison = compareSessions(a, b);
  EXPECT_TRUE(comparison.has_value());
  return comparison ? comparison->notes : std::vector<std::string>{};
}

constexpr const char* noEnergyNote =
    "label of batteryDischarge: energy is not compared; for that every session must be completed, with at "
    "least "
    "two readings of this kind, and no stretch without them";

ComparedSession gapped(ComparedSession session) {
  session.coverage.gapCount = 2;
  return session;
}

TEST(ComparisonNotesTest, PlainRepeatsNeedNone) {
  EXPECT_THAT(notesOf({sessionDrawing(1), sessionDrawing(2)}, {sessionDrawing(1), sessionDrawing(3)}),
              IsEmpty());
}

TEST(ComparisonNotesTest, TellHowFarAnIntervalOfReadingsGoes) {
  std::vector<double> readings(30, 1.0);
  readings.back() = 2;
  const ComparedSession single = comparedSession({comparedSource("batteryDischarge", readings)});
  EXPECT_THAT(notesOf({single}, {single}),
              ElementsAre("an interval says how the readings of these two sessions "
                          "vary, not how far repeats differ, and promises too much for readings that hold or "
                          "change slowly"));
  EXPECT_THAT(notesOf({single}, {sessionDrawing(1)}), IsEmpty()) << "there is no interval";
}

TEST(ComparisonNotesTest, TellOfGapsAndUnlikeSampling) {
  ComparedSession slower = sessionDrawing(3);
  slower.session.sampleInterval = 5;
  EXPECT_THAT(notesOf({gapped(sessionDrawing(1))}, {slower}),
              ElementsAre("A has gaps without readings in 1 of 1 session; energy is bridged over them",
                          "the sessions were not all sampled at the same interval"));
  EXPECT_THAT(notesOf({sessionDrawing(1), sessionDrawing(2)}, {gapped(sessionDrawing(1)), sessionDrawing(3)}),
              ElementsAre("B has gaps without readings in 1 of 2 sessions; energy is bridged over them"));
}

TEST(ComparisonNotesTest, TellOfASessionThatIsNotOver) {
  ComparedSession active = sessionDrawing(1);
  active.session.status = "active";
  EXPECT_THAT(
      notesOf({active}, {sessionDrawing(1), sessionDrawing(2)}),
      ElementsAre(noEnergyNote, "the session of A is active: its readings are compared as far as they go"));
}

TEST(ComparisonNotesTest, TellWhereNothingIsKnownOfTheSupply) {
  ComparedSession unknown = sessionDrawing(1);
  unknown.sources[0].supply = {.onBattery = false, .onCharger = false, .onUnknown = true};
  EXPECT_THAT(notesOf({unknown}, {unknown}),
              ElementsAre("label of batteryDischarge: nothing is known of the supply of either side"));
}

TEST(ComparisonNotesTest, SayThatEnergyIsBridgedOnlyWhereItIsCompared) {
  ComparedSession partial = gapped(sessionDrawing(1));
  partial.lacksEnergy = true;
  EXPECT_THAT(notesOf({partial}, {sessionDrawing(1)}),
              ElementsAre(noEnergyNote, "A has gaps without readings in 1 of 1 session"));
}

TEST(ComparisonNotesTest, TellWhereOnlySomeSessionsHaveAKindAndWhereNothingVaries) {
  const ComparedSession other = comparedSession({comparedSource("batterySupplement", {1, 2})});
  EXPECT_THAT(
      notesOf({sessionDrawing(1), sessionDrawing(2), other}, {sessionDrawing(1), sessionDrawing(3)}),
      ElementsAre(noEnergyNote, "label of batteryDischarge: only 2 of 3 sessions of A have readings of it"));
  EXPECT_THAT(
      notesOf({sessionDrawing(1), sessionDrawing(1)}, {sessionDrawing(2), sessionDrawing(2)}),
      ElementsAre("label of batteryDischarge: the values of each side do not vary at all, so that the "
                  "interval promises too much"));
}

}  // namespace
}  // namespace quellin
