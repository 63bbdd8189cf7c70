#include "quellin/EndToEnd/Transcript.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <string_view>

#include <gmock/gmock.h>

#include "quellin/Support/Golden.h"

namespace quellin::testing_support {
namespace {

// In a pattern stands H for a capital hexadecimal digit, 9 for a digit, and anything else for itself.
constexpr std::string_view identifier = "HHHHHHHH-HHHH-HHHH-HHHH-HHHHHHHHHHHH";
constexpr std::string_view time = "9999-99-99T99:99:99Z";
constexpr std::string_view shortIdentifier = "HHHHHHHH";

bool fits(char character, char pattern) {
  const bool isDigit = character >= '0' && character <= '9';
  if (pattern == '9') return isDigit;
  if (pattern == 'H') return isDigit || (character >= 'A' && character <= 'F');
  return character == pattern;
}

bool fits(std::string_view text, std::string_view pattern) {
  return text.size() >= pattern.size() &&
         std::ranges::equal(text.substr(0, pattern.size()), pattern,
                            [](char character, char kind) { return fits(character, kind); });
}

// Short identifiers are told by what stands before them.
bool isShortIdentifier(std::string_view before, std::string_view text) {
  const bool isPlaced = before.empty() || before.ends_with('\n') || before.ends_with("session ");
  return isPlaced && fits(text, shortIdentifier) && (text.size() == 8 || text[8] == ' ' || text[8] == ',');
}

// How much of the beginning of `text` is to be masked.
std::size_t maskedLength(std::string_view before, std::string_view text) {
  if (fits(text, identifier)) return identifier.size();
  if (fits(text, time) && !text.starts_with("2025-03-04")) return time.size();
  return isShortIdentifier(before, text) ? shortIdentifier.size() : 0;
}

// How long the number at the beginning of `text` is when it tells what recording has cost; in the text for
// people, such numbers stand in a line of their own.
std::size_t costLength(std::string_view before, std::string_view text) {
  const std::string_view line = before.substr(before.rfind('\n') + 1);
  const bool isOfCost = line.starts_with("Recorder  ") || line.starts_with("2> Recorder  ") ||
                        line.ends_with("\"cpuSeconds\" : ") || line.ends_with("\"bytesWritten\" : ") ||
                        line.ends_with("\"cpuSeconds\":") || line.ends_with("\"bytesWritten\":");
  if (!isOfCost || !fits(text, "9")) return 0;
  return std::min(text.find_first_not_of("0123456789.e-"), text.size());
}

std::string withEscapedSlashes(const std::string& path) {
  std::string result;
  for (const char character : path) result += character == '/' ? std::string{"\\/"} : std::string{character};
  return result;
}

std::string shownArgument(const std::string& argument) {
  return argument.empty() || argument.find(' ') != std::string::npos ? "'" + argument + "'" : argument;
}

std::string behindMarks(const std::string& talk) {
  std::string result;
  std::istringstream lines{talk};
  for (std::string line; std::getline(lines, line);) result += "2> " + line + "\n";
  return result;
}

}  // namespace

std::string masked(const std::string& text, const std::string& home) {
  const std::string homeInJSON = withEscapedSlashes(home);
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view rest = std::string_view{text}.substr(at);
    if (rest.starts_with(home) || rest.starts_with(homeInJSON)) {
      result += "HOME";
      at += rest.starts_with(home) ? home.size() : homeInJSON.size();
    } else if (const std::size_t length = maskedLength(result, rest); length > 0) {
      result.append(length, 'X');
      at += length;
    } else if (const std::size_t costs = costLength(result, rest); costs > 0) {
      result += 'X';
      at += costs;
    } else {
      result += text[at++];
    }
  }
  return result;
}

void Transcript::run(const FrontEnd::Words& arguments, const FrontEnd::Words& environment) {
  text_ += "$";
  for (const std::string& variable : environment) text_ += " " + shownArgument(variable);
  text_ += " quellin";
  for (const std::string& argument : arguments) text_ += " " + shownArgument(argument);
  const ProgramResult result = frontEnd_.run(arguments, environment);
  EXPECT_EQ(result.signal, 0);
  text_ += "\n" + result.output + behindMarks(result.error);
  text_ += "exit status " + std::to_string(result.exitStatus) + "\n\n";
}

void Transcript::expectGolden(const std::string& golden) const {
  testing_support::expectGolden(std::string{QUELLIN_GOLDENS} + "/" + golden,
                                masked(text_, frontEnd_.home().path().string()));
}

}  // namespace quellin::testing_support
