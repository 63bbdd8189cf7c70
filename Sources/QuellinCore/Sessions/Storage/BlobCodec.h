#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "QuellinCore/Sessions/Storage/BlobCompressor.h"
#include "QuellinCore/Sessions/Storage/BlobShape.h"

namespace quellin {

/// What a blob holds. Blobs of one role resemble each other.
enum class BlobRole : std::uint8_t { snapshot, processActivity, proTelemetry };

/// Whose blob it is. It is part of the checksum, so that a blob in the wrong place is a damaged one.
struct BlobIdentity {
  std::int64_t key = 0;       ///< of the row that holds it
  BlobRole role{};            ///< what it holds
  std::uint8_t siblings = 0;  ///< a number for which other blobs the row holds
};

/// The stored form of blobs: a format byte, a CRC-32C, and the blob, alone or as its differences from an
/// earlier blob of the same session, a reference. Blobs come back byte for byte; damaged ones come back as no
/// value. Every stored blob is readable with the references alone. The layout is described in
/// docs/formats.md. One thread at a time may use it.
class BlobCodec {
 public:
  /// Whether another reference of this role would be of use.
  [[nodiscard]] bool hasRoomFor(BlobRole role, std::string_view blob) const;

  /// Makes `blob` reference number `number` (from 0), which must be free.
  void addReference(std::uint32_t number, BlobRole role, std::string blob);

  /// The number that the next reference gets.
  [[nodiscard]] std::uint32_t nextReference() const { return nextReference_; }
  /// Leaves `number` and all before it unused: a reference that cannot be read.
  void skipReference(std::uint32_t number);

  /// The stored form of a blob that differs from a reference by nothing but its numbers; no value for any
  /// other.
  [[nodiscard]] std::optional<std::string> encodeAsNumbers(const BlobIdentity& identity,
                                                           std::string_view blob) const;

  /// The stored form of any blob, compressed against the first reference of its role where that makes it
  /// smaller.
  [[nodiscard]] std::string encode(const BlobIdentity& identity, std::string_view blob);

  /// The blob of a stored form; no value when it is damaged, another's, or names a reference that is not
  /// there.
  [[nodiscard]] std::optional<std::string> decode(const BlobIdentity& identity, std::string_view stored);

 private:
  struct Reference {
    Reference(BlobRole blobRole, std::string blob);

    BlobRole role;
    BlobShape shape;
    BlobCompressor compressor;
  };
  using References = std::map<std::uint32_t, Reference>;  // node-based: compressors point into their shapes

  [[nodiscard]] std::optional<std::string> decodeCompressed(std::string_view payload);
  [[nodiscard]] std::optional<std::string> decodeNumbers(std::string_view payload);
  [[nodiscard]] References::iterator referenceWith(std::uint64_t number);

  References references_;
  BlobCompressor alone_{{}};
  std::uint32_t nextReference_ = 0;
};

}  // namespace quellin
