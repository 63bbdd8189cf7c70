// Segments and energy against sums of fractions, which never round, and against integrals that are known.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <numbers>
#include <optional>
#include <random>
#include <tuple>
#include <vector>

#include <boost/multiprecision/cpp_int.hpp>
#include <gmock/gmock.h>

#include "QuellinCore/Sessions/PowerSegments.h"
#include "Support/SampleStates.h"

namespace quellin {
namespace {

using PowerSessionMetrics::powerSegments;
using PowerSessionMetrics::wattHours;
using testing::SizeIs;
using testing_support::noonSeconds;
using Fraction = boost::multiprecision::cpp_rational;

double secondsOf(Instant instant) { return instant.time_since_epoch().count(); }

/// A figure without any rounding, and the sum of the magnitudes that went into it.
struct Exact {
  Fraction value = 0;
  Fraction magnitude = 0;
  int terms = 0;

  void add(const Fraction& term) {
    value += term;
    magnitude += abs(term);
    ++terms;
  }
};

/// Whether `computed` is what the same sum comes to in double precision: each term takes a handful of
/// roundings, and each addition one.
bool agrees(std::optional<double> computed, const Exact& exact, int roundings = 8) {
  constexpr double epsilon = std::numeric_limits<double>::epsilon();
  return computed && abs(Fraction(*computed) - exact.value) <=
                         exact.magnitude * Fraction(epsilon) * (exact.terms + roundings);
}

bool agrees(std::optional<double> computed, const Fraction& exact, int terms) {
  return agrees(computed, Exact{exact, abs(exact), terms});
}

Fraction elapsed(Instant from, Instant to) {
  const Fraction seconds = Fraction(secondsOf(to)) - Fraction(secondsOf(from));
  return seconds > 0 ? seconds : Fraction(0);
}

Exact exactWattHours(const std::vector<WattSample>& samples) {
  Exact energy;
  for (std::size_t index = 1; index < samples.size(); ++index) {
    const auto& [earlier, later] = std::tie(samples[index - 1], samples[index]);
    energy.add((Fraction(earlier.watts) + Fraction(later.watts)) *
               elapsed(earlier.timestamp, later.timestamp) / 7200);
  }
  return energy;
}

/// A stretch of points with one source, and what it comes to.
struct Stretch {
  std::vector<PowerSamplePoint> points;

  [[nodiscard]] std::vector<WattSample> readings() const {
    std::vector<WattSample> all;
    for (const auto& point : points) {
      if (point.watts) all.push_back({point.timestamp, *point.watts});
    }
    return all;
  }

