#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "FakeDarwin/ObjectTable.h"

// The objects behind the faked CoreFoundation functions.
namespace quellin::fake {

class StringObject final : public Object {
 public:
  explicit StringObject(std::string bytes) : text(std::move(bytes)) {}
  [[nodiscard]] std::string kind() const override { return "string"; }
  [[nodiscard]] CFTypeID typeID() const override { return CFStringGetTypeID(); }

  std::string text;
};

class NumberObject final : public Object {
 public:
  enum class Width { fits64Bits, wider, real };

  NumberObject(Width itsWidth, std::int64_t whole, double floating)
      : width(itsWidth), integer(whole), real(floating) {}
  [[nodiscard]] std::string kind() const override { return "number"; }
  [[nodiscard]] CFTypeID typeID() const override { return CFNumberGetTypeID(); }

  Width width;
  std::int64_t integer;
  double real;
};

class BooleanObject final : public Object {
 public:
  explicit BooleanObject(bool isTrue) : value(isTrue) {}
  [[nodiscard]] std::string kind() const override { return "boolean"; }
  [[nodiscard]] CFTypeID typeID() const override { return CFBooleanGetTypeID(); }

  bool value;
};

class ArrayObject final : public Object {
 public:
  explicit ArrayObject(std::vector<CFTypeRef> objects) : elements(std::move(objects)) {}
  [[nodiscard]] std::string kind() const override { return "array"; }
  [[nodiscard]] CFTypeID typeID() const override { return CFArrayGetTypeID(); }
  void dispose() override;

  std::vector<CFTypeRef> elements;
};

class DictionaryObject final : public Object {
 public:
  [[nodiscard]] std::string kind() const override { return "dictionary"; }
  [[nodiscard]] CFTypeID typeID() const override { return CFDictionaryGetTypeID(); }
  void dispose() override;

  std::vector<std::pair<CFTypeRef, CFTypeRef>> entries;
};

class OpaqueObject final : public Object {
 public:
  explicit OpaqueObject(std::string kind) : kind_(std::move(kind)) {}
  [[nodiscard]] std::string kind() const override { return kind_; }

 private:
  std::string kind_;
};

}  // namespace quellin::fake
