#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

namespace quellin {

/// What kept the session store from doing its work. A file that could not be used is left as it was. A plain
/// value: several threads may read one, as long as none changes it.
class StoreError : public std::runtime_error {
 public:
  /// What callers may tell apart.
  enum class Kind {
    notAStore,    ///< the file is something else
    tooNew,       ///< the file was written by a later version of this software
    cannotOpen,   ///< the file or its folder is missing, cannot be made or may not be opened
    readOnly,     ///< the file may be read but not written
    diskFull,     ///< no room on the disk
    locked,       ///< another process kept the file locked for longer than the store waits
    damaged,      ///< the file is cut short or its content contradicts itself
    io,           ///< the disk reported a failure
    notStorable,  ///< a value has no place in the store: a number that is not finite, a text that is too long
    sessionGone,  ///< the session is no longer in the store
    notEncodable,  ///< a record has no JSON form
    failed,        ///< anything else
  };

  /// `path` is the store file, empty for a store in memory; `cause` is one sentence without a full stop.
  StoreError(Kind kind, std::filesystem::path path, std::string cause);

  [[nodiscard]] Kind kind() const { return kind_; }  ///< for programs; `what()` is for people
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }  ///< empty for a store in memory
  /// What went wrong. `what()` also says where, and what the user can do about it.
  [[nodiscard]] const std::string& cause() const { return cause_; }

 private:
  Kind kind_;
  std::filesystem::path path_;
  std::string cause_;
};

}  // namespace quellin
