#pragma once

#include <optional>
#include <string>

#include "QuellinCore/Models/SourceDiagnosis.h"
#include "QuellinCore/Platform/Recorded/TracePlayer.h"

namespace quellin {

/// What a recorded source says about itself: available when the present tick `hasValues`; else what the
/// captured host said, `captured` being its place among the trace's diagnoses.
[[nodiscard]] SourceDiagnosis recordedDiagnosis(const TracePlayer& player, std::string source,
                                                std::optional<SourceDiagnosis> TraceDiagnoses::* captured,
                                                bool hasValues);

}  // namespace quellin
