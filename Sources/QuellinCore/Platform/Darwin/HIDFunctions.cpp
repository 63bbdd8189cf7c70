#include "QuellinCore/Platform/Darwin/HIDFunctions.h"

namespace quellin::darwin {

std::expected<HIDFunctions, const char*> HIDFunctions::resolve(const OwnedLibrary& library) {
  HIDFunctions functions;
  SymbolResolver resolver(library);
  resolver.require("IOHIDEventSystemClientCreate", functions.createClient);
  resolver.require("IOHIDEventSystemClientSetMatching", functions.setMatching);
  resolver.require("IOHIDEventSystemClientCopyServices", functions.copyServices);
  resolver.require("IOHIDServiceClientCopyProperty", functions.copyProperty);
  resolver.require("IOHIDServiceClientCopyEvent", functions.copyEvent);
  resolver.require("IOHIDEventGetFloatValue", functions.floatValue);
  if (resolver.missing() != nullptr) return std::unexpected(resolver.missing());
  return functions;
}

}  // namespace quellin::darwin
