#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "QuellinCore/Models/PropertyTable.h"

namespace quellin::darwin {

/// The plain values of a dictionary, each of the kind that it has there: booleans, strings, floating-point
/// numbers, whole numbers that fit 64 bits, number objects for wider ones, nested dictionaries. Everything
/// else is left out, and so are keys that are no strings.
[[nodiscard]] PropertyTable propertyTable(CFDictionaryRef dictionary);

}  // namespace quellin::darwin
