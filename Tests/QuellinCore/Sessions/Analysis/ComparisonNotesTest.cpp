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
                          "vary, not how far repeats differ"));
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
      ElementsAre(
          "label of batteryDischarge: energy is not compared; for that every session must be completed, "
          "with at least two readings of this kind and none of another",
          "the session of A is active: its readings are compared as far as they go"));
}

TEST(ComparisonNotesTest, TellWhereOnlyOneSideHasReadingsOnBatteryToo) {
  ComparedSession charged = sessionDrawing(1);
  charged.sources[0].onCharger = true;
  ComparedSession both = charged;
  both.sources[0].onBattery = true;
  EXPECT_THAT(notesOf({charged, sessionDrawing(2)}, {both, sessionDrawing(3)}),
              ElementsAre("label of batteryDischarge: A has readings with a charger, B on battery and with a "
                          "charger"));
  EXPECT_THAT(notesOf({both, sessionDrawing(2)}, {both, sessionDrawing(3)}), IsEmpty());
  EXPECT_THAT(notesOf({sessionDrawing(1), sessionDrawing(2)}, {both, sessionDrawing(3)}), IsEmpty())
      << "nothing is known of A";
}

TEST(ComparisonNotesTest, TellWhereOnlySomeSessionsHaveAKindAndWhereNothingVaries) {
  const ComparedSession other = comparedSession({comparedSource("batterySupplement", {1, 2})});
  EXPECT_THAT(notesOf({sessionDrawing(1), sessionDrawing(2), other}, {sessionDrawing(1), sessionDrawing(3)}),
              ElementsAre("label of batteryDischarge: only 2 of 3 sessions of A have readings of it"));
  EXPECT_THAT(
      notesOf({sessionDrawing(1), sessionDrawing(1)}, {sessionDrawing(2), sessionDrawing(2)}),
      ElementsAre("label of batteryDischarge: the values of each side do not vary at all, so that the "
                  "interval promises too much"));
}

}  // namespace
}  // namespace quellin
