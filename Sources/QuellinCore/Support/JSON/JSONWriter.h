#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/UUID.h"

namespace quellin {

/// How a document is laid out.
enum class JSONLayout {
  compact,  ///< no blanks at all
  pretty,   ///< one field or element a line, two blanks a level, `"key" : value`
};

/// Why a value could not be encoded.
struct EncodingError {
  /// The fields and indices that lead to the value, for example `processes[2].energyImpact`; empty for the
  /// document itself.
  std::string path;
  std::string reason;  ///< what is wrong with it

  /// The reason, after the path in quotation marks where there is one.
  [[nodiscard]] std::string message() const { return path.empty() ? reason : '"' + path + "\": " + reason; }

  bool operator==(const EncodingError&) const = default;
};

/// Appends JSON tokens to a string. It writes ahead of the string's length and cuts it to what was written
/// when it goes; after a failure it leaves the string as it found it. The string must outlive it and must not
/// be touched meanwhile. One thread at a time.
class JSONWriter {
 public:
  JSONWriter(std::string& text, JSONLayout layout);  ///< appends to `text`
  ~JSONWriter();
  JSONWriter(const JSONWriter&) = delete;
  JSONWriter& operator=(const JSONWriter&) = delete;
  JSONWriter(JSONWriter&&) = delete;
  JSONWriter& operator=(JSONWriter&&) = delete;

  /// Containers may be nested less deeply than this.
  static constexpr std::size_t depthLimit = 512;

  /// Opens an object or array. The value goes back to `close`; `failed()` tells when the nesting is too deep.
  [[nodiscard]] std::size_t open();
  /// Closes the container that `open` gave `start` for.
  void close(std::size_t start, char opening, char closing);

  /// Begins the next element of an array.
  void element();

  /// Begins the next field of an object; `token` is `,"name":`, of which the layout uses what it needs.
  template <std::size_t size>
  void field(const std::array<char, size>& token) {
    if (layout_ == JSONLayout::pretty) return prettyField({token.data() + 1, size - 2});
    reserve(size);
    std::memcpy(cursor_, token.data(), size);
    cursor_ += size;
  }

  void boolean(bool value);                   ///< `true` or `false`
  void integer(std::int64_t value);           ///< all digits, never an exponent
  void unsignedInteger(std::uint64_t value);  ///< all digits, never an exponent
  void string(std::string_view value);        ///< in quotes, escaped; ill-formed UTF-8 becomes U+FFFD
  void uuid(const UUID& value);               ///< 36 characters, upper case

  /// A double in its shortest round-trip form; fails when it is not finite.
  void number(double value);
  /// An instant as ISO 8601 text; fails when it is not finite.
  void instant(Instant value);

  [[nodiscard]] bool failed() const { return failed_; }  ///< the text will be left as it was

  /// Notes, from the inside out, through which field or index a failure was reached.
  void failedIn(std::string_view fieldName);
  void failedIn(std::size_t index);  ///< of an array

  /// What went wrong, once `failed()`.
  [[nodiscard]] EncodingError error() const { return {path_, reason_}; }

 private:
  void reserve(std::size_t count) {
    if (static_cast<std::size_t>(limit_ - cursor_) < count) grow(count);
  }
  void grow(std::size_t count);
  void put(char character);
  void put(std::string_view characters);
  void escape(std::string_view& rest);
  void newline();
  void prettyField(std::string_view quotedName);
  void fail(std::string_view reason);
  [[nodiscard]] std::size_t offset() const { return static_cast<std::size_t>(cursor_ - text_.data()); }

  std::string& text_;
  std::size_t originalSize_;
  JSONLayout layout_;
  char* cursor_ = nullptr;
  char* limit_ = nullptr;
  std::size_t depth_ = 0;
  bool failed_ = false;
  std::string path_;
  std::string reason_;
};

}  // namespace quellin
