#include <string_view>

#include "quellin/Terminal/PlainText.h"
#include "quellin/Watch/Keys.h"
#include "quellin/Watch/Layout.h"

namespace quellin::cli {
namespace {

constexpr std::string_view meaning =
    "The first figure is the one that stands for the whole machine; the line below it says what it includes. "
    "Figures of the battery and of the silicon measure different things and are never added. In a plot, bars "
    "are of the same kind as the latest figure, dots of another kind, and gaps are readings that failed.";

}  // namespace

void drawHelp(Canvas& canvas, int firstRow) {
  int row = firstRow + 1;
  canvas.write(row++, 0, "Keys", Style::strong);
  for (const KeyGroup& keys : watchKeys()) {
    canvas.write(row, 2, keys.names(" "), Style::strong);
    canvas.write(row++, 8, keys.purpose);
  }
  canvas.write(++row, 0, "What is shown", Style::strong);
  const std::string text = wrapped(meaning, "  ", static_cast<std::size_t>(canvas.size().columns));
  for (std::string_view rest = text; !rest.empty();) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    canvas.write(++row, 0, line);
    rest.remove_prefix(line.size() + 1);
  }
}

}  // namespace quellin::cli
