// Whatever the privileged tool prints, and however it ends, its clients give a list, a status and a snapshot.
// The first byte is the tool's exit status; then come its standard output up to the first NUL, and its
// standard error.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <thread>

#include "Fuzz/ByteFeed.h"
#include "Fuzz/Require.h"
#include "QuellinCore/Services/PrivilegedSMCHelperService.h"
#include "QuellinCore/Services/ProTelemetryService.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"
#include "Support/ManualClock.h"
#include "Support/TemporaryFolder.h"

using namespace quellin;
using fuzzing::require;

namespace {

// A pipe takes all of it before anybody reads.
constexpr std::size_t longestOutput = 16384;

/// Time stands still, so that no child is ever late; who waits lets it go on.
class StandingClock final : public MonotonicClock {
 public:
  [[nodiscard]] Seconds now() const override { return Seconds{0}; }
  void sleep(Seconds /*duration*/) override { std::this_thread::yield(); }
};

/// A tool that prints what the files beside it hold.
struct Tool {
  testing_support::TemporaryFolder folder;
  std::string path = folder.writeScript("tool", "cd '" + folder.path().string() +
                                                    "'\nread status <status\n"
                                                    "cat output\ncat error >&2\nexit $status");

  void prepare(unsigned status, std::string_view output, std::string_view error) const {
    folder.write("status", std::to_string(status) + "\n");
    folder.write("output", output);
    folder.write("error", error);
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Tool tool;
  static StandingClock clock;
  static const testing_support::ManualWallClock wallClock{instantAt(1741089600)};
  fuzzing::ByteFeed feed(data, std::min(size, longestOutput));
  const auto status = feed.take<std::uint8_t>();
  const std::string_view output = feed.takeLine();
  tool.prepare(status, output, feed.takeLine());

  const auto sensors = PrivilegedSMCHelperService{tool.path}.readTemperatures();
  require(status == 0 || sensors.empty());

  const ProTelemetryService service{tool.path, AdministratorPrompt::native(), clock, wallClock};
  const HelperStatus found = service.helperStatus();
  require(found.isInstalled && found.isExecutable && !found.isSetuidRoot && !found.isUsable());
  require(found.path == tool.path && (status == 0 || found.error));
  require(encodeJSON(found).has_value());

  const ProTelemetrySnapshot snapshot = service.readSnapshot();
  require(status == 0 || (!snapshot.isAvailable && snapshot.error));
  require(encodeJSON(snapshot).has_value());
  return 0;
}
