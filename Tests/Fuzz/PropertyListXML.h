#pragma once

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "QuellinHelper/PropertyLists/PropertyList.h"

namespace quellin::fuzzing {

/// Writes a tree as an XML property list that reads as the same tree.
class PropertyListXML {
 public:
  /// The document; absent when the tree holds a date, or what XML has no text for: characters that it
  /// forbids, data without a byte, and the many bits of a number that is none.
  [[nodiscard]] static std::optional<std::string> of(const PropertyListNode& root) {
    PropertyListXML writer;
    writer.add(root);
    return writer.canBeWritten_ ? std::optional{std::move(writer.text_)} : std::nullopt;
  }

 private:
  using Kind = PropertyListNode::Kind;

  void add(const PropertyListNode& node) {
    switch (node.kind()) {
      case Kind::dictionary:
        text_ += "<dict>";
        for (const auto& [key, value] : node.entries()) {
          addElement("key", escaped(key));
          add(value);
        }
        text_ += "</dict>";
        break;
      case Kind::array:
        text_ += "<array>";
        for (const auto& element : node.elements()) add(element);
        text_ += "</array>";
        break;
      case Kind::string:
        return addElement("string", escaped(*node.string()));
      case Kind::integer:
        return addElement("integer", std::to_string(*node.integer()));
      case Kind::largeInteger:
        return addElement("integer", std::to_string(*node.largeInteger()));
      case Kind::real:
        return addElement("real", shortest(*node.real()));
      case Kind::boolean:
        text_ += *node.boolean() ? "<true/>" : "<false/>";
        break;
      case Kind::date:
        canBeWritten_ = false;
        break;
      case Kind::data:
        return addElement("data", base64(*node.data()));
    }
  }

  void addElement(std::string_view name, std::string_view content) {
    text_.append("<").append(name).append(">").append(content);
    text_.append("</").append(name).append(">");
  }

  std::string escaped(std::string_view text) {
    // The two characters beyond the control characters that XML forbids, as UTF-8.
    if (text.contains("\xEF\xBF\xBE") || text.contains("\xEF\xBF\xBF")) canBeWritten_ = false;
    std::string result;
    for (const char character : text) {
      const auto byte = static_cast<unsigned char>(character);
      if (byte < ' ' && byte != '\t' && byte != '\n' && byte != '\r') canBeWritten_ = false;
      if (character == '<' || character == '&' || character == '>' || character == '\r') {
        result += "&#" + std::to_string(byte) + ";";
      } else {
        result += character;
      }
    }
    return result;
  }

  std::string shortest(double value) {
    if (std::isnan(value)) canBeWritten_ = false;
    if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
    std::array<char, 32> digits{};
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr};
  }

  std::string base64(std::string_view bytes) {
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    if (bytes.empty()) canBeWritten_ = false;
    std::string result;
    std::uint32_t bits = 0;
    unsigned held = 0;
    for (const char byte : bytes) {
      bits = bits << 8U | static_cast<unsigned char>(byte);
      for (held += 8; held >= 6; held -= 6) result += alphabet[bits >> (held - 6) & 63U];
    }
    if (held > 0) result += alphabet[bits << (6 - held) & 63U];
    return result.append((4 - result.size() % 4) % 4, '=');
  }

  std::string text_;
  bool canBeWritten_ = true;
};

}  // namespace quellin::fuzzing
