#include <filesystem>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/PowerSessionCoders.h"
#include "QuellinCore/Sessions/PowerSessionDTOs.h"
#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "QuellinCore/Sessions/Storage/Database.h"
#include "Support/BracketDateText.h"
#include "Support/Deaths.h"
#include "Support/ManualClock.h"
#include "Support/ProcessRows.h"
#include "Support/SampleStates.h"
#include "Support/StoreErrors.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing_support::activity;
using testing_support::emptyState;
using testing_support::energyRow;
using testing_support::expectRefusedElsewhere;
using testing_support::kindThrownBy;
using testing_support::noon;
using testing_support::noonSeconds;
using testing_support::stateOnBattery;
using testing_support::telemetry;
using testing_support::TemporaryFolder;
using Kind = StoreError::Kind;

class PowerSessionStoreTest : public testing::Test {
 protected:
  [[nodiscard]] PowerSessionStoreSurroundings surroundings() const {
    return {.clock = clock, .dateText = dateText, .homeFolder = [this] { return folder.path(); }};
  }
  [[nodiscard]] std::unique_ptr<PowerSessionStore> open() const {
    return std::make_unique<PowerSessionStore>("0.9.4", path, false, surroundings());
  }
  std::shared_ptr<PowerSession> start(std::optional<std::string> title = "Test", Instant at = noon) {
    return store->start(title, PowerSessionSource::app, 2, at);
  }
  std::shared_ptr<PowerSessionSample> append(const std::shared_ptr<PowerSession>& session, double second) {
    return store->appendSample(session, stateOnBattery(noon + Seconds(second)), {}, std::nullopt);
  }

  const TemporaryFolder folder;
  const std::filesystem::path path = folder.path() / "a.store";
  testing_support::ManualWallClock clock{noon + Seconds(7)};
  testing_support::BracketDateText dateText;
  std::unique_ptr<PowerSessionStore> store = open();
};

ProTelemetrySnapshot telemetryAtNoon() { return telemetry(noonSeconds, {energyRow("clang", 3.5)}); }

TEST_F(PowerSessionStoreTest, ASessionStartsActiveWithWhatWasAsked) {
  const auto session = store->start("Long compile", PowerSessionSource::cli, 2.5, noon);
  EXPECT_EQ(session->title(), "Long compile");
  EXPECT_EQ(session->startedAt(), noon);
  EXPECT_EQ(session->endedAt(), std::nullopt);
  EXPECT_EQ(session->status(), PowerSessionStatus::active);
  EXPECT_EQ(session->statusRaw(), "active");
  EXPECT_EQ(session->sourceRaw(), "cli");
  EXPECT_EQ(session->appVersion(), "0.9.4");
  EXPECT_EQ(session->schemaVersion(), 2);
  EXPECT_EQ(session->sampleInterval(), 2.5);
  EXPECT_EQ(session->createdAt(), noon + Seconds(7));
  EXPECT_THAT(session->samples(), testing::Optional(IsEmpty()));
}

TEST_F(PowerSessionStoreTest, TitlesAreTrimmedAndNothingElse) {
  EXPECT_EQ(PowerSessionStore::normalizedTitle("  two  words \r\n", noon, dateText), "two  words");
  EXPECT_EQ(PowerSessionStore::normalizedTitle("x", noon, dateText), "x");
  EXPECT_EQ(PowerSessionStore::normalizedTitle(" \t\n ", noon, dateText), "Power Session [1741089600]");
  EXPECT_EQ(PowerSessionStore::normalizedTitle("", noon, dateText), "Power Session [1741089600]");
  EXPECT_EQ(PowerSessionStore::normalizedTitle(std::nullopt, noon, dateText), "Power Session [1741089600]");
  EXPECT_EQ(start(std::nullopt)->title(), "Power Session [1741089600]");
}

TEST_F(PowerSessionStoreTest, StartingTwiceGivesTheFirstSessionUnchanged) {
  const auto first = start("first");
  const auto second = store->start("second", PowerSessionSource::cli, 9, noon + Seconds(60));
  EXPECT_EQ(second, first);
  EXPECT_EQ(second->title(), "first");
  EXPECT_EQ(second->sampleInterval(), 2);
  EXPECT_EQ(store->sessions().size(), 1U);
}

