#include <cerrno>
#include <csignal>
#include <functional>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include "quellin/Storage/ChildDateText.h"

namespace quellin::cli {
namespace {

constexpr Instant morning = instantAt(1741081260);

// Names the process that it runs in; in a copy of the process it first does what it is told.
class ProcessNames final : public LocaleDateText {
 public:
  explicit ProcessNames(std::function<void()> inCopy = [] {}) : inCopy_(std::move(inCopy)) {}

  [[nodiscard]] std::string mediumDateShortTime(Instant instant) const override {
    if (getpid() != self_) inCopy_();
    const bool isAsked = instant == morning;
    return isAsked ? (getpid() == self_ ? "here" : "in a copy") : "another instant";
  }

 private:
  pid_t self_ = getpid();
  std::function<void()> inCopy_;
};

// The user's locale, which counts how often it is asked in this process: a copy counts in its own memory.
class CountedLocale final : public LocaleDateText {
 public:
  [[nodiscard]] std::string mediumDateShortTime(Instant instant) const override {
    ++calls_;
    return systemLocaleDateText().mediumDateShortTime(instant);
  }
  [[nodiscard]] int calls() const { return calls_; }

 private:
  mutable int calls_ = 0;
};

constexpr Seconds patience{60};  // with a machine that has other things to do

bool hasChildren() { return waitpid(-1, nullptr, WNOHANG) >= 0 || errno != ECHILD; }

TEST(ChildDateTextTest, TheTextIsMadeInACopyThatIsGoneAfterwards) {
  const ProcessNames maker;
  EXPECT_EQ((ChildDateText{maker, patience}.mediumDateShortTime(morning)), "in a copy");
  EXPECT_FALSE(hasChildren());
}

TEST(ChildDateTextTest, ACopyThatFailsIsReplacedByThisProcess) {
  for (const std::function<void()>& failure :
       {std::function<void()>{[] { _exit(0); }}, std::function<void()>{[] { kill(getpid(), SIGKILL); }},
        std::function<void()>{[] { throw std::runtime_error("no data"); }}}) {
    const ProcessNames maker{failure};
    EXPECT_EQ(ChildDateText{maker}.mediumDateShortTime(morning), "here");
    EXPECT_FALSE(hasChildren());
  }
}

TEST(ChildDateTextTest, ACopyThatHangsIsEnded) {
  const ProcessNames maker{[] {
    for (;;) pause();
  }};
  EXPECT_EQ((ChildDateText{maker, Seconds{0.02}}.mediumDateShortTime(morning)), "here");
  EXPECT_FALSE(hasChildren());
}

TEST(ChildDateTextTest, SignalsReachThisProcessOnly) {
  // The copy would die of its own signal if it took any.
  const ProcessNames maker{[] { raise(SIGTERM); }};
  EXPECT_EQ((ChildDateText{maker, patience}.mediumDateShortTime(morning)), "in a copy");
  sigset_t held;
  pthread_sigmask(SIG_SETMASK, nullptr, &held);
  EXPECT_EQ(sigismember(&held, SIGTERM), 0) << "signals must reach this process again";
}

TEST(ChildDateTextTest, TheUsersLocaleSaysTheSameInEitherProcess) {
  const CountedLocale locale;
  const std::string inCopy = ChildDateText{locale, patience}.mediumDateShortTime(morning);
  EXPECT_EQ(locale.calls(), 0) << "the text was made in this process";
  EXPECT_EQ(inCopy, systemLocaleDateText().mediumDateShortTime(morning));
}

TEST(ChildDateTextTest, TheFrugalTextIsThatOfTheUsersLocale) {
  EXPECT_EQ(frugalDateText().mediumDateShortTime(morning),
            systemLocaleDateText().mediumDateShortTime(morning));
}

}  // namespace
}  // namespace quellin::cli
