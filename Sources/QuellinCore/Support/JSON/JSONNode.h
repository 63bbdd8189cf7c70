#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include <simdjson.h>

#include "QuellinCore/Support/JSON/DecodingError.h"
#include "QuellinCore/Support/JSON/JSONReading.h"

// What reading and decoding know of the parser. Nothing else includes it.
namespace quellin::detail {

// One step on the way from the document to a value. The steps lie on the call stack.
struct PathStep {
  const PathStep* parent = nullptr;
  std::string_view key;  // empty for an element of an array
  std::size_t index = 0;
};

// What is shared by all nodes of one document.
struct Reading {
  std::optional<DecodingError> error;  // the first value that does not suit
  std::string keyBuffer;
  std::string textBuffer;
};

class JSONNode {
 public:
  JSONNode(simdjson::ondemand::value place, Reading& shared, const PathStep* step, std::size_t level);

  [[nodiscard]] char first() const { return token.empty() ? '\0' : token.front(); }
  [[nodiscard]] bool isNumber() const { return first() == '-' || (first() >= '0' && first() <= '9'); }

  // Keeps what is wrong with the value, unless something was found before.
  [[gnu::visibility("hidden")]] void note(DecodingError::Kind kind, std::string description);

  simdjson::ondemand::value value;
  std::string_view token;  // the scalar, or the opening bracket
  Reading& reading;
  const PathStep* path;
  std::size_t depth;  // the number of containers around it
};

}  // namespace quellin::detail
