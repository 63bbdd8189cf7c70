#include "QuellinCore/Support/Quoting.h"

namespace quellin {
namespace {

std::string replacing(std::string_view text, char character, std::string_view replacement) {
  std::string result;
  result.reserve(text.size());
  for (const char current : text) {
    if (current == character) {
      result += replacement;
    } else {
      result += current;
    }
  }
  return result;
}

}  // namespace

std::string shellQuoted(std::string_view text) { return "'" + replacing(text, '\'', R"('\'')") + "'"; }

std::string appleScriptEscaped(std::string_view text) {
  return replacing(replacing(text, '\\', R"(\\)"), '"', R"(\")");
}

}  // namespace quellin
