#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Platform/Linux/LinuxSources.h"
#include "Support/TreeArchive.h"

namespace quellin {
namespace {

using testing::ElementsAre;
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
  EXPECT_THAT(available("laptop-charge"), ElementsAre());
  EXPECT_THAT(available("desktop"), ElementsAre());
  EXPECT_THAT(available("processes"), ElementsAre());
  EXPECT_THAT(available("virtual-machine"), ElementsAre());
}

}  // namespace
}  // namespace quellin
