#pragma once

#include <functional>
#include <span>
#include <string>
#include <sys/types.h>
#include <unistd.h>
#include <vector>

#include "QuellinCore/Models/HelperStatus.h"
#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Models/TemperatureSensor.h"
#include "QuellinCore/Support/FileDescriptor.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"

namespace quellin {

/// How the tool ends; the numbers are those of sysexits(3).
enum class ExitStatus : int {
  success = 0,           ///< the whole document was written
  usage = 64,            ///< no command word, or an unknown one
  encodingFailure = 70,  ///< the document could not be encoded; nothing was written
  systemFailure = 71,    ///< the process could not be made safe, or ran out of memory; nothing was written
  outputFailure = 74,    ///< standard output did not take the whole document
  notRoot = 77           ///< the effective user is not root
};

/// What one run of the tool meets. The defaults are those of the running process.
struct HelperSurroundings {
  uid_t effectiveUserID = geteuid();
  gid_t effectiveGroupID = getegid();
  int standardOutput = STDOUT_FILENO;
  int standardError = STDERR_FILENO;
  /// Where the temperatures and the telemetry come from; each is called at most once, and only for its
  /// command.
  std::function<std::vector<TemperatureSensor>()> readTemperatures;
  std::function<ProTelemetrySnapshot()> sampleProTelemetry;

  /// This process with the machine's own readings.
  [[nodiscard]] static HelperSurroundings ofThisProcess();
};

/// The tool from its arguments to its exit status. Single-threaded.
class QuellinHelperMain {
 public:
  /// Answers the arguments of the process, the program name being the first, and ends the process. A signal
  /// that cut the telemetry short ends it before anything is written.
  [[noreturn]] static void main(std::span<char* const> arguments);

  /// Answers the one command word in `arguments`; returns how the process is to end. Writes one JSON document
  /// to standard output, or one line to standard error, or nothing when the output itself fails or memory
  /// runs out.
  [[nodiscard]] static ExitStatus answer(std::span<const std::string> arguments,
                                         const HelperSurroundings& with);

  /// Writes `payload` as compact JSON in declaration order, then a line feed; returns how the process is to
  /// end.
  template <class Payload>
  [[nodiscard]] static ExitStatus emitJSON(const Payload& payload, const HelperSurroundings& with);

 private:
  static ExitStatus carryOut(std::span<const std::string> arguments, const HelperSurroundings& with);
  static ExitStatus fail(ExitStatus status, const char* message, const HelperSurroundings& with);
  static HelperStatus ownStatus(const std::string& path, const HelperSurroundings& with);
};

template <class Payload>
ExitStatus QuellinHelperMain::emitJSON(const Payload& payload, const HelperSurroundings& with) {
  const auto document = encodeJSON(payload);
  if (!document) return fail(ExitStatus::encodingFailure, "failed to encode helper payload\n", with);
  const bool written = writeAll(with.standardOutput, *document) && writeAll(with.standardOutput, "\n");
  return written ? ExitStatus::success : ExitStatus::outputFailure;
}

}  // namespace quellin
