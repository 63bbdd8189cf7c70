#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "QuellinCore/Support/Clock.h"
#include "quellin/Watch/WatchModel.h"

namespace quellin::cli {

/// What a key asks the live view to do.
enum class WatchAction { toggleSession, longerInterval, shorterInterval, toggleProcesses, toggleHelp, quit };

/// A key of the live view.
struct WatchKey {
  std::string_view characters;  ///< that do the same; the first is its name
  WatchAction action;
};

/// Keys that are told of together: what they do, and the words for it.
struct KeyGroup {
  WatchKey first;
  std::optional<WatchKey> second;
  std::string_view purpose;              ///< on the page of help
  std::string_view label;                ///< in the foot of the view
  std::string_view labelWhenOn = label;  ///< in the foot, while what they switch is on
  bool WatchModel::* isOn = nullptr;     ///< what they switch; null where they switch nothing

  /// The names of the keys, with `separator` between them.
  [[nodiscard]] std::string names(std::string_view separator) const;

  /// What the foot says of them while the view is as in `model`.
  [[nodiscard]] std::string_view labelFor(const WatchModel& model) const;
};

/// All keys, in the order in which they are told of.
[[nodiscard]] std::span<const KeyGroup> watchKeys();

/// What the key asks for, in upper or lower case; no value for a key without a meaning.
[[nodiscard]] std::optional<WatchAction> actionOf(int key);

/// The next longer of the intervals that the keys go through; the longest stays.
[[nodiscard]] Seconds longerInterval(Seconds interval);

/// The next shorter one; the shortest stays.
[[nodiscard]] Seconds shorterInterval(Seconds interval);

}  // namespace quellin::cli
