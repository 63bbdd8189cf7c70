#pragma once

#include <span>
#include <string>

#include "QuellinCore/Models/HelperStatus.h"
#include "QuellinCore/Support/FileDescriptor.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"
#include "QuellinHelper/ExitStatus.h"
#include "QuellinHelper/HelperSurroundings.h"

namespace quellin {

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
