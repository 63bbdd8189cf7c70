// What becomes of a recording when the disk is full or fails, at every single operation in turn.
#include <filesystem>
#include <memory>
#include <string>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "QuellinCore/Sessions/Storage/Database.h"
#include "QuellinCore/Sessions/Storage/Query.h"
#include "Support/CaseNames.h"
#include "Support/FaultyFileSystem.h"
#include "Support/SampleStates.h"
#include "Support/StoreErrors.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing_support::FaultyFileSystem;
using testing_support::kindThrownBy;
using testing_support::namedBy;
using testing_support::noon;
using testing_support::stateOnBattery;
using testing_support::TemporaryFolder;
using Fault = FaultyFileSystem::Fault;
using Kind = StoreError::Kind;

std::string integrityOf(const std::filesystem::path& path) {
  Database database(path, Database::Access::readWrite, {});
  Query query(database, "PRAGMA integrity_check");
  return query.step() ? std::string(query.bytes(0)) : "";
}

struct FaultCase {
  const char* name;
  Fault fault;
  Kind kind;
};

class StoreOverFaultyFiles {
 protected:
  [[nodiscard]] std::unique_ptr<PowerSessionStore> open(const std::filesystem::path& path) const {
    PowerSessionStoreSurroundings surroundings;
    surroundings.file.fileSystem = files.name();
    return std::make_unique<PowerSessionStore>("0.9.4", path, false, surroundings);
  }

  const TemporaryFolder folder;
  FaultyFileSystem files;
};

class StoreFaultsTest : public StoreOverFaultyFiles, public testing::TestWithParam<FaultCase> {};
class StoreFileFaultsTest : public StoreOverFaultyFiles, public testing::Test {};

TEST_P(StoreFaultsTest, AnOpeningThatFailsIsReportedAndTheNextOneSucceeds) {
  const auto path = folder.path() / "a.store";
  bool hasSucceeded = false;
  for (long after = 0; !hasSucceeded; ++after) {
    std::filesystem::remove(path);
    std::filesystem::remove(path.string() + "-wal");
    std::filesystem::remove(path.string() + "-journal");
    files.fail(GetParam().fault, after);
    const auto error = kindThrownBy([&] { open(path)->start("x", PowerSessionSource::app, 1, noon); });
    hasSucceeded = !files.hasFailed();
    EXPECT_EQ(error.value_or(GetParam().kind), GetParam().kind) << after;
    EXPECT_FALSE(hasSucceeded && error.has_value()) << after;
    files.fail(Fault::none);
    EXPECT_EQ(kindThrownBy([&] { open(path)->start("x", PowerSessionSource::app, 1, noon); }), std::nullopt)
        << after;
  }
}

TEST_P(StoreFaultsTest, ARecordingLosesNothingWhateverOperationFails) {
  constexpr int samples = 6;
  bool hasSucceeded = false;
  for (long after = 0; !hasSucceeded; ++after) {
    const auto path = folder.path() / (std::to_string(after) + ".store");
    auto store = open(path);
    const auto session = store->start("x", PowerSessionSource::app, 1, noon);
    files.fail(GetParam().fault, after);
    int refused = 0;
    for (int second = 0; second < samples; ++second) {
      const auto append = [&] {
        store->appendSample(session, stateOnBattery(noon + Seconds(second)), {}, std::nullopt);
      };
      if (const auto error = kindThrownBy(append)) {
        EXPECT_EQ(error, GetParam().kind) << after;
        ++refused;
      }
    }
    hasSucceeded = !files.hasFailed();
    EXPECT_EQ(refused == 0 || files.hasFailed(), true);
    files.fail(Fault::none);
    EXPECT_EQ(kindThrownBy([&] { store->stop(session, noon + Seconds(samples)); }), std::nullopt) << after;
    EXPECT_FALSE(store->context().hasChanges());
    store = open(path);
    const SessionCheck check = store->check(*store->sessions().at(0));
    EXPECT_EQ(check.sampleCount, samples) << after;
    EXPECT_TRUE(check.isWhole()) << after;
    store.reset();
    EXPECT_EQ(integrityOf(path), "ok") << after;
  }
}

INSTANTIATE_TEST_SUITE_P(Faults, StoreFaultsTest,
                         testing::Values(FaultCase{"DiskFull", Fault::diskFull, Kind::diskFull},
                                         FaultCase{"WriteError", Fault::writeError, Kind::io},
                                         FaultCase{"SyncError", Fault::syncError, Kind::io}),
                         namedBy(&FaultCase::name));

TEST_F(StoreFileFaultsTest, AFileThatCannotBeWrittenIsReadOnly) {
  const auto path = folder.path() / "a.store";
  open(path).reset();
  files.fail(Fault::readOnly);
  EXPECT_EQ(kindThrownBy([&] { open(path).reset(); }), Kind::readOnly);
}

TEST_F(StoreFileFaultsTest, AFileThatCannotBeReadIsAnInputError) {
  const auto path = folder.path() / "a.store";
  open(path).reset();
  files.fail(Fault::readError);
  EXPECT_EQ(kindThrownBy([&] { open(path).reset(); }), Kind::io);
}

TEST_F(StoreFileFaultsTest, ReadingSamplesNeverThrows) {
  const auto path = folder.path() / "a.store";
  auto store = open(path);
  store->appendSample(store->start("x", PowerSessionSource::app, 1, noon), stateOnBattery(noon), {},
                      std::nullopt);
  store = open(path);
  const auto session = store->activeSession();
  files.fail(Fault::readError);
  EXPECT_TRUE(store->samples(session).empty());
  EXPECT_EQ(kindThrownBy([&] { (void)store->check(*session); }), Kind::io);
}

TEST_F(StoreFileFaultsTest, ASummaryOfWhatCannotBeReadIsAnErrorSavedOrNot) {
  const auto path = folder.path() / "a.store";
  auto store = open(path);
  store->appendSample(store->start("x", PowerSessionSource::app, 1, noon), stateOnBattery(noon), {},
                      std::nullopt);
  for (const bool hasChanges : {false, true}) {
    store = open(path);
    const auto session = store->activeSession();
    if (hasChanges) session->setTitle("changed");
    files.fail(Fault::readError);
    EXPECT_EQ(kindThrownBy([&] { (void)store->summary(session); }), Kind::io) << hasChanges;
    EXPECT_EQ(kindThrownBy([&] { (void)store->exportJSONL(session, noon); }), Kind::io) << hasChanges;
    files.fail(Fault::none);
    store.reset();
  }
}

}  // namespace
}  // namespace quellin
