#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "Support/TemporaryFolder.h"
#include "quellin/CommandLine/Failure.h"
#include "quellin/Storage/NewFile.h"

namespace quellin::cli {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::contentOf;
using testing_support::TemporaryFolder;
namespace fs = std::filesystem;

struct NewFileTest : testing::Test {
  TemporaryFolder folder;
  std::string path = folder.pathOf("export.jsonl");

  [[nodiscard]] std::vector<std::string> files() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator{folder.path()})
      names.push_back(entry.path().filename().string());
    std::ranges::sort(names);
    return names;
  }
};

TEST_F(NewFileTest, AppearsWholeUnderItsNameAndLeavesNothingElse) {
  {
    NewFile file{path};
    file.write("one\n");
    file.write("two\n");
    EXPECT_FALSE(fs::exists(path));
    file.publish(false);
    EXPECT_EQ(contentOf(path), "one\ntwo\n");
  }
  EXPECT_THAT(files(), ElementsAre("export.jsonl"));
}

TEST_F(NewFileTest, OnlyItsOwnerMayReadIt) {
  NewFile file{path};
  file.publish(false);
  EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(NewFileTest, LeavesNothingWhenItIsNotPublished) {
  {
    NewFile{path}.write("half");
  }
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(NewFileTest, RefusesToTakeThePlaceOfAFileThatCameMeanwhile) {
  {
    NewFile file{path};
    file.write("new");
    folder.write("export.jsonl", "old");
    try {
      file.publish(false);
      FAIL() << "nothing was thrown";
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.status(), ExitStatus::failed);
      EXPECT_EQ(failure.what(), path + " is there already. Add --force to replace it, or name another file.");
    }
  }
  EXPECT_EQ(contentOf(path), "old");
  EXPECT_THAT(files(), ElementsAre("export.jsonl"));
}

TEST_F(NewFileTest, ReplacesAFileWhenToldTo) {
  folder.write("export.jsonl", "old");
  {
    NewFile file{path};
    file.write("new");
    EXPECT_EQ(contentOf(path), "old");
    file.publish(true);
  }
  EXPECT_EQ(contentOf(path), "new");
  EXPECT_THAT(files(), ElementsAre("export.jsonl"));
}

TEST_F(NewFileTest, DevicesAndFoldersAreNeverReplaced) {
  fs::create_directory(folder.path() / "folder");
  for (const std::string& name : {std::string{"/dev/null"}, folder.pathOf("folder")}) {
    try {
      const NewFile file{name};
      FAIL() << name;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.what(), name +
                                    " is no ordinary file and cannot be replaced. Name another file, or "
                                    "leave -o out and redirect the output.");
    }
  }
}

TEST_F(NewFileTest, SaysWhereItCannotBeMade) {
  const std::string nowhere = folder.pathOf("absent/export.jsonl");
  try {
    const NewFile file{nowhere};
    FAIL() << "nothing was thrown";
  } catch (const Failure& failure) {
    EXPECT_THAT(failure.what(), HasSubstr(nowhere + " cannot be written: No such file or directory. Name"));
  }
}

}  // namespace
}  // namespace quellin::cli
