#include "quellin/Terminal/Terminal.h"

#include <array>
#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>

#include "QuellinCore/Support/Number.h"

namespace quellin::cli {
namespace {

std::optional<std::size_t> positiveNumber(const std::optional<std::string>& text) {
  if (!text) return std::nullopt;
  const auto number = parseNumber<std::size_t>(*text);
  return number && *number > 0 ? number : std::nullopt;
}

winsize ownSize(int descriptor) {
  winsize size{};
  if (ioctl(descriptor, TIOCGWINSZ, &size) != 0) return {};
  return size;
}

std::size_t orUsual(unsigned short own, std::size_t usual) { return own > 0 ? own : usual; }

}  // namespace

Environment processEnvironment() {
  return [](const std::string& name) -> std::optional<std::string> {
    const char* const value = std::getenv(name.c_str());  // NOLINT(concurrency-mt-unsafe): nobody sets any
    return value == nullptr ? std::nullopt : std::optional<std::string>{value};
  };
}

Terminal Terminal::at(int descriptor, const Environment& environment) {
  Terminal terminal;
  terminal.isTerminal = isatty(descriptor) == 1;
  const std::string kind = environment("TERM").value_or("dumb");
  const bool refused = !environment("NO_COLOR").value_or("").empty();
  terminal.isDumb = kind.empty() || kind == "dumb";
  terminal.hasColours = terminal.isTerminal && !refused && !terminal.isDumb;
  terminal.width = positiveNumber(environment("COLUMNS"));
  terminal.height = positiveNumber(environment("LINES"));
  if (!terminal.isTerminal) return terminal;
  if (!terminal.width) terminal.sizedBy = descriptor;
  terminal.width = terminal.presentWidth();
  if (!terminal.height) terminal.height = orUsual(ownSize(descriptor).ws_row, 24);
  return terminal;
}

std::optional<std::size_t> Terminal::presentWidth() const {
  return sizedBy ? orUsual(ownSize(*sizedBy).ws_col, 80) : width;
}

std::string Terminal::styled(Style style, std::string_view text) const {
  static constexpr std::array<std::string_view, 6> codes{"",         "\x1b[1m",  "\x1b[32m",
                                                         "\x1b[33m", "\x1b[31m", "\x1b[2m"};
  if (!hasColours || style == Style::plain) return std::string{text};
  return std::string{codes.at(static_cast<std::size_t>(style))} + std::string{text} + "\x1b[0m";
}

}  // namespace quellin::cli
