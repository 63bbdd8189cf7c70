#include "quellin/Progress/LiveLine.h"

#include "quellin/Terminal/PlainText.h"
#include "quellin/Terminal/TextColumns.h"

namespace quellin::cli {

void LiveLine::show(const std::string& text) {
  if (terminal_.isTerminal && !terminal_.isDumb) {
    talk_.raw("\r" + firstColumns(printable(text), terminal_.presentWidth().value_or(80) - 1) + "\x1b[K");
    isShowing_ = true;
    return;
  }
  const Seconds now = clock_.now();
  if (lastAt_ && now - *lastAt_ < pause) return;
  lastAt_ = now;
  talk_.say(text);
}

void LiveLine::end() {
  if (isShowing_) talk_.raw("\n");
  isShowing_ = false;
}

}  // namespace quellin::cli
