#include "QuellinCore/Platform/Darwin/SourceFault.h"

#include <IOKit/IOKitLib.h>
#include <mach/mach_error.h>
#include <utility>

namespace quellin::darwin {

SourceFault absentFault(std::string reason) {
  return {.availability = SourceAvailability::absent, .reason = std::move(reason)};
}

SourceFault failedFault(std::string call, const std::string& error) {
  return {.availability = SourceAvailability::failed,
          .reason = std::move(call.append(" failed: ").append(error))};
}

SourceFault kernelFault(std::string call, kern_return_t code) {
  SourceFault fault = failedFault(std::move(call), mach_error_string(code));
  if (code == kIOReturnNotPermitted || code == kIOReturnNotPrivileged) {
    fault.availability = SourceAvailability::notPermitted;
  }
  return fault;
}

SourceDiagnosis faultDiagnosis(std::string source, SourceFault fault, std::string path) {
  return {.source = std::move(source),
          .availability = fault.availability,
          .reason = std::move(fault.reason),
          .path = std::move(path),
          .remedy = std::nullopt};
}

}  // namespace quellin::darwin
