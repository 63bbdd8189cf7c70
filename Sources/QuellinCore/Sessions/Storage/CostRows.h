#pragma once

#include <cstdint>
#include <optional>

#include "QuellinCore/Sessions/RecorderCost.h"
#include "QuellinCore/Sessions/Storage/Database.h"

namespace quellin {

/// What the store says about the cost of recording a session.
struct StoredCost {
  std::optional<RecorderCost> cost;  ///< absent when it was never noted, or is damaged
  bool isDamaged = false;
};

/// The cost of the session with key `session`.
[[nodiscard]] StoredCost readCost(Database& database, std::int64_t session);

/// Adds to the cost of a session. No effect when the session is no longer there, when its note is damaged,
/// and when it has samples whose cost nobody noted: a part would pass for the whole.
void addCost(Database& database, std::int64_t session, const RecorderCost& more);

}  // namespace quellin
