#include "QuellinCore/Platform/Recorded/RecordedSources.h"

#include <utility>

#include "QuellinCore/Models/SMCDecoding.h"
#include "QuellinCore/Platform/Recorded/IntervalScale.h"
#include "QuellinCore/Platform/Recorded/RecordedDiagnosis.h"
#include "QuellinCore/Platform/Recorded/RecordedProcessSource.h"
#include "QuellinCore/Platform/VirtualSMC.h"

namespace quellin {
namespace {

using Player = std::shared_ptr<const TracePlayer>;

std::string textOfCode(std::uint32_t code) {
  const auto bytes = SMCDecoding::fourCharBytes(code);
  return {bytes.begin(), bytes.end()};
}

class RecordedSMCSource final : public SMCSource {
 public:
  explicit RecordedSMCSource(Player player) : player_(std::move(player)) {}

  std::unique_ptr<SMCConnection> open() override {
    const auto answers = player_->answers();
    if (!answers || !answers->smc) return nullptr;
    VirtualSMC smc;
    for (const auto& [key, value] : *answers->smc) {
      smc.set(textOfCode(key), textOfCode(value.dataType), value.bytes);
    }
    return smc.open();
  }

  SourceDiagnosis diagnose() override {
    const auto answers = player_->answers();
    return recordedDiagnosis(*player_, SourceNames::smc, &TraceDiagnoses::smc,
                             answers && answers->smc && !answers->smc->empty());
  }

 private:
  Player player_;
};

class RecordedHIDSensorSource final : public HIDSensorSource {
 public:
  explicit RecordedHIDSensorSource(Player player) : player_(std::move(player)) {}

  std::vector<HIDTemperatureService> temperatureServices() override {
    const auto answers = player_->answers();
    return answers ? answers->hid : std::vector<HIDTemperatureService>{};
  }

  SourceDiagnosis diagnose() override {
    return recordedDiagnosis(*player_, SourceNames::temperatureSensors, &TraceDiagnoses::hid,
                             !temperatureServices().empty());
  }

 private:
  Player player_;
};

class RecordedBatterySource final : public BatterySource {
 public:
  explicit RecordedBatterySource(Player player) : player_(std::move(player)) {}

  BatteryTables read() override {
    const auto answers = player_->answers();
    return answers ? answers->battery : BatteryTables{};
  }

  SourceDiagnosis diagnose() override {
    return recordedDiagnosis(*player_, SourceNames::battery, &TraceDiagnoses::battery,
                             read() != BatteryTables{});
  }

 private:
  Player player_;
};

class RecordedThermalSource final : public ThermalSource {
 public:
  explicit RecordedThermalSource(Player player) : player_(std::move(player)) {}

  ThermalSignals read() override {
    const auto answers = player_->answers();
    return answers ? answers->thermal : ThermalSignals{};
  }

  SourceDiagnosis diagnose() override {
    return recordedDiagnosis(*player_, SourceNames::thermalState, &TraceDiagnoses::thermal,
                             read() != ThermalSignals{});
  }

 private:
  Player player_;
};

class RecordedMeasurement final : public EnergyMeasurement {
 public:
  RecordedMeasurement(Player player, std::shared_ptr<const HostAnswers> answers)
      : player_(std::move(player)), answers_(std::move(answers)), begun_(player_->monotonicClock().now()) {}

  std::optional<std::vector<EnergyChannel>> finish() override {
    const EnergyAnswer& energy = *answers_->energy;
    if (!energy.channels) return std::nullopt;
    return IntervalScale{energy.interval, player_->monotonicClock().now() - begun_}.later(*energy.channels);
  }

 private:
  Player player_;
  std::shared_ptr<const HostAnswers> answers_;
  Seconds begun_;
};

class RecordedEnergySource final : public EnergySource {
 public:
  explicit RecordedEnergySource(Player player) : player_(std::move(player)) {}

  std::unique_ptr<EnergyMeasurement> begin() override {
    auto answers = player_->answers();
    if (!answers || !answers->energy) return nullptr;
    return std::make_unique<RecordedMeasurement>(player_, std::move(answers));
  }

  SourceDiagnosis diagnose() override {
    const auto answers = player_->answers();
    return recordedDiagnosis(*player_, SourceNames::energyCounters, &TraceDiagnoses::energy,
                             answers && answers->energy && answers->energy->channels);
  }

 private:
  Player player_;
};

}  // namespace

PlatformSources recordedSources(const std::shared_ptr<const TracePlayer>& player) {
  return {.smc = std::make_shared<RecordedSMCSource>(player),
          .hid = std::make_shared<RecordedHIDSensorSource>(player),
          .battery = std::make_shared<RecordedBatterySource>(player),
          .energy = std::make_shared<RecordedEnergySource>(player),
          .thermal = std::make_shared<RecordedThermalSource>(player),
          .processes = std::make_shared<RecordedProcessSource>(player)};
}

}  // namespace quellin
