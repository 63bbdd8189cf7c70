#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Analysis/ComparedSessions.h"
#include "QuellinCore/Sessions/Analysis/ComparisonVerdict.h"
#include "QuellinCore/Sessions/Analysis/KindHolders.h"
#include "QuellinCore/Sessions/Analysis/SessionComparison.h"

namespace quellin {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing_support::comparedSession;
using testing_support::comparedSource;
using testing_support::sessionDrawing;

using Quantity = ComparedQuantity;
using Sessions = std::vector<ComparedSession>;

SessionComparison compared(Sessions a, Sessions b, std::optional<double> thresholdPercent = std::nullopt) {
  const auto result = compareSessions(std::move(a), std::move(b), thresholdPercent);
  EXPECT_TRUE(result.has_value()) << result.error();
  return result.value_or(SessionComparison{});
}

std::string refusal(Sessions a, Sessions b) {
  const auto result = compareSessions(std::move(a), std::move(b));
  return result ? "" : result.error();
}

std::vector<Quantity> quantitiesOf(const KindComparison& kind) {
  std::vector<Quantity> quantities;
  for (const ComparedFigure& figure : kind.figures) quantities.push_back(figure.quantity);
  return quantities;
}

ComparedSession with(ComparedSession session, const std::string& status) {
  session.session.status = status;
  return session;
}

// Thirty readings of one kind that go up and down.
ComparedSession single(const std::string& kind, double watts) {
  std::vector<double> readings;
  for (int place = 0; place < 30; ++place) readings.push_back(watts + place % 3);
  return comparedSession({comparedSource(kind, readings)});
}

TEST(SessionComparisonTest, RepeatsAreComparedByEnergyPowerAndTime) {
  const auto result = compared({sessionDrawing(10, 20), sessionDrawing(12, 22)},
                               {sessionDrawing(5, 10), sessionDrawing(6, 11), sessionDrawing(7, 12)});
  ASSERT_THAT(result.kinds, SizeIs(1));
  const KindComparison& kind = result.kinds[0];
  EXPECT_EQ(kind.sourceKind, "batteryDischarge");
  EXPECT_EQ(kind.sourceLabel, "label of batteryDischarge");
  EXPECT_EQ(kind.confidence, "batteryTerminal");
  EXPECT_THAT(quantitiesOf(kind), ElementsAre(Quantity::joules, Quantity::averageWatts));
  const ComparedFigure& joules = kind.figures[0];
  EXPECT_EQ(joules.meanA, 22);
  EXPECT_EQ(joules.meanB, 12);
  EXPECT_EQ(joules.difference, -10);
  EXPECT_NEAR(joules.percent.value_or(0), -45.4545, 1e-4);
  EXPECT_EQ(joules.countA, 2);
  EXPECT_EQ(joules.countB, 3);
  EXPECT_EQ(joules.interval, welchInterval(std::vector{20.0, 24.0}, std::vector{10.0, 12.0, 14.0}));
  EXPECT_EQ(joules.noInterval, std::nullopt);
  EXPECT_EQ(kind.figures[1].difference, -5);
  ASSERT_TRUE(result.time.has_value());
  EXPECT_EQ(result.time->quantity, Quantity::seconds);
  EXPECT_EQ(result.time->difference, -10);
  EXPECT_TRUE(result.time->interval.has_value());
  EXPECT_THAT(result.a, SizeIs(2));
  EXPECT_THAT(result.b, SizeIs(3));
}

TEST(SessionComparisonTest, TheOutcomeIsThatOfTheEnergyWhereThereIsOne) {
  const auto result = compared({sessionDrawing(10), sessionDrawing(10.1)},
                               {comparedSession({comparedSource("batteryDischarge", {20})}),
                                comparedSession({comparedSource("batteryDischarge", {20.1})})});
  EXPECT_THAT(quantitiesOf(result.kinds[0]), ElementsAre(Quantity::averageWatts))
      << "one reading has no energy";
  EXPECT_EQ(result.kinds[0].outcome, ComparisonOutcome::more);
  const auto longer = compared({sessionDrawing(10), sessionDrawing(10.1)},
                               {comparedSession({comparedSource("batteryDischarge", {8, 8, 8, 8})}),
                                comparedSession({comparedSource("batteryDischarge", {8.1, 8.1, 8.1, 8.1})})});
  EXPECT_EQ(longer.kinds[0].outcome, ComparisonOutcome::more) << "less power, but for longer";
}

TEST(SessionComparisonTest, SingleSessionsAreComparedByTheirReadings) {
  const auto a = single("batteryDischarge", 10);
  const auto b = single("batteryDischarge", 20);
  const auto result = compared({a}, {b});
  const KindComparison& kind = result.kinds.at(0);
  EXPECT_THAT(quantitiesOf(kind), ElementsAre(Quantity::readingsWatts, Quantity::joules));
  EXPECT_EQ(kind.figures[0].interval, bootstrapInterval(a.sources[0].watts, b.sources[0].watts));
  EXPECT_DOUBLE_EQ(kind.figures[0].meanA, 11);
  EXPECT_EQ(kind.figures[0].countB, 30);
  EXPECT_EQ(kind.outcome, ComparisonOutcome::more);
  EXPECT_EQ(kind.figures[1].interval, std::nullopt) << "one energy says nothing of others";
  EXPECT_THAT(kind.figures[1].noInterval.value_or(""), HasSubstr("one session on a side"));
  EXPECT_EQ(result.time->interval, std::nullopt);
}

// One session of each power.
Sessions repeatsDrawing(std::initializer_list<double> watts) {
  Sessions sessions;
  for (const double each : watts) sessions.push_back(sessionDrawing(each));
  return sessions;
}

TEST(SessionComparisonTest, AThresholdRaisesWhatAVariesBy) {
  const Sessions a = repeatsDrawing({9, 10, 11});
  const Sessions b = repeatsDrawing({24, 24.5, 25});
  const KindComparison kind = compared(a, b, 100).kinds.at(0);
  const std::vector<double> joulesOfB{KindHolders(b, "batteryDischarge").joules().value()};
  std::vector<double> twiceOfA{KindHolders(a, "batteryDischarge").joules().value()};
  for (double& joules : twiceOfA) joules *= 2;
  EXPECT_EQ(kind.overThreshold, welchInterval(twiceOfA, joulesOfB));
  EXPECT_GT(kind.figures[0].interval->lower, kind.figures[0].meanA)
      << "the interval of the difference alone would call it exceeded";
  EXPECT_EQ(kind.exceedsThreshold, false);
}

TEST(SessionComparisonTest, AThresholdIsJudgedByTheMethodOfTheFirstFigure) {
  const auto a = single("batteryDischarge", 10);
  const auto b = single("batteryDischarge", 20);
  EXPECT_EQ(compared({a}, {b}).kinds.at(0).overThreshold, std::nullopt);
  EXPECT_EQ(compared({a}, {b}).exceedsThreshold, std::nullopt);
  const auto exceeded = compared({a}, {b}, 50);
  EXPECT_EQ(exceeded.thresholdPercent, 50);
  EXPECT_EQ(exceeded.kinds.at(0).overThreshold->method, "moving-block bootstrap");
  EXPECT_EQ(exceeded.exceedsThreshold, true);
  EXPECT_EQ(compared({a}, {b}, 95).exceedsThreshold, false) << "21 W are not shown to be above 21.45 W";
  EXPECT_EQ(compared({a}, {b}, 0).kinds.at(0).overThreshold, exceeded.kinds.at(0).figures[0].interval);
}

TEST(SessionComparisonTest, NoThresholdIsAppliedToASessionThatIsNotOver) {
  const auto a = single("batteryDischarge", 10);
  for (const char* status : {"interrupted", "active"}) {
    const auto unfinished = with(single("batteryDischarge", 20), status);
    for (const auto& result : {compared({a}, {unfinished}, 5), compared({unfinished}, {a}, 5)}) {
      EXPECT_EQ(result.kinds.at(0).overThreshold, std::nullopt);
      EXPECT_EQ(result.exceedsThreshold, std::nullopt);
      EXPECT_TRUE(result.kinds.at(0).figures[0].interval.has_value()) << "compared it is";
    }
    EXPECT_THAT(unjudgedUses(compared({a}, {unfinished}, 5)),
                ElementsAre(std::string{"label of batteryDischarge (the session of B is "} + status + ")"));
  }
}

TEST(SessionComparisonTest, BelowZeroAThresholdLiesAboveAToo) {
  const auto negative = single("batteryDischarge", -20);
  EXPECT_EQ(compared({negative}, {negative}, 10).exceedsThreshold, false);
  EXPECT_EQ(compared({negative}, {single("batteryDischarge", -17.5)}, 10).exceedsThreshold, true);
}

TEST(SessionComparisonTest, RepeatsWithoutEnergyAndChargeAreNotJudged) {
  const auto brief = comparedSession({comparedSource("batteryDischarge", {20})});
  EXPECT_EQ(compared({brief, brief}, {brief, brief}, 10).kinds.at(0).overThreshold, std::nullopt);
  const auto input = single("batteryChargeInput", 10);
  EXPECT_EQ(compared({input}, {input}, 10).kinds.at(0).overThreshold, std::nullopt);
}

TEST(SessionComparisonTest, TooFewReadingsOrOneBesideSeveralHaveADifferenceWithoutAnInterval) {
  const auto few = compared({sessionDrawing(10)}, {single("batteryDischarge", 20)});
  EXPECT_EQ(few.kinds[0].outcome, ComparisonOutcome::uncertain);
  EXPECT_EQ(few.kinds[0].figures[0].noInterval, "fewer than 30 readings on a side");
  EXPECT_DOUBLE_EQ(few.kinds[0].figures[0].difference, 11);
  const auto mixed = compared({single("batteryDischarge", 10)},
                              {single("batteryDischarge", 20), single("batteryDischarge", 21)});
  EXPECT_THAT(quantitiesOf(mixed.kinds[0]), ElementsAre(Quantity::joules, Quantity::averageWatts));
  EXPECT_EQ(mixed.kinds[0].outcome, ComparisonOutcome::uncertain);
  EXPECT_DOUBLE_EQ(mixed.kinds[0].figures[1].difference, 10.5);
}

TEST(SessionComparisonTest, KindsOfOneSideOnlyAreNotCompared) {
  const auto both = comparedSession(
      {comparedSource("batterySupplement", {3, 4}), comparedSource("batteryDischarge", {10, 11})});
  const auto result = compared({both}, {comparedSession({comparedSource("ioReportSiliconPower", {1, 2}),
                                                         comparedSource("batteryDischarge", {5, 6})})});
  ASSERT_THAT(result.kinds, SizeIs(1));
  EXPECT_EQ(result.kinds[0].sourceKind, "batteryDischarge");
  EXPECT_EQ(result.kinds[0].figures[0].meanA, 10.5) << "nothing of the other kind in it";
  EXPECT_THAT(
      result.notCompared,
      ElementsAre(
          NotCompared{"label of batterySupplement", "batterySupplement", "only A has readings of it"},
          NotCompared{"label of ioReportSiliconPower", "ioReportSiliconPower", "only B has readings of it"}));
}

TEST(SessionComparisonTest, EnergyIsNotComparedWhereItIsThatOfAPartOfTheTime) {
  const auto mixed = comparedSession(
      {comparedSource("batteryDischarge", {10, 11}), comparedSource("batterySupplement", {10, 11})});
  const auto repeats = compared({sessionDrawing(10), sessionDrawing(11)}, {sessionDrawing(10), mixed});
  EXPECT_THAT(quantitiesOf(repeats.kinds[0]), ElementsAre(Quantity::averageWatts));
  EXPECT_THAT(repeats.notes, Contains(HasSubstr("energy is not compared")));
  const auto active = compared({with(sessionDrawing(10), "active")}, {sessionDrawing(10)});
  EXPECT_THAT(quantitiesOf(active.kinds[0]), ElementsAre(Quantity::readingsWatts));
  EXPECT_EQ(active.time, std::nullopt);
}

TEST(SessionComparisonTest, EnergyIsNotComparedWhereAStretchOrASessionHasNone) {
  ComparedSession partial = sessionDrawing(10);
  partial.lacksEnergy = true;
  EXPECT_THAT(quantitiesOf(compared({partial}, {sessionDrawing(10)}).kinds[0]),
              ElementsAre(Quantity::readingsWatts));
  EXPECT_THAT(quantitiesOf(
                  compared({sessionDrawing(10), sessionDrawing(11)}, {sessionDrawing(10), partial}).kinds[0]),
              ElementsAre(Quantity::averageWatts));
  const auto without = compared({sessionDrawing(10), sessionDrawing(11)},
                                {sessionDrawing(10), sessionDrawing(11), comparedSession({})});
  EXPECT_THAT(quantitiesOf(without.kinds[0]), ElementsAre(Quantity::averageWatts));
  EXPECT_THAT(without.notes, Contains(HasSubstr("energy is not compared")));
}

TEST(SessionComparisonTest, WithoutAKindInCommonItRefusesAndNamesBoth) {
  EXPECT_THAT(
      refusal({comparedSession(
                  {comparedSource("batteryDischarge", {1, 2}), comparedSource("batterySupplement", {1, 2})})},
              {comparedSession({comparedSource("ioReportSiliconPower", {1, 2})})}),
      AllOf(HasSubstr("A has readings of label of batteryDischarge on battery, label of batterySupplement"),
            HasSubstr("B has readings of label of ioReportSiliconPower")));
  EXPECT_THAT(refusal({sessionDrawing(1)}, {comparedSession({})}), HasSubstr("B has no readings of power"));
}

TEST(SessionComparisonTest, ReadingsOnBatteryAreNotComparedWithThoseBesideACharger) {
  const auto silicon = [](bool onBattery, bool onCharger) {
    ComparedSource source = comparedSource("ioReportSiliconPower", {1, 2});
    source.supply = {.onBattery = onBattery, .onCharger = onCharger, .onUnknown = !onBattery && !onCharger};
    return source;
  };
  EXPECT_THAT(refusal({comparedSession({silicon(true, false)})}, {comparedSession({silicon(false, true)})}),
              AllOf(HasSubstr("A has readings of label of ioReportSiliconPower on battery, "),
                    HasSubstr("B has readings of label of ioReportSiliconPower with a charger, "),
                    HasSubstr("on one supply")));
  const ComparedSource draw = comparedSource("batteryDischarge", {1, 2});
  const auto result = compared({comparedSession({silicon(false, true), draw})},
                               {comparedSession({silicon(true, false), draw})});
  EXPECT_THAT(result.kinds, SizeIs(1));
  EXPECT_THAT(result.notCompared,
              ElementsAre(NotCompared{"label of ioReportSiliconPower", "ioReportSiliconPower",
                                      "A has readings of it with a charger, B on battery"}));
  const ComparedSession battery = comparedSession({silicon(true, false)});
  const ComparedSession charger = comparedSession({silicon(false, true)});
  const ComparedSession unknown = comparedSession({silicon(false, false)});
  for (const auto& one : {battery, charger, unknown}) EXPECT_THAT(compared({one}, {one}).kinds, SizeIs(1));
  const ComparedSession both = comparedSession({silicon(true, true)});
  ComparedSession partly = battery;
  partly.sources[0].supply.onUnknown = true;
  for (const auto& other : {both, charger, unknown, partly}) {
    EXPECT_THAT(refusal({battery}, {other}), HasSubstr("nothing can be compared"));
    EXPECT_THAT(refusal({other}, {battery}), HasSubstr("nothing can be compared"));
  }
  EXPECT_THAT(refusal({both}, {both}), HasSubstr("nothing can be compared"));
  EXPECT_THAT(refusal({partly}, {partly}), HasSubstr("nothing can be compared"));
}

TEST(SessionComparisonTest, OneSessionOnAnotherSupplyIsEnoughToRefuseAndIsCounted) {
  const auto repeat = [](bool onBattery) {
    ComparedSource source = comparedSource("ioReportSiliconPower", {1, 2});
    source.supply.onBattery = onBattery;
    source.supply.onCharger = !onBattery;
    return comparedSession({source});
  };
  EXPECT_THAT(refusal({repeat(true), repeat(true), repeat(false)}, {repeat(true), repeat(false)}),
              AllOf(HasSubstr("ioReportSiliconPower (2 sessions on battery, 1 session with a charger), B"),
                    HasSubstr("ioReportSiliconPower (1 session on battery, 1 session with a charger), and")));
}

TEST(SessionComparisonTest, OfSeveralSessionsOnlyCompletedOnesAreRepeats) {
  const auto result = compared({sessionDrawing(10), with(sessionDrawing(1), "active"), sessionDrawing(12)},
                               {with(sessionDrawing(1), "interrupted"), sessionDrawing(12)});
  EXPECT_EQ(result.kinds[0].figures[0].meanA, 22);
  EXPECT_THAT(result.a, SizeIs(2));
  EXPECT_THAT(result.b, SizeIs(1));
  const std::string none = "session 00000000-0000-0000-0000-000000000000";
  EXPECT_THAT(result.notCompared, ElementsAre(NotCompared{none, std::nullopt, "is active"},
                                              NotCompared{none, std::nullopt, "is interrupted"}));
  EXPECT_THAT(refusal({sessionDrawing(1), sessionDrawing(2)},
                      {with(sessionDrawing(1), "active"), with(sessionDrawing(1), "active")}),
              HasSubstr("of the sessions of B none is completed"));
}

TEST(SessionComparisonTest, NothingHasNoPercentage) {
  const auto result =
      compared({sessionDrawing(0), sessionDrawing(0)}, {sessionDrawing(1), sessionDrawing(2)});
  EXPECT_EQ(result.kinds[0].figures[0].percent, std::nullopt);
}

}  // namespace
}  // namespace quellin
