#include <algorithm>
#include <limits>
#include <sstream>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Sessions/PowerSessionCoders.h"
#include "QuellinCore/Sessions/PowerSessionExport.h"
#include "Support/MemoryStore.h"
#include "Support/ProcessRows.h"
#include "Support/SampleStates.h"
#include "Support/StoreErrors.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;
using testing_support::activity;
using testing_support::energyRow;
using testing_support::kindThrownBy;
using testing_support::noonSeconds;
using testing_support::stateOnBattery;
using testing_support::telemetry;

class PowerSessionExportTest : public testing::Test {
 protected:
  std::shared_ptr<PowerSessionSample> append(double second) const {
    return fixture.store->appendSample(session, stateOnBattery(instantAt(noonSeconds + second)), {},
                                       std::nullopt);
  }

  [[nodiscard]] std::string document() const {
    return fixture.store->exportJSONL(session, instantAt(noonSeconds + 3600.75));
  }

  /// The lines of the document, which must all be ended.
  [[nodiscard]] std::vector<std::string> lines() const {
    const std::string text = document();
    EXPECT_EQ(text.back(), '\n');
    EXPECT_THAT(text, Not(HasSubstr("\r")));
    std::vector<std::string> result;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) result.push_back(line);
    return result;
  }

  template <class T>
  [[nodiscard]] static T read(const std::string& line) {
    const auto record = PowerSessionCoders::decoder.decode<T>(line);
    EXPECT_TRUE(record.has_value()) << (record ? "" : record.error().debugDescription());
    return record.value_or(T{});
  }

  testing_support::MemoryStore fixture;
  std::shared_ptr<PowerSession> session = fixture.start(noonSeconds, "Long compile");
};

TEST_F(PowerSessionExportTest, ASessionWithoutSamplesIsOneLine) {
  EXPECT_EQ(document(),
            R"({"appVersion":"0.9.4","exportedAt":"2025-03-04T13:00:00Z","recordType":"session",)"
            R"("schemaVersion":2,"session":{"id":")" +
                session->id().text() +
                R"(","sampleInterval":2,"source":"app","startedAt":"2025-03-04T12:00:00Z",)"
                R"("status":"active","title":"Long compile"},"summary":{"durationSeconds":0,)"
                R"("maxThermalPressure":0,"powerSegments":[],"sampleCount":0,"topContributors":[],)"
                R"("wattSampleCount":0}})"
                "\n");
}

TEST_F(PowerSessionExportTest, AnEndedSessionHasItsEnd) {
  fixture.store->interrupt(session, instantAt(noonSeconds + 60));
  EXPECT_THAT(document(), HasSubstr(R"("endedAt":"2025-03-04T12:01:00Z")"));
  EXPECT_THAT(document(), HasSubstr(R"("status":"interrupted")"));
  session->setStatusRaw(std::nullopt);
  session->setSourceRaw("elsewhere");
  EXPECT_THAT(document(),
              HasSubstr(R"("source":"app","startedAt":"2025-03-04T12:00:00Z","status":"active")"));
}

