#include "quellin/Presentation/ReportPage.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace quellin::cli {
namespace {

constexpr std::string_view titlePlace = "{{TITLE}}";
constexpr std::string_view dataPlace = "{{DATA}}";

// U+2028 and U+2029, which end a line of script, share all bytes but the last.
constexpr std::string_view separatorStart = "\xe2\x80";

// What stands before `place`, and what stands behind it.
std::pair<std::string_view, std::string_view> split(std::string_view text, std::string_view place) {
  const std::size_t position = text.find(place);
  if (position == std::string_view::npos) throw std::logic_error("a report page without its places");
  return {text.substr(0, position), text.substr(position + place.size())};
}

}  // namespace

std::string escapedForHTML(std::string_view text) {
  std::string escaped;
  for (const char character : text) {
    switch (character) {
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '&':
        escaped += "&amp;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      case '\'':
        escaped += "&#39;";
        break;
      default:
        if (static_cast<unsigned char>(character) >= ' ' && character != '\x7f') escaped += character;
    }
  }
  return escaped;
}

std::string escapedForScript(std::string_view json) {
  std::string escaped;
  escaped.reserve(json.size());
  while (!json.empty()) {
    const std::size_t plain = std::min(json.find_first_of("<>&\xe2"), json.size());
    escaped += json.substr(0, plain);
    json.remove_prefix(plain);
    if (json.empty()) break;
    std::size_t taken = 1;
    if (json.front() == '<') {
      escaped += "\\u003c";
    } else if (json.front() == '>') {
      escaped += "\\u003e";
    } else if (json.front() == '&') {
      escaped += "\\u0026";
    } else if (json.starts_with(separatorStart) && json.size() > 2 &&
               (json[2] == '\xa8' || json[2] == '\xa9')) {
      escaped += json[2] == '\xa8' ? "\\u2028" : "\\u2029";
      taken = 3;
    } else {
      escaped += json.front();
    }
    json.remove_prefix(taken);
  }
  return escaped;
}

void writeReportPage(std::string_view page, std::string_view title, std::string_view data,
                     const std::function<void(std::string_view)>& write) {
  const auto [beforeTitle, afterTitle] = split(page, titlePlace);
  const auto [beforeData, afterData] = split(afterTitle, dataPlace);
  write(beforeTitle);
  write(escapedForHTML(title));
  write(beforeData);
  write(escapedForScript(data));
  write(afterData);
}

}  // namespace quellin::cli
