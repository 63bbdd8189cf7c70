#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// What came of running a child process.
struct ProcessRunResult {
  /// Exit status, or the number of the signal that ended the child; -1 when it could not be started.
  std::int32_t terminationStatus = -1;
  std::optional<std::string> outputData;  ///< the bytes of standard output; absent when there are none
  std::optional<std::string> errorData;   ///< the bytes of standard error; absent when there are none
  /// Standard output as text, trimmed of white space and line breaks; absent when it is not valid UTF-8.
  std::optional<std::string> output;
  /// Standard error as text, likewise; the system's description when the child could not be started.
  std::optional<std::string> error;

  bool operator==(const ProcessRunResult&) const = default;
};

/// The most bytes of one stream of a child that are kept; the rest is read and dropped.
inline constexpr std::size_t maximumChildOutput = std::size_t{16} << 20U;

/// What became of a child that ended with `terminationStatus` and had written `output` and `error`.
[[nodiscard]] ProcessRunResult processRunResult(std::int32_t terminationStatus, std::string output,
                                                std::string error);

/// Runs `executable` with `arguments` and blocks until it has ended; after `timeout` it is asked to
/// terminate.
///
/// The child's streams are read only once it has ended: one that fills a pipe is stalled until the deadline.
/// A process that the child left behind may hold the streams open: what it writes belongs to the result, but
/// it is not waited for beyond the deadline. No text tells of a timeout, the result is what the child left.
[[nodiscard]] ProcessRunResult runProcess(const std::string& executable,
                                          const std::vector<std::string>& arguments, Seconds timeout,
                                          MonotonicClock& clock);

}  // namespace quellin
