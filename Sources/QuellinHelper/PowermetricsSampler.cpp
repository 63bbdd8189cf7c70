#include "QuellinHelper/PowermetricsSampler.h"

#include <unistd.h>
#include <utility>

#include "QuellinCore/Support/ChildProcess.h"
#include "QuellinCore/Support/Text.h"
#include "QuellinHelper/FixedEnvironment.h"

namespace quellin {
namespace {

constexpr Seconds timeLimit{15};
constexpr Seconds timeToTerminate{2};  // what a child that was asked to end gets before it is killed
constexpr std::size_t errorTextLimit = std::size_t{1} << 20;

std::vector<std::string> argumentsFor(const std::string& outputPath) {
  return {"-n",
          "1",
          "-i",
          std::to_string(powermetricsIntervalMilliseconds),
          "--show-process-energy",
          "--samplers",
          "tasks,cpu_power,gpu_power,ane_power",
          "-f",
          "plist",
          "-o",
          outputPath};
}

ChildProcessPlan planFor(const std::string& executable, const std::vector<std::string>& arguments) {
  ChildProcessPlan plan;
  plan.executable = executable;
  plan.arguments = arguments;
  plan.environment = Environment{fixedEnvironmentEntry};
  plan.standardInput = ChildStream::null;
  plan.standardError = ChildStream::pipe;
  // The measuring tool may look at the real user, which in a set-user-ID program is the caller.
  if (geteuid() == 0) plan.identity = ChildIdentity::realRoot;
  return plan;
}

CommandResult failure(std::string errorText) {
  return {.terminationStatus = -1, .outputData = std::nullopt, .errorText = std::move(errorText)};
}

void end(ChildProcess& child, MonotonicClock& clock) {
  child.terminate();
  if (!child.waitUntil(clock.now() + timeToTerminate, clock)) child.kill();
  child.wait();
}

std::optional<std::string> unlessEmpty(std::optional<std::string> text) {
  return text && !text->empty() ? std::move(text) : std::nullopt;
}

}  // namespace

PowermetricsSampler::PowermetricsSampler(std::string executable, std::string temporaryFolder,
                                         WallClock& wallClock, MonotonicClock& monotonicClock)
    : executable_(std::move(executable)),
      temporaryFolder_(std::move(temporaryFolder)),
      wallClock_(wallClock),
      monotonicClock_(monotonicClock) {}

ProTelemetrySnapshot PowermetricsSampler::sample() {
  const CommandResult result = [this] {
    BlockedSignals signals;
    CommandResult measured = measure(signals);
    interruption_ = signals.take();
    return measured;
  }();
  const bool hasOutput = result.terminationStatus == 0 && result.outputData;
  ProTelemetrySnapshot snapshot =
      hasOutput ? snapshotFromOutput(*result.outputData) : failureSnapshot(result);
  snapshot.sampledAt = wallClock_.now();
  snapshot.sampleIntervalMilliseconds = powermetricsIntervalMilliseconds;
  return snapshot;
}

// The file is gone when this returns: nothing that happens while its content is parsed can leave it behind.
CommandResult PowermetricsSampler::measure(const BlockedSignals& signals) {
  const auto output = SampleFile::create(temporaryFolder_);
  if (!output) return failure(output.error().description());
  return runPowermetrics(argumentsFor(output->path()), *output, timeLimit, signals);
}

CommandResult PowermetricsSampler::runPowermetrics(const std::vector<std::string>& arguments,
                                                   const SampleFile& output, Seconds timeout,
                                                   const BlockedSignals& signals) {
  auto child = ChildProcess::start(planFor(executable_, arguments));
  if (!child) return failure(child.error().description());
  const Seconds deadline = monotonicClock_.now() + timeout;
  const auto isInterrupted = [&signals] { return signals.isPending(); };
  if (!child->waitUntil(deadline, monotonicClock_, isInterrupted)) {
    const bool wasInterrupted = isInterrupted();
    end(*child, monotonicClock_);
    return failure(wasInterrupted ? "powermetrics was interrupted" : "powermetrics timed out");
  }

  CommandResult result{.terminationStatus = child->wait(), .outputData = output.read(), .errorText = {}};
  if (result.outputData && result.outputData->empty()) result.outputData.reset();
  // A process that the tool left behind may hold the stream; no signal could end an untimed wait for it.
  result.errorText = unlessEmpty(
      trimmedText(child->readStandardErrorUntil(deadline, monotonicClock_, errorTextLimit, isInterrupted)));
  return result;
}

}  // namespace quellin
