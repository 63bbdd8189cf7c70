#include <string>

#include <gmock/gmock.h>

#include "Support/TreeArchive.h"
#include "quellin/EndToEnd/FrontEnd.h"
#include "quellin/EndToEnd/Transcript.h"

namespace quellin::cli {
namespace {

using testing_support::FrontEnd;
using testing_support::Transcript;
using testing_support::UnpackedTree;

class TreeGoldenTest : public testing::TestWithParam<std::string> {};

TEST_P(TreeGoldenTest, DoctorAndSnapshot) {
  const auto tree = UnpackedTree::fixture("linux/" + GetParam() + ".tree");
  const FrontEnd frontEnd{tree.path("")};
  Transcript transcript{frontEnd};
  transcript.run({"doctor", "--source", "."});
  transcript.run({"doctor", "--source", ".", "--json"});
  transcript.run({"snapshot", "--source", "."});
  transcript.run({"snapshot", "--source", ".", "--processes"}, {"COLUMNS=80"});
  transcript.run({"snapshot", "--source", ".", "--json", "--processes"});
  transcript.run({"budget", "--source", ".", "--for", "1ms", "--system", "20"});
  transcript.expectGolden("tree-" + GetParam() + ".txt");
}

INSTANTIATE_TEST_SUITE_P(Linux, TreeGoldenTest,
                         testing::Values("desktop", "laptop-charge", "laptop-energy", "processes", "server",
                                         "virtual-machine"),
                         [](const auto& instance) {
                           std::string name = instance.param;
                           std::erase(name, '-');
                           return name;
                         });

}  // namespace
}  // namespace quellin::cli