TEST_F(PowerSessionStoreTest, ASessionLeftActiveIsFoundWhenTheStoreIsOpenedAgain) {
  const UUID id = start("left")->id();
  store = open();
  ASSERT_NE(store->activeSession(), nullptr);
  EXPECT_EQ(store->activeSession()->id(), id);
  EXPECT_EQ(start("other")->id(), id);
}

TEST_F(PowerSessionStoreTest, AnotherProcessFindsTheActiveSessionToo) {
  const auto other = open();
  const UUID id = start("mine")->id();
  EXPECT_EQ(other->start("theirs", PowerSessionSource::cli, 1, noon)->id(), id);
  other->stop(other->activeSession(), noon + Seconds(5));
  EXPECT_THAT(store->activeSession(), IsNull());
}

TEST_F(PowerSessionStoreTest, EndingSetsStatusAndEnd) {
  const auto session = start();
  store->stop(session, noon + Seconds(5));
  EXPECT_EQ(session->status(), PowerSessionStatus::completed);
  EXPECT_EQ(session->endedAt(), noon + Seconds(5));
  store->interrupt(session, noon + Seconds(3));
  EXPECT_EQ(session->status(), PowerSessionStatus::interrupted);
  EXPECT_EQ(session->endedAt(), noon + Seconds(3));
  EXPECT_THAT(store->activeSession(), IsNull());
  store = open();
  EXPECT_EQ(store->sessions()[0]->statusRaw(), "interrupted");
}

TEST_F(PowerSessionStoreTest, ASampleHoldsTheStateAndItsColumns) {
  const auto session = start();
  const SystemPowerState state = stateOnBattery(noon + Seconds(1.5));
  const auto sample =
      store->appendSample(session, state, {activity("clang", 4), activity("ninja", 2)}, telemetryAtNoon());
  EXPECT_EQ(sample->timestamp(), noon + Seconds(1.5));
  EXPECT_EQ(sample->elapsedSeconds(), 1.5);
  EXPECT_EQ(sample->totalWatts(), 12.5);
  EXPECT_EQ(sample->batteryPercent(), 80);
  EXPECT_EQ(sample->acConnected(), false);
  EXPECT_EQ(sample->thermalPressure(), 2);
  EXPECT_EQ(sample->maxFanRPM(), 1300);
  EXPECT_EQ(sample->maxTemperature(), 51.25);
  EXPECT_EQ(sample->createdAt(), noon + Seconds(7));
  EXPECT_EQ(sample->session(), session);
  EXPECT_EQ(sample->snapshotData(),
            PowerSessionCoders::encoder.encode(SystemPowerStateDTO(state)).value_or(""));
  const std::vector<ProcessActivityDTO> activities{ProcessActivityDTO(activity("clang", 4)),
                                                   ProcessActivityDTO(activity("ninja", 2))};
  EXPECT_EQ(sample->processActivityData(), PowerSessionCoders::encoder.encode(activities).value_or(""));
  EXPECT_EQ(sample->proTelemetryData(), PowerSessionCoders::encoder.encode(telemetryAtNoon()).value_or(""));
}

TEST_F(PowerSessionStoreTest, EverythingIsThereWhenTheStoreIsOpenedAgain) {
  const auto session = start();
  const auto sample =
      store->appendSample(session, stateOnBattery(noon), {activity("clang", 4)}, telemetryAtNoon());
  append(session, 1);
  const PowerSessionColumns sessionColumns = session->columns();
  const SampleColumns columns = sample->columns();
  const SampleBlobs blobs = sample->blobs();
  store = open();
  const auto stored = store->session(sessionColumns.id);
  ASSERT_NE(stored, nullptr);
  EXPECT_EQ(stored->columns(), sessionColumns);
  const auto samples = store->samples(stored);
  ASSERT_EQ(samples.size(), 2U);
  EXPECT_EQ(samples[0]->columns(), columns);
  EXPECT_EQ(samples[0]->blobs(), blobs);
  EXPECT_EQ(samples[1]->processActivityData(), std::nullopt);
  EXPECT_EQ(samples[1]->proTelemetryData(), std::nullopt);
}

