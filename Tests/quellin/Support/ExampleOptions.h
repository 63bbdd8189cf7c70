#pragma once

#include <filesystem>
#include <optional>
#include <utility>

#include "Support/Replay.h"
#include "quellin/CommandLine/Options.h"

namespace quellin::testing_support {

/// The options of a command over the example trace, with the store at `store` or the usual one.
[[nodiscard]] inline cli::Options optionsOverExample(
    std::optional<std::filesystem::path> store = std::nullopt) {
  cli::Options options;
  options.source = exampleTrace();
  options.store = std::move(store);
  return options;
}

/// What a recorder of the example trace leaves to the next one.
inline constexpr const char* exampleWord = "trace 1741081200\n";

}  // namespace quellin::testing_support
