#include "QuellinCore/Models/SourceDiagnosis.h"

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

}  // namespace quellin