TEST_F(PowerSessionStoreTest, AGivenTimestampReplacesThatOfTheState) {
  const auto sample =
      store->appendSample(start(), stateOnBattery(noon), {}, std::nullopt, noon + Seconds(30));
  EXPECT_EQ(sample->timestamp(), noon + Seconds(30));
  EXPECT_EQ(sample->elapsedSeconds(), 30);
}

TEST_F(PowerSessionStoreTest, ASampleBeforeTheStartHasNoElapsedTime) {
  EXPECT_EQ(append(start(), -5)->elapsedSeconds(), 0);
}

TEST_F(PowerSessionStoreTest, WhatAStateLacksItsSampleLacks) {
  const auto sample = store->appendSample(start(), emptyState(noon), {}, std::nullopt);
  EXPECT_EQ(sample->totalWatts(), std::nullopt);
  EXPECT_EQ(sample->batteryPercent(), std::nullopt);
  EXPECT_EQ(sample->acConnected(), std::nullopt);
  EXPECT_EQ(sample->maxFanRPM(), std::nullopt);
  EXPECT_EQ(sample->maxTemperature(), std::nullopt);
  EXPECT_EQ(sample->thermalPressure(), 0);
  EXPECT_EQ(sample->processActivityData(), std::nullopt);
}

TEST_F(PowerSessionStoreTest, AStateWithoutJSONFormStoresNothing) {
  const auto session = start();
  SystemPowerState state = stateOnBattery(noon);
  state.sensors[0].temperature = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(kindThrownBy([&] { store->appendSample(session, state, {}, std::nullopt); }), Kind::notEncodable);
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(kindThrownBy([&] {
              store->appendSample(session, stateOnBattery(noon), {activity("a", infinity)}, std::nullopt);
            }),
            Kind::notEncodable);
  EXPECT_EQ(kindThrownBy([&] {
              store->appendSample(session, stateOnBattery(noon), {}, std::nullopt, instantAt(infinity));
            }),
            Kind::notStorable);
  EXPECT_FALSE(store->context().hasChanges());
  EXPECT_THAT(store->samples(session), IsEmpty());
}

TEST_F(PowerSessionStoreTest, ProTelemetryWithoutJSONFormIsLeftOut) {
  ProTelemetrySnapshot snapshot = telemetryAtNoon();
  snapshot.cpuPowerWatts = std::numeric_limits<double>::quiet_NaN();
  const auto sample = store->appendSample(start(), stateOnBattery(noon), {}, snapshot);
  EXPECT_EQ(sample->proTelemetryData(), std::nullopt);
}

TEST_F(PowerSessionStoreTest, SamplesCanBeAppendedToAnEndedSession) {
  const auto session = start();
  store->stop(session, noon);
  append(session, 1);
  EXPECT_EQ(store->samples(session).size(), 1U);
}

TEST_F(PowerSessionStoreTest, SamplesComeByTimestampAndEqualOnesAsStored) {
  const auto session = start();
  const auto late = append(session, 9);
  const auto firstOfTwo = append(session, 5);
  const auto secondOfTwo = append(session, 5);
  const auto early = append(session, 1);
  EXPECT_THAT(store->samples(session), ElementsAre(early, firstOfTwo, secondOfTwo, late));
  EXPECT_THAT(session->samples(), testing::Optional(ElementsAre(late, firstOfTwo, secondOfTwo, early)));
}

TEST_F(PowerSessionStoreTest, SessionsComeNewestFirst) {
  for (const double second : {10, 30, 20})
    store->stop(start(std::to_string(second), noon + Seconds(second)), noon);
  start("active", noon);
  std::vector<double> starts;
  for (const auto& session : store->sessions())
    starts.push_back(Seconds(session->startedAt() - noon).count());
  EXPECT_THAT(starts, ElementsAre(30, 20, 10, 0));
}

TEST_F(PowerSessionStoreTest, OfEqualStartsTheSessionStoredLastComesFirst) {
  const auto first = start("first");
  store->stop(first, noon);
  const auto later = start("later", noon + Seconds(1));
  store->stop(later, noon);
  const auto second = start("second");
  EXPECT_THAT(store->sessions(), ElementsAre(later, second, first));
}

