#include "QuellinCore/Platform/Linux/Hwmon.h"

#include <utility>

#include "QuellinCore/Platform/Linux/KernelText.h"

namespace quellin {

std::expected<std::vector<HwmonChip>, SystemError> readHwmonChips(const FileTree& sys) {
  const auto names = classEntries(sys, hwmonDirectory);
  if (!names) return std::unexpected(names.error());
  std::vector<HwmonChip> chips;
  for (const std::string& name : *names) {
    std::string directory = std::string{hwmonDirectory} + "/" + name;
    auto chipName = valueOf(readText(sys, directory + "/name"));
    auto files = sortedNames(sys, directory).value_or(std::vector<std::string>{});
    chips.push_back({std::move(directory), std::move(chipName), std::move(files)});
  }
  return chips;
}

std::vector<HwmonInput> readHwmonInputs(const FileTree& sys, const HwmonChip& chip, std::string_view kind) {
  std::vector<HwmonInput> inputs;
  for (const std::string& file : chip.files) {
    const auto number = numberWithin(file, kind, "_input");
    if (!number) continue;
    std::string stem = chip.directory + "/" + std::string{kind} + std::to_string(*number) + "_";
    auto value = readInteger(sys, stem + "input");
    inputs.push_back({std::move(stem), value});
  }
  return inputs;
}

}  // namespace quellin
