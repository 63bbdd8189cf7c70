// One thread records while others, each with a store of its own on the same file, read.
#include <atomic>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "Support/KnownStore.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

TEST(StoreThreadsTest, ReadersOnOtherThreadsSeeWholeStates) {
  constexpr int readerCount = 4;
  constexpr int roundsEach = 5;
  const testing_support::TemporaryFolder folder;
  const std::filesystem::path path = folder.path() / "shared.store";
  testing_support::KnownRecording recording(path, testing_support::KnownSession());
  recording.recordNext();
  recording.recordNext();
  std::atomic<int> rounds = 0;
  std::atomic<int> running = readerCount;
  std::vector<std::string> faults(readerCount);
  std::vector<std::thread> readers;
  for (std::string& fault : faults) {
    readers.emplace_back([&, known = recording.known()] {
      for (int round = 0; round < roundsEach && fault.empty(); ++round) {
        fault = readKnownStore(path, known).fault;
        ++rounds;
      }
      --running;
    });
  }
  while (running > 0) {
    if (recording.samples() < 10 + 10 * rounds) recording.recordNext();
    EXPECT_EQ(recording.recorder().lastError(), std::nullopt);
    std::this_thread::yield();
  }
  for (std::thread& reader : readers) reader.join();
  EXPECT_THAT(faults, testing::Each(""));
}

}  // namespace
}  // namespace quellin
