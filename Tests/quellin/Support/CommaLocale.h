#pragma once

#include <string>
#include <vector>

#include "Support/TemporaryFolder.h"

namespace quellin::testing_support {

/// A locale that writes the decimal point as a comma, whatever locales are installed. Throws when the
/// system's own programs do not follow it: then no other program could be told by it.
class CommaLocale {
 public:
  CommaLocale();

  /// The words of an environment that has a program run in the locale.
  [[nodiscard]] std::vector<std::string> environment() const;

 private:
  TemporaryFolder folder_;
};

}  // namespace quellin::testing_support
