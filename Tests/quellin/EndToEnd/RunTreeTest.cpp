// Energy by counters, which a command over a tree of kernel files moves itself.
#include <string>

#include <gmock/gmock.h>

#include "Support/TreeArchive.h"
#include "quellin/EndToEnd/FrontEnd.h"

namespace quellin::cli {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing_support::FrontEnd;
using testing_support::UnpackedTree;

struct RunTreeTest : testing::Test {
  const UnpackedTree tree = UnpackedTree::fixture("linux/laptop-energy.tree");
  const FrontEnd frontEnd{tree.path("")};

  RunTreeTest() { setCounters("51000000", "3000000"); }

  void setCounters(const std::string& package, const std::string& core) const {
    tree.write(
        {.path = "sys/class/powercap/intel-rapl:0/energy_uj", .mode = 0600, .content = package + "\n"});
    tree.write({.path = "sys/class/powercap/intel-rapl:0:0/energy_uj", .mode = 0600, .content = core + "\n"});
  }
  // What is said of a command that leaves the package's counter at `package` microjoules.
  [[nodiscard]] std::string saidOfCounterAt(const std::string& package) const {
    return frontEnd
        .run({"run", "--source", ".", "--", "sh", "-c",
              "echo " + package + " > sys/class/powercap/intel-rapl:0/energy_uj"})
        .error;
  }
};

TEST_F(RunTreeTest, IsTheDifferenceOfTheCounters) {
  EXPECT_THAT(
      saidOfCounterAt("53500000"),
      testing::AllOf(HasSubstr("Counters          2.50 J (0.001 Wh), "),
                     HasSubstr("; IOReport silicon power (ioReport), counted over exactly this time\n")));
}

TEST_F(RunTreeTest, CountsOnBehindTheEndOfACounter) {
  setCounters("65532000000", "3000000");
  EXPECT_THAT(saidOfCounterAt("1389012"), HasSubstr("Counters          2.00 J "));
}

TEST_F(RunTreeTest, CountersThatCannotBeReadAreNotShown) {
  EXPECT_THAT(
      frontEnd
          .run({"run", "--source", ".", "--", "sh", "-c",
                "rm sys/class/powercap/intel-rapl:0/energy_uj sys/class/powercap/intel-rapl:0:0/energy_uj"})
          .error,
      Not(HasSubstr("Counters")));
}

}  // namespace
}  // namespace quellin::cli
