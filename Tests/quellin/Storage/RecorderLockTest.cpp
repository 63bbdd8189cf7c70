#include <filesystem>

#include <gmock/gmock.h>

#include "Support/TemporaryFolder.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Storage/RecorderLock.h"

namespace quellin::cli {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

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
