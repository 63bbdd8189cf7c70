#include "QuellinHelper/PropertyListArena.h"

namespace quellin {

std::string_view PropertyListArena::copy(std::string_view text) {
  const std::span<char> memory = allocate<char>(text.size());
  std::ranges::copy(text, memory.begin());
  return {memory.data(), memory.size()};
}

std::byte* PropertyListArena::allocateBytes(std::size_t size) {
  const std::size_t rounded = (size + alignment - 1) / alignment * alignment;
  if (rounded > _free.size()) {
    // A large piece gets a block of its own, so that the rest of the current block is not lost.
    if (rounded > _nextBlock / 4) return addBlock(rounded);
    _free = {addBlock(_nextBlock), _nextBlock};
    _nextBlock = std::min(_nextBlock * 2, largestBlock);
  }
  std::byte* piece = _free.data();
  _free = _free.subspan(rounded);
  return piece;
}

std::byte* PropertyListArena::addBlock(std::size_t size) {
  _capacity += size;
  return _blocks.emplace_back(size).data();
}

}  // namespace quellin
