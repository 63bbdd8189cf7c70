#pragma once

#include <string>

#include "QuellinCore/Support/LocaleDateText.h"

namespace quellin::testing_support {

/// Writes every instant as its seconds since 1970, in brackets.
class BracketDateText final : public LocaleDateText {
 public:
  [[nodiscard]] std::string mediumDateShortTime(Instant instant) const override {
    return "[" + std::to_string(static_cast<long long>(instant.time_since_epoch().count())) + "]";
  }
};

}  // namespace quellin::testing_support
