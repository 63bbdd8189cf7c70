#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/Recorded/TraceCoding.h"
#include "QuellinCore/Platform/Recorded/TraceReader.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"
#include "Support/Bytes.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing_support::withPiece;

constexpr const char* headerLine =
    R"({"kind":"trace","format":"quellin-trace","majorVersion":1,"minorVersion":0,"createdAt":1741081260.25,)"
    R"("redactsSerialNumbers":true})";
constexpr const char* firstTick =
    R"({"kind":"tick","wall":1741081260.5,"monotonic":100,"smc":[{"key":"FNum","type":"ui8 ","bytes":"02"}],)"
    R"("hid":[{"product":"PMU tdie1","temperature":51.5}],)"
    R"("battery":{"registry":[{"key":"Voltage","integer":12000}]},)"
    R"("energy":{"seconds":0.1,"channels":[{"name":"CPU Energy","nanojoules":5}]},"thermal":{"stateCode":0},)"
    R"("processes":{"seconds":0.35,"first":[{"pid":1,"user":1,"system":2}],"second":[{"pid":1,"unchanged":true}]}})";
constexpr const char* secondTick = R"({"kind":"tick","wall":1741081261.5,"monotonic":101})";

std::string linesOf(std::initializer_list<std::string> lines) {
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  return text;
}

/// What became of reading a whole trace.
struct Outcome {
  std::vector<double> ticks;  ///< the monotonic time of each
  std::size_t tornLines = 0;
  std::optional<TraceError> error;
};

Outcome read(std::string_view text) {
  Outcome outcome;
  auto reader = TraceReader::over("day", bytesOfText(text));
  if (!reader) {
    outcome.error = reader.error();
    return outcome;
  }
  for (auto tick = reader->next();; tick = reader->next()) {
    if (!tick) outcome.error = tick.error();
    if (!tick || !*tick) break;
    outcome.ticks.push_back((*tick)->monotonic.count());
  }
  outcome.tornLines = reader->tornLines();
  return outcome;
}

/// The error of a trace with `line` in place of its third.
TraceError errorOf(const std::string& line) {
  const Outcome outcome = read(linesOf({headerLine, firstTick, line, secondTick}));
  EXPECT_THAT(outcome.ticks, ElementsAre(100)) << line;
  EXPECT_TRUE(outcome.error) << line;
  return outcome.error.value_or(TraceError{});
}

/// `firstTick` with a piece of it replaced.
TEST(TraceReaderTest, ReadsHeaderAndTicks) {
  const std::string text = linesOf({headerLine, firstTick, secondTick});
  auto reader = TraceReader::over("day", bytesOfText(text));
  ASSERT_TRUE(reader);
  EXPECT_EQ(reader->path(), "day");
  EXPECT_EQ(reader->header().createdAt, 1741081260.25);
  const auto tick = reader->next().value().value();
  EXPECT_EQ(tick.wall, instantAt(1741081260.5));
  EXPECT_EQ(tick.battery.registry, (PropertyTable{{"Voltage", std::int64_t{12000}}}));
  EXPECT_THAT(tick.energy->channels.value(), ElementsAre(EnergyChannel{"CPU Energy", 5}));
  const auto last = reader->next().value().value();
  EXPECT_FALSE(last.smc || last.energy || last.processes);
  EXPECT_FALSE(reader->next().value());
  EXPECT_FALSE(reader->next().value());
  EXPECT_EQ(reader->tornLines(), 0U);
}

TEST(TraceReaderTest, WhatItReadIsWrittenTheSame) {
  JSONDecoder decoder;
  for (const char* line : {firstTick, secondTick}) {
    EXPECT_EQ(tickLine(answersOfTickLine(decoder, line).value(), SerialNumbers::kept), line);
  }
  EXPECT_EQ(encodeJSON(headerOfLine(decoder, headerLine).value()), headerLine);
}

TEST(TraceReaderTest, PassesOverWhatLaterVersionsAdd) {
  const Outcome outcome = read(linesOf(
      {R"({"minorVersion":7,"writer":{"name":"x"},"kind":"trace","format":"quellin-trace","majorVersion":1,)"
       R"("createdAt":1,"redactsSerialNumbers":false,"diagnoses":{"gpu":5}})",
       R"({"kind":"marker","wall":"noon","smc":5})", R"({"wall":1,"kind":"tick","monotonic":3,"gpu":[{}]})",
       withPiece(firstTick, R"("monotonic":100)", R"("monotonic":100,"display":{"nits":500})")}));
  EXPECT_EQ(outcome.error, std::nullopt);
  EXPECT_THAT(outcome.ticks, ElementsAre(3, 100));
}

