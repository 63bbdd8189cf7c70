#include "QuellinCore/Services/ProcessRunner.h"

#include <utility>

#include "QuellinCore/Support/ChildProcess.h"
#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

std::optional<std::string> unlessEmpty(std::string bytes) {
  if (bytes.empty()) return std::nullopt;
  return bytes;
}

ProcessRunResult startFailure(const SystemError& error) {
  ProcessRunResult result;
  result.error = error.description();
  return result;
}

}  // namespace

ProcessRunResult processRunResult(std::int32_t terminationStatus, std::string output, std::string error) {
  ProcessRunResult result;
  result.terminationStatus = terminationStatus;
  result.output = trimmedText(output);
  result.error = trimmedText(error);
  result.outputData = unlessEmpty(std::move(output));
  result.errorData = unlessEmpty(std::move(error));
  return result;
}

ProcessRunResult runProcess(const std::string& executable, const std::vector<std::string>& arguments,
                            Seconds timeout, MonotonicClock& clock) {
  auto child = ChildProcess::start({.executable = executable,
                                    .arguments = arguments,
                                    .standardOutput = ChildStream::pipe,
                                    .standardError = ChildStream::pipe});
  if (!child) return startFailure(child.error());
  const Seconds deadline = clock.now() + timeout;
  if (!child->waitUntil(deadline, clock)) {
    child->terminate();
    child->wait();
  }
  std::string output = child->readStandardOutputUntil(deadline, clock, maximumChildOutput);
  std::string error = child->readStandardErrorUntil(deadline, clock, maximumChildOutput);

  return processRunResult(child->wait(), std::move(output), std::move(error));
}

}  // namespace quellin
