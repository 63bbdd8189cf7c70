#include "FakeDarwin/FakeLoader.h"

namespace quellin::fake {

void FakeLoader::noteClosed(void* library) {
  const auto found = open_.find(library);
  if (found == open_.end() || found->second == 0) {
    ledger_.violation("library closed that is not open");
  } else {
    --found->second;
  }
}

bool FakeLoader::noteLookUp(void* library, const std::string& symbol) {
  const auto found = open_.find(library);
  if (found == open_.end() || found->second == 0) ledger_.violation("symbol looked up in a closed library");
  lookUps_.push_back(symbol);
  return !hidden_.contains(symbol);
}

std::vector<std::string> FakeLoader::leaks() const {
  std::vector<std::string> leaked;
  for (const auto& [library, count] : open_) {
    if (count > 0) leaked.push_back("library not closed, handles: " + std::to_string(count));
  }
  return leaked;
}

}  // namespace quellin::fake