TEST(TraceReaderTest, ATraceCutAnywhereGivesItsWholeLines) {
  const std::string header = linesOf({headerLine});
  const std::string first = linesOf({firstTick});
  const std::string text = header + first + linesOf({secondTick});
  for (std::size_t length = 0; length <= text.size(); ++length) {
    const Outcome outcome = read(std::string_view{text}.substr(0, length));
    if (length < header.size() - 1) {
      ASSERT_TRUE(outcome.error) << length;
      EXPECT_EQ(outcome.error->line, 1U) << length;
      continue;
    }
    // A line that lacks nothing but its line feed is whole.
    const std::size_t whole =
        (length >= header.size() + first.size() - 1 ? 1U : 0U) + (length >= text.size() - 1 ? 1U : 0U);
    const bool atLineEnd = length == header.size() - 1 || length == header.size() ||
                           length == header.size() + first.size() - 1 ||
                           length == header.size() + first.size() || length >= text.size() - 1;
    EXPECT_EQ(outcome.error, std::nullopt) << length;
    EXPECT_EQ(outcome.ticks.size(), whole) << length;
    EXPECT_EQ(outcome.tornLines, atLineEnd ? 0U : 1U) << length;
  }
}

TEST(TraceReaderTest, AStrayByteIsRefusedWithItsLine) {
  const std::string text = linesOf({headerLine, firstTick, secondTick});
  for (const char stray : {'\x01', '\0', '\xFF'}) {
    std::size_t line = 1;
    for (std::size_t place = 0; place < text.size(); ++place) {
      std::string damaged = text;
      damaged.insert(place, 1, stray);
      const Outcome outcome = read(damaged);
      ASSERT_TRUE(outcome.error) << place;
      EXPECT_EQ(outcome.error->line, line) << place;
      EXPECT_EQ(outcome.ticks.size(), line < 3 ? 0 : 1) << place;
      if (text[place] == '\n') ++line;
    }
  }
}

TEST(TraceReaderTest, AnyOtherByteNeverBreaksTheReader) {
  const std::string text = linesOf({headerLine, firstTick, secondTick});
  std::size_t refused = 0;
  for (std::size_t place = 0; place < text.size(); ++place) {
    for (const char other : {'"', '{', '}', ',', '9', '\n', 'e'}) {
      std::string damaged = text;
      damaged[place] = other;
      refused += read(damaged).error ? 1U : 0U;
    }
  }
  EXPECT_GT(refused, text.size() * 4);
}

TEST(TraceReaderTest, RefusesAForeignFile) {
  for (const std::string first :
       {"", "\n", "wall,watts\n", "{}\n", "[1]\n", R"({"kind":"session","format":"quellin-trace"})",
        R"({"kind":"trace","format":"other","majorVersion":1,"minorVersion":0})", firstTick}) {
    const Outcome outcome = read(first);
    ASSERT_TRUE(outcome.error) << first;
    EXPECT_EQ(outcome.error->line, 1U) << first;
    EXPECT_THAT(outcome.error->message(), EndsWith("Name a file that was written by `quellin capture`."));
  }
}

TEST(TraceReaderTest, RefusesANewerVersion) {
  std::string header = headerLine;
  header.replace(header.find(R"("majorVersion":1)"), 16, R"("majorVersion":2)");
  const Outcome outcome = read(linesOf({header, firstTick}));
  ASSERT_TRUE(outcome.error);
  EXPECT_EQ(outcome.error->message(),
            "day, line 1: the trace is of version 2.0 of the format, and only version 1 can be read. "
            "Update quellin.");
}

TEST(TraceReaderTest, RefusesAVersionThatNeverWas) {
  std::string header = headerLine;
  header.replace(header.find(R"("majorVersion":1)"), 16, R"("majorVersion":0)");
  EXPECT_THAT(read(linesOf({header})).error.value_or(TraceError{}).message(), HasSubstr("version 0.0"));
}

