#include <csignal>
#include <fcntl.h>
#include <string>

#include <gmock/gmock.h>

#include "QuellinCore/Support/FileDescriptor.h"
#include "Support/JoinedThread.h"
#include "Support/TemporaryFolder.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Terminal/Output.h"

namespace quellin::cli {
namespace {

using testing_support::contentOf;
using testing_support::JoinedThread;
using testing_support::TemporaryFolder;

// As the program does in its entry; a write to a closed pipe would end the tests otherwise.
struct OutputTest : testing::Test {
  OutputTest() = default;
  OutputTest(const OutputTest&) = delete;
  OutputTest& operator=(const OutputTest&) = delete;
  OutputTest(OutputTest&&) = delete;
  OutputTest& operator=(OutputTest&&) = delete;
  ~OutputTest() override { std::signal(SIGPIPE, before); }

  void (*before)(int) = std::signal(SIGPIPE, SIG_IGN);
  TemporaryFolder folder;
  std::string path = folder.pathOf("output");
  FileDescriptor file = *openDescriptor(path, O_CREAT | O_WRONLY, 0600);
};

TEST_F(OutputTest, WritesAreGatheredUntilTheFlush) {
  Output out{file.get()};
  out.write("one ");
  out.line("two");
  EXPECT_EQ(contentOf(path), "");
  out.flush();
  EXPECT_EQ(contentOf(path), "one two\n");
  out.flush();
  EXPECT_EQ(contentOf(path), "one two\n");
}

TEST_F(OutputTest, MuchIsWrittenWithoutAFlush) {
  Output out{file.get()};
  out.write(std::string(100'000, 'x'));
  EXPECT_EQ(contentOf(path).size(), 100'000U);
}

TEST_F(OutputTest, AReaderThatIsSlowIsWaitedForWhereTheOtherEndMadeThePipeNonBlocking) {
  auto pipe = Pipe::open();
  ASSERT_TRUE(pipe);
  fcntl(pipe->writeEnd.get(), F_SETFL, O_NONBLOCK);
  const std::string text(300'000, 'x');
  std::string received;
  {
    const JoinedThread reader{[&] { received = readToEnd(pipe->readEnd.get()); }};
    Output out{pipe->writeEnd.get()};
    EXPECT_NO_THROW(out.write(text));
    pipe->writeEnd.reset();
  }
  EXPECT_TRUE(received == text) << received.size() << " bytes arrived";
}

TEST_F(OutputTest, AReaderThatWentIsNoFailure) {
  auto pipe = Pipe::open();
  ASSERT_TRUE(pipe);
  pipe->readEnd.reset();
  Output out{pipe->writeEnd.get()};
  out.line("unheard");
  EXPECT_THROW(out.flush(), ReaderGone);
}

// How writing into a file that is opened in this way fails.
std::string failureOfWriting(const std::string& file, int flags) {
  const auto unwritable = openDescriptor(file, flags);
  EXPECT_TRUE(unwritable);
  Output out{unwritable->get()};
  out.line("too much");
  try {
    out.flush();
    return "nothing was thrown";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.status(), ExitStatus::failed);
    return failure.what();
  }
}

TEST_F(OutputTest, WhatStopsTheWritingIsNamedAndSoIsTheWayOut) {
  EXPECT_EQ(failureOfWriting(path, O_RDONLY),
            "standard output cannot be written: Bad file descriptor. It is closed; open it for writing, for "
            "example with > FILE.");
#if defined(__linux__)
  EXPECT_EQ(failureOfWriting("/dev/full", O_WRONLY),
            "standard output cannot be written: No space left on device. Write to a place with room, for "
            "example with -o FILE or > FILE.");
#endif
}

TEST_F(OutputTest, TalkIsWrittenAtOnceBehindTheProgramsName) {
  const Talk talk{file.get()};
  talk.say("recording.");
  talk.raw("...");
  EXPECT_EQ(contentOf(path), "quellin: recording.\n...");
}

TEST_F(OutputTest, FailingToTalkIsNoFailure) {
  const auto unwritable = openDescriptor(path, O_RDONLY);
  ASSERT_TRUE(unwritable);
  EXPECT_NO_THROW(Talk{unwritable->get()}.say("nobody hears this."));
}

}  // namespace
}  // namespace quellin::cli
