#include "QuellinHelper/PropertyLists/BinaryPropertyListLayout.h"

namespace quellin::detail {
namespace {

constexpr std::size_t trailerSize = 32;

/// `count` pieces of `size` bytes from `offset` on, if `bytes` has them. The division cannot overflow.
std::optional<std::string_view> bounded(std::string_view bytes, std::uint64_t offset, std::uint64_t count,
                                        std::size_t size) {
  if (offset > bytes.size() || count > (bytes.size() - offset) / size) return std::nullopt;
  return bytes.substr(static_cast<std::size_t>(offset), static_cast<std::size_t>(count) * size);
}

bool isIntegerSize(std::size_t size) { return size >= 1 && size <= 8; }

}  // namespace

std::expected<BinaryPropertyListLayout, std::string_view> BinaryPropertyListLayout::read(
    std::string_view bytes) {
  if (!bytes.starts_with(magic)) return std::unexpected("no binary property list");
  if (bytes.size() < magic.size() + trailerSize) return std::unexpected("too short");
  const std::string_view body = bytes.substr(0, bytes.size() - trailerSize);
  const std::string_view trailer = bytes.substr(body.size());

  BinaryPropertyListLayout layout;
  layout.offsetSize_ = bigEndian(trailer.substr(6, 1));
  layout.referenceSize_ = bigEndian(trailer.substr(7, 1));
  const std::uint64_t objectCount = bigEndian(trailer.substr(8, 8));
  layout.topObject_ = bigEndian(trailer.substr(16, 8));
  const std::uint64_t tableOffset = bigEndian(trailer.substr(24, 8));
  if (!isIntegerSize(layout.offsetSize_) || !isIntegerSize(layout.referenceSize_)) {
    return std::unexpected("impossible integer size");
  }
  const auto table = bounded(body, tableOffset, objectCount, layout.offsetSize_);
  if (!table || tableOffset < magic.size()) return std::unexpected("offset table outside the input");
  if (layout.topObject_ >= objectCount) return std::unexpected("top object outside the table");
  layout.objectCount_ = static_cast<std::size_t>(objectCount);
  layout.offsetTable_ = *table;
  layout.objects_ = body.substr(0, static_cast<std::size_t>(tableOffset));
  return layout;
}

std::optional<std::string_view> BinaryPropertyListLayout::slice(std::size_t offset, std::uint64_t count,
                                                                std::size_t size) const {
  return bounded(objects_, offset, count, size);
}

std::optional<BinaryObject> BinaryPropertyListLayout::object(std::uint64_t number) const {
  constexpr std::uint64_t lengthFollows = 0x0F;

  if (number >= objectCount_) return std::nullopt;
  const auto index = static_cast<std::size_t>(number);
  const std::uint64_t offset = bigEndian(offsetTable_.substr(index * offsetSize_, offsetSize_));
  if (offset < magic.size()) return std::nullopt;
  const auto marker = bounded(objects_, offset, 1, 1);
  if (!marker) return std::nullopt;

  const std::uint64_t byte = bigEndian(*marker);
  BinaryObject object{.type = static_cast<std::uint8_t>(byte >> 4),
                      .length = byte & lengthFollows,
                      .contents = static_cast<std::size_t>(offset) + 1};
  if (object.length != lengthFollows || object.type < data || object.type == identifier) {
    return object;
  }
  const auto sizeMarker = slice(object.contents, 1);
  if (!sizeMarker || bigEndian(*sizeMarker) >> 4 != integer) return std::nullopt;
  const std::size_t exponent = bigEndian(*sizeMarker) & lengthFollows;
  if (exponent > 3) return std::nullopt;
  const std::size_t size = std::size_t{1} << exponent;
  const auto length = slice(object.contents + 1, size);
  if (!length) return std::nullopt;
  object.length = bigEndian(*length);
  object.contents += 1 + size;
  return object;
}

}  // namespace quellin::detail
