#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <ranges>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "QuellinCore/Platform/PlatformSources.h"
#include "QuellinCore/Platform/VirtualSMC.h"

namespace quellin::testing_support {

/// A battery that is what it was set to.
class FakeBatterySource final : public BatterySource {
 public:
  BatteryTables tables;
  SourceDiagnosis diagnosis;

  BatteryTables read() override { return tables; }
  SourceDiagnosis diagnose() override { return diagnosis; }
};

/// Energy counters that gain what they were set to; without a gain there are none.
class FakeEnergySource final : public EnergySource {
 public:
  using Channels = std::optional<std::vector<EnergyChannel>>;

  std::optional<Channels> gain;
  SourceDiagnosis diagnosis;

  std::unique_ptr<EnergyMeasurement> begin() override {
    return gain ? std::make_unique<Measurement>(*gain) : nullptr;
  }
  SourceDiagnosis diagnose() override { return diagnosis; }

 private:
  class Measurement final : public EnergyMeasurement {
   public:
    explicit Measurement(Channels channels) : channels_(std::move(channels)) {}
    Channels finish() override { return channels_; }

   private:
    Channels channels_;
  };
};

/// Temperature services that are what they were set to.
class FakeHIDSensorSource final : public HIDSensorSource {
 public:
  std::vector<HIDTemperatureService> services;
  SourceDiagnosis diagnosis;

  std::vector<HIDTemperatureService> temperatureServices() override { return services; }
  SourceDiagnosis diagnose() override { return diagnosis; }
};

/// Thermal signals that are what they were set to.
class FakeThermalSource final : public ThermalSource {
 public:
  ThermalSignals signals;
  SourceDiagnosis diagnosis;

  ThermalSignals read() override { return signals; }
  SourceDiagnosis diagnose() override { return diagnosis; }
};

/// Two tables of processes: every scan lists `before` first and, after it has asked for a process, `after`.
class FakeTwoSnapshots final : public ProcessSource {
 public:
  struct Process {
    std::optional<ProcessUsage> usage;
    std::optional<std::string> name;
  };
  using Table = std::map<std::int32_t, Process>;

  Table before;
  Table after;
  SourceDiagnosis diagnosis;

  std::unique_ptr<ProcessScan> beginScan() override { return std::make_unique<Scan>(*this); }
  SourceDiagnosis diagnose() override { return diagnosis; }

 private:
  class Scan final : public ProcessScan {
   public:
    explicit Scan(const FakeTwoSnapshots& source) : source_(&source) {}

    std::int64_t listProcessIDs(std::span<std::int32_t> ids) override {
      if (hasAsked_) isSecond_ = true;
      const std::size_t count = std::min(ids.size(), table().size());
      std::ranges::transform(table() | std::views::take(count), ids.begin(), &Table::value_type::first);
      return static_cast<std::int64_t>(count * sizeof(std::int32_t));
    }
    std::optional<ProcessUsage> usage(std::int32_t pid) override {
      hasAsked_ = true;
      return table().at(pid).usage;
    }
    std::optional<std::string> name(std::int32_t pid) override { return table().at(pid).name; }

   private:
    [[nodiscard]] const Table& table() const { return isSecond_ ? source_->after : source_->before; }

    const FakeTwoSnapshots* source_;
    bool hasAsked_ = false;
    bool isSecond_ = false;
  };
};

/// A machine made of fakes.
struct FakeHost {
  std::shared_ptr<VirtualSMC> smc = std::make_shared<VirtualSMC>();
  std::shared_ptr<FakeHIDSensorSource> hid = std::make_shared<FakeHIDSensorSource>();
  std::shared_ptr<FakeBatterySource> battery = std::make_shared<FakeBatterySource>();
  std::shared_ptr<FakeEnergySource> energy = std::make_shared<FakeEnergySource>();
  std::shared_ptr<FakeThermalSource> thermal = std::make_shared<FakeThermalSource>();
  std::shared_ptr<FakeTwoSnapshots> processes = std::make_shared<FakeTwoSnapshots>();

  [[nodiscard]] PlatformSources sources() const {
    return {.smc = smc,
            .hid = hid,
            .battery = battery,
            .energy = energy,
            .thermal = thermal,
            .processes = processes};
  }
};

}  // namespace quellin::testing_support
