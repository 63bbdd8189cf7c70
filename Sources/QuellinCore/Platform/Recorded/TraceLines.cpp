#include "QuellinCore/Platform/Recorded/TraceLines.h"

#include <algorithm>
#include <memory>
#include <unistd.h>
#include <utility>

namespace quellin {
namespace {

constexpr std::size_t readSize = std::size_t{64} << 10U;

}  // namespace

ByteSource bytesOfFile(FileDescriptor file) {
  return [file = std::make_shared<const FileDescriptor>(std::move(file))](
             std::span<char> buffer) -> std::expected<std::size_t, SystemError> {
    for (;;) {
      const ssize_t count = read(file->get(), buffer.data(), buffer.size());
      if (count >= 0) return static_cast<std::size_t>(count);
      if (errno != EINTR) return std::unexpected(SystemError::last());
    }
  };
}

ByteSource bytesOfText(std::string_view text) {
  return [text](std::span<char> buffer) mutable -> std::expected<std::size_t, SystemError> {
    const std::size_t count = text.copy(buffer.data(), buffer.size());
    text.remove_prefix(count);
    return count;
  };
}

TraceLines::TraceLines(ByteSource source, std::size_t limit) : source_(std::move(source)), limit_(limit) {}

std::expected<std::optional<TextLine>, SystemError> TraceLines::next() {
  for (;;) {
    const std::size_t end = buffer_.find('\n', searched_);
    if (end != std::string::npos) {
      const std::string_view text = std::string_view{buffer_}.substr(start_, end - start_);
      start_ = searched_ = end + 1;
      return TextLine{.text = text, .isComplete = true};
    }
    searched_ = buffer_.size();
    const auto more = readMore();
    if (!more) return std::unexpected(more.error());
    if (*more) continue;
    const std::string_view rest = std::string_view{buffer_}.substr(start_);
    start_ = buffer_.size();
    if (rest.empty()) return std::nullopt;
    return TextLine{.text = rest, .isComplete = false};
  }
}

// False at the end of the stream.
std::expected<bool, SystemError> TraceLines::readMore() {
  if (hasEnded_) return false;
  buffer_.erase(0, std::exchange(start_, 0));
  if (buffer_.size() > limit_) return std::unexpected(SystemError{EFBIG});
  searched_ = buffer_.size();
  buffer_.resize(searched_ + readSize);
  const auto count = source_(std::span{buffer_}.subspan(searched_));
  buffer_.resize(searched_ + count.value_or(0));
  if (!count) return std::unexpected(count.error());
  hasEnded_ = *count == 0;
  return !hasEnded_;
}

}  // namespace quellin
