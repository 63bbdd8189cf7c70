#include "quellin/CommandLine/Hint.h"

#include <algorithm>

#include "QuellinCore/Support/Quoting.h"

namespace quellin::cli {
namespace {

// Few paths need quotes, which are hard to read inside those of the hint.
std::string shellWord(const std::string& path) {
  constexpr std::string_view plain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-./,:=@%+";
  return path.find_first_not_of(plain) == std::string::npos ? path : shellQuoted(path);
}

}  // namespace

std::string hintAt(std::string_view command, const Options& options) {
  std::string text{command};
  // The words of another command stand behind the options.
  const std::size_t end =
      command.starts_with("run ") ? std::min(text.find(" -- "), text.size()) : text.size();
  if (options.store) text.insert(end, " --store " + shellWord(options.store->string()));
  return "'quellin " + text + "'";
}

std::string hintAtDoctor(const Options& options) {
  std::string text = "'quellin doctor";
  if (options.source != nativeSource) text += " --source " + shellWord(options.source);
  return text + "'";
}

}  // namespace quellin::cli
