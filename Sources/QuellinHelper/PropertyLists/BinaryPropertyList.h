#pragma once

#include <expected>
#include <string_view>

#include "QuellinHelper/PropertyLists/PropertyList.h"

namespace quellin {

/// Reads a binary property list ("bplist00"). Every offset, reference and count is held against `bytes`;
/// nothing outside them is read. References in a circle run into the depth limit; a tree of more nodes than
/// the input has bytes, which only shared containers can make, is refused, so time and memory stay in
/// proportion to the input.
///
/// An identifier object becomes the dictionary {"CF$UID": n}, as it reads in XML. Null, fill and set objects,
/// keys that are no strings, and integers beyond 64 bits are refused.
[[nodiscard]] std::expected<PropertyList, PropertyListError> parseBinaryPropertyList(std::string_view bytes);

}  // namespace quellin
