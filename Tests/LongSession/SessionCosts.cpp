#include "LongSession/SessionCosts.h"

#include <algorithm>

namespace quellin::testing_support {
namespace {

constexpr std::int64_t kibibyte = 1024;
constexpr std::int64_t mebibyte = 1024 * kibibyte;

double secondsOf(const ReadingCost& cost) { return cost.seconds; }
double allocationsOf(const ReadingCost& cost) { return static_cast<double>(cost.allocations); }

std::string faultOf(std::span<const ReadingCosts> costs, ReadingCost ReadingCosts::* reading,
                    std::int64_t segmentLength, const std::string& name) {
  // Others on the machine and its caches make time uneven, so that only what outgrows them counts; the times
  // that memory is asked for are the same in every run.
  constexpr double mostTime = 2.5;
  constexpr double mostAllocations = 1.25;
  constexpr std::int64_t held = 256 * kibibyte;
  constexpr std::int64_t heldPerSegment = 2 * kibibyte;
  for (const ReadingCosts& cost : costs) {
    const ReadingCost& at = cost.*reading;
    if (at.seconds <= 0 || at.allocations <= 0 || at.mostHeld <= 0) return name + " was not measured";
    if (at.mostHeld > held + heldPerSegment * (cost.samples / segmentLength + 1))
      return name + " holds more memory the more samples there are";
  }
  if (growthOfCost(costs, reading, allocationsOf) > mostAllocations)
    return name + " asks for memory more often a sample the more samples there are";
  if (growthOfCost(costs, reading, secondsOf) > mostTime)
    return name + " takes longer a sample the more samples there are";
  return "";
}

}  // namespace

double growthOfCost(std::span<const ReadingCosts> costs, ReadingCost ReadingCosts::* reading,
                    double (*amount)(const ReadingCost&)) {
  const auto perSample = [&](const ReadingCosts& cost) {
    return amount(cost.*reading) / static_cast<double>(cost.samples);
  };
  return perSample(*std::ranges::max_element(costs, {}, perSample)) / perSample(costs.front());
}

std::string faultOfRecording(const RecordingFootprint& tenth, const RecordingFootprint& middle,
                             const RecordingFootprint& end, std::int64_t segmentLength,
                             bool residentIsKnown) {
  constexpr std::int64_t heapSlack = 64 * kibibyte;
  constexpr std::int64_t heapPerSegment = kibibyte;
  constexpr std::int64_t residentSlack = 4 * mebibyte;
  constexpr std::int64_t residentPerSegment = 8 * kibibyte;
  // The store empties the log once it holds 256 pages of 4 KiB; the largest transaction comes on top.
  constexpr std::int64_t longestLog = mebibyte + mebibyte / 2;
  const auto segments = [&](const RecordingFootprint& from) {
    return (end.samples - from.samples) / segmentLength + 1;
  };
  if (end.heap - middle.heap > heapSlack + heapPerSegment * segments(middle))
    return "the heap grows with the samples";
  if (residentIsKnown && end.resident - tenth.resident > residentSlack + residentPerSegment * segments(tenth))
    return "the resident memory grows with the samples";
  if (std::max({tenth.log, middle.log, end.log}) > longestLog) return "the log is not emptied";
  return "";
}

std::string faultOfReading(std::span<const ReadingCosts> costs, std::int64_t segmentLength) {
  const std::string fault = faultOf(costs, &ReadingCosts::summary, segmentLength, "the summary");
  return fault.empty() ? faultOf(costs, &ReadingCosts::exporting, segmentLength, "the export") : fault;
}

}  // namespace quellin::testing_support