TEST_F(PowerSessionStoreTest, CompletedAreAllSessionsButTheActiveNewestFirst) {
  const auto completed = start("completed", noon + Seconds(10));
  store->stop(completed, noon);
  const auto interrupted = start("interrupted", noon + Seconds(20));
  store->interrupt(interrupted, noon);
  start("active", noon + Seconds(15));
  EXPECT_THAT(store->completedSessions(), ElementsAre(interrupted, completed));
}

TEST_F(PowerSessionStoreTest, TheNewestActiveSessionCounts) {
  const auto older = start("older", noon);
  store->stop(older, noon);
  const auto newer = start("newer", noon + Seconds(60));
  older->setStatusRaw("active");
  store->context().save();
  EXPECT_EQ(store->activeSession(), newer);
}

TEST_F(PowerSessionStoreTest, ASessionWhoseStatusWasClearedIsActiveInNameOnly) {
  const auto session = start();
  session->setStatusRaw(std::nullopt);
  store->context().save();
  for (const bool isReopened : {false, true}) {
    if (isReopened) store = open();
    ASSERT_EQ(store->completedSessions().size(), 1U);
    EXPECT_EQ(store->completedSessions()[0]->status(), PowerSessionStatus::active);
    EXPECT_THAT(store->activeSession(), IsNull());
  }
}

TEST_F(PowerSessionStoreTest, AnUnsavedChangeOfStatusCounts) {
  const auto session = start();
  session->setStatusRaw(std::nullopt);
  EXPECT_THAT(store->activeSession(), IsNull());
  EXPECT_NE(start("next"), session);
}

TEST_F(PowerSessionStoreTest, AnUnknownIdentifierHasNoSession) {
  const auto session = start();
  EXPECT_EQ(store->session(session->id()), session);
  EXPECT_THAT(store->session(UUID::random()), IsNull());
}

TEST_F(PowerSessionStoreTest, DeletingASessionDeletesItsSamplesAndNoOthers) {
  const auto kept = start("kept");
  const auto keptSample = append(kept, 1);
  store->stop(kept, noon);
  const auto session = start("deleted", noon + Seconds(60));
  const auto sample = append(session, 61);
  store->remove(session);
  EXPECT_TRUE(session->isDeleted());
  EXPECT_EQ(session->samples(), std::nullopt);
  EXPECT_THAT(store->samples(session), IsEmpty());
  EXPECT_THAT(sample->session(), IsNull());
  EXPECT_EQ(sample->snapshotData(), "");
  EXPECT_THAT(store->sessions(), ElementsAre(kept));
  EXPECT_THAT(store->samples(kept), ElementsAre(keptSample));
  for (const char* rows : {"SELECT count(*) FROM PowerSessionSample", "SELECT count(*) FROM SampleBlobs"}) {
    EXPECT_EQ(store->container().database().integer(rows), 1) << rows;
  }
  EXPECT_EQ(kindThrownBy([&] { append(session, 62); }), Kind::sessionGone);
  store = open();
  EXPECT_EQ(store->sessions().size(), 1U);
}

TEST_F(PowerSessionStoreTest, ANewSessionDoesNotInheritTheSamplesOfADeletedOne) {
  const auto session = start();
  append(session, 1);
  store->remove(session);
  EXPECT_THAT(store->samples(start("next")), IsEmpty());
}

TEST_F(PowerSessionStoreTest, ASessionDeletedByAnotherProcessTakesItsUnsavedSamplesAlong) {
  const auto session = start();
  append(session, 1);
  const auto other = open();
  other->remove(other->activeSession());
  EXPECT_EQ(kindThrownBy([&] { append(session, 2); }), Kind::sessionGone);
  EXPECT_TRUE(session->isDeleted());
  EXPECT_FALSE(store->context().hasChanges());
  EXPECT_EQ(kindThrownBy([&] { append(start("next"), 3); }), std::nullopt);
}

TEST_F(PowerSessionStoreTest, WhoeverEndsASessionItIsKnownToBeActiveNoLonger) {
  const auto session = start();
  const auto other = open();
  EXPECT_TRUE(store->isStillActive(session));
  other->stop(other->activeSession(), noon + Seconds(5));
  EXPECT_FALSE(store->isStillActive(session));
  EXPECT_EQ(session->endedAt(), noon + Seconds(5));
  const auto next = start("next");
  other->remove(other->activeSession());
  EXPECT_FALSE(store->isStillActive(next));
  const auto own = start("own");
  store->remove(own);
  EXPECT_FALSE(store->isStillActive(own));
}

