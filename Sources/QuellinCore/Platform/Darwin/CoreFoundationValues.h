#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "QuellinCore/Platform/Darwin/CoreFoundationHandles.h"

namespace quellin::darwin {

/// `object` as the kind asked for; null when it is null or of another kind. Borrowed like `object`.
[[nodiscard]] CFStringRef asString(CFTypeRef object);
[[nodiscard]] CFNumberRef asNumber(CFTypeRef object);
[[nodiscard]] CFBooleanRef asBoolean(CFTypeRef object);
[[nodiscard]] CFArrayRef asArray(CFTypeRef object);
[[nodiscard]] CFDictionaryRef asDictionary(CFTypeRef object);

/// The text of a string as valid UTF-8. No value when `object` is null, no string, or has no such form.
[[nodiscard]] std::optional<std::string> textOf(CFTypeRef object);

/// The element at `index`, borrowed; null outside the array.
[[nodiscard]] CFTypeRef elementAt(CFArrayRef array, CFIndex index);

/// A string of valid UTF-8, empty where the system cannot make one.
[[nodiscard]] OwnedCF<CFStringRef> makeString(const char* text);

/// A 32-bit number, empty where the system cannot make one.
[[nodiscard]] OwnedCF<CFNumberRef> makeNumber(std::int32_t value);

}  // namespace quellin::darwin
