#pragma once

#include <filesystem>

#include "QuellinCore/Sessions/Storage/Database.h"

namespace quellin::testing_support {

/// Another program that is writing into a store, for as long as this lives. Nothing comes of it.
class BusyStore {
 public:
  explicit BusyStore(const std::filesystem::path& store) : writer_(store, Database::Access::readWrite, {}) {
    writer_.execute("BEGIN IMMEDIATE");
  }

 private:
  Database writer_;
};

/// How a store is opened by who does not wait for such a program.
[[nodiscard]] inline StoreFileOptions impatient() { return {.busyTimeout = Seconds{0}}; }

}  // namespace quellin::testing_support
