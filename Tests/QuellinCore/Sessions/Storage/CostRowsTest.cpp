#include <cstdint>
#include <limits>
#include <memory>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Storage/CostRows.h"
#include "QuellinCore/Sessions/Storage/SampleRows.h"
#include "QuellinCore/Sessions/Storage/SessionRows.h"
#include "QuellinCore/Sessions/Storage/StoreFile.h"

namespace quellin {
namespace {

using testing::Optional;

class CostRowsTest : public testing::Test {
 protected:
  void addSample() const {
    insertSample(*database, *nextSampleKey(*database, session), SampleColumns(), StoredFacts());
  }
  [[nodiscard]] std::optional<RecorderCost> cost() const { return readCost(*database, session).cost; }
  [[nodiscard]] bool isDamaged() const { return readCost(*database, session).isDamaged; }

  const std::unique_ptr<Database> database = openStoreInMemory();
  const std::int64_t session = insertSession(*database, PowerSessionColumns());
};

TEST_F(CostRowsTest, IsNotKnownBeforeItIsNoted) {
  EXPECT_EQ(cost(), std::nullopt);
  EXPECT_FALSE(isDamaged());
}

TEST_F(CostRowsTest, AddsUpWhatIsNoted) {
  addCost(*database, session, {.cpuSeconds = 1.5, .bytesWritten = 4096});
  EXPECT_THAT(cost(), Optional(RecorderCost{.cpuSeconds = 1.5, .bytesWritten = 4096}));
  addSample();
  addCost(*database, session, {.cpuSeconds = 0.25, .bytesWritten = 8192});
  EXPECT_THAT(cost(), Optional(RecorderCost{.cpuSeconds = 1.75, .bytesWritten = 12288}));
}

TEST_F(CostRowsTest, StaysUnknownWhereSamplesCameUncounted) {
  addSample();
  addCost(*database, session, {.cpuSeconds = 1, .bytesWritten = 1});
  EXPECT_EQ(cost(), std::nullopt);
  const auto other = insertSession(*database, PowerSessionColumns());
  addCost(*database, other, {.cpuSeconds = 1, .bytesWritten = 1});
  EXPECT_TRUE(readCost(*database, other).cost.has_value());
}

TEST_F(CostRowsTest, GoesWithItsSessionAndNeverComesAlone) {
  addCost(*database, session, {.cpuSeconds = 1, .bytesWritten = 1});
  deleteSession(*database, session);
  EXPECT_EQ(database->integer("SELECT count(*) FROM RecorderCost"), 0);
  addCost(*database, session, {.cpuSeconds = 1, .bytesWritten = 1});
  EXPECT_EQ(database->integer("SELECT count(*) FROM RecorderCost"), 0);
}

TEST_F(CostRowsTest, ADamagedNoteIsToldAndNeverAddedTo) {
  addCost(*database, session, {.cpuSeconds = 1, .bytesWritten = 4096});
  database->execute("UPDATE RecorderCost SET checksum = checksum + 1");
  EXPECT_TRUE(isDamaged());
  EXPECT_EQ(cost(), std::nullopt);
  addCost(*database, session, {.cpuSeconds = 1, .bytesWritten = 4096});
  EXPECT_TRUE(isDamaged());
}

TEST_F(CostRowsTest, AnEditedNoteIsBelievedUnlessItIsImpossible) {
  addCost(*database, session, {.cpuSeconds = 1, .bytesWritten = 4096});
  database->execute("UPDATE RecorderCost SET cpuSeconds = 2");
  EXPECT_THAT(cost(), Optional(RecorderCost{.cpuSeconds = 2, .bytesWritten = 4096}));
  for (const char* statement :
       {"UPDATE RecorderCost SET cpuSeconds = -1", "UPDATE RecorderCost SET cpuSeconds = 9e999",
        "UPDATE RecorderCost SET cpuSeconds = 1, bytesWritten = -1"}) {
    database->execute(statement);
    EXPECT_TRUE(isDamaged()) << statement;
  }
}

TEST_F(CostRowsTest, ASumThatDoesNotFitIsNotReckoned) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  addCost(*database, session, {.cpuSeconds = 1, .bytesWritten = most - 1});
  addCost(*database, session, {.cpuSeconds = 1, .bytesWritten = 1});
  addCost(*database, session, {.cpuSeconds = 1, .bytesWritten = 1});
  EXPECT_THAT(cost(), Optional(RecorderCost{.cpuSeconds = 2, .bytesWritten = most}));
}

}  // namespace
}  // namespace quellin
