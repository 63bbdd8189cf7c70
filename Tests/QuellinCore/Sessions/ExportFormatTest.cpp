#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Sessions/PowerSessionCoders.h"
#include "QuellinCore/Sessions/PowerSessionExport.h"
#include "QuellinCore/Support/JSON/RecordOrder.h"
#include "Support/DocumentedExample.h"
#include "Support/MemoryStore.h"
#include "Support/ProcessRows.h"
#include "Support/SampleStates.h"

namespace quellin {
namespace {

using testing_support::activity;
using testing_support::energyRow;
using testing_support::noonSeconds;
using testing_support::telemetry;

std::vector<std::string> linesOf(const std::string& document) {
  std::vector<std::string> lines;
  std::istringstream stream(document);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// What stands behind the first `"id":"` of a line that is not a number.
std::string identifierIn(const std::string& line) {
  const std::string_view opening = R"("id":")";
  return line.substr(line.find(opening) + opening.size(), UUID::Characters().size());
}

SystemPowerState stateDrawing(double watts, double second) {
  SystemPowerState state;
  BatteryInfo& battery = state.battery.emplace();
  battery.chargePercent = 80;
  battery.currentCapacity = 4000;
  battery.maxCapacity = 5000;
  battery.designCapacity = 5100;
  battery.healthPercent = 98;
  battery.cycleCount = 120;
  battery.voltage = 12.5;
  battery.amperage = -watts / 12.5;
  battery.wattage = -watts;
  battery.temperature = 30.5;
  battery.health = "Good";
  state.power.emplace().cpuPower = 4.25;
  state.power->systemPower = 4.25;
  state.sensors = {{"Tp01", "CPU P-core 1", 51.5}};
  state.timestamp = instantAt(noonSeconds + second);
  return state;
}

/// The export that the documentation shows, with the identifiers of this run.
std::string exampleExport() {
  const testing_support::MemoryStore fixture;
  const auto session =
      fixture.store->start("Long compile", PowerSessionSource::cli, 60, instantAt(noonSeconds));
  ProcessActivityInfo clang = activity("clang", 70.25);
  clang.cpuPercent = 50;
  clang.wakeupsPerSecond = 100;
  clang.energyWattsEstimate = 0.025;
  fixture.store->appendSample(session, stateDrawing(10, 0), {clang}, std::nullopt);
  fixture.store->appendSample(session, stateDrawing(20, 60), {},
                              telemetry(noonSeconds + 59, {energyRow("clang", 120.5, 96.5)}));
  fixture.store->stop(session, instantAt(noonSeconds + 60));
  return fixture.store->exportJSONL(session, instantAt(noonSeconds + 3600));
}

TEST(ExportFormatTest, TheDocumentedExampleIsWhatIsWritten) {
  const auto documented = linesOf(testing_support::documentedExample("jsonl"));
  auto written = linesOf(exampleExport());
  ASSERT_EQ(written.size(), documented.size());
  for (std::size_t line = 0; line < written.size(); ++line) {
    const std::string identifier = identifierIn(written[line]);
    written[line].replace(written[line].find(identifier), identifier.size(), identifierIn(documented[line]));
    EXPECT_EQ(written[line], documented[line]);
  }
}

template <class... Records>
std::vector<std::string> keysOfRecords() {
  std::vector<std::string> keys;
  (keys.insert(keys.end(), fieldNames<Records>.begin(), fieldNames<Records>.end()), ...);
  return keys;
}

TEST(ExportFormatTest, EveryKeyIsDocumented) {
  const std::string chapter = testing_support::documentedChapter("Exported sessions");
  for (const std::string& key :
       keysOfRecords<PowerSessionExportEnvelope, PowerSessionMetadataDTO, PowerSessionSampleLine,
                     PowerSessionSampleDTO, SystemPowerStateDTO, BatteryInfoDTO, PowerMetricsDTO,
                     ThermalInfoDTO, FanInfoDTO, TemperatureSensor, ProcessActivityDTO, ProTelemetrySnapshot,
                     ProProcessEnergy, PowerSessionSummary, PowerSessionPowerSegment,
                     PowerSessionContributor>()) {
    EXPECT_THAT(chapter, testing::HasSubstr("`" + key + "`"));
  }
}

TEST(ExportFormatTest, TheDocumentedExampleIsReadBack) {
  const auto lines = linesOf(testing_support::documentedExample("jsonl"));
  ASSERT_EQ(lines.size(), 3U);
  const auto envelope = PowerSessionCoders::decoder.decode<PowerSessionExportEnvelope>(lines[0]);
  ASSERT_TRUE(envelope.has_value());
  EXPECT_EQ(PowerSessionCoders::encoder.encode(*envelope), lines[0]);
  EXPECT_EQ(envelope->recordType, "session");
  EXPECT_EQ(envelope->schemaVersion, PowerSessionExportFormat::schemaVersion);
  EXPECT_EQ(envelope->summary.totalWattHours, 0.25);
  EXPECT_EQ(envelope->summary.sampleCount, 2);
  for (std::size_t line = 1; line < lines.size(); ++line) {
    const auto sample = PowerSessionCoders::decoder.decode<PowerSessionSampleLine>(lines[line]);
    ASSERT_TRUE(sample.has_value());
    EXPECT_EQ(PowerSessionCoders::encoder.encode(*sample), lines[line]);
    EXPECT_EQ(sample->recordType, "sample");
    EXPECT_EQ(sample->sample.snapshot.powerSourceKind, "batteryDischarge");
  }
}

}  // namespace
}  // namespace quellin
