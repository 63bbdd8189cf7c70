#pragma once

#include <cstddef>
#include <iostream>
#include <string>
#include <string_view>

namespace quellin::differential {

/// The bytes that pairs of hexadecimal digits spell.
[[nodiscard]] inline std::string bytesOfHex(std::string_view digits) {
  std::string bytes;
  for (std::size_t place = 0; place + 1 < digits.size(); place += 2) {
    bytes.push_back(static_cast<char>(std::stoi(std::string{digits.substr(place, 2)}, nullptr, 16)));
  }
  return bytes;
}

/// `bytes` as pairs of hexadecimal digits.
[[nodiscard]] inline std::string hexOfBytes(std::string_view bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const char byte : bytes) {
    text += digits[static_cast<unsigned char>(byte) >> 4U];
    text += digits[static_cast<unsigned char>(byte) & 0xFU];
  }
  return text;
}

/// Answers each line of standard input, a document in hexadecimal digits, with one line of standard output.
template <class Answer>
int answerLines(Answer answer) {
  std::ios::sync_with_stdio(false);
  std::string line;
  while (std::getline(std::cin, line)) std::cout << answer(bytesOfHex(line)) << '\n';
  std::cout.flush();
  return std::cout ? 0 : 74;
}

}  // namespace quellin::differential