  /// The energy over the duration, or the mean where there is none of either.
  [[nodiscard]] Exact averageWatts() const {
    const auto samples = readings();
    const Fraction duration = elapsed(points.front().timestamp, points.back().timestamp);
    if (samples.size() > 1 && duration > 0) {
      Exact average = exactWattHours(samples);
      average.value *= 3600 / duration;
      average.magnitude *= 3600 / duration;
      return average;
    }
    Exact mean;
    for (const auto& sample : samples) mean.add(Fraction(sample.watts) / samples.size());
    return mean;
  }
};

std::vector<Stretch> stretches(const std::vector<PowerSamplePoint>& points) {
  std::vector<Stretch> all;
  for (const auto& point : points) {
    const bool isNew = all.empty() || all.back().points.front().sourceKind != point.sourceKind ||
                       all.back().points.front().acConnected != point.acConnected;
    if (isNew) all.emplace_back();
    all.back().points.push_back(point);
  }
  return all;
}

/// A made-up session: sources change, readings are missing, the machine sleeps, the clock is set back.
std::vector<PowerSamplePoint> randomPoints(std::mt19937_64& random) {
  const auto chance = [&] { return std::uniform_real_distribution<>{0, 1}(random); };
  std::vector<PowerSamplePoint> points;
  PowerSamplePoint point{instantAt(noonSeconds), {}, "batteryDischarge", "Battery draw", false, {}};
  for (int index = 0; index < 400; ++index) {
    const double step = chance();
    point.timestamp += Seconds{step < 0.01 ? 1800 : step < 0.03 ? -7.3 : step < 0.05 ? 0 : 2 + chance() / 8};
    point.watts = chance() < 0.1 ? std::nullopt : std::optional(chance() * std::pow(10, 3 * chance() - 1));
    if (chance() < 0.03) point.sourceKind = chance() < 0.5 ? "batteryDischarge" : "ioReportSiliconPower";
    if (chance() < 0.03) point.acConnected = chance() < 0.3 ? std::nullopt : std::optional(chance() < 0.5);
    points.push_back(point);
  }
  return points;
}

void expectAgreement(const PowerSessionPowerSegment& segment, const Stretch& stretch) {
  const auto readings = stretch.readings();
  EXPECT_EQ(segment.startedAt, stretch.points.front().timestamp);
  EXPECT_EQ(segment.endedAt, stretch.points.back().timestamp);
  EXPECT_EQ(segment.sampleCount, std::ssize(stretch.points));
  EXPECT_EQ(segment.wattSampleCount, std::ssize(readings));
  EXPECT_TRUE(agrees(segment.durationSeconds, elapsed(segment.startedAt, segment.endedAt), 1));
  EXPECT_EQ(segment.totalWattHours.has_value(), readings.size() >= 2);
  EXPECT_EQ(segment.averageWatts.has_value(), !readings.empty());
  if (readings.empty()) return;
  const auto [smallest, largest] = std::ranges::minmax(readings, {}, &WattSample::watts);
  EXPECT_EQ(segment.minWatts, smallest.watts);
  EXPECT_EQ(segment.maxWatts, largest.watts);
  EXPECT_TRUE(agrees(segment.averageWatts, stretch.averageWatts()));
  if (readings.size() < 2) return;
  EXPECT_TRUE(agrees(segment.totalWattHours, exactWattHours(readings)));
}

/// One reading a step of `watts`, a function of the seconds since the first.
std::vector<WattSample> sampled(double seconds, double step, const std::function<double(double)>& watts) {
  std::vector<WattSample> all;
  for (double time = 0; time <= seconds; time += step)
    all.push_back({instantAt(noonSeconds + time), watts(time)});
  return all;
}

std::vector<PowerSamplePoint> onBattery(const std::vector<WattSample>& samples) {
  std::vector<PowerSamplePoint> points;
  for (const auto& [timestamp, watts] : samples) {
    points.push_back({timestamp, watts, "batteryDischarge", "Battery draw", false, {}});
  }
  return points;
}

/// The energy of readings in order, by both ways to it.
void expectWattHours(const std::vector<WattSample>& samples, const Fraction& wanted) {
  const int terms = static_cast<int>(samples.size());
  EXPECT_TRUE(agrees(wattHours(samples), wanted, terms)) << *wattHours(samples) << " Wh";
  const auto segments = powerSegments(onBattery(samples));
  ASSERT_THAT(segments, SizeIs(1));
  EXPECT_TRUE(agrees(segments[0].totalWattHours, wanted, terms)) << *segments[0].totalWattHours << " Wh";
}

TEST(EnergyArithmeticTest, SegmentsOfMadeUpSessionsAreThoseOfExactArithmetic) {
  std::mt19937_64 random(20250306);
  std::size_t segmentCount = 0;
  for (int session = 0; session < 40; ++session) {
    SCOPED_TRACE(session);
    const auto points = randomPoints(random);
    const auto segments = powerSegments(points);
    const auto wanted = stretches(points);
    ASSERT_THAT(segments, SizeIs(wanted.size()));
    for (std::size_t index = 0; index < segments.size(); ++index)
      expectAgreement(segments[index], wanted[index]);
    segmentCount += segments.size();
  }
  EXPECT_GT(segmentCount, 400U);
}

TEST(EnergyArithmeticTest, EnergyOfReadingsInAnyOrderIsThatOfExactArithmetic) {
  std::mt19937_64 random(20250307);
  for (int session = 0; session < 40; ++session) {
    auto samples = Stretch{randomPoints(random)}.readings();
    std::ranges::shuffle(samples, random);
    const auto computed = wattHours(samples);
    std::ranges::stable_sort(samples, {}, &WattSample::timestamp);
    EXPECT_TRUE(agrees(computed, exactWattHours(samples))) << session;
  }
}

TEST(EnergyArithmeticTest, TheComparisonNoticesASlightlyWrongFigureAndAnotherRule) {
  const auto samples = sampled(3600, 2, [](double time) { return 10 + time / 1000; });
  const Exact exact = exactWattHours(samples);
  ASSERT_TRUE(agrees(wattHours(samples), exact));
  EXPECT_FALSE(agrees(std::nullopt, exact));
  EXPECT_FALSE(agrees(*wattHours(samples) * (1 + 1e-11), exact));
  double leftRectangles = 0;
  for (std::size_t index = 1; index < samples.size(); ++index)
    leftRectangles += samples[index - 1].watts * 2 / 3600;
  EXPECT_FALSE(agrees(leftRectangles, exact));
  auto shortened = samples;
  shortened.pop_back();
  EXPECT_FALSE(agrees(wattHours(shortened), exact));
}

TEST(EnergyArithmeticTest, AConstantOverADay) {
  expectWattHours(sampled(86400, 1, [](double) { return 12.5; }), 300);
}

TEST(EnergyArithmeticTest, ARampIsItsTriangle) {
  expectWattHours(sampled(7200, 5, [](double time) { return time / 100; }), 72);
}

TEST(EnergyArithmeticTest, AStepIsCutInTheMiddle) {
  expectWattHours(sampled(7199, 1, [](double time) { return time < 3600 ? 10.0 : 20.0; }),
                  Fraction(10 * 3599 + 15 + 20 * 3599, 3600));
}

// The trapezoids under half a wave of n panels make up (pi / n) cot(pi / 2n) instead of 2, over whole waves
// nothing.
TEST(EnergyArithmeticTest, ASineIsItsIntegralButForTheCurvature) {
  using std::numbers::pi;
  constexpr int panels = 1800;
  const auto halfWave = sampled(3600, 2, [](double time) { return 30 * std::sin(pi * time / 3600); });
  ASSERT_THAT(halfWave, SizeIs(panels + 1));
  const double trapezoids = 30 / pi * (pi / panels) / std::tan(pi / (2 * panels));
  EXPECT_NEAR(*wattHours(halfWave), trapezoids, 1e-12 * trapezoids);
  EXPECT_NEAR(*wattHours(halfWave), 60 / pi, 60 / pi * pi * pi / 12 / panels / panels * 1.01);
  const auto wholeWaves = sampled(7200, 2, [](double time) { return 40 + 30 * std::sin(pi * time / 1800); });
  EXPECT_NEAR(*wattHours(wholeWaves), 80, 1e-11);
}

TEST(EnergyArithmeticTest, ThirtyMinutesAsleepAreBridgedByOneTrapezoid) {
  auto samples = sampled(600, 2, [](double) { return 10.0; });
  for (const auto& later : sampled(600, 2, [](double) { return 20.0; })) {
    samples.push_back({later.timestamp + Seconds{600 + 1800}, later.watts});
  }
  expectWattHours(samples, Fraction(10 * 600 + 15 * 1800 + 20 * 600, 3600));
  const auto segments = powerSegments(onBattery(samples));
  EXPECT_EQ(segments[0].durationSeconds, 3000);
  EXPECT_TRUE(agrees(segments[0].averageWatts, Fraction(15), 602));
}

TEST(EnergyArithmeticTest, AClockSteppingBackAddsNoEnergyAndTakesNoneAway) {
  auto samples = sampled(3600, 4, [](double) { return 10.0; });
  for (const auto& later : sampled(3600, 4, [](double) { return 30.0; })) {
    samples.push_back({later.timestamp + Seconds{1800}, later.watts});
  }
  const auto segments = powerSegments(onBattery(samples));
  ASSERT_THAT(segments, SizeIs(1));
  EXPECT_TRUE(agrees(segments[0].totalWattHours, Fraction(40), 1802)) << "both hours, nothing for the step";
  EXPECT_EQ(segments[0].durationSeconds, 5400) << "by the clock";
  EXPECT_TRUE(agrees(segments[0].averageWatts, Fraction(40 * 3600, 5400), 1802));
  // By the time that they carry, the readings of the half hour that was lived twice alternate.
  EXPECT_TRUE(agrees(wattHours(samples), exactWattHours([&] {
                       std::ranges::stable_sort(samples, {}, &WattSample::timestamp);
                       return samples;
                     }())));
  EXPECT_NEAR(*wattHours(samples), 5 + 10 + 15, 0.05);
}

}  // namespace
}  // namespace quellin
