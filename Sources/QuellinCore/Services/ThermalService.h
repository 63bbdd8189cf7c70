#pragma once

#include <memory>

#include "QuellinCore/Models/ThermalInfo.h"
#include "QuellinCore/Platform/ThermalSource.h"

namespace quellin {

/// Reads how hard the system throttles for heat. Holds no state of its own and may be called from any thread.
class ThermalService {
 public:
  /// `source` must not be null.
  explicit ThermalService(std::shared_ptr<ThermalSource> source = nativeThermalSource());

  /// The present condition. Never fails: what cannot be read counts as no throttling.
  [[nodiscard]] ThermalInfo read() const;

 private:
  std::shared_ptr<ThermalSource> source_;
};

}  // namespace quellin
