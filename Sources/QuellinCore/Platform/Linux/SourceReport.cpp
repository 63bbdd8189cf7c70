#include "QuellinCore/Platform/Linux/SourceReport.h"

#include <cerrno>
#include <utility>

namespace quellin {
namespace {

SourceAvailability availabilityAfter(const SystemError& error) {
  if (saysNotPermitted(error)) return SourceAvailability::notPermitted;
  return saysAbsent(error) ? SourceAvailability::absent : SourceAvailability::failed;
}

}  // namespace

void noteFirstFault(std::optional<ReadFault>& first, std::string path, const SystemError& error) {
  if (!first && !saysAbsent(error)) first = ReadFault{std::move(path), error};
}

SourceDiagnosis availableInPart(std::string source, std::string reason, std::string path,
                                std::span<const ReadFault> faults, const char* permission) {
  SourceDiagnosis diagnosis = availableSource(std::move(source), std::move(reason), std::move(path));
  for (const ReadFault& fault : faults) {
    diagnosis.reason += " " + fault.path + ": " + fault.error.description() + ".";
    if (saysNotPermitted(fault.error)) diagnosis.remedy = permission;
  }
  return diagnosis;
}

SourceDiagnosis unreadableSource(std::string source, const ReadFault& fault,
                                 std::optional<std::string> permission) {
  const SourceAvailability availability = availabilityAfter(fault.error);
  const bool isAbsent = availability == SourceAvailability::absent;
  return {.source = std::move(source),
          .availability = availability,
          .reason = (isAbsent ? "There is nothing to read: " : "Reading failed: ") +
                    fault.error.description() + ".",
          .path = fault.path,
          .remedy = availability == SourceAvailability::notPermitted ? std::move(permission) : std::nullopt};
}

bool saysAbsent(const SystemError& error) {
  return error.code == ENOENT || error.code == ENOTDIR || error.code == ENODEV || error.code == ENXIO ||
         error.code == ENODATA;
}

bool saysNotPermitted(const SystemError& error) { return error.code == EACCES || error.code == EPERM; }

}  // namespace quellin
