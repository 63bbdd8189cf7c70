#include <array>
#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PropertyLists/PropertyListText.h"
#include "QuellinHelper/PowermetricsSearch.h"
#include "QuellinHelper/PropertyLists/PropertyListStream.h"
#include "Support/Deaths.h"

namespace quellin {
namespace {

using testing_support::endedByTrap;

using namespace std::string_literals;
using namespace std::string_view_literals;
using Search = PowermetricsSearch;

constexpr std::array cpuExact{"cpu_power"sv};
constexpr std::array cpuTokens{"cpu"sv, "power"sv};

PropertyList parsed(const std::string& xml) {
  auto list = parsePropertyList(xml);
  if (!list) throw std::runtime_error(std::string{list.error().reason} + ": " + xml);
  return std::move(*list);
}

/// A dictionary of one entry per pair of key and element.
std::string dict(std::initializer_list<std::pair<std::string, std::string>> entries) {
  std::string xml = "<dict>";
  for (const auto& [key, element] : entries) xml.append("<key>").append(key).append("</key>").append(element);
  return xml + "</dict>";
}
std::string integer(long long value) { return "<integer>" + std::to_string(value) + "</integer>"; }
std::string string(const std::string& text) { return "<string>" + text + "</string>"; }

std::optional<double> numericOf(const std::string& xml) { return Search::numeric(parsed(xml).root()); }
std::optional<double> exactNumber(const std::string& xml) {
  return Search::firstExactNumber(parsed(xml).root(), cpuExact);
}
std::optional<double> recursiveNumber(const std::string& xml) {
  return Search::firstRecursiveNumber(parsed(xml).root(), cpuTokens);
}

std::optional<LocatedNumber> located(std::initializer_list<std::string> documents,
                                     Search::Keys exact = cpuExact, Search::Keys tokens = cpuTokens) {
  std::vector<PropertyList> lists;
  std::vector<PropertyListNode> samples;
  for (const std::string& xml : documents) samples.push_back(lists.emplace_back(parsed(xml)).root());
  return Search::locatedNumber(samples, exact, tokens);
}

std::vector<ProProcessEnergy> rowsOf(const std::string& xml) {
  std::vector<ProProcessEnergy> rows;
  Search::collectProcesses(parsed(xml).root(), rows);
  return rows;
}

TEST(PowermetricsSearchTest, NumericReadsNumbersAndPowerTexts) {
  const std::pair<std::string, std::optional<double>> rows[] = {
      {"<integer>42</integer>", 42},
      {"<integer>18446744073709551615</integer>", 18446744073709551615.0},
      {"<real>1.5</real>", 1.5},
      {string("812 mW"), 812},
      {string("12 W"), 12},
      {string(" W m 3.5e2 mW"), 350},
      {string("-7"), -7},
      {string("mW"), std::nullopt},
      {string(""), std::nullopt},
      {string("12 w"), std::nullopt},
      {string("12 M"), std::nullopt},
      {string("12%"), std::nullopt},
      {string("\t12"), std::nullopt},
      {string("12\n"), std::nullopt},
      {string("1 2"), std::nullopt},
      {string("0x10"), std::nullopt},
      {string("inf"), std::nullopt},
      {string("nan"), std::nullopt},
      {string("1e999"), std::nullopt},
      {"<true/>", std::nullopt},
      {"<false/>", std::nullopt},
      {"<date>2025-01-01T00:00:00Z</date>", std::nullopt},
      {"<data>MTI=</data>", std::nullopt},
      {"<array><integer>1</integer></array>", std::nullopt},
      {"<dict/>", std::nullopt}};
  for (const auto& [xml, expected] : rows) EXPECT_EQ(numericOf(xml), expected) << xml;
  EXPECT_TRUE(std::isnan(numericOf("<real>nan</real>").value_or(0)));
}

TEST(PowermetricsSearchTest, NumberValueTrimsPercentSignsAndBlanksOnly) {
  constexpr std::array key{"x"sv};
  const std::pair<std::string, std::optional<double>> rows[] = {
      {string("4.5%"), 4.5},       {string(" % 4.5 % "), 4.5},    {string("4.5 mW"), std::nullopt},
      {string("%"), std::nullopt}, {string(""), std::nullopt},    {string("\n4"), std::nullopt},
      {integer(-3), -3},           {"<real>0.25</real>", 0.25},   {"<true/>", std::nullopt},
      {"<array/>", std::nullopt},  {string("0x1"), std::nullopt}, {string("infinity"), std::nullopt}};
  for (const auto& [xml, expected] : rows) {
    EXPECT_EQ(Search::numberValue(key, parsed(dict({{"x", xml}})).root()), expected) << xml;
  }
  EXPECT_FALSE(Search::numberValue(key, parsed(dict({{"y", integer(1)}})).root()));
  EXPECT_FALSE(Search::numberValue(key, parsed(integer(1)).root()));
}

TEST(PowermetricsSearchTest, ValuePrefersExactKeysInTheirOrder) {
  constexpr std::array keys{"pid"sv, "PID"sv};
  const auto valueIn = [&keys](const std::string& xml) {
    const PropertyList list = parsed(xml);
    const auto found = Search::value(keys, list.root());
    return found ? described(*found) : "none"s;
  };
  EXPECT_EQ(valueIn(dict({{"P-I-D", integer(1)}, {"PID", integer(2)}, {"pid", integer(3)}})), "3");
  EXPECT_EQ(valueIn(dict({{"P-I-D", integer(1)}, {"PID", integer(2)}})), "2");
  EXPECT_EQ(valueIn(dict({{"P-I-D", integer(1)}, {"p.i.d", integer(2)}})), "1");
  EXPECT_EQ(valueIn(dict({{"p_id", "<array/>"}, {"p-id", integer(2)}})), "[]");
  EXPECT_EQ(valueIn(dict({{"piid", integer(1)}})), "none");
  EXPECT_EQ(valueIn("<array><dict><key>pid</key><true/></dict></array>"), "none");
}

TEST(PowermetricsSearchTest, OwnEntriesComeBeforeNestedOnes) {
  EXPECT_EQ(
      exactNumber(dict({{"processor", dict({{"cpu_power", integer(7)}})}, {"cpu_power", integer(4523)}})),
      4523);
  EXPECT_EQ(exactNumber(dict({{"cpu_power", dict({{"cpu_power", integer(7)}})}, {"a", integer(1)}})), 7);
}

TEST(PowermetricsSearchTest, ExactSearchPassesOverWhatIsNoNumber) {
  EXPECT_EQ(exactNumber(dict({{"cpu_power", string("much")}, {"CPU Power", integer(3)}})), 3);
  EXPECT_EQ(exactNumber(dict({{"cpu_power", "<true/>"}, {"n", dict({{"CPUPower", integer(3)}})}})), 3);
  EXPECT_EQ(exactNumber(dict({{"cpu_powers", integer(3)}})), std::nullopt);
}

TEST(PowermetricsSearchTest, SearchWalksInDocumentOrderDepthFirst) {
  EXPECT_EQ(exactNumber("<array>" + integer(9) + dict({{"z", dict({{"cpu_power", integer(1)}})}}) +
                        dict({{"cpu_power", integer(2)}}) + "</array>"),
            1);
  EXPECT_EQ(exactNumber(dict({{"z", "<array/>"},
                              {"y", dict({{"deep", dict({{"cpu_power", integer(1)}})}})},
                              {"a", dict({{"cpu_power", integer(2)}})}})),
            1);
  EXPECT_EQ(exactNumber(integer(5)), std::nullopt);
}

TEST(PowermetricsSearchTest, RecursiveSearchNeedsEveryTokenInAnyOrder) {
  for (const char* key : {"cpu_power", "CPU package power", "power_cpu", "package_cpu_power_avg"}) {
    EXPECT_EQ(recursiveNumber(dict({{key, integer(1)}})), 1) << key;
  }
  for (const char* key : {"cpu", "power", "gpu_power", "c_p_u p_o_w_e"}) {
    EXPECT_EQ(recursiveNumber(dict({{key, integer(1)}})), std::nullopt) << key;
  }
  EXPECT_EQ(recursiveNumber(dict({{"n", dict({{"cpu power", integer(1)}})}, {"power of cpu", integer(2)}})),
            2);
}

TEST(PowermetricsSearchTest, ALocatedNumberNamesItsWay) {
  const auto exact = located({dict({{"CPU Power", string("850 mW")}})});
  EXPECT_EQ(exact, (LocatedNumber{850, 0.85, "exact:cpu_power"}));
  const auto fallback = located({dict({{"package_cpu_power_avg", integer(50)}})});
  EXPECT_EQ(fallback, (LocatedNumber{50, 50, "fallback:[cpu,power]"}));
  EXPECT_EQ(located({dict({{"x", integer(1)}})}), std::nullopt);
  EXPECT_EQ(located({}), std::nullopt);
  EXPECT_EQ(located({dict({{"cpu power", integer(1)}})}, {}, cpuTokens)->source, "fallback:[cpu,power]");
  // With no token every key qualifies.
  EXPECT_EQ(located({dict({{"any", integer(1)}})}, cpuExact, {})->source, "fallback:[]");
}

TEST(PowermetricsSearchTest, AnExactKeyOfAnySampleComesBeforeEveryFallback) {
  const auto number = located({dict({{"cpu_power_avg", integer(1)}}), dict({{"cpu_power", integer(2)}}),
                               dict({{"cpu_power", integer(3)}})});
  EXPECT_EQ(number, (LocatedNumber{2, 2, "exact:cpu_power"}));
}

TEST(PowermetricsSearchTest, NumbersAbove100AreMilliwatts) {
  const std::pair<std::string, double> rows[] = {{"4523", 4.523}, {"100", 100},   {"100.5", 0.1005},
                                                 {"0", 0},        {"-500", -500}, {"12", 12}};
  for (const auto& [text, watts] : rows) {
    EXPECT_EQ(located({dict({{"cpu_power", "<real>" + text + "</real>"}})})->watts, watts) << text;
    EXPECT_EQ(located({dict({{"my cpu power", "<real>" + text + "</real>"}})})->watts, watts) << text;
  }
}

TEST(PowermetricsSearchTest, ProvenanceShowsFourDigits) {
  const auto summary = [](double raw, std::optional<double> watts) {
    return Search::provenanceSummary({raw, watts, "exact:cpu_power"});
  };
  EXPECT_EQ(summary(1234, 1.234), "exact:cpu_power raw=1234 normalized=1.234W");
  EXPECT_EQ(summary(12345, 12.345), "exact:cpu_power raw=1.234e+04 normalized=12.35W");
  EXPECT_EQ(summary(0.00001, 1e-5), "exact:cpu_power raw=1e-05 normalized=1e-05W");
  EXPECT_EQ(summary(100, 100), "exact:cpu_power raw=100 normalized=100W");
  EXPECT_EQ(summary(7, std::nullopt), "exact:cpu_power raw=7 normalized=nil");
}

TEST(PowermetricsSearchTest, ATaskGivesARow) {
  EXPECT_THAT(
      rowsOf(dict({{"pid", string("123")}, {"name", string("Safari")}, {"Energy Impact", string("4.5%")}})),
      testing::ElementsAre(ProProcessEnergy{123, "Safari", 4.5, {}, {}, {}}));
  EXPECT_THAT(rowsOf(dict({{"Process ID", integer(1)},
                           {"COMMAND", string("launchd")},
                           {"cpu%", integer(2)},
                           {"wakeups_per_sec", integer(9)},
                           {"wakeups-sec", integer(3)},
                           {"io bytes", integer(4)}})),
              testing::ElementsAre(ProProcessEnergy{1, "launchd", {}, 2, 3, 4}));
}

TEST(PowermetricsSearchTest, EveryFigureAloneMakesARow) {
  for (const char* key : {"energy_impact", "CPU %", "wakeups", "disk_bytes"}) {
    EXPECT_EQ(rowsOf(dict({{"pid", integer(1)}, {"name", string("a")}, {key, integer(0)}})).size(), 1U)
        << key;
  }
}

TEST(PowermetricsSearchTest, NoRowWithoutIdentifierNameOrFigure) {
  const auto rowsWith = [](const std::string& pid, const std::string& name, const std::string& figure) {
    return rowsOf(dict({{"pid", pid}, {"name", name}, {"energy_impact", figure}})).size();
  };
  EXPECT_EQ(rowsWith(integer(1), string("a"), integer(1)), 1U);
  for (const char* pid :
       {"", "12a", " 1", "1 ", "+", "-", "+-1", "0x1", "2147483648", "-2147483649", "1.0"}) {
    EXPECT_EQ(rowsWith(string(pid), string("a"), integer(1)), 0U) << pid;
  }
  for (const char* pid :
       {"<true/>", "<array/>", "<real>nan</real>", "<real>2147483648</real>", "<real>-inf</real>"}) {
    EXPECT_EQ(rowsWith(pid, string("a"), integer(1)), 0U) << pid;
  }
  EXPECT_EQ(rowsWith(integer(1), string(""), integer(1)), 0U);
  EXPECT_EQ(rowsWith(integer(1), integer(1), integer(1)), 0U);
  EXPECT_EQ(rowsWith(integer(1), string("a"), string("n/a")), 0U);
  EXPECT_EQ(rowsOf(dict({{"name", string("a")}, {"energy_impact", integer(1)}})).size(), 0U);
  EXPECT_EQ(rowsOf(dict({{"pid", integer(1)}, {"energy_impact", integer(1)}})).size(), 0U);
}

TEST(PowermetricsSearchTest, ReadsIdentifiersOfEveryForm) {
  const std::pair<std::string, std::int32_t> rows[] = {{string("+7"), 7},
                                                       {string("-2"), -2},
                                                       {string("007"), 7},
                                                       {string("2147483647"), 2147483647},
                                                       {integer(-2147483648LL), -2147483647 - 1},
                                                       {"<real>7.9</real>", 7},
                                                       {"<real>-7.9</real>", -7},
                                                       {"<real>2147483647.5</real>", 2147483647}};
  for (const auto& [pid, expected] : rows) {
    const auto found = rowsOf(dict({{"pid", pid}, {"name", string("a")}, {"energy_impact", integer(1)}}));
    ASSERT_EQ(found.size(), 1U) << pid;
    EXPECT_EQ(found[0].pid, expected) << pid;
  }
}

TEST(PowermetricsSearchDeathTest, AnIntegerIdentifierBeyond32BitsEndsTheProcess) {
  for (const char* pid : {"2147483648", "-2147483649", "18446744073709551615"}) {
    const std::string row = dict({{"pid", "<integer>"s + pid + "</integer>"}});
    EXPECT_EXIT(rowsOf(row), endedByTrap, "") << pid;
  }
}

TEST(PowermetricsSearchTest, ARowsNestedValuesAreSearchedWhetherItCountsOrNot) {
  const auto task = [](int pid, const std::string& more) {
    return dict(
        {{"pid", integer(pid)}, {"name", string("n")}, {"below", more}, {"energy_impact", integer(pid)}});
  };
  const std::string noRow = dict(
      {{"pid", integer(9)}, {"name", string("n")}, {"list", "<array>" + task(3, "<true/>") + "</array>"}});
  std::vector<int> pids;
  for (const auto& row :
       rowsOf("<array>" + task(1, task(2, "<array/>")) + noRow + task(4, "<dict/>") + "</array>")) {
    pids.push_back(row.pid);
  }
  EXPECT_THAT(pids, testing::ElementsAre(1, 2, 3, 4));
}

}  // namespace
}  // namespace quellin
