#pragma once

#include <iostream>
#include <string>

#include "Support/Bytes.h"

namespace quellin::differential {

/// Answers each line of standard input, a document in hexadecimal digits, with one line of standard output.
template <class Answer>
int answerLines(Answer answer) {
  std::ios::sync_with_stdio(false);
  std::string line;
  while (std::getline(std::cin, line)) std::cout << answer(testing_support::bytesOfHex(line)) << '\n';
  std::cout.flush();
  return std::cout ? 0 : 74;
}

}  // namespace quellin::differential
