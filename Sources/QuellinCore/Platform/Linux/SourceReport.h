#pragma once

#include <optional>
#include <span>
#include <string>

#include "QuellinCore/Models/SourceDiagnosis.h"
#include "QuellinCore/Support/SystemError.h"

namespace quellin {

/// A file that is there and could not be read.
struct ReadFault {
  std::string path;  ///< as a user would write it
  SystemError error;

  bool operator==(const ReadFault&) const = default;
};

/// Keeps the fault of `path` in `first` unless there is one already or `error` says that nothing is there.
void noteFirstFault(std::optional<ReadFault>& first, std::string path, const SystemError& error);

/// The source can be read but for `faults`, which follow `reason`. Where access to any of them is denied,
/// `permission` says what would help.
[[nodiscard]] SourceDiagnosis availableInPart(std::string source, std::string reason, std::string path,
                                              std::span<const ReadFault> faults, const char* permission);

/// What the failure to read a file says about a source: absent when the file or its device is not there, not
/// permitted when access is denied (then `permission` says what would help), failed otherwise.
[[nodiscard]] SourceDiagnosis unreadableSource(std::string source, const ReadFault& fault,
                                               std::optional<std::string> permission);

/// Whether the error says that there is nothing to read, as opposed to something that cannot be read.
[[nodiscard]] bool saysAbsent(const SystemError& error);

/// Whether the error says that this process may not read.
[[nodiscard]] bool saysNotPermitted(const SystemError& error);

}  // namespace quellin
