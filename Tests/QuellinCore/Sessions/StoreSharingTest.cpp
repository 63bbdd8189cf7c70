// One process records while sixteen others, each with a store of its own, read everything again and again.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "Support/KnownStore.h"
#include "Support/ProgramRun.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing_support::KnownReading;
using testing_support::KnownRecording;
using testing_support::KnownSession;
using testing_support::ProgramResult;
using testing_support::RunningProgram;
using testing_support::TemporaryFolder;

class StoreSharingTest : public testing::Test {
 protected:
  void startReaders(int count) {
    for (int index = 0; index < count; ++index) {
      const std::string rounds = folder.write("rounds-" + std::to_string(index), "");
      roundFiles.emplace_back(rounds);
      readers.push_back(std::make_unique<RunningProgram>(testing_support::ProgramStart{
          .executable = QUELLIN_STORE_READER, .arguments = {"StoreReader", path.string(), rounds}}));
    }
  }

  /// The readings of the reader that has made the fewest so far, and of all.
  struct Rounds {
    std::uintmax_t fewest = UINTMAX_MAX;
    std::uintmax_t all = 0;
  };
  [[nodiscard]] Rounds rounds() const {
    Rounds result;
    for (const auto& file : roundFiles) {
      const auto made = std::filesystem::file_size(file);
      result.fewest = std::min(result.fewest, made);
      result.all += made;
    }
    return result;
  }

  /// Whether a reader has come to its end, which it must not before the recording has.
  [[nodiscard]] bool hasLostReader() const {
    return std::ranges::any_of(readers, [](const auto& reader) {
      siginfo_t ended{};
      const auto id = static_cast<id_t>(reader->processID());
      return ::waitid(P_PID, id, &ended, WEXITED | WNOHANG | WNOWAIT) == 0 && ended.si_pid != 0;
    });
  }

  const TemporaryFolder folder;
  const std::filesystem::path path = folder.path() / "shared.store";
  std::vector<std::filesystem::path> roundFiles;
  std::vector<std::unique_ptr<RunningProgram>> readers;
};

TEST_F(StoreSharingTest, SixteenReadersSeeWholeStatesAndDoNotHoldUpTheRecorder) {
  constexpr std::uintmax_t roundsEach = 3;
  KnownRecording recording(path, KnownSession());
  recording.recordNext();
  recording.recordNext();
  startReaders(16);
  Rounds made;
  do {
    made = rounds();
    // As many samples as keep both sides at work: readings get dearer with them.
    while (recording.samples() < 20 + static_cast<std::int64_t>(made.all) * 2) {
      recording.recordNext();
      ASSERT_EQ(recording.recorder().lastError(), std::nullopt) << recording.samples();
    }
    std::this_thread::yield();
  } while (made.fewest < roundsEach && !hasLostReader());
  recording.stop();
  EXPECT_EQ(recording.recorder().lastError(), std::nullopt);
  for (const auto& reader : readers) EXPECT_EQ(reader->finish(), (ProgramResult{.exitStatus = 0}));
  EXPECT_GE(made.fewest, roundsEach);
  const KnownReading reading = testing_support::readKnownStore(path, recording.known());
  EXPECT_EQ(reading.fault, "");
  EXPECT_EQ(reading.samples, recording.samples());
}

TEST_F(StoreSharingTest, AReaderThatFindsSomethingElseSaysSo) {
  KnownRecording recording(path, KnownSession(Seconds{2}));
  recording.recordNext();
  recording.recordNext();
  startReaders(1);
  const ProgramResult result = readers.front()->finish();
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.error, testing::Not(testing::IsEmpty()));
}

}  // namespace
}  // namespace quellin
