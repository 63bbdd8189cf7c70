#include "QuellinCore/Platform/Recorded/TraceReader.h"

#include <cerrno>
#include <fcntl.h>
#include <utility>

#include "QuellinCore/Platform/Recorded/TraceCoding.h"

namespace quellin {
namespace {

TraceError unreadable(const std::string& path, const SystemError& error) {
  return {.path = path,
          .line = std::nullopt,
          .reason = "the trace cannot be read: " + error.description(),
          .remedy = "Name a file that exists and that you may read."};
}

TraceError faultyHeader(const std::string& path, HeaderFault fault) {
  return {.path = path,
          .line = 1,
          .reason = std::move(fault.reason),
          .remedy = fault.isNewer ? "Update quellin." : "Name a file that was written by `quellin capture`."};
}

}  // namespace

TraceReader::TraceReader(std::string path, ByteSource source)
    : path_(std::move(path)), lines_(std::move(source)) {}

std::expected<TraceReader, TraceError> TraceReader::open(const std::string& path) {
  auto file = openDescriptor(path, O_RDONLY);
  if (!file) return std::unexpected(unreadable(path, file.error()));
  return over(path, bytesOfFile(*std::move(file)));
}

std::expected<TraceReader, TraceError> TraceReader::over(std::string name, ByteSource source) {
  TraceReader reader{std::move(name), std::move(source)};
  if (auto error = reader.readHeader()) return std::unexpected(*std::move(error));
  return reader;
}

std::optional<TraceError> TraceReader::readHeader() {
  const auto line = nextLine();
  if (!line) return line.error();
  if (!*line) return faultyHeader(path_, {.reason = "the file is empty", .isNewer = false});
  auto header = headerOfLine(decoder_, (*line)->text);
  if (!header) return faultyHeader(path_, std::move(header.error()));
  header_ = *std::move(header);
  return std::nullopt;
}

std::expected<std::optional<HostAnswers>, TraceError> TraceReader::next() {
  if (error_) return std::unexpected(*error_);
  for (;;) {
    const auto line = nextLine();
    if (!line) return fail(line.error());
    if (!*line) return std::nullopt;
    auto answers = answersOf((*line)->text);
    if (!answers && !(*line)->isComplete) {
      ++tornLines_;
      return std::nullopt;
    }
    if (!answers) return fail(damaged(std::move(answers.error())));
    if (*answers) return *std::move(answers);
  }
}

std::expected<std::optional<TextLine>, TraceError> TraceReader::nextLine() {
  ++line_;
  auto line = lines_.next();
  if (line) return *std::move(line);
  if (line.error().code == EFBIG) return std::unexpected(damaged("the line is longer than 64 MiB"));
  return std::unexpected(unreadable(path_, line.error()));
}

// No value for a line that is to be passed over.
std::expected<std::optional<HostAnswers>, std::string> TraceReader::answersOf(std::string_view line) {
  const auto kind = traceLineKind(decoder_, line);
  if (!kind) return std::unexpected(kind.error());
  if (*kind == TraceLineKind::unknown) return std::nullopt;
  auto answers = answersOfTickLine(decoder_, line);
  if (!answers) return std::unexpected(std::move(answers.error()));
  if (monotonic_ && answers->monotonic < *monotonic_) {
    return std::unexpected("\"monotonic\" lies before that of the tick before it");
  }
  monotonic_ = answers->monotonic;
  return *std::move(answers);
}

std::unexpected<TraceError> TraceReader::fail(TraceError error) {
  error_ = std::move(error);
  return std::unexpected(*error_);
}

TraceError TraceReader::damaged(std::string reason) const {
  return {.path = path_,
          .line = line_,
          .reason = std::move(reason),
          .remedy = "The trace is damaged from this line on; the lines before it can be kept."};
}

}  // namespace quellin
