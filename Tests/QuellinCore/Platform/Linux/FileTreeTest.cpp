#include <array>
#include <cerrno>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "QuellinCore/Platform/Linux/FileTree.h"
#include "Support/FaultyTree.h"
#include "Support/TreeArchive.h"

namespace quellin {
namespace {

using testing_support::UnpackedTree;

class FileTreeTest : public testing::Test {
 protected:
  UnpackedTree files_{
      "A comment.\n"
      "=== class/a10/value 0444\n42\n"
      "=== class/a9/value 0444\n\n"
      "=== class/.hidden 0444\n"
      "=== class/a9/empty 0444\n"
      "=== class/a9/text 0444\n  two words \n"};
  std::shared_ptr<const FileTree> tree_ = directoryTree(files_.path("class"));
};

TEST_F(FileTreeTest, TextComesWithoutSpaceAtItsEnds) {
  EXPECT_EQ(readText(*tree_, "a9/text"), "two words");
  EXPECT_EQ(readText(*tree_, "a9/empty"), "");
}

TEST_F(FileTreeTest, IntegersAreReadAndEverythingElseIsInvalid) {
  EXPECT_EQ(readInteger(*tree_, "a10/value"), 42);
  EXPECT_EQ(readInteger(*tree_, "a9/value").error().code, EINVAL);
  EXPECT_EQ(readInteger(*tree_, "a9/text").error().code, EINVAL);
}

TEST_F(FileTreeTest, AMissingFileAndADirectorySaySo) {
  EXPECT_EQ(readText(*tree_, "a9/nothing").error().code, ENOENT);
  EXPECT_EQ(readText(*tree_, "a9").error().code, EISDIR);
  EXPECT_EQ(tree_->list("a9/text").error().code, ENOTDIR);
}

TEST_F(FileTreeTest, AFileLongerThanTheBufferIsCut) {
  std::array<char, 5> buffer{};
  EXPECT_EQ(tree_->readInto("a9/text", buffer), "  two");
}

TEST_F(FileTreeTest, NamesAreSortedNaturallyAndHiddenOnesLeftOut) {
  EXPECT_EQ(sortedNames(*tree_, ""), (std::vector<std::string>{"a9", "a10"}));
}

TEST_F(FileTreeTest, AMissingRootFailsEveryOperation) {
  const auto nowhere = directoryTree(files_.path("nowhere"));
  EXPECT_EQ(readText(*nowhere, "value").error().code, ENOENT);
  EXPECT_EQ(sortedNames(*nowhere, "").error().code, ENOENT);
}

TEST_F(FileTreeTest, AClassThatTheKernelDoesNotHaveIsEmpty) {
  EXPECT_EQ(classEntries(*tree_, ""), (std::vector<std::string>{"a9", "a10"}));
  EXPECT_EQ(classEntries(*tree_, "a11"), std::vector<std::string>{});
  EXPECT_EQ(classEntries(*directoryTree(files_.path("nowhere")), ""), std::vector<std::string>{});
  const testing_support::FaultyTree failing{tree_, {{"a9", EIO}}};
  EXPECT_EQ(classEntries(failing, "a9").error().code, EIO);
}

TEST_F(FileTreeTest, TextIsUTF8WhateverTheFirmwareWrote) {
  files_.write({"class/a9/garbage", 0444, "\xFF\xFE serial\n"});
  EXPECT_EQ(readText(*tree_, "a9/garbage"), "\uFFFD\uFFFD serial");
}

TEST_F(FileTreeTest, PathsAreShownFromTheRoot) {
  EXPECT_EQ(directoryTree("/sys")->displayPath("class/hwmon"), "/sys/class/hwmon");
  EXPECT_EQ(directoryTree("/proc")->displayPath(""), "/proc");
}

}  // namespace
}  // namespace quellin
