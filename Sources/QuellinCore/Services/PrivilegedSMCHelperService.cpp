#include "QuellinCore/Services/PrivilegedSMCHelperService.h"

#include <unistd.h>
#include <utility>

#include "QuellinCore/Services/ProcessRunner.h"
#include "QuellinCore/Support/ChildProcess.h"
#include "QuellinCore/Support/JSON/JSONDecoder.h"

namespace quellin {

PrivilegedSMCHelperService::PrivilegedSMCHelperService(std::string helperPath)
    : helperPath_(std::move(helperPath)) {}

bool PrivilegedSMCHelperService::isAvailable() const { return access(helperPath_.c_str(), X_OK) == 0; }

std::vector<TemperatureSensor> PrivilegedSMCHelperService::readTemperatures() const {
  if (!isAvailable()) return {};
  auto child = ChildProcess::start({.executable = helperPath_,
                                    .arguments = {"read-temperatures-json"},
                                    .standardOutput = ChildStream::pipe,
                                    .standardError = ChildStream::pipe});
  if (!child) return {};
  const std::string output = child->readStandardOutput(maximumChildOutput);
  if (child->wait() != 0) return {};
  return decodeJSON<std::vector<TemperatureSensor>>(output).value_or(std::vector<TemperatureSensor>{});
}

}  // namespace quellin
