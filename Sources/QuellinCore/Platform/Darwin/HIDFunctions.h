#pragma once

#include <cstdint>
#include <expected>

#include "QuellinCore/Platform/Darwin/CoreFoundationHandles.h"
#include "QuellinCore/Platform/Darwin/DynamicLibrary.h"

namespace quellin::darwin {

/// The functions of the HID event system. No public header declares them, so they are looked up by name;
/// clients, services and events are CoreFoundation objects. Results of the first, third, fourth and fifth
/// come with a reference of the caller's and may be null.
struct HIDFunctions {
  CFTypeRef (*createClient)(CFAllocatorRef allocator) = nullptr;
  void (*setMatching)(CFTypeRef client, CFDictionaryRef matching) = nullptr;
  CFArrayRef (*copyServices)(CFTypeRef client) = nullptr;
  CFTypeRef (*copyProperty)(CFTypeRef service, CFStringRef name) = nullptr;
  CFTypeRef (*copyEvent)(CFTypeRef service, std::int64_t type, std::int32_t options,
                         std::int64_t timestamp) = nullptr;
  double (*floatValue)(CFTypeRef event, std::int32_t field) = nullptr;

  /// All six functions, or the name of the first that `library` lacks. The library must outlive them.
  [[nodiscard]] static std::expected<HIDFunctions, const char*> resolve(const OwnedLibrary& library);
};

}  // namespace quellin::darwin
