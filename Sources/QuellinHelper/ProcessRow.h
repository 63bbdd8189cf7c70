#pragma once

#include <optional>

#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinHelper/PropertyLists/PropertyList.h"

namespace quellin {

/// The process row that `dictionary` itself describes: no value unless it has a process identifier, a
/// non-empty name and at least one of the four figures. See `PowermetricsSearch::collectProcesses` for the
/// identifier.
[[nodiscard]] std::optional<ProProcessEnergy> processRow(const PropertyListNode& dictionary);

}  // namespace quellin
