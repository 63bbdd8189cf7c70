#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>

#include <gmock/gmock.h>

#include "QuellinCore/Support/FileDescriptor.h"
#include "Support/FileSizeLimit.h"
#include "Support/TemporaryFolder.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Storage/RecorderLock.h"

namespace quellin::cli {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;
using testing_support::contentOf;

struct RecorderLockTest : testing::Test {
  testing_support::TemporaryFolder folder;
  const std::filesystem::path store = folder.write("a.store", "");
  const std::filesystem::path lockFile = folder.pathOf("a.store-recorder");
};

TEST_F(RecorderLockTest, OneHasItAtATimeAndLeavesNothingBehind) {
  auto first = RecorderLock::take(store);
  EXPECT_TRUE(first);
  EXPECT_FALSE(RecorderLock::take(store));
  EXPECT_TRUE(std::filesystem::exists(lockFile));
  first.reset();
  EXPECT_FALSE(std::filesystem::exists(lockFile));
  EXPECT_TRUE(RecorderLock::take(store));
}

TEST_F(RecorderLockTest, OthersSeeItWithoutTakingIt) {
  EXPECT_FALSE(RecorderLock::look(store).isHeld);
  EXPECT_FALSE(std::filesystem::exists(lockFile));
  auto lock = RecorderLock::take(store);
  ASSERT_TRUE(lock);
  EXPECT_TRUE(RecorderLock::look(store).isHeld);
  EXPECT_EQ(RecorderLock::look(store).word, std::nullopt);
  lock->leaveWord("machine 7");
  EXPECT_EQ(RecorderLock::look(store).word, "machine 7");
  lock.reset();
  EXPECT_FALSE(RecorderLock::look(store).isHeld);
  EXPECT_EQ(RecorderLock::look(store).word, "machine 7");
  EXPECT_TRUE(RecorderLock::take(store));
}

TEST_F(RecorderLockTest, WhoeverOnlyLooksAllTheTimeIsNotWaitedForForEver) {
  const auto file = openDescriptor(folder.write("a.store-recorder", ""), O_RDONLY);
  ASSERT_TRUE(file);
  ASSERT_EQ(flock(file->get(), LOCK_SH), 0);
  EXPECT_FALSE(RecorderLock::look(store).isHeld);
  EXPECT_FALSE(RecorderLock::take(store));
  ASSERT_EQ(flock(file->get(), LOCK_UN), 0);
  EXPECT_TRUE(RecorderLock::take(store));
}

TEST_F(RecorderLockTest, AnotherStoreHasAnother) {
  const auto first = RecorderLock::take(store);
  EXPECT_TRUE(RecorderLock::take(folder.write("b.store", "")));
  EXPECT_TRUE(first);
}

TEST_F(RecorderLockTest, ALinkLeadsToTheSame) {
  const std::filesystem::path link = folder.pathOf("link");
  std::filesystem::create_symlink(store, link);
  const auto first = RecorderLock::take(store);
  EXPECT_TRUE(first);
  EXPECT_FALSE(RecorderLock::take(link));
}

TEST_F(RecorderLockTest, AFileThatACrashLeftIsNoLock) {
  folder.write("a.store-recorder", "");
  EXPECT_TRUE(RecorderLock::take(store));
}

TEST_F(RecorderLockTest, AWordIsLeftToTheNext) {
  auto first = RecorderLock::take(store);
  ASSERT_TRUE(first);
  EXPECT_EQ(first->wordBefore(), std::nullopt);
  first->leaveWord("machine 7");
  first.reset();

  auto next = RecorderLock::take(store);
  ASSERT_TRUE(next);
  EXPECT_EQ(next->wordBefore(), "machine 7");
  next->leaveWord("trace");
  EXPECT_EQ(next->wordBefore(), std::nullopt);
  EXPECT_EQ(contentOf(lockFile), "trace\n");
}

TEST_F(RecorderLockTest, AWordThatIsForgottenGoesWithTheFile) {
  folder.write("a.store-recorder", "trace\n");
  auto lock = RecorderLock::take(store);
  ASSERT_TRUE(lock);
  lock->leaveWord("machine");
  lock->forgetWord();
  EXPECT_FALSE(RecorderLock::take(store)) << "it is held still";
  lock.reset();
  EXPECT_FALSE(std::filesystem::exists(lockFile));
}

TEST_F(RecorderLockTest, AWordStaysWhereTheNextDoesNotGoOn) {
  folder.write("a.store-recorder", "trace\n");
  EXPECT_TRUE(RecorderLock::take(store));
  const auto lock = RecorderLock::take(store);
  ASSERT_TRUE(lock);
  EXPECT_EQ(lock->wordBefore(), "trace");
}

TEST_F(RecorderLockTest, WhatIsNotOneWholeLineIsNoWord) {
  const std::string longest(8191, 'a');
  for (const std::string& content :
       {std::string{}, std::string{"\n"}, std::string{"machine"}, std::string{"trace\nine\n"},
        std::string{"\ntrace\n"}, longest + "a\n"}) {
    folder.write("a.store-recorder", content);
    const auto lock = RecorderLock::take(store);
    ASSERT_TRUE(lock);
    EXPECT_EQ(lock->wordBefore(), std::nullopt) << content;
  }
  folder.write("a.store-recorder", longest + "\n");
  EXPECT_EQ(RecorderLock::take(store).value().wordBefore(), longest);
}

TEST_F(RecorderLockTest, AWordWithoutRoomIsNone) {
  folder.write("a.store-recorder", "machine\n");
  auto lock = RecorderLock::take(store);
  ASSERT_TRUE(lock);
  const testing_support::FileSizeLimit limit{3};
  lock->leaveWord("trace");
  EXPECT_EQ(contentOf(lockFile), "");
  lock.reset();
  EXPECT_FALSE(std::filesystem::exists(lockFile));
}

TEST_F(RecorderLockTest, ALinkInItsPlaceIsNotFollowed) {
  const std::string precious = folder.write("precious", "content\n");
  std::filesystem::create_symlink(precious, lockFile);
  EXPECT_THROW(static_cast<void>(RecorderLock::take(store)), Failure);
  EXPECT_TRUE(std::filesystem::is_symlink(lockFile));
  EXPECT_EQ(contentOf(precious), "content\n");
}

TEST_F(RecorderLockTest, WhatIsNoOrdinaryFileIsNotReadAndTakesNoWord) {
  ASSERT_EQ(mkfifo(lockFile.c_str(), 0600), 0);
  auto lock = RecorderLock::take(store);
  ASSERT_TRUE(lock);
  EXPECT_EQ(lock->wordBefore(), std::nullopt);
  EXPECT_THROW(lock->leaveWord("machine"), Failure);
}

TEST_F(RecorderLockTest, OneThatIsMovedIsStillHeld) {
  auto first = RecorderLock::take(store);
  ASSERT_TRUE(first);
  const RecorderLock moved = *std::move(first);
  first.reset();
  EXPECT_FALSE(RecorderLock::take(store));
}

TEST_F(RecorderLockTest, AFolderThatIsNotThereIsNamed) {
  try {
    static_cast<void>(RecorderLock::take(folder.pathOf("none/a.store")));
    ADD_FAILURE();
  } catch (const Failure& failure) {
    EXPECT_THAT(failure.what(), AllOf(StartsWith(folder.pathOf("none/a.store-recorder")),
                                      HasSubstr("No such file"), HasSubstr("--store")));
  }
}

}  // namespace
}  // namespace quellin::cli
