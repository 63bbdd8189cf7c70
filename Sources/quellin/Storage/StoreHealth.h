#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <tuple>

#include "QuellinCore/Support/JSON/Record.h"
#include "quellin/CommandLine/Options.h"

namespace quellin::cli {

/// What is known of the session store.
struct StoreHealth {
  std::string path;
  bool exists = false;
  std::int64_t bytes = 0;              ///< with the files that belong to it
  std::int64_t sessions = 0;           ///< that it holds
  std::int64_t samples = 0;            ///< that can be read; counted in a full examination only
  bool isWhole = true;                 ///< nothing was found to be damaged
  std::optional<std::string> problem;  ///< what is wrong and what to do about it

  static constexpr auto fields() {
    return std::tuple{Field{"path", &StoreHealth::path},       Field{"exists", &StoreHealth::exists},
                      Field{"bytes", &StoreHealth::bytes},     Field{"sessions", &StoreHealth::sessions},
                      Field{"samples", &StoreHealth::samples}, Field{"isWhole", &StoreHealth::isWhole},
                      Field{"problem", &StoreHealth::problem}};
  }
};

/// Whether every sample is read, or the sessions are counted only.
enum class Examination { full, brief };

/// Looks at the store that `options` name, without making one; calls `progress` before each session that is
/// read, with how many have been read. Throws nothing but std::bad_alloc and what `progress` throws.
[[nodiscard]] StoreHealth examineStore(
    const Options& options, Examination examination,
    const std::function<void(std::int64_t read, std::int64_t all)>& progress = [](auto, auto) {});

}  // namespace quellin::cli
