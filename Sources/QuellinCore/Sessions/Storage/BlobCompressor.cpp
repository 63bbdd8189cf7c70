#include "QuellinCore/Sessions/Storage/BlobCompressor.h"

#include <zstd.h>

namespace quellin {
namespace {

constexpr int level = 1;

template <auto function>
struct Freed {
  void operator()(auto* object) const { function(object); }
};

template <class Object, auto function>
using Handle = std::unique_ptr<Object, Freed<function>>;

}  // namespace

// Each half is made at its first use: most compressors only ever read, or only ever write.
struct BlobCompressor::State {
  std::string_view prefix;
  Handle<ZSTD_CCtx, ZSTD_freeCCtx> writing;
  Handle<ZSTD_CDict, ZSTD_freeCDict> writingPrefix;
  Handle<ZSTD_DCtx, ZSTD_freeDCtx> reading;
  Handle<ZSTD_DDict, ZSTD_freeDDict> readingPrefix;

  void makeWriting() {
    if (writing) return;
    writing.reset(ZSTD_createCCtx());
    writingPrefix.reset(ZSTD_createCDict(prefix.data(), prefix.size(), level));
  }

  void makeReading() {
    if (reading) return;
    reading.reset(ZSTD_createDCtx());
    readingPrefix.reset(ZSTD_createDDict(prefix.data(), prefix.size()));
  }
};

BlobCompressor::BlobCompressor(std::string_view prefix) : state_(std::make_unique<State>()) {
  state_->prefix = prefix;
}

BlobCompressor::BlobCompressor(BlobCompressor&&) noexcept = default;
BlobCompressor& BlobCompressor::operator=(BlobCompressor&&) noexcept = default;
BlobCompressor::~BlobCompressor() = default;

bool BlobCompressor::compress(std::string_view text, std::string& bytes) {
  if (text.size() > sizeLimit) return false;
  state_->makeWriting();
  const std::size_t start = bytes.size();
  bytes.resize(start + ZSTD_compressBound(text.size()));
  const std::size_t size =
      ZSTD_compress_usingCDict(state_->writing.get(), bytes.data() + start, bytes.size() - start, text.data(),
                               text.size(), state_->writingPrefix.get());
  const bool isDone = ZSTD_isError(size) == 0;
  bytes.resize(isDone ? start + size : start);
  return isDone;
}

std::optional<std::string> BlobCompressor::decompress(std::string_view bytes) {
  const unsigned long long size = ZSTD_getFrameContentSize(bytes.data(), bytes.size());
  if (size > sizeLimit) return std::nullopt;  // also the two values that stand for errors
  state_->makeReading();
  std::string text(static_cast<std::size_t>(size), '\0');
  const std::size_t written =
      ZSTD_decompress_usingDDict(state_->reading.get(), text.data(), text.size(), bytes.data(), bytes.size(),
                                 state_->readingPrefix.get());
  if (ZSTD_isError(written) != 0 || written != text.size()) return std::nullopt;
  return text;
}

}  // namespace quellin
