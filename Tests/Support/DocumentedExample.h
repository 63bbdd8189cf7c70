#pragma once

#include <string>
#include <string_view>

namespace quellin::testing_support {

/// The fenced block with this language tag in docs/formats.md, line feeds included; throws when there is
/// none.
[[nodiscard]] std::string documentedExample(std::string_view language);

/// The part of docs/formats.md under this heading of the second level; throws when there is none.
[[nodiscard]] std::string documentedChapter(std::string_view heading);

}  // namespace quellin::testing_support
