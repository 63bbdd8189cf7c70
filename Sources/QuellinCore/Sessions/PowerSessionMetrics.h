#pragma once

#include <optional>
#include <string>

#include "QuellinCore/Models/SystemPowerState.h"
#include "QuellinCore/Sessions/PowerSamplePoint.h"
#include "QuellinCore/Sessions/PowerSessionDTOs.h"

/// The power facts that sessions record and summarise. Nothing here fails; all of it may be called from any
/// thread.
namespace quellin::PowerSessionMetrics {

/// Watts of the primary reading; absent when there is none.
[[nodiscard]] std::optional<double> totalWatts(const SystemPowerState& state);

/// Raw value of the primary reading's confidence, else "unavailable".
[[nodiscard]] std::string totalWattsConfidence(const SystemPowerState& state);

/// Raw value of the primary reading's kind, else "unavailable".
[[nodiscard]] std::string powerSourceKind(const SystemPowerState& state);

/// Label of the primary reading; without one "On AC, battery idle" with a battery on external power, else
/// "Unavailable".
[[nodiscard]] std::string powerSourceLabel(const SystemPowerState& state);

/// The point of a live state.
[[nodiscard]] PowerSamplePoint livePowerPoint(const SystemPowerState& state);

/// As `powerSourceKind`, by the battery and power records of a stored snapshot, whatever its own derived
/// fields say.
[[nodiscard]] std::string inferredPowerSourceKind(const SystemPowerStateDTO& snapshot);

/// As `powerSourceLabel`, for the inferred kind.
[[nodiscard]] std::string inferredPowerSourceLabel(const SystemPowerStateDTO& snapshot);

}  // namespace quellin::PowerSessionMetrics
