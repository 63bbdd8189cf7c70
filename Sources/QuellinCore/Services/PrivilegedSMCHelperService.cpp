#include "QuellinCore/Services/PrivilegedSMCHelperService.h"

#include <unistd.h>
#include <utility>

#include "QuellinCore/Services/HelperAnswers.h"
#include "QuellinCore/Support/ChildProcess.h"

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
  return temperaturesOfHelper(child->wait(), output);
}

}  // namespace quellin
