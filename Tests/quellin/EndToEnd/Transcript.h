#pragma once

#include <string>

#include "quellin/EndToEnd/FrontEnd.h"

namespace quellin::testing_support {

/// What was typed and what came of it: each command line, its output, its talk behind "2> ", and its exit
/// status.
class Transcript {
 public:
  /// `frontEnd` must outlive the transcript.
  explicit Transcript(const FrontEnd& frontEnd) : frontEnd_(frontEnd) {}

  /// Runs the program and writes down what came of it.
  void run(const FrontEnd::Words& arguments, const FrontEnd::Words& environment = {});

  /// Expects the transcript to be what the file `golden` in Goldens/ holds, byte for byte. What differs from
  /// run to run stands as X in both: identifiers, the present time, what recording has cost. `./dev goldens`
  /// writes the files anew; their diff is to be read.
  void expectGolden(const std::string& golden) const;

 private:
  const FrontEnd& frontEnd_;
  std::string text_;
};

/// `text` with an X in the place of every character of an identifier and of a time that is not the example
/// trace's, with one X in the place of every number that tells what recording has cost, and with "HOME" in
/// the place of `home`.
[[nodiscard]] std::string masked(const std::string& text, const std::string& home);

}  // namespace quellin::testing_support
