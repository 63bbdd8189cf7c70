#include "Support/DocumentedExample.h"

#include <algorithm>
#include <stdexcept>

#include "Support/TemporaryFolder.h"

namespace quellin::testing_support {
namespace {

// What stands in docs/formats.md between the first `opening` and the next `closing`, or the end.
std::string documented(const std::string& opening, std::string_view closing) {
  const std::string text = contentOf(QUELLIN_EXAMPLES "/../docs/formats.md");
  const auto found = text.find(opening);
  if (found == std::string::npos) throw std::runtime_error("docs/formats.md does not have " + opening);
  const auto begin = found + opening.size();
  return text.substr(begin, std::min(text.find(closing, begin), text.size() - 1) + 1 - begin);
}

}  // namespace

std::string documentedExample(std::string_view language) {
  return documented("\n```" + std::string(language) + "\n", "\n```");
}

std::string documentedChapter(std::string_view heading) {
  return documented("\n## " + std::string(heading) + "\n", "\n## ");
}

}  // namespace quellin::testing_support
