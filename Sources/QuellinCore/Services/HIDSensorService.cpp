#include "QuellinCore/Services/HIDSensorService.h"

#include <utility>

#include "QuellinCore/Models/HIDTemperatures.h"

namespace quellin {

HIDSensorService::HIDSensorService(std::shared_ptr<HIDSensorSource> source) : source_(std::move(source)) {}

std::vector<TemperatureSensor> HIDSensorService::readTemperatures() const {
  return plausibleTemperatures(source_->temperatureServices());
}

}  // namespace quellin
