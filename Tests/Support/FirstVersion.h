#pragma once

namespace quellin::testing_support {

/// Statements that make of a store of the present version one of the first.
inline constexpr const char* backToVersion1 =
    "DROP TRIGGER deletedSessionCost; DROP TRIGGER editedCost; DROP TABLE RecorderCost; "
    "PRAGMA user_version = 1";

}  // namespace quellin::testing_support
