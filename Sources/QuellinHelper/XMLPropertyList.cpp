#include "QuellinHelper/XMLPropertyList.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <expat.h>

#include "QuellinHelper/PropertyListBuilder.h"
#include "QuellinHelper/XMLPropertyListScalars.h"

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
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

/// Turns the events of the XML parser into those of the builder. The handlers are called from C and must not
/// throw; running out of memory ends the process.
class XMLPropertyListReader {
 public:
  XMLPropertyListReader() : _parser(XML_ParserCreate(nullptr), XML_ParserFree) {
    XML_SetUserData(_parser.get(), this);
    XML_SetElementHandler(_parser.get(), onStart, onEnd);
    XML_SetCharacterDataHandler(_parser.get(), onText);
    XML_SetEntityDeclHandler(_parser.get(), onEntityDeclaration);
    XML_SetSkippedEntityHandler(_parser.get(), onSkippedEntity);
  }

  std::expected<PropertyList, PropertyListError> read(std::string_view bytes) {
    // In pieces: the parser copies what it is given into a buffer of its own.
    constexpr std::size_t pieceSize = std::size_t{64} * 1024;
    bool isLast = false;
    for (std::size_t start = 0; !isLast; start += pieceSize) {
      const std::string_view piece = bytes.substr(std::min(start, bytes.size()), pieceSize);
      isLast = bytes.size() - start <= pieceSize;
      const auto status =
          XML_Parse(_parser.get(), piece.data(), static_cast<int>(piece.size()), isLast ? 1 : 0);
      if (status != XML_STATUS_OK) return std::unexpected(error());
    }
    if (auto list = _builder.finish()) return std::move(*list);
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
    self(reader).stopUnless(self(reader)._builder.fail("entity declaration"));
  }
  static void XMLCALL onSkippedEntity(void* reader, const XML_Char*, int) noexcept {
    self(reader).stopUnless(self(reader)._builder.fail("unknown entity"));
  }
  static XMLPropertyListReader& self(void* reader) { return *static_cast<XMLPropertyListReader*>(reader); }

  bool start(Element element) {
    if (_scalar != Element::none) return _builder.fail("element inside a scalar");
    switch (element) {
      case Element::none:
        return _builder.fail("unknown element");
      case Element::plist:
        return openWrapper();
      case Element::dict:
        return _builder.openDictionary();
      case Element::array:
        return _builder.openArray();
      default:
        break;
    }
    _scalar = element;
    _text.clear();
    return true;
  }

  bool end() {
    if (_scalar != Element::none) return addScalar(std::exchange(_scalar, Element::none));
    // The wrapper is the outermost element, so it is the one that ends while the root is already there.
    return (_isWrapped && _builder.hasRoot()) || _builder.close();
  }

  bool text(std::string_view characters) {
    if (_scalar == Element::none || _scalar == Element::yes || _scalar == Element::no) {
      return isWhiteSpace(characters) || _builder.fail("text between elements");
    }
    _text.append(characters);
    return true;
  }

  bool openWrapper() {
    if (_isWrapped || _hasStarted) return _builder.fail("misplaced plist element");
    _isWrapped = true;
    return true;
  }

  bool addScalar(Element element) {
    switch (element) {
      case Element::key:
        return _builder.addKey(_text);
      case Element::string:
        return _builder.add(PropertyListNode{_builder.arena().copy(_text)});
      case Element::yes:
        return _builder.add(PropertyListNode{true});
      case Element::no:
        return _builder.add(PropertyListNode{false});
      case Element::integer:
        return addIf(parseXMLInteger(_text));
      case Element::real:
        return addIf(parseXMLReal(_text));
      case Element::date:
        return addIf(parseXMLDate(_text));
      default:
        break;
    }
    const auto bytes = decodeXMLData(_text);
    if (!bytes) return _builder.fail("malformed data");
    return _builder.add(PropertyListNode::ofData(_builder.arena().copy(*bytes)));
  }

  template <class Value>
  bool addIf(const std::optional<Value>& value) {
    return value ? _builder.add(PropertyListNode{*value}) : _builder.fail("malformed number or date");
  }

  void stopUnless(bool succeeded) {
    _hasStarted = true;
    if (succeeded || _failureOffset) return;
    _failureOffset = currentOffset();
    XML_StopParser(_parser.get(), XML_FALSE);
  }

  [[nodiscard]] std::size_t currentOffset() const {
    return static_cast<std::size_t>(std::max<XML_Index>(XML_GetCurrentByteIndex(_parser.get()), 0));
  }

  [[nodiscard]] PropertyListError error() const {
    const std::size_t offset = _failureOffset.value_or(currentOffset());
    if (!_builder.failure().empty()) return {.reason = _builder.failure(), .offset = offset};
    const XML_LChar* reason = XML_ErrorString(XML_GetErrorCode(_parser.get()));
    return {.reason = reason != nullptr ? reason : "no value", .offset = offset};
  }

  std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> _parser;
  PropertyListBuilder _builder;
  std::string _text;
  Element _scalar = Element::none;
  std::optional<std::size_t> _failureOffset;
  bool _isWrapped = false;
  bool _hasStarted = false;
};

}  // namespace

std::expected<PropertyList, PropertyListError> parseXMLPropertyList(std::string_view bytes) {
  if (bytes.size() > maximumPropertyListSize)
    return std::unexpected(PropertyListError{.reason = "too large"});
  return XMLPropertyListReader{}.read(bytes);
}

}  // namespace quellin
