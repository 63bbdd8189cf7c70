#pragma once

#include <cstdint>
#include <string>

namespace quellin {

/// One fan and its speeds. It has no serialised form of its own.
struct FanInfo {
  std::int64_t id = 0;          ///< fan index, counting from 0
  std::string name;             ///< "Fan " and the index, so the first fan is named Fan 0
  std::int64_t currentRPM = 0;  ///< revolutions per minute, 0 when unreadable
  std::int64_t minRPM = 0;      ///< revolutions per minute, 0 when unreadable
  std::int64_t maxRPM = 0;      ///< revolutions per minute, 0 when unreadable

  bool operator==(const FanInfo&) const = default;
};

}  // namespace quellin
