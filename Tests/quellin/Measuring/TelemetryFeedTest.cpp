#include <filesystem>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "Support/ChildEnd.h"
#include "Support/ManualClock.h"
#include "Support/TemporaryFolder.h"
#include "quellin/Measuring/TelemetryFeed.h"

namespace quellin::cli {
namespace {

using testing_support::awaitChildEnd;
using testing_support::ManualMonotonicClock;
using testing_support::TemporaryFolder;

struct TelemetryFeedTest : testing::Test {
  TemporaryFolder folder;
  std::string asked = folder.pathOf("asked");
  std::string tool = folder.writeScript(
      "tool", "echo \"$1\" > '" + asked +
                  R"('; echo '{"isAvailable":true,"source":"stand-in","sampledAt":"2025-03-04T12:00:00Z",)"
                  R"("sampleIntervalMilliseconds":1000,"processes":[]}')");
  ManualMonotonicClock clock;
  Loop loop;

  [[nodiscard]] ProTelemetryService service() {
    clock.onSleep = [](Seconds) { awaitChildEnd(); };
    return ProTelemetryService{tool, AdministratorPrompt::native(), clock};
  }
};

TEST_F(TelemetryFeedTest, HasTheAnswerOfTheToolOnTheLoopsThread) {
  const TelemetryFeed feed{true, loop, service()};
  EXPECT_EQ(feed.latest(), std::nullopt);
  const std::function<void()> look = [&] { feed.latest() ? loop.stop() : loop.after(Seconds{0}, look); };
  look();
  loop.run();
  EXPECT_EQ(feed.latest()->source, "stand-in");
  EXPECT_EQ(testing_support::contentOf(asked), "read-pro-telemetry-json\n");
}

TEST_F(TelemetryFeedTest, AsksNobodyWhenNotWanted) {
  const TelemetryFeed feed{false, loop, service()};
  loop.after(Seconds{0}, [&] { loop.stop(); });
  loop.run();
  EXPECT_EQ(feed.latest(), std::nullopt);
  EXPECT_FALSE(std::filesystem::exists(asked));
}

}  // namespace
}  // namespace quellin::cli
