// A recording that goes on while the disk is full: what is stored stays as it is, and nothing is lost once
// there is room again.
#include <filesystem>
#include <memory>
#include <set>
#include <string>

#include <gmock/gmock.h>

#include "Support/FaultyFileSystem.h"
#include "Support/KnownStore.h"
#include "Support/SmallDisk.h"
#include "Support/StoreErrors.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Optional;
using testing_support::FaultyFileSystem;
using testing_support::KnownReading;
using testing_support::KnownRecording;
using testing_support::KnownSession;
using testing_support::readKnownStore;
using Fault = FaultyFileSystem::Fault;

void expectStored(const std::filesystem::path& path, std::int64_t samples) {
  const KnownReading reading = readKnownStore(path, KnownSession());
  EXPECT_EQ(reading.fault, "");
  EXPECT_EQ(reading.samples, samples);
}

class StoreFullDiskTest : public testing::Test {
 protected:
  void recordNext(int count) {
    for (int index = 0; index < count; ++index) recording.recordNext();
  }

  const testing_support::TemporaryFolder folder;
  const std::filesystem::path path = folder.path() / "a.store";
  FaultyFileSystem files;
  KnownRecording recording{path, KnownSession(), {.fileSystem = files.name()}};
};

TEST_F(StoreFullDiskTest, TheRecorderSaysSoAndGoesOnWhenThereIsRoom) {
  recordNext(150);  // more than the log takes before it moves into the file
  expectStored(path, 150);
  files.fail(Fault::diskFull);
  for (int refused = 1; refused <= 20; ++refused) {
    recordNext(1);
    EXPECT_THAT(recording.recorder().lastError(),
                Optional(AllOf(HasSubstr(path.string()), HasSubstr("full"))));
    EXPECT_EQ(recording.recorder().activeSummary().sampleCount, 150);
    if (refused % 10 == 0) expectStored(path, 150);
  }
  files.fail(Fault::none);
  recordNext(1);
  EXPECT_EQ(recording.recorder().lastError(), std::nullopt);
  expectStored(path, 171);
  recording.recorder().refreshSummary();
  EXPECT_EQ(recording.known().difference(recording.recorder().activeSummary()), "");
  EXPECT_EQ(recording.recorder().activeSummary().sampleCount, 171);
}

TEST_F(StoreFullDiskTest, ASessionThatCouldNotEndGoesOnAndEndsLater) {
  recordNext(5);
  files.fail(Fault::diskFull);
  recording.stop();
  EXPECT_THAT(recording.recorder().lastError(), Optional(HasSubstr("full")));
  ASSERT_NE(recording.recorder().activeSession(), nullptr);
  EXPECT_FALSE(readKnownStore(path, KnownSession()).isOver);
  files.fail(Fault::none);
  recordNext(1);
  recording.stop();
  EXPECT_EQ(recording.recorder().lastError(), std::nullopt);
  EXPECT_TRUE(readKnownStore(path, KnownSession()).isOver);
  expectStored(path, 6);
}

TEST_F(StoreFullDiskTest, ASessionIsNotSeenToHaveEndedBeforeItsLastSamplesAreThere) {
  recordNext(5);
  files.fail(Fault::diskFull);
  recordNext(200);
  std::set<std::int64_t> lengthsSeen;
  KnownReading reading;
  for (long room = 0; !reading.isOver; room += 5) {
    files.fail(Fault::diskFull, room);
    recording.stop();
    reading = readKnownStore(path, KnownSession());
    ASSERT_EQ(reading.fault, "") << room;
    lengthsSeen.insert(reading.samples);
  }
  EXPECT_EQ(reading.samples, 205);
  EXPECT_GT(lengthsSeen.size(), 2U) << "they are saved in portions";
}

#ifdef __linux__

class StoreFullDiskNeedsRootTest : public testing::Test {
 protected:
  const testing_support::SmallDisk disk{3 * 1024 * 1024};
  const std::filesystem::path path = disk.path() / "a.store";
};

TEST_F(StoreFullDiskNeedsRootTest, ARecordingSurvivesADiskThatFillsUpAgainAndAgain) {
  KnownRecording recording(path, KnownSession());
  for (int round = 0; round < 3; ++round) {
    for (int index = 0; index < 130; ++index) recording.recordNext();
    ASSERT_EQ(recording.recorder().lastError(), std::nullopt);
    disk.fill();
    while (!recording.recorder().lastError()) {
      ASSERT_LT(recording.samples(), 2000) << "the disk is not full";
      recording.recordNext();
    }
    EXPECT_THAT(recording.recorder().lastError(), Optional(HasSubstr("full")));
    const std::int64_t stored = recording.samples() - 1;
    expectStored(path, stored);
    for (int index = 0; index < 10; ++index) recording.recordNext();
    expectStored(path, stored);
    disk.clear();
    recording.recordNext();
    EXPECT_EQ(recording.recorder().lastError(), std::nullopt);
    expectStored(path, recording.samples());
  }
  recording.stop();
  expectStored(path, recording.samples());
}

TEST_F(StoreFullDiskNeedsRootTest, AClosedStoreThatFindsNoRoomForItsIndexSaysSoAndIsLeftAsItWas) {
  {
    KnownRecording recording(path, KnownSession());
    for (int index = 0; index < 50; ++index) recording.recordNext();
  }
  const std::string bytes = testing_support::contentOf(path);
  disk.fill();
  EXPECT_EQ(
      testing_support::kindThrownBy([&] { static_cast<void>(PowerSessionStore("reader", path).sessions()); }),
      StoreError::Kind::diskFull);
  EXPECT_EQ(testing_support::contentOf(path), bytes);
  disk.clear();
  expectStored(path, 50);
}

TEST_F(StoreFullDiskNeedsRootTest, AStoreThatCannotBeMadeIsMadeWhenThereIsRoom) {
  disk.fill();
  EXPECT_EQ(testing_support::kindThrownBy([&] { KnownRecording(path, KnownSession()); }),
            StoreError::Kind::diskFull);
  disk.clear();
  KnownRecording recording(path, KnownSession());
  recording.recordNext();
  expectStored(path, 1);
}

#endif

}  // namespace
}  // namespace quellin
