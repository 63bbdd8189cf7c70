#include <csignal>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

#include "QuellinCore/Support/FileDescriptor.h"
#include "QuellinHelper/OutputStream.h"

namespace quellin {
namespace {

class OutputStreamTest : public testing::Test {
 protected:
  void SetUp() override { previous = std::signal(SIGPIPE, SIG_IGN); }
  void TearDown() override { std::signal(SIGPIPE, previous); }

  void (*previous)(int) = SIG_DFL;
  Pipe ends = std::move(*Pipe::open());
  const std::string large = std::string(300'000, 'a') + std::string(300'000, 'b');
};

TEST_F(OutputStreamTest, TextLargerThanThePipeArrivesWhole) {
  std::string received;
  {
    const std::jthread reader{[&] { received = readToEnd(ends.readEnd.get()); }};
    EXPECT_TRUE(writeAll(ends.writeEnd.get(), large));
    ends.writeEnd.reset();
  }
  EXPECT_EQ(received, large);
}

TEST_F(OutputStreamTest, NonBlockingPipeIsWaitedFor) {
  fcntl(ends.writeEnd.get(), F_SETFL, O_NONBLOCK);
  std::string received;
  {
    const std::jthread reader{[&] { received = readToEnd(ends.readEnd.get()); }};
    EXPECT_TRUE(writeAll(ends.writeEnd.get(), large));
    ends.writeEnd.reset();
  }
  EXPECT_EQ(received, large);
}

TEST_F(OutputStreamTest, PipeWithoutReaderIsAFailure) {
  ends.readEnd.reset();
  EXPECT_FALSE(writeAll(ends.writeEnd.get(), "x"));
}

TEST_F(OutputStreamTest, ClosedDescriptorIsAFailureUnlessThereIsNothingToWrite) {
  EXPECT_FALSE(writeAll(-1, "x"));
  EXPECT_TRUE(writeAll(-1, ""));
}

}  // namespace
}  // namespace quellin
