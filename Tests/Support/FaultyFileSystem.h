#pragma once

#include <memory>
#include <string>

namespace quellin::testing_support {

/// An SQLite file system over the ordinary one, known to SQLite while it lives, that can fail. It must
/// outlive the databases that use it.
class FaultyFileSystem {
 public:
  /// What fails.
  enum class Fault {
    none,
    diskFull,    ///< writes find no room
    writeError,  ///< writes fail
    readError,   ///< reads fail
    syncError,   ///< handing data to the disk fails
    readOnly,    ///< files open for reading only
  };

  FaultyFileSystem();
  ~FaultyFileSystem();
  FaultyFileSystem(const FaultyFileSystem&) = delete;
  FaultyFileSystem& operator=(const FaultyFileSystem&) = delete;
  FaultyFileSystem(FaultyFileSystem&&) = delete;
  FaultyFileSystem& operator=(FaultyFileSystem&&) = delete;

  /// The name to open databases with.
  [[nodiscard]] const std::string& name() const;

  /// From now on, `after` more operations of the kind of `fault` succeed and all later ones fail.
  void fail(Fault fault, long after = 0);

  /// True once an operation has failed since the last call of `fail`.
  [[nodiscard]] bool hasFailed() const;

  struct State;

 private:
  std::unique_ptr<State> state_;
};

}  // namespace quellin::testing_support
