#include <string>

#include <gmock/gmock.h>

#include "Support/TemporaryFolder.h"
#include "Support/TreeArchive.h"
#include "quellin/Measuring/HostTree.h"
#include "quellin/Measuring/MeasuredHost.h"
#include "quellin/Outcome/Failure.h"

namespace quellin::cli {
namespace {

using testing_support::TemporaryFolder;
using testing_support::UnpackedTree;

MeasuredHost hostOf(const UnpackedTree& tree) {
  Options options;
  options.source = tree.path("");
  return MeasuredHost::open(options);
}

TEST(HostTreeTest, ReadsTheMachineInTheFolderAndNotThisOne) {
  const auto tree = UnpackedTree::fixture("linux/laptop-charge.tree");
  const MeasuredHost host = hostOf(tree);
  EXPECT_FALSE(host.isNative);
  EXPECT_EQ(host.player, nullptr);
  const SystemPowerState state = host.reader().readAll();
  ASSERT_TRUE(state.battery);
  EXPECT_EQ(state.battery->chargePercent, 62);
}

TEST(HostTreeTest, AMachineWithoutSensorsHasNothingToOffer) {
  const auto tree = UnpackedTree::fixture("linux/virtual-machine.tree");
  for (const SourceDiagnosis& source : hostTree(tree.path("")).diagnose()) {
    EXPECT_NE(source.availability, SourceAvailability::available) << source.source;
  }
}

TEST(HostTreeTest, TheIntervalOfAMachineIsTheOneAskedFor) {
  const auto tree = UnpackedTree::fixture("linux/laptop-charge.tree");
  const MeasuredHost host = hostOf(tree);
  EXPECT_EQ(host.interval(Seconds{2}), Seconds{2});
}

TEST(HostTreeTest, AFolderWithoutKernelFilesIsRefused) {
  const TemporaryFolder folder;
  const std::string path = folder.path().string();
  try {
    static_cast<void>(hostTree(path));
    FAIL() << "nothing was thrown";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.status(), ExitStatus::failed);
    EXPECT_EQ(failure.what(), "--source " + path +
                                  ": the folder has no sys/. Name a folder with a copy of a machine's sys/ "
                                  "(and proc/), or the file of a trace.");
  }
}

}  // namespace
}  // namespace quellin::cli
