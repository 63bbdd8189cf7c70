#include "QuellinCore/IOReport/EnergyUnit.h"

#include <array>

#include "QuellinCore/Support/CheckedArithmetic.h"
#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

struct EnergyUnit {
  std::string_view label;
  std::int64_t nanojoules;
};

constexpr std::array units{
    EnergyUnit{.label = "", .nanojoules = 1}, EnergyUnit{.label = "nJ", .nanojoules = 1},
    EnergyUnit{.label = "uJ", .nanojoules = 1'000}, EnergyUnit{.label = "mJ", .nanojoules = 1'000'000},
    EnergyUnit{.label = "J", .nanojoules = 1'000'000'000}};
constexpr std::int64_t picojoulesPerNanojoule = 1'000;

}  // namespace

std::optional<std::int64_t> nanojoules(std::int64_t value, std::optional<std::string_view> unitLabel) {
  const std::string_view label = trimmed(unitLabel.value_or(""));
  if (label == "pJ") return value / picojoulesPerNanojoule;
  for (const EnergyUnit& unit : units) {
    if (unit.label == label) return checkedMul(value, unit.nanojoules);
  }
  return std::nullopt;
}

}  // namespace quellin
