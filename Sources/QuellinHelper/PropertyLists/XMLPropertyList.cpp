#include "QuellinHelper/PropertyLists/XMLPropertyList.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <expat.h>

#include "QuellinHelper/PropertyLists/PropertyListBuilder.h"
#include "QuellinHelper/PropertyLists/XMLPropertyListScalars.h"

namespace quellin {
namespace {

enum class Element { none, plist, dict, array, key, string, integer, real, date, data, yes, no };

constexpr std::array<std::pair<std::string_view, Element>, 11> elementNames{{{"key", Element::key},
                                                                             {"real", Element::real},
                                                                             {"integer", Element::integer},
                                                                             {"string", Element::string},
                                                                             {"dict", Element::dict},
                                                                             {"array", Element::array},
                                                                             {"true", Element::yes},
                                                                             {"false", Element::no},
                                                                             {"date", Element::date},
                                                                             {"data", Element::data},
                                                                             {"plist", Element::plist}}};

Element elementNamed(std::string_view name) {
  const auto* found = std::ranges::find(elementNames, name, &std::pair<std::string_view, Element>::first);
  return found == elementNames.end() ? Element::none : found->second;
}

bool isWhiteSpace(std::string_view text) {
  return text.find_first_not_of(xmlWhiteSpace) == std::string_view::npos;
}

/// Turns the events of the XML parser into those of the builder. The handlers are called from C and must not
/// throw; running out of memory ends the process.
class XMLPropertyListReader {
 public:
  XMLPropertyListReader() : parser_(XML_ParserCreate(nullptr), XML_ParserFree) {
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(parser_.get(), onStart, onEnd);
    XML_SetCharacterDataHandler(parser_.get(), onText);
    XML_SetEntityDeclHandler(parser_.get(), onEntityDeclaration);
    XML_SetSkippedEntityHandler(parser_.get(), onSkippedEntity);
  }

  std::expected<PropertyList, PropertyListError> read(std::string_view bytes) {
    // In pieces: the parser copies what it is given into a buffer of its own.
    constexpr std::size_t pieceSize = std::size_t{64} * 1024;
    bool isLast = false;
    for (std::size_t start = 0; !isLast; start += pieceSize) {
      const std::string_view piece = bytes.substr(std::min(start, bytes.size()), pieceSize);
      isLast = bytes.size() - start <= pieceSize;
      const auto status =
          XML_Parse(parser_.get(), piece.data(), static_cast<int>(piece.size()), isLast ? 1 : 0);
      if (status != XML_STATUS_OK) return std::unexpected(error());
    }
    if (auto list = builder_.finish()) return std::move(*list);
    return std::unexpected(error());
  }

 private:
  static void XMLCALL onStart(void* reader, const XML_Char* name, const XML_Char** /*attributes*/) noexcept {
    self(reader).stopUnless(self(reader).start(elementNamed(name)));
  }
  static void XMLCALL onEnd(void* reader, const XML_Char* /*name*/) noexcept {
    self(reader).stopUnless(self(reader).end());
  }
  static void XMLCALL onText(void* reader, const XML_Char* text, int length) noexcept {
    self(reader).stopUnless(self(reader).text({text, static_cast<std::size_t>(length)}));
  }
  static void XMLCALL onEntityDeclaration(void* reader, const XML_Char*, int, const XML_Char*, int,
                                          const XML_Char*, const XML_Char*, const XML_Char*,
                                          const XML_Char*) noexcept {
    self(reader).stopUnless(self(reader).builder_.fail("entity declaration"));
  }
  static void XMLCALL onSkippedEntity(void* reader, const XML_Char*, int) noexcept {
    self(reader).stopUnless(self(reader).builder_.fail("unknown entity"));
  }
  static XMLPropertyListReader& self(void* reader) { return *static_cast<XMLPropertyListReader*>(reader); }

  bool start(Element element) {
    if (scalar_ != Element::none) return builder_.fail("element inside a scalar");
    switch (element) {
      case Element::none:
        return builder_.fail("unknown element");
      case Element::plist:
        return openWrapper();
      case Element::dict:
        return builder_.openDictionary();
      case Element::array:
        return builder_.openArray();
      default:
        break;
    }
    scalar_ = element;
    text_.clear();
    return true;
  }

  bool end() {
    if (scalar_ != Element::none) return addScalar(std::exchange(scalar_, Element::none));
    // The wrapper is the outermost element, so it is the one that ends while the root is already there.
    return (isWrapped_ && builder_.hasRoot()) || builder_.close();
  }

  bool text(std::string_view characters) {
    if (scalar_ == Element::none || scalar_ == Element::yes || scalar_ == Element::no) {
      return isWhiteSpace(characters) || builder_.fail("text between elements");
    }
    text_.append(characters);
    return true;
  }

  bool openWrapper() {
    if (isWrapped_ || hasStarted_) return builder_.fail("misplaced plist element");
    isWrapped_ = true;
    return true;
  }

  bool addScalar(Element element) {
    switch (element) {
      case Element::key:
        return builder_.addKey(text_);
      case Element::string:
        return builder_.add(PropertyListNode{builder_.arena().copy(text_)});
      case Element::yes:
        return builder_.add(PropertyListNode{true});
      case Element::no:
        return builder_.add(PropertyListNode{false});
      case Element::integer:
        return addIf(parseXMLInteger(text_));
      case Element::real:
        return addIf(parseXMLReal(text_));
      case Element::date:
        return addIf(parseXMLDate(text_));
      default:
        break;
    }
    const auto bytes = decodeXMLData(text_);
    if (!bytes) return builder_.fail("malformed data");
    return builder_.add(PropertyListNode::ofData(builder_.arena().copy(*bytes)));
  }

  template <class Value>
  bool addIf(const std::optional<Value>& value) {
    return value ? builder_.add(PropertyListNode{*value}) : builder_.fail("malformed number or date");
  }

  void stopUnless(bool succeeded) {
    hasStarted_ = true;
    if (succeeded || failureOffset_) return;
    failureOffset_ = currentOffset();
    XML_StopParser(parser_.get(), XML_FALSE);
  }

  [[nodiscard]] std::size_t currentOffset() const {
    return static_cast<std::size_t>(std::max<XML_Index>(XML_GetCurrentByteIndex(parser_.get()), 0));
  }

  [[nodiscard]] PropertyListError error() const {
    const std::size_t offset = failureOffset_.value_or(currentOffset());
    if (!builder_.failure().empty()) return {.reason = builder_.failure(), .offset = offset};
    const XML_LChar* reason = XML_ErrorString(XML_GetErrorCode(parser_.get()));
    return {.reason = reason != nullptr ? reason : "no value", .offset = offset};
  }

  std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser_;
  PropertyListBuilder builder_;
  std::string text_;
  Element scalar_ = Element::none;
  std::optional<std::size_t> failureOffset_;
  bool isWrapped_ = false;
  bool hasStarted_ = false;
};

}  // namespace

std::expected<PropertyList, PropertyListError> parseXMLPropertyList(std::string_view bytes) {
  if (const auto error = sizeError(bytes)) return std::unexpected(*error);
  return XMLPropertyListReader{}.read(bytes);
}

}  // namespace quellin
