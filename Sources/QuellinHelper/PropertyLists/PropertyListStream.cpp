#include "QuellinHelper/PropertyLists/PropertyListStream.h"

#include <algorithm>
#include <utility>

#include "QuellinHelper/PropertyLists/BinaryPropertyList.h"
#include "QuellinHelper/PropertyLists/XMLPropertyList.h"

namespace quellin {
namespace {

bool isBinary(std::string_view bytes) { return bytes.starts_with("bplist"); }

}  // namespace

std::vector<std::string_view> splitAtNUL(std::string_view bytes) {
  std::vector<std::string_view> pieces;
  while (!bytes.empty()) {
    const auto length = std::min(bytes.find('\0'), bytes.size());
    if (length > 0) pieces.push_back(bytes.substr(0, length));
    bytes.remove_prefix(std::min(length + 1, bytes.size()));
  }
  return pieces;
}

std::expected<PropertyList, PropertyListError> parsePropertyList(std::string_view bytes) {
  return isBinary(bytes) ? parseBinaryPropertyList(bytes) : parseXMLPropertyList(bytes);
}

std::vector<PropertyList> parsePropertyListStream(std::string_view bytes) {
  std::vector<PropertyList> lists;
  const auto add = [&lists](std::string_view piece) {
    auto list = parsePropertyList(piece);
    if (list) lists.push_back(std::move(*list));
    return list.has_value();
  };
  if (isBinary(bytes) && add(bytes)) return lists;
  for (const std::string_view piece : splitAtNUL(bytes)) add(piece);
  return lists;
}

}  // namespace quellin
