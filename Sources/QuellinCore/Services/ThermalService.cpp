#include "QuellinCore/Services/ThermalService.h"

#include <utility>

namespace quellin {

ThermalService::ThermalService(std::shared_ptr<ThermalSource> source) : source_(std::move(source)) {}

ThermalInfo ThermalService::read() const { return thermalInfo(source_->read()); }

}  // namespace quellin
