#pragma once

#include <vector>

#include "QuellinCore/Models/ProcessActivityInfo.h"
#include "QuellinCore/Models/ProcessSample.h"
#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// What the processes of both snapshots did per second in the `interval` between them, highest impact first;
/// equal scores in the order of their ids. A process that did next to nothing is left out, and so is one that
/// is in one snapshot only. A counter that went backwards, or that is unknown in either snapshot, did not
/// move. `interval` must be above 0.
[[nodiscard]] std::vector<ProcessActivityInfo> processActivity(const ProcessSamples& before,
                                                               const ProcessSamples& after, Seconds interval);

}  // namespace quellin
