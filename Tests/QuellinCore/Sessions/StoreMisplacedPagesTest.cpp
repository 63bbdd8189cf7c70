// Puts every page of a store file in the place of every other one, as a disk does that writes to the wrong
// sector, or not at all: nothing that was recorded goes missing without a word.

#include <cstddef>
#include <filesystem>
#include <set>
#include <string>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "Support/GeneratedDay.h"
#include "Support/RecordedStore.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing_support::contentOf;
using testing_support::GeneratedDay;
using testing_support::readStore;
using testing_support::StoreReading;
using testing_support::TemporaryFolder;
using testing_support::untruth;

constexpr std::size_t pageSize = 4096;

class StoreMisplacedPagesTest : public testing::Test {
 protected:
  void SetUp() override {
    // Every version of the file: empty, with one session, with two, with all.
    const std::filesystem::path path = folder.path() / "good.store";
    GeneratedDay day;
    for (int number = 0; number < 4; ++number) {
      record(path, day, number);
      file = contentOf(path);
      for (std::size_t place = 0; place < file.size(); place += pageSize)
        pages.insert(file.substr(place, pageSize));
    }
    whole = readStore(path);
    ASSERT_TRUE(whole.isWhole);
  }

  static void record(const std::filesystem::path& path, GeneratedDay& day, int number) {
    PowerSessionStore store("0.9.4", path);
    if (number == 0) return;
    const auto session = store.start("session", PowerSessionSource::cli, 1, instantAt(1741046400 + number));
    for (int second = 0; second < 40; ++second) {
      const auto moment = day.next();
      store.appendSample(session, moment.state, moment.activities, moment.telemetry);
    }
    store.stop(session, instantAt(1741046500));
  }

  const TemporaryFolder folder;
  std::string file;
  std::set<std::string> pages;
  StoreReading whole;
};

TEST_F(StoreMisplacedPagesTest, NoPageInThePlaceOfAnotherHidesAnything) {
  for (std::size_t place = 0; place < file.size(); place += pageSize) {
    for (const std::string& page : pages) {
      std::string damaged = file;
      damaged.replace(place, pageSize, page);
      for (const char* suffix : {"", "-wal", "-shm"})
        std::filesystem::remove(folder.path() / (std::string("damaged.store") + suffix));
      EXPECT_EQ(untruth(readStore(folder.write("damaged.store", damaged)), whole), "")
          << "in page " << place / pageSize;
    }
  }
}

}  // namespace
}  // namespace quellin
