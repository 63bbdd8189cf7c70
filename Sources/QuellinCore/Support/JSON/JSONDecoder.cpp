#include "QuellinCore/Support/JSON/JSONDecoder.h"

#include <cstring>
#include <string>

#include <simdjson.h>

#include "QuellinCore/Support/JSON/JSONNode.h"
#include "QuellinCore/Support/JSON/TextEncoding.h"

namespace quellin {

class JSONDecoder::State {
 public:
  // False when `bytes` are not one valid JSON document.
  bool read(std::string_view bytes, detail::ReadFunction readRoot, void* target) {
    reading.error.reset();
    const std::optional<std::string_view> text = documentAsUTF8(bytes, transcoded_);
    if (!text) return false;
    simdjson::ondemand::document document;
    simdjson::ondemand::array array;
    if (parser_.iterate(wrapped(*text)).get(document) != simdjson::SUCCESS) return false;
    if (document.get_array().get(array) != simdjson::SUCCESS) return false;
    std::size_t count = 0;
    for (auto element : array) {
      simdjson::ondemand::value value;
      if (std::move(element).get(value) != simdjson::SUCCESS || ++count > 1) return false;
      detail::JSONNode root{value, reading, nullptr, 0};
      if (!readRoot(root, target)) return false;
    }
    return count == 1 && document.current_location().error() == simdjson::OUT_OF_BOUNDS;
  }

  detail::Reading reading;

 private:
  // The text as the one element of an array, with the padding that the parser may read beyond the end: thus a
  // scalar document needs no code of its own, and what follows the value shows as a second element or after
  // the array.
  simdjson::padded_string_view wrapped(std::string_view text) {
    const std::size_t length = text.size() + 2;
    const std::size_t needed = length + simdjson::SIMDJSON_PADDING;
    if (padded_.size() < needed) padded_.resize(needed);
    padded_[0] = '[';
    text.copy(padded_.data() + 1, text.size());
    padded_[length - 1] = ']';
    std::memset(padded_.data() + length, 0, simdjson::SIMDJSON_PADDING);
    return simdjson::padded_string_view{padded_.data(), length, padded_.size()};
  }

  simdjson::ondemand::parser parser_;
  std::string padded_;
  std::string transcoded_;
};

JSONDecoder::JSONDecoder() : state_(std::make_unique<State>()) {}
JSONDecoder::~JSONDecoder() = default;
JSONDecoder::JSONDecoder(JSONDecoder&&) noexcept = default;
JSONDecoder& JSONDecoder::operator=(JSONDecoder&&) noexcept = default;

std::optional<DecodingError> JSONDecoder::readDocument(std::string_view bytes, detail::ReadFunction read,
                                                       void* target) {
  if (!state_->read(bytes, read, target)) {
    return DecodingError{DecodingError::Kind::dataCorrupted, {}, "The given data was not valid JSON."};
  }
  return std::move(state_->reading.error);
}

}  // namespace quellin
