#include "quellin/Watch/Layout.h"

#include <algorithm>

#include <fmt/format.h>

#include "QuellinCore/Support/ISO8601.h"
#include "quellin/Presentation/Figure.h"
#include "quellin/Presentation/FigureText.h"
#include "quellin/Presentation/ProcessTable.h"
#include "quellin/Watch/History.h"
#include "quellin/Watch/Keys.h"
#include "quellin/Watch/Panels.h"

namespace quellin::cli {
namespace {

constexpr int headRows = 3;
constexpr int footRows = 2;
constexpr int gap = 3;

using PanelColumns = std::vector<std::vector<Panel>>;

// As many columns as have room for the longest of the usual lines.
PanelColumns arranged(const WatchModel& model, int columns) {
  const SystemPowerState& state = *model.state;
  const Panel battery = batteryPanel(state);
  const Panel components = componentsPanel(state);
  const Panel heat = heatPanel(state, model.isThermalKnown);
  const Panel temperatures = temperaturesPanel(state);
  if (columns < 50) return {{battery, components, heat, temperatures}};
  if (columns < 76) return {{battery, heat}, {components, temperatures}};
  return {{battery, heat}, {components}, {temperatures}};
}

int rowsOf(const std::vector<Panel>& stack) {
  int rows = 0;
  for (const Panel& panel : stack) rows += panel.rows();
  return rows;
}

std::vector<std::string> linesOf(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    lines.emplace_back(text.substr(0, text.find('\n')));
    text.remove_prefix(std::min(text.size(), lines.back().size() + 1));
  }
  return lines;
}

// How many rows each part of the view has.
struct Bands {
  int panels = 0;
  int plots = 0;
  int processes = 0;
};

Bands shared(int rows, int wantedByPanels, int enoughForPanels, int wantedByProcesses) {
  static constexpr int fewestForPlots = 3;
  static constexpr int enoughForPlots = 5;
  Bands bands;
  const auto take = [&rows](int wanted) {
    const int taken = std::clamp(wanted, 0, std::max(rows, 0));
    rows -= taken;
    return taken;
  };
  bands.panels = take(std::min(wantedByPanels, enoughForPanels));
  if (rows >= fewestForPlots) bands.plots = take(enoughForPlots);
  if (rows >= 2) bands.processes = take(wantedByProcesses);
  bands.panels += take(wantedByPanels - bands.panels);
  if (bands.plots > 0) bands.plots += take(rows);
  return bands;
}

class View {
 public:
  View(const WatchModel& model, Canvas& canvas)
      : model_(model), canvas_(canvas), rows_(canvas.size().rows), columns_(canvas.size().columns) {}

  void draw() {
    drawHead();
    if (model_.showsHelp) {
      drawHelp(canvas_, headRows);
    } else if (model_.state) {
      drawBody();
    }
    drawFoot();
  }

 private:
  void drawHead() {
    const std::string pace =
        model_.isOver ? "end of the trace" : fmt::format("every {:g} s", model_.interval.count());
    std::string right = pace;
    if (model_.state) right += "  " + formatISO8601(model_.state->timestamp);
    const int column = canvas_.write(0, 0, "quellin", Style::strong) + 2;
    canvas_.write(0, column, model_.source, Style::plain,
                  columns_ - column - 2 - columnsOn(canvas_.characters(), right));
    canvas_.writeEndingAt(0, columns_, right);
    drawReading();
  }

  void drawReading() {
    if (!model_.state) {
      canvas_.write(1, 0, "Taking the first reading", Style::faint);
      return;
    }
    const auto reading = model_.state->primaryPowerReading();
    if (!reading) {
      canvas_.write(1, 0, "No power reading", Style::strong);
      canvas_.write(2, 0, noPowerReading, Style::faint);
      return;
    }
    const std::string confidence = "confidence: " + std::string{rawValue(reading->confidence)};
    const int end =
        canvas_.write(1, 0, reading->label + "  " + figureText(reading->watts, "W") + " W", Style::strong);
    if (end + 2 + columnsOn(canvas_.characters(), confidence) <= columns_) {
      canvas_.writeEndingAt(1, columns_, confidence);
    }
    canvas_.write(2, 0, reading->summary, Style::faint);
  }

  void drawBody() {
    const PanelColumns panels = arranged(model_, columns_);
    int wanted = 0;
    for (const auto& stack : panels) wanted = std::max(wanted, rowsOf(stack));
    const std::vector<std::string> processes = processLines();
    const Bands bands = shared(rows_ - headRows - footRows, wanted, panels.size() == 1 ? wanted : 10,
                               static_cast<int>(processes.size()));
    drawPanels(panels, bands.panels);
    drawPlots(headRows + bands.panels, bands.plots);
    for (int row = 0; row < bands.processes; ++row) {
      canvas_.write(headRows + bands.panels + bands.plots + row, 0,
                    processes.at(static_cast<std::size_t>(row)), row == 0 ? Style::strong : Style::plain);
    }
  }

