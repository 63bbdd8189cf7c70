#include "QuellinCore/Sessions/Storage/BlobCodec.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <tuple>
#include <utility>

#include "QuellinCore/Sessions/Storage/ByteStream.h"
#include "QuellinCore/Support/Checksum.h"

namespace quellin {
namespace {

enum class Format : std::uint8_t { plain = 1, compressed = 2, numbers = 3 };

constexpr std::size_t checksumLength = 4;
constexpr std::size_t headerLength = 1 + checksumLength;

// The states of a machine (on battery, charging, idle; with or without fans) give a handful of shapes.
constexpr std::size_t shapeLimit = 16;
constexpr std::size_t referenceSizeLimit = std::size_t{1} << 16;

std::string startOf(Format format) {
  std::string stored(headerLength, '\0');
  stored.front() = static_cast<char>(format);
  return stored;
}

// The identity, the format byte and everything behind the checksum.
std::uint32_t checksumOf(const BlobIdentity& identity, std::string_view stored) {
  std::array<char, sizeof identity.key + 3> head{};
  std::memcpy(head.data(), &identity.key, sizeof identity.key);
  head[sizeof identity.key] = static_cast<char>(identity.role);
  head[sizeof identity.key + 1] = static_cast<char>(identity.siblings);
  head[sizeof identity.key + 2] = stored.front();
  return crc32c(stored.substr(headerLength), crc32c({head.data(), head.size()}));
}

std::string sealed(const BlobIdentity& identity, std::string stored) {
  std::uint32_t checksum = checksumOf(identity, stored);
  for (std::size_t index = 1; index < headerLength; ++index, checksum >>= 8) {
    stored[index] = static_cast<char>(checksum & 0xFF);
  }
  return stored;
}

bool isWhole(const BlobIdentity& identity, std::string_view stored) {
  if (stored.size() < headerLength) return false;
  std::uint32_t checksum = 0;
  for (std::size_t index = checksumLength; index > 0; --index) {
    checksum = (checksum << 8) | static_cast<unsigned char>(stored[index]);
  }
  return checksum == checksumOf(identity, stored);
}

}  // namespace

BlobCodec::Reference::Reference(BlobRole blobRole, std::string blob)
    : role(blobRole), shape(std::move(blob)), compressor(shape.text()) {}

bool BlobCodec::hasRoomFor(BlobRole role, std::string_view blob) const {
  const auto isOfRole = [role](const auto& entry) { return entry.second.role == role; };
  const auto count = static_cast<std::size_t>(std::ranges::count_if(references_, isOfRole));
  return blob.size() <= referenceSizeLimit && count < (role == BlobRole::snapshot ? shapeLimit : 1);
}

void BlobCodec::addReference(std::uint32_t number, BlobRole role, std::string blob) {
  references_.emplace(std::piecewise_construct, std::tuple(number), std::tuple(role, std::move(blob)));
  nextReference_ = std::max(nextReference_, number + 1);
}

void BlobCodec::skipReference(std::uint32_t number) { nextReference_ = std::max(nextReference_, number + 1); }

std::optional<std::string> BlobCodec::encodeAsNumbers(const BlobIdentity& identity,
                                                      std::string_view blob) const {
  for (const auto& [number, reference] : references_) {
    if (reference.role != identity.role) continue;
    std::string stored = startOf(Format::numbers);
    appendVarint(stored, number);
    if (reference.shape.describe(blob, stored)) return sealed(identity, std::move(stored));
  }
  return std::nullopt;
}

std::string BlobCodec::encode(const BlobIdentity& identity, std::string_view blob) {
  std::string stored = startOf(Format::compressed);
  const auto isOfRole = [role = identity.role](const auto& entry) { return entry.second.role == role; };
  const auto reference = std::ranges::find_if(references_, isOfRole);
  const bool hasReference = reference != references_.end();
  appendVarint(stored, hasReference ? std::uint64_t{reference->first} + 1 : 0);
  BlobCompressor& compressor = hasReference ? reference->second.compressor : alone_;
  if (compressor.compress(blob, stored) && stored.size() < headerLength + blob.size())
    return sealed(identity, std::move(stored));
  return sealed(identity, startOf(Format::plain).append(blob));
}

std::optional<std::string> BlobCodec::decode(const BlobIdentity& identity, std::string_view stored) {
  if (!isWhole(identity, stored)) return std::nullopt;
  const std::string_view payload = stored.substr(headerLength);
  switch (static_cast<Format>(stored.front())) {
    case Format::plain:
      return std::string(payload);
    case Format::compressed:
      return decodeCompressed(payload);
    case Format::numbers:
      return decodeNumbers(payload);
  }
  return std::nullopt;
}

std::optional<std::string> BlobCodec::decodeCompressed(std::string_view payload) {
  ByteReader reader(payload);
  const auto reference = reader.varint();
  if (!reference) return std::nullopt;
  if (*reference == 0) return alone_.decompress(reader.rest());
  const auto found = referenceWith(*reference - 1);
  return found == references_.end() ? std::nullopt : found->second.compressor.decompress(reader.rest());
}

std::optional<std::string> BlobCodec::decodeNumbers(std::string_view payload) {
  ByteReader reader(payload);
  const auto reference = reader.varint();
  if (!reference) return std::nullopt;
  const auto found = referenceWith(*reference);
  return found == references_.end() ? std::nullopt : found->second.shape.spell(reader.rest());
}

// A number too large for any reference must not be cut down to that of one.
BlobCodec::References::iterator BlobCodec::referenceWith(std::uint64_t number) {
  if (number > std::numeric_limits<std::uint32_t>::max()) return references_.end();
  return references_.find(static_cast<std::uint32_t>(number));
}

}  // namespace quellin
