#pragma once

#include <string>

namespace quellin::testing_support {

/// Expects `present` to be what the file at `path` holds, byte for byte. `./dev goldens` writes the
/// files anew; their diff is to be read.
void expectGolden(const std::string& path, const std::string& present);

}  // namespace quellin::testing_support
