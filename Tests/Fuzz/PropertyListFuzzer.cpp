// Property lists of either encoding: nothing but a tree or an error may come of any bytes.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "QuellinHelper/PropertyLists/PropertyListStream.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static_cast<void>(quellin::parsePropertyList({reinterpret_cast<const char*>(data), size}));
  return 0;
}
