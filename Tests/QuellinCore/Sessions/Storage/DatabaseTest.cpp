#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Storage/Database.h"
#include "QuellinCore/Sessions/Storage/Query.h"
#include "QuellinCore/Sessions/Storage/Transaction.h"
#include "Support/StoreErrors.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::kindThrownBy;
using testing_support::TemporaryFolder;

class DatabaseTest : public testing::Test {
 protected:
  DatabaseTest() { database.execute("CREATE TABLE t (k INTEGER PRIMARY KEY, v)"); }

  std::int64_t count() { return database.integer("SELECT count(*) FROM t"); }
  void insert(std::int64_t value) { Query(database, "INSERT INTO t (v) VALUES (?)").bind(value).run(); }

  Database database;
};

TEST_F(DatabaseTest, EveryKindOfValueComesBack) {
  const std::string bytes("a\0b", 3);
  Query insert(database, "INSERT INTO t (v) VALUES (?), (?), (?), (?), (?), (?)");
  insert.bind(std::int64_t{-7}).bind(0.1).bindText("text").bindBytes(bytes).bindNull().bindBytes({}).run();
  Query query(database, "SELECT v FROM t ORDER BY k");
  ASSERT_TRUE(query.step());
  EXPECT_EQ(query.integer(0), -7);
  ASSERT_TRUE(query.step());
  EXPECT_EQ(query.real(0), 0.1);
  ASSERT_TRUE(query.step());
  EXPECT_EQ(query.bytes(0), "text");
  ASSERT_TRUE(query.step());
  EXPECT_EQ(query.bytes(0), bytes);
  ASSERT_TRUE(query.step());
  EXPECT_TRUE(query.isNull(0));
  ASSERT_TRUE(query.step());
  EXPECT_FALSE(query.isNull(0));
  EXPECT_EQ(query.bytes(0), "");
  EXPECT_FALSE(query.step());
}

TEST_F(DatabaseTest, NumbersThatAreNotFiniteAreRefused) {
  for (const double value : {std::nan(""), std::numeric_limits<double>::infinity()}) {
    Query query(database, "INSERT INTO t (v) VALUES (?)");
    EXPECT_EQ(kindThrownBy([&] { query.bind(value); }), StoreError::Kind::notStorable);
  }
}

TEST_F(DatabaseTest, AStatementInUseTwiceAtOnceIsTwoStatements) {
  insert(1);
  insert(2);
  std::vector<std::int64_t> seen;
  Query outer(database, "SELECT v FROM t ORDER BY k");
  while (outer.step()) {
    Query inner(database, "SELECT v FROM t ORDER BY k");
    while (inner.step()) seen.push_back(outer.integer(0) * 10 + inner.integer(0));
  }
  EXPECT_THAT(seen, ElementsAre(11, 12, 21, 22));
}

TEST_F(DatabaseTest, AStatementKeepsNothingOfItsLastUse) {
  {
    Query(database, "INSERT INTO t (k, v) VALUES (?, ?)").bind(std::int64_t{5}).bind(std::int64_t{6}).run();
  }
  {
    Query(database, "INSERT INTO t (k, v) VALUES (?, ?)").bind(std::int64_t{7}).run();
  }
  EXPECT_EQ(database.integer("SELECT v IS NULL FROM t WHERE k = 7"), 1);
}

TEST_F(DatabaseTest, ACommittedTransactionStays) {
  {
    Transaction transaction(database);
    insert(1);
    transaction.commit();
  }
  EXPECT_EQ(count(), 1);
}

TEST_F(DatabaseTest, ATransactionThatIsLeftIsUndone) {
  {
    const Transaction transaction(database);
    insert(1);
    EXPECT_TRUE(database.isInTransaction());
  }
  EXPECT_FALSE(database.isInTransaction());
  EXPECT_EQ(count(), 0);
}

TEST_F(DatabaseTest, AnExplicitRollbackIsRemembered) {
  Transaction transaction(database);
  insert(1);
  transaction.rollback();
  EXPECT_EQ(count(), 0);
  {
    Transaction next(database);
    insert(2);
    transaction.rollback();  // must not end the transaction that is open now
    next.commit();
  }
  EXPECT_EQ(count(), 1);
}

TEST_F(DatabaseTest, AStatementThatDoesNotFitTheTablesMeansADamagedStore) {
  EXPECT_EQ(kindThrownBy([&] { Query(database, "SELECT x FROM nowhere"); }), StoreError::Kind::damaged);
}

TEST_F(DatabaseTest, AFullDatabaseIsADiskFull) {
  database.execute("PRAGMA max_page_count = 3");
  EXPECT_EQ(kindThrownBy([&] {
              while (count() < 1000)
                Query(database, "INSERT INTO t (v) VALUES (?)").bindText(std::string(500, 'x')).run();
            }),
            StoreError::Kind::diskFull);
}

TEST(DatabaseFileTest, AMissingFileCannotBeOpenedAndTheErrorNamesIt) {
  const TemporaryFolder folder;
  const auto path = folder.path() / "missing.store";
  try {
    const Database database(path, Database::Access::readWrite, {});
    FAIL() << "it opened";
  } catch (const StoreError& error) {
    EXPECT_EQ(error.kind(), StoreError::Kind::cannotOpen);
    EXPECT_EQ(error.path(), path);
    EXPECT_THAT(error.what(), HasSubstr(path.string()));
    EXPECT_THAT(error.what(), HasSubstr(error.cause()));
    EXPECT_THAT(error.what(), HasSubstr("Check that the folder exists and that you may write to it."));
  }
}

TEST(DatabaseFileTest, PathsWithCharactersOfURIsCanBePeekedAt) {
  const TemporaryFolder folder;
  const auto path = folder.path() / "100%41 sure?#1.store";
  folder.write("100%41 sure?#1.store", "");
  Database(path, Database::Access::readWrite, {}).execute("PRAGMA user_version = 9; CREATE TABLE t (k)");
  Database peek(path, Database::Access::peek, {});
  EXPECT_EQ(peek.integer("PRAGMA user_version"), 9);
  EXPECT_EQ(kindThrownBy([&] { peek.execute("INSERT INTO t VALUES (1)"); }), StoreError::Kind::readOnly);
}

TEST(DatabaseFileTest, AnotherWriterMeansLocked) {
  const TemporaryFolder folder;
  folder.write("a.store", "");
  const StoreFileOptions impatient{.busyTimeout = Seconds{0}};
  Database first(folder.path() / "a.store", Database::Access::readWrite, impatient);
  Database second(folder.path() / "a.store", Database::Access::readWrite, impatient);
  const Transaction writing(first);
  EXPECT_EQ(kindThrownBy([&] { const Transaction blocked(second); }), StoreError::Kind::locked);
}

}  // namespace
}  // namespace quellin
