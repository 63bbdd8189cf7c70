#pragma once

#include <cstdint>

namespace quellin::testing_support {

/// Counts what SQLite does for the connections that are opened while this lives, in instructions of its
/// virtual machine: the work of a statement without the time it took. The connections may outlive this. One
/// at a time, on one thread.
class SQLWork {
 public:
  SQLWork();
  ~SQLWork();
  SQLWork(const SQLWork&) = delete;
  SQLWork& operator=(const SQLWork&) = delete;
  SQLWork(SQLWork&&) = delete;
  SQLWork& operator=(SQLWork&&) = delete;

  /// The instructions that `action` takes.
  [[nodiscard]] std::int64_t of(auto&& action) const {
    const std::int64_t before = *count_;
    action();
    return *count_ - before;
  }

 private:
  const std::int64_t* count_;
};

}  // namespace quellin::testing_support
