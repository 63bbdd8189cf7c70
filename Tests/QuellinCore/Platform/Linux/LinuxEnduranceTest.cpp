// Polls of a machine behind real files leave no descriptor and no memory behind; what would is noticed.
// QUELLIN_POLLS=100000 asks for that many of each machine.
#include <fcntl.h>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>

#include "QuellinCore/Platform/Linux/LinuxSources.h"
#include "QuellinCore/Services/ProcessActivityService.h"
#include "QuellinCore/Services/SystemReader.h"
#include "QuellinCore/Support/FileDescriptor.h"
#include "Support/AskedCount.h"
#include "Support/EnvironmentVariable.h"
#include "Support/ManualClock.h"
#include "Support/PolledEngine.h"
#include "Support/TreeArchive.h"

namespace quellin {
namespace {

using testing_support::expectNothingLeftBehind;
using testing_support::PolledEngine;
using testing_support::UnpackedTree;

constexpr int warmUp = 150;  // enough to fill the history

int pollsAsked() { return testing_support::askedCount("QUELLIN_POLLS", 3000, 1000); }

/// The engine over the files of a made-up machine, which also measures its processes in every poll.
class PolledMachine {
 public:
  /// `alsoDone` is done in every poll.
  explicit PolledMachine(
      const std::string& name, std::function<void()> alsoDone = [] {})
      : tree_(UnpackedTree::fixture("linux/" + name + ".tree")),
        alsoDone_(std::move(alsoDone)),
        engine_([this] { return readAll(); }) {
    poll(warmUp);
  }

  void poll(int times) { engine_.poll(times); }
  [[nodiscard]] const SystemPowerState& state() const { return engine_.engine().currentState(); }

 private:
  [[nodiscard]] SystemPowerState readAll() {
    clock_.sleeps.clear();
    static_cast<void>(processes_.sampleTopProcesses(5, Seconds{0.35}));
    alsoDone_();
    return reader_.readAll();
  }

  UnpackedTree tree_;
  UnpackedTree processTree_ = UnpackedTree::fixture("linux/processes.tree");
  std::function<void()> alsoDone_;
  testing_support::ManualMonotonicClock clock_;
  PlatformSources sources_ =
      linuxSources(directoryTree(tree_.path("sys")), directoryTree(processTree_.path("proc")));
  SystemReader reader_ = SystemReader::over(sources_, PrivilegedSMCHelperService{""}, clock_);
  ProcessActivityService processes_{sources_.processes, clock_};
  PolledEngine engine_;
};

class LinuxEnduranceTest : public testing::TestWithParam<const char*> {};

TEST_P(LinuxEnduranceTest, PollsLeaveNothingBehind) {
  PolledMachine machine(GetParam());
  expectNothingLeftBehind([&] { machine.poll(pollsAsked()); });
  EXPECT_FALSE(machine.state().sensors.empty());
}

INSTANTIATE_TEST_SUITE_P(Machines, LinuxEnduranceTest,
                         testing::Values("laptop-charge", "laptop-energy", "server"));

TEST(LinuxEnduranceCheckTest, TooFewPollsAndWhatIsNoNumberAreRefused) {
  for (const char* asked : {"", "abc", "1e5", "100000 ", "999", "-3000", "99999999999"}) {
    const testing_support::EnvironmentVariable variable{"QUELLIN_POLLS", asked};
    EXPECT_THROW(static_cast<void>(pollsAsked()), std::invalid_argument) << asked;
  }
  for (const auto& [asked, polls] : {std::pair{"1000", 1000}, {"100000", 100000}}) {
    const testing_support::EnvironmentVariable variable{"QUELLIN_POLLS", asked};
    EXPECT_EQ(pollsAsked(), polls);
  }
}

TEST(LinuxEnduranceCheckTest, ADescriptorThatOnePollLeavesOpenIsNoticed) {
  int polls = 0;
  std::optional<FileDescriptor> left;
  PolledMachine machine("server", [&] {
    if (++polls == warmUp + 50) left = openDescriptor("/dev/null", O_RDONLY).value();
  });
  EXPECT_NONFATAL_FAILURE(expectNothingLeftBehind([&] { machine.poll(100); }), "after.descriptors");
}

TEST(LinuxEnduranceCheckTest, AHundredBytesThatEveryPollLeavesBehindAreNoticed) {
  std::vector<std::string> left;
  PolledMachine machine("server", [&] { left.emplace_back(100, 'a'); });
  EXPECT_NONFATAL_FAILURE(expectNothingLeftBehind([&] { machine.poll(100); }), "after.heap");
}

}  // namespace
}  // namespace quellin