TEST_F(PowerSessionStoreTest, TwoProcessesCanAppendToOneSession) {
  const auto session = start();
  const auto other = open();
  const auto theirs = other->activeSession();
  append(session, 1);
  other->appendSample(theirs, emptyState(noon + Seconds(2)), {activity("a", 1)}, std::nullopt);
  append(session, 3);
  store->appendSample(session, emptyState(noon + Seconds(4)), {activity("b", 2)}, std::nullopt);
  other->appendSample(theirs, stateOnBattery(noon + Seconds(5)), {}, std::nullopt);
  for (auto* each : {store.get(), other.get()}) {
    const SessionCheck check = each->check(*each->activeSession());
    EXPECT_EQ(check.sampleCount, 5);
    EXPECT_TRUE(check.isWhole());
  }
  EXPECT_EQ(store->samples(session)[4]->snapshotData(), other->samples(theirs)[4]->snapshotData());
}

TEST_F(PowerSessionStoreTest, InMemoryNothingIsWrittenAndThePathIsIgnored) {
  const auto unused = folder.path() / "unused.store";
  PowerSessionStore memory("0.9.4", unused, true, surroundings());
  const auto session = memory.start("in memory", PowerSessionSource::app, 1, noon);
  memory.appendSample(session, stateOnBattery(noon), {activity("a", 1)}, telemetryAtNoon());
  memory.stop(session, noon);
  EXPECT_EQ(memory.samples(session).size(), 1U);
  EXPECT_TRUE(memory.container().path().empty());
  EXPECT_FALSE(std::filesystem::exists(unused));
  const PowerSessionStore withoutPath("0.9.4", std::nullopt, true, surroundings());
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "Library"));
}

TEST_F(PowerSessionStoreTest, WithoutAPathTheStoreLiesInTheHomeFolder) {
  const auto expected = folder.path() / "Library/Application Support/Quellin/QuellinSessions.store";
  const auto home = [this] { return folder.path(); };
  EXPECT_EQ(PowerSessionStore::defaultStorePath(home), expected);
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "Library")) << "naming the place makes nothing";
  EXPECT_EQ(PowerSessionStore::defaultStoreURL(home), expected);
  EXPECT_TRUE(std::filesystem::is_directory(expected.parent_path()));
  PowerSessionStore atDefault("0.9.4", std::nullopt, false, surroundings());
  EXPECT_EQ(atDefault.container().path(), expected);
  EXPECT_TRUE(std::filesystem::exists(expected));
}

TEST_F(PowerSessionStoreTest, AFolderThatCannotBeMadeIsReportedWhenTheStoreIsOpened) {
  folder.write("file", "");
  const auto home = [this] { return folder.path() / "file"; };
  EXPECT_EQ(PowerSessionStore::defaultStoreURL(home).filename(), "QuellinSessions.store");
  auto changed = surroundings();
  changed.homeFolder = home;
  EXPECT_EQ(kindThrownBy([&] { const PowerSessionStore failing("0.9.4", std::nullopt, false, changed); }),
            Kind::cannotOpen);
}

TEST_F(PowerSessionStoreTest, OnlyTheMainExecutorMayCallIt) {
  const auto session = start();
  expectRefusedElsewhere([&] { (void)store->sessions(); });
  expectRefusedElsewhere([&] { (void)store->samples(session); });
  expectRefusedElsewhere([&] { (void)store->isStillActive(session); });
  expectRefusedElsewhere([&] { append(session, 1); });
  expectRefusedElsewhere([&] { store->stop(session, noon); });
  expectRefusedElsewhere([&] { start(); });
  expectRefusedElsewhere([&] { store->remove(session); });
  expectRefusedElsewhere([&] { (void)store->summary(session); });
  expectRefusedElsewhere([&] { (void)store->coverage(session); });
  expectRefusedElsewhere([&] { (void)store->exportJSONL(session, noon); });
  expectRefusedElsewhere([&] { session->setTitle("x"); });
}

}  // namespace
}  // namespace quellin
