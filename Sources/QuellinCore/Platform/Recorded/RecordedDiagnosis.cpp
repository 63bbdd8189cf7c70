#include "QuellinCore/Platform/Recorded/RecordedDiagnosis.h"

#include <utility>

namespace quellin {

SourceDiagnosis recordedDiagnosis(const TracePlayer& player, std::string source,
                                  std::optional<SourceDiagnosis> TraceDiagnoses::* said, bool hasValues) {
  SourceDiagnosis diagnosis{.source = std::move(source),
                            .availability = SourceAvailability::absent,
                            .reason = "The trace has no values of this source at this point.",
                            .path = player.path(),
                            .remedy = std::nullopt};
  const auto captured = player.header().diagnoses.value_or(TraceDiagnoses{}).*said;
  if (player.atEnd()) {
    diagnosis.reason = "The trace has ended.";
  } else if (hasValues) {
    diagnosis.availability = SourceAvailability::available;
    diagnosis.reason = "The trace answers in the place of a machine.";
  } else if (captured && captured->availability != SourceAvailability::available) {
    diagnosis.availability = captured->availability;
    diagnosis.reason = "When the trace was captured: " + captured->reason;
  }
  return diagnosis;
}

}  // namespace quellin
