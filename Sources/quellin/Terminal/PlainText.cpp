#include "quellin/Terminal/PlainText.h"

#include <algorithm>

#include "QuellinCore/Support/Text.h"
#include "quellin/Terminal/TextColumns.h"

namespace quellin::cli {
namespace {

bool isControl(char32_t codePoint) {
  return codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0) || codePoint == 0x2028 ||
         codePoint == 0x2029 || (codePoint >= 0x202A && codePoint <= 0x202E) ||
         (codePoint >= 0x2066 && codePoint <= 0x2069);
}

}  // namespace

std::string namedLine(std::string name, std::string_view value) {
  name.resize(18, ' ');
  return name + printable(value) + "\n";
}

std::string printable(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const UTF8Step step = firstUTF8Step(text);
    if (isControl(step.codePoint)) {
      result += '?';
    } else {
      appendUTF8(result, step.codePoint);
    }
    text.remove_prefix(step.length);
  }
  return result;
}

std::string wrapped(std::string_view text, std::string_view indent, std::optional<std::size_t> width) {
  std::string result;
  std::size_t column = 0;
  while (!text.empty()) {
    const std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(std::min(word.size() + 1, text.size()));
    if (word.empty()) continue;
    const bool fits = !width || column + 1 + columnsOf(word) <= *width;
    if (column == 0 || !fits) {
      result += column == 0 ? "" : "\n";
      result += indent;
      column = columnsOf(indent);
    } else {
      result += ' ';
      ++column;
    }
    result += word;
    column += columnsOf(word);
  }
  return result + "\n";
}

}  // namespace quellin::cli
