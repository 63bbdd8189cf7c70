#pragma once

#include <memory>

#include "QuellinCore/Platform/PlatformSources.h"
#include "QuellinCore/Platform/Recorded/TracePlayer.h"

namespace quellin {

/// Sources that answer, in any order and as often as they are asked, what the traced host answered at the
/// tick at which `player` stands. What was begun at one tick ends with it: an SMC connection, an energy
/// measurement and a process scan keep the tick they were made at.
///
/// What counters gained is for the captured interval. A reader that waits differently on the player's
/// monotonic clock gets the gain of its own wait, at the same rate.
///
/// A tick at which the processes were not measured repeats the last one at which they were.
[[nodiscard]] PlatformSources recordedSources(const std::shared_ptr<const TracePlayer>& player);

}  // namespace quellin
