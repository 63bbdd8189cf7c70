#pragma once

#include <concepts>
#include <optional>

#include "QuellinCore/Sessions/StoreError.h"

namespace quellin::testing_support {

/// The kind of the store error that `action` throws; no value when it throws none.
[[nodiscard]] std::optional<StoreError::Kind> kindThrownBy(std::invocable auto&& action) {
  try {
    action();
  } catch (const StoreError& error) {
    return error.kind();
  }
  return std::nullopt;
}

}  // namespace quellin::testing_support
