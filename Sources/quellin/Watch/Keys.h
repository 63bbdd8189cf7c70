#pragma once

#include <optional>

#include "QuellinCore/Support/Clock.h"

namespace quellin::cli {

/// What a key asks the live view to do.
enum class WatchAction { toggleSession, longerInterval, shorterInterval, toggleProcesses, toggleHelp, quit };

/// What the key asks for, in upper or lower case; no value for a key without a meaning.
[[nodiscard]] std::optional<WatchAction> actionOf(int key);

/// The next longer of the intervals that the keys go through; the longest stays.
[[nodiscard]] Seconds longerInterval(Seconds interval);

/// The next shorter one; the shortest stays.
[[nodiscard]] Seconds shorterInterval(Seconds interval);

}  // namespace quellin::cli
