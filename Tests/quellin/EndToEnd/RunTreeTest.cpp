// Energy by counters, which a command over a tree of kernel files moves itself.
#include <optional>
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

// The number behind the first `name` in a JSON text.
std::optional<double> numberOf(const std::string& json, const std::string& name) {
  const std::string key = "\"" + name + "\" : ";
  const auto found = json.find(key);
  return found == std::string::npos ? std::nullopt
                                    : std::optional{std::stod(json.substr(found + key.size()))};
}

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
  EXPECT_THAT(saidOfCounterAt("53500000"),
              testing::AllOf(HasSubstr("Counters          2.50 J (0.001 Wh), "),
                             HasSubstr("; IOReport silicon power (ioReport), counted over exactly this time "
                                       "by ./sys/class/powercap\n")));
}

TEST_F(RunTreeTest, CountsOnBehindTheEndOfACounter) {
  setCounters("65532000000", "3000000");
  EXPECT_THAT(saidOfCounterAt("1389012"), HasSubstr("Counters          2.00 J "));
}

TEST_F(RunTreeTest, RepeatedRunsAreSummedUp) {
  const std::string said = frontEnd
                               .run({"run", "--source", ".", "--repeat", "2", "--", "sh", "-c",
                                     "echo 53500000 > sys/class/powercap/intel-rapl:0/energy_uj"})
                               .error;
  EXPECT_THAT(said, testing::ContainsRegex("Over the runs +Mean J +Lowest J +Highest J +Runs +Confidence\n"
                                           "Counters +1\\.25 +0\\.00 +2\\.50 +2 +ioReport\n"));
}

TEST_F(RunTreeTest, ARunThatFailsIsNotSummedUp) {
  const std::string counter = "sys/class/powercap/intel-rapl:0/energy_uj";
  const std::string said =
      frontEnd
          .run({"run", "--source", ".", "--title", "Tries", "--repeat", "5", "--", "sh", "-c",
                "read n < " + counter +
                    "; test $n -lt 53000000 && more=1000000 || more=90000000; "
                    "echo $((n + more)) > " +
                    counter + "; test $more -eq 1000000"})
          .error;
  EXPECT_THAT(said, testing::ContainsRegex("\nTries, the 2 whole runs of 3\n"
                                           "Over the runs +Mean J +Lowest J +Highest J +Runs +Confidence\n"
                                           "Counters +1\\.00 +1\\.00 +1\\.00 +2 +ioReport\n"));
}

TEST_F(RunTreeTest, ACommandThatFailsAtOnceTellsWhatRecordingItCost) {
  const std::string cost = "\"recorderCost\" : \\{[^}]*\"bytesWritten\" : [1-9]";
  EXPECT_THAT(frontEnd.run({"run", "--source", ".", "--json", "--", "false"}).error,
              testing::ContainsRegex(cost));
  EXPECT_THAT(frontEnd.run({"show", "last", "--json"}).output, testing::ContainsRegex(cost));
}

TEST_F(RunTreeTest, CountersThatCannotBeReadAreNotShown) {
  const std::string said =
      frontEnd
          .run({"run", "--source", ".", "--", "sh", "-c",
                "rm sys/class/powercap/intel-rapl:0/energy_uj sys/class/powercap/intel-rapl:0:0/energy_uj"})
          .error;
  EXPECT_THAT(said, testing::AllOf(HasSubstr("Exit status       0\n"), Not(HasSubstr("Counters"))));
}

TEST_F(RunTreeTest, ReadingsReachToTheEndOfTheCommand) {
  constexpr double watts = 22;  // that the battery takes all the time
  const std::string said =
      frontEnd.run({"run", "--source", ".", "--json", "--interval", "1h", "--", "sleep", "1"}).error;
  const auto seconds = numberOf(said, "seconds");
  const auto joules = numberOf(said.substr(0, said.find("\"counters\"")), "joules");
  ASSERT_TRUE(seconds && joules) << said;
  EXPECT_NEAR(*joules / watts, *seconds, 0.5);
  EXPECT_EQ(numberOf(said, "readings"), 2);
}

TEST_F(RunTreeTest, ACommandThatEndsAtOnceHasAReading) {
  const std::string said =
      frontEnd.run({"run", "--source", ".", "--json", "--interval", "1h", "--", "true"}).error;
  EXPECT_THAT(numberOf(said, "readings"), testing::Optional(testing::AnyOf(1, 2))) << said;
}

TEST_F(RunTreeTest, ARecordingReachesToItsEnd) {
  EXPECT_THAT(frontEnd.run({"record", "--source", ".", "--interval", "1h", "--for", "1ms"}).output,
              HasSubstr("Samples           2, with watts: 2\n"));
}

}  // namespace
}  // namespace quellin::cli
