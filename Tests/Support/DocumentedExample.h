#pragma once

#include <string>
#include <string_view>

namespace quellin::testing_support {

/// The fenced block with this language tag in docs/formats.md, line feeds included; throws when there is
/// none.
[[nodiscard]] std::string documentedExample(std::string_view language);

}  // namespace quellin::testing_support
