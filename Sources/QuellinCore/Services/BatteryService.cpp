#include "QuellinCore/Services/BatteryService.h"

#include <utility>

#include "QuellinCore/Models/BatteryRules.h"

namespace quellin {

BatteryService::BatteryService(std::shared_ptr<BatterySource> source) : source_(std::move(source)) {}

std::optional<BatteryInfo> BatteryService::read() const { return batteryInfo(source_->read()); }

}  // namespace quellin
