#pragma once

#include <cstddef>
#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include "QuellinCore/Platform/Recorded/HostAnswers.h"
#include "QuellinCore/Platform/Recorded/TraceError.h"
#include "QuellinCore/Platform/Recorded/TraceHeader.h"
#include "QuellinCore/Platform/Recorded/TraceLines.h"
#include "QuellinCore/Support/JSON/JSONDecoder.h"

namespace quellin {

/// Reads a trace from its start to its end, one tick after the other, and holds one line of it at a time.
///
/// Lines of unknown kinds are passed over, as are unknown keys and sources. A last line without a line feed
/// that is cut short is dropped and counted: that is what a capture leaves that was killed. Any other fault
/// is an error, which every later call repeats. One thread at a time.
class TraceReader {
 public:
  /// Opens the trace at `path` and reads its first line.
  [[nodiscard]] static std::expected<TraceReader, TraceError> open(const std::string& path);

  /// Reads the first line of a trace from anywhere; errors call it `name`.
  [[nodiscard]] static std::expected<TraceReader, TraceError> over(std::string name, ByteSource source);

  [[nodiscard]] const std::string& path() const { return path_; }      ///< or the name given to `over`
  [[nodiscard]] const TraceHeader& header() const { return header_; }  ///< what the first line says

  /// The next tick; no value at the end of the trace. Its monotonic time is not before that of the tick
  /// before it.
  [[nodiscard]] std::expected<std::optional<HostAnswers>, TraceError> next();

  /// How many lines were dropped because they were cut short: 0, or at the end perhaps 1.
  [[nodiscard]] std::size_t tornLines() const { return tornLines_; }

 private:
  TraceReader(std::string path, ByteSource source);

  [[nodiscard]] std::optional<TraceError> readHeader();
  [[nodiscard]] std::expected<std::optional<TextLine>, TraceError> nextLine();
  [[nodiscard]] std::expected<std::optional<HostAnswers>, std::string> answersOf(std::string_view line);
  [[nodiscard]] std::unexpected<TraceError> fail(TraceError error);
  [[nodiscard]] TraceError damaged(std::string reason) const;

  std::string path_;
  TraceLines lines_;
  JSONDecoder decoder_;
  TraceHeader header_;
  std::size_t line_ = 0;
  std::size_t tornLines_ = 0;
  std::optional<Seconds> monotonic_;  // of the last tick
  std::optional<TraceError> error_;
};

}  // namespace quellin