TEST_F(PowerSessionExportTest, EverySampleIsALineOfItsOwnByTimestamp) {
  append(2.5);
  append(1);
  const auto exported = lines();
  ASSERT_THAT(exported, SizeIs(3));
  EXPECT_EQ(read<PowerSessionExportEnvelope>(exported[0]).summary.sampleCount, 2);
  const auto samples = fixture.store->samples(session);
  EXPECT_THAT(exported[1], StartsWith(R"({"recordType":"sample","sample":{"elapsedSeconds":1,"id":")" +
                                      samples[0]->id().text() +
                                      R"(","processActivities":[],"snapshot":{"battery":{"acConnected")"));
  EXPECT_THAT(exported[1], testing::EndsWith(R"("timestamp":"2025-03-04T12:00:01Z"}})"));
  const auto line = read<PowerSessionSampleLine>(exported[2]);
  EXPECT_EQ(line.recordType, "sample");
  EXPECT_EQ(line.sample.id, samples[1]->id());
  EXPECT_EQ(line.sample.elapsedSeconds, 2.5);
  EXPECT_EQ(line.sample.timestamp, instantAt(noonSeconds + 2)) << "whole seconds";
  SystemPowerStateDTO snapshot(stateOnBattery(instantAt(noonSeconds + 2)));
  EXPECT_EQ(line.sample.snapshot, snapshot);
  EXPECT_EQ(line.sample.proTelemetry, std::nullopt);
}

TEST_F(PowerSessionExportTest, ProcessDataGoesWithItsSample) {
  const auto rows = telemetry(noonSeconds, {energyRow("clang/llvm", 3.0)});
  fixture.store->appendSample(session, stateOnBattery(instantAt(noonSeconds)), {activity("make\n", 2)}, rows);
  const auto line = read<PowerSessionSampleLine>(lines()[1]);
  EXPECT_THAT(line.sample.processActivities, ElementsAre(ProcessActivityDTO(activity("make\n", 2))));
  EXPECT_EQ(line.sample.proTelemetry, rows);
}

TEST_F(PowerSessionExportTest, TheTimestampIsThatOfTheSampleNotOfItsState) {
  fixture.store->appendSample(session, stateOnBattery(instantAt(noonSeconds)), {}, {},
                              instantAt(noonSeconds + 5));
  const auto line = read<PowerSessionSampleLine>(lines()[1]);
  EXPECT_EQ(line.sample.timestamp, instantAt(noonSeconds + 5));
  EXPECT_EQ(line.sample.snapshot.timestamp, instantAt(noonSeconds));
}

TEST_F(PowerSessionExportTest, ACorruptSnapshotLosesItsLineOnly) {
  append(1);
  const auto corrupt = append(2);
  append(3);
  ASSERT_THAT(lines(), SizeIs(4));
  corrupt->setSnapshotData("{");
  const auto exported = lines();
  ASSERT_THAT(exported, SizeIs(3));
  EXPECT_EQ(read<PowerSessionSampleLine>(exported[1]).sample.elapsedSeconds, 1);
  EXPECT_EQ(read<PowerSessionSampleLine>(exported[2]).sample.elapsedSeconds, 3);
  EXPECT_EQ(read<PowerSessionExportEnvelope>(exported[0]).summary.sampleCount, 3);
}

TEST_F(PowerSessionExportTest, CorruptProcessDataLosesNoLine) {
  const auto sample =
      fixture.store->appendSample(session, stateOnBattery(instantAt(noonSeconds)), {activity("make", 2)},
                                  telemetry(noonSeconds, {energyRow("clang", 3.0)}));
  sample->setProcessActivityData("[{}]");
  sample->setProTelemetryData("[]");
  const auto line = read<PowerSessionSampleLine>(lines()[1]);
  EXPECT_THAT(line.sample.processActivities, IsEmpty());
  EXPECT_EQ(line.sample.proTelemetry, std::nullopt);
}

TEST_F(PowerSessionExportTest, BlobsOfAnyLayoutAreWrittenInTheExportsOwn) {
  append(1);
  const std::string canonical = lines()[1];
  const auto sample = fixture.store->samples(session).front();
  const auto snapshot = PowerSessionCoders::decoder.decode<SystemPowerStateDTO>(sample->snapshotData());
  std::string blob = PowerSessionCoders::prettyEncoder.encode(*snapshot).value();
  blob.insert(1, "\"unknownKey\": [1e2, null],");
  sample->setSnapshotData(blob);
  EXPECT_EQ(lines()[1], canonical) << "before it is saved";
  fixture.store->context().save();
  EXPECT_EQ(lines()[1], canonical);
}

TEST_F(PowerSessionExportTest, TwoExportsOfOneMomentAreEqual) {
  append(1);
  EXPECT_EQ(document(), document());
}

TEST_F(PowerSessionExportTest, ASinkGetsTheSameDocumentInPieces) {
  for (int second = 0; second < 200; ++second) append(second);
  std::string gathered;
  std::size_t pieces = 0;
  std::size_t longest = 0;
  fixture.store->exportJSONL(session, instantAt(noonSeconds + 3600.75), [&](std::string_view piece) {
    gathered.append(piece);
    ++pieces;
    longest = std::max(longest, piece.size());
  });
  EXPECT_EQ(gathered, document());
  EXPECT_GT(pieces, 2U);
  EXPECT_LT(longest, 100'000U);
}

TEST_F(PowerSessionExportTest, ASummaryWithoutJSONFormStopsTheExport) {
  const double most = std::numeric_limits<double>::max();
  fixture.store->appendSample(session, stateOnBattery(instantAt(noonSeconds)), {activity("make", most)}, {});
  fixture.store->appendSample(session, stateOnBattery(instantAt(noonSeconds)), {activity("make", most)}, {});
  std::string gathered;
  const auto gather = [&](std::string_view piece) { gathered.append(piece); };
  EXPECT_EQ(kindThrownBy([&] { fixture.store->exportJSONL(session, instantAt(noonSeconds), gather); }),
            StoreError::Kind::notEncodable);
  EXPECT_THAT(gathered, IsEmpty());
  append(1);  // the store can be written again
}

TEST_F(PowerSessionExportTest, ASampleWithoutJSONFormStopsTheExport) {
  append(1);
  const auto sample = append(2);
  SampleColumns columns = sample->columns();
  columns.elapsedSeconds = std::numeric_limits<double>::infinity();
  sample->setColumns(columns);
  EXPECT_EQ(kindThrownBy([&] { std::ignore = document(); }), StoreError::Kind::notEncodable);
}

TEST(PowerSessionExportFileTest, TheVersionIsThatOfTheSoftwareThatExports) {
  const testing_support::TemporaryFolder folder;
  PowerSessionStore("0.9.4", folder.path() / "store")
      .start("Test", PowerSessionSource::app, 2, instantAt(noonSeconds));
  PowerSessionStore store("1.0", folder.path() / "store");
  const auto session = store.sessions().front();
  EXPECT_EQ(session->appVersion(), "0.9.4");
  EXPECT_THAT(store.exportJSONL(session, instantAt(noonSeconds)), StartsWith(R"({"appVersion":"1.0",)"));
}

TEST(PowerSessionExportFileTest, WhatAnotherProcessAppendsMeanwhileIsLeftOut) {
  const testing_support::TemporaryFolder folder;
  PowerSessionStore store("0.9.4", folder.path() / "store");
  PowerSessionStore other("0.9.4", folder.path() / "store");
  const auto session = store.start("Test", PowerSessionSource::app, 2, instantAt(noonSeconds));
  // So many segments that the sink is called between the first line and the second.
  constexpr int count = 400;
  for (int second = 0; second < count; ++second) {
    SystemPowerState state = stateOnBattery(instantAt(noonSeconds + second));
    state.battery->acConnected = second % 2 == 0;
    store.appendSample(session, state, {}, std::nullopt);
  }
  std::string text;
  store.exportJSONL(session, instantAt(noonSeconds), [&](std::string_view piece) {
    if (text.empty()) {
      EXPECT_EQ(std::ranges::count(piece, '\n'), 1) << "the first line alone";
      other.appendSample(other.sessions().front(), stateOnBattery(instantAt(noonSeconds + count)), {},
                         std::nullopt);
    }
    text.append(piece);
  });
  EXPECT_THAT(text, HasSubstr(R"("sampleCount":400,"topContributors")"));
  EXPECT_EQ(std::ranges::count(text, '\n'), 1 + count);
  EXPECT_EQ(store.summary(session).sampleCount, count + 1);
}

TEST_F(PowerSessionExportTest, RecordTypesAreNotForTheCallerToChoose) {
  const PowerSessionExportEnvelope envelope(7, "1.0", instantAt(0), {}, {});
  EXPECT_EQ(envelope.recordType, "session");
  EXPECT_EQ(envelope.schemaVersion, 7);
  EXPECT_EQ(PowerSessionSampleLine(PowerSessionSampleDTO{}).recordType, "sample");
  auto other = envelope;
  other.recordType = "else";
  const auto text = PowerSessionCoders::encoder.encode(other).value();
  EXPECT_EQ(read<PowerSessionExportEnvelope>(text), other) << "readers take what is there";
}

}  // namespace
}  // namespace quellin
