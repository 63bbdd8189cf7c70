#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "QuellinCore/Support/JSON/Record.h"
#include "QuellinCore/Support/RawValue.h"
#include "quellin/CommandLine/Options.h"

namespace quellin::cli {

/// In what state a session store was found.
enum class StoreState {
  missing,    ///< nothing is there, or a file of no bytes
  whole,      ///< nothing was found to be damaged
  damaged,    ///< it cannot be read, or not all of it
  notAStore,  ///< something else is there
  tooNew,     ///< it was written by a later version of this program
  locked,     ///< another program kept it from being read
  unusable,   ///< it may not be opened, or the disk fails
};

}  // namespace quellin::cli

template <>
inline constexpr std::array quellin::rawValues<quellin::cli::StoreState>{
    std::string_view{"missing"},   std::string_view{"whole"},  std::string_view{"damaged"},
    std::string_view{"notAStore"}, std::string_view{"tooNew"}, std::string_view{"locked"},
    std::string_view{"unusable"}};

namespace quellin::cli {

/// What is known of the session store.
struct StoreHealth {
  std::string path;
  bool exists = false;
  StoreState state = StoreState::missing;
  std::int64_t bytes = 0;              ///< with the files that belong to it
  std::int64_t sessions = 0;           ///< that it holds
  std::int64_t samples = 0;            ///< that can be read; counted in a full examination only
  bool isWhole = true;                 ///< nothing was found to be wrong
  std::optional<std::string> problem;  ///< what is wrong and what to do about it

  static constexpr auto fields() {
    return std::tuple{Field{"path", &StoreHealth::path},         Field{"exists", &StoreHealth::exists},
                      Field{"state", &StoreHealth::state},       Field{"bytes", &StoreHealth::bytes},
                      Field{"sessions", &StoreHealth::sessions}, Field{"samples", &StoreHealth::samples},
                      Field{"isWhole", &StoreHealth::isWhole},   Field{"problem", &StoreHealth::problem}};
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