  void drawPanels(const PanelColumns& panels, int rows) {
    const int count = static_cast<int>(panels.size());
    const int width = (columns_ - gap * (count - 1)) / count;
    for (int index = 0; index < count; ++index) {
      int row = 0;
      for (const Panel& panel : panels.at(static_cast<std::size_t>(index))) {
        drawPanel(
            panel,
            {.row = headRows + row, .column = index * (width + gap), .rows = rows - row, .columns = width});
        row += panel.rows();
      }
    }
  }

  void drawPanel(const Panel& panel, Area area) {
    if (area.rows <= 0) return;
    canvas_.write(area.row, area.column, panel.title, Style::strong, area.columns);
    const auto fitting = std::min(panel.entries.size(), static_cast<std::size_t>(area.rows - 1));
    for (std::size_t index = 0; index < fitting; ++index) {
      const PanelEntry& entry = panel.entries.at(index);
      const int row = area.row + 1 + static_cast<int>(index);
      const int value = columnsOn(canvas_.characters(), entry.value);
      canvas_.write(row, area.column, entry.label, Style::plain, area.columns - value - 1);
      canvas_.writeEndingAt(row, area.column + area.columns, entry.value, entry.style);
    }
  }

  void drawPlots(int row, int rows) {
    if (rows < 2) return;
    const bool both = columns_ >= 60;
    const int width = both ? (columns_ - gap) / 2 : columns_;
    const int drawn = width - scaleColumns;
    drawHistory(wattsOver(model_.history, drawn), {.row = row, .column = 0, .rows = rows, .columns = width});
    if (!both) return;
    drawHistory(temperatureOver(model_.history, drawn),
                {.row = row, .column = width + gap, .rows = rows, .columns = width});
  }

  void drawHistory(const HistoryPlot& plot, Area area) {
    const int inner = area.column + scaleColumns;
    const int drawn = area.columns - scaleColumns;
    const int end = canvas_.write(area.row, area.column, plot.title, Style::strong, area.columns);
    const std::string time = "last " + durationText(timeOver(model_.history, drawn));
    if (end + 2 + columnsOn(canvas_.characters(), time) <= area.column + area.columns) {
      canvas_.writeEndingAt(area.row, area.column + area.columns, time, Style::faint);
    }
    canvas_.writeEndingAt(area.row + 1, inner - 1, fmt::format("{:g}", plot.scale.high), Style::faint);
    if (area.rows > 2) {
      canvas_.writeEndingAt(area.row + area.rows - 1, inner - 1, fmt::format("{:g}", plot.scale.low),
                            Style::faint);
    }
    drawPlot(canvas_, {.row = area.row + 1, .column = inner, .rows = area.rows - 1, .columns = drawn},
             plot.points, plot.scale);
  }

  // The table of the processes, line by line.
  [[nodiscard]] std::vector<std::string> processLines() const {
    if (!model_.showsProcesses) return {};
    if (!model_.processes) return {"Processes", "being measured"};
    if (model_.processes->empty()) return {"Processes", unknown};
    return linesOf(processTable(*model_.processes, static_cast<std::size_t>(std::max(columns_, 0))));
  }

  void drawFoot() {
    const int row = rows_ - footRows;
    // In the lowest of terminals the foot stands upon the head.
    for (const int below : {row, row + 1})
      canvas_.write(below, 0, std::string(static_cast<std::size_t>(columns_), ' '));
    if (model_.failure) {
      canvas_.write(row, 0, *model_.failure, Style::bad);
    } else {
      canvas_.write(row, 0, model_.session, model_.isRecording ? Style::good : Style::plain);
    }
    int column = 0;
    for (const KeyGroup& keys : watchKeys()) {
      column = canvas_.write(row + 1, column, keys.names("/"), Style::strong);
      column = canvas_.write(row + 1, column + 1, keys.labelFor(model_)) + 2;
    }
  }

  static constexpr int scaleColumns = 6;

  const WatchModel& model_;
  Canvas& canvas_;
  int rows_;
  int columns_;
};

}  // namespace

Canvas drawWatch(const WatchModel& model, ViewSize size, CharacterSet characters) {
  Canvas canvas{size, characters};
  View{model, canvas}.draw();
  return canvas;
}

}  // namespace quellin::cli
