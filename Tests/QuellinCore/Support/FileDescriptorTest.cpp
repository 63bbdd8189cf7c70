#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "QuellinCore/Support/FileDescriptor.h"
#include "Support/JoinedThread.h"

namespace quellin {
namespace {

using testing_support::JoinedThread;

bool isOpen(int descriptor) { return fcntl(descriptor, F_GETFD) != -1; }

TEST(FileDescriptorTest, ClosesAtTheEndOfItsLifeAndOnce) {
  const int number = dup(STDERR_FILENO);
  {
    FileDescriptor first{number};
    const FileDescriptor second{std::move(first)};
    EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(second.get(), number);
    EXPECT_TRUE(isOpen(number));
  }
  EXPECT_FALSE(isOpen(number));
}

TEST(FileDescriptorTest, PipeEndsAreClosedOnExecAndStayClearOfTheStandardStreams) {
  const FileDescriptor savedInput{dup(STDIN_FILENO)};
  close(STDIN_FILENO);
  const auto ends = Pipe::open();
  const auto null = openDescriptor("/dev/null", O_RDONLY);
  dup2(savedInput.get(), STDIN_FILENO);

  ASSERT_TRUE(ends && null);
  for (const int end : {ends->readEnd.get(), ends->writeEnd.get(), null->get()}) {
    EXPECT_GE(end, 3);
    EXPECT_EQ(fcntl(end, F_GETFD), FD_CLOEXEC);
  }
}

TEST(FileDescriptorTest, ClosedStandardStreamsAreHeldByWhatFailsInTheirDirection) {
  const std::array streams{STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};
  std::array<int, 3> directions{};
  for (std::size_t index = 0; index < streams.size(); ++index) {
    const FileDescriptor saved{dup(streams[index])};
    close(streams[index]);
    const auto result = occupyClosedStreams();
    directions[index] = fcntl(streams[index], F_GETFL) & O_ACCMODE;
    dup2(saved.get(), streams[index]);
    EXPECT_TRUE(result);
  }
  EXPECT_EQ(directions, (std::array{O_WRONLY, O_RDONLY, O_RDONLY}));
}

TEST(FileDescriptorTest, OpeningReportsTheSystemsError) {
  const auto descriptor = openDescriptor("/nonexistent/file", O_RDONLY);
  ASSERT_FALSE(descriptor);
  EXPECT_EQ(descriptor.error(), SystemError{ENOENT});
  EXPECT_EQ(descriptor.error().description(), "No such file or directory");
}

TEST(FileDescriptorTest, ReadsBeyondThePipesCapacityAndKeepsTheFirstBytesUpToTheLimit) {
  const std::string sent = "head" + std::string(200'000, 'x');
  for (const std::size_t limit : {sent.size() + 1, sent.size(), std::size_t{4}, std::size_t{0}}) {
    auto ends = Pipe::open();
    ASSERT_TRUE(ends);
    const JoinedThread writer{[&] {
      std::size_t written = 0;
      while (written < sent.size()) {
        const ssize_t count = write(ends->writeEnd.get(), sent.data() + written, sent.size() - written);
        ASSERT_GT(count, 0);
        written += static_cast<std::size_t>(count);
      }
      ends->writeEnd.reset();
    }};
    EXPECT_EQ(readToEnd(ends->readEnd.get(), limit), sent.substr(0, limit));
  }
}

class WriteAllTest : public testing::Test {
 protected:
  void SetUp() override { previous = std::signal(SIGPIPE, SIG_IGN); }
  void TearDown() override { std::signal(SIGPIPE, previous); }

  void (*previous)(int) = SIG_DFL;
  Pipe ends = std::move(*Pipe::open());
  const std::string large = std::string(300'000, 'a') + std::string(300'000, 'b');
};

TEST_F(WriteAllTest, TextLargerThanThePipeArrivesWhole) {
  std::string received;
  {
    const JoinedThread reader{[&] { received = readToEnd(ends.readEnd.get()); }};
    EXPECT_TRUE(writeAll(ends.writeEnd.get(), large));
    ends.writeEnd.reset();
  }
  EXPECT_EQ(received, large);
}

TEST_F(WriteAllTest, NonBlockingPipeIsWaitedFor) {
  fcntl(ends.writeEnd.get(), F_SETFL, O_NONBLOCK);
  std::string received;
  {
    const JoinedThread reader{[&] { received = readToEnd(ends.readEnd.get()); }};
    EXPECT_TRUE(writeAll(ends.writeEnd.get(), large));
    ends.writeEnd.reset();
  }
  EXPECT_EQ(received, large);
}

TEST_F(WriteAllTest, PipeWithoutReaderIsAFailure) {
  ends.readEnd.reset();
  EXPECT_EQ(writeAll(ends.writeEnd.get(), "x").error().code, EPIPE);
}

TEST_F(WriteAllTest, ClosedDescriptorIsAFailureUnlessThereIsNothingToWrite) {
  EXPECT_EQ(writeAll(-1, "x").error().code, EBADF);
  EXPECT_TRUE(writeAll(-1, ""));
}

}  // namespace
}  // namespace quellin
