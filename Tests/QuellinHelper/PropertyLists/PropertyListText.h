#pragma once

#include <charconv>
#include <limits>
#include <string>

#include "QuellinHelper/PropertyLists/PropertyList.h"

namespace quellin {

inline std::string shortest(double value) {
  std::string text(32, '\0');
  text.resize(static_cast<std::size_t>(std::to_chars(text.data(), text.data() + text.size(), value).ptr -
                                       text.data()));
  return text;
}

/// A tree as one line, such as {a: 1, b: [true, "x", r0.5]}: what tests compare.
inline std::string described(const PropertyListNode& node) {
  std::string text;
  switch (node.kind()) {
    case PropertyListNode::Kind::dictionary:
      for (const auto& [key, value] : node.entries()) {
        text += (text.empty() ? "" : ", ") + std::string{key} + ": " + described(value);
      }
      return "{" + text + "}";
    case PropertyListNode::Kind::array:
      for (const auto& element : node.elements()) text += (text.empty() ? "" : ", ") + described(element);
      return "[" + text + "]";
    case PropertyListNode::Kind::string:
      return '"' + std::string{*node.string()} + '"';
    case PropertyListNode::Kind::integer:
      return std::to_string(*node.integer());
    case PropertyListNode::Kind::largeInteger:
      return "large" + std::to_string(*node.largeInteger());
    case PropertyListNode::Kind::real:
      return "r" + shortest(*node.real());
    case PropertyListNode::Kind::boolean:
      return *node.boolean() ? "true" : "false";
    case PropertyListNode::Kind::date:
      return "@" + shortest(node.date()->time_since_epoch().count());
    case PropertyListNode::Kind::data:
      return "<" + std::string{*node.data()} + ">";
  }
  return "?";
}

/// The tree of a successful reading, or "error: " and the reason.
template <class Result>
std::string described(const Result& result) {
  return result ? described(result->root()) : "error: " + std::string{result.error().reason};
}

}  // namespace quellin
