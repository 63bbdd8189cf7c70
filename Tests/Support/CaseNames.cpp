#include "Support/CaseNames.h"

#include <cstddef>

#include "QuellinCore/Support/HexDigits.h"
#include "QuellinCore/Support/JSON/ShortestDecimal.h"

namespace quellin::testing_support {
namespace {

bool isDigit(char character) { return character >= '0' && character <= '9'; }

bool isLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

// What stands for a character that is neither a letter nor a digit.
std::string standIn(char character, bool isBeforeDigit) {
  switch (character) {
    case '-':
      return isBeforeDigit ? "Minus" : "_";
    case '+':
      return "Plus";
    case '.':
      return "Point";
    case ',':
      return "Comma";
    case '_':
    case ' ':
    case '/':
      return "_";
    default: {
      const auto byte = static_cast<unsigned char>(character);
      return {'x', upperCaseHexDigits[byte >> 4U], upperCaseHexDigits[byte & 0x0FU]};
    }
  }
}

}  // namespace

std::string caseName(std::string_view text) {
  if (text.empty()) return "Empty";
  std::string name;
  for (std::size_t place = 0; place < text.size(); ++place) {
    const char character = text[place];
    const bool isBeforeDigit = place + 1 < text.size() && isDigit(text[place + 1]);
    name += isLetter(character) || isDigit(character) ? std::string{character}
                                                      : standIn(character, isBeforeDigit);
  }
  return name;
}

std::string caseName(double number) { return caseName(ShortestDecimal(number).text()); }

}  // namespace quellin::testing_support
