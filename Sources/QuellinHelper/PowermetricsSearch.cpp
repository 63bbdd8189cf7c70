#include "QuellinHelper/PowermetricsSearch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "QuellinHelper/ProcessRow.h"
#include "QuellinHelper/PropertyLists/DecimalNumber.h"
#include "QuellinHelper/PropertyLists/KeyNormalization.h"

namespace quellin {
namespace {

using Keys = PowermetricsSearch::Keys;

constexpr double largestWatts = 100;
constexpr double milliwattsPerWatt = 1000;

std::vector<std::string> normalizedAll(Keys keys) {
  std::vector<std::string> normalized;
  normalized.reserve(keys.size());
  for (const std::string_view key : keys) normalized.push_back(normalize(key));
  return normalized;
}

std::string_view trimmedOf(std::string_view text, std::string_view characters) {
  const auto first = text.find_first_not_of(characters);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

std::optional<double> finiteDecimal(std::string_view text) {
  const auto number = parseDecimal(text);
  return number && std::isfinite(*number) ? number : std::nullopt;
}

/// The number of a node; a text is stripped of `padding` first.
std::optional<double> number(const PropertyListNode& node, std::string_view padding) {
  if (const auto real = node.real()) return real;
  if (const auto integer = node.integer()) return static_cast<double>(*integer);
  if (const auto integer = node.largeInteger()) return static_cast<double>(*integer);
  if (const auto text = node.string()) return finiteDecimal(trimmedOf(*text, padding));
  return std::nullopt;
}

/// The first number at or below a node whose normalised key satisfies a condition.
template <class Condition>
class NumberSearch {
 public:
  explicit NumberSearch(Condition condition) : condition_(std::move(condition)) {}

  std::optional<double> operator()(const PropertyListNode& node) {
    for (const auto& [key, value] : node.entries()) {
      normalize(key, key_);
      if (!condition_(key_)) continue;
      if (const auto found = PowermetricsSearch::numeric(value)) return found;
    }
    for (const PropertyListEntry& entry : node.entries()) {
      if (const auto found = (*this)(entry.value)) return found;
    }
    for (const PropertyListNode& element : node.elements()) {
      if (const auto found = (*this)(element)) return found;
    }
    return std::nullopt;
  }

 private:
  Condition condition_;
  std::string key_;
};

auto exactSearch(Keys keys) {
  return NumberSearch{[wanted = normalizedAll(keys)](const std::string& key) {
    return std::ranges::find(wanted, key) != wanted.end();
  }};
}

auto substringSearch(Keys tokens) {
  return NumberSearch{[wanted = normalizedAll(tokens)](const std::string& key) {
    return std::ranges::all_of(wanted, [&key](const std::string& token) { return key.contains(token); });
  }};
}

template <class Search>
std::optional<double> firstIn(std::span<const PropertyListNode> samples, Search search) {
  for (const PropertyListNode& sample : samples) {
    if (const auto found = search(sample)) return found;
  }
  return std::nullopt;
}

LocatedNumber located(double rawValue, std::string source) {
  const double watts = rawValue > largestWatts ? rawValue / milliwattsPerWatt : rawValue;
  return {.rawValue = rawValue, .watts = watts, .source = std::move(source)};
}

std::string fallbackSource(Keys tokens) {
  std::string joined;
  for (const std::string_view token : tokens) joined.append(joined.empty() ? "" : ",").append(token);
  return "fallback:[" + joined + "]";
}

// The program keeps the C locale, in which it was started.
std::string fourDigits(double value) {
  std::array<char, 32> text{};
  const int length = std::snprintf(text.data(), text.size(), "%.4g", value);
  return {text.data(), static_cast<std::size_t>(length)};
}

}  // namespace

std::optional<LocatedNumber> PowermetricsSearch::locatedNumber(std::span<const PropertyListNode> samples,
                                                               Keys exact, Keys substringTokens) {
  if (const auto found = firstIn(samples, exactSearch(exact))) {
    return located(*found, "exact:" + std::string{exact.empty() ? "?" : exact.front()});
  }
  if (const auto found = firstIn(samples, substringSearch(substringTokens))) {
    return located(*found, fallbackSource(substringTokens));
  }
  return std::nullopt;
}

std::optional<double> PowermetricsSearch::firstExactNumber(const PropertyListNode& node, Keys keys) {
  return exactSearch(keys)(node);
}

std::optional<double> PowermetricsSearch::firstRecursiveNumber(const PropertyListNode& node, Keys tokens) {
  return substringSearch(tokens)(node);
}

void PowermetricsSearch::collectProcesses(const PropertyListNode& node, std::vector<ProProcessEnergy>& rows) {
  for (const PropertyListNode& element : node.elements()) collectProcesses(element, rows);
  if (node.entries().empty()) return;
  if (auto row = processRow(node)) rows.push_back(std::move(*row));
  for (const PropertyListEntry& entry : node.entries()) collectProcesses(entry.value, rows);
}

std::optional<PropertyListNode> PowermetricsSearch::value(Keys keys, const PropertyListNode& dictionary) {
  const auto entries = dictionary.entries();
  for (const std::string_view key : keys) {
    const auto exact = std::ranges::find(entries, key, &PropertyListEntry::key);
    if (exact != entries.end()) return exact->value;
  }
  const auto wanted = normalizedAll(keys);
  std::string normalized;
  for (const auto& [key, found] : entries) {
    normalize(key, normalized);
    if (std::ranges::find(wanted, normalized) != wanted.end()) return found;
  }
  return std::nullopt;
}

std::optional<double> PowermetricsSearch::numberValue(Keys keys, const PropertyListNode& dictionary) {
  const auto found = value(keys, dictionary);
  return found ? number(*found, "% ") : std::nullopt;
}

std::optional<double> PowermetricsSearch::numeric(const PropertyListNode& node) {
  return number(node, " Wm");
}

std::string PowermetricsSearch::provenanceSummary(const LocatedNumber& number) {
  return number.source + " raw=" + fourDigits(number.rawValue) +
         " normalized=" + (number.watts ? fourDigits(*number.watts) + "W" : "nil");
}

}  // namespace quellin
