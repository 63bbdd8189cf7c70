#include <cmath>
#include <limits>
#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/Recorded/TraceReader.h"
#include "QuellinCore/Platform/Recorded/TraceWriter.h"
#include "Support/FakeHost.h"
#include "Support/FileSizeLimit.h"
#include "Support/ManualClock.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using testing_support::modeOf;
using namespace testing_support;

HostAnswers tickAt(double monotonic) {
  HostAnswers answers;
  answers.wall = instantAt(1000.5);
  answers.monotonic = Seconds{monotonic};
  return answers;
}

class TraceWriterTest : public testing::Test {
 protected:
  TemporaryFolder folder;
  std::string path = folder.pathOf("trace.jsonl");
};

TEST_F(TraceWriterTest, WritesOneLineForTheHeaderAndOneForEachTick) {
  auto writer = TraceWriter::create(path, TraceHeader{});
  ASSERT_TRUE(writer);
  EXPECT_EQ(contentOf(path),
            R"({"kind":"trace","format":"quellin-trace","majorVersion":1,"minorVersion":0,"createdAt":0,)"
            R"("redactsSerialNumbers":true})"
            "\n");
  ASSERT_TRUE(writer->write(tickAt(1)));
  ASSERT_TRUE(writer->write(tickAt(2.25)));
  EXPECT_THAT(contentOf(path), EndsWith("{\"kind\":\"tick\",\"wall\":1000.5,\"monotonic\":1}\n"
                                        "{\"kind\":\"tick\",\"wall\":1000.5,\"monotonic\":2.25}\n"));
  EXPECT_EQ(writer->bytesWritten(), contentOf(path).size());
}

TEST_F(TraceWriterTest, OnlyTheOwnerMayReadIt) {
  ASSERT_TRUE(TraceWriter::create(path, TraceHeader{}));
  EXPECT_EQ(modeOf(path), 0600U);
}

TEST_F(TraceWriterTest, RefusesToOverwriteUnlessTold) {
  folder.write("trace.jsonl", "precious");
  ASSERT_EQ(chmod(path.c_str(), 0644), 0);
  const auto refused = TraceWriter::create(path, TraceHeader{});
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().message(),
            path + ": there is such a file already. Choose another name, or say that it may be replaced.");
  EXPECT_EQ(contentOf(path), "precious");

  ASSERT_TRUE(TraceWriter::create(path, TraceHeader{}, ExistingFile::replaced));
  EXPECT_THAT(contentOf(path), StartsWith("{\"kind\":\"trace\""));
  EXPECT_EQ(modeOf(path), 0600U);
}

TEST_F(TraceWriterTest, SaysWhyItCannotCreateTheFile) {
  const auto writer = TraceWriter::create(folder.pathOf("no/such/folder"), TraceHeader{});
  ASSERT_FALSE(writer);
  EXPECT_THAT(writer.error().message(), HasSubstr("No such file or directory"));
}

TEST_F(TraceWriterTest, ATickWithoutATimeIsLeftOut) {
  auto writer = TraceWriter::create(path, TraceHeader{});
  ASSERT_TRUE(writer);
  const std::string before = contentOf(path);
  const auto written = writer->write(tickAt(std::nan("")));
  ASSERT_FALSE(written);
  EXPECT_THAT(written.error().message(), HasSubstr("monotonic"));
  EXPECT_EQ(contentOf(path), before);
}

TEST_F(TraceWriterTest, AHeaderWithoutATimeIsRefused) {
  TraceHeader header;
  header.createdAt = std::numeric_limits<double>::infinity();
  EXPECT_FALSE(TraceWriter::create(path, header));
}

TEST_F(TraceWriterTest, TakesBackALineThatDidNotFit) {
  auto writer = TraceWriter::create(path, TraceHeader{});
  ASSERT_TRUE(writer);
  ASSERT_TRUE(writer->write(tickAt(1)));
  const std::string before = contentOf(path);
  {
    const FileSizeLimit limit{before.size() + 10};
    const auto written = writer->write(tickAt(2));
    ASSERT_FALSE(written);
    EXPECT_THAT(written.error().message(), HasSubstr("File too large"));
  }
  EXPECT_EQ(contentOf(path), before);
  ASSERT_TRUE(writer->write(tickAt(3)));
  EXPECT_THAT(contentOf(path), EndsWith("\"monotonic\":3}\n"));
}

TEST_F(TraceWriterTest, TheHeaderHoldsWhatTheSourcesSay) {
  FakeHost host;
  host.energy->diagnosis = {.source = "Energy counters",
                            .availability = SourceAvailability::notPermitted,
                            .reason = "Only root may read them.",
                            .path = "/sys/class/powercap",
                            .remedy = "Run as root."};
  const ManualWallClock clock{instantAt(12.5)};
  const TraceHeader header = traceHeader(host.sources(), clock, SerialNumbers::kept);
  ASSERT_TRUE(TraceWriter::create(path, header));
  const auto reader = TraceReader::open(path);
  ASSERT_TRUE(reader);
  EXPECT_EQ(reader->header(), header);
  EXPECT_EQ(reader->header().createdAt, 12.5);
  EXPECT_FALSE(reader->header().redactsSerialNumbers);
  EXPECT_EQ(reader->header().diagnoses->energy, host.energy->diagnosis);
}

}  // namespace
}  // namespace quellin
