#pragma once

#include <cstdint>
#include <tuple>

#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// What recording a session has cost the machine: the figures of every process that recorded it, added up.
struct RecorderCost {
  /// CPU time, user and system, that the recording processes used between taking the session up and noting
  /// this last; all of their threads, whatever else they did, but not their child processes.
  double cpuSeconds = 0;

  /// What their stores handed to the write-ahead log in that time: database pages times the size of a page.
  /// Moving the log into the store file later writes at most as much again.
  std::int64_t bytesWritten = 0;

  static constexpr auto fields() {
    return std::tuple{Field{"cpuSeconds", &RecorderCost::cpuSeconds},
                      Field{"bytesWritten", &RecorderCost::bytesWritten}};
  }

  bool operator==(const RecorderCost&) const = default;
};

}  // namespace quellin
