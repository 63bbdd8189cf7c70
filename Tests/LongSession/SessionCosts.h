#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace quellin::testing_support {

/// What a process that records a session has taken of its host once the session has some length.
struct RecordingFootprint {
  std::int64_t samples = 0;
  std::int64_t heap = 0;      ///< bytes in use
  std::int64_t resident = 0;  ///< the most bytes so far
  std::int64_t log = 0;       ///< bytes of the file that the store writes ahead
};

/// What one way of reading a session took.
struct ReadingCost {
  double seconds = 0;            ///< of the processor
  std::int64_t allocations = 0;  ///< times that memory was asked for
  std::int64_t mostHeld = 0;     ///< the most bytes held at once
};

/// What the readings of a session took at one length.
struct ReadingCosts {
  std::int64_t samples = 0;
  ReadingCost summary;
  ReadingCost exporting;
};

/// How much dearer a sample of a longer session is than one of the first, at worst: 1 when cost is linear,
/// `n` when it is quadratic and the longest is `n` times as long as the first. Needs one of them.
[[nodiscard]] double growthOfCost(std::span<const ReadingCosts> costs, ReadingCost ReadingCosts::* reading,
                                  double (*amount)(const ReadingCost&));

/// Where recording takes more the longer it goes on, in words; empty where it does not. A session may keep
/// its segments, one for every `segmentLength` samples. `tenth`, `middle` and `end` are what was taken at a
/// tenth of the length, at half of it, when all caches are full, and at the end; `residentIsKnown` unless
/// what is freed stays resident.
[[nodiscard]] std::string faultOfRecording(const RecordingFootprint& tenth, const RecordingFootprint& middle,
                                           const RecordingFootprint& end, std::int64_t segmentLength,
                                           bool residentIsKnown);

/// Where readings of lengths of which each is at least twice the one before cost more than in proportion to
/// the samples, or hold more than the segments, in words; empty where they do not.
[[nodiscard]] std::string faultOfReading(std::span<const ReadingCosts> costs, std::int64_t segmentLength);

}  // namespace quellin::testing_support
