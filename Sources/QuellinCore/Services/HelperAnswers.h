#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "QuellinCore/Models/HelperStatus.h"
#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Models/TemperatureSensor.h"
#include "QuellinCore/Services/ProcessRunner.h"
#include "QuellinCore/Support/Clock.h"

namespace quellin {

// What the answers of the privileged tool mean, whatever it printed and however it ended. Pure functions; may
// be called from several threads.

/// The temperature list in degrees Celsius that the tool printed; empty when it failed or printed anything
/// but such a list.
[[nodiscard]] std::vector<TemperatureSensor> temperaturesOfHelper(std::int32_t terminationStatus,
                                                                  const std::string& output);

/// `status` with what the tool says of itself: its version and its capability, or the error text of a failed
/// run. A successful run whose answer cannot be read adds nothing.
[[nodiscard]] HelperStatus withHelperAnswer(HelperStatus status, ProcessRunResult answer);

/// The snapshot that the tool printed; else one that is not available, taken `now`, with the error text.
[[nodiscard]] ProTelemetrySnapshot snapshotOfHelper(ProcessRunResult answer, Instant now);

/// The first text that a run left, its error before its output, or else `otherwise`.
[[nodiscard]] std::string firstTextOf(ProcessRunResult run, std::string otherwise);

}  // namespace quellin
