// Whatever the privileged tool prints, and however it ends, its clients give a list, a status and a snapshot.
// The first byte is the tool's exit status; then come its standard output up to the first NUL, and its
// standard error. What they mean is asked of the rules; some are also sent through a child process, where the
// clients must say the same.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "Fuzz/ByteFeed.h"
#include "Fuzz/Require.h"
#include "QuellinCore/Services/HelperAnswers.h"
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

struct Answer {
  unsigned status = 0;
  std::string output;
  std::string error;

  [[nodiscard]] ProcessRunResult run() const {
    return processRunResult(static_cast<std::int32_t>(status), output, error);
  }
};

/// What the rules make of an answer.
struct Meaning {
  std::vector<TemperatureSensor> sensors;
  HelperStatus status;
  ProTelemetrySnapshot snapshot;
};

const testing_support::ManualWallClock& wallClock() {
  static const testing_support::ManualWallClock clock{instantAt(1741089600)};
  return clock;
}

Meaning meaningOf(const Answer& answer) {
  return {.sensors = temperaturesOfHelper(static_cast<std::int32_t>(answer.status), answer.output),
          .status = withHelperAnswer({}, answer.run()),
          .snapshot = snapshotOfHelper(answer.run(), wallClock().now())};
}

void check(const Answer& answer, const Meaning& meaning) {
  require(answer.status == 0 || meaning.sensors.empty());
  require(answer.status == 0 || meaning.status.error);
  require(encodeJSON(meaning.status).has_value());
  require(answer.status == 0 || (!meaning.snapshot.isAvailable && meaning.snapshot.error));
  require(encodeJSON(meaning.snapshot).has_value());
}

void checkClients(const Answer& answer, const Meaning& meaning) {
  static const Tool tool;
  static StandingClock clock;
  tool.prepare(answer.status, answer.output, answer.error);
  require(PrivilegedSMCHelperService{tool.path}.readTemperatures() == meaning.sensors);

  const ProTelemetryService service{tool.path, AdministratorPrompt::native(), clock, wallClock()};
  const HelperStatus found = service.helperStatus();
  require(found.isInstalled && found.isExecutable && !found.isSetuidRoot && !found.isUsable());
  require(found.path == tool.path && found.error == meaning.status.error &&
          found.installedVersion == meaning.status.installedVersion &&
          found.supportsProTelemetry == meaning.status.supportsProTelemetry);
  require(encodeJSON(found).has_value());
  require(encodeJSON(service.readSnapshot()) == encodeJSON(meaning.snapshot));
}

/// Whether this input is one of those that go through a child, which costs a thousand times as much: the
/// first ones, so that the whole corpus does where it is all there is to run, and one that broke does when it
/// is tried alone; then few.
bool isForTheClients() {
  constexpr unsigned first = 16;
  constexpr unsigned few = 4096;
  static unsigned inputs = 0;
  ++inputs;
  return inputs <= first || inputs % few == 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzing::ByteFeed feed(data, std::min(size, longestOutput));
  Answer answer;
  answer.status = feed.take<std::uint8_t>();
  answer.output = feed.takeLine();
  answer.error = feed.takeLine();
  const Meaning meaning = meaningOf(answer);
  check(answer, meaning);
  if (isForTheClients()) checkClients(answer, meaning);
  return 0;
}
