// Comparisons over stretches of the example trace, as a user makes them.
#include <sstream>
#include <string>

#include <gmock/gmock.h>

#include "Support/Replay.h"
#include "quellin/EndToEnd/FrontEnd.h"
#include "quellin/EndToEnd/Transcript.h"
#include "quellin/Support/Golden.h"

namespace quellin::cli {
namespace {

using testing_support::contentOf;
using testing_support::exampleTrace;
using testing_support::expectGolden;
using testing_support::FrontEnd;
using testing_support::masked;
using testing_support::Transcript;

struct CompareGoldenTest : testing::Test {
  FrontEnd frontEnd;
  Transcript transcript{frontEnd};

  // Records so many ticks of the example trace, from tick `first` on, as a session of its own.
  void record(const std::string& title, int first, int count) const {
    const auto result =
        frontEnd.run({"record", "--source", stretchOf(first, count), "--interval", "5s", "--title", title});
    ASSERT_EQ(result.exitStatus, 0) << result.error;
  }

  // A trace of so many ticks of the example, from tick `first` on.
  [[nodiscard]] std::string stretchOf(int first, int count) const {
    std::istringstream trace{contentOf(exampleTrace())};
    std::string stretch;
    std::string line;
    for (int number = 0; std::getline(trace, line); ++number) {
      if (number == 0 || (number >= first && number < first + count)) stretch += line + "\n";
    }
    return frontEnd.home().write("stretch.jsonl", stretch);
  }

  // Records two ticks in which temperatures are all there is.
  void recordNothing() const {
    const std::string header = contentOf(exampleTrace());
    const std::string path = frontEnd.home().write(
        "nothing.jsonl",
        header.substr(0, header.find('\n') + 1) +
            R"({"kind":"tick","wall":1741081200,"monotonic":1,"hid":[{"product":"PMU tdie1","temperature":44}]})"
            "\n"
            R"({"kind":"tick","wall":1741081205,"monotonic":6,"hid":[{"product":"PMU tdie1","temperature":45}]})"
            "\n");
    const auto result = frontEnd.run({"record", "--source", path, "--interval", "5s", "--title", "Nothing"});
    ASSERT_EQ(result.exitStatus, 0) << result.error;
  }

  // Three stretches on battery under little load, and three under more.
  void recordRepeats() const {
    for (const int first : {1, 5, 9}) record("Old code", first, 5);
    for (const int first : {25, 29, 33}) record("New code", first, 6);
  }
};

TEST_F(CompareGoldenTest, Repeats) {
  recordRepeats();
  transcript.run({"compare", "Old code", "New code"});
  transcript.run({"compare", "Old code", "New code"}, {"COLUMNS=80"});
  transcript.run({"compare", "Old code", "New code"}, {"COLUMNS=60"});
  transcript.run({"compare", "Old code", "New code", "--json"});
  transcript.run({"compare", "Old code", "New code", "--threshold", "5"});
  transcript.run({"compare", "New code", "Old code", "--threshold", "5%"});
  transcript.run({"compare", "Old code", "New code", "--threshold", "5000"});
  for (const int first : {12, 16, 20}) record("Same, code", first, 5);
  transcript.run({"compare", "Old code", "Same, code", "--threshold", "5"});
  transcript.expectGolden("compare-repeats.txt");
}

TEST_F(CompareGoldenTest, SingleSessionsOfSeveralKinds) {
  record("On battery, then charging", 40, 60);
  record("Charging, then full", 85, 45);
  record("Too weak a charger", 160, 20);
  transcript.run({"compare", "On battery, then charging", "Charging, then full"});
  transcript.run({"compare", "On battery, then charging", "Charging, then full", "--threshold", "5"});
  transcript.run({"compare", "Charging, then full", "Too weak a charger"});
  transcript.run({"compare", "Charging, then full", "Too weak a charger", "--json"});
  transcript.expectGolden("compare-kinds.txt");
}

TEST_F(CompareGoldenTest, SingleSessionsOfOneKind) {
  record("Writing", 187, 30);
  record("Building", 20, 30);
  transcript.run({"compare", "Writing", "Building", "--threshold", "0"});
  transcript.run({"compare", "Writing", "Building", "--threshold", "50"});
  transcript.run({"compare", "Writing", "Building", "--threshold", "50", "--json"});
  transcript.run({"compare", "Building", "Writing", "--threshold", "0"});
  transcript.expectGolden("compare-singles.txt");
}

TEST_F(CompareGoldenTest, WhatTheReadmeShows) {
  recordRepeats();
  const auto result = frontEnd.run({"compare", "Old code", "New code", "--threshold", "5"});
  EXPECT_EQ(result.exitStatus, 3);
  expectGolden(QUELLIN_PROJECT "/docs/compare.txt", masked(result.output, frontEnd.home().path().string()));
}

TEST_F(CompareGoldenTest, TooLittleToSayHowSure) {
  record("Short", 1, 4);
  record("Long", 10, 30);
  record("Long", 20, 30);
  recordNothing();
  transcript.run({"compare", "Short", "last"});
  transcript.run({"compare", "Short", "Long"});
  transcript.run({"compare", "Short", "Long", "--threshold", "5"});
  transcript.run({"compare", "Short", "Nothing"});
  transcript.run({"compare", "Short", "Long,Nothing"});
  transcript.run({"compare", "Long", "Short,Nothing", "--threshold", "5"});
  transcript.expectGolden("compare-few.txt");
}

TEST_F(CompareGoldenTest, AThresholdThatIsNotAppliedToAll) {
  record("Before", 20, 35);
  record("After", 160, 60);
  transcript.run({"compare", "Before", "After", "--threshold", "5"});
  const auto failing =
      frontEnd.run({"run", "--source", stretchOf(20, 35), "--title", "Failing", "--", "false"});
  ASSERT_EQ(failing.exitStatus, 1) << failing.error;
  transcript.run({"compare", "Before", "Failing", "--threshold", "5"});
  transcript.expectGolden("compare-unjudged.txt");
}

TEST_F(CompareGoldenTest, WordsThatNameNothingOrTooMuch) {
  transcript.run({"compare", "last", "last"});
  recordRepeats();
  transcript.run({"compare", "Old code"});
  transcript.run({"compare", "Old code", "Nobody's code"});
  transcript.run({"compare", "New code", "last"});
  transcript.run({"compare", "New code", "New code"});
  transcript.run({"compare", "Old code,", "New code"});
  transcript.run({"compare", "Old code", "New code", "--threshold", "some"});
  transcript.expectGolden("compare-words.txt");
}

}  // namespace
}  // namespace quellin::cli
