#include <gmock/gmock.h>

#include "quellin/Terminal/PlainText.h"

namespace quellin::cli {
namespace {

TEST(PrintableTest, LeavesOrdinaryTextAndReplacesControls) {
  EXPECT_EQ(printable("Größe 12 °C"), "Größe 12 °C");
  EXPECT_EQ(printable("a\tb\nc\x7f"), "a?b?c?");
  EXPECT_EQ(printable("\xC2\x9B"
                      "2J"),
            "?2J");                                  // the one-byte form of ESC [
  EXPECT_EQ(printable("a\xE2\x80\xAE\x62"), "a?b");  // right-to-left override
  EXPECT_EQ(printable("a\xE2\x81\xA6\x62"), "a?b");  // left-to-right isolate
  EXPECT_EQ(printable("a\xFFz"), "a\xEF\xBF\xBDz");  // no UTF-8
  EXPECT_EQ(printable("\xE2\x80\xA8"), "?");         // line separator
}

TEST(WrappedTest, BreaksBetweenWordsAndIndents) {
  EXPECT_EQ(wrapped("one two three", "  ", 9), "  one two\n  three\n");
  EXPECT_EQ(wrapped("one two three", "  ", 8), "  one\n  two\n  three\n");
  EXPECT_EQ(wrapped("one two three", "  ", std::nullopt), "  one two three\n");
}

TEST(WrappedTest, LongWordsAreLeftWholeAndSpacesAreNotKept) {
  EXPECT_EQ(wrapped("a   /very/long/path b", "", 5), "a\n/very/long/path\nb\n");
  EXPECT_EQ(wrapped("", "  ", 10), "\n");
}

}  // namespace
}  // namespace quellin::cli
