#pragma once

#include <cstddef>
#include <expected>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "QuellinCore/Support/FileDescriptor.h"
#include "QuellinCore/Support/SystemError.h"

namespace quellin {

/// Fills a part of the buffer and returns how many bytes that were; 0 at the end.
using ByteSource = std::function<std::expected<std::size_t, SystemError>(std::span<char>)>;

/// The bytes of an open file, from where it stands.
[[nodiscard]] ByteSource bytesOfFile(FileDescriptor file);

/// The bytes of a text, which must outlive the source.
[[nodiscard]] ByteSource bytesOfText(std::string_view text);

/// One line of a text.
struct TextLine {
  std::string_view text;    ///< without its line feed; valid until the next call
  bool isComplete = false;  ///< whether a line feed ended it
};

/// Cuts a stream of bytes into lines and holds no more of it than the longest line needs. One thread at a
/// time.
class TraceLines {
 public:
  /// A line longer than this is refused rather than held.
  static constexpr std::size_t longestLine = std::size_t{64} << 20U;

  explicit TraceLines(ByteSource source, std::size_t limit = longestLine);  ///< `limit` in bytes, for a line

  /// The next line; no value at the end. EFBIG for a line that is too long.
  [[nodiscard]] std::expected<std::optional<TextLine>, SystemError> next();

 private:
  [[nodiscard]] std::expected<bool, SystemError> readMore();

  ByteSource source_;
  std::size_t limit_;
  std::string buffer_;
  std::size_t start_ = 0;     // of the next line in the buffer
  std::size_t searched_ = 0;  // up to here the buffer holds no line feed after `start_`
  bool hasEnded_ = false;
};

}  // namespace quellin
