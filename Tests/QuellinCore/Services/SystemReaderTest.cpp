#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/VirtualSMC.h"
#include "QuellinCore/Services/SystemReader.h"
#include "Support/ManualClock.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::ManualMonotonicClock;
using testing_support::TemporaryFolder;

using Log = std::vector<std::string>;

class LoggingBattery final : public BatterySource {
 public:
  explicit LoggingBattery(Log& log) : log_(&log) {}
  BatteryTables read() override {
    log_->emplace_back("battery");
    return {.registry = PropertyTable{{"CurrentCapacity", std::int64_t{55}}}, .powerSource = {}};
  }
  SourceDiagnosis diagnose() override { return {}; }

 private:
  Log* log_;
};

class LoggingThermal final : public ThermalSource {
 public:
  explicit LoggingThermal(Log& log) : log_(&log) {}
  ThermalSignals read() override {
    log_->emplace_back("thermal");
    return {.stateCode = 2, .pressureState = 3, .isLowPowerMode = true};
  }
  SourceDiagnosis diagnose() override { return {}; }

 private:
  Log* log_;
};

class LoggingMeasurement final : public EnergyMeasurement {
 public:
  std::optional<std::vector<EnergyChannel>> finish() override {
    return std::vector<EnergyChannel>{{"CPU Energy", 150'000'000}};
  }
};

class LoggingEnergy final : public EnergySource {
 public:
  explicit LoggingEnergy(Log& log) : log_(&log) {}
  std::unique_ptr<EnergyMeasurement> begin() override {
    log_->emplace_back("power");
    return std::make_unique<LoggingMeasurement>();
  }
  SourceDiagnosis diagnose() override { return {}; }

 private:
  Log* log_;
};

/// Logs each opening: the first of a read is for the fans, the second for the temperatures.
class LoggingSMC final : public SMCSource {
 public:
  explicit LoggingSMC(Log& log) : log_(&log) {}
  std::unique_ptr<SMCConnection> open() override {
    log_->emplace_back("smc");
    return keys.open();
  }
  SourceDiagnosis diagnose() override { return {}; }

  VirtualSMC keys;

 private:
  Log* log_;
};

class LoggingHID final : public HIDSensorSource {
 public:
  explicit LoggingHID(Log& log) : log_(&log) {}
  std::vector<HIDTemperatureService> temperatureServices() override {
    log_->emplace_back("hid");
    return {{"PMU tdie1", 51.5}};
  }
  SourceDiagnosis diagnose() override { return {}; }

 private:
  Log* log_;
};

class LoggingWallClock final : public WallClock {
 public:
  explicit LoggingWallClock(Log& log) : log_(&log) {}
  [[nodiscard]] Instant now() const override {
    log_->emplace_back("now");
    return instantAt(1234.5);
  }

 private:
  Log* log_;
};

class SystemReaderTest : public testing::Test {
 protected:
  /// A tool that leaves a trace of having been asked and prints `document`.
  void installTool(std::string_view document) const {
    static_cast<void>(folder.writeScript("tool", ": >'" + asked + "'\necho '" + std::string{document} + "'"));
  }
  [[nodiscard]] bool toolWasAsked() const { return std::filesystem::exists(asked); }
  void giveSMCATemperature() const { smc->keys.set("TA0P", "sp78", {0x15, 0x80}); }

  Log log;
  TemporaryFolder folder;
  std::string asked = folder.pathOf("asked");
  std::shared_ptr<LoggingSMC> smc = std::make_shared<LoggingSMC>(log);
  ManualMonotonicClock clock;
  LoggingWallClock wallClock{log};
  SystemReader reader{.batteryService = BatteryService{std::make_shared<LoggingBattery>(log)},
                      .thermalService = ThermalService{std::make_shared<LoggingThermal>(log)},
                      .powerService = PowerService{std::make_shared<LoggingEnergy>(log), clock},
                      .smcService = SMCService{smc},
                      .privilegedSMCHelperService = PrivilegedSMCHelperService{folder.pathOf("tool")},
                      .hidSensorService = HIDSensorService{std::make_shared<LoggingHID>(log)},
                      .wallClock = &wallClock};
};

TEST_F(SystemReaderTest, ReadsEverySourceInOrder) {
  smc->keys.set("FNum", "ui8 ", {1});
  smc->keys.set("F0Ac", "fpe2", {0x1F, 0x40});
  const SystemPowerState state = reader.readAll();
  EXPECT_THAT(log, ElementsAre("battery", "thermal", "power", "smc", "smc", "hid", "now"));
  ASSERT_TRUE(state.battery);
  EXPECT_EQ(state.battery->chargePercent, 55);
  EXPECT_EQ(state.thermal, (ThermalInfo{ThermalState::serious, 3, true}));
  ASSERT_TRUE(state.power);
  EXPECT_DOUBLE_EQ(state.power->cpuPower, 1.5);
  ASSERT_EQ(state.fans.size(), 1U);
  EXPECT_EQ(state.fans[0].currentRPM, 2000);
  EXPECT_EQ(state.timestamp, instantAt(1234.5));
}

TEST_F(SystemReaderTest, TemperaturesOfTheSMCWin) {
  giveSMCATemperature();
  installTool(R"([{"key":"k","name":"n","temperature":1}])");
  EXPECT_THAT(reader.readAll().sensors, ElementsAre(TemperatureSensor{"TA0P", "Ambient", 21.5}));
  EXPECT_FALSE(toolWasAsked());
  EXPECT_THAT(log, testing::Not(testing::Contains("hid")));
}

TEST_F(SystemReaderTest, TemperaturesOfTheToolComeNextAndTheHubIsNotAsked) {
  installTool(R"([{"key":"a","name":"A","temperature":40},{"key":"b","name":"B","temperature":41}])");
  EXPECT_THAT(reader.readAll().sensors,
              ElementsAre(TemperatureSensor{"a", "A", 40}, TemperatureSensor{"b", "B", 41}));
  EXPECT_THAT(log, testing::Not(testing::Contains("hid")));
}

TEST_F(SystemReaderTest, TheHubIsTheLastResort) {
  installTool("[]");
  EXPECT_THAT(reader.readAll().sensors, ElementsAre(TemperatureSensor{"PMU_tdie1", "PMU tdie1", 51.5}));
  EXPECT_TRUE(toolWasAsked());
}

TEST_F(SystemReaderTest, ReadsOverASetOfSources) {
  smc->keys.set("FNum", "ui8 ", {1});
  installTool("[]");
  const PlatformSources sources{.smc = smc,
                                .hid = std::make_shared<LoggingHID>(log),
                                .battery = std::make_shared<LoggingBattery>(log),
                                .energy = std::make_shared<LoggingEnergy>(log),
                                .thermal = std::make_shared<LoggingThermal>(log),
                                .processes = nullptr};
  const SystemReader over =
      SystemReader::over(sources, PrivilegedSMCHelperService{folder.pathOf("tool")}, clock, wallClock);
  EXPECT_EQ(over.readAll(), reader.readAll());
  EXPECT_TRUE(toolWasAsked());
  EXPECT_THAT(clock.sleeps, ElementsAre(PowerService::samplingInterval, PowerService::samplingInterval));
}

TEST_F(SystemReaderTest, AsksTheInstalledToolUnlessToldOtherwise) {
  EXPECT_EQ(SystemReader{}.privilegedSMCHelperService.helperPath(), installedHelperPath);
}

TEST_F(SystemReaderTest, WithoutFansThereAreNone) { EXPECT_THAT(reader.readAll().fans, IsEmpty()); }

}  // namespace
}  // namespace quellin
