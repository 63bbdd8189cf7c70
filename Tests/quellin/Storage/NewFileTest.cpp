#include <algorithm>
#include <csignal>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "Support/TemporaryFolder.h"
#include "quellin/Outcome/Failure.h"
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

// What an action that must fail fails with.
std::string failureOf(const std::function<void()>& action) {
  try {
    action();
    return "nothing was thrown";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.status(), ExitStatus::failed);
    return failure.what();
  }
}

// How a copy of this process ended that did something and then, if it still was there, exited.
int statusOfCopy(const std::function<void()>& body) {
  const pid_t copy = fork();
  if (copy == 0) {
    body();
    _exit(0);
  }
  int status = -1;
  EXPECT_EQ(waitpid(copy, &status, 0), copy);
  return status;
}

TEST_F(NewFileTest, AppearsWholeUnderItsNameAndLeavesNothingElse) {
  {
    NewFile file{path, false};
    file.write("one\n");
    file.write("two\n");
    EXPECT_FALSE(fs::exists(path));
    file.publish();
    EXPECT_EQ(contentOf(path), "one\ntwo\n");
  }
  EXPECT_THAT(files(), ElementsAre("export.jsonl"));
}

TEST_F(NewFileTest, OnlyItsOwnerMayReadIt) {
  NewFile file{path, false};
  file.publish();
  EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(NewFileTest, LeavesNothingWhenItIsNotPublished) {
  {
    NewFile{path, false}.write("half");
  }
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(NewFileTest, RefusesToTakeThePlaceOfAFileThatIsThereAlready) {
  folder.write("export.jsonl", "old");
  EXPECT_EQ(failureOf([&] { const NewFile file{path, false}; }),
            path + " is there already. Add --force to replace it, or name another file.");
  EXPECT_EQ(contentOf(path), "old");
  EXPECT_THAT(files(), ElementsAre("export.jsonl"));
}

TEST_F(NewFileTest, RefusesToTakeThePlaceOfAFileThatCameMeanwhile) {
  {
    NewFile file{path, false};
    file.write("new");
    folder.write("export.jsonl", "old");
    EXPECT_EQ(failureOf([&] { file.publish(); }),
              path + " is there already. Add --force to replace it, or name another file.");
  }
  EXPECT_EQ(contentOf(path), "old");
  EXPECT_THAT(files(), ElementsAre("export.jsonl"));
}

TEST_F(NewFileTest, ReplacesAFileWhenToldTo) {
  folder.write("export.jsonl", "old");
  {
    NewFile file{path, true};
    file.write("new");
    EXPECT_EQ(contentOf(path), "old");
    file.publish();
  }
  EXPECT_EQ(contentOf(path), "new");
  EXPECT_THAT(files(), ElementsAre("export.jsonl"));
}

TEST_F(NewFileTest, ASignalThatEndsTheProcessLeavesNothing) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    const int status = statusOfCopy([&] {
      NewFile file{path, false};
      file.write("half");
      if (files().size() != 1) return;
      std::raise(signal);
      for (;;) pause();
    });
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
    EXPECT_THAT(files(), IsEmpty());
  }
}

TEST_F(NewFileTest, ASignalThatIsIgnoredStaysIgnored) {
  const int status = statusOfCopy([&] {
    std::signal(SIGHUP, SIG_IGN);
    NewFile file{path, false};
    std::raise(SIGHUP);
    file.write("whole");
    file.publish();
  });
  EXPECT_TRUE(WIFEXITED(status)) << status;
  EXPECT_EQ(contentOf(path), "whole");
}

TEST_F(NewFileTest, SignalsHaveTheirOwnEffectAgainAfterwards) {
  const int status = statusOfCopy([&] {
    NewFile{path, false}.publish();
    std::raise(SIGTERM);
  });
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << status;
  EXPECT_THAT(files(), ElementsAre("export.jsonl"));
}

TEST_F(NewFileTest, DevicesAndFoldersAreNeverReplaced) {
  fs::create_directory(folder.path() / "folder");
  for (const std::string& name : {std::string{"/dev/null"}, folder.pathOf("folder")}) {
    EXPECT_EQ(failureOf([&] { const NewFile file{name, true}; }),
              name +
                  " is no ordinary file and cannot be replaced. Name another file, or leave -o out and "
                  "redirect the output.");
  }
}

TEST_F(NewFileTest, SaysWhereItCannotBeMade) {
  for (const auto& [name, reason] :
       {std::pair{folder.pathOf("absent/export.jsonl"), "No such file or directory"},
        std::pair{folder.pathOf(std::string(300, 'x')), "File name too long"}}) {
    for (const bool replaces : {false, true}) {
      EXPECT_THAT(failureOf([&] { const NewFile file{name, replaces}; }),
                  HasSubstr(name + " cannot be written: " + reason + ". Name"));
    }
  }
}

}  // namespace
}  // namespace quellin::cli
