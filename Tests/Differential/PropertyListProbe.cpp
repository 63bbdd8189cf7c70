// Reads property lists, one a line in hexadecimal digits, and prints each tree as one line in which no two
// trees look alike, or "refused" and the reason.

#include <bit>
#include <cmath>
#include <cstdint>
#include <string>

#include "Differential/HexLines.h"
#include "QuellinHelper/PropertyLists/PropertyListStream.h"

namespace {

using namespace quellin;
using testing_support::hexOfBytes;

// The very bits of a number; there is but one that is none.
std::string bits(double value) {
  return std::isnan(value) ? "nan" : std::to_string(std::bit_cast<std::uint64_t>(value));
}

std::string described(const PropertyListNode& node) {
  std::string text;
  switch (node.kind()) {
    case PropertyListNode::Kind::dictionary:
      for (const auto& [key, value] : node.entries()) text += hexOfBytes(key) + ":" + described(value) + ",";
      return "{" + text + "}";
    case PropertyListNode::Kind::array:
      for (const auto& element : node.elements()) text += described(element) + ",";
      return "[" + text + "]";
    case PropertyListNode::Kind::string:
      return "s" + hexOfBytes(*node.string());
    case PropertyListNode::Kind::integer:
      return "i" + std::to_string(*node.integer());
    case PropertyListNode::Kind::largeInteger:
      return "i" + std::to_string(*node.largeInteger());
    case PropertyListNode::Kind::real:
      return "r" + bits(*node.real());
    case PropertyListNode::Kind::boolean:
      return *node.boolean() ? "true" : "false";
    case PropertyListNode::Kind::date:
      return "d" + bits(node.date()->time_since_epoch().count());
    case PropertyListNode::Kind::data:
      return "x" + hexOfBytes(*node.data());
  }
  return "?";
}

std::string answer(const std::string& document) {
  const auto list = parsePropertyList(document);
  return list ? described(list->root()) : "refused: " + std::string{list.error().reason};
}

}  // namespace

int main() { return differential::answerLines(answer); }
