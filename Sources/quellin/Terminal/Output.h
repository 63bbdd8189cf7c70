#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace quellin::cli {

/// The reader of standard output has gone. Nothing is wrong: there is just no one left to write for.
class ReaderGone : public std::runtime_error {
 public:
  ReaderGone() : std::runtime_error("nobody reads the output") {}
};

/// Standard output: data and nothing else. Writes are gathered until `flush`, or until they are many.
class Output {
 public:
  explicit Output(int descriptor) : descriptor_(descriptor) {}

  /// Appends `text`. Throws `ReaderGone` or `Failure` when what was gathered cannot be written.
  void write(std::string_view text);
  /// Appends `text` and a line feed.
  void line(std::string_view text);
  /// Writes out what was gathered; throws as `write`.
  void flush();

 private:
  int descriptor_;
  std::string pending_;
};

/// Standard error: everything that is talk, not data. Failing to talk is no failure.
class Talk {
 public:
  explicit Talk(int descriptor) : descriptor_(descriptor) {}

  /// Writes "quellin: ", `text` and a line feed.
  void say(std::string_view text) const;
  /// Writes `text` as it is.
  void raw(std::string_view text) const;

 private:
  int descriptor_;
};

}  // namespace quellin::cli
