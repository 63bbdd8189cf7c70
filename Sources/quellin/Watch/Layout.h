#pragma once

#include "quellin/Watch/Canvas.h"
#include "quellin/Watch/WatchModel.h"

namespace quellin::cli {

/// The live view of `model` on a terminal of this size: the primary reading, panels of figures, plots, the
/// processes, and at the bottom the session and the keys. What does not fit is left out, processes first.
[[nodiscard]] Canvas drawWatch(const WatchModel& model, ViewSize size, CharacterSet characters);

/// The keys and what the figures mean, below the primary reading.
void drawHelp(Canvas& canvas, int firstRow);

}  // namespace quellin::cli
