#pragma once

#include <csignal>
#include <functional>
#include <source_location>
#include <string>
#include <sys/wait.h>
#include <thread>

#include <gtest/gtest.h>

namespace quellin::testing_support {

/// For EXPECT_EXIT: whether a process ended as checked arithmetic ends it, and in no other way. Which signal
/// a trap raises is the processor's business.
inline bool endedByTrap(int status) {
  return WIFSIGNALED(status) && (WTERMSIG(status) == SIGILL || WTERMSIG(status) == SIGTRAP);
}

/// Expects that `operation`, called on another thread than the main executor's, aborts the process.
inline void expectRefusedElsewhere(const std::function<void()>& operation,
                                   const std::source_location& at = std::source_location::current()) {
  const testing::ScopedTrace trace(at.file_name(), static_cast<int>(at.line()), "refused elsewhere");
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // until the end of the test, which restores all flags
  EXPECT_EXIT(std::thread(operation).join(), testing::KilledBySignal(SIGABRT), "");
}

}  // namespace quellin::testing_support
