#include "QuellinCore/Sessions/Storage/SealedRow.h"

namespace quellin {

void RowWriter::add(const UUID& value) {
  addBytes({reinterpret_cast<const char*>(value.bytes().data()), value.bytes().size()});
}

void RowReader::read(UUID& value) {
  std::string_view stored;
  read(stored);
  UUID::Bytes bytes{};
  std::copy_n(stored.begin(), std::min(stored.size(), bytes.size()), bytes.begin());
  value = UUID(bytes);
}

}  // namespace quellin
