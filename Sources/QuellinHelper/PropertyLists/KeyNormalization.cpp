#include "QuellinHelper/PropertyLists/KeyNormalization.h"

#include <algorithm>

#include "QuellinCore/Support/Text.h"
#include "QuellinHelper/PropertyLists/UnicodeTables.h"

namespace quellin {
namespace {

using detail::CharacterRange;
using detail::LowerCaseRun;

bool isLetterOrNumber(char32_t character) {
  const auto ranges = detail::lettersAndNumbers();
  const auto range = std::ranges::lower_bound(ranges, character, {}, &CharacterRange::last);
  return range != ranges.end() && range->first <= character;
}

char32_t lowerCase(char32_t character) {
  const auto runs = detail::lowerCaseRuns();
  const auto run = std::ranges::lower_bound(runs, character, {}, &LowerCaseRun::last);
  if (run == runs.end() || run->first > character || (character - run->first) % run->step != 0)
    return character;
  return static_cast<char32_t>(static_cast<int>(character) + run->distance);
}

void appendNormalizedASCII(char character, std::string& result) {
  if (character >= 'A' && character <= 'Z') {
    result.push_back(static_cast<char>(character - 'A' + 'a'));
  } else if ((character >= 'a' && character <= 'z') || (character >= '0' && character <= '9')) {
    result.push_back(character);
  }
}

}  // namespace

void normalize(std::string_view text, std::string& result) {
  result.clear();
  while (!text.empty()) {
    if (static_cast<unsigned char>(text.front()) < 0x80) {
      appendNormalizedASCII(text.front(), result);
      text.remove_prefix(1);
      continue;
    }
    const UTF8Step step = firstUTF8Step(text);
    text.remove_prefix(step.length);
    const char32_t lower = lowerCase(step.codePoint);  // of ill-formed bytes: U+FFFD, which is no letter
    if (isLetterOrNumber(lower)) appendUTF8(result, lower);
  }
}

std::string normalize(std::string_view text) {
  std::string result;
  normalize(text, result);
  return result;
}

}  // namespace quellin
