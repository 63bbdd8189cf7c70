#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace quellin {

/// Why a trace cannot be written or read any further.
struct TraceError {
  std::string path;                 ///< the file, as it was named
  std::optional<std::size_t> line;  ///< counted from 1; absent when the file as a whole is meant
  std::string reason;               ///< what is wrong, without a full stop
  std::string remedy;               ///< one sentence: what the user can do

  /// All of it as one text: "day.jsonl, line 7: … . …"
  [[nodiscard]] std::string message() const;

  bool operator==(const TraceError&) const = default;
};

}  // namespace quellin
