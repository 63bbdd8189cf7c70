#include "Support/DocumentedExample.h"

#include <stdexcept>

#include "Support/TemporaryFolder.h"

namespace quellin::testing_support {

std::string documentedExample(std::string_view language) {
  const std::string text = contentOf(QUELLIN_EXAMPLES "/../docs/formats.md");
  const std::string opening = "\n```" + std::string(language) + "\n";
  const auto found = text.find(opening);
  if (found == std::string::npos) throw std::runtime_error("docs/formats.md has no such example");
  const auto begin = found + opening.size();
  return text.substr(begin, text.find("\n```", begin) + 1 - begin);
}

}  // namespace quellin::testing_support
