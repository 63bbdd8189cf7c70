#include "QuellinCore/Platform/Recorded/TraceError.h"

namespace quellin {

std::string TraceError::message() const {
  const std::string place = line ? path + ", line " + std::to_string(*line) : path;
  return place + ": " + reason + (reason.ends_with('.') ? " " : ". ") + remedy;
}

}  // namespace quellin
