#pragma once

#include <expected>
#include <string_view>

#include "QuellinHelper/PropertyLists/PropertyList.h"

namespace quellin {

/// Reads an XML property list: one value, with or without the <plist> element around it. A DOCTYPE is skipped
/// and nothing outside `bytes` is ever loaded; a document that declares entities is refused. Reading takes
/// one pass and memory in proportion to the input. A dictionary {"CF$UID": n} stays a dictionary.
[[nodiscard]] std::expected<PropertyList, PropertyListError> parseXMLPropertyList(std::string_view bytes);

}  // namespace quellin
