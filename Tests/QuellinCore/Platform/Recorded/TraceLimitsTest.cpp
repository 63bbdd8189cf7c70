#include <regex>
#include <span>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/Recorded/TraceCoding.h"
#include "QuellinCore/Platform/Recorded/TraceLimits.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"
#include "Support/Bytes.h"
#include "Support/Replay.h"

namespace quellin {
namespace {

using testing::HasSubstr;
using testing_support::readEverything;
using testing_support::withPiece;

/// A tick with a number in every place where a rule reckons.
const std::string tick =
    R"({"kind":"tick","wall":1741081260.5,"monotonic":100,)"
    R"("smc":[{"key":"F0Ac","type":"flt ","bytes":"00101445"},{"key":"F0Mx","type":"fpe2","bytes":"5dc0"},)"
    R"({"key":"FNum","type":"ui8 ","bytes":"01"},{"key":"Tp09","type":"flt ","bytes":"66665242"}],)"
    R"("hid":[{"product":"PMU tdie1","temperature":51.5}],)"
    R"("battery":{"registry":[{"key":"AppleRawCurrentCapacity","integer":3000},)"
    R"({"key":"AppleRawMaxCapacity","integer":5000},{"key":"DesignCapacity","integer":6000},)"
    R"({"key":"CycleCount","integer":12},{"key":"Voltage","integer":12000},{"key":"Amperage","integer":1500},)"
    R"({"key":"Temperature","integer":3055},{"key":"IsCharging","boolean":true},)"
    R"({"key":"AvgTimeToFull","double":20000.5}],)"
    R"("powerSource":[{"key":"Time to Full Charge","double":-1},{"key":"Watts","integer":96}]},)"
    R"("energy":{"seconds":0.2,"channels":[{"name":"PCPU0","nanojoules":5},{"name":"PCPU1","nanojoules":6}]},)"
    R"("thermal":{"stateCode":0,"pressureState":1},)"
    R"("processes":{"seconds":0.7,"first":[{"pid":1,"user":1,"system":2,"idleWakeups":3,"interruptWakeups":4,)"
    R"("bytesRead":5,"bytesWritten":6,"energy":7,"startToken":8}],"second":[{"pid":1,"name":"busy",)"
    R"("user":100000000,"system":200000000,"idleWakeups":30,"interruptWakeups":40,"bytesRead":50,)"
    R"("bytesWritten":60,"energy":70,"startToken":8}]}})";

/// Why a line is refused; empty when it is not.
std::string faultOf(const std::string& line) {
  JSONDecoder decoder;
  const auto answers = answersOfTickLine(decoder, line);
  return answers ? "" : answers.error();
}

/// Whether a trace of this tick can be played; plays it through every service if so.
bool plays(const std::string& line) {
  const std::string trace = *encodeJSON(TraceHeader{}) + "\n" + line + "\n" + line + "\n";
  const auto player = TracePlayer::over(*TraceReader::over("day", bytesOfText(trace)));
  if (!player) {
    EXPECT_EQ(player.error().line, 2U) << line;
    EXPECT_NE(player.error().reason, "") << line;
    return false;
  }
  static_cast<void>(readEverything(*player));
  EXPECT_EQ((*player)->untilNext(), Seconds{0});
  return true;
}

/// A part of the tick, and what a hostile hand puts in its place.
struct Place {
  std::size_t position;
  std::size_t length;
};

std::vector<Place> placesOf(const char* pattern) {
  const std::regex expression{pattern};
  std::vector<Place> places;
  for (std::sregex_iterator match{tick.begin(), tick.end(), expression}; match != std::sregex_iterator{};
       ++match) {
    places.push_back(
        {static_cast<std::size_t>(match->position(1)), static_cast<std::size_t>(match->length(1))});
  }
  return places;
}

const std::vector<Place> numbers = placesOf(R"re(:(-?[0-9][0-9.]*)[,}])re");

std::string replaced(const Place& place, std::string_view text) {
  return std::string{tick}.replace(place.position, place.length, text);
}

TEST(TraceLimitsTest, TakesAnOrdinaryTick) {
  EXPECT_EQ(faultOf(tick), "");
  EXPECT_TRUE(plays(tick));
  EXPECT_EQ(numbers.size(), 37U);
}

TEST(TraceLimitsTest, RefusesNumbersOnWhichARuleWouldEndTheProcess) {
  struct Case {
    const char* piece;
    const char* replacement;
    const char* reason;
  };
  for (const auto& [piece, replacement, reason] : {
           Case{"1741081260.5", "253402300800", R"("wall" lies outside of the years 1 to 9999)"},
           Case{"1741081260.5", "-62135596800.5", R"("wall" lies outside of the years 1 to 9999)"},
           Case{R"("monotonic":100)", R"("monotonic":-1)",
                R"("monotonic" lies outside of 0 to 100000000000 seconds)"},
           Case{R"("monotonic":100)", R"("monotonic":100000000001)", R"("monotonic" lies outside of)"},
           Case{R"("seconds":0.2)", R"("seconds":-0.2)", R"("energy.seconds" lies outside of)"},
           Case{R"("seconds":0.7)", R"("seconds":1e308)", R"("processes.seconds" lies outside of)"},
           Case{"00101445", "0000c07f", R"(the fan speed of the key "F0Ac" is no number of 64 bits)"},
           Case{"00101445", "0000805f", R"(the fan speed of the key "F0Ac")"},
           Case{":3000", ":9007199254740993", R"(a capacity or a remaining time of "battery" is too large)"},
           Case{R"("double":20000.5)", R"("nonFinite":"nan")", R"(a capacity or a remaining time of)"},
           Case{R"("nanojoules":5)", R"("nanojoules":4611686018427387904)",
                R"(the gains of "energy.channels" are too large to be added up)"},
           Case{R"("pressureState":1)", R"("pressureState":9223372036854775808)",
                R"("thermal.pressureState" is above 9223372036854775807)"},
           Case{R"("user":1,)", R"("user":9223372036854775808,)",
                "process 1 has a counter above 9223372036854775807"},
           Case{R"("bytesWritten":60)", R"("bytesWritten":9223372036854775808)", "process 1 has a counter"},
       }) {
    const std::string line = withPiece(tick, piece, replacement);
    EXPECT_THAT(faultOf(line), HasSubstr(reason)) << replacement;
    EXPECT_FALSE(plays(line)) << replacement;
  }
}

TEST(TraceLimitsTest, TakesTheLargestNumbersThatRulesCanReckonWith) {
  struct Case {
    const char* piece;
    const char* replacement;
  };
  for (const auto& [piece, replacement] : {
           Case{"1741081260.5", "253402300799.5"},
           Case{"1741081260.5", "-62135596800"},
           Case{R"("monotonic":100)", R"("monotonic":100000000000)"},
           Case{R"("seconds":0.2)", R"("seconds":0)"},
           Case{"66665242", "0000c07f"},
           Case{":3000", ":9007199254740992"},
           Case{R"("integer":12)", R"("integer":9223372036854775807)"},
           Case{R"("nanojoules":5)", R"("nanojoules":4611686018427387903)"},
           Case{R"("pressureState":1)", R"("pressureState":9223372036854775807)"},
           Case{R"("user":1,)", R"("user":9223372036854775807,)"},
           Case{R"("energy":70)", R"("energy":18446744073709551615)"},
       }) {
    const std::string line = withPiece(tick, piece, replacement);
    EXPECT_EQ(faultOf(line), "") << replacement;
    EXPECT_TRUE(plays(line)) << replacement;
  }
}

TEST(TraceLimitsTest, WritesNothingThatNoReaderWouldTake) {
  JSONDecoder decoder;
  HostAnswers answers = answersOfTickLine(decoder, tick).value();
  EXPECT_TRUE(tickLine(answers, SerialNumbers::kept));
  answers.thermal.pressureState = ~std::uint64_t{0};
  EXPECT_EQ(tickLine(answers, SerialNumbers::kept).error(), numberFault(answers));
}

TEST(TraceLimitsTest, RefusesAHeaderFromBeyondTheCalendar) {
  TraceHeader header;
  EXPECT_EQ(numberFault(header), std::nullopt);
  header.createdAt = 1e300;
  EXPECT_EQ(numberFault(header), R"("createdAt" lies outside of the years 1 to 9999)");
  const auto reader = TraceReader::over("day", bytesOfText(*encodeJSON(header)));
  ASSERT_FALSE(reader);
  EXPECT_EQ(reader.error().line, 1U);
}

TEST(TraceLimitsTest, SurvivesEveryHostileNumberInEveryPlace) {
  std::size_t played = 0;
  std::size_t refused = 0;
  for (const Place& place : numbers) {
    for (const char* hostile :
         {"0", "-1", "1", "65536", "-0.0", "0.5", "9007199254740992", "-9007199254740993",
          "9223372036854775807", "-9223372036854775808", "9223372036854775808", "18446744073709551615",
          "1e308", "-1e308", "1e-300", "5e-324", "1e11"}) {
      ++(plays(replaced(place, hostile)) ? played : refused);
    }
  }
  for (const Place& place : placesOf(R"re("bytes":"([0-9a-f]*)")re")) {
    for (const char* hostile : {"", "00", "ff", "ffff", "0000c07f", "0000807f", "000080ff", "ffff7f7f"}) {
      ++(plays(replaced(place, hostile)) ? played : refused);
    }
    ++(plays(replaced(place, std::string(400, 'f'))) ? played : refused);
  }
  EXPECT_GT(played, 200U);
  EXPECT_GT(refused, 200U);
}

TEST(TraceLimitsTest, SurvivesEveryPairOfHostileNumbers) {
  std::size_t played = 0;
  for (std::size_t later = 1; later < numbers.size(); ++later) {
    for (std::size_t earlier = 0; earlier < later; ++earlier) {
      for (const char* first : {"9007199254740992", "4611686018427387903", "1e-300", "-9007199254740992"}) {
        for (const char* second : {"9007199254740992", "9223372036854775807", "-4611686018427387903"}) {
          // From the back, so that the earlier place stays where it was.
          std::string line = replaced(numbers[later], second);
          line.replace(numbers[earlier].position, numbers[earlier].length, first);
          if (plays(line)) ++played;
        }
      }
    }
  }
  EXPECT_GT(played, 1000U);
}

TEST(TraceLimitsTest, StretchesTheLargestNumbersWithoutEndingTheProcess) {
  std::string line = tick;
  for (const auto& [piece, replacement] : std::initializer_list<std::pair<const char*, const char*>>{
           {R"("seconds":0.2)", R"("seconds":0.001)"},
           {R"("seconds":0.7)", R"("seconds":1e-200)"},
           {R"("nanojoules":5)", R"("nanojoules":4611686018427387903)"},
           {R"("nanojoules":6)", R"("nanojoules":4611686018427387903)"},
           {R"("user":100000000)", R"("user":9223372036854775807)"},
           {R"("system":200000000)", R"("system":9223372036854775807)"},
           {R"("idleWakeups":30)", R"("idleWakeups":9223372036854775807)"},
           {R"("interruptWakeups":40)", R"("interruptWakeups":9223372036854775807)"},
           {R"("bytesRead":50)", R"("bytesRead":9223372036854775807)"},
           {R"("bytesWritten":60)", R"("bytesWritten":9223372036854775807)"},
           {R"("energy":70)", R"("energy":18446744073709551615)"}}) {
    const std::size_t place = line.find(piece);
    ASSERT_NE(place, std::string::npos) << piece;
    line.replace(place, std::string_view{piece}.size(), replacement);
  }
  EXPECT_TRUE(plays(line));
}

}  // namespace
}  // namespace quellin
