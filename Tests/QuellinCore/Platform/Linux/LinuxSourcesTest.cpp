#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Platform/Linux/LinuxSources.h"
#include "Support/TreeArchive.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::UnpackedTree;

// The kinds of sources of a copied machine that give values, in the order of the fields.
std::vector<std::string> available(const std::string& fixture) {
  const auto tree = UnpackedTree::fixture("linux/" + fixture + ".tree");
  const auto sources = linuxSources(directoryTree(tree.path("sys")), directoryTree(tree.path("proc")));
  std::vector<std::string> found;
  for (const SourceDiagnosis& source : sources.diagnose()) {
    if (source.availability == SourceAvailability::available) found.push_back(source.source);
  }
  return found;
}

TEST(LinuxSourcesTest, EachReadsTheTreesItWasGivenAndNotThisMachine) {
  EXPECT_THAT(available("laptop-charge"),
              ElementsAre("SMC", "Temperature sensors", "Battery", "Energy counters", "Thermal state"));
  EXPECT_THAT(available("desktop"),
              ElementsAre("SMC", "Temperature sensors", "Energy counters", "Thermal state"));
  EXPECT_THAT(available("processes"), ElementsAre("Processes"));
  EXPECT_THAT(available("virtual-machine"), IsEmpty());
}

}  // namespace
}  // namespace quellin