TEST(TraceReaderTest, RefusesAHeaderOfWrongTypes) {
  std::string header = headerLine;
  header.replace(header.find("true"), 4, "\"no\"");
  const auto error = read(linesOf({header})).error.value_or(TraceError{});
  EXPECT_EQ(error.line, 1U);
  EXPECT_THAT(error.reason, HasSubstr("redactsSerialNumbers"));
}

TEST(TraceReaderTest, RefusesWrongTypesWithLineAndPlace) {
  struct Case {
    const char* piece;
    const char* replacement;
    const char* place;
  };
  for (const auto& [piece, replacement, place] : {
           Case{R"("monotonic":100)", R"("monotonic":"100")", "monotonic"},
           Case{R"("wall":1741081260.5,)", "", "wall"},
           Case{R"("bytes":"02")", R"("bytes":2)", "smc[0].bytes"},
           Case{R"("bytes":"02")", R"("bytes":"0z")", "FNum"},
           Case{R"("FNum")", R"("FNumb")", "FNumb"},
           Case{R"("ui8 ")", R"("ui8")", "FNum"},
           Case{R"("temperature":51.5)", R"("temperature":true)", "hid[0].temperature"},
           Case{R"("temperature":51.5)", R"("temperature":1,"nonFinite":"nan")", "two temperatures"},
           Case{R"("temperature":51.5)", R"("nonFinite":"huge")", "hid[0].nonFinite"},
           Case{R"("integer":12000)", R"("integer":12000.5)", "battery.registry[0].integer"},
           Case{R"("integer":12000)", R"("integer":12000,"string":"")", "Voltage"},
           Case{R"("nanojoules":5)", R"("nanojoules":9223372036854775808)", "energy.channels[0].nanojoules"},
           Case{R"("seconds":0.1)", R"("seconds":null)", "energy.seconds"},
           Case{R"("stateCode":0)", R"("stateCode":"0")", "thermal.stateCode"},
           Case{R"("pid":1,"user")", R"("pid":4294967297,"user")", "processes.first[0].pid"},
           Case{R"("user":1,)", "", "process 1"},
           Case{R"("wall":1741081260.5)", R"("wall":1e300)", "wall"},
           Case{R"("seconds":0.35)", R"("seconds":-1)", "processes.seconds"},
       }) {
    const TraceError error = errorOf(withPiece(firstTick, piece, replacement));
    EXPECT_EQ(error.path, "day");
    EXPECT_EQ(error.line, 3U) << replacement;
    EXPECT_THAT(error.reason, HasSubstr(place));
  }
}

TEST(TraceReaderTest, RefusesLinesThatAreNoRecords) {
  for (const char* line : {"", "{", "null", "[]", "7", R"({"kind":5})", "{}", R"({"kind":"tick"} {})"}) {
    EXPECT_EQ(errorOf(line).line, 3U) << line;
  }
}

TEST(TraceReaderTest, RefusesTimeThatRunsBackwards) {
  const Outcome outcome = read(linesOf({headerLine, secondTick, firstTick}));
  ASSERT_TRUE(outcome.error);
  EXPECT_THAT(outcome.error->message(), AllOf(HasSubstr("line 3"), HasSubstr("monotonic")));
  EXPECT_EQ(read(linesOf({headerLine, secondTick, secondTick})).error, std::nullopt);
}

TEST(TraceReaderTest, AFaultIsRepeated) {
  const std::string text = linesOf({headerLine, "{", firstTick});
  auto reader = TraceReader::over("day", bytesOfText(text));
  ASSERT_TRUE(reader);
  const auto first = reader->next();
  ASSERT_FALSE(first);
  EXPECT_EQ(reader->next().error(), first.error());
}

TEST(TraceReaderTest, AFileThatCannotBeOpenedIsAnError) {
  const testing_support::TemporaryFolder folder;
  const auto reader = TraceReader::open(folder.pathOf("missing"));
  ASSERT_FALSE(reader);
  EXPECT_EQ(reader.error().line, std::nullopt);
  EXPECT_THAT(reader.error().message(), HasSubstr("No such file or directory"));
  EXPECT_THAT(TraceReader::open(folder.path().string()).error().message(), HasSubstr("Is a directory"));
}

TEST(TraceReaderTest, ReadsAFile) {
  const testing_support::TemporaryFolder folder;
  auto reader = TraceReader::open(folder.write("day", linesOf({headerLine, firstTick})));
  ASSERT_TRUE(reader);
  EXPECT_TRUE(reader->next().value());
}

}  // namespace
}  // namespace quellin
