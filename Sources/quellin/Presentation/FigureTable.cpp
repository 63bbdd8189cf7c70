#include "quellin/Presentation/FigureTable.h"

#include <string_view>

#include "quellin/Presentation/FigureText.h"
#include "quellin/Presentation/Table.h"
#include "quellin/Terminal/PlainText.h"

namespace quellin::cli {
namespace {

std::string shown(const Figure& figure) {
  return figure.text ? *figure.text : figureText(figure.value, figure.unit);
}

Table wideTable(const std::vector<Figure>& figures) {
  Table table{{{"Group"}, {"Figure"}, {"Value", Alignment::right}, {"Unit"}, {"Source"}, {"Kind"}, {"Note"}}};
  for (const Figure& figure : figures) {
    table.add({figure.group, figure.name, shown(figure), figure.unit, figure.source, figure.kind,
               figure.note.value_or("")});
  }
  return table;
}

void addLines(Table& table, std::string_view lines) {
  while (!lines.empty()) {
    const std::string_view line = lines.substr(0, lines.find('\n'));
    table.addHeading(line);
    lines.remove_prefix(line.size() + 1);
  }
}

std::string originOf(const Figure& figure) {
  return figure.source == figure.group ? "" : ", from " + figure.source;
}

Table narrowTable(const std::vector<Figure>& figures, std::size_t width) {
  Table table{{{"Figure", Alignment::left, true}, {"Value", Alignment::right}, {"Unit"}, {"Kind"}}};
  std::string heading;
  for (const Figure& figure : figures) {
    const std::string place = figure.group + originOf(figure);
    if (place != heading) table.addHeading(place);
    heading = place;
    table.add({"  " + figure.name, shown(figure), figure.unit, figure.kind});
    if (figure.note) addLines(table, wrapped(printable(*figure.note), "    ", width));
  }
  return table;
}

}  // namespace

std::string figureTable(const std::vector<Figure>& figures, std::optional<std::size_t> width) {
  const Table wide = wideTable(figures);
  if (!width || wide.width() <= *width) return wide.text(width);
  return narrowTable(figures, *width).text(width);
}

}  // namespace quellin::cli
