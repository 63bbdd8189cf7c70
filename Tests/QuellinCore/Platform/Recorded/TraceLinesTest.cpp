#include <cerrno>
#include <fcntl.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/Recorded/TraceLines.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

std::vector<std::pair<std::string, bool>> linesOf(ByteSource source) {
  TraceLines lines{std::move(source)};
  std::vector<std::pair<std::string, bool>> found;
  while (const auto line = lines.next().value()) found.emplace_back(line->text, line->isComplete);
  EXPECT_FALSE(lines.next().value());
  return found;
}

/// Gives one byte at a time.
ByteSource drops(std::string_view text) {
  return [text](std::span<char> buffer) mutable -> std::expected<std::size_t, SystemError> {
    if (text.empty()) return 0;
    buffer[0] = text[0];
    text.remove_prefix(1);
    return 1;
  };
}

TEST(TraceLinesTest, CutsAtLineFeeds) {
  for (auto bytes : {&bytesOfText, &drops}) {
    EXPECT_THAT(linesOf(bytes("a\n\nbc\r\n")),
                ElementsAre(Pair("a", true), Pair("", true), Pair("bc\r", true)));
    EXPECT_THAT(linesOf(bytes("a\nbc")), ElementsAre(Pair("a", true), Pair("bc", false)));
    EXPECT_THAT(linesOf(bytes("\n")), ElementsAre(Pair("", true)));
    EXPECT_THAT(linesOf(bytes("")), IsEmpty());
  }
}

TEST(TraceLinesTest, HoldsLinesLongerThanOneRead) {
  const std::string first(200'000, 'x');
  const std::string second(70'000, 'y');
  EXPECT_THAT(linesOf(bytesOfText(first + "\n" + second + "\n")),
              ElementsAre(Pair(first, true), Pair(second, true)));
}

TEST(TraceLinesTest, ReadsAFile) {
  const testing_support::TemporaryFolder folder;
  auto file = openDescriptor(folder.write("text", "one\ntwo\n"), O_RDONLY);
  ASSERT_TRUE(file);
  EXPECT_THAT(linesOf(bytesOfFile(*std::move(file))), ElementsAre(Pair("one", true), Pair("two", true)));
}

TEST(TraceLinesTest, AFileThatCannotBeReadIsAnError) {
  const testing_support::TemporaryFolder folder;
  auto directory = openDescriptor(folder.path().string(), O_RDONLY);
  ASSERT_TRUE(directory);
  TraceLines lines{bytesOfFile(*std::move(directory))};
  EXPECT_EQ(lines.next().error().code, EISDIR);
}

TEST(TraceLinesTest, RefusesToHoldAnEndlessLine) {
  std::size_t given = 0;
  const ByteSource endless = [&](std::span<char> buffer) -> std::expected<std::size_t, SystemError> {
    std::ranges::fill(buffer, 'x');
    given += buffer.size();
    return buffer.size();
  };
  TraceLines lines{endless, 1'000'000};
  EXPECT_EQ(lines.next().error().code, EFBIG);
  EXPECT_LT(given, 1'200'000U);
}

}  // namespace
}  // namespace quellin
