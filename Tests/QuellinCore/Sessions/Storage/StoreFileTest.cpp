#include <atomic>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Storage/Query.h"
#include "QuellinCore/Sessions/Storage/StoreFile.h"
#include "QuellinCore/Sessions/Storage/StoreSchema.h"
#include "Support/FirstVersion.h"
#include "Support/StoreErrors.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::contentOf;
using testing_support::kindThrownBy;
using testing_support::modeOf;
using testing_support::TemporaryFolder;
using Kind = StoreError::Kind;

std::string textOf(Database& database, std::string_view statement) {
  Query query(database, statement);
  return query.step() ? std::string(query.bytes(0)) : "";
}

constexpr const char* someSession =
    "INSERT INTO PowerSession (id, title, startedAt, appVersion, schemaVersion, sampleInterval, createdAt) "
    "VALUES (zeroblob(16), 'kept', 0, '', 2, 1, 0)";

class StoreFileTest : public testing::Test {
 protected:
  const TemporaryFolder folder;
  const std::filesystem::path path = folder.path() / "QuellinSessions.store";
  const StoreFileOptions impatient{.busyTimeout = Seconds{0}};

  std::unique_ptr<Database> open() { return openStoreFile(path, impatient); }
};

TEST_F(StoreFileTest, AMissingFileIsMadeForItsOwnerOnly) {
  const mode_t before = ::umask(0);
  ::chmod(folder.path().c_str(), 0755);
  const auto database = open();
  database->execute(someSession);
  ::umask(before);
  EXPECT_EQ(modeOf(path), 0600U);
  EXPECT_EQ(modeOf(path.string() + "-wal"), 0600U);
  EXPECT_EQ(modeOf(path.string() + "-shm"), 0600U);
  EXPECT_EQ(modeOf(folder.path()), 0755U);
}

TEST_F(StoreFileTest, AnExistingStoreIsClosedToOthers) {
  {
    const auto database = open();
  }
  ::chmod(path.c_str(), 0644);
  const auto database = open();
  EXPECT_EQ(modeOf(path), 0600U);
  EXPECT_EQ(modeOf(path.string() + "-wal"), 0600U);
}

TEST_F(StoreFileTest, TheFileSaysWhatItIsAndKeepsALog) {
  const auto database = open();
  EXPECT_EQ(storeIdentity(*database).applicationID, storeApplicationID);
  EXPECT_EQ(storeIdentity(*database).version, storeVersion);
  EXPECT_EQ(textOf(*database, "PRAGMA journal_mode"), "wal");
  EXPECT_EQ(database->integer("PRAGMA synchronous"), 1);
  EXPECT_EQ(contentOf(path).substr(68, 4), "Quel");
}

TEST_F(StoreFileTest, WhatIsStoredIsThereWhenItIsOpenedAgain) {
  open()->execute(someSession);
  EXPECT_EQ(textOf(*open(), "SELECT title FROM PowerSession"), "kept");
}

TEST_F(StoreFileTest, AMissingFolderCannotBeOpened) {
  EXPECT_EQ(
      kindThrownBy([&] { auto ignored = openStoreFile(folder.path() / "none" / "a.store", impatient); }),
      Kind::cannotOpen);
}

TEST_F(StoreFileTest, WhatIsNoOrdinaryFileIsNamedForWhatItIs) {
  for (const auto& [place, cause] :
       {std::pair{folder.path(), "this is a folder"},
        std::pair{std::filesystem::path{"/dev/null"}, "this is no ordinary file"}}) {
    try {
      auto ignored = openStoreFile(place, impatient);
      FAIL() << place << " opened";
    } catch (const StoreError& error) {
      EXPECT_EQ(error.kind(), Kind::notAStore);
      EXPECT_EQ(error.cause(), cause);
    }
  }
}

TEST_F(StoreFileTest, AFileOfAnotherKindIsLeftAsItWas) {
  for (const std::string& content : {std::string("hello"), std::string(5000, '\0'),
                                     std::string("SQLite format 3\0", 16), std::string(4096, 'x')}) {
    folder.write("QuellinSessions.store", content);
    EXPECT_EQ(kindThrownBy([&] { open(); }), Kind::notAStore) << content.substr(0, 16);
    EXPECT_EQ(contentOf(path), content);
    EXPECT_FALSE(std::filesystem::exists(path.string() + "-wal"));
  }
}

TEST_F(StoreFileTest, ADatabaseOfAnotherProgramIsLeftAsItWas) {
  for (const char* statements : {"CREATE TABLE t (k)", "PRAGMA application_id = 7", "PRAGMA user_version = 1",
                                 "PRAGMA journal_mode = WAL; CREATE TABLE t (k)"}) {
    std::filesystem::remove(path);
    folder.write("QuellinSessions.store", "");
    Database(path, Database::Access::readWrite, impatient).execute(statements);
    const std::string content = contentOf(path);
    EXPECT_EQ(kindThrownBy([&] { open(); }), Kind::notAStore) << statements;
    EXPECT_EQ(contentOf(path), content);
    EXPECT_FALSE(std::filesystem::exists(path.string() + "-wal"));
  }
}

