#include "QuellinHelper/PropertyLists/PropertyListArena.h"

namespace quellin {

std::string_view PropertyListArena::copy(std::string_view text) {
  const std::span<char> memory = allocate<char>(text.size());
  std::ranges::copy(text, memory.begin());
  return {memory.data(), memory.size()};
}

std::byte* PropertyListArena::allocateBytes(std::size_t size) {
  const std::size_t rounded = (size + alignment - 1) / alignment * alignment;
  if (rounded > free_.size()) {
    // A large piece gets a block of its own, so that the rest of the current block is not lost.
    if (rounded > nextBlock_ / 4) return addBlock(rounded);
    free_ = {addBlock(nextBlock_), nextBlock_};
    nextBlock_ = std::min(nextBlock_ * 2, largestBlock);
  }
  std::byte* piece = free_.data();
  free_ = free_.subspan(rounded);
  return piece;
}

std::byte* PropertyListArena::addBlock(std::size_t size) {
  capacity_ += size;
  return blocks_.emplace_back(size).data();
}

}  // namespace quellin
