#include <gmock/gmock.h>

#include "quellin/EndToEnd/Transcript.h"

namespace quellin::testing_support {
namespace {

TEST(TranscriptTest, MasksWhatDiffersFromRunToRunAndNothingElse) {
  EXPECT_EQ(masked("id 6C39DE96-5370-4C6C-8B54-120C5F5C6D0B.", "/home/x"),
            "id XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX.");
  EXPECT_EQ(masked("2026-11-21T06:20:01Z 2025-03-04T09:40:00Z", "/home/x"),
            "XXXXXXXXXXXXXXXXXXXX 2025-03-04T09:40:00Z");
  EXPECT_EQ(masked("6C39DE96  completed\n6C39DE96  x, session 6C39DE96, y", "/home/x"),
            "XXXXXXXX  completed\nXXXXXXXX  x, session XXXXXXXX, y");
  EXPECT_EQ(masked("/home/x/day.jsonl", "/home/x"), "HOME/day.jsonl");
  EXPECT_EQ(masked("\"\\/home\\/x\\/day.jsonl\"", "/home/x"), "\"HOME\\/day.jsonl\"");
  EXPECT_EQ(masked("x\nRecorder          0.01 s of CPU time, 5.5 kB written to the log\n1 s", "/home/x"),
            "x\nRecorder          X s of CPU time, X kB written to the log\n1 s");
  EXPECT_EQ(masked("  \"cpuSeconds\" : 1.5e-05,\n  \"bytesWritten\" : 12,\n  \"more\": 12", "/home/x"),
            "  \"cpuSeconds\" : X,\n  \"bytesWritten\" : X,\n  \"more\": 12");
  for (const char* const kept : {"0.12345678 W", "session 12345678901", "6c39de96 x", "12345678.5"}) {
    EXPECT_EQ(masked(kept, "/home/x"), kept);
  }
}

}  // namespace
}  // namespace quellin::testing_support
