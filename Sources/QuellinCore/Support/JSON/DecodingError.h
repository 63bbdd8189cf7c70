#pragma once

#include <string>
#include <utility>

namespace quellin {

/// Why a JSON document could not be read. A plain value: several threads may read one, as long as none
/// changes it.
class DecodingError {
 public:
  /// What kind of fault it is.
  enum class Kind {
    typeMismatch,   ///< a value of another JSON type
    valueNotFound,  ///< null where a value is required
    keyNotFound,    ///< a required key is missing
    dataCorrupted,  ///< not valid JSON, or a value that its type cannot hold
  };
  /// Takes what the accessors give.
  DecodingError(Kind kind, std::string path, std::string debugDescription)
      : kind_(kind), path_(std::move(path)), debugDescription_(std::move(debugDescription)) {}

  [[nodiscard]] Kind kind() const { return kind_; }  ///< for programs to tell faults apart

  /// The fields and indices that lead to the value, for example `processes[2].pid`; empty for the document
  /// itself.
  [[nodiscard]] const std::string& path() const { return path_; }

  /// What is wrong, for developers.
  [[nodiscard]] const std::string& debugDescription() const { return debugDescription_; }

  bool operator==(const DecodingError&) const = default;

 private:
  Kind kind_;
  std::string path_;
  std::string debugDescription_;
};

}  // namespace quellin
