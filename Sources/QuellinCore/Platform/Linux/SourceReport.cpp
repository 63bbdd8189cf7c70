#include "QuellinCore/Platform/Linux/SourceReport.h"

#include <cerrno>
#include <utility>

namespace quellin {

SourceDiagnosis availableSource(std::string source, std::string reason, std::string path) {
  return {.source = std::move(source),
          .availability = SourceAvailability::available,
          .reason = std::move(reason),
          .path = std::move(path),
          .remedy = std::nullopt};
}

SourceDiagnosis absentSource(std::string source, std::string reason, std::string path) {
  return {.source = std::move(source),
          .availability = SourceAvailability::absent,
          .reason = std::move(reason),
          .path = std::move(path),
          .remedy = std::nullopt};
}

SourceDiagnosis unreadableSource(std::string source, const ReadFault& fault,
                                 std::optional<std::string> permission) {
  const bool denied = saysNotPermitted(fault.error);
  const auto availability = denied                    ? SourceAvailability::notPermitted
                            : saysAbsent(fault.error) ? SourceAvailability::absent
                                                      : SourceAvailability::failed;
  return {.source = std::move(source),
          .availability = availability,
          .reason = "Reading failed: " + fault.error.description() + ".",
          .path = fault.path,
          .remedy = denied ? std::move(permission) : std::nullopt};
}

bool saysAbsent(const SystemError& error) {
  return error.code == ENOENT || error.code == ENOTDIR || error.code == ENODEV || error.code == ENXIO ||
         error.code == ENODATA;
}

bool saysNotPermitted(const SystemError& error) { return error.code == EACCES || error.code == EPERM; }

}  // namespace quellin
