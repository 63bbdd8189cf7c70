#include "quellin/Support/CommaLocale.h"

#include <stdexcept>

#include "Support/ProgramRun.h"

namespace quellin::testing_support {
namespace {

#if defined(__APPLE__)

constexpr const char* name = "de_DE.UTF-8";

void make(const TemporaryFolder& /*folder*/) {}

#else

constexpr const char* name = "xx_XX";

constexpr const char* definition =
    "LC_NUMERIC\n"
    "decimal_point \",\"\n"
    "thousands_sep \".\"\n"
    "grouping 3;3\n"
    "END LC_NUMERIC\n";

std::string asciiCharacters() {
  std::string text = "<code_set_name> ASCII\n<mb_cur_min> 1\n<mb_cur_max> 1\nCHARMAP\n";
  constexpr const char* digits = "0123456789ABCDEF";
  for (unsigned code = 0; code < 0x80; ++code) {
    const std::string hex{digits[code / 16], digits[code % 16]};
    text += "<U00" + hex + "> /x" + hex + " CHARACTER\n";
  }
  return text + "END CHARMAP\n";
}

// The other categories are missing on purpose, which the compiler of locales warns of and answers with 1.
void make(const TemporaryFolder& folder) {
  const ProgramResult result =
      runProgram({.executable = "/usr/bin/localedef",
                  .arguments = {"localedef", "-c", "-f", folder.write("characters", asciiCharacters()), "-i",
                                folder.write("definition", definition), folder.pathOf(name)}});
  if (result.exitStatus > 1) throw std::runtime_error("no locale could be made: " + result.error);
}

#endif

}  // namespace

CommaLocale::CommaLocale() {
  make(folder_);
  const ProgramResult control = runProgram(
      {.executable = "/usr/bin/printf", .arguments = {"printf", "%.1f", "1"}, .environment = environment()});
  if (control.output != "1,0") throw std::runtime_error("the locale has no effect: " + control.output);
}

std::vector<std::string> CommaLocale::environment() const {
  return {"LOCPATH=" + folder_.path().string(), std::string{"LC_ALL="} + name};
}

}  // namespace quellin::testing_support
