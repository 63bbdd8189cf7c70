#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quellin {

/// General compression of short texts against an earlier text that resembles them. One thread at a time may
/// use it.
class BlobCompressor {
 public:
  /// Texts longer than this are neither written nor believed.
  static constexpr std::size_t sizeLimit = std::size_t{64} << 20;

  /// `prefix` is the earlier text, empty for none; it is not copied and must outlive the compressor.
  explicit BlobCompressor(std::string_view prefix);
  BlobCompressor(BlobCompressor&&) noexcept;
  BlobCompressor& operator=(BlobCompressor&&) noexcept;
  BlobCompressor(const BlobCompressor&) = delete;
  BlobCompressor& operator=(const BlobCompressor&) = delete;
  ~BlobCompressor();

  /// Appends the compressed form of `text` to `bytes` and returns true; false, with `bytes` as they were,
  /// when it cannot.
  [[nodiscard]] bool compress(std::string_view text, std::string& bytes);

  /// The text that was compressed to `bytes` with the same prefix; no value when they make no sense.
  [[nodiscard]] std::optional<std::string> decompress(std::string_view bytes);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quellin
