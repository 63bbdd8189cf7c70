#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "QuellinCore/Models/SystemPowerState.h"
#include "QuellinCore/Sessions/PowerSamplePoint.h"
#include "QuellinCore/Sessions/PowerSession.h"
#include "QuellinCore/Sessions/PowerSessionDTOs.h"
#include "QuellinCore/Sessions/PowerSessionSample.h"
#include "QuellinCore/Sessions/PowerSessionSummary.h"
#include "QuellinCore/Support/JSON/JSONDecoder.h"

/// The power facts that sessions record and summarise. Nothing here fails. What takes
/// values alone may be called from any thread, what takes stored objects on the store's main executor.
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

/// The point of a stored sample: source, external power and charge as its snapshot says. When that cannot be
/// decoded, the columns alone speak, and a sample without external power counts as battery draw.
[[nodiscard]] PowerSamplePoint storedPowerPoint(const PowerSessionSample& sample, JSONDecoder& decoder);
[[nodiscard]] PowerSamplePoint storedPowerPoint(const SampleColumns& columns, std::string_view snapshotData,
                                                JSONDecoder& decoder);  ///< the same of its stored parts

/// What a session with these samples, in any order, comes to.
[[nodiscard]] PowerSessionSummary summary(const PowerSession& session,
                                          std::vector<std::shared_ptr<PowerSessionSample>> samples,
                                          JSONDecoder& decoder);

/// The processes that cost the most over these samples, at most five, highest score first.
[[nodiscard]] std::vector<PowerSessionContributor> topContributors(
    const std::vector<std::shared_ptr<PowerSessionSample>>& samples, JSONDecoder& decoder);

}  // namespace quellin::PowerSessionMetrics
