#pragma once

#include <string>
#include <vector>

#include "quellin/Terminal/Terminal.h"
#include "quellin/Watch/WatchModel.h"

namespace quellin::cli {

/// One line of a panel.
struct PanelEntry {
  std::string label;
  std::string value;
  Style style = Style::plain;  ///< of the value

  bool operator==(const PanelEntry&) const = default;
};

/// Figures that belong together.
struct Panel {
  std::string title;
  std::vector<PanelEntry> entries;

  /// The lines it takes, its title included.
  [[nodiscard]] int rows() const { return 1 + static_cast<int>(entries.size()); }
};

/// Charge, flow and time left of the battery.
[[nodiscard]] Panel batteryPanel(const SystemPowerState& state);

/// What the energy model says of each part of the silicon.
[[nodiscard]] Panel componentsPanel(const SystemPowerState& state);

/// The thermal state, "unknown" unless it has a source, and the fans.
[[nodiscard]] Panel heatPanel(const SystemPowerState& state, bool isThermalKnown);

/// The temperatures worth showing.
[[nodiscard]] Panel temperaturesPanel(const SystemPowerState& state);

}  // namespace quellin::cli
