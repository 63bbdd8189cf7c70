#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "QuellinCore/Sessions/Storage/BlobNumber.h"

namespace quellin {

/// What consecutive snapshots of a session share: a JSON text with its numbers and dates taken out. A text of
/// the same shape is told by its numbers alone, as differences from the numbers of the text that the shape
/// was made from.
class BlobShape {
 public:
  /// The shape of `text`, which may be anything; text without a number has one as well.
  explicit BlobShape(std::string text);

  /// The text that the shape was made from.
  [[nodiscard]] const std::string& text() const { return text_; }

  /// Appends the numbers of `text` to `bytes` and returns true; false, with `bytes` as they were, when `text`
  /// has another shape.
  [[nodiscard]] bool describe(std::string_view text, std::string& bytes) const;

  /// The text of which `describe` made `bytes`; no value when the bytes make no sense.
  [[nodiscard]] std::optional<std::string> spell(std::string_view bytes) const;

 private:
  // A stretch of the text that every text of this shape has, and the number behind it.
  struct Part {
    std::size_t start = 0;
    std::size_t length = 0;
    BlobNumber number;  ///< form text points into text_
    bool isDate = false;
  };

  [[nodiscard]] std::string_view stretch(std::size_t start, std::size_t length) const;

  std::string text_;
  std::vector<Part> parts_;
  std::size_t tailStart_ = 0;  // what follows the last number
};

}  // namespace quellin