TEST_F(StoreFileTest, AStoreOfALaterVersionIsLeftAsItWas) {
  open()->execute("PRAGMA user_version = 3");
  const std::string content = contentOf(path);
  try {
    open();
    FAIL() << "it opened";
  } catch (const StoreError& error) {
    EXPECT_EQ(error.kind(), Kind::tooNew);
    EXPECT_THAT(error.what(), HasSubstr("format 3"));
  }
  EXPECT_EQ(contentOf(path), content);
}

TEST_F(StoreFileTest, ALaterVersionThatOnlyTheLogKnowsIsLeftAsItWas) {
  const auto keepsTheLog = open();
  keepsTheLog->execute("PRAGMA user_version = 3");
  const std::string content = contentOf(path);
  const std::string log = contentOf(path.string() + "-wal");
  EXPECT_EQ(kindThrownBy([&] { open(); }), Kind::tooNew);
  EXPECT_EQ(contentOf(path), content);
  EXPECT_EQ(contentOf(path.string() + "-wal"), log);
}

TEST_F(StoreFileTest, TablesThatAreMissingOrAlteredMeanADamagedStore) {
  for (const char* statements :
       {"DROP TRIGGER deletedSession", "DROP TABLE SampleBlobs", "DROP TABLE RecorderCost",
        "DROP TABLE BlobReference; CREATE TABLE BlobReference (key INTEGER PRIMARY KEY)"}) {
    std::filesystem::remove(path);
    open()->execute(statements);
    EXPECT_EQ(kindThrownBy([&] { open(); }), Kind::damaged) << statements;
  }
}

TEST_F(StoreFileTest, AStoreOfTheFirstVersionIsBroughtForwardWithAllItHolds) {
  open()->execute(std::string(someSession) + ";" + testing_support::backToVersion1);
  const auto database = open();
  EXPECT_EQ(storeIdentity(*database).version, storeVersion);
  EXPECT_EQ(textOf(*database, "SELECT title FROM PowerSession"), "kept");
  EXPECT_EQ(database->integer("SELECT count(*) FROM RecorderCost"), 0);
}

TEST_F(StoreFileTest, ADamagedStoreOfTheFirstVersionIsNotBroughtForward) {
  open()->execute(std::string(testing_support::backToVersion1) + "; DROP TABLE PowerSession");
  EXPECT_EQ(kindThrownBy([&] { open(); }), Kind::damaged);
  EXPECT_EQ(Database(path, Database::Access::readWrite, impatient).integer("PRAGMA user_version"), 1);
}

TEST_F(StoreFileTest, AnIndexOfSomebodyElseDoesNoHarm) {
  open()->execute("CREATE INDEX extra ON PowerSessionSample (timestamp)");
  EXPECT_EQ(kindThrownBy([&] { open(); }), std::nullopt);
}

TEST_F(StoreFileTest, ALockedStoreIsReportedAfterTheWait) {
  open();
  Database other(path, Database::Access::readWrite, impatient);
  other.execute("PRAGMA locking_mode = EXCLUSIVE; BEGIN IMMEDIATE; DELETE FROM PowerSession");
  EXPECT_EQ(kindThrownBy([&] { open(); }), Kind::locked);
}

TEST_F(StoreFileTest, SeveralMakersOfOneStoreAllSucceed) {
  constexpr int rounds = 20;
  constexpr int makers = 4;
  for (int round = 0; round < rounds; ++round) {
    const auto shared = folder.path() / (std::to_string(round) + ".store");
    std::atomic<int> opened = 0;
    std::vector<std::thread> threads;
    for (int maker = 0; maker < makers; ++maker) {
      threads.emplace_back([&] {
        try {
          openStoreFile(shared, {})->execute(someSession);
          ++opened;
        } catch (const StoreError& error) {
          ADD_FAILURE() << error.what();
        }
      });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(opened, makers);
    EXPECT_EQ(openStoreFile(shared, {})->integer("SELECT count(*) FROM PowerSession"), makers);
  }
}

TEST_F(StoreFileTest, AStoreWhoseMakingWasCutShortIsMadeAnew) {
  // The power went while the first pages were on their way: zeros, and the journal that takes them back.
  folder.write("QuellinSessions.store", std::string(8192, '\0'));
  // A journal header: magic, no records, a nonce, the file empty before, sectors of 512 bytes, pages of 4096.
  std::string journal("\xd9\xd5\x05\xf9\x20\xa1\x63\xd7\0\0\0\0seed\0\0\0\0\0\0\x02\0\0\0\x10\0", 28);
  journal.resize(512);
  folder.write("QuellinSessions.store-journal", journal);
  EXPECT_EQ(kindThrownBy([&] { open(); }), std::nullopt);
}

TEST(StoreInMemoryTest, NothingReachesTheDisk) {
  const auto database = openStoreInMemory();
  database->execute(someSession);
  EXPECT_EQ(database->integer("SELECT count(*) FROM PowerSession"), 1);
  EXPECT_EQ(database->integer("PRAGMA temp_store"), 2);
  EXPECT_EQ(textOf(*database, "SELECT file FROM pragma_database_list"), "");
}

}  // namespace
}  // namespace quellin
