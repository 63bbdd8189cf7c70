// Flips, cuts and extends a store file and its log: whatever is read afterwards is what was recorded, or is
// reported as lost.

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "Support/GeneratedDay.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing_support::contentOf;
using testing_support::GeneratedDay;
using testing_support::TemporaryFolder;

constexpr Instant midnight = instantAt(1741046400);

struct RecordedSample {
  SampleColumns columns;
  SampleBlobs blobs;
  std::optional<SampleFacts> facts;
};

struct RecordedSession {
  PowerSessionColumns columns;
  std::vector<RecordedSample> samples;
};

// What reading everything gives; `isWhole` is false when anything was reported.
struct Reading {
  std::map<UUID, RecordedSession> sessions;
  bool isWhole = true;
};

Reading readAll(const std::filesystem::path& path) {
  Reading reading;
  try {
    PowerSessionStore store("test", path);
    for (const auto& session : store.sessions()) {
      RecordedSession& recorded = reading.sessions[session->id()];
      recorded.columns = session->columns();
      reading.isWhole = reading.isWhole && store.check(*session).isWhole();
      auto cursor = store.scan(*session, SampleCursor::OnDamage::skip);
      while (cursor->next())
        recorded.samples.push_back({cursor->columns(), cursor->blobs(), cursor->facts()});
    }
  } catch (const StoreError&) {
    reading.isWhole = false;
  }
  return reading;
}

bool agrees(const std::optional<std::string>& read, const std::optional<std::string>& recorded) {
  return read == recorded || read == "";
}

bool agrees(const RecordedSample& read, const RecordedSample& recorded) {
  if (read.columns != recorded.columns || (read.facts && read.facts != recorded.facts)) return false;
  // A row of blobs that is gone leaves a lost snapshot alone to tell of it.
  if (read.blobs == SampleBlobs()) return true;
  return agrees(read.blobs.snapshotData, recorded.blobs.snapshotData) &&
         agrees(read.blobs.processActivityData, recorded.blobs.processActivityData) &&
         agrees(read.blobs.proTelemetryData, recorded.blobs.proTelemetryData);
}

class StoreDamageTest : public testing::Test {
 protected:
  StoreDamageTest() {
    const auto original = folder.path() / "original.store";
    PowerSessionStore store("0.9.4", original);
    GeneratedDay day;
    for (int index = 0; index < 3; ++index) {
      const auto session = store.start("session " + std::to_string(index), PowerSessionSource::cli, 1,
                                       midnight + Seconds(index));
      for (int second = 0; second < 40; ++second) {
        const auto moment = day.next();
        store.appendSample(session, moment.state, moment.activities, moment.telemetry);
      }
      if (index < 2) store.stop(session, midnight + Seconds(40));
    }
    // The last session is in the log only: the file and its log are taken while the store is open.
    file = contentOf(original);
    log = contentOf(original.string() + "-wal");
    whole = readAll(original);
  }

  // Reads a store of these bytes; the log is left out when it is empty.
  Reading readStoreOf(const std::string& fileBytes, const std::string& logBytes) {
    for (const char* suffix : {"", "-wal", "-shm"}) std::filesystem::remove(damaged.string() + suffix);
    folder.write("damaged.store", fileBytes);
    if (!logBytes.empty()) folder.write("damaged.store-wal", logBytes);
    return readAll(damaged);
  }

  void expectTruthful(const Reading& reading, const std::string& what, bool mayEndEarly) {
    const bool mustBeWhole = reading.isWhole && !mayEndEarly;
    for (const auto& [id, session] : reading.sessions) {
      const auto recorded = whole.sessions.find(id);
      if (recorded == whole.sessions.end()) {
        ADD_FAILURE() << what << ": a session that nobody recorded";
        continue;
      }
      const RecordedSession& original = recorded->second;
      EXPECT_TRUE(mayEndEarly || session.columns == original.columns) << what;
      std::size_t next = 0;
      for (const RecordedSample& sample : session.samples) {
        while (next < original.samples.size() && original.samples[next].columns.id != sample.columns.id)
          ++next;
        ASSERT_LT(next, original.samples.size())
            << what << ": a sample that nobody recorded, or out of order";
        EXPECT_TRUE(agrees(sample, original.samples[next])) << what;
      }
      EXPECT_TRUE(!mustBeWhole || session.samples.size() == original.samples.size()) << what;
    }
    EXPECT_TRUE(!mustBeWhole || reading.sessions.size() == whole.sessions.size()) << what;
  }

  const TemporaryFolder folder;
  const std::filesystem::path damaged = folder.path() / "damaged.store";
  std::string file;
  std::string log;
  Reading whole;
};

std::string withFlippedBit(std::string bytes, std::size_t place, unsigned bit) {
  bytes[place] = static_cast<char>(static_cast<unsigned char>(bytes[place]) ^ (1U << bit));
  return bytes;
}

TEST_F(StoreDamageTest, TheUndamagedBytesReadWhole) {
  ASSERT_GT(log.size(), 20'000U);
  const Reading reading = readStoreOf(file, log);
  EXPECT_TRUE(reading.isWhole);
  EXPECT_EQ(reading.sessions.size(), 3U);
  expectTruthful(reading, "undamaged", false);
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
    const Reading reading = readStoreOf(withFlippedBit(settled, place, bit), "");
    expectTruthful(reading, "bit " + std::to_string(bit) + " of byte " + std::to_string(place), false);
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
    const Reading reading = readStoreOf(settled.substr(0, length), "");
    EXPECT_FALSE(reading.isWhole && length > 0) << length;
    expectTruthful(reading, "cut to " + std::to_string(length), length == 0);
  }
  for (const std::size_t more : {1U, 511U, 4096U, 10000U}) {
    std::string tail(more, '\0');
    std::ranges::generate(tail, [&] { return static_cast<char>(random()); });
    expectTruthful(readStoreOf(settled + tail, ""), "lengthened by " + std::to_string(more), false);
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
    const Reading reading = readStoreOf(halfway, log);
    EXPECT_TRUE(reading.isWhole) << moved;
    EXPECT_EQ(reading.sessions.size(), 3U) << moved;
    expectTruthful(reading, "killed after " + std::to_string(moved) + " bytes", false);
  }
}

TEST_F(StoreDamageTest, DamageInTheLogLosesNoMoreThanItsEnd) {
  std::mt19937 random(13);
  for (int round = 0; round < 300; ++round) {
    const std::size_t place = random() % log.size();
    expectTruthful(readStoreOf(file, withFlippedBit(log, place, static_cast<unsigned>(random() % 8))),
                   "byte " + std::to_string(place) + " of the log", true);
  }
  for (std::size_t length = 1; length < log.size(); length += 1 + random() % 3000) {
    expectTruthful(readStoreOf(file, log.substr(0, length)), "log cut to " + std::to_string(length), true);
  }
  expectTruthful(readStoreOf(file, log + std::string(5000, 'x')), "log lengthened", false);
}

TEST_F(StoreDamageTest, ADamagedStoreIsLeftAsItWasByAnOpeningThatFails) {
  std::string bytes = file;
  std::fill(bytes.begin() + 100, bytes.begin() + 4096, '\x5A');  // the list of tables
  const Reading reading = readStoreOf(bytes, "");
  EXPECT_FALSE(reading.isWhole);
  EXPECT_EQ(contentOf(damaged), bytes);
}

}  // namespace
}  // namespace quellin
