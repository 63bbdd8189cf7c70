#pragma once

#include <cstddef>
#include <string>

#include "QuellinCore/Support/FileDescriptor.h"

namespace quellin::testing_support {

/// A terminal with nobody but the test in front of it.
class PseudoTerminal {
 public:
  explicit PseudoTerminal(std::size_t columns = 80, std::size_t rows = 24);

  /// The test's side: what is written here is typed, what is read here is shown.
  [[nodiscard]] int master() const { return master_.get(); }
  /// The program's side.
  [[nodiscard]] int slave() const { return slave_.get(); }

  /// Gives the terminal another size, as a user does who pulls at the window's corner.
  void resize(std::size_t columns, std::size_t rows) const;

  /// Closes the program's side here, so that the end of the program's own ends what `master` shows.
  void release() { slave_.reset(); }

  /// What has been shown so far and not been read.
  [[nodiscard]] std::string shown() const;

 private:
  FileDescriptor master_;
  FileDescriptor slave_;
};

}  // namespace quellin::testing_support
