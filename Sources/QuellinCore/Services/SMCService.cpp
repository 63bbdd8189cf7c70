#include "QuellinCore/Services/SMCService.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "QuellinCore/Models/SMCDecoding.h"

namespace quellin {
namespace {

struct TypedValue {
  std::vector<std::uint8_t> bytes;
  std::uint32_t dataType = 0;
};

// The block's own result byte is left alone on purpose: a size out of range and an unknown type say enough.
std::optional<SMCKeyData> callSMC(SMCConnection& connection, const SMCKeyData& input) {
  SMCKeyData output;
  std::size_t outputSize = sizeof(output);
  if (connection.callStruct(smcStructSelector, input, output, outputSize) != 0) return std::nullopt;
  return output;
}

std::optional<TypedValue> readSMCKeyTyped(SMCConnection& connection, std::string_view key) {
  SMCKeyData question;
  question.key = SMCDecoding::fourCharCode(key);
  question.command = SMCCommand::readKeyInfo;
  const auto info = callSMC(connection, question);
  if (!info || info->dataSize < 1 || info->dataSize > SMCKeyData::capacity) return std::nullopt;

  question.dataSize = info->dataSize;
  question.command = SMCCommand::readBytes;
  const auto answer = callSMC(connection, question);
  if (!answer) return std::nullopt;
  return TypedValue{.bytes = {answer->bytes.begin(), answer->bytes.begin() + info->dataSize},
                    .dataType = info->dataType};
}

std::optional<std::int64_t> readRPM(SMCConnection& connection, std::string_view key) {
  const auto value = readSMCKeyTyped(connection, key);
  return value ? SMCDecoding::decodeFanRPM(value->dataType, value->bytes) : std::nullopt;
}

std::size_t readFanCount(SMCConnection& connection) {
  constexpr std::size_t mostFans = 15;
  const auto value = readSMCKeyTyped(connection, "FNum");
  const std::size_t count = value ? value->bytes.front() : 0;
  return count <= mostFans ? count : 0;
}

FanInfo readFan(SMCConnection& connection, std::size_t index) {
  const std::string number = std::to_string(index);
  const auto speed = [&](std::string_view suffix) {
    return readRPM(connection, ("F" + number).append(suffix)).value_or(0);
  };
  return {.id = static_cast<std::int64_t>(index),
          .name = "Fan " + number,
          .currentRPM = speed("Ac"),
          .minRPM = speed("Mn"),
          .maxRPM = speed("Mx")};
}

bool isPlausible(double degreesCelsius) { return degreesCelsius > 0 && degreesCelsius < 150; }

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
    if (temperature && isPlausible(*temperature)) sensors.push_back({key, name, *temperature});
  }
  std::ranges::stable_sort(sensors, {}, &TemperatureSensor::name);
  return sensors;
}

}  // namespace quellin
