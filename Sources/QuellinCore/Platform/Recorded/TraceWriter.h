#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>

#include "QuellinCore/Platform/PlatformSources.h"
#include "QuellinCore/Platform/Recorded/HostAnswers.h"
#include "QuellinCore/Platform/Recorded/TraceError.h"
#include "QuellinCore/Platform/Recorded/TraceHeader.h"
#include "QuellinCore/Platform/Recorded/TraceProperty.h"
#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/FileDescriptor.h"

namespace quellin {

/// What to do about a file that is there already.
enum class ExistingFile { refused, replaced };

/// The header of a trace that is begun now with these sources.
[[nodiscard]] TraceHeader traceHeader(const PlatformSources& sources, const WallClock& clock,
                                      SerialNumbers serialNumbers = SerialNumbers::redacted);

/// Writes a trace, which only its owner may read. Each line goes out in one piece, so a capture that is
/// killed leaves at most one line cut short, and one that runs out of space takes its last line back. One
/// thread at a time.
class TraceWriter {
 public:
  /// Creates the file at `path` and writes `header` as its first line.
  [[nodiscard]] static std::expected<TraceWriter, TraceError> create(
      const std::string& path, const TraceHeader& header, ExistingFile existing = ExistingFile::refused);

  /// Appends one tick. After an error the trace ends with the last tick that was written whole.
  [[nodiscard]] std::expected<void, TraceError> write(const HostAnswers& answers);

  [[nodiscard]] std::size_t bytesWritten() const { return bytesWritten_; }  ///< of whole lines

 private:
  TraceWriter(std::string path, FileDescriptor file, SerialNumbers serialNumbers);

  [[nodiscard]] std::expected<void, TraceError> append(std::string line);
  [[nodiscard]] TraceError failed(std::string reason, std::string remedy) const;

  std::string path_;
  FileDescriptor file_;
  SerialNumbers serialNumbers_;
  std::size_t bytesWritten_ = 0;
};

}  // namespace quellin
