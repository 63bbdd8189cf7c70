#pragma once

#include <expected>
#include <string_view>
#include <vector>

#include "QuellinHelper/PropertyLists/PropertyList.h"

namespace quellin {

/// The pieces of `bytes` between NUL bytes, in order; empty pieces are dropped.
[[nodiscard]] std::vector<std::string_view> splitAtNUL(std::string_view bytes);

/// Reads one property list: binary when it begins with "bplist", else XML. White space alone or a bare word
/// is none.
[[nodiscard]] std::expected<PropertyList, PropertyListError> parsePropertyList(std::string_view bytes);

/// The property lists of a NUL-separated stream, in order. A piece that is none is skipped. A binary property
/// list holds NUL bytes itself, so one comes alone: `bytes` that are such a list as a whole are not split.
[[nodiscard]] std::vector<PropertyList> parsePropertyListStream(std::string_view bytes);

}  // namespace quellin
