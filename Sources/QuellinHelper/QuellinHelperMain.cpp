#include "QuellinHelper/QuellinHelperMain.h"

#include <array>
#include <cstdlib>
#include <new>
#include <optional>
#include <string_view>
#include <tuple>

#include "QuellinCore/Support/RawValue.h"
#include "QuellinHelper/HelperVersion.h"

namespace quellin {
namespace {

using namespace std::string_view_literals;

enum class Command { status, readTemperatures, readProTelemetry };

}  // namespace

template <>
inline constexpr std::array rawValues<Command>{"status-json"sv, "read-temperatures-json"sv,
                                               "read-pro-telemetry-json"sv};

void QuellinHelperMain::main(std::span<char* const> arguments) {
  const std::vector<std::string> texts(arguments.begin(), arguments.end());
  // NOLINTNEXTLINE(concurrency-mt-unsafe): the process has one thread
  std::exit(static_cast<int>(answer(texts, HelperSurroundings::ofThisProcess())));
}

// The caller's limit on memory may be met anywhere. An exception that nobody catches need not unwind the
// stack, and would leave the measuring tool and its file behind.
ExitStatus QuellinHelperMain::answer(std::span<const std::string> arguments, const HelperSurroundings& with) {
  try {
    return carryOut(arguments, with);
  } catch (const std::bad_alloc&) {
    return ExitStatus::systemFailure;
  }
}

ExitStatus QuellinHelperMain::carryOut(std::span<const std::string> arguments,
                                       const HelperSurroundings& with) {
  const auto command = arguments.size() < 2 ? std::nullopt : fromRawValue<Command>(arguments[1]);
  if (!command) {
    return fail(ExitStatus::usage,
                "usage: QuellinHelper status-json|read-temperatures-json|read-pro-telemetry-json\n", with);
  }
  if (with.effectiveUserID != 0) {
    return fail(ExitStatus::notRoot, "QuellinHelper must run with effective uid 0\n", with);
  }
  switch (*command) {
    case Command::status:
      return emitJSON(ownStatus(arguments[0], with), with);
    case Command::readTemperatures:
      return emitJSON(with.readTemperatures(), with);
    case Command::readProTelemetry:
      return emitJSON(with.sampleProTelemetry(), with);
  }
  std::abort();
}

// A standard error that takes nothing changes nothing: the exit status tells the same.
ExitStatus QuellinHelperMain::fail(ExitStatus status, const char* message, const HelperSurroundings& with) {
  std::ignore = writeAll(with.standardError, message);
  return status;
}

// Asserted, not measured: a tool that got this far runs with root rights. What is on disk is the client's to
// check.
HelperStatus QuellinHelperMain::ownStatus(const std::string& path, const HelperSurroundings& with) {
  return HelperStatus{.isInstalled = true,
                      .isExecutable = true,
                      .isSetuidRoot = true,
                      .ownerUserID = with.effectiveUserID,
                      .groupID = with.effectiveGroupID,
                      .installedVersion = helperVersion,
                      .supportsProTelemetry = true,
                      .path = path,
                      .error = std::nullopt};
}

}  // namespace quellin
