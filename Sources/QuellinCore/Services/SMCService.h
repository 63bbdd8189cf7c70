#pragma once

#include <memory>
#include <vector>

#include "QuellinCore/Models/FanInfo.h"
#include "QuellinCore/Models/TemperatureSensor.h"
#include "QuellinCore/Platform/SMCSource.h"

namespace quellin {

/// Reads fans and temperatures from the System Management Controller. A stateless value: each call opens a
/// connection of its own and closes it before it returns, so any thread may call. Nothing throws and nothing
/// is reported; what cannot be read is left out.
class SMCService {
 public:
  /// `smc` must not be null.
  explicit SMCService(std::shared_ptr<SMCSource> smc = nativeSMCSource());

  /// The fans in index order; empty when there is no SMC, or when it reports no fans or more than 15.
  [[nodiscard]] std::vector<FanInfo> readFans() const;

  /// The known sensors that can be read and lie between 0 and 150 degrees Celsius, both excluded, sorted by
  /// name; empty when there is no SMC.
  [[nodiscard]] std::vector<TemperatureSensor> readTemperatures() const;

 private:
  std::shared_ptr<SMCSource> smc_;
};

}  // namespace quellin
