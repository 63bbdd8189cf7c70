#include "QuellinCore/Platform/Recorded/RecordedDiagnosis.h"

#include <utility>

namespace quellin {

SourceDiagnosis recordedDiagnosis(const TracePlayer& player, std::string source,
                                  std::optional<SourceDiagnosis> TraceDiagnoses::* captured, bool hasValues) {
  SourceDiagnosis diagnosis{.source = std::move(source),
                            .availability = SourceAvailability::absent,
                            .reason = "The trace has no values of this source at this point.",
                            .path = player.path(),
                            .remedy = std::nullopt};
  const auto atCapture = player.header().diagnoses.value_or(TraceDiagnoses{}).*captured;
  if (player.atEnd()) {
    diagnosis.reason = "The trace has ended.";
  } else if (hasValues) {
    diagnosis.availability = SourceAvailability::available;
    diagnosis.reason = "The trace answers in the place of a machine.";
  } else if (atCapture && atCapture->availability != SourceAvailability::available) {
    diagnosis.availability = atCapture->availability;
    diagnosis.reason = "When the trace was captured: " + atCapture->reason;
  }
  return diagnosis;
}

}  // namespace quellin
