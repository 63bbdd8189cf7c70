#include <gtest/gtest.h>

#include "QuellinCore/Platform/Recorded/TraceError.h"

namespace quellin {
namespace {

TEST(TraceErrorTest, SaysWhatWhereAndWhatToDo) {
  TraceError error{.path = "day.jsonl", .line = 7, .reason = "it is damaged", .remedy = "Capture it again."};
  EXPECT_EQ(error.message(), "day.jsonl, line 7: it is damaged. Capture it again.");
  error.line.reset();
  EXPECT_EQ(error.message(), "day.jsonl: it is damaged. Capture it again.");
  error.reason = "That was not valid JSON.";
  EXPECT_EQ(error.message(), "day.jsonl: That was not valid JSON. Capture it again.");
}

}  // namespace
}  // namespace quellin
