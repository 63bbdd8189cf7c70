// What the long sessions of the tests are held to notices what it is meant to notice.
#include <functional>
#include <utility>

#include <gmock/gmock.h>

#include "LongSession/SessionCosts.h"

namespace quellin {
namespace {

using testing_support::ReadingCost;
using testing_support::ReadingCosts;
using testing_support::RecordingFootprint;

constexpr std::int64_t segmentLength = 3600;
constexpr std::int64_t end = 60000;

std::vector<ReadingCosts> linearCosts() {
  std::vector<ReadingCosts> costs;
  for (const std::int64_t samples : {end / 8, end / 4, end / 2, end}) {
    const ReadingCost cost{
        .seconds = 1e-6 * static_cast<double>(samples), .allocations = 4 * samples, .mostHeld = 30'000};
    costs.push_back({.samples = samples, .summary = cost, .exporting = cost});
  }
  return costs;
}

using ChangeOfCost = std::function<void(ReadingCost&, std::int64_t samples)>;

std::string faultWith(const ChangeOfCost& change, ReadingCost ReadingCosts::* reading) {
  auto costs = linearCosts();
  for (ReadingCosts& cost : costs) change(cost.*reading, cost.samples);
  return testing_support::faultOfReading(costs, segmentLength);
}

TEST(SessionCostsTest, ReadingsInProportionAreLeftAlone) {
  EXPECT_EQ(testing_support::faultOfReading(linearCosts(), segmentLength), "");
  const auto twiceAsSlow = [](ReadingCost& cost, std::int64_t samples) {
    if (samples == end) cost.seconds *= 2;
  };
  EXPECT_EQ(faultWith(twiceAsSlow, &ReadingCosts::summary), "");
}

TEST(SessionCostsTest, ReadingsOutOfProportionAreNoticed) {
  const std::vector<std::pair<std::string, ChangeOfCost>> changes{
      {"takes longer a sample the more samples there are",
       [](ReadingCost& cost, std::int64_t samples) { cost.seconds *= static_cast<double>(samples); }},
      {"asks for memory more often a sample the more samples there are",
       [](ReadingCost& cost, std::int64_t samples) { cost.allocations *= samples; }},
      {"holds more memory the more samples there are",
       [](ReadingCost& cost, std::int64_t samples) { cost.mostHeld += 8 * samples; }},
      {"was not measured", [](ReadingCost& cost, std::int64_t) { cost.seconds = 0; }},
      {"was not measured", [](ReadingCost& cost, std::int64_t) { cost.allocations = 0; }},
      {"was not measured", [](ReadingCost& cost, std::int64_t) { cost.mostHeld = 0; }}};
  for (const auto& [fault, change] : changes) {
    EXPECT_EQ(faultWith(change, &ReadingCosts::summary), "the summary " + fault);
    EXPECT_EQ(faultWith(change, &ReadingCosts::exporting), "the export " + fault);
  }
}

struct Recorded {
  RecordingFootprint tenth{.samples = end / 10, .heap = 2'000'000, .resident = 10'000'000, .log = 1'000'000};
  RecordingFootprint middle{.samples = end / 2, .heap = 2'700'000, .resident = 13'000'000, .log = 1'060'000};
  RecordingFootprint last{.samples = end, .heap = 2'700'000, .resident = 13'000'000, .log = 1'060'000};

  [[nodiscard]] std::string fault(bool residentIsKnown = true) const {
    return testing_support::faultOfRecording(tenth, middle, last, segmentLength, residentIsKnown);
  }
};

TEST(SessionCostsTest, ARecordingThatFillsItsCachesIsLeftAlone) { EXPECT_EQ(Recorded{}.fault(), ""); }

TEST(SessionCostsTest, ARecordingThatGrowsIsNoticed) {
  Recorded heap;
  heap.last.heap += 3 * (end / 2);
  EXPECT_EQ(heap.fault(), "the heap grows with the samples");
  Recorded resident;
  resident.last.resident += 100 * end;
  EXPECT_EQ(resident.fault(), "the resident memory grows with the samples");
  EXPECT_EQ(resident.fault(false), "");
  Recorded log;
  log.last.log += 10 * end;
  EXPECT_EQ(log.fault(), "the log is not emptied");
}

}  // namespace
}  // namespace quellin
