#include "QuellinCore/Services/SMCService.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "QuellinCore/Models/SMCDecoding.h"
#include "QuellinCore/Models/SMCKeys.h"
#include "QuellinCore/Platform/SMCValue.h"

namespace quellin {
namespace {

std::optional<SMCValue> readSMCKeyTyped(SMCConnection& connection, std::string_view key) {
  return readSMCValue(connection, SMCDecoding::fourCharCode(key));
}

std::optional<std::int64_t> readRPM(SMCConnection& connection, std::string_view key) {
  const auto value = readSMCKeyTyped(connection, key);
  return value ? SMCDecoding::decodeFanRPM(value->dataType, value->bytes) : std::nullopt;
}

std::size_t readFanCount(SMCConnection& connection) {
  const auto value = readSMCKeyTyped(connection, SMCKeys::fanCount);
  const std::size_t count = value ? value->bytes.front() : 0;
  return count <= SMCKeys::mostFans ? count : 0;
}

FanInfo readFan(SMCConnection& connection, std::size_t index) {
  const auto speed = [&](std::string_view which) {
    return readRPM(connection, SMCKeys::fanSpeed(index, which)).value_or(0);
  };
  return {.id = static_cast<std::int64_t>(index),
          .name = "Fan " + std::to_string(index),
          .currentRPM = speed(SMCKeys::currentSpeed),
          .minRPM = speed(SMCKeys::minimumSpeed),
          .maxRPM = speed(SMCKeys::maximumSpeed)};
}

}  // namespace

SMCService::SMCService(std::shared_ptr<SMCSource> smc) : smc_(std::move(smc)) {}

std::vector<FanInfo> SMCService::readFans() const {
  const auto connection = smc_->open();
  if (!connection) return {};
  std::vector<FanInfo> fans;
  const std::size_t count = readFanCount(*connection);
  fans.reserve(count);
  for (std::size_t index = 0; index < count; ++index) fans.push_back(readFan(*connection, index));
  return fans;
}

std::vector<TemperatureSensor> SMCService::readTemperatures() const {
  const auto connection = smc_->open();
  if (!connection) return {};
  std::vector<TemperatureSensor> sensors;
  for (const auto& [key, name] : TemperatureSensor::knownSensors()) {
    const auto value = readSMCKeyTyped(*connection, key);
    if (!value) continue;
    const auto temperature = SMCDecoding::decodeTemperature(value->dataType, value->bytes);
    if (temperature && isPlausibleTemperature(*temperature)) sensors.push_back({key, name, *temperature});
  }
  std::ranges::stable_sort(sensors, {}, &TemperatureSensor::name);
  return sensors;
}

}  // namespace quellin
