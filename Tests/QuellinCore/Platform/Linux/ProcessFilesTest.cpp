#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "QuellinCore/Platform/Linux/ProcessFiles.h"

namespace quellin {
namespace {

// A line whose times are 11 and 12 ticks and whose start is 99.
std::string lineWithName(const std::string& name) {
  return "7 (" + name + ") S 1 7 7 0 -1 4194304 1 2 3 4 11 12 13 14 20 0 1 0 99 3133440 418 1844\n";
}

TEST(ProcessFilesTest, TheNameEndsAtTheLastParenthesis) {
  for (const char* name : {"sh", "tmux: server", "a) S 1 (b", ")", "(", ") R 1 2 3 4 5 6 7 8 9 10 11", "",
                           "two\nlines", "kworker/0:1-events", "\xff\xfe"}) {
    EXPECT_EQ(parseProcessStat(lineWithName(name)),
              (ProcessStat{.name = name, .userTicks = 11, .systemTicks = 12, .startTicks = 99}))
        << name;
  }
}

TEST(ProcessFilesTest, ALineThatIsCutOrMalformedIsNoProcess) {
  const std::string whole = lineWithName("sh");
  const std::vector<std::string> cases = {
      "",
      "7",
      "7 (sh",
      "7 )sh(",
      "7 (sh)",
      whole.substr(0, whole.find(" 99")),
      "7 (sh) S 1 7 7 0 -1 4194304 1 2 3 4 -11 12 13 14 20 0 1 0 99 1 1",
      "7 (sh) S 1 7 7 0 -1 4194304 1 2 3 4 11 x 13 14 20 0 1 0 99 1 1",
      "7 (sh) S 1 7 7 0 -1 4194304 1 2 3 4 11 12 13 14 20 0 1 0 99999999999999999999 1 1",
  };
  for (const std::string& line : cases) EXPECT_EQ(parseProcessStat(line), std::nullopt) << line;
}

TEST(ProcessFilesTest, NegativeNumbersElsewhereAndHugeTimesAreRead) {
  const auto stat = parseProcessStat(
      "7 (sh) S 1 7 7 0 -1 4194304 1 2 3 4 18446744073709551615 0 -13 -14 -51 -20 1 0 5 1 1");
  ASSERT_TRUE(stat.has_value());
  EXPECT_EQ(stat->userTicks, std::numeric_limits<std::uint64_t>::max());
  EXPECT_EQ(stat->startTicks, 5);
}

TEST(ProcessFilesTest, ANumberIsFoundByTheWholeNameOfItsLine) {
  constexpr std::string_view text =
      "Name:\tvoluntary_ctxt_switches: "
      "5\nnonvoluntary_ctxt_switches:\t9\nvoluntary_ctxt_switches:\t40\nVmRSS:\t12 kB\nempty:\n"
      "last: 7";
  const std::vector<std::pair<std::string, std::optional<std::uint64_t>>> cases = {
      {"voluntary_ctxt_switches", 40}, {"nonvoluntary_ctxt_switches", 9}, {"last", 7},
      {"VmRSS", std::nullopt},         {"empty", std::nullopt},           {"missing", std::nullopt},
      {"switches", std::nullopt},
  };
  for (const auto& [name, number] : cases) EXPECT_EQ(parseNamedNumber(text, name), number) << name;
  EXPECT_EQ(parseNamedNumber("", "last"), std::nullopt);
}

}  // namespace
}  // namespace quellin
