// Flips, cuts and extends a store file and its log: whatever is read afterwards is what was recorded, or is
// reported as lost.

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <random>
#include <string>
#include <utility>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "Support/Bytes.h"
#include "Support/RecordedStore.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing_support::contentOf;
using testing_support::Missing;
using testing_support::readStore;
using testing_support::StoreReading;
using testing_support::TemporaryFolder;
using testing_support::untruth;
using testing_support::withFlippedBit;

class StoreDamageTest : public testing::Test {
 protected:
  StoreDamageTest() {
    const auto original = folder.path() / "original.store";
    auto bytes = testing_support::recordStore(original);
    file = std::move(bytes.file);
    log = std::move(bytes.log);
    whole = readStore(original);
  }

  // Reads a store of these bytes; the log is left out when it is empty.
  StoreReading readStoreOf(const std::string& fileBytes, const std::string& logBytes) {
    return testing_support::readStoreOf({.file = fileBytes, .log = logBytes}, damaged);
  }

  void expectTruthful(const StoreReading& reading, const std::string& what,
                      Missing mayBeMissing = Missing::nothing) const {
    EXPECT_EQ(untruth(reading, whole, mayBeMissing), "") << what;
  }

  const TemporaryFolder folder;
  const std::filesystem::path damaged = folder.path() / "damaged.store";
  std::string file;
  std::string log;
  StoreReading whole;
};

TEST_F(StoreDamageTest, TheUndamagedBytesReadWhole) {
  ASSERT_GT(log.size(), 20'000U);
  const StoreReading reading = readStoreOf(file, log);
  EXPECT_TRUE(reading.isWhole);
  EXPECT_EQ(reading.sessions.size(), 3U);
  expectTruthful(reading, "undamaged");
}

TEST_F(StoreDamageTest, FlippedBitsOfTheFileShow) {
  // Everything moves into the file, so that no log covers the damage.
  {
    const PowerSessionStore settled("test", folder.path() / "original.store");
  }
  readStoreOf(file, log);
  const std::string settled = contentOf(damaged);
  std::mt19937 random(11);
  std::size_t reported = 0;
  const auto flip = [&](std::size_t place, unsigned bit) {
    const StoreReading reading = readStoreOf(withFlippedBit(settled, place * 8 + bit), "");
    expectTruthful(reading, "bit " + std::to_string(bit) + " of byte " + std::to_string(place));
    reported += reading.isWhole ? 0U : 1U;
  };
  for (std::size_t place = 0; place < 112; ++place) flip(place, static_cast<unsigned>(random() % 8));
  for (int round = 0; round < 600; ++round)
    flip(random() % settled.size(), static_cast<unsigned>(random() % 8));
  EXPECT_GT(reported, 100U);
}

TEST_F(StoreDamageTest, AShortenedOrLengthenedFileShowsOrReadsWhole) {
  readStoreOf(file, log);
  const std::string settled = contentOf(damaged);
  std::mt19937 random(12);
  for (std::size_t length = 0; length < settled.size(); length += 1 + random() % 2500) {
    const StoreReading reading = readStoreOf(settled.substr(0, length), "");
    EXPECT_FALSE(reading.isWhole && length > 0) << length;
    expectTruthful(reading, "cut to " + std::to_string(length),
                   length == 0 ? Missing::theEnd : Missing::nothing);
  }
  for (const std::size_t more : {1U, 511U, 4096U, 10000U}) {
    std::string tail(more, '\0');
    std::ranges::generate(tail, [&] { return static_cast<char>(random()); });
    expectTruthful(readStoreOf(settled + tail, ""), "lengthened by " + std::to_string(more));
  }
}

TEST_F(StoreDamageTest, AWriteBackThatWasKilledLosesNothing) {
  constexpr std::size_t page = 4096;
  readStoreOf(file, log);
  const std::string settled = contentOf(damaged);
  ASSERT_GT(settled.size(), file.size());
  // Pages move from the log to the file in the order of their numbers, so that the first one, with the new
  // size in it, is there long before the last.
  for (std::size_t moved = page; moved <= settled.size(); moved += page) {
    std::string halfway = settled.substr(0, moved);
    if (moved < file.size()) halfway += file.substr(moved);
    const StoreReading reading = readStoreOf(halfway, log);
    EXPECT_TRUE(reading.isWhole) << moved;
    EXPECT_EQ(reading.sessions.size(), 3U) << moved;
    expectTruthful(reading, "killed after " + std::to_string(moved) + " bytes");
  }
}

TEST_F(StoreDamageTest, DamageInTheLogLosesNoMoreThanItsEnd) {
  std::mt19937 random(13);
  for (int round = 0; round < 300; ++round) {
    const std::size_t place = random() % log.size();
    expectTruthful(readStoreOf(file, withFlippedBit(log, place * 8 + random() % 8)),
                   "byte " + std::to_string(place) + " of the log", Missing::theEnd);
  }
  for (std::size_t length = 1; length < log.size(); length += 1 + random() % 3000) {
    expectTruthful(readStoreOf(file, log.substr(0, length)), "log cut to " + std::to_string(length),
                   Missing::theEnd);
  }
  expectTruthful(readStoreOf(file, log + std::string(5000, 'x')), "log lengthened");
}

TEST_F(StoreDamageTest, ADamagedStoreIsLeftAsItWasByAnOpeningThatFails) {
  std::string bytes = file;
  std::fill(bytes.begin() + 100, bytes.begin() + 4096, '\x5A');  // the list of tables
  const StoreReading reading = readStoreOf(bytes, "");
  EXPECT_FALSE(reading.isWhole);
  EXPECT_EQ(contentOf(damaged), bytes);
}

}  // namespace
}  // namespace quellin
