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

}  // namespace quellin::testing_support
