// Property lists of either encoding: nothing but a tree or an error may come of any bytes. A tree is in
// proportion to its input, reads the same once it is written as XML, and is found alone in a stream.

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "Fuzz/PropertyListXML.h"
#include "Fuzz/Require.h"
#include "QuellinHelper/PropertyLists/PropertyListStream.h"

using namespace quellin;
using fuzzing::require;

namespace {

std::size_t nodesOf(const PropertyListNode& root) {
  std::size_t nodes = 1;
  for (const auto& entry : root.entries()) nodes += nodesOf(entry.value);
  for (const auto& element : root.elements()) nodes += nodesOf(element);
  return nodes;
}

bool isSame(const PropertyListNode& one, const PropertyListNode& other);

bool isSameEntry(const PropertyListEntry& one, const PropertyListEntry& other) {
  return one.key == other.key && isSame(one.value, other.value);
}

// By the bits, so that 0 is told from -0 and what is no number is equal to itself.
bool isSame(std::optional<double> one, std::optional<double> other) {
  if (!one || !other) return one.has_value() == other.has_value();
  return std::bit_cast<std::uint64_t>(*one) == std::bit_cast<std::uint64_t>(*other);
}

std::optional<double> secondsOf(const PropertyListNode& node) {
  return node.date().transform([](Instant date) { return date.time_since_epoch().count(); });
}

bool isSame(const PropertyListNode& one, const PropertyListNode& other) {
  return one.kind() == other.kind() && one.string() == other.string() && one.data() == other.data() &&
         one.integer() == other.integer() && one.largeInteger() == other.largeInteger() &&
         one.boolean() == other.boolean() && isSame(one.real(), other.real()) &&
         isSame(secondsOf(one), secondsOf(other)) &&
         std::ranges::equal(one.entries(), other.entries(), isSameEntry) &&
         std::ranges::equal(one.elements(), other.elements(),
                            [](const auto& first, const auto& second) { return isSame(first, second); });
}

void checkTree(const PropertyListNode& root, std::size_t size) {
  // An identifier of two bytes reads as a dictionary with one entry.
  require(nodesOf(root) <= 2 * size);
  const auto written = fuzzing::PropertyListXML::of(root);
  if (!written) return;
  const auto again = parsePropertyList(*written);
  require(again && isSame(again->root(), root));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes{reinterpret_cast<const char*>(data), size};
  const auto list = parsePropertyList(bytes);
  if (list) checkTree(list->root(), size);
  const auto lists = parsePropertyListStream(bytes);
  require(lists.size() <= size);
  // A document of two bytes a character is split between them.
  if (list && (bytes.starts_with("bplist") || !bytes.contains('\0')))
    require(lists.size() == 1 && isSame(lists.front().root(), list->root()));
  return 0;
}
