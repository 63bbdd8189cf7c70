// Polls of a machine behind real files leave no descriptor and no memory behind.
#include <gmock/gmock.h>

#include "QuellinCore/Platform/Linux/LinuxSources.h"
#include "QuellinCore/Services/ProcessActivityService.h"
#include "QuellinCore/Services/SystemReader.h"
#include "Support/ManualClock.h"
#include "Support/PolledEngine.h"
#include "Support/TreeArchive.h"

namespace quellin {
namespace {

using testing_support::PolledEngine;
using testing_support::UnpackedTree;

class LinuxEnduranceTest : public testing::TestWithParam<const char*> {};

TEST_P(LinuxEnduranceTest, PollsLeaveNothingBehind) {
  constexpr int warmUp = 150;  // enough to fill the history
  constexpr int polls = 1000;
  const auto tree = UnpackedTree::fixture(std::string("linux/") + GetParam() + ".tree");
  const auto processTree = UnpackedTree::fixture("linux/processes.tree");
  const PlatformSources sources =
      linuxSources(directoryTree(tree.path("sys")), directoryTree(processTree.path("proc")));
  testing_support::ManualMonotonicClock clock;
  const SystemReader reader = SystemReader::over(sources, PrivilegedSMCHelperService{""}, clock);
  const ProcessActivityService processes(sources.processes, clock);
  PolledEngine polled([&] {
    clock.sleeps.clear();
    static_cast<void>(processes.sampleTopProcesses(5, Seconds{0.35}));
    return reader.readAll();
  });
  polled.poll(warmUp);
  testing_support::expectNothingLeftBehind([&] { polled.poll(polls); });
}

INSTANTIATE_TEST_SUITE_P(Machines, LinuxEnduranceTest,
                         testing::Values("laptop-charge", "laptop-energy", "server"));

}  // namespace
}  // namespace quellin
