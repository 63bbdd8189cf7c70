#pragma once

#include <string>

#include "QuellinCore/Support/FileDescriptor.h"

namespace quellin::testing_support {

/// A terminal with nobody but the test in front of it.
class PseudoTerminal {
 public:
  explicit PseudoTerminal(int rows = 24, int columns = 80);

  /// The test's side: what is written here is typed, what is read here is shown.
  [[nodiscard]] int master() const { return master_.get(); }
  /// The program's side.
  [[nodiscard]] int slave() const { return slave_.get(); }

  /// Gives the terminal another size, as a user does who pulls at the window's corner.
  void resize(int rows, int columns) const;

  /// Makes it the terminal that this process, a new one, is run from: its three streams, and where its
  /// signals come from. False when the system does not let it.
  [[nodiscard]] bool takeOver() const;

  /// Closes the program's side here, so that the end of the program's own ends what `master` shows.
  void release() { slave_.reset(); }

 private:
  FileDescriptor master_;
  FileDescriptor slave_;
};

}  // namespace quellin::testing_support
