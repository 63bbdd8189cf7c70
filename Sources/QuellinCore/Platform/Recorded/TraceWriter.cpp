#include "QuellinCore/Platform/Recorded/TraceWriter.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "QuellinCore/Platform/Recorded/TraceCoding.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"

namespace quellin {
namespace {

constexpr unsigned ownerOnly = S_IRUSR | S_IWUSR;

TraceError uncreatable(const std::string& path, const SystemError& error) {
  const bool exists = error.code == EEXIST;
  return {.path = path,
          .line = std::nullopt,
          .reason = exists ? "there is such a file already" : "it cannot be created: " + error.description(),
          .remedy = exists ? "Choose another name, or say that it may be replaced."
                           : "Choose a place where you may write."};
}

// A file that is replaced keeps the mode it had. Terminals and pipes have none to change.
std::expected<FileDescriptor, SystemError> createFile(const std::string& path, ExistingFile existing) {
  const int whenThere = existing == ExistingFile::replaced ? O_TRUNC : O_EXCL;
  auto file = openDescriptor(path, O_WRONLY | O_CREAT | O_APPEND | whenThere, ownerOnly);
  if (!file) return file;
  struct stat status{};
  if (fstat(file->get(), &status) != 0) return std::unexpected(SystemError::last());
  if (S_ISREG(status.st_mode) && fchmod(file->get(), ownerOnly) != 0) {
    return std::unexpected(SystemError::last());
  }
  return file;
}

}  // namespace

TraceHeader traceHeader(const PlatformSources& sources, const WallClock& clock, SerialNumbers serialNumbers) {
  TraceHeader header;
  header.createdAt = clock.now().time_since_epoch().count();
  header.redactsSerialNumbers = serialNumbers == SerialNumbers::redacted;
  header.diagnoses = TraceDiagnoses{.smc = sources.smc->diagnose(),
                                    .hid = sources.hid->diagnose(),
                                    .battery = sources.battery->diagnose(),
                                    .energy = sources.energy->diagnose(),
                                    .thermal = sources.thermal->diagnose(),
                                    .processes = sources.processes->diagnose()};
  return header;
}

TraceWriter::TraceWriter(std::string path, FileDescriptor file, SerialNumbers serialNumbers)
    : path_(std::move(path)), file_(std::move(file)), serialNumbers_(serialNumbers) {}

std::expected<TraceWriter, TraceError> TraceWriter::create(const std::string& path, const TraceHeader& header,
                                                           ExistingFile existing) {
  auto line = encodeJSON(header);
  if (!line) {
    return std::unexpected(TraceError{.path = path,
                                      .line = 1,
                                      .reason = line.error().message(),
                                      .remedy = "Set the clock of this machine."});
  }
  auto file = createFile(path, existing);
  if (!file) return std::unexpected(uncreatable(path, file.error()));
  TraceWriter writer{path, *std::move(file),
                     header.redactsSerialNumbers ? SerialNumbers::redacted : SerialNumbers::kept};
  if (auto written = writer.append(*std::move(line)); !written) return std::unexpected(written.error());
  return writer;
}

std::expected<void, TraceError> TraceWriter::write(const HostAnswers& answers) {
  auto line = tickLine(answers, serialNumbers_);
  if (!line) return std::unexpected(failed(std::move(line.error()), "This tick is left out."));
  return append(*std::move(line));
}

std::expected<void, TraceError> TraceWriter::append(std::string line) {
  line += '\n';
  if (const auto written = writeAll(file_.get(), line); !written) {
    // What cannot be taken back is a torn line, which readers drop.
    static_cast<void>(ftruncate(file_.get(), static_cast<off_t>(bytesWritten_)));
    return std::unexpected(failed("it cannot be written: " + written.error().description(),
                                  "Make room; the trace ends with its last whole tick."));
  }
  bytesWritten_ += line.size();
  return {};
}

TraceError TraceWriter::failed(std::string reason, std::string remedy) const {
  return {.path = path_, .line = std::nullopt, .reason = std::move(reason), .remedy = std::move(remedy)};
}

}  // namespace quellin
