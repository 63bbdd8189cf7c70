#include <cerrno>
#include <csignal>
#include <future>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "quellin/Measuring/CommandProcess.h"

namespace quellin::cli {
namespace {

struct CommandProcessTest : testing::Test {
  std::promise<CommandEnd> ended;

  std::unique_ptr<CommandProcess> start(const std::vector<std::string>& words) {
    auto command = CommandProcess::start(words, [this](const CommandEnd& end) { ended.set_value(end); });
    return command ? std::move(*command) : nullptr;
  }
  [[nodiscard]] int statusOf(const std::string& script) {
    const auto command = start({"sh", "-c", script});
    return ended.get_future().get().shellStatus();
  }
};

TEST_F(CommandProcessTest, TellsAnExitStatus) { EXPECT_EQ(statusOf("exit 7"), 7); }

TEST_F(CommandProcessTest, TellsASignalAsAShellDoes) { EXPECT_EQ(statusOf("kill -TERM $$"), 128 + SIGTERM); }

TEST_F(CommandProcessTest, GivesEveryWordAsItIs) {
  const auto command = start({"test", "a  *b", "=", "a  *b"});
  EXPECT_EQ(ended.get_future().get().exitStatus, 0);
}

TEST_F(CommandProcessTest, PassesASignalOn) {
  const auto command = start({"sleep", "1000"});
  command->send(SIGTERM);
  const CommandEnd end = ended.get_future().get();
  EXPECT_EQ(end.signal, SIGTERM);
  EXPECT_EQ(end.exitStatus, std::nullopt);
}

TEST_F(CommandProcessTest, WhatThisProgramIgnoresTheCommandNeedNot) {
  const auto before = std::signal(SIGPIPE, SIG_IGN);
  EXPECT_EQ(statusOf("kill -PIPE $$"), 128 + SIGPIPE);
  std::signal(SIGPIPE, before);
}

TEST_F(CommandProcessTest, TheStatusIsKnownEvenWhereChildrenWereIgnored) {
  std::signal(SIGCHLD, SIG_IGN);
  EXPECT_EQ(statusOf("exit 3"), 3);
}

TEST_F(CommandProcessTest, SaysWhyACommandCannotBeStarted) {
  const auto errorOf = [](const std::string& word) {
    return CommandProcess::start({word}, [](const CommandEnd&) {}).error().code;
  };
  EXPECT_EQ(errorOf("there-is-no-such-command"), ENOENT);
  EXPECT_EQ(errorOf(""), ENOENT);
  EXPECT_EQ(errorOf("/"), EACCES);
}

}  // namespace
}  // namespace quellin::cli
