#include "QuellinCore/Platform/Darwin/PropertyConversion.h"

#include <optional>
#include <utility>
#include <vector>

#include "QuellinCore/Platform/Darwin/CoreFoundationValues.h"
#include "QuellinCore/Support/CheckedArithmetic.h"

namespace quellin::darwin {
namespace {

using Value = PropertyTable::Value;

std::optional<Value> numberValue(CFNumberRef number) {
  if (CFNumberIsFloatType(number) != 0) {
    double real = 0;
    if (CFNumberGetValue(number, kCFNumberDoubleType, &real) == 0) return std::nullopt;
    return real;
  }
  std::int64_t integer = 0;
  if (CFNumberGetValue(number, kCFNumberSInt64Type, &integer) != 0) return integer;
  // What does not fit is stored all the same, as well as it can be.
  return NumberObject{integer};
}

std::optional<Value> plainValue(CFTypeRef object) {
  if (CFBooleanRef boolean = asBoolean(object)) return CFBooleanGetValue(boolean) != 0;
  if (CFNumberRef number = asNumber(object)) return numberValue(number);
  if (CFDictionaryRef dictionary = asDictionary(object)) return propertyTable(dictionary);
  return textOf(object);
}

}  // namespace

PropertyTable propertyTable(CFDictionaryRef dictionary) {
  const auto count = checkedCast<std::size_t>(CFDictionaryGetCount(dictionary));
  std::vector<const void*> keys(count);
  std::vector<const void*> values(count);
  CFDictionaryGetKeysAndValues(dictionary, keys.data(), values.data());

  PropertyTable table;
  for (std::size_t index = 0; index < count; ++index) {
    auto key = textOf(keys[index]);
    if (!key) continue;
    auto value = plainValue(values[index]);
    if (value) table.set(*std::move(key), *std::move(value));
  }
  return table;
}

}  // namespace quellin::darwin
