#pragma once

#include <memory>
#include <optional>

#include "QuellinCore/Models/BatteryInfo.h"
#include "QuellinCore/Platform/BatterySource.h"

namespace quellin {

/// Reads the internal battery and its charger. Holds no state of its own and may be called from any thread.
class BatteryService {
 public:
  /// `source` must not be null.
  explicit BatteryService(std::shared_ptr<BatterySource> source = nativeBatterySource());

  /// One snapshot; no value on a machine without a battery.
  [[nodiscard]] std::optional<BatteryInfo> read() const;

 private:
  std::shared_ptr<BatterySource> source_;
};

}  // namespace quellin
