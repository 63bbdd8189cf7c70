#pragma once

#include <mach/mach.h>
#include <string>

#include "QuellinCore/Models/SourceDiagnosis.h"

namespace quellin::darwin {

/// Why a source gives nothing.
struct SourceFault {
  SourceAvailability availability = SourceAvailability::failed;
  std::string reason;  ///< one sentence in plain words
};

/// The machine or the system has no such source.
[[nodiscard]] SourceFault absentFault(std::string reason);

/// `call` failed; `error` says how, in the system's words.
[[nodiscard]] SourceFault failedFault(std::string call, const std::string& error);

/// `call` failed with a code of the kernel: not permitted when the code says so, failed otherwise.
[[nodiscard]] SourceFault kernelFault(std::string call, kern_return_t code);

/// The diagnosis of a source that gives nothing.
[[nodiscard]] SourceDiagnosis faultDiagnosis(std::string source, SourceFault fault, std::string path);

}  // namespace quellin::darwin
